// A float picture (luminance in cd/m² as a rule).
#pragma once

#include "file98/CRectangle.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

class TFloatPicture : public TPlane<float> {
 public:
  using TPlane<float>::TPlane;
  using TPlane<float>::operator=;

  // Files by extension (lower-cased): see the table of the typed pictures.
  void writeFile(const char* name, bool overwrite) const override;
  void readFile(const char* name, bool alloc) override;
  const char* getFileExtension() override;

  // Over the intersection of both extensions, pixel by pixel at the same
  // numbers, the integer widened to float.
  TFloatPicture& operator+=(const TPlane<unsigned char>& o);
  TFloatPicture& operator+=(const TPlane<unsigned short>& o);
  TFloatPicture& operator+=(const TPlane<int>& o);
  TFloatPicture& operator-=(const TPlane<unsigned char>& o);
  TFloatPicture& operator-=(const TPlane<unsigned short>& o);
  TFloatPicture& operator-=(const TPlane<int>& o);

  // Display mappings onto 0..255 over the intersection: linear
  // ((x - min) / ((max - min) / 255) + 0.5, clipped) and logarithmic
  // (decades below the maximum). With `automatic` the extremes are found and
  // returned first. Nothing happens (not even a message) when the range is
  // empty, or the maximum not above 0.
  void convert(TPlane<unsigned char>& dst, float& min, float& max, bool automatic) const;
  void convert(TPlane<unsigned char>& dst, double decades, float& max, bool automatic) const;
  // Negative pixels become 0 in the area cut to the plane.
  void greaterNull();
  void greaterNull(const CRectangle& r);
  // Box filter of width x height, Gaussian of order n (math98::TPicConvol).
  void vBox(int width, int height);
  void vGauss(unsigned int n);
  // Test pictures 1 to 10; another number leaves the plane cleared.
  void vMakeTestbild(int n);
};

}  // namespace Rastrix
