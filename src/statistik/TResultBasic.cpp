#include "statistik/TResultBasic.h"

#include <cmath>

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

void TResultBasicData::addValue(double value, double area, bool update) {
  if (bFirst) start();
  if (adErg[eAnz] == 0) {
    adErg[eMin] = adErg[eMax] = value;
  } else {
    if (value < adErg[eMin]) adErg[eMin] = value;
    if (adErg[eMax] < value) adErg[eMax] = value;
  }
  adErg[eAnz] += 1;
  adErg[eFlaeche] += std::fabs(area);
  dSum += value;
  dSumSquare += value * value;
  if (update) updateErg();
}

void TResultBasicData::incValue(bool update) {
  if (bFirst) start();
  adErg[eAnz] = 1;
  dSum += 1;
  adErg[eMin] = adErg[eMax] = dSum;
  if (update) updateErg();
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

void TResultBasic::addValueLC(double value, double, double, double area, int, int) {
  ResultX.addValue(value, area, false);
}

void TResultBasic::stop() {
  ResultX.stop(true);
  ResultT.addValue(eTimeValue <= eFlaeche ? ResultX.dpGetErg()[eTimeValue] : 0.0, 1.0, true);
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

void TResultBSchwerpunkt::addValueLC(double value, double y, double x, double area, int line, int column) {
  if (bClearOnNext) _vClearCoordinates();
  if (ResultX.dGetMin() > value || bFirstValue) {
    DMinPosition = {x, y};
    IMinPosition = {static_cast<double>(column), static_cast<double>(line)};
  }
  if (ResultX.dGetMax() < value || bFirstValue) {
    DMaxPosition = {x, y};
    IMaxPosition = {static_cast<double>(column), static_cast<double>(line)};
  }
  ResultX.addValue(value, area, false);
  if (bCoordinates) {
    DSchwerpunkt.x += x * value, DSchwerpunkt.y += y * value;
    ISchwerpunkt.x += column * value, ISchwerpunkt.y += line * value;
    DSchwerpunktGeo.x += x, DSchwerpunktGeo.y += y;
    ISchwerpunktGeo.x += column, ISchwerpunktGeo.y += line;
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
