#include "rastrix/TCoordinateSystemLvk.h"

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace Rastrix {

namespace {
const TLanguage::TLanguageString sTypName("Lvk", "Lid");
}  // namespace

TCoordinateSystemLvk::TCoordinateSystemLvk() : TSizeShiftCoordinateSystem(eKSLvk) {
  vInitOwn();
  vSetChanged(false);  // a fresh system has nothing to save
}

const char* TCoordinateSystemLvk::cpGetTypName() const { return sTypName(); }

void TCoordinateSystemLvk::vInitOwn() {
  _vInitOwn({"Phi", "\xB0", "Theta", "\xB0", "R", "\xB0", "\xB0", "", 1.0, true, 1.0, 0x16});
}

void TCoordinateSystemLvk::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) return;
    TSizeShiftCoordinateSystem::vReadIni(ini, section);
    vInitOwn();
  }
  KX_CATCH
}

}  // namespace Rastrix
