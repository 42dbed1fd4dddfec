// A colour picture of three floats per pixel, in the colour space its
// description names.
#pragma once

#include "file98/CRectangle.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

class TRGBFloatPicture : public TPlane<TRGBFloatPixel> {
 public:
  using TPlane<TRGBFloatPixel>::TPlane;
  using TPlane<TRGBFloatPixel>::operator=;

  // Files by extension (lower-cased): see the table of the typed pictures.
  void writeFile(const char* name, bool overwrite) const override;
  void readFile(const char* name, bool alloc) override;
  const char* getFileExtension() override;

  // Over the intersection, by component.
  TRGBFloatPicture& operator+=(const TPlane<TRGBPixel>& o);
  TRGBFloatPicture& operator-=(const TPlane<TRGBPixel>& o);
  TRGBFloatPicture& operator+=(const TPlane<TRGBFloatPixel>& o);
  TRGBFloatPicture& operator-=(const TPlane<TRGBFloatPixel>& o);
  // Every component of every pixel.
  TRGBFloatPicture& operator*=(float f);
  // Negative components become 0 in the area, one by one.
  void greaterNull();
  void greaterNull(const CRectangle& r);
  // Each pixel as CIE RGB to XYZ, negative X, Y, Z set to 0, and back.
  void greaterNullXYZ();
  void greaterNullXYZ(const CRectangle& r);
  void _swapRB() const;
  void vBox(int width, int height);
  // The colour-space text of the utility library (".cos").
  void vReadCosFile(const char* name, bool alloc);
};

}  // namespace Rastrix
