#include <gtest/gtest.h>

#include <cmath>

#include "RLCTestUtil.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "object98/TCircle.h"
#include "object98/TRLCArray.h"

using namespace rlctest;

namespace {

TOPointList<int> pl(TOPL_Typ t, std::initializer_list<TOPoint<int>> p) { return TOPointList<int>(t, p); }

bool contains(const TRLCArray& a, int x, int y) {
  if (y < a.getFirstLine() || y > a.getLastLine()) return false;
  for (const TRLC& r : static_cast<const TRLCArray&>(a)[y])
    if (x >= r.FirstColumn && x <= r.LastColumn) return true;
  return false;
}

TEST(Rasterise, ShapesGiveTheirBoxAndLines) {
  using L = std::vector<Runs>;
  const struct {
    const char* what;
    TOPointList<int> shape;
    Box box;
    L lines;
  } cases[] = {
      {"point", pl(ePoint, {{-3, 7}}), {7, 7, -3, -3}, {{{-3, -3}}}},
      {"rectangle", pl(eRectangle, {{2, 1}, {5, 1}, {5, 3}, {2, 3}}), {1, 3, 2, 5}, L(3, Runs{{2, 5}})},
      {"square", pl(eSquare, {{0, 0}, {1, 0}, {1, 1}, {0, 1}}), {0, 1, 0, 1}, L(2, Runs{{0, 1}})},
      // A circle's radius is the x distance only: radius 1 whatever the y distance.
      {"circle, same x", pl(eCircle, {{10, 20}, {10, 90}}), {19, 21, 9, 11}, {{{10, 10}}, {{9, 11}}, {{10, 10}}}},
      // r = 3: half widths 0, trunc(sqrt(5)+.5)=2, trunc(sqrt(8)+.5)=3, 3, 3, 2, 0.
      {"circle r=3", pl(eCircle, {{0, 0}, {-3, 100}}), {-3, 3, -3, 3},
       {{{0, 0}}, {{-2, 2}}, {{-3, 3}}, {{-3, 3}}, {{-3, 3}}, {{-2, 2}}, {{0, 0}}}},
      {"line, equal ends", pl(eLine, {{4, 4}, {4, 4}}), {4, 4, 4, 4}, {{{4, 4}}}},
      {"horizontal line", pl(eLine, {{9, 2}, {3, 2}}), {2, 2, 3, 9}, {{{3, 9}}}},
      {"vertical line", pl(eLine, {{5, 4}, {5, 1}}), {1, 4, 5, 5}, L(4, Runs{{5, 5}})},
      // Steep: x = MulDiv(i, dx, dy) + x0, rounded to nearest with halves away from zero.
      {"steep line", pl(eLine, {{0, 0}, {3, 7}}), {0, 7, 0, 3},
       {{{0, 0}}, {{0, 0}}, {{1, 1}}, {{1, 1}}, {{2, 2}}, {{2, 2}}, {{3, 3}}, {{3, 3}}}},
      {"steep, half up", pl(eLine, {{0, 0}, {1, 2}}), {0, 2, 0, 1}, {{{0, 0}}, {{1, 1}}, {{1, 1}}}},
      {"steep, ordered by y", pl(eLine, {{0, 2}, {-1, 0}}), {0, 2, -1, 0}, {{{-1, -1}}, {{0, 0}}, {{0, 0}}}},
      {"steep, -0.5 to -1", pl(eLine, {{0, 0}, {-1, 2}}), {0, 2, -1, 0}, {{{0, 0}}, {{-1, -1}}, {{-1, -1}}}},
      // Flat, step 5: first (0, cut(2.5)), middle (cut(2.5), cut(7.5)), last (cut(7.5), 10).
      {"flat line", pl(eLine, {{0, 0}, {10, 2}}), {0, 2, 0, 10}, {{{0, 3}}, {{3, 8}}, {{8, 10}}}},
      {"flat line, falling", pl(eLine, {{10, 0}, {0, 2}}), {0, 2, 0, 10}, {{{8, 10}}, {{3, 8}}, {{0, 3}}}},
      {"45 degrees is flat", pl(eLine, {{0, 0}, {3, 3}}), {0, 3, 0, 3}, {{{0, 1}}, {{1, 2}}, {{2, 3}}, {{3, 3}}}},
      {"polyline", pl(ePolyline, {{0, 0}, {0, 3}, {4, 3}}), {0, 3, 0, 4}, {{{0, 0}}, {{0, 0}}, {{0, 0}}, {{0, 4}}}},
      // Polygon edges own only their lower ends: the top line has no run.
      {"triangle, single top", pl(ePolygon, {{5, 0}, {10, 5}, {0, 5}}), {0, 5, 0, 10},
       {{}, {{4, 6}}, {{3, 7}}, {{2, 8}}, {{1, 9}}, {{0, 10}}}},
      {"triangle, flat top", pl(ePolygon, {{0, 0}, {10, 0}, {5, 5}}), {0, 5, 0, 10},
       {{}, {{1, 9}}, {{2, 8}}, {{3, 7}}, {{4, 6}}, {{5, 5}}}},
      {"polygon rectangle", pl(ePolygon, {{0, 0}, {10, 0}, {10, 5}, {0, 5}}), {0, 5, 0, 10},
       L{{}, {{0, 10}}, {{0, 10}}, {{0, 10}}, {{0, 10}}, {{0, 10}}}},
  };
  for (const auto& c : cases) {
    const TRLCArray a(c.shape);
    EXPECT_EQ(boxOf(a), c.box) << c.what;
    EXPECT_EQ(linesOf(a), c.lines) << c.what;
  }
  // The four-corner types go through the polygon rasteriser as well.
  TRLCArray h(pl(eHTrapezium, {{2, 0}, {8, 0}, {10, 4}, {0, 4}}));
  EXPECT_EQ(h[0].getSize(), 0);
  EXPECT_EQ(runsOf(h[4]), (Runs{{0, 10}}));
  TRLCArray pg(pl(eParallelogram, {{0, 0}, {6, 0}, {8, 2}, {2, 2}}));
  EXPECT_EQ(runsOf(pg[2]), (Runs{{2, 8}}));
}

TEST(Rasterise, LargeCircleIsSymmetricAndRound) {
  const TRLCArray c(pl(eCircle, {{100, -50}, {137, -40}}));
  ASSERT_EQ(boxOf(c), (Box{-87, -13, 63, 137}));
  int previous = -1;
  for (int dy = 37; dy >= 0; --dy) {
    const Runs up = runsOf(c[-50 - dy]), down = runsOf(c[-50 + dy]);
    ASSERT_EQ(up.size(), 1u) << dy;
    EXPECT_EQ(up, down) << dy;
    const int half = up[0].LastColumn - 100;
    EXPECT_EQ(up[0].FirstColumn, 100 - half) << dy;
    EXPECT_GE(half, previous) << dy;  // widening towards the centre
    EXPECT_LE(std::abs(half * half + dy * dy - 37 * 37), 2 * 37) << dy;  // on the circle to half a pixel
    previous = half;
  }
  EXPECT_EQ(TCircle<int>(0, 0, 0).getRadius(), 1);
  EXPECT_EQ(TCircle<int>(0, 0, 5).getDiffX(6), -1);
}

TEST(Rasterise, SelfCrossingPolygonHasHoles) {
  // A pentagram: even-odd pairing leaves the centre pentagon empty.
  TRLCArray star(pl(ePolygon, {{50, 0}, {79, 90}, {2, 35}, {98, 35}, {21, 90}}));
  EXPECT_FALSE(contains(star, 50, 50));  // centre
  EXPECT_TRUE(contains(star, 50, 20));   // top arm
  EXPECT_TRUE(contains(star, 10, 37));   // left arm
  EXPECT_TRUE(contains(star, 75, 80));   // lower right arm
  // A bow tie: the two triangles meet, no hole, and nothing outside.
  TRLCArray bow(pl(ePolygon, {{0, 0}, {20, 20}, {20, 0}, {0, 20}}));
  EXPECT_TRUE(contains(bow, 10, 10));
  EXPECT_TRUE(contains(bow, 3, 10));
  EXPECT_FALSE(contains(bow, 10, 3));
  EXPECT_FALSE(contains(bow, 10, 17));
}

TEST(Rasterise, PolygonWithoutCrossingsKeepsItsBoxAndNoLines) {
  TRLCArray a(pl(ePolygon, {{0, 3}, {5, 3}, {9, 3}}));
  EXPECT_EQ(boxOf(a), (Box{3, 3, 0, 9}));
  EXPECT_EQ(a.pixel(), 0);
  const TRLCLine* shared = &static_cast<const TRLCArray&>(a)[3];
  EXPECT_EQ(shared->getSize(), 0);
  const TRLCArray other(pl(ePolygon, {{7, 7}}));
  EXPECT_EQ(&other[7], shared);  // one empty line for all
  // Copies and operators treat the missing lines as empty ones.
  TRLCArray copy(a);
  EXPECT_NE(&static_cast<const TRLCArray&>(copy)[3], shared);
  a |= TRLCArray(pl(ePoint, {{4, 3}}));
  EXPECT_EQ(runsOf(a[3]), (Runs{{4, 4}}));
}

TEST(Rasterise, DispatchAndErrors) {
  TRLCArray a(pl(eRectangle, {{0, 0}, {1, 0}, {1, 1}, {0, 1}}));
  const struct {
    TOPointList<int> shape;
    unsigned long code;
  } cases[] = {{pl(eEllipse, {{0, 0}, {5, 5}}), object98::ulRLCTypeNotImplemented},
               {pl(eOrGroup, {{0, 0}}), object98::ulRLCTypeNotImplemented},
               {pl(eXorGroup, {{0, 0}}), object98::ulRLCTypeNotImplemented},
               {pl(eAndGroup, {{0, 0}}), object98::ulRLCTypeNotImplemented},
               {pl(static_cast<TOPL_Typ>(99), {{0, 0}}), object98::ulRLCTypeNotImplemented},
               {pl(ePoint, {{0, 0}, {1, 1}}), object98::ulRLCPointCount},
               {pl(eCircle, {{0, 0}}), object98::ulRLCTooFewPoints},
               {pl(eRectangle, {{0, 0}, {1, 0}, {1, 1}}), object98::ulRLCTooFewPoints},
               {pl(ePolyline, {{0, 0}}), object98::ulRLCTooFewPoints},
               {pl(ePolygon, {}), object98::ulRLCTooFewPoints},
               {pl(eLine, {{0, 0}, {1 << 30, 0}}), object98::ulRLCCoordinateRange}};
  for (const auto& c : cases) {
    a = pl(ePoint, {{1, 1}});
    EXPECT_EQ(codeOf([&] { a.calcRLC(c.shape); }), c.code) << int(c.shape.eGetTyp());
    EXPECT_EQ(a.size(), 0);  // a failed rasteriser leaves the empty array
  }
  TLanguage::setEnglisch();
  EXPECT_NE(chainOf([&] { a.calcRLC(pl(eEllipse, {})); }).find("not implemented for this type"), std::string::npos);
  EXPECT_NE(chainOf([&] { a.calcRLC(pl(ePoint, {})); }).find("only for Count=1 implemented"), std::string::npos);
  TLanguage::setDeutsch();
  EXPECT_NE(chainOf([&] { a.calcRLC(pl(ePoint, {})); }).find("nur fuer Count=1 implementiert"), std::string::npos);
  a = pl(eLine, {{1, 1}, {3, 1}});  // assigning a list frees and rasterises
  EXPECT_EQ(a.pixel(), 3);
}

}  // namespace
