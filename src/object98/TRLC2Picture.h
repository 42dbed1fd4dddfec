// TRLC2Picture: writes one value into the pixels of a region.
//
// The pixels of the region that lie in the plane take the value; the rest of
// the region is clipped away. No lock is taken. At the end the plane is
// stamped and message 51 goes to its common.
//
// vSet(text, region) parses the value by the plane's pixel type:
//   unsigned char    "%i"        0 to 256 (256 passes and is cut to 8 bits)
//   unsigned short   "%i"        0 to 65535
//   int              "%i"        any int
//   float            "%e"        any
//   TRGBPixel        "%i %i %i"  red, green, blue; each 0 to 65535, cut to 8 bits
//   TRGBFloatPixel   "%e %e %e"  red, green, blue
// Errors: a text that does not parse 0xe7522068 ("Kann nicht in Zahl
// konvertiert werden: %s", three values "... Zahlen ..."); a value out of
// range 0xe7422069 ("%d ausserhalb des Bereichs"); a plane of no pixel type
// (or none at all) 0x07000000.
#pragma once

#include "object98/TRLCArray.h"
#include "rastrix/TPlane.h"

class TRLC2Picture {
 public:
  explicit TRLC2Picture(Rastrix::TPlaneBasic* plane) : pPlane(plane) {}

  void vSet(const char* value, const TRLCArray& region);

  // The typed forms: `plane` takes `value` in the pixels of the region.
  void vSet(unsigned char value, const TRLCArray& region, Rastrix::TPlane<unsigned char>* plane);
  void vSet(unsigned short value, const TRLCArray& region, Rastrix::TPlane<unsigned short>* plane);
  void vSet(float value, const TRLCArray& region, Rastrix::TPlane<float>* plane);
  void vSet(Rastrix::TRGBPixel value, const TRLCArray& region, Rastrix::TPlane<Rastrix::TRGBPixel>* plane);
  void vSet(Rastrix::TRGBFloatPixel value, const TRLCArray& region, Rastrix::TPlane<Rastrix::TRGBFloatPixel>* plane);
  void vSet(int value, const TRLCArray& region, Rastrix::TPlane<int>* plane);

 private:
  Rastrix::TPlaneBasic* pPlane;
};
