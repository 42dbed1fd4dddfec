#include "rastrix/TPixelKlassifikatorTypThreshold.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <emmintrin.h>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TKxTable.h"
#include "kxexception/TLanguage.h"
#include "rastrix/ClassPlane.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TPixelColorSpace.h"
#include "rastrix/TPlane.h"
#include "rastrix/TRGBPixel.h"

namespace Rastrix {

namespace {

const TLanguage::TLanguageString sWrongPixel("Klassifikatur muss von Pixeltyp %d sein und nicht vom Pixeltyp %d",
                                             "Need classifier for pixel type %d and not for pixel type %d");
const TLanguage::TLanguageString sBadValue("Wert %s=%d ungültig", "Value %s=%d invalid");
const TLanguage::TLanguageString sNameText("Name", "Name");
const TLanguage::TLanguageString sClass("Klasse", "Class");
const TLanguage::TLanguageString sThreshold("Schwelle", "Threshold");
const TLanguage::TLanguageString sWidth("Breite", "Width");
const TLanguage::TLanguageString sHeight("Höhe", "Height");
const TLanguage::TLanguageString sFactor("Faktor", "Factor");
const TLanguage::TLanguageString sDiameter("Durchmesser", "Diameter");
const TLanguage::TLanguageString sBorder("Randabstand", "Border distance");

std::string sHeader(const char* text, unsigned i) {
  char buf[128];
  std::snprintf(buf, sizeof buf, "%s %d", text, static_cast<int>(i));
  return buf;
}

// A size read from an ini: 0 or more, else 0x5100000.
unsigned uReadSize(TKxIniFile* ini, const char* section, const char* key, unsigned def) {
  const long long v = ini->iReadLongLong(section, key, def);
  if (v < 0 || v > std::numeric_limits<int>::max())
    KX_THROW(Err::ulKlassifikatorIndex, sBadValue(), key, static_cast<int>(std::clamp<long long>(v, INT32_MIN, INT32_MAX)));
  return static_cast<unsigned>(v);
}

// The value a pixel is compared by: itself, colour pixels by luminance.
template <class T>
double dValue(const T& p) {
  return static_cast<double>(p);
}

// The luminance the integral classifier compares colour pixels by.
double dLuminanceCS(const TRGBFloatPixel& p) {
  TPixelColorSpace cs;
  cs.vSetFlag(1, 16);
  cs.vSetCIE_RGB(p);
  return cs.dGetLuminance();
}

// Float threshold equivalent to "t > x" in double for every float x: x < up(t).
float fUp(double t) {
  if (std::isnan(t)) return std::numeric_limits<float>::quiet_NaN();
  float f = static_cast<float>(t);
  if (static_cast<double>(f) < t) f = std::nextafter(f, std::numeric_limits<float>::infinity());
  return f;
}

// The plain threshold over a line of float pixels into bytes, n <= 256
// classes: from the top class down, a threshold above the pixel sets its
// class, so the first one that fires wins.
void vThresholdFloatRow(const float* x, unsigned char* out, int count, const float* up, unsigned n, bool sorted) {
  const unsigned char top = static_cast<unsigned char>(n - 1);
  int c = 0;
  const __m128i vTop = _mm_set1_epi8(static_cast<char>(top));
  for (; c + 16 <= count; c += 16) {
    const __m128 a = _mm_loadu_ps(x + c), b = _mm_loadu_ps(x + c + 4), e = _mm_loadu_ps(x + c + 8),
                 f = _mm_loadu_ps(x + c + 12);
    if (sorted) {
      // Ascending thresholds: the class is the number of thresholds not
      // above the pixel (a NaN pixel is above none and counts all).
      __m128i cls = _mm_setzero_si128();
      for (unsigned i = 0; i + 1 < n; ++i) {
        const __m128 t = _mm_set1_ps(up[i]);
        const __m128i ab = _mm_packs_epi32(_mm_castps_si128(_mm_cmpnlt_ps(a, t)), _mm_castps_si128(_mm_cmpnlt_ps(b, t)));
        const __m128i ef = _mm_packs_epi32(_mm_castps_si128(_mm_cmpnlt_ps(e, t)), _mm_castps_si128(_mm_cmpnlt_ps(f, t)));
        cls = _mm_sub_epi8(cls, _mm_packs_epi16(ab, ef));
      }
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + c), cls);
      continue;
    }
    __m128i cls = vTop;
    for (int i = static_cast<int>(n) - 2; i >= 0; --i) {
      const __m128 t = _mm_set1_ps(up[i]);
      const __m128i ab = _mm_packs_epi32(_mm_castps_si128(_mm_cmplt_ps(a, t)), _mm_castps_si128(_mm_cmplt_ps(b, t)));
      const __m128i ef = _mm_packs_epi32(_mm_castps_si128(_mm_cmplt_ps(e, t)), _mm_castps_si128(_mm_cmplt_ps(f, t)));
      const __m128i fired = _mm_packs_epi16(ab, ef);
      cls = _mm_or_si128(_mm_and_si128(fired, _mm_set1_epi8(static_cast<char>(i))), _mm_andnot_si128(fired, cls));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + c), cls);
  }
  for (; c < count; ++c) {
    unsigned k = top;
    for (int i = static_cast<int>(n) - 2; i >= 0; --i)
      if (x[c] < up[i]) k = static_cast<unsigned>(i);
    out[c] = static_cast<unsigned char>(k);
  }
}

// Running extremes over the integral classifier's window. The window of
// index i (0 .. n-1) is [a, b) with a = max(i - w/2, 0) and
// b = min(a + w, n - 1): the last index is never in a window. Split the
// indices below n - 1 into blocks of w; G rises from the start of its block,
// H falls from its end. A window is at most w long, so its last index lies
// in the block of its first or in the next: in the next, its extreme is
// that of H[a] and G[b-1]; in the same block the window reaches the block's
// end (full length from the block's start, or cut at n - 1), so H[a] alone
// is it. Every pixel costs the same whatever the window. An empty
// window gives -inf and +inf; NaN values never win (fmax, fmin).
// Maximum and minimum as compare and select (maxss, minss); the values
// hold no NaN here (they were made -inf and +inf), so nothing is lost.
template <class V>
inline V vMax2(V a, V b) {
  return b > a ? b : a;
}
template <class V>
inline V vMin2(V a, V b) {
  return b < a ? b : a;
}

std::pair<int64_t, int64_t> windowOf(int64_t i, int64_t w, int64_t n) {
  const int64_t a = std::max<int64_t>(i - w / 2, 0);
  return {a, std::min<int64_t>(a + w, n - 1)};
}

// One sequence: maxima of inMax and minima of inMin.
template <class V>
void vSlide1D(const V* inMax, const V* inMin, int64_t n, int64_t w, V* outMax, V* outMin, std::vector<V>& buf) {
  const V inf = std::numeric_limits<V>::infinity();
  const int64_t m = n - 1;
  if (m <= 0 || w <= 0) {
    std::fill(outMax, outMax + n, -inf);
    std::fill(outMin, outMin + n, inf);
    return;
  }
  buf.resize(static_cast<std::size_t>(4 * m));
  V *g = buf.data(), *h = g + m, *gm = h + m, *hm = gm + m;
  for (int64_t s = 0; s < m; s += w) {
    const int64_t e = std::min(s + w, m);
    g[s] = inMax[s], gm[s] = inMin[s];
    for (int64_t i = s + 1; i < e; ++i) g[i] = vMax2(g[i - 1], inMax[i]), gm[i] = vMin2(gm[i - 1], inMin[i]);
    h[e - 1] = inMax[e - 1], hm[e - 1] = inMin[e - 1];
    for (int64_t i = e - 2; i >= s; --i) h[i] = vMax2(h[i + 1], inMax[i]), hm[i] = vMin2(hm[i + 1], inMin[i]);
  }
  int64_t blockEnd = w - 1;  // the last index of the block that holds a; a only grows
  for (int64_t i = 0; i < n; ++i) {
    const auto [a, b] = windowOf(i, w, n);
    while (a > blockEnd) blockEnd += w;
    if (b <= a) {
      outMax[i] = -inf, outMin[i] = inf;
    } else if (b - 1 <= blockEnd) {
      // One block: the window runs from a to the block's (cut) end.
      outMax[i] = h[a], outMin[i] = hm[a];
    } else {
      outMax[i] = vMax2(h[a], g[b - 1]);
      outMin[i] = vMin2(hm[a], gm[b - 1]);
    }
  }
}

// The window maximum and minimum of every pixel of a plane of values
// (lines x columns, row-major): along the lines by blocks of rows (two
// blocks kept), then along the columns of each line.
template <class V>
void vWindowExtremes(const std::vector<V>& xMax, const std::vector<V>& xMin, int64_t lines, int64_t columns, int64_t w, int64_t h,
                     std::vector<V>& maxOut, std::vector<V>& minOut) {
  const V inf = std::numeric_limits<V>::infinity();
  maxOut.resize(xMax.size());
  minOut.resize(xMax.size());
  const int64_t m = lines - 1;
  struct Block {
    int64_t k = -1, s = 0;
    std::vector<V> g, hh, gm, hm;
  } cache[2];
  auto block = [&](int64_t k) -> Block& {
    Block& b = cache[k & 1];
    if (b.k == k) return b;
    b.k = k;
    b.s = k * w;
    const int64_t e = std::min(b.s + w, m), rows = e - b.s;
    const std::size_t size = static_cast<std::size_t>(rows * columns);
    b.g.resize(size), b.hh.resize(size), b.gm.resize(size), b.hm.resize(size);
    const V* in = xMax.data() + b.s * columns;
    const V* inm = xMin.data() + b.s * columns;
    std::copy(in, in + columns, b.g.begin());
    std::copy(inm, inm + columns, b.gm.begin());
    for (int64_t r = 1; r < rows; ++r)
#pragma omp simd
      for (int64_t c = 0; c < columns; ++c) {
        const std::size_t i = static_cast<std::size_t>(r * columns + c);
        b.g[i] = vMax2(b.g[i - columns], in[i]);
        b.gm[i] = vMin2(b.gm[i - columns], inm[i]);
      }
    const std::size_t last = static_cast<std::size_t>((rows - 1) * columns);
    std::copy(in + last, in + last + columns, b.hh.begin() + last);
    std::copy(inm + last, inm + last + columns, b.hm.begin() + last);
    for (int64_t r = rows - 2; r >= 0; --r)
#pragma omp simd
      for (int64_t c = 0; c < columns; ++c) {
        const std::size_t i = static_cast<std::size_t>(r * columns + c);
        b.hh[i] = vMax2(b.hh[i + columns], in[i]);
        b.hm[i] = vMin2(b.hm[i + columns], inm[i]);
      }
    return b;
  };
  std::vector<V> vMax(columns), vMin(columns), buf;
  for (int64_t l = 0; l < lines; ++l) {
    const auto [a, b] = m > 0 && w > 0 ? windowOf(l, w, lines) : std::pair<int64_t, int64_t>{0, 0};
    if (b <= a) {
      std::fill(vMax.begin(), vMax.end(), -inf);
      std::fill(vMin.begin(), vMin.end(), inf);
    } else {
      const Block& first = block(a / w);
      const std::size_t ia = static_cast<std::size_t>((a - first.s) * columns);
      const V* ha = first.hh.data() + ia;
      const V* hma = first.hm.data() + ia;
      const Block& second = block((b - 1) / w);
      const std::size_t ib = static_cast<std::size_t>((b - 1 - second.s) * columns);
      const V* gb = second.g.data() + ib;
      const V* gmb = second.gm.data() + ib;
      if (a / w == (b - 1) / w)
        std::copy(ha, ha + columns, vMax.begin()), std::copy(hma, hma + columns, vMin.begin());
      else
#pragma omp simd
        for (int64_t c = 0; c < columns; ++c) vMax[c] = vMax2(ha[c], gb[c]), vMin[c] = vMin2(hma[c], gmb[c]);
    }
    vSlide1D(vMax.data(), vMin.data(), columns, h, maxOut.data() + l * columns, minOut.data() + l * columns, buf);
  }
}

}  // namespace

// ---------------------------------------------------------------- threshold

template <class T>
TPixelKlassifikatorTypThreshold<T>::TPixelKlassifikatorTypThreshold() : thresholds(size(), 0.0) {}

template <class T>
TPixelKlassifikatorTypThreshold<T>& TPixelKlassifikatorTypThreshold<T>::operator=(
    const TPixelKlassifikatorTypThreshold& o) {
  if (this == &o) return *this;
  TPixelKlassifikator::operator=(o);
  thresholds = o.thresholds;
  thresholds.resize(size(), thresholds.empty() ? 0.0 : thresholds.back());
  return *this;
}

template <class T>
TPixelKlassifikatorTypThreshold<T>* TPixelKlassifikatorTypThreshold<T>::pVirtualClone() const {
  auto* p = new TPixelKlassifikatorTypThreshold<T>;
  *p = *this;
  return p;
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::resize(unsigned n) {
  KX_TRY {
    const std::size_t old = thresholds.size();
    TPixelKlassifikator::resize(n);
    thresholds.resize(n, 0.0);
    if (old > 1)
      for (std::size_t i = old - 1; i < n; ++i)
        if (i > 0) thresholds[i] = thresholds[i - 1];
  }
  KX_CATCH
}

template <class T>
unsigned TPixelKlassifikatorTypThreshold<T>::getTyp(const T& pixel) const {
  const double v = dValue(pixel);
  const unsigned n = size();
  for (unsigned i = 0; i + 1 < n; ++i)
    if (thresholds[i] > v) return i;
  return n ? n - 1 : 0;
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::vSetThreshold(unsigned i, const double& value) {
  KX_TRY {
    _vCheckIndex(i);
    thresholds[i] = value;
    setTimeStamp();
  }
  KX_CATCH
}

template <class T>
double TPixelKlassifikatorTypThreshold<T>::dGetThreshold(unsigned i) const {
  KX_TRY {
    _vCheckIndex(i);
    return thresholds[i];
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::_vCreateColumns(TKxTable* table, unsigned thresholdColumns) const {
  TPixelKlassifikator::vCreateTable(table);
  table->addColumn(sNameText(), TKxTable::eString, 100, TKxTable::eLeft);
  for (unsigned i = 0; i < size(); ++i) table->addColumn(sHeader(sClass(), i), TKxTable::eString, 20, TKxTable::eLeft);
  for (unsigned i = 0; i < thresholdColumns; ++i)
    table->addColumn(sHeader(sThreshold(), i), TKxTable::eDouble, 12, TKxTable::eCenter, "%t5");
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::_vAppendValues(TKxTable* table, unsigned thresholdColumns) const {
  TPixelKlassifikator::vAppendTable(table);
  const std::size_t l = table->lines() - 1;
  table->vSetString(l, 0, sName);
  for (unsigned i = 0; i < size(); ++i) table->vSetString(l, 1 + i, classNames[i]);
  for (unsigned i = 0; i < thresholdColumns; ++i) table->vSetDouble(l, 1 + size() + i, thresholds[i]);
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::vCreateTable(TKxTable* table) const {
  KX_TRY { _vCreateColumns(table, size() ? size() - 1 : 0); }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::vAppendTable(TKxTable* table) const {
  KX_TRY { _vAppendValues(table, size() ? size() - 1 : 0); }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TPixelKlassifikator::vWriteIni(ini, section);
    ini->vWriteInteger(section, "PixelType", eGetPixelTyp());
    for (unsigned i = 0; i < size(); ++i) ini->vWriteFloat(sClassSection(section, i).c_str(), "ThValue", thresholds[i]);
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(Err::ulKlassifikatorIndex, "ini file or section null");
    const int pt = ini->iReadInteger(section, "PixelType", eGetPixelTyp());
    if (pt != eGetPixelTyp()) KX_THROW(Err::ulUnknownPixelTyp, sWrongPixel(), static_cast<int>(eGetPixelTyp()), pt);
    TPixelKlassifikator::vReadIni(ini, section);
    for (unsigned i = 0; i < size(); ++i)
      thresholds[i] = ini->dReadFloat(sClassSection(section, i).c_str(), "ThValue", thresholds[i]);
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThreshold<T>::vClassifyPlane(const TPlaneBasic& src, TPlaneBasic& classes,
                                                        bool) const {
  KX_TRY {
    if (src.eGetPicturePT() != ePixel) {
      // Every other pixel type is class 0, as getTyp of that type gives.
      classplane::vRows(src, classes, size(), [&](int, int c1, int c2, auto* out) {
        std::fill(out, out + (c2 - c1 + 1), 0);
      });
      classes.vSetTimeStamp();
      return;
    }
    const auto& plane = static_cast<const TPlane<T>&>(src);
    const unsigned n = size();
    if constexpr (std::is_same_v<T, float>) {
      // Compared in float against each threshold rounded up, which is the
      // comparison in double for every float pixel.
      std::vector<float> up(n);
      for (unsigned i = 0; i < n; ++i) up[i] = fUp(thresholds[i]);
      bool sorted = true;
      for (unsigned i = 0; i + 1 < n; ++i) sorted = sorted && !std::isnan(up[i]) && (i == 0 || up[i - 1] <= up[i]);
      classplane::vRows(src, classes, n, [&](int l, int c1, int c2, auto* out) {
        const float* x = plane[l] + c1;
        if constexpr (sizeof(*out) == 1) {
          vThresholdFloatRow(x, out, c2 - c1 + 1, up.data(), n ? n : 1, sorted);
        } else {
          for (int c = 0; c <= c2 - c1; ++c) {
            unsigned k = n ? n - 1 : 0;
            for (int i = static_cast<int>(n) - 2; i >= 0; --i)
              if (x[c] < up[i]) k = static_cast<unsigned>(i);
            out[c] = static_cast<unsigned short>(k);
          }
        }
      });
    } else {
      classplane::vRows(src, classes, n, [&](int l, int c1, int c2, auto* out) {
        const T* x = plane[l] + c1;
        using O = std::remove_reference_t<decltype(*out)>;
        for (int c = 0; c <= c2 - c1; ++c) {
          const double v = dValue(x[c]);
          unsigned k = n ? n - 1 : 0;
          for (unsigned i = 0; i + 1 < n; ++i)
            if (thresholds[i] > v) {
              k = i;
              break;
            }
          out[c] = static_cast<O>(k);
        }
      });
    }
    classes.vSetTimeStamp();
  }
  KX_CATCH
}

// ---------------------------------------------------------------- contrast

template <class T>
TPixelKlassifikatorTypThresholdContrast<T>* TPixelKlassifikatorTypThresholdContrast<T>::pVirtualClone() const {
  auto* p = new TPixelKlassifikatorTypThresholdContrast<T>;
  *p = *this;
  return p;
}

template <class T>
void TPixelKlassifikatorTypThresholdContrast<T>::resize(unsigned) {
  KX_TRY {
    TPixelKlassifikatorTypThreshold<T>::resize(3);
    this->rejection[1] = true;
  }
  KX_CATCH
}

// ---------------------------------------------------------------- integral

template <class T>
TPixelKlassifikatorTypThresholdIntegral<T>& TPixelKlassifikatorTypThresholdIntegral<T>::operator=(
    const TPixelKlassifikatorTypThresholdIntegral& o) {
  if (this == &o) return *this;
  TPixelKlassifikatorTypThreshold<T>::operator=(o);
  uiWidth = o.uiWidth;
  uiHeight = o.uiHeight;
  dFactor = o.dFactor;
  bNegativeContrast = o.bNegativeContrast;
  return *this;
}

template <class T>
TPixelKlassifikatorTypThresholdIntegral<T>* TPixelKlassifikatorTypThresholdIntegral<T>::pVirtualClone() const {
  auto* p = new TPixelKlassifikatorTypThresholdIntegral<T>;
  *p = *this;
  return p;
}

template <class T>
void TPixelKlassifikatorTypThresholdIntegral<T>::resize(unsigned) {
  TPixelKlassifikatorTypThreshold<T>::resize(3);
}

template <class T>
void TPixelKlassifikatorTypThresholdIntegral<T>::vSetIntegralData(unsigned width, unsigned height, double factor,
                                                                  bool negativeContrast) {
  uiWidth = width;
  uiHeight = height;
  dFactor = factor;
  bNegativeContrast = negativeContrast;
  this->setTimeStamp();
}

template <class T>
void TPixelKlassifikatorTypThresholdIntegral<T>::vGetIntegralData(unsigned* width, unsigned* height, double* factor,
                                                                  bool* negativeContrast) const {
  if (width) *width = uiWidth;
  if (height) *height = uiHeight;
  if (factor) *factor = dFactor;
  if (negativeContrast) *negativeContrast = bNegativeContrast;
}

namespace {

// The integral decision of one pixel from its value, the window's extremes
// (already folded from the pixel itself) and the settings.
template <class V>
unsigned uIntegralDecide(V p, V M, V m, double threshold, double factor, bool negative) {
  if (!negative) {
    if (threshold > p) return 0;
    return factor * M >= p ? 1 : 2;
  }
  if (threshold < p) return 0;
  return m / factor >= p ? 2 : 1;
}

}  // namespace

template <class T>
unsigned TPixelKlassifikatorTypThresholdIntegral<T>::getTyp(const T& pixel, int line, int column,
                                                            const TPlane<T>* plane) const {
  if (!plane) return 0;
  auto value = [](const T& p) -> double {
    if constexpr (std::is_same_v<T, TRGBFloatPixel>)
      return dLuminanceCS(p);
    else
      return static_cast<double>(p);
  };
  const double p = value(pixel);
  const double t = this->thresholds.empty() ? 0.0 : this->thresholds[0];
  if (!bNegativeContrast ? t > p : t < p) return 0;
  const int64_t l0 = std::max<int64_t>(int64_t{line} - uiWidth / 2, plane->getFirstLine());
  const int64_t l1 = std::min<int64_t>(l0 + uiWidth, plane->getLastLine());
  const int64_t c0 = std::max<int64_t>(int64_t{column} - uiHeight / 2, plane->getFirstColumn());
  const int64_t c1 = std::min<int64_t>(c0 + uiHeight, plane->getLastColumn());
  double M = p, m = p;
  for (int64_t l = l0; l < l1; ++l) {
    const T* row = (*plane)[static_cast<int>(l)];
    for (int64_t c = c0; c < c1; ++c) {
      const double v = value(row[c]);
      if (M < v) M = v;
      if (m > v) m = v;
    }
  }
  return uIntegralDecide(p, M, m, t, dFactor, bNegativeContrast);
}

template <class T>
void TPixelKlassifikatorTypThresholdIntegral<T>::vClassifyPlane(const TPlaneBasic& src, TPlaneBasic& classes,
                                                                bool withPlane) const {
  KX_TRY {
    if (src.eGetPicturePT() != this->ePixel || !withPlane || !src.isValid()) {
      classplane::vRows(src, classes, this->size(), [&](int, int c1, int c2, auto* out) {
        std::fill(out, out + (c2 - c1 + 1), 0);
      });
      classes.vSetTimeStamp();
      return;
    }
    const auto& plane = static_cast<const TPlane<T>&>(src);
    // The values compared (float pixels themselves; colour pixels by their
    // luminance, in double) and their window extremes over the whole plane.
    using V = std::conditional_t<std::is_same_v<T, float>, float, double>;
    const int64_t lines = plane.getLines(), columns = plane.getColumns();
    std::vector<V> x(static_cast<std::size_t>(lines * columns));
    for (int64_t l = 0; l < lines; ++l) {
      const T* row = plane[static_cast<int>(plane.getFirstLine() + l)] + plane.getFirstColumn();
      for (int64_t c = 0; c < columns; ++c) {
        if constexpr (std::is_same_v<T, float>)
          x[l * columns + c] = row[c];
        else
          x[l * columns + c] = dLuminanceCS(row[c]);
      }
    }
    // A NaN never wins a window: -inf for the maxima, +inf for the minima.
    const V inf = std::numeric_limits<V>::infinity();
    std::vector<V> xMax(x.size()), xMin(x.size());
#pragma omp simd
    for (std::size_t i = 0; i < x.size(); ++i) {
      const bool nan = x[i] != x[i];
      xMax[i] = nan ? -inf : x[i];
      xMin[i] = nan ? inf : x[i];
    }
    std::vector<V> wMax, wMin;
    vWindowExtremes(xMax, xMin, lines, columns, uiWidth, uiHeight, wMax, wMin);
    const double t = this->thresholds.empty() ? 0.0 : this->thresholds[0];
    classplane::vRows(src, classes, this->size(), [&](int l, int c1, int c2, auto* out) {
      using O = std::remove_reference_t<decltype(*out)>;
      const std::size_t base = static_cast<std::size_t>(l - plane.getFirstLine()) * columns;
      for (int c = c1; c <= c2; ++c) {
        const std::size_t i = base + static_cast<std::size_t>(c - plane.getFirstColumn());
        const V p = x[i];
        // M and m start as the pixel: a NaN pixel stays NaN.
        const V M = std::isnan(p) ? p : std::fmax(p, wMax[i]);
        const V m = std::isnan(p) ? p : std::fmin(p, wMin[i]);
        out[c - c1] = static_cast<O>(uIntegralDecide<double>(p, M, m, t, dFactor, bNegativeContrast));
      }
    });
    classes.vSetTimeStamp();
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThresholdIntegral<T>::vCreateTable(TKxTable* table) const {
  KX_TRY {
    this->_vCreateColumns(table, this->size() ? 1 : 0);
    table->addColumn(sWidth(), TKxTable::eInt, 8, TKxTable::eCenter);
    table->addColumn(sHeight(), TKxTable::eInt, 8, TKxTable::eCenter);
    table->addColumn(sFactor(), TKxTable::eDouble, 8, TKxTable::eCenter, "%t5");
    table->addColumn("NC", TKxTable::eBool, 3, TKxTable::eCenter);
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThresholdIntegral<T>::vAppendTable(TKxTable* table) const {
  KX_TRY {
    this->_vAppendValues(table, this->size() ? 1 : 0);
    const std::size_t l = table->lines() - 1;
    const std::size_t c = 1 + this->size() + (this->size() ? 1 : 0);
    table->vSetInt(l, c, static_cast<int32_t>(uiWidth));
    table->vSetInt(l, c + 1, static_cast<int32_t>(uiHeight));
    table->vSetDouble(l, c + 2, dFactor);
    table->vSetBool(l, c + 3, bNegativeContrast);
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThresholdIntegral<T>::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TPixelKlassifikatorTypThreshold<T>::vWriteIni(ini, section);
    ini->vWriteLongLong(section, "Width", uiWidth);
    ini->vWriteLongLong(section, "Height", uiHeight);
    ini->vWriteFloat(section, "Factor", dFactor);
    ini->vWriteBool(section, "NegativeContrast", bNegativeContrast);
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThresholdIntegral<T>::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    TPixelKlassifikatorTypThreshold<T>::vReadIni(ini, section);
    uiWidth = uReadSize(ini, section, "Width", uiWidth);
    uiHeight = uReadSize(ini, section, "Height", uiHeight);
    dFactor = ini->dReadFloat(section, "Factor", dFactor);
    bNegativeContrast = ini->bReadBool(section, "NegativeContrast", bNegativeContrast);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- symbol

template <class T>
TPixelKlassifikatorTypThresholdSymbol<T>& TPixelKlassifikatorTypThresholdSymbol<T>::operator=(
    const TPixelKlassifikatorTypThresholdSymbol& o) {
  if (this == &o) return *this;
  TPixelKlassifikatorTypThresholdIntegral<T>::operator=(o);
  uiDiameter = o.uiDiameter;
  uiBorderDistance = o.uiBorderDistance;
  return *this;
}

template <class T>
TPixelKlassifikatorTypThresholdSymbol<T>* TPixelKlassifikatorTypThresholdSymbol<T>::pVirtualClone() const {
  auto* p = new TPixelKlassifikatorTypThresholdSymbol<T>;
  *p = *this;
  return p;
}

template <class T>
void TPixelKlassifikatorTypThresholdSymbol<T>::vSetSymbolData(unsigned diameter, unsigned borderDistance) {
  uiDiameter = (diameter & ~1u) + 1;
  uiBorderDistance = borderDistance;
  this->setTimeStamp();
}

template <class T>
void TPixelKlassifikatorTypThresholdSymbol<T>::vGetSymbolData(unsigned* diameter, unsigned* borderDistance) const {
  if (diameter) *diameter = uiDiameter;
  if (borderDistance) *borderDistance = uiBorderDistance;
}

template <class T>
void TPixelKlassifikatorTypThresholdSymbol<T>::vCreateTable(TKxTable* table) const {
  KX_TRY {
    TPixelKlassifikatorTypThresholdIntegral<T>::vCreateTable(table);
    table->addColumn(sDiameter(), TKxTable::eInt, 8, TKxTable::eCenter);
    table->addColumn(sBorder(), TKxTable::eInt, 8, TKxTable::eCenter);
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThresholdSymbol<T>::vAppendTable(TKxTable* table) const {
  KX_TRY {
    TPixelKlassifikatorTypThresholdIntegral<T>::vAppendTable(table);
    const std::size_t l = table->lines() - 1, c = table->columns() - 2;
    table->vSetInt(l, c, static_cast<int32_t>(uiDiameter));
    table->vSetInt(l, c + 1, static_cast<int32_t>(uiBorderDistance));
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThresholdSymbol<T>::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    TPixelKlassifikatorTypThresholdIntegral<T>::vWriteIni(ini, section);
    ini->vWriteLongLong(section, "Diameter", uiDiameter);
    ini->vWriteLongLong(section, "BorderDistance", uiBorderDistance);
  }
  KX_CATCH
}

template <class T>
void TPixelKlassifikatorTypThresholdSymbol<T>::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    TPixelKlassifikatorTypThresholdIntegral<T>::vReadIni(ini, section);
    uiDiameter = uReadSize(ini, section, "Diameter", uiDiameter);
    uiBorderDistance = uReadSize(ini, section, "BorderDistance", uiBorderDistance);
  }
  KX_CATCH
}

template class TPixelKlassifikatorTypThreshold<unsigned char>;
template class TPixelKlassifikatorTypThreshold<unsigned short>;
template class TPixelKlassifikatorTypThreshold<float>;
template class TPixelKlassifikatorTypThreshold<TRGBPixel>;
template class TPixelKlassifikatorTypThreshold<TRGBFloatPixel>;
template class TPixelKlassifikatorTypThresholdContrast<float>;
template class TPixelKlassifikatorTypThresholdIntegral<float>;
template class TPixelKlassifikatorTypThresholdIntegral<TRGBFloatPixel>;
template class TPixelKlassifikatorTypThresholdSymbol<float>;
template class TPixelKlassifikatorTypThresholdSymbol<TRGBFloatPixel>;

}  // namespace Rastrix
