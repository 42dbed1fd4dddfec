#include "rastrix/TCoordinateSystemProjektionswand.h"

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace Rastrix {

namespace {
const TLanguage::TLanguageString sTypName("Projektionswand", "Projection wall");
}  // namespace

TCoordinateSystemProjektionswand::TCoordinateSystemProjektionswand() : TSizeShiftCoordinateSystem(eKSProjektionswand) {
  vInitOwn();
  vSetChanged(false);  // a fresh system has nothing to save
}

const char* TCoordinateSystemProjektionswand::cpGetTypName() const { return sTypName(); }

void TCoordinateSystemProjektionswand::vInitOwn() {
  _vInitOwn({"X", "m", "Z", "m", "Y", "m", "m", "m\xB2", 1.0, false, 0.0, 6});
}

void TCoordinateSystemProjektionswand::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) return;
    TSizeShiftCoordinateSystem::vReadIni(ini, section);
    vInitOwn();
  }
  KX_CATCH
}

}  // namespace Rastrix
