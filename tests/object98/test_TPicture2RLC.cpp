#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "RLCTestUtil.h"
#include "kxexception/TDelivery.h"
#include "object98/TPicture2RLC.h"
#include "object98/TRLC2Picture.h"
#include "rastrix/RastrixErrors.h"

using namespace rlctest;
using Rastrix::TPlane;

namespace {

class TRec : public TDelivery {
 public:
  explicit TRec(TDelivery* s) { vConnectSender(s); }
  bool bReceiveMessage(const TDelivery* s, unsigned long a, unsigned long) override {
    if (!bIsSender(s)) return false;
    codes.push_back(a);
    return true;
  }
  std::vector<unsigned long> codes;
};

// The runs of the pixels of line y for which `in(column)` holds, naively.
template <class F>
Runs naiveRuns(int c0, int c1, F&& in) {
  Runs r;
  for (int c = c0; c <= c1; ++c) {
    if (!in(c)) continue;
    int e = c;
    while (e + 1 <= c1 && in(e + 1)) ++e;
    r.emplace_back(c, e);
    c = e;
  }
  return r;
}

// What a region found in a picture must be: the tight line box, the columns
// of its runs, and every line as the naive scan gives it.
template <class F>
void expectRegion(const TRLCArray& got, int l0, int l1, int c0, int c1, F&& in, const char* what) {
  int fl = 1 << 30, ll = -(1 << 30), fc = 32767, lc = -32767;
  std::vector<Runs> lines;
  for (int y = l0; y <= l1; ++y) {
    Runs r = naiveRuns(c0, c1, [&](int c) { return in(y, c); });
    lines.push_back(r);
    if (!r.empty()) {
      fl = std::min(fl, y);
      ll = std::max(ll, y);
      fc = std::min(fc, r.front().FirstColumn);
      lc = std::max(lc, r.back().LastColumn);
    }
  }
  if (ll < fl) {
    EXPECT_EQ(got.size(), 0) << what;
    return;
  }
  ASSERT_EQ(boxOf(got), (Box{fl, ll, fc, lc})) << what;
  for (int y = fl; y <= ll; ++y) ASSERT_EQ(runsOf(got[y]), lines[y - l0]) << what << " line " << y;
}

TEST(TPicture2RLC, Transform256MatchesANaiveScan) {
  std::mt19937 g(17);
  for (int round = 0; round < 40; ++round) {
    const int lines = 1 + int(g() % 12), cols = 1 + int(g() % 40);
    const int l0 = int(g() % 20) - 10, c0 = int(g() % 20) - 10;
    TPlane<unsigned char> p(lines, cols, l0, c0, cols + int(g() % 3));
    const int spread = 1 + int(g() % 6);
    for (int y = l0; y < l0 + lines; ++y)
      for (int c = c0; c < c0 + cols; ++c) p[y][c] = static_cast<unsigned char>(3 + g() % static_cast<unsigned>(spread));
    const unsigned char lower = static_cast<unsigned char>(g() % 6), upper = static_cast<unsigned char>(2 + g() % 8);
    std::vector<TRLCArray> v;
    TPicture2RLC::vTransform256(p, v, upper, lower);
    unsigned char mn, mx;
    p.calcMinMax(mn, mx);
    const int up = std::min<int>(upper, mx), lo = std::max<int>(lower, mn);
    ASSERT_EQ(v.size(), up + 1);
    for (int k = 0; k <= up; ++k)  // below the lower bound: entries without pixels
      expectRegion(v[k], l0, l0 + lines - 1, c0, c0 + cols - 1,
                   [&](int y, int c) { return k >= lo && p[y][c] == k; }, "value");
  }
}

TEST(TPicture2RLC, Transform256OfAConstantPlaneAndBoundsNarrowedToThePlane) {
  TPlane<unsigned char> c(4, 5);
  c.setRectangle(7);
  std::vector<TRLCArray> v(3);
  TPicture2RLC::vTransform256(c, v, 255, 0);
  ASSERT_EQ(v.size(), 8u);
  for (int i = 0; i < 7; ++i) EXPECT_EQ(v[i].size(), 0) << i;
  EXPECT_EQ(boxOf(v[7]), (Box{0, 3, 0, 4}));
  EXPECT_EQ(v[7].pixel(), 20);
  TPlane<unsigned char> p(2, 2);
  p.setRectangle(9);
  p[1][1] = 12;
  TPicture2RLC::vTransform256(p, v, 200, 10);  // lower 10 > min 9: value 9 is not made
  ASSERT_EQ(v.size(), 13u);
  EXPECT_EQ(v[9].size(), 0);
  EXPECT_EQ(v[12].pixel(), 1);
  TPicture2RLC::vTransform256(p, v, 5, 0);  // upper 5 < min: nothing but the entries
  EXPECT_EQ(v.size(), 6u);
  for (const TRLCArray& r : v) EXPECT_EQ(r.size(), 0);
  TPlane<unsigned char> none;
  EXPECT_EQ(codeOf([&] { TPicture2RLC::vTransform256(none, v, 255, 0); }), Rastrix::Err::ulPlaneNotValid);
}

TEST(TPicture2RLC, FloatPictureMatchesANaiveScan) {
  std::mt19937 g(23);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (int round = 0; round < 60; ++round) {
    const int lines = 1 + int(g() % 9), cols = 1 + int(g() % 70);
    const int l0 = int(g() % 30) - 15, c0 = int(g() % 30) - 15;
    TPlane<float> p(lines, cols, l0, c0, cols);
    for (int y = l0; y < l0 + lines; ++y)
      for (int c = c0; c < c0 + cols; ++c) {
        const unsigned k = g() % 40;
        p[y][c] = k == 0 ? nan : static_cast<float>(k) / 4.0f;  // long runs and gaps, some NaN
      }
    const float lower = static_cast<float>(g() % 20) / 4.0f, upper = lower + static_cast<float>(g() % 30) / 4.0f;
    TRLCArray r;
    TPicture2RLC::vFloatPicture2RLC(p, r, lower, upper);
    expectRegion(r, l0, l0 + lines - 1, c0, c0 + cols - 1,
                 [&](int y, int c) { return lower <= p[y][c] && p[y][c] <= upper; }, "float");
  }
}

TEST(TPicture2RLC, FloatPictureWithNothingInsideLeavesTheResult) {
  TPlane<float> p(3, 3);
  p.setRectangle(1.0f);
  TRLCArray r(TOPointList<int>(ePoint, {{40, 50}}));
  TPicture2RLC::vFloatPicture2RLC(p, r, 2.0f, 3.0f);
  EXPECT_EQ(boxOf(r), (Box{50, 50, 40, 40}));
  TPicture2RLC::vFloatPicture2RLC(TPlane<float>(), r, 0.0f, 3.0f);
  EXPECT_EQ(r.pixel(), 1);
  // A view keeps the numbers of its source.
  TPlane<float> big(10, 10, -5, -5, 10);
  big.setRectangle(0.0f);
  big[0][0] = 1.0f;
  TPlane<float> view;
  view.beSubPicture(big, CRectangle(-2, 2, -1, 3));
  TPicture2RLC::vFloatPicture2RLC(view, r, 0.5f, 1.5f);
  EXPECT_EQ(boxOf(r), (Box{0, 0, 0, 0}));
}

TEST(TPicture2RLC, RegionToFloatPictureClipsAndStamps) {
  TPlane<float> p(4, 6, 10, 20, 6);
  TRec rec(&p);
  const auto before = p.getTimeStamp();
  const TRLCArray region = makeArray(8, 15, 30, {{{15, 30}}, {}, {{15, 21}, {24, 40}}, {{22, 22}}});
  TPicture2RLC::vRLC2FloatPicture(region, p, 5.0f, -1.0f);
  for (int y = 10; y <= 13; ++y)
    for (int c = 20; c <= 25; ++c) {
      const bool in = (y == 10 && c <= 21) || (y == 10 && c >= 24) || (y == 11 && c == 22);
      EXPECT_EQ(p[y][c], in ? 5.0f : -1.0f) << y << "," << c;
    }
  EXPECT_GT(p.getTimeStamp(), before);
  EXPECT_EQ(rec.codes.back(), 51u);
  EXPECT_NE(std::find(rec.codes.begin(), rec.codes.end(), 5u), rec.codes.end());  // the date
  TPlane<float> none;
  EXPECT_EQ(codeOf([&] { TPicture2RLC::vRLC2FloatPicture(region, none, 1, 0); }), Rastrix::Err::ulPlaneNotValid);
}

// ---- TRLC2Picture ------------------------------------------------------------

template <class T>
class TypedSet : public ::testing::Test {};
using PixelTypes = ::testing::Types<unsigned char, unsigned short, float, Rastrix::TRGBPixel, Rastrix::TRGBFloatPixel, int>;
TYPED_TEST_SUITE(TypedSet, PixelTypes);

template <class T>
T valueOf(int k) {
  T v{};
  if constexpr (std::is_same_v<T, Rastrix::TRGBPixel>) {
    v.r = static_cast<unsigned char>(k);
    v.g = static_cast<unsigned char>(k + 1);
    v.b = static_cast<unsigned char>(k + 2);
  } else if constexpr (std::is_same_v<T, Rastrix::TRGBFloatPixel>) {
    v.r = static_cast<float>(k);
    v.g = static_cast<float>(k) + 0.5f;
    v.b = -static_cast<float>(k);
  } else {
    v = static_cast<T>(k);
  }
  return v;
}
template <class T>
bool same(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

TYPED_TEST(TypedSet, SetsTheRegionInsideThePlaneOnly) {
  using T = TypeParam;
  std::mt19937 g(31);
  for (int round = 0; round < 20; ++round) {
    const int lines = 1 + int(g() % 8), cols = 1 + int(g() % 12);
    const int l0 = int(g() % 10) - 5, c0 = int(g() % 10) - 5;
    TPlane<T> p(lines, cols, l0, c0, cols);
    const T zero = valueOf<T>(0), v = valueOf<T>(7);
    p.setRectangle(zero);
    // A region reaching beyond the plane on every side.
    TRLCArray region(TOPointList<int>(eCircle, {{c0 + int(g() % 12), l0 + int(g() % 8)},
                                                {c0 + int(g() % 12) + 1 + int(g() % 6), 0}}));
    TRec rec(&p);
    const auto before = p.getTimeStamp();
    TRLC2Picture(&p).vSet(v, region, &p);
    EXPECT_GT(p.getTimeStamp(), before);
    ASSERT_FALSE(rec.codes.empty());
    EXPECT_EQ(rec.codes.back(), 51u);
    for (int y = l0; y < l0 + lines; ++y)
      for (int c = c0; c < c0 + cols; ++c) {
        bool in = false;
        if (y >= region.getFirstLine() && y <= region.getLastLine())
          for (const TRLC& r : static_cast<const TRLCArray&>(region)[y]) in |= c >= r.FirstColumn && c <= r.LastColumn;
        EXPECT_TRUE(same(p[y][c], in ? v : zero)) << y << "," << c;
      }
  }
  // Outside the plane altogether, and on a plane without pixels: nothing.
  TPlane<T> p(2, 2);
  p.setRectangle(valueOf<T>(0));
  TRLC2Picture(&p).vSet(valueOf<T>(3), TRLCArray(TOPointList<int>(ePoint, {{5, 5}})), &p);
  EXPECT_TRUE(same(p[1][1], valueOf<T>(0)));
  TPlane<T> none;
  TRLC2Picture(&none).vSet(valueOf<T>(3), TRLCArray(TOPointList<int>(ePoint, {{0, 0}})), &none);
}

// The pixel at column 1 of a 1x3 plane after setting it from `text`.
template <class T>
T setFromText(const char* text) {
  TPlane<T> p(1, 3);
  p.setRectangle(T{});
  TRLC2Picture(&p).vSet(text, TRLCArray(TOPointList<int>(ePoint, {{1, 0}})));
  return p[0][1];
}
template <class T>
unsigned long codeFromText(const char* text) {
  return codeOf([&] { setFromText<T>(text); });
}

TEST(TRLC2Picture, ParsesTheValueByThePixelType) {
  using Rastrix::TRGBFloatPixel;
  using Rastrix::TRGBPixel;
  EXPECT_EQ(setFromText<unsigned char>("200"), 200);
  EXPECT_EQ(setFromText<unsigned char>("256"), 0);    // passes and is cut to 8 bits
  EXPECT_EQ(setFromText<unsigned char>("0x1f"), 31);  // "%i" reads hexadecimal
  EXPECT_EQ(setFromText<unsigned short>("65535"), 65535);
  EXPECT_EQ(setFromText<int>("-123456"), -123456);
  EXPECT_EQ(setFromText<float>(" -2.5e1"), -25.0f);
  const TRGBPixel rgb = setFromText<TRGBPixel>("300 2 1");  // red, green, blue; 300 cut to 44
  EXPECT_EQ((std::array{rgb.r, rgb.g, rgb.b}), (std::array<unsigned char, 3>{44, 2, 1}));
  const TRGBFloatPixel rgbf = setFromText<TRGBFloatPixel>("0.5 1e3 -2");
  EXPECT_EQ((std::array{rgbf.r, rgbf.g, rgbf.b}), (std::array{0.5f, 1000.0f, -2.0f}));

  const unsigned long range = object98::ulRLCValueRange, text = object98::ulRLCValueText;
  EXPECT_EQ(codeFromText<unsigned char>("257"), range);
  EXPECT_EQ(codeFromText<unsigned char>("-1"), range);
  EXPECT_EQ(codeFromText<unsigned short>("65536"), range);
  EXPECT_EQ(codeFromText<int>("99999999999"), range);
  EXPECT_EQ(codeFromText<TRGBPixel>("1 2 70000"), range);
  EXPECT_EQ(codeFromText<float>(""), text);
  EXPECT_EQ(codeFromText<float>(nullptr), text);
  EXPECT_EQ(codeFromText<TRGBFloatPixel>("1 x 2"), text);
  TLanguage::setDeutsch();
  EXPECT_NE(chainOf([] { setFromText<unsigned char>("300"); }).find("300 ausserhalb des Bereichs"), std::string::npos);
  EXPECT_NE(chainOf([] { setFromText<unsigned char>("x"); }).find("Kann nicht in Zahl konvertiert werden: x"),
            std::string::npos);
  EXPECT_NE(chainOf([] { setFromText<TRGBPixel>("1 2"); }).find("Kann nicht in Zahlen konvertiert werden: 1 2"),
            std::string::npos);

  const TRLCArray dot(TOPointList<int>(ePoint, {{1, 0}}));
  Rastrix::TPlaneBasic bare;
  EXPECT_EQ(codeOf([&] { TRLC2Picture(&bare).vSet("1", dot); }), Rastrix::Err::ulUnknownPixelTyp);
  EXPECT_EQ(codeOf([&] { TRLC2Picture(nullptr).vSet("1", dot); }), Rastrix::Err::ulUnknownPixelTyp);
}

}  // namespace
