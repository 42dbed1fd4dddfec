#include "statistik/TArcFilamentKlassifikator.h"

#include <climits>
#include <cstdio>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/RastrixErrors.h"

namespace {

const TLanguage::TLanguageString sIndex("Schwellenindex mit %d nicht im Bereich 0...%d",
                                        "Threshold index %d out of range 0...%d");
const TLanguage::TLanguageString sBadValue("Wert %s=%lld ungültig", "Value %s=%lld invalid");

std::string key(const char* form, unsigned i) {
  char buf[64];
  std::snprintf(buf, sizeof buf, form, static_cast<int>(i));
  return buf;
}

unsigned uRead(TKxIniFile* ini, const char* section, const char* k, unsigned def, long long max) {
  const long long v = ini->iReadLongLong(section, k, def);
  if (v < 0 || v > max) KX_THROW(Rastrix::Err::ulKlassifikatorIndex, sBadValue(), k, v);
  return static_cast<unsigned>(v);
}

}  // namespace

TArcFilamentKlassifikatorBasic::TArcFilamentKlassifikatorBasic() = default;

TArcFilamentKlassifikatorBasic& TArcFilamentKlassifikatorBasic::operator=(const TArcFilamentKlassifikatorBasic& o) {
  if (this == &o) return *this;
  TPixelKlassifikator::operator=(o);
  eCalcMethod = o.eCalcMethod;
  thresholds = o.thresholds;
  labels = o.labels;
  uiNMax = o.uiNMax;
  sMax = o.sMax;
  uiNSectionalView = o.uiNSectionalView;
  sSectionalView = o.sSectionalView;
  return *this;
}

void TArcFilamentKlassifikatorBasic::_vCheck(unsigned i) const {
  if (i >= thresholds.size())
    KX_THROW(Rastrix::Err::ulKlassifikatorIndex, sIndex(), static_cast<int>(i), static_cast<int>(thresholds.size()) - 1);
}

void TArcFilamentKlassifikatorBasic::vSetCalcMethod(eAFCalcMethod e) {
  eCalcMethod = e;
  setTimeStamp();
}

void TArcFilamentKlassifikatorBasic::vSetThresholdNumber(unsigned n) {
  KX_TRY {
    if (n > uMaxThresholds) KX_THROW(Rastrix::Err::ulKlassifikatorIndex, sBadValue(), "ThresholdCount", static_cast<long long>(n));
    thresholds.resize(n, 0.0);
    labels.resize(n, "s");
    setTimeStamp();
  }
  KX_CATCH
}

double TArcFilamentKlassifikatorBasic::dGetThreshold(unsigned i) const {
  KX_TRY {
    _vCheck(i);
    return thresholds[i];
  }
  KX_CATCH
}

void TArcFilamentKlassifikatorBasic::vSetThreshold(unsigned i, double value) {
  KX_TRY {
    _vCheck(i);
    thresholds[i] = value;
    setTimeStamp();
  }
  KX_CATCH
}

const std::string& TArcFilamentKlassifikatorBasic::strGetThreshold(unsigned i) const {
  KX_TRY {
    _vCheck(i);
    return labels[i];
  }
  KX_CATCH
}

void TArcFilamentKlassifikatorBasic::vSetStrThreshold(unsigned i, const std::string& label) {
  KX_TRY {
    _vCheck(i);
    labels[i] = label;
    setTimeStamp();
  }
  KX_CATCH
}

void TArcFilamentKlassifikatorBasic::vSetNMax(unsigned n) {
  uiNMax = n;
  setTimeStamp();
}
void TArcFilamentKlassifikatorBasic::vSetStrMax(const std::string& s) {
  sMax = s;
  setTimeStamp();
}
void TArcFilamentKlassifikatorBasic::vSetNSectionalView(unsigned n) {
  uiNSectionalView = n;
  setTimeStamp();
}
void TArcFilamentKlassifikatorBasic::vSetStrSectionalView(const std::string& s) {
  sSectionalView = s;
  setTimeStamp();
}

void TArcFilamentKlassifikatorBasic::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TPixelKlassifikator::vWriteIni(ini, section);
    ini->vWriteInteger(section, "ArcFilamentCalcMethod", eCalcMethod);
    ini->vWriteInteger(section, "ArcFilamentThresholdCount", static_cast<int>(thresholds.size()));
    for (unsigned i = 0; i < thresholds.size(); ++i) {
      ini->vWriteFloat(section, key("ArcFilamentThreshold%d", i).c_str(), thresholds[i]);
      ini->vWriteString(section, key("ArcFilamentThresholdStr%d", i).c_str(), labels[i].c_str());
    }
    ini->vWriteLongLong(section, "ArcFilamentNMax", uiNMax);
    ini->vWriteString(section, "ArcFilamentNMaxStr", sMax.c_str());
    ini->vWriteLongLong(section, "ArcFilamentNSectionalView", uiNSectionalView);
    ini->vWriteString(section, "ArcFilamentNSectionalViewStr", sSectionalView.c_str());
  }
  KX_CATCH
}

void TArcFilamentKlassifikatorBasic::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    TPixelKlassifikator::vReadIni(ini, section);
    const int method = ini->iReadInteger(section, "ArcFilamentCalcMethod", eCalcMethod);
    if (method != eSectionalView && method != eProjection)
      KX_THROW(Rastrix::Err::ulKlassifikatorIndex, sBadValue(), "ArcFilamentCalcMethod", static_cast<long long>(method));
    const unsigned n = uRead(ini, section, "ArcFilamentThresholdCount", uiGetThresholdNumber(), uMaxThresholds);
    const unsigned nMax = uRead(ini, section, "ArcFilamentNMax", uiNMax, INT_MAX);
    const unsigned nView = uRead(ini, section, "ArcFilamentNSectionalView", uiNSectionalView, INT_MAX);
    eCalcMethod = static_cast<eAFCalcMethod>(method);
    thresholds.resize(n, 0.0);
    labels.resize(n, "s");
    for (unsigned i = 0; i < n; ++i) {
      thresholds[i] = ini->dReadFloat(section, key("ArcFilamentThreshold%d", i).c_str(), thresholds[i]);
      labels[i] = ini->sReadString(section, key("ArcFilamentThresholdStr%d", i).c_str(), labels[i].c_str());
    }
    uiNMax = nMax;
    sMax = ini->sReadString(section, "ArcFilamentNMaxStr", sMax.c_str());
    uiNSectionalView = nView;
    sSectionalView = ini->sReadString(section, "ArcFilamentNSectionalViewStr", sSectionalView.c_str());
    setTimeStamp();
  }
  KX_CATCH
}

TArcKlassifikator::TArcKlassifikator() {
  eTyp = eArc;
  sName = "Bogen";
}
TArcKlassifikator* TArcKlassifikator::pVirtualClone() const {
  auto* p = new TArcKlassifikator;
  *p = *this;
  return p;
}

TFilamentKlassifikator::TFilamentKlassifikator() {
  eTyp = eFilament;
  sName = "Wendel";
}
TFilamentKlassifikator* TFilamentKlassifikator::pVirtualClone() const {
  auto* p = new TFilamentKlassifikator;
  *p = *this;
  return p;
}
