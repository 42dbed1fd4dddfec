#include "rastrix/TCoordinateSystemKugel.h"

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace Rastrix {

namespace {
const TLanguage::TLanguageString sTypName("Kugelkoordinatensystem", "Sphere coordinate system");
}  // namespace

TCoordinateSystemKugel::TCoordinateSystemKugel() : TSizeShiftCoordinateSystem(eKSKugel) {
  vInitOwn();
  vSetChanged(false);  // a fresh system has nothing to save
}

const char* TCoordinateSystemKugel::cpGetTypName() const { return sTypName(); }

void TCoordinateSystemKugel::vInitOwn() {
  _vInitOwn({"Phi", "\xB0", "Theta", "\xB0", "R", "m", "m", "m\xB2", 1.0, false, 0.0, 0x16});
}

void TCoordinateSystemKugel::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) return;
    TSizeShiftCoordinateSystem::vReadIni(ini, section);
    vInitOwn();
  }
  KX_CATCH
}

}  // namespace Rastrix
