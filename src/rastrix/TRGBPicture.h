// A colour picture of three bytes per pixel. In memory blue, green, red; in
// its files red first.
#pragma once

#include "rastrix/TPlane.h"

namespace Rastrix {

class TRGBPicture : public TPlane<TRGBPixel> {
 public:
  using TPlane<TRGBPixel>::TPlane;
  using TPlane<TRGBPixel>::operator=;

  // Files by extension (lower-cased): see the table of the typed pictures.
  void writeFile(const char* name, bool overwrite) const override;
  void readFile(const char* name, bool alloc) override;
  const char* getFileExtension() override;

  // Exchanges red and blue over the whole picture (const as declared: the
  // pixels change for the caller's duration).
  void _swapRB() const;
};

}  // namespace Rastrix
