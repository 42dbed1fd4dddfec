#include "statistik/TResultCut.h"

#include <typeinfo>

#include "kxexception/KxError.h"

void TResultCut::vReset() {
  uPos = 0;
  for (TResultBasic& e : vEntries) e.vReset();
  TResultStatistik::vReset();
}

void TResultCut::start() {
  TResultStatistik::start();
  for (TResultBasic& e : vEntries) e.start();
  bCutFirst = false;
  uPos = 0;
}

void TResultCut::startX() {
  TResultStatistik::startX();
  for (TResultBasic& e : vEntries) e.startX();
  bCutFirst = false;
  uPos = 0;
}

void TResultCut::addValue(double value, double) {
  if (bCutFirst) startX();
  addValueLC(value, 0, 0, 1.0, 0, 0);
}

void TResultCut::addValueLC(double value, double y, double x, double area, int line, int column) {
  if (bCutFirst) startX();
  _vAddLC(value, y, x, area, line, column);
  _rNextEntry().addValue(value, area);
  ++uPos;
  if (uSize < uPos) uSize = uPos;
}

TResultBasic& TResultCut::_rNextEntry() {
  if (uPos >= vEntries.size()) {
    const std::size_t from = vEntries.size();
    vEntries.resize(from + 100);
    for (std::size_t i = from; i < vEntries.size(); ++i) {
      vEntries[i].vReset();
      vEntries[i].vSetTimeValue(eTimeValue);
      vEntries[i].vSetReferenzD(static_cast<double>(i));
    }
  }
  return vEntries[uPos];
}

void TResultCut::vMerge(const TResultBasic& b) {
  KX_TRY {
    if (typeid(b) != typeid(*this)) KX_THROW(0x5100000UL, "merging results of different kinds");
    const auto& o = static_cast<const TResultCut&>(b);
    if (bCutFirst) startX();
    TResultStatistik::vMerge(b);
    for (unsigned k = 0; k < o.uPos && k < o.vEntries.size(); ++k) {
      _rNextEntry().vMerge(o.vEntries[k]);
      ++uPos;
    }
    if (uSize < uPos) uSize = uPos;
  }
  KX_CATCH
}

void TResultCut::stop() {
  TResultStatistik::stop();
  if (uPos != 0) uSize = uPos;
  for (unsigned i = 0; i < uSize && i < vEntries.size(); ++i) vEntries[i].stop();
  uPos = 0;
  bCutFirst = true;
}

void TResultCut::vSetTimeValue(ResultStatistikType t) {
  TResultStatistik::vSetTimeValue(t);
  for (TResultBasic& e : vEntries) e.vSetTimeValue(t);
}

void TResultCut::vTakeOverData(const TResultStatistik& o) {
  if (typeid(o) != typeid(*this)) return;
  const auto& c = static_cast<const TResultCut&>(o);
  vEntries = c.vEntries;
  uSize = c.uSize;
  uPos = c.uPos;
}

void TResultCut::vTakeOverCut(const std::vector<double>& means) {
  if (means.size() != uSize) return;
  for (unsigned i = 0; i < uSize; ++i) vEntries[i].rRGetXResult().vSetMean(means[i]);
}

std::vector<double> TResultCut::vdGetCut(int channel, int type, bool noEmpty) const {
  std::vector<double> out;
  for (unsigned i = 0; i < uSize && i < vEntries.size(); ++i) {
    const TResultBasic& e = vEntries[i];
    if (noEmpty && e.rRGetXResult().dGetCount() == 0) continue;
    if (type == eReferenz)
      out.push_back(e.dGetReferenzD());
    else if (type >= 0 && type <= eFlaeche)
      out.push_back((channel == 0 ? e.rRGetXResult() : e.rRGetTResult()).dpGetErg()[type]);
    else
      out.push_back(0.0);
  }
  return out;
}

const TResultBasic& TResultCut::rGetEntry(unsigned i) const {
  KX_TRY {
    if (i >= vEntries.size()) KX_THROW(0x5100000UL, "entry %u beyond %zu", i, vEntries.size());
    return vEntries[i];
  }
  KX_CATCH
}
