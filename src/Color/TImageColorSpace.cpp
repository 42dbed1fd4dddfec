#include "Color/TImageColorSpace.h"

#include <cmath>

#include "kxexception/KxError.h"
#include "rastrix/ColorMath.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TPixelColorSpace.h"

namespace Rastrix {

namespace {

using TCS = TPixelColorSpace;
using TColorPlane = TImageColorSpace::TColorPlane;

// Every pixel of the plane through f, row by row.
template <class F>
void forEachPixel(TColorPlane& p, F f) {
  const int first = p.getFirstLine(), last = first + p.getLines(), columns = p.getColumns();
  for (int line = first; line < last; ++line) {
    TRGBFloatPixel* row = p[line] + p.getFirstColumn();
    for (int k = 0; k < columns; ++k) f(row[k]);
  }
}

// Every pixel of `in` through f into the same pixel of `out` (the same
// extension; `in` and `out` may be one plane).
template <class F>
void forEachPixel(const TColorPlane& in, TColorPlane& out, F f) {
  const int first = in.getFirstLine(), last = first + in.getLines(), columns = in.getColumns();
  for (int line = first; line < last; ++line) {
    const TRGBFloatPixel* from = in[line] + in.getFirstColumn();
    TRGBFloatPixel* to = out[line] + out.getFirstColumn();
    for (int k = 0; k < columns; ++k) f(from[k], to[k]);
  }
}

// Components in the order of their names: r is the first, b the third.
inline void get(const TRGBFloatPixel& p, double c[3]) {
  c[0] = p.r;
  c[1] = p.g;
  c[2] = p.b;
}
inline void put(TRGBFloatPixel& p, const double c[3]) {
  p.r = static_cast<float>(c[0]);
  p.g = static_cast<float>(c[1]);
  p.b = static_cast<float>(c[2]);
}

// Each pixel through a TPixelColorSpace: the spaces without a loop of their
// own (the polar ones, HSV, HSI, WST, LWS, and every way back).
void viaPixelSpace(TColorPlane& p, unsigned from, unsigned to, const double ref[3]) {
  TCS cs;
  TRGBFloatPixel white;
  white.set(static_cast<float>(ref[0]), static_cast<float>(ref[1]), static_cast<float>(ref[2]));
  cs.vSetReference(white, TCS::XYZ);
  cs.vSetFlag(from, to);
  forEachPixel(p, [&](TRGBFloatPixel& px) {
    cs.vSetColor(px, from);
    px = cs.rGetColor(to);
  });
}

// A linear source (matrix to XYZ) to `to`, one pass from `in` into `out`.
// False when `to` has no loop of its own.
template <class ToXyz>
bool fromLinear(const TColorPlane& in, TColorPlane& out, unsigned to, const double ref[3], ToXyz toXyz) {
  using namespace colormath;
  switch (to) {
    case TCS::XYZ:
      forEachPixel(in, out, [&](const TRGBFloatPixel& a, TRGBFloatPixel& b) {
        double c[3], xyz[3];
        get(a, c);
        toXyz(c, xyz);
        put(b, xyz);
      });
      return true;
    case TCS::CIE_RGB:
    case TCS::S_RGB:
    case TCS::EBU_RGB: {
      const M3& back = to == TCS::CIE_RGB ? mXyzToCie : to == TCS::S_RGB ? mXyzToSrgb : mXyzToEbu;
      forEachPixel(in, out, [&](const TRGBFloatPixel& a, TRGBFloatPixel& b) {
        double c[3], xyz[3];
        get(a, c);
        toXyz(c, xyz);
        mul(back, xyz, c);
        put(b, c);
      });
      return true;
    }
    case TCS::LXY:
      forEachPixel(in, out, [&](const TRGBFloatPixel& a, TRGBFloatPixel& b) {
        double c[3], xyz[3];
        get(a, c);
        toXyz(c, xyz);
        xyzToLxy(xyz, c);
        put(b, c);
      });
      return true;
    case TCS::LUV:
    case TCS::LU_V_: {
      const double f = to == TCS::LUV ? 3.0 : 4.5;
      forEachPixel(in, out, [&](const TRGBFloatPixel& a, TRGBFloatPixel& b) {
        double c[3], xyz[3];
        get(a, c);
        toXyz(c, xyz);
        xyzToLuv(xyz, f, c);
        put(b, c);
      });
      return true;
    }
    case TCS::LSASBS:
      forEachPixel(in, out, [&](const TRGBFloatPixel& a, TRGBFloatPixel& b) {
        double c[3], xyz[3];
        get(a, c);
        toXyz(c, xyz);
        xyzToLab(xyz, ref, c);
        put(b, c);
      });
      return true;
    default:
      return false;
  }
}

// The step to XYZ as types of their own, so that the loops inline them.
struct TCieToXyz {
  void operator()(const double c[3], double xyz[3]) const { colormath::mul(colormath::mCieToXyz, c, xyz); }
};
struct TXyzToXyz {
  void operator()(const double c[3], double xyz[3]) const {
    for (int i = 0; i < 3; ++i) xyz[i] = c[i];
  }
};

// Sources that are not CIE RGB: to CIE RGB first, then on from there.
void throughCieRgb(TColorPlane& p, unsigned from, unsigned to, const double ref[3]) {
  if (from != TCS::XYZ || !fromLinear(p, p, TCS::CIE_RGB, ref, TXyzToXyz{})) viaPixelSpace(p, from, TCS::CIE_RGB, ref);
  if (to != TCS::CIE_RGB) TImageColorSpace::vTransformFromCIE_RGB(p, to, ref);
}

void scale(TColorPlane& p, unsigned from, double s) {
  const bool allThree = from == TCS::CIE_RGB || from == TCS::S_RGB || from == TCS::EBU_RGB ||
                        from == TCS::USER_RGB || from == TCS::XYZ;
  const float f = static_cast<float>(s);
  if (allThree)
    forEachPixel(p, [&](TRGBFloatPixel& px) {
      px.b *= f;
      px.g *= f;
      px.r *= f;
    });
  else if (from == TCS::HSV || from == TCS::HSI)
    forEachPixel(p, [&](TRGBFloatPixel& px) { px.b *= f; });
  else
    forEachPixel(p, [&](TRGBFloatPixel& px) { px.r *= f; });
}

}  // namespace

void TImageColorSpace::vTransformFromCIE_RGB(TColorPlane& p, unsigned to, const double ref[3]) {
  KX_TRY {
    if (to == TCS::CIE_RGB) return;
    if (!fromLinear(p, p, to, ref, TCieToXyz{})) viaPixelSpace(p, TCS::CIE_RGB, to, ref);
  }
  KX_CATCH
}

#define KX_THROUGH_CIE_RGB(Name, Flag)                                                    \
  void TImageColorSpace::vTransformFrom##Name(TColorPlane& p, unsigned to, const double ref[3]) { \
    KX_TRY { throughCieRgb(p, Flag, to, ref); }                                           \
    KX_CATCH                                                                              \
  }
KX_THROUGH_CIE_RGB(S_RGB, TCS::S_RGB)
KX_THROUGH_CIE_RGB(EBU_RGB, TCS::EBU_RGB)
KX_THROUGH_CIE_RGB(USER_RGB, TCS::USER_RGB)
KX_THROUGH_CIE_RGB(XYZ, TCS::XYZ)
KX_THROUGH_CIE_RGB(Lxy, TCS::LXY)
KX_THROUGH_CIE_RGB(Luv, TCS::LUV)
KX_THROUGH_CIE_RGB(Lu_v_, TCS::LU_V_)
KX_THROUGH_CIE_RGB(HSV, TCS::HSV)
KX_THROUGH_CIE_RGB(HSI, TCS::HSI)
KX_THROUGH_CIE_RGB(Lrg, TCS::LRG)
#undef KX_THROUGH_CIE_RGB

void TImageColorSpace::vTransform(const TColorPlane& src, TColorPlane& dst, unsigned from, unsigned to,
                                  double dScale) {
  KX_TRY {
    TCS::cpGetColorSpaceName(from);
    TCS::cpGetColorSpaceName(to);
    if (!TCS::bCanSetColorSpace(from))
      KX_THROW(Err::ulColorSpaceNoWayBack, "%s", TCS::cpGetColorSpaceName(from));
    const TPixelColorSpace& srcSpace = src.rGetPixelColorSpace();
    const double ref[3] = {srcSpace.rGetRefInXYZ().r, srcSpace.rGetRefInXYZ().g, srcSpace.rGetRefInXYZ().b};
    if (&dst != &src &&
        (dst.getLines() != src.getLines() || dst.getColumns() != src.getColumns() ||
         dst.getFirstLine() != src.getFirstLine() || dst.getFirstColumn() != src.getFirstColumn()))
      dst.alloc(src.getLines(), src.getColumns(), src.getFirstLine(), src.getFirstColumn(), src.getColumns());
    // A linear source at scale 1 goes from src into dst in one pass;
    // everything else is copied first and converted in place.
    bool done = false;
    if (dScale == 1.0 && from != to && (from == TCS::CIE_RGB || from == TCS::XYZ))
      done = from == TCS::CIE_RGB ? fromLinear(src, dst, to, ref, TCieToXyz{}) : fromLinear(src, dst, to, ref, TXyzToXyz{});
    if (!done && &dst != &src) dst.insert(src);
    if (!done && dScale != 1.0) scale(dst, from, dScale);
    if (!done && from != to) {
      switch (from) {
        case TCS::CIE_RGB: vTransformFromCIE_RGB(dst, to, ref); break;
        case TCS::S_RGB: vTransformFromS_RGB(dst, to, ref); break;
        case TCS::EBU_RGB: vTransformFromEBU_RGB(dst, to, ref); break;
        case TCS::USER_RGB: vTransformFromUSER_RGB(dst, to, ref); break;
        case TCS::XYZ: vTransformFromXYZ(dst, to, ref); break;
        case TCS::LXY: vTransformFromLxy(dst, to, ref); break;
        case TCS::LUV: vTransformFromLuv(dst, to, ref); break;
        case TCS::LU_V_: vTransformFromLu_v_(dst, to, ref); break;
        case TCS::HSV: vTransformFromHSV(dst, to, ref); break;
        case TCS::HSI: vTransformFromHSI(dst, to, ref); break;
        default: vTransformFromLrg(dst, to, ref); break;
      }
    }
    TPixelColorSpace& space = dst.rGetPixelColorSpace();
    space.vSetReference(srcSpace.rGetRefInXYZ(), TCS::XYZ);
    space.vSetFlag(from, to);
    dst.vSetValueUnitPicFromColorSpace();
    dst.setTimeStamp();
  }
  KX_CATCH
}

bool TImageColorSpace::bProof_CIE_RGB_Image(const TColorPlane& p) {
  for (int line = p.getFirstLine(); line < p.getFirstLine() + p.getLines(); ++line) {
    const TRGBFloatPixel* row = p[line] + p.getFirstColumn();
    for (int k = 0; k < p.getColumns(); ++k)
      if (!TCS::bProofRGB(row[k])) return false;
  }
  return true;
}

}  // namespace Rastrix
