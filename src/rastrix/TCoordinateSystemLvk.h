// The luminous intensity distribution system: a size-shift system over the
// angles Phi and Theta in degrees, the third coordinate R also an angle,
// lengths in degrees and no area unit.
#pragma once

#include "rastrix/TSizeShiftCoordinateSystem.h"

namespace Rastrix {

class TCoordinateSystemLvk : public TSizeShiftCoordinateSystem {
 public:
  // The size-shift identity with the distribution's axes; not marked changed.
  TCoordinateSystemLvk();

  // Reads the size-shift form, then forces the axes (vInitOwn).
  void vReadIni(TKxIniFile* ini, const char* section) override;
  const char* cpGetTypName() const override;
  // Axes "Phi" °, "Theta" °, third "R" °; lengths °, no area unit, factor 1,
  // value Z 1, possibilities 0x16. Each value is set only where it differs;
  // a difference is a change (new signature).
  virtual void vInitOwn();
};

}  // namespace Rastrix
