#include "statistik/TStatistikBasic.h"

#include <cstdio>

#include "file98/IniHelpers.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "statistik/TResultCutTime.h"
#include "statistik/TResultHist.h"
#include "statistik/TResultProjection.h"

using namespace Rastrix;

namespace {

constexpr unsigned long ulBadArgument = 0x5100000UL;
constexpr unsigned long ulInternal = 0x7000000UL;

const TLanguage::TLanguageString sNames[] = {
    {"Standard", "Default"},
    {"Auswertung", "Evaluation"},
    {"Schnitt", "Sectional view"},
    {"Histogramm", "Histogram"},
    {"Zeitstatistik", "Time statistics"},
    {"Bit-Histogramm", "Bit histogram"},
    {"Projektion", "Projection"},
    {"Indexschnitt", "Sectional index view"},
    {"Referenzschnitt", "Sectional reference view"},
    {"Integralobjekt", "Integral object"},
    {"Leuchtdichteobjekt", "Luminance object"},
    {"Kurzzeitstatistik", "Short time statistics"},
    {"Symbolmessung", "Symbol measurement"},
    {"Motor als Refeferenz", "Motor as Reference"},
    {"Bogenobjekt", "Arc measurement"},
    {"Wendelobjekt", "Filament measurement"},
    {"Focusbestimmung", "Focus measurement"},
};
const TLanguage::TLanguageString sUnknown("Statistik vom Typ %d nicht bekannt.", "Unknown statistic %d");
const TLanguage::TLanguageString sRed("Rot", "Red");
const TLanguage::TLanguageString sGreen("Grün", "Green");
const TLanguage::TLanguageString sBlue("Blau", "Blue");
const std::string sEmpty;

}  // namespace

const char* strGetStatistikName(int type) {
  if (type < 0 || type > eStatTypFocus) return "";
  return sNames[type]();
}

double& rGetReferenzValue() {
  static double value = 0;
  return value;
}

TResultStatistik* TStatistikBasic::pGetStatPtr(int type) {
  KX_TRY {
    switch (type) {
      case eStatTypStandard:
      case eStatTypAuswertung:
      case eStatTypIntegral:
      case eStatTypLeuchtdichte:
      case eStatTypSymbol: return new TResultStatistik;
      case eStatTypSchnitt: return new TResultCutXY;
      case eStatTypHistogramm: return new TResultHist;
      case eStatTypZeit: return new TResultCutTime;
      case eStatTypBitHistogramm: return new TResultBitHist;
      case eStatTypProjektion: return new TResultProjection;
      case eStatTypIndexschnitt: {
        auto* t = new TResultCutTime;
        t->vSetUseIndex(true);
        return t;
      }
      case eStatTypReferenzschnitt: {
        auto* t = new TResultCutTime;
        t->vSetUseReferenz(true);
        t->vSetReferenzPointer(&rGetReferenzValue());
        return t;
      }
      case eStatTypKurzzeit: return new TResultCutTimeShort;
      case eStatTypMotor: return new TResultCutMotor;
      case eStatTypFocus: return new TResultCutFocus;
      default:  // arcs and filaments come with their own evaluation
        KX_THROW(ulBadArgument, sUnknown(), type);
    }
  }
  KX_CATCH
}

TStatistikBasic::TStatistikBasic(eComparePixelTyp type, const TResultStatistik* result) : ePixelTyp(type) {
  KX_TRY {
    if (!result) KX_THROW(ulInternal, "result null");
    switch (type) {
      case eUC: pUC = std::make_unique<TPicStatistik1UC>(); break;
      case eUS: pUS = std::make_unique<TPicStatistik1US>(); break;
      case eF: pF = std::make_unique<TPicStatistik1F>(); break;
      case eRGB: pRGB = std::make_unique<TPicStatistikRGB>(); break;
      case eRGBF: pRGBF = std::make_unique<TPicStatistikRGBFloat>(); break;
      case eI: pI = std::make_unique<TPicStatistik1I>(); break;
      default: KX_THROW(ulBadArgument, "Pixeltyp %d unbekannt / pixel type %d not known", type, type);
    }
    const unsigned groups = uGetGroupCount();
    visit([&](auto& s) {
      for (unsigned g = 0; g < groups; ++g) s.vSetResult(g, result);
    });
    if (groups == 3)
      GroupNames = {sRed(), sGreen(), sBlue()};
    else
      GroupNames = {""};
  }
  KX_CATCH
}

TStatistikBasic::~TStatistikBasic() = default;

void TStatistikBasic::vGetValueRangeMSM(double* min, double* step, double* max) const {
  vGetDefaultValueRangeMSM(ePixelTyp, min, step, max);
}

const std::string& TStatistikBasic::strGetGroupName(unsigned i) const {
  return i < GroupNames.size() ? GroupNames[i] : sEmpty;
}

void TStatistikBasic::vSetGroupName(unsigned i, const std::string& s) {
  KX_TRY {
    if (i >= GroupNames.size()) KX_THROW(ulBadArgument, "Gruppe %u / group %u", i, i);
    GroupNames[i] = s;
  }
  KX_CATCH
}

void TStatistikBasic::vGetSourceKSName(std::string& x, std::string& y, std::string& area) const {
  x = OwnSourceXName, y = OwnSourceYName, area = OwnSourceAreaName;
}

TPixelKlassifikator* TStatistikBasic::pGetKlassifikator() const {
  TPixelKlassifikator* k = nullptr;
  visit([&](auto& s) { k = s.pGetKlassifikator(); });
  return k;
}

void TStatistikBasic::vSetKlassifikator(TPixelKlassifikator* p) {
  visit([&](auto& s) { s.vSetKlassifikator(p); });
  bNewCalc = true;
}

void TStatistikBasic::start() {
  visit([](auto& s) { s.start(); });
}
void TStatistikBasic::vReset() {
  visit([](auto& s) { s.vReset(); });
}
void TStatistikBasic::stop() {
  visit([](auto& s) { s.stop(); });
  if (eGetPicStatistikType() == eStatIntegral || eGetPicStatistikType() == eStatSymbol) vIntegralStop();
}

void TStatistikBasic::vIntegralStop() {
  const unsigned groups = uGetGroupCount();
  if (uGetKlassifikatorSize() <= 2) return;
  for (unsigned g = 0; g < groups; ++g) {
    TResultBasicData& c1 = getResult(g, 1)->rRGetXResult();
    TResultBasicData& c2 = getResult(g, 2)->rRGetXResult();
    if (c1.dGetArea() > 0 && c2.dGetCount() > 0) {
      c2.vSetMean((c2.dGetMean() * c2.dGetCount() + c1.dGetMean() * c1.dGetCount()) / c2.dGetCount());
      c1.vSetMean(0);
    }
  }
}

bool TStatistikBasic::bNeedUpdate(bool& newCalc) {
  bool need = bFirst;
  const TPixelKlassifikator* k = pGetKlassifikator();
  if (bNewCalc || (k && stamp_ < k->getTimeStamp())) {
    newCalc = true;
    need = true;
  }
  return need;
}

bool TStatistikBasic::bConditionalUpdate(bool force) {
  KX_TRY {
    bool newCalc = force;
    const bool need = bNeedUpdate(newCalc);
    if (need) {
      if (newCalc) {
        vReset();
        start();
      }
      loopLC();
      stop();
    }
    return need;
  }
  KX_CATCH
}

TResultStatistik* TStatistikBasic::getResult(unsigned group, unsigned cls) {
  KX_TRY {
    TResultStatistik* r = nullptr;
    visit([&](auto& s) { r = s.getResult(group, cls); });
    if (!r) KX_THROW(ulInternal, "Statistik Ergebnisse Gruppe: %u, Klasse: %u ungültig", group, cls);
    return r;
  }
  KX_CATCH
}

unsigned TStatistikBasic::uGetGroupCount() const {
  unsigned n = 0;
  visit([&](auto& s) { n = s.uGetGroupCount(); });
  return n;
}

unsigned TStatistikBasic::uGetKlassifikatorSize() {
  unsigned n = 0;
  visit([&](auto& s) { n = s.uGetKlassifikatorSize(); });
  return n;
}

void TStatistikBasic::vLock(bool b) {
  visit([&](auto& s) { s.vLock(b); });
}
bool TStatistikBasic::bIsLock() const {
  bool b = false;
  visit([&](auto& s) { b = s.bIsLock(); });
  return b;
}
void TStatistikBasic::vFirstLock(bool b) {
  visit([&](auto& s) { s.vFirstLock(b); });
}
bool TStatistikBasic::bIsFirstLock() const {
  bool b = false;
  visit([&](auto& s) { b = s.bIsFirstLock(); });
  return b;
}
EPicStatistikType TStatistikBasic::eGetPicStatistikType() const {
  EPicStatistikType t = eStatStandard;
  visit([&](auto& s) { t = s.eGetPicStatistikType(); });
  return t;
}
void TStatistikBasic::setPicStatistikType(EPicStatistikType t) {
  visit([&](auto& s) { s.setPicStatistikType(t); });
}
void TStatistikBasic::setReferenzCursorXY(double x, double y) {
  visit([&](auto& s) { s.setReferenzCursorXY(x, y); });
}

void TStatistikBasic::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(ulBadArgument, "ini file or section null");
    WriteIniInteger(*ini, section, "ePixelTyp", ePixelTyp);
    WriteIniInteger(*ini, section, "GroupNameSize", static_cast<int>(GroupNames.size()));
    char key[32];
    for (std::size_t i = 0; i < GroupNames.size(); ++i) {
      std::snprintf(key, sizeof key, "GroupName%zu", i);
      WriteIniString(*ini, section, key, GroupNames[i]);
    }
    WriteIniString(*ini, section, "OwnObjectName", OwnObjectName);
    WriteIniString(*ini, section, "OwnSourceName", OwnSourceName);
    WriteIniString(*ini, section, "OwnSourceXName", OwnSourceXName);
    WriteIniString(*ini, section, "OwnSourceYName", OwnSourceYName);
    WriteIniString(*ini, section, "OwnSourceAreaName", OwnSourceAreaName);
    visit([&](auto& s) { s.vWriteIni(ini, section); });
  }
  KX_CATCH
}

void TStatistikBasic::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(ulBadArgument, "ini file or section null");
    int type = ePixelTyp;
    ReadIniInteger(*ini, section, "ePixelTyp", type);
    if (type != ePixelTyp)
      KX_THROW(ulBadArgument, "Pixeltyp %d statt %d / pixel type %d instead of %d", type, ePixelTyp, type, ePixelTyp);
    char key[32];
    for (std::size_t i = 0; i < GroupNames.size(); ++i) {
      std::snprintf(key, sizeof key, "GroupName%zu", i);
      ReadIniString(*ini, section, key, GroupNames[i]);
    }
    ReadIniString(*ini, section, "OwnObjectName", OwnObjectName);
    ReadIniString(*ini, section, "OwnSourceName", OwnSourceName);
    ReadIniString(*ini, section, "OwnSourceXName", OwnSourceXName);
    ReadIniString(*ini, section, "OwnSourceYName", OwnSourceYName);
    ReadIniString(*ini, section, "OwnSourceAreaName", OwnSourceAreaName);
    visit([&](auto& s) { s.vReadIni(ini, section); });
    bNewCalc = true;
  }
  KX_CATCH
}

void TDoubleStatistikBasic::vSetSingle(double value, const std::vector<double>& profile) {
  KX_TRY {
    TResultStatistik* r = getResult(0, 0);
    r->addValue(value, 1.0);
    if (auto* cut = dynamic_cast<TResultCut*>(r)) cut->vTakeOverCut(profile);
  }
  KX_CATCH
}

void TDoubleStatistikBasic::vSetVector(const std::vector<double>& x, const std::vector<double>& y) {
  KX_TRY {
    if (x.size() != y.size()) KX_THROW(ulBadArgument, "%zu x-Werte, %zu y-Werte / x and y values", x.size(), y.size());
    TResultStatistik* r = getResult(0, 0);
    for (std::size_t i = 0; i < x.size(); ++i) r->addValueLC(y[i], 0, x[i], 1.0, 0, static_cast<int>(i));
  }
  KX_CATCH
}
