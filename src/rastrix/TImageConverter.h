// Any plane into any other: the 6 x 6 table of conversions by source and
// destination pixel type, the split of a colour plane into three and their
// merge, and the clipboard forms of any plane.
//
// Scaling, computed in float: float to 8-bit and to 16-bit stretch min..max
// of the whole plane to 0..255 and to 0..usMaximum (1023: ten bits,
// deliberately); float to int scales by iMaximum / max(|min|, |max|), keeping
// the origin; float colour to byte colour by 255 / the largest component.
// A constant plane becomes all zeros. "Through X" goes by a temporary plane
// of type X, each step with its own loss.
#pragma once

#include "file98/CRectangle.h"
#include "rastrix/TPlaneBasic.h"

class TImageConverter {
 public:
  static constexpr unsigned short usMaximum = 1023;
  static constexpr int iMaximum = 65535;
  static constexpr const char* cpNullPointer = "null pointer assignment";
  static constexpr const char* cpWrongType = "wrong image type";
  using TFunktion = void (*)(const Rastrix::TPlaneBasic* src, Rastrix::TPlaneBasic* dst);
  // Indexed by source pixel type * 6 + destination pixel type.
  static const TFunktion Funktion[36];

  // Null planes: 0xe5121088; src equal to dst: 0xe512108a; a plane not of
  // its pixel type's class: 0xe5121089. dst is dated now and stamped.
  static void vCopyImage(const Rastrix::TPlaneBasic* src, Rastrix::TPlaneBasic* dst);
  // a: channel 0 (the third float), b: channel 1, c: channel 2 (the first).
  static void vSplitRGB(const Rastrix::TPlaneBasic* colour, Rastrix::TPlaneBasic* a, Rastrix::TPlaneBasic* b,
                        Rastrix::TPlaneBasic* c);
  // The reverse; all given planes of one extension (0xe512108c).
  static void vMergeRGB(Rastrix::TPlaneBasic* a, Rastrix::TPlaneBasic* b, Rastrix::TPlaneBasic* c,
                        Rastrix::TPlaneBasic* colour);

  static void vToClipboard(const Rastrix::TPlaneBasic* plane, bool clear, bool native, bool text);
  // The pixel type of the first native form on the clipboard, -1 for none.
  static int eHaveClipboardData();
  static bool bFromClipboard(Rastrix::TPlaneBasic* plane);
  static bool bGetImageSize(CRectangle* r);
};
