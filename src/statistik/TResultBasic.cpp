#include "statistik/TResultBasic.h"

#include <cmath>
#include <typeinfo>

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace {

constexpr unsigned long ulItemIndex = 0x5100000UL;

const TLanguage::TLanguageString sNames[] = {
    {"Anz", "Anz"},   {"Mittel", "Mean"},   {"Sigma", "Disp."}, {"Min", "Min"},   {"Max", "Max"},
    {"Fläche", "Fläche"}, {"Referenz", "Reference"}, {"XS", "XS"}, {"YS", "YS"}, {"gXS", "gXS"},
    {"gYS", "gYS"},   {"XMin", "XMin"},     {"YMin", "YMin"},   {"XMax", "XMax"}, {"YMax", "YMax"}};
const TLanguage::TLanguageString sItemIndex("Index %u der Liste nicht im Bereich 0...%d",
                                            "Index %u of the list out of range 0...%d");

}  // namespace

// ---------------------------------------------------------------- data

void TResultBasicData::_init() {
  for (double& d : adErg) d = 0;
  dSum = dSumSquare = 0;
  bFirst = false;
}

const char* TResultBasicData::cppStrGetName(int type) {
  if (type < 0 || type > eYMax) return "";
  return sNames[type]();
}

void TResultBasicData::incValue(bool update) {
  _vInc();
  if (update) updateErg();
}

void TResultBasicData::_vAddRun(double n, double area, double sum, double sum2, double min, double max) {
  if (bFirst) start();
  if (n <= 0) return;
  if (adErg[eAnz] == 0) {
    adErg[eMin] = min;
    adErg[eMax] = max;
  } else {
    if (min < adErg[eMin]) adErg[eMin] = min;
    if (adErg[eMax] < max) adErg[eMax] = max;
  }
  adErg[eAnz] += n;
  adErg[eFlaeche] += area;
  dSum += sum;
  dSumSquare += sum2;
}

void TResultBasicData::vMerge(const TResultBasicData& o) {
  if (bFirst) start();
  if (o.adErg[eAnz] == 0) return;
  if (adErg[eAnz] == 0) {
    adErg[eMin] = o.adErg[eMin];
    adErg[eMax] = o.adErg[eMax];
  } else {
    if (o.adErg[eMin] < adErg[eMin]) adErg[eMin] = o.adErg[eMin];
    if (adErg[eMax] < o.adErg[eMax]) adErg[eMax] = o.adErg[eMax];
  }
  adErg[eAnz] += o.adErg[eAnz];
  adErg[eFlaeche] += o.adErg[eFlaeche];
  dSum += o.dSum;
  dSumSquare += o.dSumSquare;
}

void TResultBasicData::vMergeCount(const TResultBasicData& o) {
  if (bFirst) start();
  if (o.adErg[eAnz] == 0) return;
  adErg[eAnz] = 1;
  dSum += o.dSum;
  adErg[eMin] = adErg[eMax] = dSum;
}

void TResultBasicData::stop(bool first) {
  updateErg();
  if (first) bFirst = true;
}

void TResultBasicData::updateErg() {
  if (bFirst) start();
  const double n = adErg[eAnz];
  if (n <= 1) {
    adErg[eMittel] = dSum;
    adErg[eSigma] = 0;
    return;
  }
  adErg[eMittel] = dSum / n;
  double s = (dSumSquare - n * adErg[eMittel] * adErg[eMittel]) * (1 / (n - 1));
  if (s < 0) s = 0;
  adErg[eSigma] = std::sqrt(s);
}

// ---------------------------------------------------------------- basic

void TResultBasic::vReset() {
  dReferenz = 0;
  start();
  ResultX.vReset();
  ResultT.vReset();
}

void TResultBasic::start() {
  ResultX.start();
  ResultT.start();
}

void TResultBasic::startX() { ResultX.start(); }

void TResultBasic::addValue(double value, double area) { ResultX.addValue(value, area, false); }

void TResultBasic::incValue() { ResultX.incValue(false); }

void TResultBasic::addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                               int column) {
  for (int i = 0; i < n; ++i) addValueLC(values[i], y, x + i * dx, area, line, column + i);
}

void TResultBasic::addValueLC(double value, double, double, double area, int, int) {
  ResultX.addValue(value, area, false);
}

void TResultBasic::stop() {
  ResultX.stop(true);
  ResultT.addValue(eTimeValue <= eFlaeche ? ResultX.dpGetErg()[eTimeValue] : 0.0, 1.0, true);
}

void TResultBasic::vMerge(const TResultBasic& o) {
  KX_TRY {
    if (typeid(o) != typeid(*this)) KX_THROW(0x5100000UL, "merging results of different kinds");
    ResultX.vMerge(o.ResultX);
  }
  KX_CATCH
}

void TResultBasic::vSetTimeValue(ResultStatistikType t) { eTimeValue = t == eReferenz ? eMittel : t; }

// ---------------------------------------------------------------- centres

void TResultBSchwerpunkt::_vClearCoordinates() {
  DSchwerpunkt = ISchwerpunkt = DSchwerpunktGeo = ISchwerpunktGeo = {};
  DMinPosition = IMinPosition = DMaxPosition = IMaxPosition = {};
  bFirstValue = bNotFinished = true;
  bClearOnNext = false;
}

void TResultBSchwerpunkt::vReset() {
  TResultBasic::vReset();
  _vClearCoordinates();
}

void TResultBSchwerpunkt::start() {
  TResultBasic::start();
  _vClearCoordinates();
}

void TResultBSchwerpunkt::_vAddRunLC(const double* v, int n, double y, double x, double dx, double area, int line,
                                     int column) {
  if (n <= 0) return;
  if (bClearOnNext) _vClearCoordinates();
  if (ResultX.bIsFirst()) ResultX.start();
  // Extremes start from those before the run, so that a value equal to one
  // of them does not move its position: the first in scan order wins.
  const bool fresh = bFirstValue || ResultX.dGetCount() == 0;
  double lo = fresh ? v[0] : ResultX.dGetMin(), hi = fresh ? v[0] : ResultX.dGetMax();
  int iLo = fresh ? 0 : -1, iHi = fresh ? 0 : -1;
  double s = 0, s2 = 0, si = 0;
  for (int i = 0; i < n; ++i) {
    const double d = v[i];
    s += d;
    s2 += d * d;
    si += i * d;
    if (d < lo) lo = d, iLo = i;
    if (hi < d) hi = d, iHi = i;
  }
  if (iLo >= 0) {
    DMinPosition = {x + iLo * dx, y};
    IMinPosition = {static_cast<double>(column + iLo), static_cast<double>(line)};
  }
  if (iHi >= 0) {
    DMaxPosition = {x + iHi * dx, y};
    IMaxPosition = {static_cast<double>(column + iHi), static_cast<double>(line)};
  }
  ResultX._vAddRun(n, n * std::fabs(area), s, s2, lo, hi);
  if (bCoordinates) {
    const double tri = 0.5 * n * (n - 1.0);  // the sum of i over the run
    DSchwerpunkt.x += x * s + dx * si, DSchwerpunkt.y += y * s;
    ISchwerpunkt.x += column * s + si, ISchwerpunkt.y += line * s;
    DSchwerpunktGeo.x += n * x + dx * tri, DSchwerpunktGeo.y += n * y;
    ISchwerpunktGeo.x += n * static_cast<double>(column) + tri, ISchwerpunktGeo.y += n * static_cast<double>(line);
  }
  bFirstValue = false;
}

void TResultBSchwerpunkt::stop() {
  ResultX.stop(true);
  bClearOnNext = true;
  if (!bCoordinates || !bNotFinished) {
    DSchwerpunkt = ISchwerpunkt = DSchwerpunktGeo = ISchwerpunktGeo = {};
  } else {
    const double n = ResultX.dGetCount(), s = ResultX.dGetMean() * n;
    if (n <= 1e-15) {
      DSchwerpunktGeo = ISchwerpunktGeo = {};
    } else {
      DSchwerpunktGeo.x /= n, DSchwerpunktGeo.y /= n;
      ISchwerpunktGeo.x /= n, ISchwerpunktGeo.y /= n;
    }
    if (std::fabs(s) <= 1e-15) {
      DSchwerpunkt = DSchwerpunktGeo;
      ISchwerpunkt = ISchwerpunktGeo;
    } else {
      DSchwerpunkt.x /= s, DSchwerpunkt.y /= s;
      ISchwerpunkt.x /= s, ISchwerpunkt.y /= s;
    }
    bNotFinished = false;
  }
  ResultT.addValue(dGetNumber(eTimeValue), 1.0, true);
}

void TResultBSchwerpunkt::vMerge(const TResultBasic& b) {
  KX_TRY {
    if (typeid(b) != typeid(*this)) KX_THROW(0x5100000UL, "merging results of different kinds");
    const auto& o = static_cast<const TResultBSchwerpunkt&>(b);
    if (o.ResultX.dGetCount() == 0) return;
    if (bClearOnNext) _vClearCoordinates();
    const bool empty = bFirstValue || ResultX.bIsFirst() || ResultX.dGetCount() == 0;
    // Ties stay with this part, which comes first in scan order.
    if (empty || o.ResultX.dGetMin() < ResultX.dGetMin()) DMinPosition = o.DMinPosition, IMinPosition = o.IMinPosition;
    if (empty || ResultX.dGetMax() < o.ResultX.dGetMax()) DMaxPosition = o.DMaxPosition, IMaxPosition = o.IMaxPosition;
    ResultX.vMerge(o.ResultX);
    if (bCoordinates) {
      DSchwerpunkt.x += o.DSchwerpunkt.x, DSchwerpunkt.y += o.DSchwerpunkt.y;
      ISchwerpunkt.x += o.ISchwerpunkt.x, ISchwerpunkt.y += o.ISchwerpunkt.y;
      DSchwerpunktGeo.x += o.DSchwerpunktGeo.x, DSchwerpunktGeo.y += o.DSchwerpunktGeo.y;
      ISchwerpunktGeo.x += o.ISchwerpunktGeo.x, ISchwerpunktGeo.y += o.ISchwerpunktGeo.y;
    }
    bFirstValue = false;
  }
  KX_CATCH
}

double TResultBSchwerpunkt::dGetNumber(int type) const {
  switch (type) {
    case eReferenz: return dReferenz;
    case eXS: return DSchwerpunkt.x;
    case eYS: return DSchwerpunkt.y;
    case egXS: return DSchwerpunktGeo.x;
    case egYS: return DSchwerpunktGeo.y;
    case eXMin: return DMinPosition.x;
    case eYMin: return DMinPosition.y;
    case eXMax: return DMaxPosition.x;
    case eYMax: return DMaxPosition.y;
    default: return type >= 0 && type <= eFlaeche ? ResultX.dpGetErg()[type] : 0.0;
  }
}

void TResultBSchwerpunkt::_vCheckItem(unsigned i) const {
  if (i >= items.size()) KX_THROW(ulItemIndex, sItemIndex(), i, static_cast<int>(items.size()) - 1);
}

void TResultBSchwerpunkt::vAddItem2List(const std::string& name, const std::string& unit) {
  items.push_back({name, unit, 0.0});
}

void TResultBSchwerpunkt::vSetItemListValue(unsigned i, double d) {
  KX_TRY {
    _vCheckItem(i);
    items[i].value = d;
  }
  KX_CATCH
}

double TResultBSchwerpunkt::dGetItemListValue(unsigned i) const {
  KX_TRY {
    _vCheckItem(i);
    return items[i].value;
  }
  KX_CATCH
}

void TResultBSchwerpunkt::vGetItemListNameUnit(unsigned i, std::string& name, std::string& unit) const {
  KX_TRY {
    _vCheckItem(i);
    name = items[i].name;
    unit = items[i].unit;
  }
  KX_CATCH
}

void TResultBSchwerpunkt::vSetItemListName(unsigned i, const std::string& name) {
  KX_TRY {
    _vCheckItem(i);
    items[i].name = name;
  }
  KX_CATCH
}

void TResultBSchwerpunkt::vSetItemListUnit(unsigned i, const std::string& unit) {
  KX_TRY {
    _vCheckItem(i);
    items[i].unit = unit;
  }
  KX_CATCH
}
