// An 8-bit grey picture.
#pragma once

#include "file98/CRectangle.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

class TGreyPicture8 : public TPlane<unsigned char> {
 public:
  using TPlane<unsigned char>::TPlane;
  using TPlane<unsigned char>::operator=;

  // Above the threshold 255, all others (the threshold itself too) 0.
  // Files by extension (lower-cased): see the table of the typed pictures.
  void writeFile(const char* name, bool overwrite) const override;
  void readFile(const char* name, bool alloc) override;
  const char* getFileExtension() override;

  void binarize(unsigned char threshold);
  // A float plane mapped linearly onto 0..255 over the area (cut to both
  // planes): a table of 256 entries (2i + 1)(max - min)/510 + min, and per
  // pixel the number of entries below it by a binary search; above the last
  // entry that is 256, stored as its low eight bits: 0 (kept as it is).
  // Without min and max those of the whole source. max < min: 0xe752104d;
  // an empty area: 0xe752104c.
  void convertLinear(const TPlane<float>& src);
  void convertLinear(const TPlane<float>& src, float min, float max);
  void convertLinear(const TPlane<float>& src, const CRectangle& r);
  void convertLinear(const TPlane<float>& src, const CRectangle& r, float min, float max);

 private:
  void _convertLinear(const TPlane<float>& src, const CRectangle& r, float min, float max);
};

}  // namespace Rastrix
