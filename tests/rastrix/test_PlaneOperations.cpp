// Pixel operations of TPlane<T> against naive references, over the six pixel
// types, on odd shapes and numberings, with their locks, stamps, messages and
// error codes.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <future>
#include <limits>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "RastrixTestUtil.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TPlane.h"

using namespace Rastrix;
using rastrixtest::codeOf;
using rastrixtest::errorOf;
using rastrixtest::same;
using rastrixtest::TRecorder;

namespace {

// A pixel from a number, distinct for distinct numbers in 0..255, with
// components that do not rise together (so per-component results differ
// from whole-pixel ones).
template <class T>
T px(int v) {
  if constexpr (std::is_same_v<T, TRGBPixel>) {
    TRGBPixel p;
    p.set(v, (v * 7 + 3) & 0xff, 255 - v);
    return p;
  } else if constexpr (std::is_same_v<T, TRGBFloatPixel>) {
    TRGBFloatPixel p;
    p.set(static_cast<float>(v) - 100.0f, static_cast<float>((v * 7 + 3) % 256) * 0.25f, 300.0f - v);
    return p;
  } else if constexpr (std::is_same_v<T, float>) {
    return static_cast<float>(v) * 0.5f - 60.0f;
  } else if constexpr (std::is_same_v<T, int>) {
    return v * 1000 - 90000;
  } else {
    return static_cast<T>(v);
  }
}

template <class T>
std::string show(const T& p) {
  char s[iPixelStrSize];
  TPixelTraits<T>::pixel2Str(p, s);
  return s;
}

int hashOf(int l, int c, int seed) { return static_cast<int>((static_cast<unsigned>(l * 131 + c * 29 + seed * 7919) * 2654435761u) >> 24); }

// The naive picture: a rectangle of pixels at absolute numbers, the
// reference every operation is checked against.
template <class T>
struct Model {
  int fl, fc, lines, columns;
  std::vector<T> v;
  Model(int firstLine, int firstColumn, int l, int c)
      : fl(firstLine), fc(firstColumn), lines(l), columns(c), v(static_cast<std::size_t>(l) * c) {}
  T& at(int l, int c) { return v[static_cast<std::size_t>(l - fl) * columns + (c - fc)]; }
  void set(int l1, int l2, int c1, int c2, const T& x) {
    for (int l = l1; l <= l2; ++l)
      for (int c = c1; c <= c2; ++c) at(l, c) = x;
  }
};

template <class T>
Model<T> modelOf(const TPlane<T>& p) {
  Model<T> m(p.getFirstLine(), p.getFirstColumn(), p.getLines(), p.getColumns());
  for (int l = m.fl; l < m.fl + m.lines; ++l)
    for (int c = m.fc; c < m.fc + m.columns; ++c) m.at(l, c) = p[l][c];
  return m;
}

template <class T>
void fill(TPlane<T>& p, int seed) {
  for (int l = p.getFirstLine(); l <= p.getLastLine(); ++l)
    for (int c = p.getFirstColumn(); c <= p.getLastColumn(); ++c) p[l][c] = px<T>(hashOf(l, c, seed));
}

template <class T>
::testing::AssertionResult equals(const TPlane<T>& p, Model<T>& m) {
  if (p.getFirstLine() != m.fl || p.getFirstColumn() != m.fc || p.getLines() != m.lines || p.getColumns() != m.columns)
    return ::testing::AssertionFailure() << "geometry differs";
  for (int l = m.fl; l < m.fl + m.lines; ++l)
    for (int c = m.fc; c < m.fc + m.columns; ++c)
      if (!same(p[l][c], m.at(l, c)))
        return ::testing::AssertionFailure() << "pixel (" << l << ", " << c << ") is " << show(p[l][c]) << ", expected "
                                             << show(m.at(l, c));
  return ::testing::AssertionSuccess();
}

// The shapes every operation meets: ordinary, 1x1, one line, one column,
// numbered below zero and far out.
struct Shape {
  int lines, columns, firstLine, firstColumn;
};
const Shape kShapes[] = {{7, 9, 0, 0}, {1, 1, -4, 3}, {1, 13, 2, -6}, {11, 1, -5, -5}, {6, 5, -3, 100}};

// A recorder of a plane's messages and a watch on its stamp.
struct Watch {
  explicit Watch(TPlaneBasic& p) : plane(p), rec(&p), stamp(p.getTimeStamp()) {}
  // Exactly one message 51, a later stamp, the lock free again.
  ::testing::AssertionResult wrote() {
    if (rec.codes != std::vector<unsigned long>{51}) return ::testing::AssertionFailure() << "messages: " << rec.codes.size();
    if (!(plane.getTimeStamp() > stamp)) return ::testing::AssertionFailure() << "not stamped";
    if (plane.isLock()) return ::testing::AssertionFailure() << "left locked";
    reset();
    return ::testing::AssertionSuccess();
  }
  ::testing::AssertionResult quiet() {
    if (!rec.codes.empty()) return ::testing::AssertionFailure() << "message " << rec.codes.front();
    if (plane.getTimeStamp() != stamp) return ::testing::AssertionFailure() << "stamped";
    return ::testing::AssertionSuccess();
  }
  void reset() {
    rec.clear();
    stamp = plane.getTimeStamp();
  }
  TPlaneBasic& plane;
  TRecorder rec;
  Process::TTimeStamp stamp;
};

template <class T>
class PlaneOps : public ::testing::Test {};
using PixelTypes = ::testing::Types<unsigned char, unsigned short, float, TRGBPixel, TRGBFloatPixel, int>;
TYPED_TEST_SUITE(PlaneOps, PixelTypes);

// ------------------------------------------------------------ fills

TYPED_TEST(PlaneOps, FillsMatchTheReferenceOnEveryShape) {
  using T = TypeParam;
  for (const Shape& s : kShapes) {
    SCOPED_TRACE(::testing::Message() << s.lines << "x" << s.columns << " from " << s.firstLine << "," << s.firstColumn);
    TPlane<T> p(s.lines, s.columns, s.firstLine, s.firstColumn, s.columns + 3);
    fill(p, 1);
    Model<T> m = modelOf(p);
    Watch w(p);
    const int l1 = p.getFirstLine(), l2 = p.getLastLine(), c1 = p.getFirstColumn(), c2 = p.getLastColumn();
    const int lm = (l1 + l2) / 2, cm = (c1 + c2) / 2;

    p.setRectangle(px<T>(11), lm, l2, c1, cm);
    m.set(lm, l2, c1, cm, px<T>(11));
    EXPECT_TRUE(equals(p, m));
    EXPECT_TRUE(w.wrote());
    p.setRectangle(px<T>(12), CRectangle(l1, lm, cm, c2));
    m.set(l1, lm, cm, c2, px<T>(12));
    p.setLine(px<T>(13), l2);
    m.set(l2, l2, c1, c2, px<T>(13));
    p.setLine(px<T>(14), l1, cm, c2);
    m.set(l1, l1, cm, c2, px<T>(14));
    p.setColumn(px<T>(15), c2);
    m.set(l1, l2, c2, c2, px<T>(15));
    p.setColumn(px<T>(16), c1, lm, l2);
    m.set(lm, l2, c1, c1, px<T>(16));
    EXPECT_TRUE(equals(p, m));
    EXPECT_EQ(w.rec.codes, std::vector<unsigned long>(5, 51));
    w.reset();

    // A pixel of the plane itself as the value.
    p.setRectangle(p[lm][cm]);
    m.set(l1, l2, c1, c2, T(m.at(lm, cm)));
    EXPECT_TRUE(equals(p, m));
    EXPECT_TRUE(w.wrote());

    p.clear();
    for (T& x : m.v) std::memset(static_cast<void*>(&x), 0, sizeof(T));
    EXPECT_TRUE(equals(p, m));
    EXPECT_TRUE(w.wrote());
  }
}

TYPED_TEST(PlaneOps, FillsRaiseTheAreaCodesAndTouchNothing) {
  using T = TypeParam;
  TPlane<T> p(4, 5, -2, 10, 5);
  fill(p, 2);
  Model<T> m = modelOf(p);
  Watch w(p);
  const T v = px<T>(1);
  const std::pair<std::function<void()>, unsigned long> calls[] = {
      {[&] { p.setRectangle(v, -3, 0, 10, 12); }, Err::ulAreaFirstLine},
      {[&] { p.setRectangle(v, -2, 2, 10, 12); }, Err::ulAreaLastLine},
      {[&] { p.setRectangle(v, 1, 0, 10, 12); }, Err::ulAreaLinesReversed},
      {[&] { p.setRectangle(v, CRectangle(-2, 1, 9, 12)); }, Err::ulAreaFirstColumn},
      {[&] { p.setLine(v, 0, 10, 15); }, Err::ulAreaLastColumn},
      {[&] { p.setLine(v, 0, 12, 11); }, Err::ulAreaColumnsReversed},
      {[&] { p.setLine(v, 2); }, Err::ulAreaLastLine},
      {[&] { p.setColumn(v, 9); }, Err::ulAreaFirstColumn},
      {[&] { p.setColumn(v, 10, -3, 0); }, Err::ulAreaFirstLine},
      {[&] { p.setRectangle(v, CRectangle()); }, Err::ulAreaLinesReversed}};
  for (std::size_t i = 0; i < std::size(calls); ++i) EXPECT_EQ(codeOf(calls[i].first), calls[i].second) << i;
  EXPECT_TRUE(equals(p, m));
  EXPECT_TRUE(w.quiet());
  EXPECT_FALSE(p.isLock());

  TPlane<T> invalid;
  for (auto call : {std::function<void()>([&] { invalid.clear(); }), std::function<void()>([&] { invalid.setRectangle(v); }),
                    std::function<void()>([&] { invalid.setLine(v, 0); }),
                    std::function<void()>([&] { invalid.setColumn(v, 0, 0, 0); })})
    EXPECT_EQ(codeOf(call), Err::ulPlaneNotValid);
}

TYPED_TEST(PlaneOps, ViewAtTheEdgeWritesOnlyItsPartOfTheSource) {
  using T = TypeParam;
  TPlane<T> src(6, 8, -3, -2, 8);
  fill(src, 3);
  Model<T> m = modelOf(src);
  TPlane<T> view;
  view.beSubPicture(src, CRectangle(0, 2, 3, 5));  // the bottom right corner
  TRecorder onSource(&src);
  view.setRectangle(px<T>(7));
  view.setColumn(px<T>(8), 5, 1, 2);
  const T line[3] = {px<T>(20), px<T>(21), px<T>(22)};
  view.putLine(line, 2);
  m.set(0, 2, 3, 5, px<T>(7));
  m.at(1, 5) = px<T>(8);
  for (int c = 3; c <= 5; ++c) m.at(2, c) = line[c - 3];
  EXPECT_TRUE(equals(src, m));
  EXPECT_EQ(onSource.codes, std::vector<unsigned long>(3, 51));  // the common is shared
  EXPECT_EQ(codeOf([&] { view.setLine(px<T>(1), -1); }), Err::ulAreaFirstLine);
  view.clear();
  m.set(0, 2, 3, 5, T{});
  EXPECT_TRUE(equals(src, m));
}

TEST(PlaneOpsMemory, OperationsFollowTheRowsOfInterlacedMemory) {
  // Even lines in one block, odd lines in another: nothing may assume the
  // rows of a plane follow each other in memory.
  std::vector<int> even(3 * 6, -1), odd(3 * 6, -2);
  TPlane<int> p(6, 4, 0, 1, 6, even.data(), odd.data());
  p.setRectangle(7, 1, 4, 2, 3);
  for (int l = 0; l < 6; ++l)
    for (int c = 0; c < 6; ++c) {
      const int expected = (l >= 1 && l <= 4 && c >= 2 && c <= 3) ? 7 : (l % 2 ? -2 : -1);
      EXPECT_EQ((l % 2 ? odd : even)[(l / 2) * 6 + c], expected) << l << "," << c;
    }
  TPlane<int> src(6, 4);
  fill(src, 4);
  p.insert(src);
  int mn = 0, mx = 0;
  p.calcMinMax(mn, mx);
  int rmn = src[0][0], rmx = rmn;
  for (int l = 0; l < 6; ++l)
    for (int c = 0; c < 4; ++c) {
      EXPECT_EQ((l % 2 ? odd : even)[(l / 2) * 6 + c + 1], src[l][c]);
      rmn = std::min(rmn, src[l][c]);
      rmx = std::max(rmx, src[l][c]);
    }
  EXPECT_EQ(mn, rmn);
  EXPECT_EQ(mx, rmx);
  EXPECT_EQ(even[0], -1);  // column 0 is not the plane's
}

// ------------------------------------------------------------ transfers

TYPED_TEST(PlaneOps, LinesAndColumnsTravelBothWays) {
  using T = TypeParam;
  for (const Shape& s : kShapes) {
    SCOPED_TRACE(::testing::Message() << s.lines << "x" << s.columns);
    TPlane<T> p(s.lines, s.columns, s.firstLine, s.firstColumn, s.columns);
    fill(p, 5);
    Model<T> m = modelOf(p);
    const int l1 = p.getFirstLine(), l2 = p.getLastLine(), c1 = p.getFirstColumn(), c2 = p.getLastColumn();
    std::vector<T> buf(static_cast<std::size_t>(std::max(s.lines, s.columns)) + 4);
    Watch w(p);

    // Readers: the pixels, no message, no stamp, no lock.
    p.getLine(buf.data(), l2);
    for (int c = c1; c <= c2; ++c) EXPECT_TRUE(same(buf[c - c1], m.at(l2, c)));
    p.getColumn(buf.data(), c1);
    for (int l = l1; l <= l2; ++l) EXPECT_TRUE(same(buf[l - l1], m.at(l, c1)));
    p.getLine(buf.data(), l1, c2, c2);
    p.getColumn(buf.data() + 1, c2, l2, l2);
    EXPECT_TRUE(same(buf[0], m.at(l1, c2)) && same(buf[1], m.at(l2, c2)));
    p._getLine(buf.data(), l1, c1, c2);
    for (int c = c1; c <= c2; ++c) EXPECT_TRUE(same(buf[c - c1], m.at(l1, c)));
    EXPECT_TRUE(w.quiet());

    // Writers.
    for (std::size_t i = 0; i < buf.size(); ++i) buf[i] = px<T>(200 + static_cast<int>(i));
    p.putLine(buf.data(), l1);
    for (int c = c1; c <= c2; ++c) m.at(l1, c) = buf[c - c1];
    EXPECT_TRUE(equals(p, m));
    EXPECT_TRUE(w.wrote());
    p.putLine(buf.data() + 1, l2, c2, c2);
    m.at(l2, c2) = buf[1];
    p.putColumn(buf.data(), c2);
    for (int l = l1; l <= l2; ++l) m.at(l, c2) = buf[l - l1];
    p.putColumn(buf.data() + 2, c1, l2, l2);
    m.at(l2, c1) = buf[2];
    EXPECT_TRUE(equals(p, m));
    EXPECT_EQ(w.rec.codes, std::vector<unsigned long>(3, 51));
    w.reset();

    // The bare loops: the same effect, no message.
    p._putLine(buf.data() + 3, l2, c1, c2);
    for (int c = c1; c <= c2; ++c) m.at(l2, c) = buf[3 + c - c1];
    p._setLine(px<T>(99), l1, c1, c1);
    m.at(l1, c1) = px<T>(99);
    EXPECT_TRUE(equals(p, m));
    EXPECT_TRUE(w.quiet());

    EXPECT_EQ(codeOf([&] { p.getLine(buf.data(), l2 + 1); }), Err::ulAreaLastLine);
    EXPECT_EQ(codeOf([&] { p.putLine(buf.data(), l1, c1 - 1, c1); }), Err::ulAreaFirstColumn);
    EXPECT_EQ(codeOf([&] { p.getColumn(buf.data(), c2 + 1); }), Err::ulAreaLastColumn);
    EXPECT_EQ(codeOf([&] { p.putColumn(buf.data(), c1, l2, l1 - 1); }), Err::ulAreaLinesReversed);
    EXPECT_EQ(codeOf([&] { p.putColumn(buf.data(), c1, l1 - 1, l2); }), Err::ulAreaFirstLine);
    EXPECT_TRUE(equals(p, m));
    EXPECT_TRUE(w.quiet());
  }
}

// ------------------------------------------------------------ insert

TYPED_TEST(PlaneOps, InsertFormsMatchTheReference) {
  using T = TypeParam;
  TPlane<T> src(9, 10, 100, -4, 12);
  fill(src, 6);
  TPlane<T> dst(12, 11, 0, -6, 11);
  fill(dst, 7);
  Model<T> m = modelOf(dst);
  Watch w(dst);

  // The whole source lands at the destination's first line and column,
  // whatever the source's numbers.
  dst.insert(src);
  for (int l = 0; l < 9; ++l)
    for (int c = 0; c < 10; ++c) m.at(l, c - 6) = src[100 + l][c - 4];
  EXPECT_TRUE(equals(dst, m));
  EXPECT_TRUE(w.wrote());

  // The area to the same numbers.
  TPlane<T> src2(12, 11, 0, -6, 11);
  fill(src2, 8);
  dst.insert(src2, 3, 5, -2, 1);
  dst.insert(src2, CRectangle(11, 11, 4, 4));
  for (int l = 3; l <= 5; ++l)
    for (int c = -2; c <= 1; ++c) m.at(l, c) = src2[l][c];
  m.at(11, 4) = src2[11][4];
  EXPECT_TRUE(equals(dst, m));
  EXPECT_EQ(w.rec.codes, std::vector<unsigned long>(2, 51));
  w.reset();

  // An area to another place, at the edges of both.
  dst.insert(src, CRectangle(108, 108, -4, 5), 11, -6);
  dst.insert(src, 100, 108, 5, 5, 3, 4);
  for (int c = -4; c <= 5; ++c) m.at(11, c - 2) = src[108][c];
  for (int l = 100; l <= 108; ++l) m.at(l - 97, 4) = src[l][5];
  EXPECT_TRUE(equals(dst, m));
  EXPECT_EQ(w.rec.codes, std::vector<unsigned long>(2, 51));
  w.reset();

  // A 1x1 source into a 1x1 destination far away in numbers.
  TPlane<T> one(1, 1, -50, 70, 1), tiny(1, 1, 3, -3, 1);
  one[-50][70] = px<T>(42);
  tiny.insert(one);
  EXPECT_TRUE(same(tiny[3][-3], px<T>(42)));
}

TYPED_TEST(PlaneOps, InsertChecksItselfTheSourceThenTheTarget) {
  using T = TypeParam;
  TPlane<T> dst(5, 5, 0, 0, 5), big(6, 5, 100, 0, 5), src(5, 5, 0, 0, 5);
  fill(dst, 9);
  fill(big, 10);
  fill(src, 11);
  Model<T> m = modelOf(dst);
  Watch w(dst);
  EXPECT_EQ(codeOf([&] { dst.insert(big); }), Err::ulAreaLastLine);  // six lines do not fit five
  EXPECT_EQ(codeOf([&] { dst.insert(dst); }), Err::ulInsertIntoItself);
  EXPECT_EQ(codeOf([&] { dst.insert(dst, 0, 1, 0, 1, 2, 2); }), Err::ulInsertIntoItself);
  // Source area first: line 99 is not in `big`, whatever the target.
  EXPECT_EQ(codeOf([&] { dst.insert(big, 99, 100, 0, 0, -7, 0); }), Err::ulAreaFirstLine);
  EXPECT_EQ(codeOf([&] { dst.insert(big, CRectangle(100, 101, 3, 2)); }), Err::ulAreaColumnsReversed);
  // Then the target area, as the source area's size at the given place.
  EXPECT_EQ(codeOf([&] { dst.insert(src, 0, 1, 0, 1, -1, 0); }), Err::ulAreaFirstLine);
  EXPECT_EQ(codeOf([&] { dst.insert(src, 0, 1, 0, 1, 0, 4); }), Err::ulAreaLastColumn);
  EXPECT_EQ(codeOf([&] { dst.insert(src, CRectangle(0, 4, 0, 0), 1, 0); }), Err::ulAreaLastLine);
  EXPECT_EQ(codeOf([&] { dst.insert(src, 0, 4, 0, 4, INT32_MAX - 2, 0); }), Err::ulAreaLastLine);
  TPlane<T> invalid;
  EXPECT_EQ(codeOf([&] { dst.insert(invalid); }), Err::ulPlaneNotValid);
  EXPECT_EQ(codeOf([&] { invalid.insert(src); }), Err::ulPlaneNotValid);
  EXPECT_TRUE(equals(dst, m));
  EXPECT_TRUE(w.quiet());
  EXPECT_FALSE(dst.isLock());

  // A view into its own source is no insert into itself.
  TPlane<T> view;
  view.beSubPicture(dst, CRectangle(3, 4, 0, 4));
  view.insert(dst, 3, 4, 0, 4);
  EXPECT_TRUE(equals(dst, m));  // the same pixels onto themselves
  view.insert(dst, CRectangle(0, 1, 0, 4), 3, 0);
  for (int l = 3; l <= 4; ++l)
    for (int c = 0; c <= 4; ++c) m.at(l, c) = m.at(l - 3, c);
  EXPECT_TRUE(equals(dst, m));
}

// ------------------------------------------------------------ calcMinMax

template <class T>
void naiveFold(const TPlane<T>& p, int l, int c, T& mn, T& mx) {
  mn = TPlaneBasic::min(mn, p[l][c]);
  mx = TPlaneBasic::max(mx, p[l][c]);
}

TYPED_TEST(PlaneOps, MinMaxOverPlaneAndRectangles) {
  using T = TypeParam;
  for (const Shape& s : kShapes) {
    SCOPED_TRACE(::testing::Message() << s.lines << "x" << s.columns);
    TPlane<T> p(s.lines, s.columns, s.firstLine, s.firstColumn, s.columns + 1);
    fill(p, 12);
    Watch w(p);
    const CRectangle e = p.getExtension();
    const CRectangle rects[] = {e,
                                CRectangle(e.iFirstLine - 5, e.iFirstLine, e.iLastColumn, e.iLastColumn + 9),
                                CRectangle(e.iFirstLine + 1, e.iLastLine + 2, e.iFirstColumn - 1, e.iFirstColumn + 1),
                                CRectangle(-1000, 1000, -1000, 1000)};
    for (const CRectangle& r : rects) {
      T mn = px<T>(250), mx = px<T>(250);
      if (r == e) p.calcMinMax(mn, mx);
      else p.calcMinMax(mn, mx, r);
      CRectangle a = r;
      if (a.AndRectangle(e)) {
        EXPECT_TRUE(same(mn, px<T>(250)) && same(mx, px<T>(250)));
        continue;
      }
      T rmn = p[a.iFirstLine][a.iFirstColumn], rmx = rmn;
      for (int l = a.iFirstLine; l <= a.iLastLine; ++l)
        for (int c = a.iFirstColumn; c <= a.iLastColumn; ++c) naiveFold(p, l, c, rmn, rmx);
      EXPECT_TRUE(same(mn, rmn)) << show(mn) << " vs " << show(rmn);
      EXPECT_TRUE(same(mx, rmx)) << show(mx) << " vs " << show(rmx);
    }
    EXPECT_TRUE(w.quiet());
  }
}

TYPED_TEST(PlaneOps, MinMaxOutsideOrOnNothingLeavesTheArguments) {
  using T = TypeParam;
  TPlane<T> p(4, 4, -2, -2, 4);
  fill(p, 13);
  T mn = px<T>(1), mx = px<T>(2);
  p.calcMinMax(mn, mx, CRectangle(2, 5, -2, 1));   // below the plane
  p.calcMinMax(mn, mx, CRectangle(-2, 1, 2, 3));   // right of it
  p.calcMinMax(mn, mx, CRectangle(1, -2, -2, 1));  // ill-formed
  p.calcMinMax(mn, mx, 10, 0, 5);                  // a disc right of it
  p.calcMinMax(mn, mx, 0, -2000000000L, 1000UL);   // far above
  p.calcMinMax(mn, mx, std::numeric_limits<long>::min(), std::numeric_limits<long>::max(), ~0UL / 4);
  TPlane<T> invalid;
  invalid.calcMinMax(mn, mx);
  invalid.calcMinMax(mn, mx, CRectangle(0, 0, 0, 0));
  invalid.calcMinMax(mn, mx, 0, 0, 1);
  EXPECT_TRUE(same(mn, px<T>(1)));
  EXPECT_TRUE(same(mx, px<T>(2)));

  // Far away with a radius past 32 bits, the root past 2^53: the disc still
  // covers the whole plane.
  T wmn, wmx;
  p.calcMinMax(wmn, wmx);
  p.calcMinMax(mn, mx, 0, -2000000000L, 3000000000UL);
  EXPECT_TRUE(same(mn, wmn) && same(mx, wmx));
}

// The disc as written: the cut square, its middle pixel as start, per line
// the half width from the root, here checked for every pixel of the plane.
template <class T>
void naiveDisc(const TPlane<T>& p, long x, long y, unsigned long radius, T& mn, T& mx, int& count) {
  const long r = radius < 1 ? 1 : static_cast<long>(radius);
  const long l1 = std::max<long>(y - r, p.getFirstLine()), l2 = std::min<long>(y + r, p.getLastLine());
  const long c1 = std::max<long>(x - r, p.getFirstColumn()), c2 = std::min<long>(x + r, p.getLastColumn());
  count = 0;
  if (l1 > l2 || c1 > c2) return;
  mn = mx = p[static_cast<int>((l1 + l2) / 2)][static_cast<int>((c1 + c2) / 2)];
  for (long l = l1; l <= l2; ++l) {
    const long d = r * r - (l - y) * (l - y);
    const long w = d <= 0 ? 0 : static_cast<long>(std::sqrt(static_cast<double>(d)) + 0.5);
    for (long c = c1; c <= c2; ++c)
      if (c >= x - w && c <= x + w) {
        naiveFold(p, static_cast<int>(l), static_cast<int>(c), mn, mx);
        ++count;
      }
  }
}

TYPED_TEST(PlaneOps, MinMaxOverDiscs) {
  using T = TypeParam;
  TPlane<T> p(23, 19, -7, 4, 19);
  fill(p, 14);
  int checked = 0;
  for (unsigned long radius : {0UL, 1UL, 2UL, 3UL, 5UL, 8UL, 13UL, 40UL})
    for (long y = -10; y <= 18; y += 3)
      for (long x = 0; x <= 26; x += 4) {
        T mn = px<T>(255), mx = px<T>(255), rmn = mn, rmx = mx;
        int count = 0;
        p.calcMinMax(mn, mx, x, y, radius);
        naiveDisc(p, x, y, radius, rmn, rmx, count);
        ASSERT_TRUE(same(mn, rmn) && same(mx, rmx)) << "x " << x << " y " << y << " r " << radius;
        checked += count > 0;
      }
  EXPECT_GT(checked, 300);
}

TEST(PlaneOpsMinMax, DiscOfRadiusZeroAndOneIsTheCross) {
  // Marks around (x, y) = (5, 4): the cross holds 10..14, the corners hold
  // extreme values that must stay unseen.
  for (unsigned long radius : {0UL, 1UL}) {
    TPlane<int> p(9, 11);
    p.setRectangle(12);
    p[3][4] = p[3][6] = p[5][4] = p[5][6] = -1000;  // corners of the 3x3
    p[2][5] = p[6][5] = 1000;                         // two lines away
    p[4][4] = 10;
    p[4][6] = 14;
    p[3][5] = 11;
    p[5][5] = 13;
    int mn = 0, mx = 0;
    p.calcMinMax(mn, mx, 5, 4, radius);
    EXPECT_EQ(mn, 10) << radius;
    EXPECT_EQ(mx, 14) << radius;
  }
  // Radius 2: the corners of the 3x3 are in (d = 3, w = 2), the line two away
  // only at the centre column (d = 0).
  TPlane<int> p(9, 11);
  p[4][3] = -5;
  p[6][5] = 7;
  p[6][4] = 99;
  int mn = 1, mx = 1;
  p.calcMinMax(mn, mx, 5, 4, 2);
  EXPECT_EQ(mn, -5);
  EXPECT_EQ(mx, 7);
}

TEST(PlaneOpsMinMax, FloatNaNIsPassedOverUnlessTheFoldStartsOnIt) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  TPlane<float> f(3, 37);
  fill(f, 15);
  f[1][5] = f[2][36] = nan;
  float a = 0, b = 0;
  f.calcMinMax(a, b);
  float ra = f[0][0], rb = ra;
  for (int l = 0; l < 3; ++l)
    for (int c = 0; c < 37; ++c) naiveFold(f, l, c, ra, rb);
  EXPECT_EQ(a, ra);
  EXPECT_EQ(b, rb);
  EXPECT_FALSE(std::isnan(a) || std::isnan(b));
  f[0][0] = nan;
  f.calcMinMax(a, b);
  EXPECT_TRUE(std::isnan(a) && std::isnan(b));
}

// ------------------------------------------------------------ scaleDown

template <class T>
T naiveMean(const TPlane<T>& s, int l0, int c0, int iY, int iX) {
  const int n = iY * iX;
  T out{};
  if constexpr (std::is_same_v<T, float>) {
    float sum = 0;
    for (int l = l0; l < l0 + iY; ++l)
      for (int c = c0; c < c0 + iX; ++c) sum += s[l][c];
    out = sum / static_cast<float>(n);
  } else if constexpr (std::is_same_v<T, TRGBFloatPixel>) {
    float r = 0, g = 0, b = 0;
    for (int l = l0; l < l0 + iY; ++l)
      for (int c = c0; c < c0 + iX; ++c) r += s[l][c].r, g += s[l][c].g, b += s[l][c].b;
    out.set(r / n, g / n, b / n);
  } else {
    double sum = 0;
    for (int l = l0; l < l0 + iY; ++l)
      for (int c = c0; c < c0 + iX; ++c) sum += static_cast<double>(s[l][c]);
    if constexpr (std::is_same_v<T, TRGBPixel>) out = kx::truncLow<unsigned char>(sum / n);
    else out = kx::truncLow<T>(sum / n);
  }
  return out;
}

TYPED_TEST(PlaneOps, ScaleDownMatchesTheReference) {
  using T = TypeParam;
  struct Case {
    Shape s;
    int iY, iX;
  };
  const Case cases[] = {{{5, 5, 0, 0}, 2, 2},   {{7, 9, -3, 2}, 3, 2},  {{7, 9, -3, 2}, 1, 4}, {{6, 8, 5, -9}, 2, 1},
                        {{1, 13, 0, 0}, 1, 3},  {{11, 1, 2, 2}, 5, 1}, {{4, 4, 0, 0}, 4, 4},  {{9, 10, 0, 0}, 9, 5},
                        {{1, 1, -1, -1}, 1, 1}, {{8, 40, 0, 0}, 2, 2}, {{8, 40, 0, 0}, 2, 7}};
  for (const Case& k : cases) {
    SCOPED_TRACE(::testing::Message() << k.s.lines << "x" << k.s.columns << " by " << k.iY << "x" << k.iX);
    TPlane<T> src(k.s.lines, k.s.columns, k.s.firstLine, k.s.firstColumn, k.s.columns + 2);
    fill(src, 16);
    const int rl = k.s.lines / k.iY, rc = k.s.columns / k.iX;

    // With alloc: a fresh plane of the result's size from (0, 0).
    TPlane<T> dst;
    Watch w(dst);
    dst.scaleDown(src, k.iY, k.iX, true);
    Model<T> m(0, 0, rl, rc);
    for (int i = 0; i < rl; ++i)
      for (int j = 0; j < rc; ++j)
        m.at(i, j) = naiveMean(src, src.getFirstLine() + i * k.iY, src.getFirstColumn() + j * k.iX, k.iY, k.iX);
    EXPECT_TRUE(equals(dst, m));
    EXPECT_EQ(w.rec.codes.back(), 51UL);

    // Without alloc into a larger plane numbered elsewhere: from its first
    // line and column, the rest untouched.
    TPlane<T> big(rl + 2, rc + 1, -4, 7, rc + 1);
    fill(big, 17);
    Model<T> mb = modelOf(big);
    for (int i = 0; i < rl; ++i)
      for (int j = 0; j < rc; ++j) mb.at(-4 + i, 7 + j) = m.at(i, j);
    Watch wb(big);
    big.scaleDown(src, k.iY, k.iX, false);
    EXPECT_TRUE(equals(big, mb));
    EXPECT_TRUE(wb.wrote());
    big.scaleDown(src, k.iY, k.iX, true);  // another size: reallocated
    EXPECT_TRUE(equals(big, m));
  }
}

TYPED_TEST(PlaneOps, ScaleDownChecksInOrder) {
  using T = TypeParam;
  TPlane<T> src(6, 4, 3, 3, 4), dst(2, 2);
  const struct {
    int iY, iX;
    bool alloc;
    unsigned long code;
    const char* text;
  } rows[] = {{0, 0, true, Err::ulScaleDownBlockLines, "_iY=0 <= 0"},
              {1, -3, true, Err::ulScaleDownBlockColumns, "_iX=-3 <= 0"},
              {7, 9, true, Err::ulScaleDownBlockTooHigh, "_iY=7 > Lines=6"},
              {6, 5, true, Err::ulScaleDownBlockTooWide, "_iX=5 > Columns=4"},
              {2, 1, false, Err::ulScaleDownTargetLines, "iLines=3 > Lines=2"},
              {3, 1, false, Err::ulScaleDownTargetColumns, "iColumns=4 > Columns=2"}};
  for (const auto& r : rows)
    EXPECT_EQ(errorOf([&] { dst.scaleDown(src, r.iY, r.iX, r.alloc); }), std::make_pair(r.code, std::string(r.text)));
  TPlane<T> invalid;
  EXPECT_EQ(codeOf([&] { dst.scaleDown(invalid, 1, 1, true); }), Err::ulScaleDownBlockTooHigh);
  EXPECT_EQ(codeOf([&] { invalid.scaleDown(src, 1, 1, false); }), Err::ulScaleDownTargetLines);
  EXPECT_EQ(dst.getLines(), 2);  // a failed check reallocated nothing

  // Into itself: with reallocation from a copy, without in place.
  TPlane<T> self(4, 6, -1, 0, 6);
  fill(self, 18);
  const T expected = naiveMean(self, 1, 2, 2, 2);
  TPlane<T> reference;
  reference.scaleDown(self, 2, 2, true);
  self.scaleDown(self, 2, 2, true);
  Model<T> m = modelOf(reference);
  EXPECT_TRUE(equals(self, m));
  EXPECT_TRUE(same(self[1][1], expected));
  TPlane<T> inplace(4, 6);
  fill(inplace, 19);
  Model<T> mi = modelOf(inplace);
  inplace.scaleDown(inplace, 2, 3, false);
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 2; ++j) {
      TPlane<T> block(2, 3);
      for (int l = 0; l < 2; ++l)
        for (int c = 0; c < 3; ++c) block[l][c] = mi.at(2 * i + l, 3 * j + c);
      mi.at(i, j) = naiveMean(block, 0, 0, 2, 3);
    }
  EXPECT_TRUE(equals(inplace, mi));
}

TEST(PlaneOpsScaleDown, ByteColourBecomesGreyWrappedLuminance) {
  TPlane<TRGBPixel> p(2, 4);
  for (int l = 0; l < 2; ++l)
    for (int c = 0; c < 4; ++c) c < 2 ? p[l][c].set(255, 255, 255) : p[l][c].set(10, 20, 30);
  TPlane<TRGBPixel> r;
  r.scaleDown(p, 2, 2, true);
  // White: luminance 1440.954, truncated 1440, low eight bits 160;
  // 10 + 4.5907 * 20 + 0.0601 * 30 = 103.617.
  EXPECT_EQ(r[0][0], rastrixtest::rgb(160, 160, 160));
  EXPECT_EQ(r[0][1], rastrixtest::rgb(103, 103, 103));
}

// ------------------------------------------------------------ arithmetic

TEST(PlaneOpsArithmetic, PixelWiseWithEqualFirstColumns) {
  // Different first lines: the lines both have; divisors of +0 and -0.
  TPlane<float> a(6, 37, -2, 3, 40), b(5, 37, 0, 3, 37);
  fill(a, 20);
  fill(b, 21);
  b[1][10] = 0.0f;
  b[2][3] = -0.0f;
  b[3][39] = 0.0f;
  a[1][11] = 0.0f;
  Model<float> ma = modelOf(a);
  Model<float> expected = ma;
  for (int l = 0; l <= 3; ++l)
    for (int c = 3; c <= 39; ++c) expected.at(l, c) = b[l][c] == 0.0f ? 0.0f : ma.at(l, c) / b[l][c];
  Watch w(a);
  a /= b;
  EXPECT_TRUE(equals(a, expected));
  EXPECT_TRUE(w.wrote());
  EXPECT_EQ(a[1][10], 0.0f);
  EXPECT_FALSE(std::signbit(a[2][3]));  // zero, not -0 or an infinity
  for (int l = 0; l <= 3; ++l)
    for (int c = 3; c <= 39; ++c) ASSERT_TRUE(std::isfinite(a[l][c]));

  Model<float> m2 = modelOf(a);
  for (int l = 0; l <= 3; ++l)
    for (int c = 3; c <= 39; ++c) m2.at(l, c) = m2.at(l, c) * b[l][c];
  a *= b;
  EXPECT_TRUE(equals(a, m2));
  EXPECT_TRUE(w.wrote());

  // A plane by itself, and by a plane of zeros.
  TPlane<float> s(3, 5);
  fill(s, 22);
  Model<float> ms = modelOf(s);
  for (float& x : ms.v) x = x * x;
  s *= s;
  EXPECT_TRUE(equals(s, ms));
}

TEST(PlaneOpsArithmetic, DifferentFirstColumnsKeepTheirOddPairing) {
  // This plane right of the other: both pointers at this plane's first
  // column, count = width of the intersection: columns 2..5 of both.
  TPlane<float> a(1, 6, 0, 2, 6), b(1, 6, 0, 0, 6);
  for (int c = 2; c <= 7; ++c) a[0][c] = static_cast<float>(c);
  for (int c = 0; c <= 5; ++c) b[0][c] = 10.0f * c;
  a *= b;
  const float after1[] = {2 * 20.0f, 3 * 30.0f, 4 * 40.0f, 5 * 50.0f, 6, 7};
  for (int c = 2; c <= 7; ++c) EXPECT_EQ(a[0][c], after1[c - 2]) << c;

  // This plane left of the other: the loop starts at this plane's first
  // column and runs intersection-width long (columns 0..3), of which only
  // 2..3 exist in the other plane; 0..1 stay as they are.
  TPlane<float> c(1, 6, 0, 0, 6), d(1, 6, 0, 2, 6);
  for (int k = 0; k <= 5; ++k) c[0][k] = static_cast<float>(k + 1);
  for (int k = 2; k <= 7; ++k) d[0][k] = 2.0f;
  c /= d;
  const float after2[] = {1, 2, 1.5f, 2, 5, 6};
  for (int k = 0; k <= 5; ++k) EXPECT_EQ(c[0][k], after2[k]) << k;

  // No overlap at all, or invalid planes: nothing happens, nothing is raised.
  TPlane<float> far(2, 2, 50, 50, 2), invalid;
  fill(far, 23);
  Model<float> mf = modelOf(far);
  far *= c;
  far /= invalid;
  invalid *= far;
  invalid /= far;
  invalid *= 2.0f;
  EXPECT_TRUE(equals(far, mf));
}

TEST(PlaneOpsArithmetic, TimesAValue) {
  TPlane<TRGBFloatPixel> c(2, 3, 5, 5, 3);
  fill(c, 25);
  Model<TRGBFloatPixel> mc = modelOf(c);
  const TRGBFloatPixel v = rastrixtest::rgbf(2.0f, 0.5f, -1.0f);
  for (TRGBFloatPixel& x : mc.v) x.set(x.r * 2.0f, x.g * 0.5f, x.b * -1.0f);
  Watch w(c);
  c *= v;
  EXPECT_TRUE(equals(c, mc));
  EXPECT_TRUE(w.wrote());
  TPlane<float> f(4, 19, -1, -1, 20);
  fill(f, 24);
  Model<float> m = modelOf(f);
  for (float& x : m.v) x *= -2.5f;
  f *= -2.5f;
  EXPECT_TRUE(equals(f, m));
}

// ------------------------------------------------------------ the lock

TEST(PlaneOpsLock, WritersWaitForTheLockOperatorsAndReadersDoNot) {
  TPlane<float> p(3, 3), q(3, 3);
  p.setRectangle(1.0f);
  q.setRectangle(2.0f);
  p.lock();
  // Operators and readers run through although the plane is locked.
  auto unlocked = std::async(std::launch::async, [&] {
    p *= q;
    p /= q;
    p *= 3.0f;
    float mn = 0, mx = 0;
    p.calcMinMax(mn, mx);
    float line[3];
    p.getLine(line, 0);
    p.getColumn(line, 0);
    return mx;
  });
  const bool done = unlocked.wait_for(std::chrono::seconds(20)) == std::future_status::ready;
  EXPECT_TRUE(done);
  if (!done) p.unlock();
  EXPECT_EQ(unlocked.get(), 3.0f);

  // A writer waits until the lock is given back.
  auto writer = std::async(std::launch::async, [&] { p.setRectangle(9.0f); });
  EXPECT_EQ(writer.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_EQ(p[1][1], 3.0f);
  p.unlock();
  writer.get();
  EXPECT_EQ(p[1][1], 9.0f);
  EXPECT_FALSE(p.isLock());
}

}  // namespace

// Sources that live in the destination's own memory: a view of the
// destination, or the destination's parent.
TYPED_TEST(PlaneOps, SourcesInTheDestinationsMemory) {
  using T = TypeParam;
  // scaleDown from a view of this plane, with reallocation: the view's pixels
  // are read before the block they live in is released.
  TPlane<T> dst(8, 8, 2, -1, 8);
  fill(dst, 21);
  TPlane<T> view;
  view.beSubPicture(dst, CRectangle(4, 7, 1, 6));
  TPlane<T> reference;
  reference.scaleDown(view, 2, 3, true);
  dst.scaleDown(view, 2, 3, true);
  Model<T> mr = modelOf(reference);
  EXPECT_TRUE(equals(dst, mr));

  // A view shrinking its parent into itself: the parent stays whole.
  TPlane<T> parent(6, 6);
  fill(parent, 22);
  TPlane<T> part;
  part.beSubPicture(parent, CRectangle(0, 3, 0, 3));
  TPlane<T> expectedPart;
  expectedPart.scaleDown(parent, 3, 3, true);
  part.scaleDown(parent, 3, 3, true);
  Model<T> mp = modelOf(expectedPart);
  EXPECT_TRUE(equals(part, mp));

  // insert from a view of the same block that lies above and left of the
  // target: every line is the source's line as it was before the copy.
  TPlane<T> pic(9, 7);
  fill(pic, 23);
  Model<T> before = modelOf(pic);
  TPlane<T> upper;
  upper.beSubPicture(pic, CRectangle(0, 5, 0, 4));
  pic.insert(upper, 0, 5, 0, 4, 2, 1);
  Model<T> m = before;
  for (int l = 0; l <= 5; ++l)
    for (int c = 0; c <= 4; ++c) m.at(l + 2, c + 1) = before.at(l, c);
  EXPECT_TRUE(equals(pic, m));
  // and the other way, target above the source
  TPlane<T> lower;
  lower.beSubPicture(pic, CRectangle(3, 8, 2, 6));
  Model<T> mid = modelOf(pic);
  pic.insert(lower, 3, 8, 2, 6, 0, 0);
  Model<T> m2 = mid;
  for (int l = 0; l <= 5; ++l)
    for (int c = 0; c <= 4; ++c) m2.at(l, c) = mid.at(l + 3, c + 2);
  EXPECT_TRUE(equals(pic, m2));
}
