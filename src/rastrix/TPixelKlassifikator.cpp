#include "rastrix/TPixelKlassifikator.h"

#include <cstdio>

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/RastrixErrors.h"

namespace Rastrix {

namespace {
const TLanguage::TLanguageString sIndex("Klassenindex mit %d nicht im Bereich 0...%d",
                                        "Classindex %d out of range 0...%d");
const TLanguage::TLanguageString sTypNames[] = {
    {"Default", "Default"},   {"Default Typ", "Default Type"}, {"Schwellen", "Threshold"},
    {"Integral", "Integral"}, {"Leuchtdichte", "Luminance"},   {"Farbfilter", "Color Filter"},
    {"Symbol", "Symbol"},     {"Bogen", "Arc"},                {"Wendel", "Filament"},
    {"Alle", "All"}};
const TLanguage::TLanguageString sUnknown("unbekannt", "unknown");
}  // namespace

TPixelKlassifikator::TPixelKlassifikator() { vSetDefault(); }

TPixelKlassifikator::TPixelKlassifikator(const TPixelKlassifikator& o)
    : TDelivery(),
      eTyp(o.eTyp),
      signatur(o.signatur),
      bNoDelete(o.bNoDelete),
      bErase(o.bErase),
      uSize(o.uSize),
      sName(o.sName),
      classNames(o.classNames),
      rejection(o.rejection) {
  setTimeStamp();
}

TPixelKlassifikator& TPixelKlassifikator::operator=(const TPixelKlassifikator& o) {
  if (this == &o) return *this;
  resize(o.uSize);
  classNames = o.classNames;
  sName = o.sName;
  rejection = o.rejection;
  eTyp = o.eTyp;
  bNoDelete = o.bNoDelete;
  bErase = o.bErase;
  setTimeStamp();
  return *this;
}

TPixelKlassifikator::~TPixelKlassifikator() = default;

TPixelKlassifikator* TPixelKlassifikator::pVirtualClone() const {
  auto* p = new TPixelKlassifikator;
  *p = *this;
  return p;
}

void TPixelKlassifikator::vSetDefault() {
  eTyp = eDefault;
  bNoDelete = false;
  bErase = false;
  sName = "Default";
  resize(1);
}

void TPixelKlassifikator::_vAllocName() {
  const std::size_t old = classNames.size();
  classNames.resize(uSize);
  char text[24];
  for (std::size_t i = old; i < uSize; ++i) {
    std::snprintf(text, sizeof text, "C%u", static_cast<unsigned>(i));
    classNames[i] = text;
  }
}

void TPixelKlassifikator::_vAllocRejection() { rejection.resize(uSize, false); }

void TPixelKlassifikator::resize(unsigned n) {
  KX_TRY {
    uSize = n;
    _vAllocName();
    _vAllocRejection();
    setTimeStamp();
  }
  KX_CATCH
}

unsigned TPixelKlassifikator::getTyp(int, int) const { return 0; }

void TPixelKlassifikator::_vCheckIndex(unsigned index) const {
  if (index >= uSize)
    KX_THROW(Err::ulKlassifikatorIndex, sIndex(), static_cast<int>(index), static_cast<int>(uSize) - 1);
}

const std::string& TPixelKlassifikator::rStrGetClassName(unsigned index) const {
  KX_TRY {
    _vCheckIndex(index);
    return classNames[index];
  }
  KX_CATCH
}

void TPixelKlassifikator::vSetClassName(unsigned index, const std::string& name) {
  KX_TRY {
    _vCheckIndex(index);
    classNames[index] = name;
    setTimeStamp();
  }
  KX_CATCH
}

void TPixelKlassifikator::vSetKlassifikatorName(const std::string& name) {
  sName = name;
  setTimeStamp();
}

bool TPixelKlassifikator::bRejection(unsigned index) const {
  KX_TRY {
    _vCheckIndex(index);
    return rejection[index];
  }
  KX_CATCH
}

void TPixelKlassifikator::vSetRejection(unsigned index, bool rejected) {
  KX_TRY {
    _vCheckIndex(index);
    rejection[index] = rejected;
    setTimeStamp();
  }
  KX_CATCH
}

const char* TPixelKlassifikator::strGetTypString(eKlassifikatorTyp t) {
  if (t <= eAll) return sTypNames[t]();
  return sUnknown();
}

TPixelKlassifikator* pGetDefaultPixelKlassifikator() {
  // Never destroyed: every plane points at it until the end of the process.
  static TPixelKlassifikator* const def = new TPixelKlassifikator;
  return def;
}

}  // namespace Rastrix
