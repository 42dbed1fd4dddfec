#include "rastrix/epixeltyp.h"

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/PixelTraits.h"
#include "rastrix/RastrixErrors.h"

namespace {
const TLanguage::TLanguageString sUnknownTyp("Datentyp/Pixeltyp %d unbekannt.", "Unknow data/picture type (%d)");

struct TRange {
  double min, step, max;
};
}  // namespace

void vGetDefaultValueRangeMSM(eComparePixelTyp e, double* pMin, double* pStep, double* pMax) {
  // The step is a hundredth of the span, except for the 8-bit types; eI has the
  // range of eUS on purpose, so negative int pixels lie outside it.
  static constexpr TRange r8{0.0, 1.0, 255.0};
  static constexpr TRange r16{0.0, 655.35, 65535.0};
  static constexpr TRange rF{-3.4028234663852886e+38, 6.805646932770577e+36, 3.4028234663852886e+38};
  const TRange* r = nullptr;
  switch (e) {
    case eUC:
    case eRGB: r = &r8; break;
    case eUS:
    case eI: r = &r16; break;
    case eF:
    case eRGBF: r = &rF; break;
    default: Rastrix::vThrowUnknownPixelTyp(static_cast<int>(e));
  }
  if (pMin) *pMin = r->min;
  if (pStep) *pStep = r->step;
  if (pMax) *pMax = r->max;
}

void Rastrix::vThrowUnknownPixelTyp(int e) { KX_THROW(Rastrix::Err::ulUnknownPixelTyp, sUnknownTyp(), e); }
