// The border of an object as an ordered list of pixel points: the edges of
// a polygon drawn pixel by pixel without doubled corners, a circle clockwise
// from its top, a polyline with its last point. Profiles run along it.
#pragma once

#include <vector>

#include "object98/TOPointList.h"

class TObjectList98;

class TBorderLine {
 public:
  struct TItem {
    int x = 0, y = 0;
    bool operator==(const TItem& o) const { return x == o.x && y == o.y; }
  };

  TBorderLine() = default;
  TBorderLine(const TBorderLine&) = default;
  TBorderLine& operator=(const TBorderLine&) = default;
  explicit TBorderLine(const TOPointList<int>& list) { *this = list; }

  void vAlloc(unsigned n) { Items.assign(n, TItem{}); }
  void vFree() { Items.clear(); }
  unsigned size() const { return static_cast<unsigned>(Items.size()); }
  TItem& operator[](unsigned i) { return Items.at(i); }
  const TItem& operator[](unsigned i) const { return Items.at(i); }
  TBorderLine& operator+=(const TBorderLine& o);

  // By type: points; polygons (1 to 6); circle; line and polyline.
  // Ellipse, groups and unknown types raise 0xe0422041.
  TBorderLine& operator=(const TOPointList<int>& list);
  // The border of object `index`; of a group, its simple descendants' in
  // index order.
  void assign(const TObjectList98* list, unsigned index);
  void calcBLGroup(const TObjectList98* list, unsigned index);

  // The larger of |dx| + 1 and |dy| + 1.
  static unsigned uCalculateLineSize(const TOPoint<int>& a, const TOPoint<int>& b);
  // The pixels from a to b, both ends included.
  static void vAppendLine(const TOPoint<int>& a, const TOPoint<int>& b, std::vector<TItem>& out);

 private:
  void vPolygon2Border(const TOPointList<int>& list);
  void vPolyline2Border(const TOPointList<int>& list);
  void vCircle2Border(const TOPointList<int>& list);
  std::vector<TItem> Items;
};
