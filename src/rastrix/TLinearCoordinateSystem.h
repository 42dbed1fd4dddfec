// The linear (affine) system:
//   X = A11 * column + A12 * line + A13
//   Y = A21 * column + A22 * line + A23
// A31 and A32 are stored, written and compared but take no part in the
// mapping. There is no way back: vGetOrgXY and vGetOrgXY2 raise 0xe76210c7.
#pragma once

#include "rastrix/TSizeShiftCoordinateSystem.h"

namespace Rastrix {

class TLinearCoordinateSystem : public TSizeShiftCoordinateSystem {
 public:
  TLinearCoordinateSystem();

  void vReadIni(TKxIniFile* ini, const char* section) override;
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  const char* cpGetTypName() const override;
  void vGetWorldXY(double* x, double* y, int column, int line) const override;
  void vGetWorldXY2(double* x, double* y, double column, double line) const override;
  // Along a line only while y does not follow the column.
  bool bIsLinearAlongLines() const override { return dA21 == 0.0; }
  // Not available for this class: raise 0xe76210c7.
  void vGetOrgXY(int* column, int* line, double x, double y) const override;
  void vGetOrgXY2(double* column, double* line, double x, double y) const override;
  // The size-shift comparison, and A12, A21, A31, A32 each within 1e-06;
  // a system of another class is not equal.
  bool bEqualParam(const TCoordinateSystem* other) const override;
  using TSizeShiftCoordinateSystem::vCopy;
  // Also takes A12, A21, A31, A32 when `other` is linear.
  void vCopy(const TSizeShiftCoordinateSystem* other) override;

  double dGetA12() const { return dA12; }
  double dGetA21() const { return dA21; }
  double dGetA31() const { return dA31; }
  double dGetA32() const { return dA32; }
  // Each: only a different value is stored, with vSetChanged().
  void vSetdA12(double v);
  void vSetdA21(double v);
  void vSetdA31(double v);
  void vSetdA32(double v);

 protected:
  void _vAppendKeys(std::string& text) const override;
  bool _bReadKeys(const char* text) override;

  double dA12 = 0.0;
  double dA21 = 0.0;
  double dA31 = 0.0;
  double dA32 = 0.0;
};

}  // namespace Rastrix
