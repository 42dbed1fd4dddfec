// Colour spaces of whole pictures: every pixel of a TRGBFloatPixel plane
// from one colour space into another. The conversions run as typed loops over
// the rows with the formulas of TPixelColorSpace (rastrix/ColorMath.h), one
// pass per step: a source other than CIE RGB goes to CIE RGB first, and from
// there to the space asked for.
#pragma once

#include "rastrix/TPlane.h"

namespace Rastrix {

class TImageColorSpace {
 public:
  using TColorPlane = TPlane<TRGBFloatPixel>;

  // dst takes the extension of src (reallocated when it differs) and src's
  // pixels, given in `from`, converted to `to`; `dScale` multiplies the
  // light of the source first (all three components of an RGB or XYZ source,
  // the luminance of the others; 1 leaves it). The reference white of the
  // conversion is that of src's colour space. dst's colour space becomes
  // from -> to with that reference, its value names and units those of `to`,
  // and it is stamped. A source without a way back raises 0xe072108e; an
  // unknown flag 0xe0721084.
  static void vTransform(const TColorPlane& src, TColorPlane& dst, unsigned from, unsigned to, double dScale = 1.0);

  // In place, with the reference white `refXYZ` (X, Y, Z).
  static void vTransformFromCIE_RGB(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromS_RGB(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromEBU_RGB(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromUSER_RGB(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromXYZ(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromLxy(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromLuv(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromLu_v_(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromHSV(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromHSI(TColorPlane& p, unsigned to, const double refXYZ[3]);
  static void vTransformFromLrg(TColorPlane& p, unsigned to, const double refXYZ[3]);

  // Whether every pixel is a valid CIE RGB colour (TPixelColorSpace::bProofRGB).
  static bool bProof_CIE_RGB_Image(const TColorPlane& p);
};

}  // namespace Rastrix
