// The geometry of one region object: a typed list of points.
//
// TOPoint<T> is a point (or a vector) of the picture, x the column and y the
// line. TOPointList<T> is the type of an object and its points; the run-length
// form of it is made by TRLCArray's rasterisers. The meaning of the points
// follows the type (see TOPL_Typ). T is int (pixel positions) or double.
//
// A point list is a TDelivery: its owner may listen to it. Copies are deep and
// connected to nobody. Not thread safe.
#pragma once

#include <cmath>
#include <initializer_list>

#include "kxexception/TDelivery.h"
#include "kxexception/TLanguage.h"
#include "object98/TVector98.h"

template <class T>
struct TOPoint {
  T x{};
  T y{};

  TOPoint() = default;
  TOPoint(T x_, T y_) : x(x_), y(y_) {}

  // The component difference.
  TOPoint operator-(const TOPoint& o) const { return TOPoint(x - o.x, y - o.y); }
  // The cross product a.x*b.y - a.y*b.x.
  double operator^(const TOPoint& o) const {
    return static_cast<double>(x) * static_cast<double>(o.y) - static_cast<double>(y) * static_cast<double>(o.x);
  }
  // The dot product.
  double operator*(const TOPoint& o) const {
    return static_cast<double>(x) * static_cast<double>(o.x) + static_cast<double>(y) * static_cast<double>(o.y);
  }
  // The length; 0 when x^2 + y^2 is below 1e-100.
  double magnitude() const {
    const double q = (*this) * (*this);
    return q < 1e-100 ? 0.0 : std::sqrt(q);
  }
  bool operator==(const TOPoint& o) const { return x == o.x && y == o.y; }
  bool operator!=(const TOPoint& o) const { return !(*this == o); }
};

// The type of an object, one byte; the numbers are stored in files.
enum TOPL_Typ : unsigned char {
  ePoint = 0,          // 1 point
  eSquare = 1,         // 4 corners
  eRectangle = 2,      // 4 corners: 0 top left, 1 top right, 3 bottom (left or right)
  eParallelogram = 3,  // corners
  eHTrapezium = 4,     // corners
  eVTrapezium = 5,     // corners
  ePolygon = 6,        // corners, closed implicitly
  eCircle = 7,         // 2: the centre and a point on the circle
  eEllipse = 8,        // has no run-length form
  eLine = 9,           // 2
  ePolyline = 10,      // 2 or more
  eOrGroup = 11,       // a border; the members are sons in the relation list
  eXorGroup = 12,
  eAndGroup = 13,
};
inline constexpr int iTOPL_TypCount = 14;

// The display name of a type ("Kreis" / "Circle"); an unknown number gives
// "?".
const char* cpGetTOPL_TypName(TOPL_Typ typ, TLanguage::eTLanguage language = TLanguage::eAktLanguage);

template <class T>
class TOPointList : public TDelivery {
 public:
  explicit TOPointList(TOPL_Typ typ = ePoint) : Typ(typ), Points(10) {}
  TOPointList(TOPL_Typ typ, std::initializer_list<TOPoint<T>> points) : Typ(typ), Points(10) {
    for (const auto& p : points) Points.append(p);
  }

  TOPL_Typ eGetTyp() const { return Typ; }
  // Sets the type as it is; the points are not checked against it.
  void vSetTyp(TOPL_Typ typ) { Typ = typ; }

  int size() const { return Points.size(); }
  TOPoint<T>& operator[](int i) { return Points[i]; }
  const TOPoint<T>& operator[](int i) const { return Points[i]; }
  void append(const TOPoint<T>& p) { Points.append(p); }
  void append(T x, T y) { Points.append(TOPoint<T>(x, y)); }
  void erase(int i) { Points.erase(i); }
  void clear() { Points.clear(); }
  const TVector98<TOPoint<T>>& rGetPoints() const { return Points; }
  TVector98<TOPoint<T>>& rGetPoints() { return Points; }

  // The extent of the object. For a circle: the centre plus or minus the
  // distance of point 1 from point 0, plus 0.5, cut toward zero. For all other
  // types the smallest and largest coordinates of the points. A list without
  // points gives min 0 and max -1.
  void Extent(T& minX, T& maxX, T& minY, T& maxY) const;
  // Width and height of the extent: max - min, plus 1 in pixel measure.
  T Width(bool pixelMeasure) const;
  T Height(bool pixelMeasure) const;

  // Sets a type the points can have, else "Typ %d kann nicht gesetzt
  // werden" (0xe7522042): a point needs one point, the four-cornered types
  // four, a circle and a line two, a polyline two or more, a polygon three
  // or more; groups and the ellipse take any.
  void setTyp(TOPL_Typ typ);
  bool bCanHaveTyp(TOPL_Typ typ) const;
  // Closed types with an inside: 1 to 7 and the groups.
  bool bIsArea() const;
  // The enclosed area: of a circle pi r^2 with the Euclidean radius, of the
  // others the polygon of the points; other types raise "getArea() nur auf
  // Flaechen anwendbar" (0xe7522044).
  double getArea() const;
  // The distance of p: to a point, to a circle's line, to the closed edges
  // (1 to 6, groups) or the open ones (line, polyline); an ellipse raises
  // 305419896.
  double dGetDistance(const TOPoint<double>& p) const;
  // Inside a circle: not farther from the centre than the radius. Other
  // closed types: the winding sum of the edges seen from p is at least pi
  // (a corner counts as inside).
  bool bIsInside(const TOPoint<double>& p) const;

 private:
  TOPL_Typ Typ;
  TVector98<TOPoint<T>> Points;
};

extern template class TOPointList<int>;
extern template class TOPointList<double>;
