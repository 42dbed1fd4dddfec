#include "statistik/TResultProjection.h"

#include <algorithm>
#include <cmath>
#include <typeinfo>

#include "file98/IniHelpers.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "math98/CGeometry.h"
#include "statistik/TResultHist.h"

namespace {
constexpr unsigned long ulBadArgument = 0x5100000UL;
const TLanguage::TLanguageString sAngle("Winkel", "Angle");
}  // namespace

// ---------------------------------------------------------------- projection

double TResultProjection::_dGetDistance(double x, double y) const {
  const double bx = std::fabs(dAngle) < 1e-10 ? Region.iFirstColumn : Region.iLastColumn;
  const double by = std::fabs(dAngle) < 1e-10 ? Region.iLastLine : Region.iFirstLine;
  return CGeometry::AbstandPunktGerade(x, y, dRefX, dRefY, bx, by) + dOffset;
}

void TResultProjection::vSetProjectionAngleStepRegion(double angle, double step, const CRectangle& region) {
  KX_TRY {
    if (!(step > 0) || !std::isfinite(step) || !std::isfinite(angle))
      KX_THROW(ulBadArgument, "projection step %g not above 0", step);
    const double oldAngle = dAngle, oldStep = dStep, oldOffset = dOffset, oldX = dRefX, oldY = dRefY;
    const CRectangle oldRegion = Region;
    dAngle = angle;
    dStep = step;
    Region = region;
    dRefX = region.iFirstColumn;
    dRefY = region.iFirstLine;
    dOffset = 0;
    const double d[4] = {_dGetDistance(region.iFirstColumn, region.iFirstLine),
                         _dGetDistance(region.iLastColumn, region.iFirstLine),
                         _dGetDistance(region.iFirstColumn, region.iLastLine),
                         _dGetDistance(region.iLastColumn, region.iLastLine)};
    const double lo = *std::min_element(d, d + 4), hi = *std::max_element(d, d + 4);
    const double bins = (hi - lo) / step + 1;
    if (!(bins < TResultHist::uMaxClassCount)) {
      dAngle = oldAngle, dStep = oldStep, dOffset = oldOffset, dRefX = oldX, dRefY = oldY, Region = oldRegion;
      KX_THROW(ulBadArgument, "projection of %g bins, more than %u", bins, TResultHist::uMaxClassCount);
    }
    dOffset = -lo;
    uBins = static_cast<unsigned>(bins);
    _vLayOut();
  }
  KX_CATCH
}

void TResultProjection::_vLayOut() {
  uSize = uBins;
  vEntries.assign(uBins, TResultBasic());
  for (unsigned i = 0; i < uBins; ++i) {
    vEntries[i].start();
    vEntries[i].vSetTimeValue(eTimeValue);
    vEntries[i].vSetReferenzD(i * dStep);
  }
}

unsigned TResultProjection::uGetClass(double y, double x) const {
  const double d = _dGetDistance(x, y) / dStep;
  if (!(d >= 0)) return 0;
  if (d < uBins) return static_cast<unsigned>(d);
  return uBins - 1;
}

void TResultProjection::start() {
  TResultCut::start();
  _vLayOut();
}

void TResultProjection::addValueLC(double value, double y, double x, double area, int line, int column) {
  _vAddLC(value, y, x, area, line, column);
  if (vEntries.size() != uBins) _vLayOut();
  vEntries[uGetClass(line, column)].addValue(value, area);
}

void TResultProjection::vMerge(const TResultBasic& b) {
  KX_TRY {
    if (typeid(b) != typeid(*this)) KX_THROW(ulBadArgument, "merging results of different kinds");
    const auto& o = static_cast<const TResultProjection&>(b);
    if (o.uBins != uBins || o.dStep != dStep || o.dOffset != dOffset || o.Region != Region || o.dAngle != dAngle)
      KX_THROW(ulBadArgument, "merging projections of other bins");
    TResultStatistik::vMerge(b);
    if (vEntries.size() != uBins) _vLayOut();
    if (o.vEntries.size() != vEntries.size()) return;
    for (std::size_t i = 0; i < vEntries.size(); ++i) vEntries[i].vMerge(o.vEntries[i]);
  }
  KX_CATCH
}

void TResultProjection::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TResultCut::vWriteIni(ini, section);
    WriteIniDouble(*ini, section, "Angle", dAngle);
    WriteIniDouble(*ini, section, "Step", dStep);
    WriteIniDouble(*ini, section, "Offset", dOffset);
    WriteIniDouble(*ini, section, "RefXP", dRefX);
    WriteIniDouble(*ini, section, "RefYP", dRefY);
    WriteIniRect(*ini, section, "Region", Region);
  }
  KX_CATCH
}

void TResultProjection::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    TResultCut::vReadIni(ini, section);
    double angle = dAngle, step = dStep, offset = dOffset, rx = dRefX, ry = dRefY;
    CRectangle region = Region;
    ReadIniDouble(*ini, section, "Angle", angle);
    ReadIniDouble(*ini, section, "Step", step);
    ReadIniDouble(*ini, section, "Offset", offset);
    ReadIniDouble(*ini, section, "RefXP", rx);
    ReadIniDouble(*ini, section, "RefYP", ry);
    ReadIniRect(*ini, section, "Region", region);
    if (!std::isfinite(offset) || !std::isfinite(rx) || !std::isfinite(ry))
      KX_THROW(ulBadArgument, "projection offset or reference not finite");
    // The bins follow from the region; a stored offset and reference point
    // (the same unless edited) are kept as written.
    vSetProjectionAngleStepRegion(angle, step, region);
    dOffset = offset, dRefX = rx, dRefY = ry;
  }
  KX_CATCH
}

// ---------------------------------------------------------------- line profile

void TResultCutXY::addValueLC(double value, double y, double x, double area, int line, int column) {
  TResultCut::addValueLC(value, y, x, area, line, column);
  if (vdX.size() < uiGetSize()) {
    vdX.resize(uiGetSize());
    vdY.resize(uiGetSize());
    viLine.resize(uiGetSize());
    viColumn.resize(uiGetSize());
  }
  if (!bUseRef) return;
  const unsigned i = uPos - 1;
  vdX[i] = x, vdY[i] = y, viLine[i] = line, viColumn[i] = column;
  vEntries[i].vSetReferenzD(
      i == 0 ? 0.0 : vEntries[i - 1].dGetReferenzD() + std::hypot(x - vdX[i - 1], y - vdY[i - 1]));
}

void TResultCutXY::vMerge(const TResultBasic& b) {
  KX_TRY {
    if (typeid(b) != typeid(*this)) KX_THROW(ulBadArgument, "merging results of different kinds");
    const auto& o = static_cast<const TResultCutXY&>(b);
    const unsigned first = bCutFirst ? 0 : uPos;
    TResultCut::vMerge(b);
    if (vdX.size() < uiGetSize()) {
      vdX.resize(uiGetSize());
      vdY.resize(uiGetSize());
      viLine.resize(uiGetSize());
      viColumn.resize(uiGetSize());
    }
    if (!bUseRef) return;
    for (unsigned k = 0; first + k < uPos && k < o.vdX.size(); ++k) {
      const unsigned i = first + k;
      vdX[i] = o.vdX[k], vdY[i] = o.vdY[k], viLine[i] = o.viLine[k], viColumn[i] = o.viColumn[k];
      vEntries[i].vSetReferenzD(i == 0 ? 0.0
                                       : vEntries[i - 1].dGetReferenzD() +
                                             std::hypot(vdX[i] - vdX[i - 1], vdY[i] - vdY[i - 1]));
    }
  }
  KX_CATCH
}

void TResultCutXY::vReset() {
  TResultCut::vReset();
  bUseRef = true;
}

void TResultCutXY::vCorrectReferenzOffset() {
  if (vdX.empty()) return;
  const double d = std::hypot(vdX[0] - dReferenzCursorX, vdY[0] - dReferenzCursorY);
  if (bUseRef)
    for (TResultBasic& e : vEntries) e.vSetReferenzD(e.dGetReferenzD() - d);
  bUseRef = false;
}

void TResultCutXY::vCorrectReferenzOffset(double x, double y) {
  if (vdX.empty()) return;
  const double d = std::hypot(vdX[0] - x, vdY[0] - y);
  if (bUseRef)
    for (TResultBasic& e : vEntries) e.vSetReferenzD(e.dGetReferenzD() + d);
  bUseRef = false;
}

void TResultCutXY::vCorrectReferenzToCircle() {
  const unsigned n = uiGetSize();
  for (unsigned i = 0; i < n && i < vEntries.size(); ++i)
    vEntries[i].vSetReferenzD(static_cast<double>(i) / n * 360.0);
  setValueUnitRef(sAngle(), "°");
}

void TResultCutXY::vGetPosition(unsigned i, double& x, double& y, int& line, int& column) const {
  KX_TRY {
    if (i >= vdX.size()) KX_THROW(ulBadArgument, "position %u beyond %zu", i, vdX.size());
    x = vdX[i], y = vdY[i], line = viLine[i], column = viColumn[i];
  }
  KX_CATCH
}
