#include "Color/TPixelColorDiff.h"

#include <cmath>
#include <cstring>

#include "kxexception/KxError.h"
#include "rastrix/RastrixErrors.h"

namespace Rastrix {

namespace {
constexpr unsigned long ulUnknownColDif = 0xe0721094UL;

const TPixelColorDiff::COLDIF_INFO aInfo[] = {
    {TPixelColorDiff::eLuvStar, 0x100, "dE(L*u*v*)", 0, {nullptr, nullptr, nullptr}},
    {TPixelColorDiff::eLabStar, 0x400, "dE(L*a*b*)", 0, {nullptr, nullptr, nullptr}},
    {TPixelColorDiff::eLabStarABC, 0x400, "dE(L*a*b*,A,B,C)", 3, {"A", "B", "C"}},
    {TPixelColorDiff::eLu_v_AB, 0x80, "dE(Lu'v',A,B)", 2, {"A", "B", nullptr}},
    {TPixelColorDiff::eL2Lxy, 0x20, "L2(Lxy)", 0, {nullptr, nullptr, nullptr}},
    {TPixelColorDiff::eLooLxy, 0x20, "Loo(Lxy)", 0, {nullptr, nullptr, nullptr}},
    {TPixelColorDiff::eCIE_RGB, 0x1, "dE(CIE_RGB)", 0, {nullptr, nullptr, nullptr}},
};

double root(double v) { return v > 0 ? std::sqrt(v) : 0.0; }
}  // namespace

const TPixelColorDiff::COLDIF_INFO& TPixelColorDiff::rGetCOLDIF_INFO(COLDIF value) {
  for (const auto& i : aInfo)
    if (i.value == value) return i;
  KX_THROW(ulUnknownColDif, "COLDIF=%d", static_cast<int>(value));
}

const TPixelColorDiff::COLDIF_INFO& TPixelColorDiff::rGetCOLDIF_INFO(const char* name) {
  for (const auto& i : aInfo)
    if (name && std::strcmp(i.name, name) == 0) return i;
  KX_THROW(ulUnknownColDif, "COLDIF=%s", name ? name : "");
}

void TPixelColorDiff::vSetColorSpace(unsigned from, COLDIF d) {
  KX_TRY {
    const COLDIF_INFO& info = rGetCOLDIF_INFO(d);
    first.vSetFlag(from, info.space);
    second.vSetFlag(from, info.space);
    uFrom = from;
    eDiff = d;
  }
  KX_CATCH
}

void TPixelColorDiff::vSetReferenzColor(const TRGBFloatPixel& a, const TRGBFloatPixel& b, unsigned flag) {
  KX_TRY {
    first.vSetReference(a, flag);
    second.vSetReference(b, flag);
  }
  KX_CATCH
}

void TPixelColorDiff::vSetSecondColor(const TRGBFloatPixel& p) {
  KX_TRY { second.vSetColor(p, uFrom); }
  KX_CATCH
}

float TPixelColorDiff::_fDiff() const {
  const unsigned space = rGetCOLDIF_INFO(eDiff).space;
  const TRGBFloatPixel& a = first.rGetColor(space);
  const TRGBFloatPixel& b = second.rGetColor(space);
  const double d0 = a.r - b.r, d1 = a.g - b.g, d2 = a.b - b.b;
  switch (eDiff) {
    case eLuvStar:
    case eLabStar:
    case eCIE_RGB: return static_cast<float>(root(d0 * d0 + d1 * d1 + d2 * d2));
    case eLabStarABC: return static_cast<float>(root(dA * d0 * d0 + dB * d1 * d1 + dC * d2 * d2));
    case eLu_v_AB: {
      const double L2 = b.r;
      if (L2 <= 0) return 0.0f;
      const double dl = (a.r - L2) / L2;
      return static_cast<float>(root(dA * (d1 * d1 + d2 * d2) + dB * dl * dl));
    }
    case eL2Lxy: return static_cast<float>(root(d1 * d1 + d2 * d2));
    case eLooLxy: return static_cast<float>(std::fmax(std::fabs(d1), std::fabs(d2)));
    default: KX_THROW(ulUnknownColDif, "COLDIF=%d", static_cast<int>(eDiff));
  }
}

float TPixelColorDiff::fGetColorDiff1(const TRGBFloatPixel& p) {
  KX_TRY {
    first.vSetColor(p, uFrom);
    if (first.dGetLuminance() < dMinimum) return 0.0f;
    return _fDiff();
  }
  KX_CATCH
}

float TPixelColorDiff::fGetColorDiff2(const TRGBFloatPixel& a, const TRGBFloatPixel& b) {
  KX_TRY {
    second.vSetColor(b, uFrom);
    return fGetColorDiff1(a);
  }
  KX_CATCH
}

}  // namespace Rastrix
