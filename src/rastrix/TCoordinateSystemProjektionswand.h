// The projection wall: a size-shift system on a vertical wall, in metres.
// X runs along the wall, the picture's Y is the world's height Z, and the
// third coordinate is the distance Y to the wall.
#pragma once

#include "rastrix/TSizeShiftCoordinateSystem.h"

namespace Rastrix {

class TCoordinateSystemProjektionswand : public TSizeShiftCoordinateSystem {
 public:
  // The size-shift identity with the wall's axes; not marked changed.
  TCoordinateSystemProjektionswand();

  // Reads the size-shift form, then forces the wall's axes (vInitOwn).
  void vReadIni(TKxIniFile* ini, const char* section) override;
  const char* cpGetTypName() const override;
  // Axes "X" m, "Z" m, third "Y" m; lengths m, areas m², factor 1,
  // possibilities 6. Each value is set only where it differs; a difference
  // is a change (new signature).
  virtual void vInitOwn();
};

}  // namespace Rastrix
