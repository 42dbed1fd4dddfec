// Self-contained calculators without classes: TRLCStandardStatistik gives
// mean, variance, extremes with their positions, geometric and photometric
// moments of one region per colour (colour pictures as XYZ, then in the
// picture's display space); TStandardStatistik1 runs a plain statistic over
// a rectangle, a point list or a region of its plane.
#pragma once

#include <memory>
#include <vector>

#include "file98/CRectangle.h"
#include "kxexception/TTimeStamp.h"
#include "object98/TOPointList.h"
#include "object98/TRLCArray.h"
#include "rastrix/TPlaneBasic.h"
#include "statistik/TStatistikBasic.h"

class TRLCStandardStatistik {
 public:
  explicit TRLCStandardStatistik(unsigned uiColors = 3, bool bMeanVar = true, bool bMinMax = true,
                                 bool bGeometric = false, bool bPhotometric = false);

  // Zeros; MinV the largest float's value, MaxV its negative.
  void vClear();
  // The region over the plane (1 colour, or 3 for colour planes). With
  // reduce + border above 0 the region is eroded by that much and the
  // picture box-filtered over 2 reduce + 1 first.
  void vCalculate(const Rastrix::TPlaneBasic* plane, const TRLCArray& rlc, unsigned reduce, unsigned border);
  // The pixels whose whole (2n+1)^2 box lies inside the region.
  static void vCalcReducedRLC(const TRLCArray& rlc, unsigned n, TRLCArray& out);
  // The picture over the region's box widened by n (cut to the picture),
  // box-filtered over 2n+1; a region of one line gives an empty picture.
  static std::unique_ptr<Rastrix::TPlaneBasic> vCalcSmoothedImage(const Rastrix::TPlaneBasic* plane,
                                                                 const TRLCArray& region, unsigned n);
  void vUseValue(unsigned colour, double v, int line, int column);
  // Means, variances (n - 1), moments; colour triples into the picture's
  // display space.
  void vStopCalculation(const Rastrix::TPlaneBasic* plane);

  unsigned uiGetColors() const { return uiColors; }
  long lGetNumber() const { return Number; }
  double dGetMean(unsigned c) const { return at(Mean, c); }
  double dGetVarianz(unsigned c) const { return at(Varianz, c); }
  double dGetMinV(unsigned c) const { return at(MinV, c); }
  double dGetMaxV(unsigned c) const { return at(MaxV, c); }
  int iGetMinX(unsigned c) const { return c < MinX.size() ? MinX[c] : 0; }
  int iGetMinY(unsigned c) const { return c < MinY.size() ? MinY[c] : 0; }
  int iGetMaxX(unsigned c) const { return c < MaxX.size() ? MaxX[c] : 0; }
  int iGetMaxY(unsigned c) const { return c < MaxY.size() ? MaxY[c] : 0; }
  double dGetGeometricX(unsigned c) const { return at(GeometricX, c); }
  double dGetGeometricY(unsigned c) const { return at(GeometricY, c); }
  double dGetGeometricVx(unsigned c) const { return at(GeometricVx, c); }
  double dGetGeometricVy(unsigned c) const { return at(GeometricVy, c); }
  double dGetGeometricVxy(unsigned c) const { return at(GeometricVxy, c); }
  double dGetPhotometricX(unsigned c) const { return at(PhotometricX, c); }
  double dGetPhotometricY(unsigned c) const { return at(PhotometricY, c); }

 private:
  static double at(const std::vector<double>& v, unsigned c) { return c < v.size() ? v[c] : 0.0; }
  template <class T>
  void _vCalculate(const Rastrix::TPlane<T>& plane, const TRLCArray& rlc);
  void _vResize(unsigned colours);

  unsigned uiColors;
  bool bMeanVar, bMinMax, bGeometric, bPhotometric;
  std::vector<double> Mean, Varianz, MinV, MaxV, GeometricX, GeometricY, GeometricVx, GeometricVy, GeometricVxy,
      PhotometricX, PhotometricY;
  std::vector<int> MinX, MinY, MaxX, MaxY;
  long Number = 0;
};

class TStandardStatistik1 {
 public:
  // A missing plane raises 0x7000000.
  explicit TStandardStatistik1(Rastrix::TPlaneBasic* plane);
  void calculate(const CRectangle& r);
  void calculate(const TOPointList<int>& list);
  void calculate(const TRLCArray* rlc);
  // Number i (0 .. 14) of the plain result (of group 0).
  double getData(int i);
  TStatistikBasic& rGetStatistik() { return *stat_; }
  const Process::TTimeStamp& getTimeStamp() const { return stamp_; }

 private:
  void _calculate(const TRLCArray& rlc);
  Rastrix::TPlaneBasic* plane_;
  std::unique_ptr<TStatistikBasic> stat_;
  Process::TTimeStamp stamp_{0};
};
