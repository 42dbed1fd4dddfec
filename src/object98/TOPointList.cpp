#include "object98/TOPointList.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>

#include "kxexception/KxError.h"
#include "math98/CGeometry.h"
#include "object98/Object98Errors.h"

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

template <class T>
T TOPointList<T>::Width(bool pixelMeasure) const {
  T x0, x1, y0, y1;
  Extent(x0, x1, y0, y1);
  return x1 - x0 + (pixelMeasure ? T(1) : T(0));
}

template <class T>
T TOPointList<T>::Height(bool pixelMeasure) const {
  T x0, x1, y0, y1;
  Extent(x0, x1, y0, y1);
  return y1 - y0 + (pixelMeasure ? T(1) : T(0));
}

template <class T>
bool TOPointList<T>::bCanHaveTyp(TOPL_Typ typ) const {
  const int n = Points.size();
  switch (typ) {
    case ePoint: return n == 1;
    case eSquare:
    case eRectangle:
    case eParallelogram:
    case eHTrapezium:
    case eVTrapezium: return n == 4;
    case ePolygon: return n >= 3;
    case eCircle:
    case eLine: return n == 2;
    case ePolyline: return n >= 2;
    case eEllipse:
    case eOrGroup:
    case eXorGroup:
    case eAndGroup: return true;
    default: return false;
  }
}

template <class T>
void TOPointList<T>::setTyp(TOPL_Typ typ) {
  KX_TRY {
    if (!bCanHaveTyp(typ)) {
      static const TLanguage::TLanguageString s("Typ %d kann nicht gesetzt werden", "Can not set type %d");
      KX_THROW(object98::ulObjectSetTyp, s(), static_cast<int>(typ));
    }
    Typ = typ;
  }
  KX_CATCH
}

template <class T>
bool TOPointList<T>::bIsArea() const {
  return (Typ >= eSquare && Typ <= eCircle) || Typ == eOrGroup || Typ == eXorGroup || Typ == eAndGroup;
}

template <class T>
double TOPointList<T>::getArea() const {
  KX_TRY {
    if (!bIsArea()) {
      static const TLanguage::TLanguageString s("getArea() nur auf Flaechen anwendbar", "getArea() only useable for areas");
      KX_THROW(object98::ulObjectNoArea, s());
    }
    const int n = Points.size();
    if (Typ == eCircle) {
      if (n < 2) return 0;
      const double r = (Points[1] - Points[0]).magnitude();
      return M_PI * r * r;
    }
    double a = 0;
    for (int k = 0; k < n; ++k) a += Points[k] ^ Points[(k + 1) % n];
    return std::fabs(a) / 2;
  }
  KX_CATCH
}

template <class T>
double TOPointList<T>::dGetDistance(const TOPoint<double>& p) const {
  KX_TRY {
    const int n = Points.size();
    auto pt = [&](int k) { return TOPoint<double>(static_cast<double>(Points[k].x), static_cast<double>(Points[k].y)); };
    if (Typ == eEllipse) KX_THROW(object98::ulObjectEllipse, "Abstand zur Ellipse / distance to an ellipse");
    if (n == 0) return DBL_MAX;
    if (Typ == ePoint) return (p - pt(0)).magnitude();
    if (Typ == eCircle && n >= 2) return std::fabs((p - pt(0)).magnitude() - (pt(1) - pt(0)).magnitude());
    const bool closed = Typ != eLine && Typ != ePolyline;
    double best = DBL_MAX;
    if (n == 1) return (p - pt(0)).magnitude();
    for (int k = 0; k + (closed ? 0 : 1) < n; ++k) {
      const TOPoint<double> a = pt(k), b = pt((k + 1) % n);
      best = std::min(best, CGeometry::AbstandPunktStrecke(p.x, p.y, a.x, a.y, b.x, b.y));
    }
    return best;
  }
  KX_CATCH
}

template <class T>
bool TOPointList<T>::bIsInside(const TOPoint<double>& p) const {
  const int n = Points.size();
  auto pt = [&](int k) { return TOPoint<double>(static_cast<double>(Points[k].x), static_cast<double>(Points[k].y)); };
  if (n == 0) return false;
  if (Typ == eCircle) return n >= 2 && (p - pt(0)).magnitude() <= (pt(1) - pt(0)).magnitude();
  double sum = 0;
  for (int k = 0; k < n; ++k) {
    const TOPoint<double> a = pt(k) - p, b = pt((k + 1) % n) - p;
    const double m = a.magnitude() * b.magnitude();
    if (m < 1e-100) return true;  // on a corner
    const double v = (a ^ b) / m;
    double angle = v <= -0.999999 ? -M_PI / 2 : v >= 0.999999 ? M_PI / 2 : std::asin(v);
    if (a * b < 0) angle = angle >= 0 ? M_PI - angle : -M_PI - angle;
    sum += angle;
  }
  return std::fabs(sum) >= M_PI;
}

template class TOPointList<int>;
template class TOPointList<double>;
