// The pixel operations of TPlane<T>: fills, line and column transfers,
// insert, minimum and maximum, shrinking by blocks, in-place arithmetic.
//
// Each operation is an entry that checks, locks and reports, around a short
// kernel with no checks. Kernels work on one row at a time (rows come from
// the row table, so own, extern, interlaced memory and views look alike) and
// are written so that g++ vectorises them at -O2 with -fno-trapping-math and
// -fopenmp-simd: plain counted loops over raw pointers, `omp simd` where the
// cost model would otherwise refuse, selects instead of branches, and
// reductions without std::min/std::max.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

#include "kxexception/KxError.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

namespace {

template <class T>
inline constexpr bool bScalar = std::is_arithmetic_v<T>;

// ------------------------------------------------------------ row kernels

template <class T>
void fillRow(T* p, std::size_t n, const T& v) {
  if constexpr (std::is_same_v<T, unsigned char>) {
    std::memset(p, v, n);
  } else if constexpr (bScalar<T>) {
    const T x = v;
#pragma omp simd
    for (std::size_t i = 0; i < n; ++i) p[i] = x;
  } else {
    // Colour pixels: one pixel, then doubling block copies.
    if (n == 0) return;
    p[0] = v;
    std::size_t done = 1;
    while (done < n) {
      const std::size_t k = std::min(done, n - done);
      std::memcpy(static_cast<void*>(p + done), p, k * sizeof(T));
      done += k;
    }
  }
}

// Folds n pixels into mn and mx with TPlaneBasic::min/max (accumulator
// first), so a NaN pixel never replaces a number.
template <class T>
void foldRow(const T* p, std::size_t n, T& mn, T& mx) {
  if constexpr (bScalar<T>) {
    T a = mn, b = mx;
#pragma omp simd reduction(min : a) reduction(max : b)
    for (std::size_t i = 0; i < n; ++i) {
      const T v = p[i];
      a = v < a ? v : a;
      b = v > b ? v : b;
    }
    mn = a;
    mx = b;
  } else {
    T a = mn, b = mx;
    for (std::size_t i = 0; i < n; ++i) {
      a = TPlaneBasic::min(a, p[i]);
      b = TPlaneBasic::max(b, p[i]);
    }
    mn = a;
    mx = b;
  }
}

// What a block of scaleDown is summed in: float in float, the integer types
// in double, a byte colour pixel as its luminance in double, a float colour
// pixel by component in floats.
template <class T>
struct TBlockSum {
  using type = double;
  static double value(const T& p) { return static_cast<double>(p); }
  static void store(T& out, double sum, int n) {
    if constexpr (std::is_same_v<T, TRGBPixel>) {
      // Kept as it is: the mean luminance, truncated to its low eight bits, in
      // all three bytes: scaling a colour picture down gives grey.
      out = sum / n;
    } else {
      out = kx::truncLow<T>(sum / n);
    }
  }
};
template <>
struct TBlockSum<float> {
  using type = float;
  static float value(float p) { return p; }
  static void store(float& out, float sum, int n) { out = sum / static_cast<float>(n); }
};
template <>
struct TBlockSum<TRGBFloatPixel> {
  using type = TRGBFloatPixel;
  static TRGBFloatPixel value(const TRGBFloatPixel& p) { return p; }
  static void store(TRGBFloatPixel& out, TRGBFloatPixel sum, int n) {
    sum /= static_cast<float>(n);
    out = sum;
  }
};

// acc[j] += the iX pixels of block column j in row s, left to right.
template <class T, class A>
void sumRow(A* acc, const T* s, std::size_t columns, int iX) {
  using S = TBlockSum<T>;
  if constexpr (std::is_same_v<A, TRGBFloatPixel>) {
    for (std::size_t j = 0; j < columns; ++j)
      for (int k = 0; k < iX; ++k) acc[j] += s[j * iX + k];
  } else if (iX == 1) {
#pragma omp simd
    for (std::size_t j = 0; j < columns; ++j) acc[j] += S::value(s[j]);
  } else if (iX == 2) {
#pragma omp simd
    for (std::size_t j = 0; j < columns; ++j) acc[j] = (acc[j] + S::value(s[2 * j])) + S::value(s[2 * j + 1]);
  } else {
    for (std::size_t j = 0; j < columns; ++j) {
      A a = acc[j];
      const T* b = s + j * static_cast<std::size_t>(iX);
      for (int k = 0; k < iX; ++k) a += S::value(b[k]);
      acc[j] = a;
    }
  }
}

template <class T, class A>
void storeRow(T* d, const A* acc, std::size_t columns, int n) {
  if constexpr (std::is_same_v<T, float>) {
    const float f = static_cast<float>(n);
#pragma omp simd
    for (std::size_t j = 0; j < columns; ++j) d[j] = acc[j] / f;
  } else {
    for (std::size_t j = 0; j < columns; ++j) TBlockSum<T>::store(d[j], acc[j], n);
  }
}

void multiplyRow(float* p, const float* q, std::size_t n) {
#pragma omp simd
  for (std::size_t i = 0; i < n; ++i) p[i] *= q[i];
}

void divideRow(float* p, const float* q, std::size_t n) {
#pragma omp simd
  for (std::size_t i = 0; i < n; ++i) {
    const float d = q[i];
    const float r = p[i] / d;
    p[i] = d == 0.0f ? 0.0f : r;  // +0 and -0 alike: zero, never an infinity
  }
}

void scaleRow(float* p, float v, std::size_t n) {
#pragma omp simd
  for (std::size_t i = 0; i < n; ++i) p[i] *= v;
}

void scaleRow(TRGBFloatPixel* p, const TRGBFloatPixel& v, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) p[i] *= v;
}

std::size_t width(int c1, int c2) { return static_cast<std::size_t>(static_cast<int64_t>(c2) - c1 + 1); }

// a + b for a target area, saturated: past INT_MAX it lies beyond any plane.
int endOf(int first, int span) {
  const int64_t e = static_cast<int64_t>(first) + span;
  return e > INT32_MAX ? INT32_MAX : static_cast<int>(e);
}

// After pixels were written: a new stamp on the common and message 51 to its
// listeners.
void pixelsWritten(TPlaneBasic& plane) {
  plane.setTimeStamp();
  plane.vSendCommonMessage(51, 0);
}

}  // namespace

// ------------------------------------------------------------ fills

template <class T>
void TPlane<T>::clear() {
  KX_TRY {
    if (!bValid) KX_THROW0(Err::ulPlaneNotValid);
    lock();
    const std::size_t bytes = static_cast<std::size_t>(iColumns) * sizeof(T);
    for (int l = iFirstLine; l <= getLastLine(); ++l) std::memset(static_cast<void*>(ppRows[l] + iFirstColumn), 0, bytes);
    unlock();
    pixelsWritten(*this);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::setRectangle(const T& value) {
  KX_TRY { setRectangle(value, iFirstLine, getLastLine(), iFirstColumn, getLastColumn()); }
  KX_CATCH
}

template <class T>
void TPlane<T>::setRectangle(const T& value, const CRectangle& r) {
  KX_TRY { setRectangle(value, r.iFirstLine, r.iLastLine, r.iFirstColumn, r.iLastColumn); }
  KX_CATCH
}

template <class T>
void TPlane<T>::setRectangle(const T& value, int l1, int l2, int c1, int c2) {
  KX_TRY {
    proofArea(l1, l2, c1, c2);
    const T v = value;  // `value` may be a pixel of this plane
    lock();
    for (int l = l1; l <= l2; ++l) _setLine(v, l, c1, c2);
    unlock();
    pixelsWritten(*this);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::setLine(const T& value, int line) {
  KX_TRY { setRectangle(value, line, line, iFirstColumn, getLastColumn()); }
  KX_CATCH
}

template <class T>
void TPlane<T>::setLine(const T& value, int line, int c1, int c2) {
  KX_TRY { setRectangle(value, line, line, c1, c2); }
  KX_CATCH
}

template <class T>
void TPlane<T>::setColumn(const T& value, int column) {
  KX_TRY { setRectangle(value, iFirstLine, getLastLine(), column, column); }
  KX_CATCH
}

template <class T>
void TPlane<T>::setColumn(const T& value, int column, int l1, int l2) {
  KX_TRY { setRectangle(value, l1, l2, column, column); }
  KX_CATCH
}

// ------------------------------------------------------------ transfers

template <class T>
void TPlane<T>::_setLine(const T& value, int line, int c1, int c2) {
  fillRow(ppRows[line] + c1, width(c1, c2), value);
}

template <class T>
void TPlane<T>::_getLine(T* out, int line, int c1, int c2) const {
  std::memmove(static_cast<void*>(out), ppRows[line] + c1, width(c1, c2) * sizeof(T));
}

template <class T>
void TPlane<T>::_putLine(const T* in, int line, int c1, int c2) {
  std::memmove(static_cast<void*>(ppRows[line] + c1), in, width(c1, c2) * sizeof(T));
}

template <class T>
void TPlane<T>::getLine(T* out, int line) const {
  KX_TRY { getLine(out, line, iFirstColumn, getLastColumn()); }
  KX_CATCH
}

template <class T>
void TPlane<T>::getLine(T* out, int line, int c1, int c2) const {
  KX_TRY {
    proofArea(line, line, c1, c2);
    _getLine(out, line, c1, c2);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::putLine(const T* in, int line) {
  KX_TRY { putLine(in, line, iFirstColumn, getLastColumn()); }
  KX_CATCH
}

template <class T>
void TPlane<T>::putLine(const T* in, int line, int c1, int c2) {
  KX_TRY {
    proofArea(line, line, c1, c2);
    lock();
    _putLine(in, line, c1, c2);
    unlock();
    pixelsWritten(*this);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::getColumn(T* out, int column) const {
  KX_TRY { getColumn(out, column, iFirstLine, getLastLine()); }
  KX_CATCH
}

template <class T>
void TPlane<T>::getColumn(T* out, int column, int l1, int l2) const {
  KX_TRY {
    proofArea(l1, l2, column, column);
    for (int l = l1; l <= l2; ++l) *out++ = ppRows[l][column];
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::putColumn(const T* in, int column) {
  KX_TRY { putColumn(in, column, iFirstLine, getLastLine()); }
  KX_CATCH
}

template <class T>
void TPlane<T>::putColumn(const T* in, int column, int l1, int l2) {
  KX_TRY {
    proofArea(l1, l2, column, column);
    lock();
    for (int l = l1; l <= l2; ++l) ppRows[l][column] = *in++;
    unlock();
    pixelsWritten(*this);
  }
  KX_CATCH
}

// ------------------------------------------------------------ insert

template <class T>
void TPlane<T>::insert(const TPlane& src) {
  KX_TRY {
    // Only the size of src counts: it lands at this plane's first line and column.
    insert(src, src.iFirstLine, src.getLastLine(), src.iFirstColumn, src.getLastColumn(), iFirstLine,
           iFirstColumn);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::insert(const TPlane& src, int l1, int l2, int c1, int c2) {
  KX_TRY { insert(src, l1, l2, c1, c2, l1, c1); }
  KX_CATCH
}

template <class T>
void TPlane<T>::insert(const TPlane& src, const CRectangle& r) {
  KX_TRY { insert(src, r.iFirstLine, r.iLastLine, r.iFirstColumn, r.iLastColumn, r.iFirstLine, r.iFirstColumn); }
  KX_CATCH
}

template <class T>
void TPlane<T>::insert(const TPlane& src, const CRectangle& r, int toLine, int toColumn) {
  KX_TRY { insert(src, r.iFirstLine, r.iLastLine, r.iFirstColumn, r.iLastColumn, toLine, toColumn); }
  KX_CATCH
}

template <class T>
void TPlane<T>::insert(const TPlane& src, int l1, int l2, int c1, int c2, int toLine, int toColumn) {
  KX_TRY {
    if (&src == this) KX_THROW0(Err::ulInsertIntoItself);
    src.proofArea(l1, l2, c1, c2);
    proofArea(toLine, endOf(toLine, l2 - l1), toColumn, endOf(toColumn, c2 - c1));
    const std::size_t bytes = width(c1, c2) * sizeof(T);
    lock();
    // A view and its source may overlap: memmove keeps each line whole, and
    // when the target lies further on in the shared memory the lines go from
    // the last, so that no source line is overwritten before it is read.
    const int n = l2 - l1;
    const bool backwards = reinterpret_cast<std::uintptr_t>(ppRows[toLine] + toColumn) >
                           reinterpret_cast<std::uintptr_t>(src.ppRows[l1] + c1);
    for (int k = 0; k <= n; ++k) {
      const int i = backwards ? n - k : k;
      std::memmove(static_cast<void*>(ppRows[toLine + i] + toColumn), src.ppRows[l1 + i] + c1, bytes);
    }
    unlock();
    pixelsWritten(*this);
  }
  KX_CATCH
}

// ------------------------------------------------------------ minimum, maximum

template <class T>
void TPlane<T>::calcMinMax(T& min, T& max) const {
  KX_TRY { calcMinMax(min, max, getExtension()); }
  KX_CATCH
}

template <class T>
void TPlane<T>::calcMinMax(T& min, T& max, const CRectangle& r) const {
  KX_TRY {
    if (!bValid) return;
    CRectangle a = r;
    if (a.AndRectangle(getExtension())) return;  // nothing of the plane is left
    T mn = ppRows[a.iFirstLine][a.iFirstColumn];
    T mx = mn;
    if constexpr (std::is_floating_point_v<T>) {
      // A NaN start stays the answer of the fold; the vector fold must not see it.
      if (std::isnan(mn)) {
        min = mn;
        max = mx;
        return;
      }
    }
    const std::size_t n = width(a.iFirstColumn, a.iLastColumn);
    for (int l = a.iFirstLine; l <= a.iLastLine; ++l) foldRow(ppRows[l] + a.iFirstColumn, n, mn, mx);
    min = mn;
    max = mx;
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::calcMinMax(T& min, T& max, long x, long y, unsigned long radius) const {
  KX_TRY {
    if (!bValid) return;
    using W = __int128;  // x +- radius and radius^2 do not fit in 64 bits
    const W rad = radius < 1 ? 1 : radius;
    const W l1 = std::max<W>(W(y) - rad, iFirstLine), l2 = std::min<W>(W(y) + rad, getLastLine());
    const W c1 = std::max<W>(W(x) - rad, iFirstColumn), c2 = std::min<W>(W(x) + rad, getLastColumn());
    if (l1 > l2 || c1 > c2) return;
    // The cut square lies inside the plane: from here on every number is an int.
    T mn = ppRows[static_cast<int>((l1 + l2) / 2)][static_cast<int>((c1 + c2) / 2)];
    T mx = mn;
    if constexpr (std::is_floating_point_v<T>) {
      if (std::isnan(mn)) {
        min = mn;
        max = mx;
        return;
      }
    }
    using U = unsigned __int128;
    const U r2 = U(rad) * U(rad);
    for (W l = l1; l <= l2; ++l) {
      const W dl = l - W(y);
      const U dl2 = U(dl < 0 ? -dl : dl) * U(dl < 0 ? -dl : dl);
      W w = 0;
      if (r2 > dl2) {
        const U d = r2 - dl2;
        if (d < (U(1) << 53)) w = static_cast<W>(std::sqrt(static_cast<double>(d)) + 0.5);
        else w = static_cast<W>(std::sqrt(static_cast<long double>(d)) + 0.5L);
      }
      const W a = std::max<W>(W(x) - w, c1), b = std::min<W>(W(x) + w, c2);
      if (a > b) continue;
      foldRow(ppRows[static_cast<int>(l)] + static_cast<int>(a), static_cast<std::size_t>(b - a + 1), mn, mx);
    }
    min = mn;
    max = mx;
  }
  KX_CATCH
}

// ------------------------------------------------------------ scaleDown

template <class T>
void TPlane<T>::scaleDown(const TPlane& src, int iY, int iX, bool alloc) {
  KX_TRY {
    if (iY < 1) KX_THROW(Err::ulScaleDownBlockLines, "_iY=%d <= 0", iY);
    if (iX < 1) KX_THROW(Err::ulScaleDownBlockColumns, "_iX=%d <= 0", iX);
    if (iY > src.iLines) KX_THROW(Err::ulScaleDownBlockTooHigh, "_iY=%d > Lines=%d", iY, src.iLines);
    if (iX > src.iColumns) KX_THROW(Err::ulScaleDownBlockTooWide, "_iX=%d > Columns=%d", iX, src.iColumns);
    const int lines = src.iLines / iY;
    const int columns = src.iColumns / iX;

    // Reallocation frees this plane's block: a source that lives in it (the
    // plane itself, or a view of it) is read from a copy.
    std::unique_ptr<TPlane> copy;
    const TPlane* s = &src;
    if (alloc && (lines != iLines || columns != iColumns)) {
      if (&src == this || (bValid && !bExtern && src.bValid && src.pMemory == pMemory)) {
        copy = std::make_unique<TPlane>(src);
        s = copy.get();
      }
      this->alloc(lines, columns);
    }
    if (lines > iLines) KX_THROW(Err::ulScaleDownTargetLines, "iLines=%d > Lines=%d", lines, iLines);
    if (columns > iColumns) KX_THROW(Err::ulScaleDownTargetColumns, "iColumns=%d > Columns=%d", columns, iColumns);

    using A = typename TBlockSum<T>::type;
    std::vector<A> acc(static_cast<std::size_t>(columns));
    const int n = iY * iX;  // both at most the source's size: their product fits a block of real pixels
    for (int i = 0; i < lines; ++i) {
      std::fill(acc.begin(), acc.end(), A{});
      for (int k = 0; k < iY; ++k)
        sumRow(acc.data(), s->ppRows[s->iFirstLine + i * iY + k] + s->iFirstColumn,
               static_cast<std::size_t>(columns), iX);
      storeRow(ppRows[iFirstLine + i] + iFirstColumn, acc.data(), static_cast<std::size_t>(columns), n);
    }
    pixelsWritten(*this);
  }
  KX_CATCH
}

// ------------------------------------------------------------ arithmetic

namespace {

// The lines both planes have, and the columns a pass of the operators visits:
// kept as it is, both row pointers start at THIS plane's first column and the
// counter runs from the larger first column to the smaller last one; equal
// first columns make it the plain pixel-wise operation. Where this plane
// starts left of the other, the pixels the other plane does not have are left
// alone rather than read from outside it.
struct TOperatorPass {
  int l1, l2, c1, c2;  // empty when l1 > l2 or c1 > c2
};

template <class P>
TOperatorPass operatorPass(const P& a, const P& b) {
  TOperatorPass r{std::max(a.getFirstLine(), b.getFirstLine()), std::min(a.getLastLine(), b.getLastLine()), 0, -1};
  const int64_t count = static_cast<int64_t>(std::min(a.getLastColumn(), b.getLastColumn())) -
                        std::max(a.getFirstColumn(), b.getFirstColumn()) + 1;
  if (count < 1) return r;
  r.c1 = std::max(a.getFirstColumn(), b.getFirstColumn());
  r.c2 = static_cast<int>(a.getFirstColumn() + count - 1);
  return r;
}

}  // namespace

template <class T>
TPlane<T>& TPlane<T>::operator*=(const TPlane& o)
  requires std::is_same_v<T, float>
{
  KX_TRY {
    const TOperatorPass p = operatorPass(*this, o);
    if (p.l1 <= p.l2 && p.c1 <= p.c2)
      for (int l = p.l1; l <= p.l2; ++l) multiplyRow(ppRows[l] + p.c1, o.ppRows[l] + p.c1, width(p.c1, p.c2));
    pixelsWritten(*this);
  }
  KX_CATCH
  return *this;
}

template <class T>
TPlane<T>& TPlane<T>::operator/=(const TPlane& o)
  requires std::is_same_v<T, float>
{
  KX_TRY {
    const TOperatorPass p = operatorPass(*this, o);
    if (p.l1 <= p.l2 && p.c1 <= p.c2)
      for (int l = p.l1; l <= p.l2; ++l) divideRow(ppRows[l] + p.c1, o.ppRows[l] + p.c1, width(p.c1, p.c2));
    pixelsWritten(*this);
  }
  KX_CATCH
  return *this;
}

template <class T>
TPlane<T>& TPlane<T>::operator*=(const T& value)
  requires(std::is_same_v<T, float> || std::is_same_v<T, TRGBFloatPixel>)
{
  KX_TRY {
    const T v = value;
    if (bValid)
      for (int l = iFirstLine; l <= getLastLine(); ++l)
        scaleRow(ppRows[l] + iFirstColumn, v, static_cast<std::size_t>(iColumns));
    pixelsWritten(*this);
  }
  KX_CATCH
  return *this;
}

// ------------------------------------------------------------ instantiation

#define KX_PLANE_OPERATIONS(T)                                                                 \
  template void TPlane<T>::clear();                                                            \
  template void TPlane<T>::setRectangle(const T&);                                             \
  template void TPlane<T>::setRectangle(const T&, int, int, int, int);                         \
  template void TPlane<T>::setRectangle(const T&, const CRectangle&);                          \
  template void TPlane<T>::setLine(const T&, int);                                             \
  template void TPlane<T>::setLine(const T&, int, int, int);                                   \
  template void TPlane<T>::setColumn(const T&, int);                                           \
  template void TPlane<T>::setColumn(const T&, int, int, int);                                 \
  template void TPlane<T>::getLine(T*, int) const;                                             \
  template void TPlane<T>::getLine(T*, int, int, int) const;                                   \
  template void TPlane<T>::putLine(const T*, int);                                             \
  template void TPlane<T>::putLine(const T*, int, int, int);                                   \
  template void TPlane<T>::getColumn(T*, int) const;                                           \
  template void TPlane<T>::getColumn(T*, int, int, int) const;                                 \
  template void TPlane<T>::putColumn(const T*, int);                                           \
  template void TPlane<T>::putColumn(const T*, int, int, int);                                 \
  template void TPlane<T>::_setLine(const T&, int, int, int);                                  \
  template void TPlane<T>::_getLine(T*, int, int, int) const;                                  \
  template void TPlane<T>::_putLine(const T*, int, int, int);                                  \
  template void TPlane<T>::insert(const TPlane<T>&);                                           \
  template void TPlane<T>::insert(const TPlane<T>&, int, int, int, int);                       \
  template void TPlane<T>::insert(const TPlane<T>&, const CRectangle&);                        \
  template void TPlane<T>::insert(const TPlane<T>&, const CRectangle&, int, int);              \
  template void TPlane<T>::insert(const TPlane<T>&, int, int, int, int, int, int);             \
  template void TPlane<T>::calcMinMax(T&, T&) const;                                           \
  template void TPlane<T>::calcMinMax(T&, T&, const CRectangle&) const;                        \
  template void TPlane<T>::calcMinMax(T&, T&, long, long, unsigned long) const;                \
  template void TPlane<T>::scaleDown(const TPlane<T>&, int, int, bool);
KX_FOR_EACH_PIXEL_TYPE(KX_PLANE_OPERATIONS)
#undef KX_PLANE_OPERATIONS

template TPlane<float>& TPlane<float>::operator*=(const TPlane<float>&);
template TPlane<float>& TPlane<float>::operator/=(const TPlane<float>&);
template TPlane<float>& TPlane<float>::operator*=(const float&);
template TPlane<TRGBFloatPixel>& TPlane<TRGBFloatPixel>::operator*=(const TRGBFloatPixel&);

}  // namespace Rastrix
