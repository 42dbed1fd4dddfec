#include "object98/TOPointList.h"

#include <algorithm>
#include <cstdint>

namespace {
const TLanguage::TLanguageString sTypNames[iTOPL_TypCount] = {
    {"Punkt", "Point"},
    {"Quadrat", "Square"},
    {"Rechteck", "Rectangle"},
    {"Parallelogramm", "Parallelogram"},
    {"HTrapez", "HTrapezium"},
    {"VTrapez", "VTrapezium"},
    {"Polygon", "Polygon"},
    {"Kreis", "Circle"},
    {"Ellipse", "Ellipse"},
    {"Linie", "Line"},
    {"Polylinie", "Polyline"},
    {"OR-Gruppe", "OR-Group"},
    {"XOR-Gruppe", "XOR-Group"},
    {"AND-Gruppe", "AND-Group"},
};

// The radius of a circle's extent: plus 0.5, cut toward zero.
template <class T>
T cutRadius(double r) {
  return static_cast<T>(static_cast<int64_t>(r + 0.5));
}
}  // namespace

const char* cpGetTOPL_TypName(TOPL_Typ typ, TLanguage::eTLanguage language) {
  if (static_cast<int>(typ) >= iTOPL_TypCount) return "?";
  return sTypNames[typ](language);
}

template <class T>
void TOPointList<T>::Extent(T& minX, T& maxX, T& minY, T& maxY) const {
  const int n = Points.size();
  if (n == 0) {
    minX = minY = T(0);
    maxX = maxY = T(-1);
    return;
  }
  if (Typ == eCircle && n >= 2) {
    const TOPoint<T>& c = Points[0];
    const T r = cutRadius<T>((Points[0] - Points[1]).magnitude());
    minX = c.x - r;
    maxX = c.x + r;
    minY = c.y - r;
    maxY = c.y + r;
    return;
  }
  minX = maxX = Points[0].x;
  minY = maxY = Points[0].y;
  for (int i = 1; i < n; ++i) {
    const TOPoint<T>& p = Points[i];
    minX = std::min(minX, p.x);
    maxX = std::max(maxX, p.x);
    minY = std::min(minY, p.y);
    maxY = std::max(maxY, p.y);
  }
}

template class TOPointList<int>;
template class TOPointList<double>;
