// Distances of a point from a straight line and from a segment in the plane.
#pragma once

#include <algorithm>
#include <cmath>

namespace CGeometry {

// Distance of (px, py) from the line through (ax, ay) and (bx, by); when the
// two points coincide, the distance from that point.
inline double AbstandPunktGerade(double px, double py, double ax, double ay, double bx, double by) {
  const double dx = bx - ax, dy = by - ay;
  const double len = std::hypot(dx, dy);
  if (len == 0) return std::hypot(px - ax, py - ay);
  return std::fabs(dx * (py - ay) - dy * (px - ax)) / len;
}

// Distance of (px, py) from the segment from (ax, ay) to (bx, by): to the
// nearest point of the segment, its ends included.
inline double AbstandPunktStrecke(double px, double py, double ax, double ay, double bx, double by) {
  const double dx = bx - ax, dy = by - ay;
  const double len2 = dx * dx + dy * dy;
  if (len2 == 0) return std::hypot(px - ax, py - ay);
  const double t = std::clamp(((px - ax) * dx + (py - ay) * dy) / len2, 0.0, 1.0);
  return std::hypot(px - (ax + t * dx), py - (ay + t * dy));
}

}  // namespace CGeometry
