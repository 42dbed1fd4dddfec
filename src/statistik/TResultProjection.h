// Profiles along a direction: TResultProjection bins the pixels of a region
// by their distance from a line through the region's top left corner;
// TResultCutXY is the profile along a line of pixels, one entry per pixel in
// loop order, with the path length as reference.
#pragma once

#include <vector>

#include "file98/CRectangle.h"
#include "statistik/TResultCut.h"

class TResultProjection : public TResultCut {
 public:
  TResultProjection* pVirtualClone() const override { return new TResultProjection(*this); }

  // Step above 0, else 0x5100000. The reference point becomes the region's
  // top left corner (column, line), the offset minus the smallest distance
  // of a corner, and the bins cover the corners' distances in steps.
  virtual void vSetProjectionAngleStepRegion(double angle, double step, const CRectangle& region);
  // The distance of (x, y) from the line through the reference point and
  // the region's bottom left corner (angle 0) or top right corner (any other
  // angle), plus the offset.
  double _dGetDistance(double x, double y) const;
  // The bin of a pixel: its distance over the step, cut to 0 .. bins - 1.
  virtual unsigned uGetClass(double y, double x) const;

  void start() override;
  // The value goes to this result and to the bin of (line, column).
  void addValueLC(double value, double y, double x, double area, int line, int column) override;
  void vMerge(const TResultBasic& o) override;

  double dGetAngle() const { return dAngle; }
  double dGetStep() const { return dStep; }
  double dGetOffset() const { return dOffset; }
  const CRectangle& rGetRegion() const { return Region; }
  unsigned uGetBins() const { return uBins; }

  // "Angle", "Step", "Offset", "RefXP", "RefYP", "Region".
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;

 protected:
  void _vLayOut();

  double dAngle = 0, dStep = 1.0, dOffset = 0, dRefX = 0, dRefY = 0;
  CRectangle Region;
  unsigned uBins = 1;
};

class TResultCutXY : public TResultCut {
 public:
  TResultCutXY* pVirtualClone() const override { return new TResultCutXY(*this); }

  // The profile's entry; with the reference in use, the pixel's position is
  // kept and the entry's reference is the path length from the first entry.
  void addValueLC(double value, double y, double x, double area, int line, int column) override;
  void vReset() override;
  void vMerge(const TResultBasic& o) override;

  // Moves the references so that the reference cursor is at 0: each minus
  // the distance from the cursor to the first position; afterwards the
  // reference is no longer kept.
  virtual void vCorrectReferenzOffset();
  // The same with each plus the distance from (x, y) to the first position.
  virtual void vCorrectReferenzOffset(double x, double y);
  // A circular profile: entry i of n at i / n * 360 degrees.
  virtual void vCorrectReferenzToCircle();

  bool bGetUseRef() const { return bUseRef; }
  // Position of entry i (world x, y; line, column); 0x5100000 beyond.
  void vGetPosition(unsigned i, double& x, double& y, int& line, int& column) const;

 protected:
  std::vector<double> vdX, vdY;
  std::vector<int> viLine, viColumn;
  bool bUseRef = true;
};
