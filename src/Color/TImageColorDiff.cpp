#include "Color/TImageColorDiff.h"

#include "kxexception/KxError.h"

namespace Rastrix {

namespace {
constexpr unsigned long ulExtensionDiffers = 0xe0721095UL;

unsigned spaceOf(const TPlane<TRGBFloatPixel>& p) {
  const unsigned to = p.rGetPixelColorSpace().uGetToFlag();
  return TPixelColorSpace::bCanSetColorSpace(to) ? to : TPixelColorSpace::CIE_RGB;
}

template <class F>
void calculate(const TPlane<TRGBFloatPixel>& picture, TPixelColorDiff::COLDIF d, TPlane<float>& result, F diff) {
  result.alloc(picture.getLines(), picture.getColumns(), picture.getFirstLine(), picture.getFirstColumn(),
               picture.getColumns());
  for (int line = picture.getFirstLine(); line < picture.getFirstLine() + picture.getLines(); ++line) {
    const TRGBFloatPixel* in = picture[line] + picture.getFirstColumn();
    float* out = result[line] + result.getFirstColumn();
    for (int k = 0; k < picture.getColumns(); ++k) out[k] = diff(line, k, in[k]);
  }
  result.setValueUnitPic(0, result.rStrGetValuePic(0), TPixelColorDiff::rGetCOLDIF_INFO(d).name);
  result.setTimeStamp();
}
// The difference of the picture's colour space, with its reference,
// minimum and parameters.
TPixelColorDiff prepared(const TPlane<TRGBFloatPixel>& picture, const TRGBFloatPixel& reference, double minimum,
                         double a, double b, double c, TPixelColorDiff::COLDIF d) {
  const unsigned from = spaceOf(picture);
  TPixelColorDiff diff;
  diff.vSetColorSpace(from, d);
  diff.vSetReferenzColor(reference, reference, from);
  diff.vSetMinimumLuminance(minimum);
  diff.vSetParam(a, b, c);
  return diff;
}
}  // namespace

void TImageColorDiff::vCalculate(const TPlane<TRGBFloatPixel>& picture, const TRGBFloatPixel& reference,
                                 const TRGBFloatPixel& second, double minimum, double a, double b, double c,
                                 TPixelColorDiff::COLDIF d, TPlane<float>& result) {
  KX_TRY {
    TPixelColorDiff diff = prepared(picture, reference, minimum, a, b, c, d);
    diff.vSetSecondColor(second);
    calculate(picture, d, result, [&](int, int, const TRGBFloatPixel& p) { return diff.fGetColorDiff1(p); });
  }
  KX_CATCH
}

void TImageColorDiff::vCalculate(const TPlane<TRGBFloatPixel>& picture, const TPlane<TRGBFloatPixel>& picture2,
                                 const TRGBFloatPixel& reference, double minimum, double a, double b, double c,
                                 TPixelColorDiff::COLDIF d, TPlane<float>& result) {
  KX_TRY {
    if (picture.getLines() != picture2.getLines() || picture.getColumns() != picture2.getColumns() ||
        picture.getFirstLine() != picture2.getFirstLine() || picture.getFirstColumn() != picture2.getFirstColumn())
      KX_THROW(ulExtensionDiffers, "%dx%d / %dx%d", picture.getLines(), picture.getColumns(), picture2.getLines(),
               picture2.getColumns());
    TPixelColorDiff diff = prepared(picture, reference, minimum, a, b, c, d);
    calculate(picture, d, result, [&](int line, int k, const TRGBFloatPixel& p) {
      return diff.fGetColorDiff2(p, picture2[line][picture2.getFirstColumn() + k]);
    });
  }
  KX_CATCH
}

}  // namespace Rastrix
