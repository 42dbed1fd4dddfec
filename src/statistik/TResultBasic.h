// Results: the numbers of one evaluation (one class of one region of one
// picture). TResultBasicData is one statistic over a stream of values;
// TResultBasic pairs the statistic within a run (ResultX, one value per
// pixel) with the one across runs (ResultT, one chosen number of each run);
// TResultBSchwerpunkt adds centres, extreme positions and an item list of
// extra named numbers.
#pragma once

#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

// The index of a number in a result.
enum ResultStatistikType : int {
  eAnz = 0,       // number of values
  eMittel = 1,    // mean
  eSigma = 2,     // standard deviation
  eMin = 3,
  eMax = 4,
  eFlaeche = 5,   // area
  eReferenz = 6,  // reference value (position on a profile's axis)
  eXS = 7,        // value-weighted centre
  eYS = 8,
  egXS = 9,       // geometric centre
  egYS = 10,
  eXMin = 11,     // position of the minimum
  eYMin = 12,
  eXMax = 13,     // position of the maximum
  eYMax = 14
};

class TResultBasicData {
 public:
  TResultBasicData() { _init(); }
  virtual ~TResultBasicData() = default;
  TResultBasicData(const TResultBasicData&) = default;
  TResultBasicData& operator=(const TResultBasicData&) = default;

  // Both clear every field (bFirst too).
  virtual void vReset() { _init(); }
  virtual void start() { _init(); }
  // Min and max, count, |area|, sums; with `update` the visible numbers.
  virtual void addValue(double value, double area, bool update) { _vAdd(value, area, update); }
  // The stream as a counter: Count 1, Sum + 1, Min = Max = Sum.
  virtual void incValue(bool update);
  // updateErg; `first` makes the next value start anew.
  virtual void stop(bool first);
  // Mean, and sigma with the denominator n - 1 (0 for n <= 1).
  virtual void updateErg();

  // Count, Mean, Sigma, Min, Max, Area: the numbers 0 to 5 of a result.
  const double* dpGetErg() const { return adErg; }
  double* dpGetErg() { return adErg; }
  double dGetCount() const { return adErg[eAnz]; }
  double dGetMean() const { return adErg[eMittel]; }
  double dGetSigma() const { return adErg[eSigma]; }
  double dGetMin() const { return adErg[eMin]; }
  double dGetMax() const { return adErg[eMax]; }
  double dGetArea() const { return adErg[eFlaeche]; }
  double dGetSum() const { return dSum; }
  double dGetSumSquare() const { return dSumSquare; }
  bool bIsFirst() const { return bFirst; }
  void vSetMean(double v) { adErg[eMittel] = v; }

  // The name of a number (0 .. 14) in the current language; "" outside.
  static const char* cppStrGetName(int type);

  // Takes the values of another stream over other pixels, as if they had
  // been added here: counts, sums and area add, min and max combine. The
  // visible mean and sigma follow at the next updateErg or stop.
  void vMerge(const TResultBasicData& o);
  // The same for two counters (incValue): their counts add.
  void vMergeCount(const TResultBasicData& o);

  // The body of addValue, for callers that know the type (no virtual call).
  inline void _vAdd(double value, double area, bool update);
  // The body of incValue.
  void _vInc() {
    if (bFirst) start();
    adErg[eAnz] = 1;
    dSum += 1;
    adErg[eMin] = adErg[eMax] = dSum;
  }
  // n values at once, given by their sums, extremes and summed |area|.
  void _vAddRun(double n, double area, double sum, double sum2, double min, double max);

 protected:
  void _init();

  double adErg[6];  // Count, Mean, Sigma, Min, Max, Area
  double dSum;
  double dSumSquare;
  bool bFirst;
  // dpGetErg() indexes the six visible numbers as one block of doubles.
  static_assert(sizeof(adErg) == 6 * sizeof(double), "Count .. Area contiguous");
};

inline void TResultBasicData::_vAdd(double value, double area, bool update) {
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

class TResultBasic {
 public:
  TResultBasic() = default;
  virtual ~TResultBasic() = default;
  TResultBasic(const TResultBasic&) = default;
  TResultBasic& operator=(const TResultBasic&) = default;

  virtual TResultBasic* pVirtualClone() const { return new TResultBasic(*this); }
  // By reference value.
  virtual bool operator<(const TResultBasic& o) const { return dReferenz < o.dReferenz; }
  virtual TResultBasicData& rRGetXResult() { return ResultX; }
  virtual TResultBasicData& rRGetTResult() { return ResultT; }
  // Reference 0, start, and both statistics reset.
  virtual void vReset();
  // Both statistics cleared; startX only the one within the run.
  virtual void start();
  virtual void startX();
  virtual void addValue(double value, double area);
  virtual void incValue();
  virtual void addValueLC(double value, double y, double x, double area, int line, int column);
  // A run of n pixels of one line: value i at column `column` + i and world
  // x + i * dx; the same as addValueLC for each in turn (up to the rounding
  // of the sums), with one call per run.
  virtual void addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                           int column);
  // Ends the run: ResultX is finished and its number eTimeValue goes to
  // ResultT.
  virtual void stop();
  // 6 (the reference) becomes 1: it is no measured number.
  virtual void vSetTimeValue(ResultStatistikType t);
  virtual ResultStatistikType eGetTimeValue() const { return eTimeValue; }
  // Takes the values another result of the same kind gathered in its run
  // over other pixels that come later in scan order, so that the two give
  // what one pass over all pixels would have given. Another kind raises
  // 0x5100000.
  virtual void vMerge(const TResultBasic& o);

  const TResultBasicData& rRGetXResult() const { return ResultX; }
  const TResultBasicData& rRGetTResult() const { return ResultT; }
  double dGetReferenzD() const { return dReferenz; }
  void vSetReferenzD(double r) { dReferenz = r; }

 protected:
  TResultBasicData ResultX;
  TResultBasicData ResultT;
  double dReferenz = 0;
  ResultStatistikType eTimeValue = eMittel;
};

// A point of a result: x and y, or column and line.
struct TResultPoint {
  double x = 0, y = 0;
};

class TResultBSchwerpunkt : public TResultBasic {
 public:
  TResultBSchwerpunkt* pVirtualClone() const override { return new TResultBSchwerpunkt(*this); }
  void vReset() override;
  void start() override;
  // Extreme positions (the first in scan order wins), the value into
  // ResultX, and the centre sums.
  void addValueLC(double value, double y, double x, double area, int line, int column) override {
    _vAddLC(value, y, x, area, line, column);
  }
  // Sums, extremes and centre sums of the run gathered in registers.
  void addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                   int column) override {
    _vAddRunLC(values, n, y, x, dx, area, line, column);
  }
  void _vAddRunLC(const double* values, int n, double y, double x, double dx, double area, int line, int column);
  // The body of addValueLC, for callers that know the type.
  inline void _vAddLC(double value, double y, double x, double area, int line, int column);
  // Finishes the centres (once per run; a second stop clears them) and
  // passes number eTimeValue to ResultT.
  void stop() override;

  void vSetCoordinates(bool b) { bCoordinates = b; }
  bool bGetCoordinates() const { return bCoordinates; }
  const TResultPoint& rGetDSchwerpunkt() const { return DSchwerpunkt; }
  const TResultPoint& rGetISchwerpunkt() const { return ISchwerpunkt; }
  const TResultPoint& rGetDSchwerpunktGeo() const { return DSchwerpunktGeo; }
  const TResultPoint& rGetISchwerpunktGeo() const { return ISchwerpunktGeo; }
  const TResultPoint& rGetDMinPosition() const { return DMinPosition; }
  const TResultPoint& rGetIMinPosition() const { return IMinPosition; }
  const TResultPoint& rGetDMaxPosition() const { return DMaxPosition; }
  const TResultPoint& rGetIMaxPosition() const { return IMaxPosition; }
  void vSetDSchwerpunkt(TResultPoint p) { DSchwerpunkt = p; }
  void vSetISchwerpunkt(TResultPoint p) { ISchwerpunkt = p; }
  void vSetDSchwerpunktGeo(TResultPoint p) { DSchwerpunktGeo = p; }
  void vSetISchwerpunktGeo(TResultPoint p) { ISchwerpunktGeo = p; }
  void vSetDMinPosition(TResultPoint p) { DMinPosition = p; }
  void vSetIMinPosition(TResultPoint p) { IMinPosition = p; }
  void vSetDMaxPosition(TResultPoint p) { DMaxPosition = p; }
  void vSetIMaxPosition(TResultPoint p) { IMaxPosition = p; }
  // The number `type` of this result: 0 to 5 from ResultX, 6 the reference,
  // 7 to 10 the centres, 11 to 14 the extreme positions (in world units).
  double dGetNumber(int type) const;
  void vMerge(const TResultBasic& o) override;

  // Extra named numbers; an index beyond the list raises 0x5100000.
  void vAddItem2List(const std::string& name, const std::string& unit);
  void vSetItemListValue(unsigned i, double d);
  double dGetItemListValue(unsigned i) const;
  void vGetItemListNameUnit(unsigned i, std::string& name, std::string& unit) const;
  void vSetItemListName(unsigned i, const std::string& name);
  void vSetItemListUnit(unsigned i, const std::string& unit);
  void vClearItemList() { items.clear(); }
  unsigned uiGetItemListSize() const { return static_cast<unsigned>(items.size()); }

 protected:
  void _vClearCoordinates();
  void _vCheckItem(unsigned i) const;

  bool bCoordinates = true;
  TResultPoint DSchwerpunkt, ISchwerpunkt, DSchwerpunktGeo, ISchwerpunktGeo;
  TResultPoint DMinPosition, IMinPosition, DMaxPosition, IMaxPosition;
  bool bFirstValue = true;
  bool bNotFinished = true;
  bool bClearOnNext = false;
  struct TItem {
    std::string name, unit;
    double value = 0;
  };
  std::vector<TItem> items;
};

inline void TResultBSchwerpunkt::_vAddLC(double value, double y, double x, double area, int line, int column) {
  if (bClearOnNext) _vClearCoordinates();
  if (ResultX.dGetMin() > value || bFirstValue) {
    DMinPosition = {x, y};
    IMinPosition = {static_cast<double>(column), static_cast<double>(line)};
  }
  if (ResultX.dGetMax() < value || bFirstValue) {
    DMaxPosition = {x, y};
    IMaxPosition = {static_cast<double>(column), static_cast<double>(line)};
  }
  ResultX._vAdd(value, area, false);
  if (bCoordinates) {
    DSchwerpunkt.x += x * value, DSchwerpunkt.y += y * value;
    ISchwerpunkt.x += column * value, ISchwerpunkt.y += line * value;
    DSchwerpunktGeo.x += x, DSchwerpunktGeo.y += y;
    ISchwerpunktGeo.x += column, ISchwerpunktGeo.y += line;
  }
  bFirstValue = false;
}
