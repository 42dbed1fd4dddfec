#include "rastrix/TCoordinateSystem.h"

#include <cmath>

#include "kxexception/TLanguage.h"
#include "rastrix/TruncLow.h"

namespace Rastrix {

namespace {
const TLanguage::TLanguageString sTypDefault("Default", "Default");

// The UTF-8 degree sign at the start of a unit becomes the Latin-1 byte.
std::string repairDegree(const std::string& unit) {
  if (unit.size() >= 2 && static_cast<unsigned char>(unit[0]) == 0xC2 && static_cast<unsigned char>(unit[1]) == 0xB0)
    return "\xB0" + unit.substr(2);
  return unit;
}
}  // namespace

TCoordinateSystem::TCoordinateSystem() = default;
TCoordinateSystem::~TCoordinateSystem() = default;

const char* TCoordinateSystem::cpGetTypName() const { return sTypDefault(); }

void TCoordinateSystem::vGetWorldXY(double* x, double* y, int column, int line) const {
  if (x) *x = column;
  if (y) *y = line;
}

void TCoordinateSystem::vGetWorldXY2(double* x, double* y, double column, double line) const {
  if (x) *x = column;
  if (y) *y = line;
}

void TCoordinateSystem::vGetWorldA(double* a, int, int) const {
  if (a) *a = dGetFactorA();
}

void TCoordinateSystem::vGetOrgXY(int* column, int* line, double x, double y) const {
  if (column) *column = kx::truncLow<int>(x);
  if (line) *line = kx::truncLow<int>(y);
}

void TCoordinateSystem::vGetOrgXY2(double* column, double* line, double x, double y) const {
  if (column) *column = x;
  if (line) *line = y;
}

void TCoordinateSystem::vSetChanged() {
  bChanged = true;
  signatur.vCreate();
  timeStamp.set();
}

void TCoordinateSystem::setNameKS(const std::string& name) {
  if (!bChangeable || name == sName) return;
  sName = name;
  vSetChanged();
}

void TCoordinateSystem::setNameUnitX(const std::string& name, const std::string& unit) {
  const std::string u = repairDegree(unit);
  if (!bChangeable || (name == sNameX && u == sUnitX)) return;
  sNameX = name;
  sUnitX = u;
  vSetChanged();
}

void TCoordinateSystem::setNameUnitY(const std::string& name, const std::string& unit) {
  if (!bChangeable || (name == sNameY && unit == sUnitY)) return;
  sNameY = name;
  sUnitY = unit;
  vSetChanged();
}

void TCoordinateSystem::setUnitL(const std::string& unit) {
  if (!bChangeable || unit == sUnitL) return;
  sUnitL = unit;
  vSetChanged();
}

void TCoordinateSystem::setUnitA(const std::string& unit) {
  if (!bChangeable || unit == sUnitA) return;
  sUnitA = unit;
  vSetChanged();
}

void TCoordinateSystem::setFactorA(double factor) {
  if (!bChangeable || factor == dFactorA) return;
  dFactorA = factor;
  vSetChanged();
}

void TCoordinateSystem::vSetNameZ(const std::string& name) {
  sNameZ = name;
  vSetChanged();
}

void TCoordinateSystem::vSetUnitZ(const std::string& unit) {
  sUnitZ = unit;
  vSetChanged();
}

void TCoordinateSystem::vSetValueZ(double value) {
  dValueZ = value;
  vSetChanged();
}

void TCoordinateSystem::vSetPossibilities(unsigned long bits) {
  ulPossibilities = bits;
  vSetChanged();
}

TCoordinateSystemVector* pGetDefaultCoordinateSystemVector() {
  // Never destroyed: planes and classifiers hold pointers into it until the
  // very end of the process.
  static TCoordinateSystemVector* const vector = new TCoordinateSystemVector;
  return vector;
}

TCoordinateSystem* pGetDefaultCoordinateSystem() { return pGetDefaultCoordinateSystemVector(); }

}  // namespace Rastrix
