// Loops over the pixels of a plane: along the runs of a region, along a
// border line, over a rectangle or a circle, each clipped to the plane. A
// loop hands the pixels to a statistic S, which provides:
//   unsigned uGetKlassifikatorSize();  (called once first: the matrix fits)
//   void addPixelLC(const T&, const TPlane<T>*, double line, double column);
//   void addPixelLCLabel(const T&, const TPlane<T>*, double line, double column, TPlane<unsigned char>*);
// and, used where present:
//   void addRunLC(const TPlane<T>&, int line, int column, int n, TPlane<unsigned char>* label);
//   void addPixelAveraged(const TPlane<T>&, int line, int column, unsigned diameter);
// A diameter of 3 or more averages each pixel over the circle of that
// diameter around it (through addPixelAveraged); below 3 the pixel itself is
// taken. Without a label, an averaged pixel is used only when its whole
// circle lies inside the region.
//
// The forms with 2 read a plane of Tin and hand Tout, converted with
// static_cast. TSetPixel is the statistic that writes one value into the
// pixels instead.
#pragma once

#include <algorithm>

#include "file98/CRectangle.h"
#include "object98/TBorderLine.h"
#include "object98/TCircle.h"
#include "object98/TRLCArray.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

template <class Tin, class Tout, class Plane>
class TPlaneLoop {
 public:
  TPlaneLoop(const Plane& plane, unsigned diameter) : rPlane(plane), uDiameter(diameter) {}
  const Plane& rGetPlane() const { return rPlane; }
  unsigned uGetDiameter() const { return uDiameter; }

 protected:
  int firstLine() const { return rPlane.getFirstLine(); }
  int lastLine() const { return rPlane.getFirstLine() + rPlane.getLines() - 1; }
  int firstColumn() const { return rPlane.getFirstColumn(); }
  int lastColumn() const { return rPlane.getFirstColumn() + rPlane.getColumns() - 1; }

  // One pixel to the statistic, with or without label.
  template <class S>
  void _pixel(S* s, int line, int column, TPlane<unsigned char>* label) const {
    const Tout v = static_cast<Tout>(rPlane[line][column]);
    if (label)
      s->addPixelLCLabel(v, &rPlane, line, column, label);
    else
      s->addPixelLC(v, &rPlane, line, column);
  }

  const Plane& rPlane;
  unsigned uDiameter;
};

template <class S, class T>
concept CRunStatistic = requires(S* s, const TPlane<T>& p, TPlane<unsigned char>* label) {
  s->addRunLC(p, 0, 0, 0, label);
};
template <class S, class T>
concept CAveragingStatistic = requires(S* s, const TPlane<T>& p) { s->addPixelAveraged(p, 0, 0, 3u); };

// Along the runs of a region.
template <class Tin, class Tout, class Plane>
class TPlaneLoopRLC2 : public TPlaneLoop<Tin, Tout, Plane> {
  using Base = TPlaneLoop<Tin, Tout, Plane>;

 public:
  TPlaneLoopRLC2(const Plane& plane, const TRLCArray& region, unsigned diameter)
      : Base(plane, diameter), rRegion(region) {}

  template <class S>
  void loop(S* s) const { _loop(s, nullptr); }
  template <class S>
  void loop(S* s, TPlane<unsigned char>* label) const { _loop(s, label); }

 private:
  template <class S>
  void _loop(S* s, TPlane<unsigned char>* label) const {
    s->uGetKlassifikatorSize();
    if (rRegion.size() <= 0 || this->rPlane.getLines() <= 0) return;
    const int first = std::max(this->firstLine(), rRegion.getFirstLine());
    const int last = std::min(this->lastLine(), rRegion.getLastLine());
    const unsigned d = this->uDiameter;
    // The circle of an averaged pixel, for the test that it lies inside.
    TRLCArray circle;
    long circlePixels = 0;
    if (d >= 3 && !label) {
      const int r = static_cast<int>(d / 2);
      circle.calcRLCCircle(TOPointList<int>(eCircle, {{0, 0}, {r, 0}}));
      circlePixels = circle.pixel();
    }
    for (int line = first; line <= last; ++line) {
      for (const TRLC& run : rRegion[line]) {
        const int c0 = std::max(run.FirstColumn, this->firstColumn());
        const int c1 = std::min(run.LastColumn, this->lastColumn());
        if (c1 < c0) continue;
        if (d < 3) {
          if constexpr (std::is_same_v<Tin, Tout> && CRunStatistic<S, Tout>) {
            s->addRunLC(this->rPlane, line, c0, c1 - c0 + 1, label);
          } else {
            for (int c = c0; c <= c1; ++c) this->_pixel(s, line, c, label);
          }
          continue;
        }
        for (int c = c0; c <= c1; ++c) {
          if (!label) {
            TRLCArray moved(circle);
            moved.offset(c, line);
            moved &= rRegion;
            if (moved.pixel() != circlePixels) continue;
          }
          if constexpr (CAveragingStatistic<S, Tin>)
            s->addPixelAveraged(this->rPlane, line, c, d);
          else
            this->_pixel(s, line, c, label);
        }
      }
    }
  }

  const TRLCArray& rRegion;
};

template <class T, class Plane = TPlane<T>>
class TPlaneLoopRLC : public TPlaneLoopRLC2<T, T, Plane> {
 public:
  using TPlaneLoopRLC2<T, T, Plane>::TPlaneLoopRLC2;
};

// Point by point along a border line; points outside the plane are skipped.
template <class Tin, class Tout, class Plane>
class TPlaneLoopBorder2 : public TPlaneLoop<Tin, Tout, Plane> {
  using Base = TPlaneLoop<Tin, Tout, Plane>;

 public:
  TPlaneLoopBorder2(const Plane& plane, const TBorderLine& border, unsigned diameter)
      : Base(plane, diameter), rBorder(border) {}
  template <class S>
  void loop(S* s, TPlane<unsigned char>* label = nullptr) const {
    s->uGetKlassifikatorSize();
    if (this->rPlane.getLines() <= 0) return;
    for (unsigned i = 0; i < rBorder.size(); ++i) {
      const int x = rBorder[i].x, y = rBorder[i].y;
      if (y < this->firstLine() || y > this->lastLine() || x < this->firstColumn() || x > this->lastColumn()) continue;
      if constexpr (CAveragingStatistic<S, Tin>)
        if (this->uDiameter >= 3) {
          s->addPixelAveraged(this->rPlane, y, x, this->uDiameter);
          continue;
        }
      this->_pixel(s, y, x, label);
    }
  }

 private:
  const TBorderLine& rBorder;
};

template <class T, class Plane = TPlane<T>>
class TPlaneLoopBorder : public TPlaneLoopBorder2<T, T, Plane> {
 public:
  using TPlaneLoopBorder2<T, T, Plane>::TPlaneLoopBorder2;
};

// Over a rectangle, line by line.
template <class Tin, class Tout, class Plane>
class TPlaneLoopRect2 : public TPlaneLoop<Tin, Tout, Plane> {
  using Base = TPlaneLoop<Tin, Tout, Plane>;

 public:
  TPlaneLoopRect2(const Plane& plane, const CRectangle& r, unsigned diameter = 1) : Base(plane, diameter), rect(r) {}
  template <class S>
  void loop(S* s, TPlane<unsigned char>* label = nullptr) const {
    s->uGetKlassifikatorSize();
    if (this->rPlane.getLines() <= 0) return;
    const int l0 = std::max(rect.iFirstLine, this->firstLine()), l1 = std::min(rect.iLastLine, this->lastLine());
    const int c0 = std::max(rect.iFirstColumn, this->firstColumn()), c1 = std::min(rect.iLastColumn, this->lastColumn());
    for (int l = l0; l <= l1; ++l)
      for (int c = c0; c <= c1; ++c) this->_pixel(s, l, c, label);
  }

 private:
  CRectangle rect;
};

template <class T, class Plane = TPlane<T>>
class TPlaneLoopRect : public TPlaneLoopRect2<T, T, Plane> {
 public:
  using TPlaneLoopRect2<T, T, Plane>::TPlaneLoopRect2;
};

// Over a circle (TCircle's rows), clipped to the plane.
template <class Tin, class Tout, class Plane>
class TPlaneLoopCircle2 : public TPlaneLoop<Tin, Tout, Plane> {
  using Base = TPlaneLoop<Tin, Tout, Plane>;

 public:
  TPlaneLoopCircle2(const Plane& plane, const TCircle<int>& c) : Base(plane, 1), circle(c) {}
  template <class S>
  void loop(S* s, TPlane<unsigned char>* label = nullptr) const {
    s->uGetKlassifikatorSize();
    if (this->rPlane.getLines() <= 0) return;
    const int l0 = std::max(circle.getMinY(), this->firstLine()), l1 = std::min(circle.getMaxY(), this->lastLine());
    for (int l = l0; l <= l1; ++l) {
      const int c0 = std::max(circle.getLeftBorder(l), this->firstColumn());
      const int c1 = std::min(circle.getRightBorder(l), this->lastColumn());
      for (int c = c0; c <= c1; ++c) this->_pixel(s, l, c, label);
    }
  }

 private:
  TCircle<int> circle;
};

// The statistic that sets the pixels it gets to one value.
template <class T, class Plane = TPlane<T>>
class TSetPixel {
 public:
  TSetPixel(Plane& plane, const T& value) : rPlane(plane), value_(value) {}
  unsigned uGetKlassifikatorSize() { return 1; }
  void addPixelLC(const T&, const Plane*, double line, double column) {
    rPlane[static_cast<int>(line)][static_cast<int>(column)] = value_;
  }
  void addPixelLCLabel(const T& p, const Plane* plane, double line, double column, TPlane<unsigned char>*) {
    addPixelLC(p, plane, line, column);
  }

 private:
  Plane& rPlane;
  T value_;
};

}  // namespace Rastrix
