#include "rastrix/TCopyCoordinates.h"

#include <algorithm>
#include <climits>
#include <cstdint>


namespace Rastrix {

namespace {

// Zoom factors far beyond any screen are cut here, so that -z always exists.
constexpr int iZoomLimit = 1 << 16;

int clampInt(long long v) { return static_cast<int>(std::clamp<long long>(v, INT_MIN, INT_MAX)); }

// Truncated toward zero, beyond the int range held at its ends (screen
// positions saturate rather than wrap). |x| stays far below 2^63 here.
int truncInt(double x) { return clampInt(static_cast<long long>(x)); }

}  // namespace

TCopyCoordinates::TCopyCoordinates(int zoom) { setZoomFactor(zoom); }

void TCopyCoordinates::setZoomFactor(int zoom) {
  iZoom = std::clamp(zoom, -iZoomLimit, iZoomLimit);
  _vReset();
}

double TCopyCoordinates::dGetScale() const {
  if (iZoom > 1) return iZoom;
  if (iZoom == 1) return 1.5;
  if (iZoom == 0) return 1.0;
  if (iZoom == -1) return 2.0 / 3.0;
  return 1.0 / -iZoom;
}

void TCopyCoordinates::setSrc(const CRectangle& r, bool exact) {
  srcInput = r;
  bExact = exact;
  _vReset();
}

void TCopyCoordinates::setDstOrigin(int line, int column) {
  iDstLine = line;
  iDstColumn = column;
  _vReset();
}

void TCopyCoordinates::_vReset() {
  int lines = 0, columns = 0, dstLines = 0, dstColumns = 0;
  setSrcLength(srcInput.YSize(), lines, dstLines, bExact);
  setSrcLength(srcInput.XSize(), columns, dstColumns, bExact);
  src = CRectangle(srcInput.iFirstLine, clampInt(static_cast<long long>(srcInput.iFirstLine) + lines - 1),
                   srcInput.iFirstColumn, clampInt(static_cast<long long>(srcInput.iFirstColumn) + columns - 1));
  dst = CRectangle(iDstLine, clampInt(static_cast<long long>(iDstLine) + dstLines - 1), iDstColumn,
                   clampInt(static_cast<long long>(iDstColumn) + dstColumns - 1));
  // The copy covers the picture: a last step widened past it is not read.
  copySrc = src;
  proofCopy(copySrc, srcInput);
  copyDst = getDstRect(copySrc);
}

bool TCopyCoordinates::proofCopy(CRectangle& rect, const CRectangle& area) {
  CRectangle r = rect;
  r &= area;
  if (r.YSize() < 0 || r.XSize() < 0) return false;
  rect = r;
  return true;
}

bool TCopyCoordinates::setCopySrc(const CRectangle& rect) {
  CRectangle r = rect;
  if (!proofCopy(r, srcInput)) return false;
  copySrc = r;
  copyDst = getDstRect(r);
  return true;
}

bool TCopyCoordinates::setCopyDst(const CRectangle& rect) {
  CRectangle r = rect;
  if (!proofCopy(r, dst)) return false;
  copyDst = r;
  copySrc = getSrcRect(r);
  // Never beyond the picture, even where the last step was widened.
  if (!proofCopy(copySrc, srcInput))
    copySrc = CRectangle(srcInput.iFirstLine, clampInt(srcInput.iFirstLine - 1LL), srcInput.iFirstColumn,
                         clampInt(srcInput.iFirstColumn - 1LL));
  return true;
}

void TCopyCoordinates::_vLength(int z, int length, int& in, int& out, bool exact) {
  const long long n = std::max(length, 0);
  long long i = n, o = n;
  auto whole = [&](long long step, long long widen) {
    const long long m = exact ? n : n + widen;
    return m - m % step;
  };
  if (z > 1) {
    o = n * z;
  } else if (z == 1) {
    i = whole(2, 1);
    o = i * 3 / 2;
  } else if (z == -1) {
    i = whole(3, 2);
    o = i * 2 / 3;
  } else if (z < -1) {
    i = whole(-static_cast<long long>(z), -1LL - z);
    o = i / -static_cast<long long>(z);
  }
  in = clampInt(i);
  out = clampInt(o);
}

void TCopyCoordinates::setSrcLength(int length, int& srcLength, int& dstLength, bool exact) const {
  _vLength(iZoom, length, srcLength, dstLength, exact);
}

void TCopyCoordinates::setDstLength(int length, int& srcLength, int& dstLength, bool exact) const {
  // The same steps seen from the other side: the zoom with its sign exchanged.
  _vLength(-iZoom, length, dstLength, srcLength, exact);
}

int TCopyCoordinates::getDst(int v) const {
  if (iZoom > 1) return clampInt(static_cast<long long>(v) * iZoom);
  if (iZoom == 1) return truncInt(static_cast<double>(v) * 3 * 0.5 + 0.5);
  if (iZoom == 0) return v;
  if (iZoom == -1) return truncInt(static_cast<double>(v) * 2 / 3 + 0.5);
  return truncInt(v / static_cast<double>(-iZoom) + 0.5);
}

int TCopyCoordinates::getSrc(int v) const {
  if (iZoom > 1) return v / iZoom;
  if (iZoom == 1) return clampInt(static_cast<long long>(v) * 2 / 3);
  if (iZoom == 0) return v;
  if (iZoom == -1) return clampInt(static_cast<long long>(v) * 3 / 2);
  return clampInt(-static_cast<long long>(iZoom) * v);
}

int TCopyCoordinates::getXDst(int x) const {
  return clampInt(iDstColumn + static_cast<long long>(getDst(clampInt(static_cast<long long>(x) - src.iFirstColumn))));
}

int TCopyCoordinates::getYDst(int y) const {
  return clampInt(iDstLine + static_cast<long long>(getDst(clampInt(static_cast<long long>(y) - src.iFirstLine))));
}

int TCopyCoordinates::getXSrc(int x) const {
  return clampInt(src.iFirstColumn + static_cast<long long>(getSrc(clampInt(static_cast<long long>(x) - iDstColumn))));
}

int TCopyCoordinates::getYSrc(int y) const {
  return clampInt(src.iFirstLine + static_cast<long long>(getSrc(clampInt(static_cast<long long>(y) - iDstLine))));
}

// The last pixel of a rectangle is the one before the image of the pixel after it.
CRectangle TCopyCoordinates::getDstRect(const CRectangle& r) const {
  return CRectangle(getYDst(r.iFirstLine), clampInt(getYDst(clampInt(r.iLastLine + 1LL)) - 1LL),
                    getXDst(r.iFirstColumn), clampInt(getXDst(clampInt(r.iLastColumn + 1LL)) - 1LL));
}

CRectangle TCopyCoordinates::getSrcRect(const CRectangle& r) const {
  return CRectangle(getYSrc(r.iFirstLine), clampInt(getYSrc(clampInt(r.iLastLine + 1LL)) - 1LL),
                    getXSrc(r.iFirstColumn), clampInt(getXSrc(clampInt(r.iLastColumn + 1LL)) - 1LL));
}

}  // namespace Rastrix
