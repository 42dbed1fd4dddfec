// A 16-bit grey picture.
#pragma once

#include "rastrix/TPlane.h"

namespace Rastrix {

class TGreyPicture16 : public TPlane<unsigned short> {
 public:
  using TPlane<unsigned short>::TPlane;
  using TPlane<unsigned short>::operator=;

  // The significant bits by the value range: 16, unless the minimum is 0
  // (within 0.001) and the maximum (within 0.001) one of 255, 511, 1023,
  // 2047, 4095 or 8190 (not 8191: kept as it is), which give 8 to 13.
  // Files by extension (lower-cased): see the table of the typed pictures.
  void writeFile(const char* name, bool overwrite) const override;
  void readFile(const char* name, bool alloc) override;
  const char* getFileExtension() override;

  int getBits() const;
};

}  // namespace Rastrix
