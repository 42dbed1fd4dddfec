// The size-shift system: X and Y scaled and shifted independently,
//   X = A11 * column + A13,   Y = A22 * line + A23,
// and back column = (X - A13) / A11, line = (Y - A23) / A22 (truncated toward
// zero by vGetOrgXY). The scale can be derived from reference points
// (vCalculate): four points, each a world X, Y and a pixel column, line.
//
// A pixel's area, dGetFactorA(), is the stored area factor times A11 * A22:
// with Y running upward (A22 < 0) it is negative, as the contour sums expect.
#pragma once

#include "rastrix/TCoordinateSystem.h"

namespace Rastrix {

class TSizeShiftCoordinateSystem : public TCoordinateSystem {
 public:
  // The identity, named "Default", with its own fresh signature.
  TSizeShiftCoordinateSystem();

  static constexpr int iPoints = 4;
  struct TPoint {
    double dX = 0.0;  // world
    double dY = 0.0;
    int iX = 0;  // pixel column
    int iY = 0;  // pixel line
    bool operator==(const TPoint&) const = default;
  };

  void vReadIni(TKxIniFile* ini, const char* section) override;
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  double dGetFactorA() const override { return dFactorA * dA11 * dA22; }
  const char* cpGetTypName() const override;
  void vGetWorldXY(double* x, double* y, int column, int line) const override;
  void vGetWorldXY2(double* x, double* y, double column, double line) const override;
  void vGetOrgXY(int* column, int* line, double x, double y) const override;
  void vGetOrgXY2(double* column, double* line, double x, double y) const override;
  // Also takes the size-shift parameters when `other` has them.
  void vCopy(const TCoordinateSystem* other) override;
  virtual void vCopy(const TSizeShiftCoordinateSystem* other);

  double dGetA11() const { return dA11; }
  double dGetA13() const { return dA13; }
  double dGetA22() const { return dA22; }
  double dGetA23() const { return dA23; }
  // Each: only a different value is stored, with vSetChanged().
  void vSetdA11(double v);
  void vSetdA13(double v);
  void vSetdA22(double v);
  void vSetdA23(double v);

  // Whether the parameters were given as values (rather than by points).
  bool bIsSetValues() const { return bSetValues; }
  void vSetValues(bool b) { bSetValues = b; }
  // What vCalculate derives the scale from: a rectangle of points 0, 1, 2,
  // or the line from point 0 to point 1.
  bool bIsSetLine() const { return bSetLine; }
  bool bIsSetRect() const { return bSetRect; }
  void vSetLine(bool b) { bSetLine = b; }
  void vSetRect(bool b) { bSetRect = b; }

  // Reference point 0 .. 3; another index reports 0xe5121099 (set, not
  // thrown) and changes nothing.
  void vSetPoint(int index, double x, double y, int column, int line);
  // The point's values into the non-null pointers; another index reports
  // 0xe5121099 and gives nothing.
  void vGetPoint(int index, double* x, double* y, int* column, int* line) const;
  const TPoint& rGetPoint(int index) const;

  // Derives A11, A13, A22, A23 from the points (through the vSetdA setters):
  //  rectangle (bSetRect): A11 = (X1 - X0) / (column1 - column0),
  //    A22 = (Y2 - Y1) / (line2 - line1), offsets so that point 0 maps;
  //  line (bSetLine only): A11 = world length / pixel length of the line
  //    from point 0 to point 1, A22 = -A11 (Y runs upward), offsets as above;
  //  neither: nothing.
  // A distance below 1e-10 reports 0xe5121099 with its text and the
  // computation goes on (into infinities).
  void vCalculate();

 protected:
  explicit TSizeShiftCoordinateSystem(ETypOfKS typ);
  void _vAppendKeys(std::string& text) const override;
  bool _bReadKeys(const char* text) override;

  bool bSetValues = true;
  double dA11 = 1.0;
  double dA13 = 0.0;
  double dA22 = 1.0;
  double dA23 = 0.0;
  bool bSetLine = false;
  bool bSetRect = false;
  TPoint points[iPoints];
};

}  // namespace Rastrix
