// The sphere system: a size-shift system whose X and Y are the angles Phi and
// Theta in degrees, with the radius R in metres as the third coordinate.
#pragma once

#include "rastrix/TSizeShiftCoordinateSystem.h"

namespace Rastrix {

class TCoordinateSystemKugel : public TSizeShiftCoordinateSystem {
 public:
  // The size-shift identity with the sphere's axes; not marked changed.
  TCoordinateSystemKugel();

  // Reads the size-shift form, then forces the sphere's axes (vInitOwn).
  void vReadIni(TKxIniFile* ini, const char* section) override;
  const char* cpGetTypName() const override;
  // Axes "Phi" °, "Theta" °, third "R" m; lengths m, areas m², factor 1,
  // possibilities 0x16. Each value is set only where it differs; a
  // difference is a change (new signature).
  virtual void vInitOwn();
};

}  // namespace Rastrix
