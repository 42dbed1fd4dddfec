#include "rastrix/TLinearCoordinateSystem.h"

#include <cmath>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/RastrixErrors.h"

namespace Rastrix {

namespace {
const TLanguage::TLanguageString sTypName("Linear", "Linear");

bool near(double a, double b) { return std::fabs(a - b) < 1e-06; }

void set(TCoordinateSystem& cs, double& field, double v) {
  if (v == field) return;
  field = v;
  cs.vSetChanged();
}
}  // namespace

TLinearCoordinateSystem::TLinearCoordinateSystem() : TSizeShiftCoordinateSystem(eKSLinear) {}

const char* TLinearCoordinateSystem::cpGetTypName() const { return sTypName(); }

void TLinearCoordinateSystem::vGetWorldXY(double* x, double* y, int column, int line) const {
  vGetWorldXY2(x, y, column, line);
}

void TLinearCoordinateSystem::vGetWorldXY2(double* x, double* y, double column, double line) const {
  if (x) *x = dA11 * column + dA12 * line + dA13;
  if (y) *y = dA21 * column + dA22 * line + dA23;
}

void TLinearCoordinateSystem::vGetOrgXY(int*, int*, double, double) const {
  // The way back was never part of this class; asking for it is a mistake of
  // the caller, reported rather than answered with a guess.
  KX_THROW(Err::ulCoordinateSystemNoWayBack, "vGetOrgXY: no pixel coordinates for a %s system", cpGetTypName());
}

void TLinearCoordinateSystem::vGetOrgXY2(double*, double*, double, double) const {
  KX_THROW(Err::ulCoordinateSystemNoWayBack, "vGetOrgXY2: no pixel coordinates for a %s system", cpGetTypName());
}

bool TLinearCoordinateSystem::bEqualParam(const TCoordinateSystem* other) const {
  const auto* o = dynamic_cast<const TLinearCoordinateSystem*>(other);
  if (!o || !TSizeShiftCoordinateSystem::bEqualParam(other)) return false;
  return near(dA12, o->dA12) && near(dA21, o->dA21) && near(dA31, o->dA31) && near(dA32, o->dA32);
}

void TLinearCoordinateSystem::vCopy(const TSizeShiftCoordinateSystem* other) {
  if (!other || other == this) return;
  TSizeShiftCoordinateSystem::vCopy(other);
  if (const auto* o = dynamic_cast<const TLinearCoordinateSystem*>(other)) {
    dA12 = o->dA12;
    dA21 = o->dA21;
    dA31 = o->dA31;
    dA32 = o->dA32;
  }
}

void TLinearCoordinateSystem::vSetdA12(double v) { set(*this, dA12, v); }
void TLinearCoordinateSystem::vSetdA21(double v) { set(*this, dA21, v); }
void TLinearCoordinateSystem::vSetdA31(double v) { set(*this, dA31, v); }
void TLinearCoordinateSystem::vSetdA32(double v) { set(*this, dA32, v); }

void TLinearCoordinateSystem::_vAppendKeys(std::string& text) const {
  TSizeShiftCoordinateSystem::_vAppendKeys(text);
  _vAppendLine(text, "A12", dA12);
  _vAppendLine(text, "A21", dA21);
  _vAppendLine(text, "A31", dA31);
  _vAppendLine(text, "A32", dA32);
}

bool TLinearCoordinateSystem::_bReadKeys(const char* text) {
  return TSizeShiftCoordinateSystem::_bReadKeys(text) && _bReadValue(text, "A12", dA12) &&
         _bReadValue(text, "A21", dA21) && _bReadValue(text, "A31", dA31) && _bReadValue(text, "A32", dA32);
}

void TLinearCoordinateSystem::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) return;
    TSizeShiftCoordinateSystem::vReadIni(ini, section);
    dA12 = ini->dReadFloat(section, "A12", dA12);
    dA21 = ini->dReadFloat(section, "A21", dA21);
    dA31 = ini->dReadFloat(section, "A31", dA31);
    dA32 = ini->dReadFloat(section, "A32", dA32);
  }
  KX_CATCH
}

void TLinearCoordinateSystem::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) return;
    TSizeShiftCoordinateSystem::vWriteIni(ini, section);
    ini->vWriteFloat(section, "A12", dA12);
    ini->vWriteFloat(section, "A21", dA21);
    ini->vWriteFloat(section, "A31", dA31);
    ini->vWriteFloat(section, "A32", dA32);
  }
  KX_CATCH
}

}  // namespace Rastrix
