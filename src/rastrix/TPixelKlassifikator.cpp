#include "rastrix/TPixelKlassifikator.h"

#include <cstdio>

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "file98/TKxIniFile.h"
#include "kxexception/TKxTable.h"
#include "rastrix/ClassPlane.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TRGBPixel.h"

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
const TLanguage::TLanguageString sWrongType("Klassifikatur muss von Typ %d sein und nicht vom Typ %d",
                                            "Need classifier from type %d and not from type %d");
const TLanguage::TLanguageString sBadSize("Klassenanzahl %d nicht im Bereich 0...%u",
                                          "Number of classes %d out of range 0...%u");
const TLanguage::TLanguageString sNullTable("Tabelle ungültig (Nullzeiger).", "Table invalid (null pointer).");
}  // namespace

std::string sClassSection(const char* section, unsigned i) {
  return std::string(section ? section : "") + "/Class" + std::to_string(i);
}

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

void TPixelKlassifikator::vCreateTable(TKxTable* table) const {
  KX_TRY {
    if (!table) KX_THROW(Err::ulKlassifikatorIndex, sNullTable());
    table->vClear();
  }
  KX_CATCH
}

void TPixelKlassifikator::vAppendTable(TKxTable* table) const {
  KX_TRY {
    if (!table) KX_THROW(Err::ulKlassifikatorIndex, sNullTable());
    table->appendLine();
  }
  KX_CATCH
}

void TPixelKlassifikator::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(Err::ulKlassifikatorIndex, "ini file or section null");
    ini->vWriteInteger(section, "Type", eTyp);
    ini->vWriteString(section, "Signature", signatur.get());
    ini->vWriteBool(section, "NoDelete", bNoDelete);
    ini->vWriteInteger(section, "Size", static_cast<int>(uSize));
    ini->vWriteString(section, "Name", sName.c_str());
    for (unsigned i = 0; i < uSize; ++i) {
      const std::string cs = sClassSection(section, i);
      ini->vWriteString(cs.c_str(), "ClassName", classNames[i].c_str());
      ini->vWriteBool(cs.c_str(), "Rejection", rejection[i]);
    }
  }
  KX_CATCH
}

void TPixelKlassifikator::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(Err::ulKlassifikatorIndex, "ini file or section null");
    const int type = ini->iReadInteger(section, "Type", eTyp);
    if (type != eTyp) KX_THROW(Err::ulUnknownPixelTyp, sWrongType(), static_cast<int>(eTyp), type);
    const int size = ini->iReadInteger(section, "Size", static_cast<int>(uSize));
    if (size < 0 || static_cast<unsigned>(size) > uMaxClasses)
      KX_THROW(Err::ulKlassifikatorIndex, sBadSize(), size, uMaxClasses);
    const std::string sig = ini->sReadString(section, "Signature", signatur.get());
    signatur.set(sig.substr(0, TSignatur::uSize).c_str());
    bNoDelete = ini->bReadBool(section, "NoDelete", bNoDelete);
    resize(static_cast<unsigned>(size));
    sName = ini->sReadString(section, "Name", sName.c_str());
    for (unsigned i = 0; i < uSize; ++i) {
      const std::string cs = sClassSection(section, i);
      classNames[i] = ini->sReadString(cs.c_str(), "ClassName", classNames[i].c_str());
      rejection[i] = ini->bReadBool(cs.c_str(), "Rejection", rejection[i]);
    }
    setTimeStamp();
  }
  KX_CATCH
}

void TPixelKlassifikator::vClassifyPlane(const TPlaneBasic& src, TPlaneBasic& classes, bool) const {
  KX_TRY {
    classplane::vRows(src, classes, uSize, [&](int l, int c1, int c2, auto* out) {
      for (int c = c1; c <= c2; ++c) out[c - c1] = static_cast<std::remove_reference_t<decltype(*out)>>(getTyp(l, c));
    });
    classes.vSetTimeStamp();
  }
  KX_CATCH
}

TPixelKlassifikatorTyp* TPixelKlassifikatorTyp::pVirtualClone() const {
  auto* p = new TPixelKlassifikatorTyp;
  *p = *this;
  return p;
}

void TPixelKlassifikatorTyp::vClassifyPlane(const TPlaneBasic& src, TPlaneBasic& classes, bool withPlane) const {
  KX_TRY {
    auto typed = [&](auto tag) {
      using T = decltype(tag);
      const auto& plane = static_cast<const TPlane<T>&>(src);
      const TPlane<T>* passed = withPlane ? &plane : nullptr;
      classplane::vRows(src, classes, uSize, [&](int l, int c1, int c2, auto* out) {
        const T* row = plane[l];
        for (int c = c1; c <= c2; ++c)
          out[c - c1] = static_cast<std::remove_reference_t<decltype(*out)>>(getTyp(row[c], l, c, passed));
      });
    };
    switch (src.eGetPicturePT()) {
      case eUC: typed((unsigned char){}); break;
      case eUS: typed((unsigned short){}); break;
      case eF: typed(float{}); break;
      case eRGB: typed(TRGBPixel{}); break;
      case eRGBF: typed(TRGBFloatPixel{}); break;
      case eI: typed(int{}); break;
    }
    classes.vSetTimeStamp();
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
