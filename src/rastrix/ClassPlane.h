// The frame of classifying a plane into a class plane, shared by the kinds
// of classifier: the area both planes share, the class plane's type, and
// one call per line of that area with the line's output.
#pragma once

#include "kxexception/KxError.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TPlane.h"

namespace Rastrix::classplane {

// Calls fill(line, c1, c2, out) for each line of the area the planes share,
// `out` pointing at the class of column c1 (unsigned char* or unsigned
// short*, as the class plane is). Nothing when they share nothing.
template <class Fill>
void vRows(const TPlaneBasic& src, TPlaneBasic& classes, unsigned size, Fill fill) {
  const eComparePixelTyp t = classes.eGetPicturePT();
  if (t != eUC && t != eUS)
    KX_THROW(Err::ulKlassifikatorIndex, "class plane must be 8 or 16 bit, not type %d", static_cast<int>(t));
  if (t == eUC && size > 256)
    KX_THROW(Err::ulKlassifikatorIndex, "%u classes do not fit an 8-bit class plane", size);
  if (!src.isValid() || !classes.isValid()) return;
  CRectangle a = src.getExtension();
  if (a.AndRectangle(classes.getExtension())) return;
  for (int l = a.iFirstLine; l <= a.iLastLine; ++l) {
    if (t == eUC)
      fill(l, a.iFirstColumn, a.iLastColumn, static_cast<TPlane<unsigned char>&>(classes)[l] + a.iFirstColumn);
    else
      fill(l, a.iFirstColumn, a.iLastColumn, static_cast<TPlane<unsigned short>&>(classes)[l] + a.iFirstColumn);
  }
}

}  // namespace Rastrix::classplane
