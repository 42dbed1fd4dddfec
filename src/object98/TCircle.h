// TCircle<T>: the rows of a filled circle, for rasterising and for the loops
// that walk a circle around a pixel.
//
// For a line y the circle covers the columns getLeftBorder(y) ..
// getRightBorder(y); getDiffX(y) is the half width of that row, -1 outside the
// circle's lines. The half width is sqrt(r*r - dy*dy) + 0.5 cut toward zero,
// and 0 where r*r - dy*dy is not positive (the top and bottom rows).
#pragma once

#include <cmath>
#include <cstdint>

template <class T>
class TCircle {
 public:
  // A radius below 1 becomes 1.
  TCircle(T centreX, T centreY, T radius) : X(centreX), Y(centreY), R(radius < T(1) ? T(1) : radius) {}

  T getX() const { return X; }
  T getY() const { return Y; }
  T getRadius() const { return R; }
  T getMinX() const { return X - R; }
  T getMaxX() const { return X + R; }
  T getMinY() const { return Y - R; }
  T getMaxY() const { return Y + R; }

  T getDiffX(T y) const {
    if (y < getMinY() || y > getMaxY()) return T(-1);
    const double dy = static_cast<double>(y) - static_cast<double>(Y);
    const double r = static_cast<double>(R);
    const double q = r * r - dy * dy;
    if (q <= 0.0) return T(0);
    return static_cast<T>(static_cast<int64_t>(std::sqrt(q) + 0.5));
  }
  T getLeftBorder(T y) const { return X - getDiffX(y); }
  T getRightBorder(T y) const { return X + getDiffX(y); }

 private:
  T X, Y, R;
};
