// TCopyCoordinates: the mapping between a picture (the source) and a zoomed
// rectangle on the screen (the destination). It knows nothing of world
// coordinates.
//
// The zoom factor z, an int:
//   z > 1    z times larger            getDst(v) = z * v,          getSrc(v) = v / z
//   z = 1    3/2                       getDst(v) = trunc(1.5 v + 0.5), getSrc(v) = v * 2 / 3
//   z = 0    1                         getDst(v) = v,              getSrc(v) = v
//   z = -1   2/3                       getDst(v) = trunc(v * 2 / 3 + 0.5), getSrc(v) = v * 3 / 2
//   z < -1   1/-z                      getDst(v) = trunc(v / -z + 0.5), getSrc(v) = -z * v
// (integer divisions truncate toward zero; results beyond the int range are
// held at its ends; z is held within +-65536). The fractional zooms work in
// steps: 2 source pixels become 3 at z = 1, 3 become 2 at z = -1, -z become
// 1 below; source lengths are whole steps.
//
// Rectangles are CRectangle (first and last line, first and last column,
// both ends inclusive). The object holds the zoom, the source as given, the
// effective source (the given one with a length of whole steps), the
// destination (the effective source zoomed, at the destination origin), and
// the part being copied: the copy source and the copy destination.
//
// A point maps relative to the origins: getXDst(x) = first column of the
// destination + getDst(x - first column of the effective source); a
// rectangle maps its first pixel and the pixel after its last, so that whole
// zoomed pixels are covered.
//
// Plain value object; not thread safe.
#pragma once

#include "file98/CRectangle.h"

namespace Rastrix {

class TCopyCoordinates {
 public:
  struct TPoint {
    int x = 0;  // column
    int y = 0;  // line
    bool operator==(const TPoint&) const = default;
  };

  explicit TCopyCoordinates(int zoom = 0);

  // Sets the zoom and re-sets the effective source, the destination and the
  // copy rectangles from the source as given.
  void setZoomFactor(int zoom);
  int getZoomFactor() const { return iZoom; }
  // The scale of lengths: z, 3/2, 1, 2/3 or 1/-z.
  double dGetScale() const;

  // The picture area to show. `exact` false widens a length that is not a
  // whole number of steps to the next whole step (no partial pixel is lost,
  // the last step may reach past the picture); true cuts it to whole steps.
  // The copy rectangles become the effective source and the destination.
  void setSrc(const CRectangle& src, bool exact = false);
  // Where the destination starts (its first line and column).
  void setDstOrigin(int line, int column);

  const CRectangle& rGetSrcInput() const { return srcInput; }
  const CRectangle& rGetSrc() const { return src; }
  const CRectangle& rGetDst() const { return dst; }
  const CRectangle& rGetCopySrc() const { return copySrc; }
  const CRectangle& rGetCopyDst() const { return copyDst; }

  // Clips `rect` to the source as given (setCopySrc) or to the destination
  // (setCopyDst) and makes it the copy source or destination, the other one
  // its image. False, with nothing changed, when the clipped rectangle has a
  // negative width or height; an empty one (no pixel) is accepted.
  bool setCopySrc(const CRectangle& rect);
  bool setCopyDst(const CRectangle& rect);
  // Clips `rect` to `area`; false (rect unchanged) for a negative width or
  // height of the result.
  static bool proofCopy(CRectangle& rect, const CRectangle& area);

  // A source length of whole steps (`src`) and its destination length
  // (`dst`). Negative lengths count as 0.
  void setSrcLength(int length, int& src, int& dst, bool exact) const;
  // A destination length of whole steps and its source length.
  void setDstLength(int length, int& src, int& dst, bool exact) const;

  // Lengths and offsets, without origins.
  int getDst(int v) const;
  int getSrc(int v) const;
  // With the origins of the effective source and the destination.
  int getXDst(int x) const;
  int getYDst(int y) const;
  int getXSrc(int x) const;
  int getYSrc(int y) const;
  TPoint getDstPoint(const TPoint& p) const { return {getXDst(p.x), getYDst(p.y)}; }
  TPoint getSrcPoint(const TPoint& p) const { return {getXSrc(p.x), getYSrc(p.y)}; }
  CRectangle getDstRect(const CRectangle& r) const;
  CRectangle getSrcRect(const CRectangle& r) const;
  // The middle of a zoomed pixel: z / 2 for z >= 2, else 0.
  int getDstRoundOffset() const { return iZoom >= 2 ? iZoom / 2 : 0; }

 private:
  // Lengths in whole steps for the zoom `z`: `in` is the side given, `out` its
  // image.
  static void _vLength(int z, int length, int& in, int& out, bool exact);
  static int _iMap(int z, int v);
  void _vReset();

  int iZoom = 0;
  bool bExact = false;
  int iDstLine = 0;
  int iDstColumn = 0;
  CRectangle srcInput;
  CRectangle src;
  CRectangle dst;
  CRectangle copySrc;
  CRectangle copyDst;
};

}  // namespace Rastrix
