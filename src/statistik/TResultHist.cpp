#include "statistik/TResultHist.h"

#include <cmath>
#include <cstdint>
#include <typeinfo>

#include "file98/IniHelpers.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/TPlane.h"
#include "rastrix/TPlaneBasic.h"

namespace {

constexpr unsigned long ulBadArgument = 0x5100000UL;
const TLanguage::TLanguageString sCount("Anzahl", "Count");

template <class T>
bool bScalarMinMax(const Rastrix::TPlaneBasic* plane, double& min, double& max) {
  const auto* p = dynamic_cast<const Rastrix::TPlane<T>*>(plane);
  if (!p) return false;
  T lo{}, hi{};
  p->calcMinMax(lo, hi);
  min = static_cast<double>(lo);
  max = static_cast<double>(hi);
  return true;
}

}  // namespace

// ---------------------------------------------------------------- bounds

void TResultHist::_vCheckBounds(double start, double step, double stop) {
  if (!std::isfinite(start) || !std::isfinite(step) || !std::isfinite(stop))
    KX_THROW(ulBadArgument, "histogram bounds %g, %g, %g not finite", start, step, stop);
  if (!(stop > start)) KX_THROW(ulBadArgument, "histogram stop %g not above start %g", stop, start);
  if (!(step > 0)) KX_THROW(ulBadArgument, "histogram step %g not above 0", step);
  if (!((stop - start) / step + 3.0 < uMaxClassCount))
    KX_THROW(ulBadArgument, "histogram of %g bins, more than %u", (stop - start) / step + 3.0, uMaxClassCount);
}

void TResultHist::setHistStartStepStop(double start, double step, double stop, bool fixed) {
  KX_TRY {
    _vCheckBounds(start, step, stop);
    dStart = start;
    dStep = step;
    dStop = stop;
    bFixed = fixed;
    bRecalc = true;
  }
  KX_CATCH
}

void TResultHist::setHistStartCountStop(double start, unsigned count, double stop, bool fixed) {
  KX_TRY {
    if (!(stop > start)) KX_THROW(ulBadArgument, "histogram stop %g not above start %g", stop, start);
    if (count == 0) KX_THROW(ulBadArgument, "histogram of 0 bins");
    setHistStartStepStop(start, (stop - start) / count, stop, fixed);
  }
  KX_CATCH
}

void TResultHist::getHistStartStepStop(double& start, double& step, double& stop) const {
  start = dStart;
  step = dStep;
  stop = dStop;
}

void TResultHist::getHistStartCountStop(double& start, unsigned& count, double& stop) const {
  start = dStart;
  count = uGetClassCount() - 2;
  stop = dStop;
}

unsigned TResultHist::uGetClassCount() const {
  if (dStep == 0) return 3;
  const double n = std::fabs((dStop - dStart) / dStep) + 3.0;
  return n < uMaxClassCount ? static_cast<unsigned>(n) : uMaxClassCount;
}

unsigned TResultHist::uGetClass(double value) const { return _uClass(value, uGetClassCount()); }

// ---------------------------------------------------------------- values

void TResultHist::_vHistCalcReferenz() {
  const unsigned n = uGetClassCount();
  vEntries.assign(n, TResultBasic());
  for (unsigned i = 0; i < n; ++i) {
    TResultBasic& e = vEntries[i];
    e.start();
    e.vSetTimeValue(eTimeValue);
    e.vSetReferenzD(i == 0 ? dStart - dStep : i == n - 1 ? dStop + dStep : (i - 0.5) * dStep + dStart);
  }
  uSize = n;
  uPos = 0;
  bRecalc = false;
}

void TResultHist::addValueLC(double value, double y, double x, double area, int line, int column) {
  if (bCutFirst) startX();
  _vAddLC(value, y, x, area, line, column);
  if (bRecalc || vEntries.size() != uGetClassCount()) _vHistCalcReferenz();
  vEntries[_uClass(value, static_cast<unsigned>(vEntries.size()))].TResultBasic::rRGetXResult()._vInc();
}

void TResultHist::addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                              int column) {
  if (n <= 0) return;
  if (bCutFirst) startX();
  _vAddRunLC(values, n, y, x, dx, area, line, column);
  if (bRecalc || vEntries.size() != uGetClassCount()) _vHistCalcReferenz();
  const unsigned bins = static_cast<unsigned>(vEntries.size());
  TResultBasic* e = vEntries.data();
  for (int i = 0; i < n; ++i) e[_uClass(values[i], bins)].TResultBasic::rRGetXResult()._vInc();
}

void TResultHist::vMerge(const TResultBasic& b) { _vMergeBins(b, true); }

void TResultHist::_vMergeBins(const TResultBasic& b, bool counters) {
  KX_TRY {
    if (typeid(b) != typeid(*this)) KX_THROW(ulBadArgument, "merging results of different kinds");
    const auto& o = static_cast<const TResultHist&>(b);
    if (o.dStart != dStart || o.dStep != dStep || o.dStop != dStop)
      KX_THROW(ulBadArgument, "merging histograms of other bins");
    if (bCutFirst) startX();
    TResultStatistik::vMerge(b);
    if (bRecalc || vEntries.size() != uGetClassCount()) _vHistCalcReferenz();
    if (o.vEntries.size() != vEntries.size()) return;  // the other has no values yet
    for (std::size_t i = 0; i < vEntries.size(); ++i)
      if (counters)
        vEntries[i].rRGetXResult().vMergeCount(o.vEntries[i].rRGetXResult());
      else
        vEntries[i].vMerge(o.vEntries[i]);
  }
  KX_CATCH
}

std::vector<double> TResultHist::vdGetCut(int channel, int type, bool noEmpty) const {
  if (vEntries.size() <= 2 || uSize <= 2) return {};
  const std::vector<double> count = TResultCut::vdGetCut(channel, eAnz, false);
  const std::vector<double> ref = TResultCut::vdGetCut(channel, eReferenz, false);
  const std::vector<double> all = TResultCut::vdGetCut(channel, type, false);
  const std::size_t n = all.size();
  if (n <= 2) return {};
  std::size_t front = 0, back = n - 1;
  while (front < back && (ref[front] < dStart || count[front] == 0)) ++front;
  while (back > front && (ref[back] > dStop || count[back] == 0)) --back;
  std::vector<double> out;
  for (std::size_t i = front; i < back; ++i) {
    if (noEmpty && vEntries[i].rRGetXResult().dGetCount() == 0) continue;
    out.push_back(all[i]);
  }
  if (bIntegral && type == eMittel)
    for (std::size_t i = 1; i < out.size(); ++i) out[i] += out[i - 1];
  return out;
}

// ---------------------------------------------------------------- picture

void TResultHist::setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel, double min, double max) {
  KX_TRY {
    TResultStatistik::setPictureProperties(plane, channel);
    sValueRef = sValue;
    sUnitRef = sUnit;
    sValue = sCount();
    sUnit = "1";
    if (bFixed) return;
    if (!std::isfinite(min) || !std::isfinite(max)) KX_THROW(ulBadArgument, "histogram range %g .. %g", min, max);
    double n = 100;
    const double pixels = static_cast<double>(plane->getLines()) * plane->getColumns();
    if (pixels * 0.1 < n) n = pixels * 0.1;
    if (n < 10) n = 10;
    if (std::fabs(max - min) <= 1e-10) min -= 1, max += 1;
    double step = (max - min) / n;
    switch (plane->eGetPicturePT()) {
      case eUC:
      case eUS:
      case eRGB:
      case eI:
        step = 1.0;
        break;
      default:
        break;
    }
    setHistStartStepStop(min, step, max, false);
  }
  KX_CATCH
}

void TResultHist::setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel) {
  KX_TRY {
    if (!plane) KX_THROW(ulBadArgument, "plane null");
    double min = 0, max = 0;
    if (!bScalarMinMax<unsigned char>(plane, min, max) && !bScalarMinMax<unsigned short>(plane, min, max) &&
        !bScalarMinMax<float>(plane, min, max) && !bScalarMinMax<int>(plane, min, max)) {
      // A colour plane: the statistics engine gives its range itself.
      TResultStatistik::setPictureProperties(plane, channel);
      return;
    }
    setPictureProperties(plane, channel, min, max);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- ini

void TResultHist::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TResultCut::vWriteIni(ini, section);
    WriteIniBool(*ini, section, "Integral", bIntegral);
    WriteIniBool(*ini, section, "Fixed", bFixed);
    WriteIniDouble(*ini, section, "Start", dStart);
    WriteIniDouble(*ini, section, "Step", dStep);
    WriteIniDouble(*ini, section, "Stop", dStop);
  }
  KX_CATCH
}

void TResultHist::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    TResultCut::vReadIni(ini, section);
    double start = dStart, step = dStep, stop = dStop;
    bool integral = bIntegral, fixed = bFixed;
    ReadIniBool(*ini, section, "Integral", integral);
    ReadIniBool(*ini, section, "Fixed", fixed);
    ReadIniDouble(*ini, section, "Start", start);
    ReadIniDouble(*ini, section, "Step", step);
    ReadIniDouble(*ini, section, "Stop", stop);
    _vCheckBounds(start, step, stop);
    dStart = start, dStep = step, dStop = stop;
    bIntegral = integral;
    bFixed = fixed;
    bRecalc = true;
  }
  KX_CATCH
}

// ---------------------------------------------------------------- bits

void TResultBitHist::_vHistCalcReferenz() {
  const unsigned n = uGetClassCount();
  vEntries.assign(n, TResultBasic());
  for (unsigned i = 0; i < n; ++i) {
    TResultBasic& e = vEntries[i];
    e.start();
    e.vSetTimeValue(eTimeValue);
    e.vSetReferenzD(i == 0 ? -1.0 : i == n - 1 ? n - 1.0 : i - 1.0);
  }
  uSize = n;
  uPos = 0;
  bRecalc = false;
}

void TResultBitHist::start() {
  TResultCut::start();
  _vHistCalcReferenz();
}

void TResultBitHist::addValueLC(double value, double y, double x, double area, int line, int column) {
  if (bCutFirst) startX();
  _vAddLC(value, y, x, area, line, column);
  if (bRecalc || vEntries.size() != uGetClassCount()) _vHistCalcReferenz();
  // Values beyond 64 bits (and NaN) have no bits set; entries for bits above
  // 63 take no values.
  const uint64_t bits = std::fabs(value) < 9.2e18 ? static_cast<uint64_t>(static_cast<int64_t>(value)) : 0;
  const unsigned n = uGetClassCount();
  for (unsigned b = 0; b + 3 <= n && b < 64; ++b) vEntries[b + 1].addValue((bits >> b) & 1u ? 1.0 : 0.0, 1.0);
}

void TResultBitHist::vMerge(const TResultBasic& b) { _vMergeBins(b, false); }
