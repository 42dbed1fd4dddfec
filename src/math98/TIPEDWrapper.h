// A window on a plane that hands out line pointers: line i of the window is
// the plane's line first + i, from the window's first column on. The window
// must lie inside the plane.
#pragma once

#include <algorithm>
#include <vector>

#include "file98/CRectangle.h"
#include "rastrix/TPlane.h"

namespace math98 {

template <class T>
class TIPEDWrapper {
 public:
  TIPEDWrapper(const Rastrix::TPlane<T>& plane, const CRectangle& window) : r_(window) {
    for (int l = window.iFirstLine; l <= window.iLastLine; ++l) lines_.push_back(plane[l] + window.iFirstColumn);
  }
  int lines() const { return static_cast<int>(lines_.size()); }
  int columns() const { return r_.XSize(); }
  const T* operator[](int i) const { return lines_[static_cast<std::size_t>(i)]; }

 private:
  CRectangle r_;
  std::vector<const T*> lines_;
};

// The median of a short list (the upper one of the two middles for an even
// count); 0 for an empty list.
template <class T>
T ucGetMedian(std::vector<T> v) {
  if (v.empty()) return T{};
  const auto mid = v.begin() + static_cast<std::ptrdiff_t>(v.size() / 2);
  std::nth_element(v.begin(), mid, v.end());
  return *mid;
}

}  // namespace math98
