// TPicture2RLC: regions made from pictures, and a float picture made from a
// region. It holds no data; the functions may be called on the class.
//
// A region found in a picture has the tight box of its runs in lines; its
// columns start from 32767 and -32767 as the system always has, so a region
// right of column 32767 gets a box that begins at 32767.
//
// Errors: vTransform256 and vRLC2FloatPicture on a plane without pixels
// raise 0xe7021004.
#pragma once

#include <vector>

#include "object98/TRLCArray.h"
#include "rastrix/TPlane.h"

class TPicture2RLC {
 public:
  // One region for each grey value: `result` gets upper + 1 entries, all
  // cleared, where lower and upper are first narrowed to the plane's
  // minimum and maximum; entry v (lower <= v <= upper) is the region of the
  // pixels equal to v. Class 0 of a label picture is a value like any other.
  static void vTransform256(const Rastrix::TPlane<unsigned char>& plane, std::vector<TRLCArray>& result,
                            unsigned char upper, unsigned char lower);
  // The region of the pixels with lower <= value <= upper (NaN never). When
  // no pixel is inside, `result` is left as it was.
  static void vFloatPicture2RLC(const Rastrix::TPlane<float>& plane, TRLCArray& result, float lower, float upper);
  // The whole plane takes `outside`, then the pixels of the region within
  // the plane take `inside`. Stamps the plane, sets its date (null: now) and
  // sends message 51.
  static void vRLC2FloatPicture(const TRLCArray& rlc, Rastrix::TPlane<float>& plane, float inside, float outside);
};
