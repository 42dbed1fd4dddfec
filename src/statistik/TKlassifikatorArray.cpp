#include "statistik/TKlassifikatorArray.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <typeinfo>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TKxClipboard.h"
#include "kxexception/TKxTable.h"
#include "kxexception/TLanguage.h"
#include "platform/AtomicFile.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TPixelKlassifikatorTypThreshold.h"
#include "rastrix/TRGBPixel.h"
#include "statistik/TArcFilamentKlassifikator.h"

using namespace Rastrix;

namespace {

constexpr unsigned long ulArray = Err::ulKlassifikatorIndex;  // 0x5100000
constexpr unsigned long ulAkt = Err::ulUnknownPixelTyp;       // 0x7000000

const TLanguage::TLanguageString sNull("Klassifikator ungültig (Nullzeiger).", "Classifier invalid (null pointer).");
const TLanguage::TLanguageString sBadIndex("Klassifikatorindex %d nicht im Bereich 0...%d",
                                           "Classifier index %d out of range 0...%d");
const TLanguage::TLanguageString sNoIni("Ini-File ungültig.", "Ini file invalid.");
const TLanguage::TLanguageString sNoSection("Ini-File Sektion ungültig.", "Ini file section invalid.");
const TLanguage::TLanguageString sNoType("Kann keine Instance vom Typ %d der Klassifikatoren erzeugen.",
                                         "Cannot create a classifier instance of type %d.");
const TLanguage::TLanguageString sNoPixel("Pixeltyp vom Typ %d ist nicht verfügbar.", "Pixel type %d is not available.");
const TLanguage::TLanguageString sNoFile("File %s kann nicht erzeugt werden.", "File %s cannot be created.");
const TLanguage::TLanguageString sBadNumber("Klassifikatoranzahl %d ungültig.", "Number of classifiers %d invalid.");

const TLanguage::TLanguageString sStandard("Standard", "Standard");
const TLanguage::TLanguageString sIntegral("Integral", "Integral");
const TLanguage::TLanguageString sLuminance("Leuchtdichte", "Luminance");
const TLanguage::TLanguageString sSymbol("Symbol", "Symbol");
const TLanguage::TLanguageString sArc("Bogen", "Arc");
const TLanguage::TLanguageString sFilament("Wendel", "Filament");
const TLanguage::TLanguageString sIntegralRGBF("Integral RGBFloat", "Integral RGBFloat");
const TLanguage::TLanguageString sSymbolRGBF("Symbol RGBFloat", "Symbol RGBFloat");
const TLanguage::TLanguageString sThresholdUC("Schwellen (UC)", "Threshold (UC)");
const TLanguage::TLanguageString sThresholdUS("Schwellen (US)", "Threshold (US)");
const TLanguage::TLanguageString sThresholdF("Schwellen (F)", "Threshold (F)");
const TLanguage::TLanguageString sThresholdRGB("Schwellen (RGB)", "Threshold (RGB)");
const TLanguage::TLanguageString sThresholdRGBF("Schwellen (RGBF)", "Threshold (RGBF)");

// The three classes of a luminance, integral or symbol classifier.
void vThreeClasses(TPixelKlassifikator* p, const char* c0) {
  p->resize(0);
  p->vSetClassName(0, c0);
  p->vSetClassName(1, "-");
  p->vSetClassName(2, "H");
  p->vSetRejection(1, true);
}

bool bSameType(const TPixelKlassifikator* a, const TPixelKlassifikator* b) { return typeid(*a) == typeid(*b); }

}  // namespace

TKlassifikatorArray::TKlassifikatorArray() { notModified = stamp; }

TKlassifikatorArray::~TKlassifikatorArray() = default;

void TKlassifikatorArray::_vCheck(unsigned index) const {
  if (index >= items.size()) KX_THROW(ulArray, sBadIndex(), static_cast<int>(index), static_cast<int>(items.size()) - 1);
}

void TKlassifikatorArray::vAdd(TPixelKlassifikator* p) {
  KX_TRY {
    if (!p) KX_THROW(ulArray, sNull());
    if (p != pGetDefaultPixelKlassifikator()) {
      bool known = false;
      for (const auto& o : owned) known = known || o.get() == p;
      if (!known) owned.emplace_back(p);
    }
    items.push_back(p);
    _vChanged();
  }
  KX_CATCH
}

void TKlassifikatorArray::vDelete(unsigned index) {
  KX_TRY {
    _vCheck(index);
    if (items[index]->bIsNoDelete()) return;
    items[index]->vSetErase(true);
    if (index == uiAkt) uiAkt = uiGetNewAkt();
    _vChanged();
  }
  KX_CATCH
}

unsigned TKlassifikatorArray::uiGetNewAkt() const {
  if (uiAkt >= items.size()) return 0;
  for (unsigned i = 0; i < items.size(); ++i)
    if (!items[i]->bIsErase() && bSameType(items[i], items[uiAkt])) return i;
  return 0;
}

void TKlassifikatorArray::vClear() {
  if (!bNoDeleteArray)
    for (TPixelKlassifikator* p : items)
      if (p != pGetDefaultPixelKlassifikator()) p->vSetErase(true);
  uiAkt = 0;
  items.clear();
  _vChanged();
}

TPixelKlassifikator* TKlassifikatorArray::operator[](unsigned index) const {
  KX_TRY {
    _vCheck(index);
    return items[index];
  }
  KX_CATCH
}

TPixelKlassifikator* TKlassifikatorArray::pGetAktKlassifikator() const {
  KX_TRY {
    if (uiAkt >= items.size())
      KX_THROW(ulAkt, sBadIndex(), static_cast<int>(uiAkt), static_cast<int>(items.size()) - 1);
    return items[uiAkt];
  }
  KX_CATCH
}

void TKlassifikatorArray::vSetAktKlassifikator(unsigned index) {
  KX_TRY {
    _vCheck(index);
    uiAkt = index;
    _vChanged();
  }
  KX_CATCH
}

void TKlassifikatorArray::vSetAktKlassifikator(const TPixelKlassifikator* p) {
  for (unsigned i = 0; i < items.size(); ++i)
    if (items[i] == p) {
      uiAkt = i;
      _vChanged();
      return;
    }
}

TPixelKlassifikator* TKlassifikatorArray::pGetKlassifikatorType(const TPixelKlassifikator* sample) const {
  KX_TRY {
    if (!sample) KX_THROW(ulArray, sNull());
    for (TPixelKlassifikator* p : items)
      if (!p->bIsErase() && bSameType(p, sample)) return p;
    return nullptr;
  }
  KX_CATCH
}

int TKlassifikatorArray::iGetIndex(const TPixelKlassifikator* p) const {
  if (!p) return -1;
  for (unsigned i = 0; i < items.size(); ++i)
    if (!items[i]->bIsErase() && items[i]->rGetSignatur() == p->rGetSignatur()) return static_cast<int>(i);
  return -1;
}

bool TKlassifikatorArray::bIsClassificatorName(const char* name) const {
  if (!name) return false;
  for (const TPixelKlassifikator* p : items)
    if (!p->bIsErase() && p->rStrGetKlassifikatorName() == name) return true;
  return false;
}

std::string TKlassifikatorArray::strGetNewClassName(const std::string& base) const {
  const std::string stem = base.substr(0, base.find('['));
  for (unsigned long long i = 0;; ++i) {
    const std::string name = stem + "[" + std::to_string(i) + "]";
    if (!bIsClassificatorName(name.c_str())) return name;
  }
}

void TKlassifikatorArray::vSetNoDelete(unsigned index, bool b) {
  KX_TRY {
    _vCheck(index);
    items[index]->vSetNoDelete(b);
    _vChanged();
  }
  KX_CATCH
}

bool TKlassifikatorArray::bIsNoDelete(unsigned index) const {
  KX_TRY {
    _vCheck(index);
    return items[index]->bIsNoDelete();
  }
  KX_CATCH
}

TPixelKlassifikator* TKlassifikatorArray::_pExistInListThreshold(double lower, double upper) const {
  for (TPixelKlassifikator* p : items) {
    if (p->bIsErase()) continue;
    auto* c = dynamic_cast<TPixelKlassifikatorTypThresholdContrast<float>*>(p);
    if (!c || c->size() < 2) continue;
    const double t0 = c->dGetThreshold(0), t1 = c->dGetThreshold(1);
    const double q0 = std::fabs(lower) > 1e-10 ? t0 / lower : 0.0;
    const double q1 = std::fabs(upper) > 1e-10 ? t1 / upper : 0.0;
    const bool match = q0 != 0.0 && q1 != 0.0
                           ? std::fabs(q0 - 1) < 0.001 && std::fabs(q1 - 1) < 0.001
                           : std::fabs(t0 - lower) < 1e-5 && std::fabs(t1 - upper) < 1e-5;
    if (match) return p;
  }
  return nullptr;
}

TPixelKlassifikator* TKlassifikatorArray::pAddLuminanceType(double lower, double upper) {
  KX_TRY {
    if (TPixelKlassifikator* p = _pExistInListThreshold(lower, upper)) return p;
    auto c = std::make_unique<TPixelKlassifikatorTypThresholdContrast<float>>();
    vThreeClasses(c.get(), "D");
    c->vSetKlassifikatorName(strGetNewClassName(sLuminance()));
    c->vSetThreshold(0, lower);
    c->vSetThreshold(1, upper);
    TPixelKlassifikator* p = c.release();
    vAdd(p);
    return p;
  }
  KX_CATCH
}

void TKlassifikatorArray::vAddDefaults() {
  KX_TRY {
    auto living = [&](const TPixelKlassifikator& sample) {
      for (const TPixelKlassifikator* p : items)
        if (!p->bIsErase() && bSameType(p, &sample)) return true;
      return false;
    };
    auto add = [&](std::unique_ptr<TPixelKlassifikator> p, const char* name, const char* c0, bool reject0) {
      if (living(*p)) return;
      if (c0) {
        vThreeClasses(p.get(), c0);
        if (reject0) p->vSetRejection(0, true);
      }
      p->vSetKlassifikatorName(name);
      p->vSetNoDelete(true);
      vAdd(p.release());
    };
    {
      TPixelKlassifikator* def = pGetDefaultPixelKlassifikator();
      if (!living(*def)) {
        def->vSetErase(false);
        def->vSetKlassifikatorName(sStandard());
        def->vSetNoDelete(true);
        vAdd(def);
      }
    }
    add(std::make_unique<TPixelKlassifikatorTypThresholdIntegral<float>>(), sIntegral(), "D", false);
    add(std::make_unique<TPixelKlassifikatorTypThresholdContrast<float>>(), sLuminance(), "D", false);
    add(std::make_unique<TPixelKlassifikatorTypThresholdSymbol<float>>(), sSymbol(), "D", false);
    add(std::make_unique<TArcKlassifikator>(), sArc(), nullptr, false);
    add(std::make_unique<TFilamentKlassifikator>(), sFilament(), nullptr, false);
    add(std::make_unique<TPixelKlassifikatorTypThresholdIntegral<TRGBFloatPixel>>(), sIntegralRGBF(), "-", true);
    add(std::make_unique<TPixelKlassifikatorTypThresholdSymbol<TRGBFloatPixel>>(), sSymbolRGBF(), "-", true);
    add(std::make_unique<TPixelKlassifikatorTypThreshold<unsigned char>>(), sThresholdUC(), nullptr, false);
    add(std::make_unique<TPixelKlassifikatorTypThreshold<unsigned short>>(), sThresholdUS(), nullptr, false);
    add(std::make_unique<TPixelKlassifikatorTypThreshold<float>>(), sThresholdF(), nullptr, false);
    add(std::make_unique<TPixelKlassifikatorTypThreshold<TRGBPixel>>(), sThresholdRGB(), nullptr, false);
    add(std::make_unique<TPixelKlassifikatorTypThreshold<TRGBFloatPixel>>(), sThresholdRGBF(), nullptr, false);
  }
  KX_CATCH
}

void TKlassifikatorArray::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    vClear();
    vReadIniAppend(ini, section);
    vAddDefaults();
  }
  KX_CATCH
}

void TKlassifikatorArray::vReadIniAppend(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini) KX_THROW(ulArray, sNoIni());
    if (!section) KX_THROW(ulArray, sNoSection());
    const int akt = ini->iReadInteger(section, "AktKlassifikator", 0);
    const int n = ini->iReadInteger(section, "KlassifikatorNumber", 0);
    if (n < 0) KX_THROW(ulArray, sBadNumber(), n);
    uiAkt = akt < 0 ? 0 : static_cast<unsigned>(akt);
    for (int i = 0; i < n; ++i) {
      const std::string entry = std::string(section) + "/Klassifikator" + std::to_string(i);
      const int type = ini->iReadInteger(entry.c_str(), "Type", -1);
      std::unique_ptr<TPixelKlassifikator> made;
      TPixelKlassifikator* p = nullptr;
      switch (type) {
        case TPixelKlassifikator::eDefault: p = pGetDefaultPixelKlassifikator(); break;
        case TPixelKlassifikator::eThreshold:
        case TPixelKlassifikator::eIntegral:
        case TPixelKlassifikator::eLuminance:
        case TPixelKlassifikator::eSymbol: {
          const int pt = ini->iReadInteger(entry.c_str(), "PixelType", -1);
          switch (pt) {
            case eUC: made = std::make_unique<TPixelKlassifikatorTypThreshold<unsigned char>>(); break;
            case eUS: made = std::make_unique<TPixelKlassifikatorTypThreshold<unsigned short>>(); break;
            case eF:
              if (type == TPixelKlassifikator::eIntegral)
                made = std::make_unique<TPixelKlassifikatorTypThresholdIntegral<float>>();
              else if (type == TPixelKlassifikator::eLuminance)
                made = std::make_unique<TPixelKlassifikatorTypThresholdContrast<float>>();
              else if (type == TPixelKlassifikator::eSymbol)
                made = std::make_unique<TPixelKlassifikatorTypThresholdSymbol<float>>();
              else
                made = std::make_unique<TPixelKlassifikatorTypThreshold<float>>();
              break;
            case eRGB: made = std::make_unique<TPixelKlassifikatorTypThreshold<TRGBPixel>>(); break;
            case eRGBF:
              if (type == TPixelKlassifikator::eIntegral)
                made = std::make_unique<TPixelKlassifikatorTypThresholdIntegral<TRGBFloatPixel>>();
              else if (type == TPixelKlassifikator::eSymbol)
                made = std::make_unique<TPixelKlassifikatorTypThresholdSymbol<TRGBFloatPixel>>();
              else
                made = std::make_unique<TPixelKlassifikatorTypThreshold<TRGBFloatPixel>>();
              break;
            default: KX_THROW(ulArray, sNoPixel(), pt);
          }
          break;
        }
        case TPixelKlassifikator::eArc: made = std::make_unique<TArcKlassifikator>(); break;
        case TPixelKlassifikator::eFilament: made = std::make_unique<TFilamentKlassifikator>(); break;
        default: KX_THROW(ulArray, sNoType(), type);
      }
      if (made) p = made.get();
      p->vReadIni(ini, entry.c_str());
      vAdd(made ? made.release() : p);
    }
  }
  KX_CATCH
}

void TKlassifikatorArray::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini) KX_THROW(ulArray, sNoIni());
    if (!section) KX_THROW(ulArray, sNoSection());
    ini->vDeleteSection(section);
    ini->vDeleteSubsections((std::string(section) + "/").c_str());
    int written = 0, akt = 0;
    for (unsigned i = 0; i < items.size(); ++i) {
      if (items[i]->bIsErase()) continue;
      if (i == uiAkt) akt = written;
      const std::string entry = std::string(section) + "/Klassifikator" + std::to_string(written);
      items[i]->vWriteIni(ini, entry.c_str());
      ++written;
    }
    ini->vWriteInteger(section, "AktKlassifikator", akt);
    ini->vWriteInteger(section, "KlassifikatorNumber", written);
  }
  KX_CATCH
}

void TKlassifikatorArray::vMakeTableArray(std::vector<TKxTable>& tables) const {
  KX_TRY {
    tables.clear();
    std::vector<const TPixelKlassifikator*> firsts;
    for (const TPixelKlassifikator* p : items) {
      if (p->bIsErase()) continue;
      std::size_t k = 0;
      while (k < firsts.size() && !bSameType(firsts[k], p)) ++k;
      if (k == firsts.size()) {
        firsts.push_back(p);
        tables.emplace_back();
        p->vCreateTable(&tables.back());
      }
      p->vAppendTable(&tables[k]);
    }
  }
  KX_CATCH
}

void TKlassifikatorArray::vFillFirstTable(TKxTable& table) const {
  KX_TRY {
    table.vClear();
    const TPixelKlassifikator* akt = uiAkt < items.size() ? items[uiAkt] : nullptr;
    if (!akt) return;
    akt->vCreateTable(&table);
    for (const TPixelKlassifikator* p : items)
      if (!p->bIsErase() && bSameType(p, akt)) p->vAppendTable(&table);
  }
  KX_CATCH
}

void TKlassifikatorArray::vExport(const char* fileName) const {
  KX_TRY {
    std::vector<TKxTable> tables;
    vMakeTableArray(tables);
    std::string text;
    for (const TKxTable& t : tables) text += vTable2String(t) + "\r\n";
    if (!fileName) {
      TKxClipboard::vSetText(text);
      return;
    }
    if (!kx::platform::writeFileAtomic(fileName, text)) KX_THROW(ulArray, sNoFile(), fileName);
  }
  KX_CATCH
}
