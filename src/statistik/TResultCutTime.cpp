#include "statistik/TResultCutTime.h"

#include <cmath>
#include <typeinfo>

#include "file98/IniHelpers.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "platform/Clock.h"

namespace {
const TLanguage::TLanguageString sReferenz("Referenz", "Reference");
const TLanguage::TLanguageString sIndex("Index", "Index");
const TLanguage::TLanguageString sZeit("Zeit", "Time");
const TLanguage::TLanguageString sMotor("Motor als Refeferenz", "Motor as Reference");
}  // namespace

// ---------------------------------------------------------------- series

void TResultCutTime::addValue(double value, double area) { TResultBSchwerpunkt::addValue(value, area); }

void TResultCutTime::addValueLC(double value, double y, double x, double area, int line, int column) {
  _vAddLC(value, y, x, area, line, column);
}

void TResultCutTime::_vAppendRun() {
  if (bUseReferenz) {
    if (pdReferenz) dReferenz = *pdReferenz;
  } else if (bUseIndex) {
    dReferenz = uiGetAktPos();
  } else {
    const int64_t now = kx::platform::tickMs64();
    if (uSize == 0) {
      lStartTick = now;
      dReferenz = 0;
    } else {
      dReferenz = 0.001 * static_cast<double>(now - lStartTick);
    }
  }
  _vAppendCopy();
}

void TResultCutTime::_vAppendCopy() {
  vEntries.resize(uPos);
  vEntries.push_back(static_cast<const TResultBasic&>(*this));
  uSize = ++uPos;
}

bool TResultCutTime::_bResetIfPending() {
  if (!bResetPending) return false;
  vReset();
  bResetPending = false;
  return true;
}

void TResultCutTime::stop() {
  if (_bResetIfPending()) return;
  TResultBSchwerpunkt::stop();
  _vAppendRun();
}

void TResultCutTime::setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel) {
  TResultCut::setPictureProperties(plane, channel);
  if (bUseReferenz)
    setValueUnitRef(sReferenz(), "1");
  else if (bUseIndex)
    setValueUnitRef(sIndex(), "1");
  else
    setValueUnitRef(sZeit(), "s");
}

void TResultCutTime::vReset() {
  TResultCut::vReset();
  vEntries.clear();
  uSize = uPos = 0;
  bCutFirst = false;
}

void TResultCutTime::vMerge(const TResultBasic& o) { TResultStatistik::vMerge(o); }

void TResultCutTime::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TResultCut::vWriteIni(ini, section);
    WriteIniBool(*ini, section, "UseIndex", bUseIndex);
    WriteIniBool(*ini, section, "UseReference", bUseReferenz);
  }
  KX_CATCH
}

void TResultCutTime::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    TResultCut::vReadIni(ini, section);
    ReadIniBool(*ini, section, "UseIndex", bUseIndex);
    ReadIniBool(*ini, section, "UseReference", bUseReferenz);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- motor, focus

void TResultCutMotor::stop() {
  if (_bResetIfPending()) return;
  TResultBSchwerpunkt::stop();
  if (pdReferenz) dReferenz = *pdReferenz;
  _vAppendCopy();
}

const char* TResultCutMotor::strGetStatistikName() { return sMotor(); }

void TResultCutMotor::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TResultCutTime::vWriteIni(ini, section);
    WriteIniInteger(*ini, section, "MotorNumber", iMotorNumber);
  }
  KX_CATCH
}

void TResultCutMotor::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    TResultCutTime::vReadIni(ini, section);
    ReadIniInteger(*ini, section, "MotorNumber", iMotorNumber);
  }
  KX_CATCH
}

void TResultCutFocus::stop() {
  if (_bResetIfPending()) return;
  TResultBSchwerpunkt::stop();
}

void TResultCutFocus::stopVerlauf() { _vAppendRun(); }

// ---------------------------------------------------------------- window

void TResultCutTimeShort::addValue(double value, double area) { TResultBSchwerpunkt::addValue(value, area); }

void TResultCutTimeShort::addValueLC(double value, double y, double x, double area, int line, int column) {
  _vAddLC(value, y, x, area, line, column);
}

void TResultCutTimeShort::_vCorrectResult() {
  const int64_t now = kx::platform::tickMs64();
  const double mean = ResultX.dGetMean();
  aTimes[uWrite] = now;
  aMeans[uWrite] = mean;
  double count = 1, sum = mean, sum2 = mean * mean, lo = mean, hi = mean;
  bool expired = false;
  unsigned expiredAt = 0;
  for (unsigned i = uRead; i != uWrite; i = (i + 1) % uRing) {
    const double v = aMeans[i];
    count += 1;
    sum += v;
    sum2 += v * v;
    if (v < lo) lo = v;
    if (hi < v) hi = v;
    if (0.001 * static_cast<double>(now - aTimes[i]) > dSpan) expired = true, expiredAt = i;
  }
  double* erg = ResultX.dpGetErg();
  const double m = sum / count;
  double sigma = 0;
  if (count > 1) {
    sigma = (sum2 - count * m * m) * (1 / (count - 1));
    sigma = sigma < 0 ? 0 : std::sqrt(sigma);
  }
  erg[eMittel] = m;
  erg[eSigma] = sigma;
  erg[eMin] = lo;
  erg[eMax] = hi;
  uWrite = (uWrite + 1) % uRing;
  if (!bUseIndex) {
    if (expired && expiredAt > 0) uRead = expiredAt;
  } else if (count >= dSpan) {
    uRead = (uRead + 1) % uRing;
  }
}

void TResultCutTimeShort::stop() {
  TResultBSchwerpunkt::stop();
  if (bUseIndex) {
    dReferenz = uiGetAktPos();
  } else if (bUseTimeReference) {
    const int64_t now = kx::platform::tickMs64();
    if (uSize == 0) {
      lStartTick = now;
      dReferenz = 0;
    } else {
      dReferenz = 0.001 * static_cast<double>(now - lStartTick);
    }
  }
  _vCorrectResult();
  ShortResult = static_cast<const TResultBasic&>(*this);
  vEntries.resize(uPos);
  vEntries.push_back(ShortResult);
  uSize = ++uPos;
}

void TResultCutTimeShort::setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel) {
  TResultCut::setPictureProperties(plane, channel);
  if (bUseIndex)
    setValueUnitRef(sIndex(), "1");
  else
    setValueUnitRef(sZeit(), "s");
}

void TResultCutTimeShort::vReset() {
  uRead = uWrite = 0;
  TResultCut::vReset();
  vEntries.clear();
  uSize = uPos = 0;
  ShortResult.vReset();
}

void TResultCutTimeShort::vMerge(const TResultBasic& o) { TResultStatistik::vMerge(o); }

void TResultCutTimeShort::vCorrectReferenzOffset() {
  if (uSize == 0 || vEntries.empty()) return;
  const double last = vEntries[uSize - 1].dGetReferenzD();
  for (unsigned i = 0; i < uSize; ++i) vEntries[i].vSetReferenzD(vEntries[i].dGetReferenzD() - last);
}

void TResultCutTimeShort::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TResultCut::vWriteIni(ini, section);
    WriteIniBool(*ini, section, "ShortIndex", bUseIndex);
    WriteIniBool(*ini, section, "UseTimeReference", bUseTimeReference);
    WriteIniDouble(*ini, section, "Span", dSpan);
  }
  KX_CATCH
}

void TResultCutTimeShort::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    TResultCut::vReadIni(ini, section);
    double span = dSpan;
    ReadIniDouble(*ini, section, "Span", span);
    if (!(span >= 0) || !std::isfinite(span)) KX_THROW(0x5100000UL, "span %g of the window", span);
    ReadIniBool(*ini, section, "ShortIndex", bUseIndex);
    ReadIniBool(*ini, section, "UseTimeReference", bUseTimeReference);
    dSpan = span;
  }
  KX_CATCH
}
