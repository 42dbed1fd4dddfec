#include "rastrix/TSizeShiftCoordinateSystem.h"

#include <cmath>
#include <cstdio>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TruncLow.h"

namespace Rastrix {

namespace {
const TLanguage::TLanguageString sTypName("Skalierung+Verschiebung", "Scaling+shifting");

// Keys of point i: "dX%d", "dY%d", "iX%d", "iY%d".
std::string key(const char* name, int i) { return name + std::to_string(i); }

// Reports the failure of vCalculate or of a point index; the caller goes on.
void report(const char* file, int line, const char* text) {
  _TKxSetLastErrorLS(static_cast<long>(Err::ulCoordinateSystemCalculate), file, line, text);
}

// A distance vCalculate divides by; a tiny one is reported, never refused.
void checkDistance(double d, const char* file, int line, const char* text) {
  if (!(std::fabs(d) >= 1e-10)) report(file, line, text);
}
}  // namespace

TSizeShiftCoordinateSystem::TSizeShiftCoordinateSystem() : TCoordinateSystem(eKSSizeShift) {}
TSizeShiftCoordinateSystem::TSizeShiftCoordinateSystem(ETypOfKS typ) : TCoordinateSystem(typ) {}

const char* TSizeShiftCoordinateSystem::cpGetTypName() const { return sTypName(); }

void TSizeShiftCoordinateSystem::vGetWorldXY(double* x, double* y, int column, int line) const {
  if (x) *x = dA11 * column + dA13;
  if (y) *y = dA22 * line + dA23;
}

void TSizeShiftCoordinateSystem::vGetWorldXY2(double* x, double* y, double column, double line) const {
  if (x) *x = dA11 * column + dA13;
  if (y) *y = dA22 * line + dA23;
}

void TSizeShiftCoordinateSystem::vGetOrgXY(int* column, int* line, double x, double y) const {
  if (column) *column = kx::truncLow<int>((x - dA13) / dA11);
  if (line) *line = kx::truncLow<int>((y - dA23) / dA22);
}

void TSizeShiftCoordinateSystem::vGetOrgXY2(double* column, double* line, double x, double y) const {
  if (column) *column = (x - dA13) / dA11;
  if (line) *line = (y - dA23) / dA22;
}

void TSizeShiftCoordinateSystem::vCopy(const TCoordinateSystem* o) {
  if (const auto* s = dynamic_cast<const TSizeShiftCoordinateSystem*>(o))
    vCopy(s);
  else
    TCoordinateSystem::vCopy(o);
}

void TSizeShiftCoordinateSystem::vCopy(const TSizeShiftCoordinateSystem* o) {
  if (!o || o == this) return;
  TCoordinateSystem::vCopy(o);
  bSetValues = o->bSetValues;
  dA11 = o->dA11;
  dA13 = o->dA13;
  dA22 = o->dA22;
  dA23 = o->dA23;
  bSetLine = o->bSetLine;
  bSetRect = o->bSetRect;
  for (int i = 0; i < iPoints; ++i) points[i] = o->points[i];
}

void TSizeShiftCoordinateSystem::vSetdA11(double v) {
  if (v == dA11) return;
  dA11 = v;
  vSetChanged();
}

void TSizeShiftCoordinateSystem::vSetdA13(double v) {
  if (v == dA13) return;
  dA13 = v;
  vSetChanged();
}

void TSizeShiftCoordinateSystem::vSetdA22(double v) {
  if (v == dA22) return;
  dA22 = v;
  vSetChanged();
}

void TSizeShiftCoordinateSystem::vSetdA23(double v) {
  if (v == dA23) return;
  dA23 = v;
  vSetChanged();
}

void TSizeShiftCoordinateSystem::vSetPoint(int index, double x, double y, int column, int line) {
  if (index < 0 || index >= iPoints) {
    // Reported as always; the write outside the four points is not done.
    char text[48];
    std::snprintf(text, sizeof text, "Index=%d", index);
    report(KX_FILE, __LINE__, text);
    return;
  }
  points[index] = TPoint{x, y, column, line};
}

void TSizeShiftCoordinateSystem::vGetPoint(int index, double* x, double* y, int* column, int* line) const {
  if (index < 0 || index >= iPoints) {
    char text[48];
    std::snprintf(text, sizeof text, "Index=%d", index);
    report(KX_FILE, __LINE__, text);
    return;
  }
  const TPoint& p = points[index];
  if (x) *x = p.dX;
  if (y) *y = p.dY;
  if (column) *column = p.iX;
  if (line) *line = p.iY;
}

const TSizeShiftCoordinateSystem::TPoint& TSizeShiftCoordinateSystem::rGetPoint(int index) const {
  static const TPoint none;
  return index >= 0 && index < iPoints ? points[index] : none;
}

void TSizeShiftCoordinateSystem::vCalculate() {
  const TPoint& p0 = points[0];
  const TPoint& p1 = points[1];
  const TPoint& p2 = points[2];
  double a11 = dA11, a22 = dA22;
  if (bSetRect) {
    // Pixel differences in double: two ints far apart must not overflow.
    const double dX = p1.dX - p0.dX;
    const double dC = static_cast<double>(p1.iX) - p0.iX;
    const double dY = p2.dY - p1.dY;
    const double dL = static_cast<double>(p2.iY) - p1.iY;
    checkDistance(dX, KX_FILE, __LINE__, "No horizontal distance in world coordinates");
    checkDistance(dC, KX_FILE, __LINE__, "No horizontal distance in image coordinates");
    checkDistance(dY, KX_FILE, __LINE__, "No vertical distance in world coordinates");
    checkDistance(dL, KX_FILE, __LINE__, "No vertical distance in image coordinates");
    a11 = dX / dC;
    a22 = dY / dL;
  } else if (bSetLine) {
    const double world = std::hypot(p1.dX - p0.dX, p1.dY - p0.dY);
    const double pixel = std::hypot(static_cast<double>(p1.iX) - p0.iX, static_cast<double>(p1.iY) - p0.iY);
    checkDistance(world, KX_FILE, __LINE__, "No horizontal distance in world coordinates");
    checkDistance(pixel, KX_FILE, __LINE__, "No horizontal distance in image coordinates");
    a11 = world / pixel;
    a22 = -a11;  // Y runs upward
  } else {
    return;
  }
  vSetdA11(a11);
  vSetdA22(a22);
  vSetdA13(p0.dX - p0.iX * a11);
  vSetdA23(p0.dY - p0.iY * a22);
}

void TSizeShiftCoordinateSystem::_vAppendKeys(std::string& text) const {
  TCoordinateSystem::_vAppendKeys(text);
  _vAppendLine(text, "bSetValues", static_cast<unsigned long>(bSetValues));
  _vAppendLine(text, "A11", dA11);
  _vAppendLine(text, "A13", dA13);
  _vAppendLine(text, "A22", dA22);
  _vAppendLine(text, "A23", dA23);
  _vAppendLine(text, "bSetLine", static_cast<unsigned long>(bSetLine));
  _vAppendLine(text, "bSetRect", static_cast<unsigned long>(bSetRect));
  for (int i = 0; i < iPoints; ++i) {
    _vAppendLine(text, key("dX", i).c_str(), points[i].dX);
    _vAppendLine(text, key("dY", i).c_str(), points[i].dY);
    _vAppendLine(text, key("iX", i).c_str(), static_cast<long>(points[i].iX));
    _vAppendLine(text, key("iY", i).c_str(), static_cast<long>(points[i].iY));
  }
}

bool TSizeShiftCoordinateSystem::_bReadKeys(const char* text) {
  if (!TCoordinateSystem::_bReadKeys(text)) return false;
  if (!_bReadValue(text, "bSetValues", bSetValues) || !_bReadValue(text, "A11", dA11) ||
      !_bReadValue(text, "A13", dA13) || !_bReadValue(text, "A22", dA22) || !_bReadValue(text, "A23", dA23) ||
      !_bReadValue(text, "bSetLine", bSetLine) || !_bReadValue(text, "bSetRect", bSetRect))
    return false;
  for (int i = 0; i < iPoints; ++i) {
    TPoint& p = points[i];
    if (!_bReadValue(text, key("dX", i).c_str(), p.dX) || !_bReadValue(text, key("dY", i).c_str(), p.dY) ||
        !_bReadValue(text, key("iX", i).c_str(), p.iX) || !_bReadValue(text, key("iY", i).c_str(), p.iY))
      return false;
  }
  return true;
}

void TSizeShiftCoordinateSystem::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) return;
    TCoordinateSystem::vReadIni(ini, section);
    bSetValues = ini->bReadBool(section, "bSetValues", bSetValues);
    dA11 = ini->dReadFloat(section, "A11", dA11);
    dA13 = ini->dReadFloat(section, "A13", dA13);
    dA22 = ini->dReadFloat(section, "A22", dA22);
    dA23 = ini->dReadFloat(section, "A23", dA23);
    bSetLine = ini->bReadBool(section, "bSetLine", bSetLine);
    bSetRect = ini->bReadBool(section, "bSetRect", bSetRect);
    for (int i = 0; i < iPoints; ++i) {
      TPoint& p = points[i];
      p.dX = ini->dReadFloat(section, key("dX", i).c_str(), p.dX);
      p.dY = ini->dReadFloat(section, key("dY", i).c_str(), p.dY);
      p.iX = ini->iReadInteger(section, key("iX", i).c_str(), p.iX);
      p.iY = ini->iReadInteger(section, key("iY", i).c_str(), p.iY);
    }
  }
  KX_CATCH
}

void TSizeShiftCoordinateSystem::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) return;
    TCoordinateSystem::vWriteIni(ini, section);
    ini->vWriteBool(section, "bSetValues", bSetValues);
    ini->vWriteFloat(section, "A11", dA11);
    ini->vWriteFloat(section, "A13", dA13);
    ini->vWriteFloat(section, "A22", dA22);
    ini->vWriteFloat(section, "A23", dA23);
    ini->vWriteBool(section, "bSetLine", bSetLine);
    ini->vWriteBool(section, "bSetRect", bSetRect);
    for (int i = 0; i < iPoints; ++i) {
      const TPoint& p = points[i];
      ini->vWriteFloat(section, key("dX", i).c_str(), p.dX);
      ini->vWriteFloat(section, key("dY", i).c_str(), p.dY);
      ini->vWriteInteger(section, key("iX", i).c_str(), p.iX);
      ini->vWriteInteger(section, key("iY", i).c_str(), p.iY);
    }
  }
  KX_CATCH
}

}  // namespace Rastrix
