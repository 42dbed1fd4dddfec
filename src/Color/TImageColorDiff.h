// The colour difference of every pixel of a picture to a second colour, or
// to the same pixel of a second picture, as a float plane whose value unit is
// the name of the difference.
#pragma once

#include "Color/TPixelColorDiff.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

class TImageColorDiff {
 public:
  // The pixels are in the picture's colour space (its to-flag, CIE RGB if
  // that is no source); `reference` is the reference white in that space.
  static void vCalculate(const TPlane<TRGBFloatPixel>& picture, const TRGBFloatPixel& reference,
                         const TRGBFloatPixel& second, double minimum, double a, double b, double c,
                         TPixelColorDiff::COLDIF d, TPlane<float>& result);
  // Pixel against pixel; the two pictures must have the same extension
  // (0xe0721095 otherwise).
  static void vCalculate(const TPlane<TRGBFloatPixel>& picture, const TPlane<TRGBFloatPixel>& picture2,
                         const TRGBFloatPixel& reference, double minimum, double a, double b, double c,
                         TPixelColorDiff::COLDIF d, TPlane<float>& result);
};

}  // namespace Rastrix
