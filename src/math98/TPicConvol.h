// Convolutions of a plane: the box filter and the Gaussian filter of a given
// order, both separable.
//
// Border rule: the window is cut to the plane, and a pixel is the weighted
// mean of the pixels of the window that lie in the plane (the weights of the
// others are left out of the sum and of the divisor). So a constant plane
// stays constant up to its edges, and nothing outside the plane is assumed.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "rastrix/TPlane.h"

namespace math98 {

template <class T>
class TPicConvol {
 public:
  // Box of `width` columns and `height` lines (odd sizes centre the window;
  // an even size reaches one pixel further up or left). Sizes below 1 count
  // as 1.
  static void vBox(Rastrix::TPlane<T>& p, int width, int height) {
    std::vector<double> wx(static_cast<std::size_t>(std::max(1, width)), 1.0);
    std::vector<double> wy(static_cast<std::size_t>(std::max(1, height)), 1.0);
    _vSeparable(p, wx, wy);
  }
  // Gaussian of order n: the binomial weights of row n of Pascal's triangle
  // (n = 0 leaves the plane; 2 is 1 2 1, 4 is 1 4 6 4 1), in both directions.
  static void vGauss(Rastrix::TPlane<T>& p, unsigned n) {
    std::vector<double> w(n + 1, 1.0);
    for (unsigned i = 1; i <= n; ++i) w[i] = w[i - 1] * (n - i + 1) / i;
    _vSeparable(p, w, w);
  }

 private:
  template <class V>
  static V _toValue(double v) {
    if constexpr (std::is_floating_point_v<V>)
      return static_cast<V>(v);
    else
      return static_cast<V>(std::lround(v));
  }

  static void _vFilter1(std::vector<double>& line, const std::vector<double>& w) {
    const int n = static_cast<int>(line.size()), k = static_cast<int>(w.size()), before = (k - 1) / 2;
    std::vector<double> out(line.size());
    for (int i = 0; i < n; ++i) {
      double s = 0, ws = 0;
      for (int j = 0; j < k; ++j) {
        const int at = i - before + j;
        if (at < 0 || at >= n) continue;
        s += w[static_cast<std::size_t>(j)] * line[static_cast<std::size_t>(at)];
        ws += w[static_cast<std::size_t>(j)];
      }
      out[static_cast<std::size_t>(i)] = ws > 0 ? s / ws : line[static_cast<std::size_t>(i)];
    }
    line.swap(out);
  }

  // Each of the values of a pixel (one, or three for colour) on its own.
  static void _vSeparable(Rastrix::TPlane<T>& p, const std::vector<double>& wx, const std::vector<double>& wy) {
    constexpr int vpp = Rastrix::TPixelTraits<T>::iValuesPerPixel;
    const int lines = p.getLines(), columns = p.getColumns(), fl = p.getFirstLine(), fc = p.getFirstColumn();
    if (lines <= 0 || columns <= 0) return;
    std::vector<double> plane(static_cast<std::size_t>(lines) * columns * vpp), buffer;
    auto at = [&](int l, int c, int v) -> double& {
      return plane[(static_cast<std::size_t>(l) * columns + c) * vpp + v];
    };
    for (int l = 0; l < lines; ++l)
      for (int c = 0; c < columns; ++c) {
        const T& px = p[fl + l][fc + c];
        if constexpr (vpp == 3) {
          at(l, c, 0) = px.b, at(l, c, 1) = px.g, at(l, c, 2) = px.r;
        } else {
          at(l, c, 0) = px;
        }
      }
    for (int v = 0; v < vpp; ++v) {
      buffer.resize(static_cast<std::size_t>(columns));
      for (int l = 0; l < lines; ++l) {
        for (int c = 0; c < columns; ++c) buffer[static_cast<std::size_t>(c)] = at(l, c, v);
        _vFilter1(buffer, wx);
        for (int c = 0; c < columns; ++c) at(l, c, v) = buffer[static_cast<std::size_t>(c)];
      }
      buffer.resize(static_cast<std::size_t>(lines));
      for (int c = 0; c < columns; ++c) {
        for (int l = 0; l < lines; ++l) buffer[static_cast<std::size_t>(l)] = at(l, c, v);
        _vFilter1(buffer, wy);
        for (int l = 0; l < lines; ++l) at(l, c, v) = buffer[static_cast<std::size_t>(l)];
      }
    }
    for (int l = 0; l < lines; ++l)
      for (int c = 0; c < columns; ++c) {
        T& px = p[fl + l][fc + c];
        if constexpr (vpp == 3) {
          using V = decltype(px.b);
          px.b = _toValue<V>(at(l, c, 0)), px.g = _toValue<V>(at(l, c, 1)), px.r = _toValue<V>(at(l, c, 2));
        } else {
          px = _toValue<T>(at(l, c, 0));
        }
      }
  }
};

}  // namespace math98
