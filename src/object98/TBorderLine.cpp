#include "object98/TBorderLine.h"

#include <cmath>
#include <cstdlib>

#include "kxexception/KxError.h"
#include "object98/Object98Errors.h"
#include "object98/TObjectList98.h"
#include "object98/TRLCArray.h"

namespace {

// MulDiv: the 64-bit product divided, rounded to nearest (halves away from 0).
int mulDiv(int a, int b, int c) {
  const long long p = static_cast<long long>(a) * b;
  const long long q = (std::llabs(p) * 2 + std::llabs(c)) / (2 * std::llabs(c));
  return static_cast<int>(((p < 0) != (c < 0)) ? -q : q);
}

}  // namespace

TBorderLine& TBorderLine::operator+=(const TBorderLine& o) {
  const std::vector<TItem> add = o.Items;
  Items.insert(Items.end(), add.begin(), add.end());
  return *this;
}

unsigned TBorderLine::uCalculateLineSize(const TOPoint<int>& a, const TOPoint<int>& b) {
  const long long dx = std::llabs(static_cast<long long>(b.x) - a.x) + 1, dy = std::llabs(static_cast<long long>(b.y) - a.y) + 1;
  return static_cast<unsigned>(dx > dy ? dx : dy);
}

void TBorderLine::vAppendLine(const TOPoint<int>& a, const TOPoint<int>& b, std::vector<TItem>& out) {
  if (a == b) {
    out.push_back({a.x, a.y});
    return;
  }
  const int dx = b.x - a.x, dy = b.y - a.y;
  if (std::abs(dx) + 1 > std::abs(dy) + 1) {
    const int step = dx > 0 ? 1 : -1;
    for (int x = a.x;; x += step) {
      out.push_back({x, mulDiv(x - a.x, dy, dx) + a.y});
      if (x == b.x) break;
    }
  } else {
    const int step = dy > 0 ? 1 : -1;
    for (int y = a.y;; y += step) {
      out.push_back({mulDiv(y - a.y, dx, dy) + a.x, y});
      if (y == b.y) break;
    }
  }
}

void TBorderLine::vPolygon2Border(const TOPointList<int>& list) {
  Items.clear();
  const int n = list.size();
  if (n == 0) return;
  for (int k = 0; k < n; ++k) {
    std::vector<TItem> edge;
    vAppendLine(list[k], list[(k + 1) % n], edge);
    // Each edge starts where the last one ended.
    Items.insert(Items.end(), edge.begin() + (Items.empty() ? 0 : 1), edge.end());
  }
  if (Items.size() > 1) Items.pop_back();  // the first point is not repeated
}

void TBorderLine::vPolyline2Border(const TOPointList<int>& list) {
  Items.clear();
  for (int k = 0; k + 1 < list.size(); ++k) {
    std::vector<TItem> edge;
    vAppendLine(list[k], list[k + 1], edge);
    Items.insert(Items.end(), edge.begin() + (Items.empty() ? 0 : 1), edge.end());
  }
  if (list.size() == 1) Items.push_back({list[0].x, list[0].y});
}

void TBorderLine::vCircle2Border(const TOPointList<int>& list) {
  Items.clear();
  if (list.size() < 2) return;
  const int cx = list[0].x, cy = list[0].y;
  const double r = static_cast<double>(list[1].x) - cx;
  if (!(std::fabs(r) < 1e7)) KX_THROW(object98::ulRLCCoordinateRange, "Radius %g", r);
  const int n = static_cast<int>(std::sqrt(0.5) * r + 0.1) + 1;
  if (n <= 0) return;
  Items.assign(static_cast<std::size_t>(8 * n), TItem{});
  auto put = [&](int idx, int x, int y) { Items[static_cast<std::size_t>(idx)] = {x, y}; };
  for (int k = 0; k < n; ++k) {
    const double s = std::sqrt(std::max(0.0, r * r - static_cast<double>(k) * k + 0.1));
    const int a = static_cast<int>(k + 0.25), b = static_cast<int>(s + 0.25);
    put(k, cx + a, cy - b);
    put(8 * n - 1 - k, cx - a, cy - b);
    put(2 * n + k, cx + b, cy + a);
    put(2 * n - 1 - k, cx + b, cy - a);
    put(4 * n + k, cx - a, cy + b);
    put(4 * n - 1 - k, cx + a, cy + b);
    put(6 * n + k, cx - b, cy - a);
    put(6 * n - 1 - k, cx - b, cy + a);
  }
  // Equal neighbours go; the scan restarts after each removal, and the last
  // entry's neighbour is entry 0.
  for (bool removed = true; removed && Items.size() > 1;) {
    removed = false;
    for (std::size_t i = 0; i < Items.size(); ++i) {
      const std::size_t next = (i + 1) % Items.size();
      if (next != i && Items[i] == Items[next]) {
        // The later of the two goes; across the wrap the last entry, so that
        // the border still starts at the top.
        Items.erase(Items.begin() + static_cast<std::ptrdiff_t>(next == 0 ? i : next));
        removed = true;
        break;
      }
    }
  }
}

TBorderLine& TBorderLine::operator=(const TOPointList<int>& list) {
  KX_TRY {
    const TOPL_Typ t = list.eGetTyp();
    switch (t) {
      case ePoint:
        Items.clear();
        for (int k = 0; k < list.size(); ++k) Items.push_back({list[k].x, list[k].y});
        break;
      case eSquare:
      case eRectangle:
      case eParallelogram:
      case eHTrapezium:
      case eVTrapezium:
      case ePolygon:
        vPolygon2Border(list);
        break;
      case eCircle:
        vCircle2Border(list);
        break;
      case eLine:
      case ePolyline:
        vPolyline2Border(list);
        break;
      default:
        KX_THROW(object98::ulBorderType, "Rand für Typ %d nicht implementiert / border of type %d not implemented", t, t);
    }
    return *this;
  }
  KX_CATCH
}

void TBorderLine::assign(const TObjectList98* list, unsigned index) {
  KX_TRY {
    if (!TObjectList98::bIsValid(list)) KX_THROW(object98::ulObjectIndex, "Objektliste ungültig / object list not valid");
    if (list->bIsGroup(static_cast<int>(index)))
      calcBLGroup(list, index);
    else
      *this = (*list)[static_cast<int>(index)];
  }
  KX_CATCH
}

void TBorderLine::calcBLGroup(const TObjectList98* list, unsigned index) {
  KX_TRY {
    Items.clear();
    for (int d : list->rGetRelationList().vGetDescendants(static_cast<int>(index))) {
      if (list->bIsGroup(d)) continue;  // groups give their border through their own descendants
      *this += TBorderLine((*list)[d]);
    }
  }
  KX_CATCH
}
