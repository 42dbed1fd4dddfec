#include "statistik/TPicStatistikFocus.h"

#include <cmath>
#include <vector>

#include "kxexception/KxError.h"
#include "math98/TIPEDWrapper.h"
#include "statistik/TResultCutTime.h"

using namespace Rastrix;

namespace {

constexpr int half = 20 / 2;

// The edges of one profile; adds widths to sum and count. `rising` says
// which kind is due next (alternating).
void edges(const std::vector<double>& v, double level, double& sum, int& count, int& due) {
  const int n = static_cast<int>(v.size());
  auto mean = [&](int from, int to) {  // the middle half of [from, to]
    const int q = (to - from) / 4;
    double s = 0;
    int k = 0;
    for (int i = from + q; i <= to - q; ++i) s += v[static_cast<std::size_t>(i)], ++k;
    return k ? s / k : v[static_cast<std::size_t>(from)];
  };
  for (int i = half; i + half < n; ++i) {
    const double a = v[static_cast<std::size_t>(i - half)], b = v[static_cast<std::size_t>(i)],
                 c = v[static_cast<std::size_t>(i + half)];
    const bool up = a < b && b < c && a < level && level < c;
    const bool down = a > b && b > c && a > level && level > c;
    if (!(up && due >= 0) && !(down && due <= 0)) continue;
    const int s = up ? 1 : -1;  // the side the high values lie on
    // The maximum in the window, and the high segment around it.
    int m = i - half;
    for (int k = i - half; k <= i + half; ++k)
      if (v[static_cast<std::size_t>(k)] > v[static_cast<std::size_t>(m)]) m = k;
    int l = m, r = m;
    while (l > 0 && v[static_cast<std::size_t>(l - 1)] >= level) --l;
    while (r + 1 < n && v[static_cast<std::size_t>(r + 1)] >= level) ++r;
    const double top = mean(l, r);
    // The low segment on the other side of the edge.
    const int edge = up ? l : r;  // the first high pixel at the edge
    int lo0 = edge - s, lo1 = edge - s;
    if (lo0 < 0 || lo0 >= n) continue;
    if (up)
      while (lo0 > 0 && v[static_cast<std::size_t>(lo0 - 1)] <= level) --lo0;
    else
      while (lo1 + 1 < n && v[static_cast<std::size_t>(lo1 + 1)] <= level) ++lo1;
    const double bottom = mean(std::min(lo0, lo1), std::max(lo0, lo1));
    const double l80 = bottom + 0.8 * (top - bottom), l20 = bottom + 0.2 * (top - bottom);
    // The first pixel from `from` on (in steps of `step`) at or above (or at
    // or below) a level, interpolated with the pixel before it.
    auto crossing = [&](double lv, int from, int step, bool above) {
      for (int k = from; k >= 0 && k < n; k += step) {
        const double q = v[static_cast<std::size_t>(k)];
        if (above ? q < lv : q > lv) continue;
        if (k == from) return static_cast<double>(k);
        const double p = v[static_cast<std::size_t>(k - step)];
        return (k - step) + step * (lv - p) / (q - p);
      }
      return std::nan("");
    };
    // 80 %: from the far end of the low side towards the edge; 20 %: from
    // the first high pixel back into the low side.
    const double p80 = up ? crossing(l80, lo0, 1, true) : crossing(l80, lo1, -1, true);
    const double p20 = up ? crossing(l20, l, -1, false) : crossing(l20, r, 1, false);
    if (std::isnan(p80) || std::isnan(p20)) continue;
    sum += std::fabs(p80 - p20);
    ++count;
    due = up ? -1 : 1;
    i = up ? std::max(i, r) : std::max(i, lo1);  // past this edge
  }
}

template <class T>
int focus(const TPlane<T>& p, CRectangle r, int direction, double level, double& result) {
  // The rectangle is shifted, not cut, into the picture.
  const int h = r.YSize(), w = r.XSize();
  if (h <= 0 || w <= 0) return 0;
  auto shift = [](int first, int size, int pf, int pn) {
    if (size > pn) return pf;
    return std::clamp(first, pf, pf + pn - size);
  };
  const int l0 = shift(r.iFirstLine, h, p.getFirstLine(), p.getLines());
  const int c0 = shift(r.iFirstColumn, w, p.getFirstColumn(), p.getColumns());
  const CRectangle win(l0, l0 + std::min(h, p.getLines()) - 1, c0, c0 + std::min(w, p.getColumns()) - 1);
  const math98::TIPEDWrapper<T> lines(p, win);
  const double lv = static_cast<double>(static_cast<T>(static_cast<long long>(level)));  // cut to the type
  double sum = 0;
  int count = 0;
  std::vector<double> v;
  const int outer = direction == 0 ? lines.lines() : lines.columns();
  const int inner = direction == 0 ? lines.columns() : lines.lines();
  for (int o = 0; o < outer; ++o) {
    v.resize(static_cast<std::size_t>(inner));
    for (int k = 0; k < inner; ++k)
      v[static_cast<std::size_t>(k)] = direction == 0 ? lines[o][k] : lines[k][o];
    int due = 0;
    edges(v, lv, sum, count, due);
  }
  if (count) result = sum / count;
  return count;
}

}  // namespace

int iCalculateFocusEdge(const TPlaneBasic* plane, CRectangle r, int direction, double level, double& result) {
  KX_TRY {
    if (!plane) KX_THROW(0x7000000UL, "plane null");
    if (const auto* uc = dynamic_cast<const TPlane<unsigned char>*>(plane)) return focus(*uc, r, direction, level, result);
    if (const auto* us = dynamic_cast<const TPlane<unsigned short>*>(plane)) return focus(*us, r, direction, level, result);
    KX_THROW(0x5100000UL, "ImageType %d not implemented!", static_cast<int>(plane->eGetPicturePT()));
  }
  KX_CATCH
}

void TPicStatistikFocus::stop() {
  KX_TRY {
    TPicStatistikPlaneBasic::stop();
    CRectangle r;
    if (bDirectRLC || !ObjectList) {
      const TRLCArray& a = DirectRLC;
      r = CRectangle(a.getFirstLine(), a.getLastLine(), a.getFirstColumn(), a.getLastColumn());
    } else {
      int x0, x1, y0, y1;
      Object.Extent(x0, x1, y0, y1);
      r = CRectangle(y0, y1, x0, x1);
    }
    if (r.IsCorrectRectangle()) return;  // ill-formed: nothing to measure
    double v0 = 999.0, v1 = 999.0;
    iCalculateFocusEdge(Picture, r, 0, 1000, v0);
    iCalculateFocusEdge(Picture, r, 1, 1000, v1);
    const bool s0 = std::fabs(v0 - 999) >= 0.1, s1 = std::fabs(v1 - 999) >= 0.1;
    double result = 5.5;
    if (s0 && s1)
      result = std::max(v0, v1);
    else if (s0)
      result = v0;
    else if (s1)
      result = v1;
    const unsigned groups = uGetGroupCount(), classes = uGetKlassifikatorSize();
    for (unsigned g = 0; g < groups; ++g)
      for (unsigned c = 0; c < classes; ++c)
        if (auto* f = dynamic_cast<TResultCutFocus*>(getResult(g, c))) {
          if (std::fabs(result - 999) < 0.1) {
            if (f->uiGetSize() != 0) continue;
            f->rRGetXResult().vSetMean(0);
          } else {
            f->rRGetXResult().vSetMean(result);
          }
          f->stopVerlauf();
        }
  }
  KX_CATCH
}
