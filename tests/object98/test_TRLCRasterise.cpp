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
  const TRLCArray& c = a;
  for (const TRLC& r : c[y])
    if (x >= r.FirstColumn && x <= r.LastColumn) return true;
  return false;
}

TEST(Rasterise, PointAndRectangle) {
  TRLCArray p(pl(ePoint, {{-3, 7}}));
  EXPECT_EQ(boxOf(p), (Box{7, 7, -3, -3}));
  EXPECT_EQ(runsOf(p[7]), (Runs{{-3, -3}}));

  TRLCArray r(pl(eRectangle, {{2, 1}, {5, 1}, {5, 3}, {2, 3}}));
  EXPECT_EQ(boxOf(r), (Box{1, 3, 2, 5}));
  EXPECT_EQ(linesOf(r), (std::vector<Runs>(3, Runs{{2, 5}})));
  EXPECT_EQ(r.pixel(), 12);
  TRLCArray s(pl(eSquare, {{0, 0}, {1, 0}, {1, 1}, {0, 1}}));
  EXPECT_EQ(s.pixel(), 4);
}

TEST(Rasterise, CircleRadiusIsTheXDistanceOnly) {
  // Two points at equal x: radius 1, whatever the y distance.
  TRLCArray c(pl(eCircle, {{10, 20}, {10, 90}}));
  EXPECT_EQ(boxOf(c), (Box{19, 21, 9, 11}));
  EXPECT_EQ(linesOf(c), (std::vector<Runs>{{{10, 10}}, {{9, 11}}, {{10, 10}}}));

  TRLCArray d(pl(eCircle, {{0, 0}, {-3, 100}}));
  // r = 3: half widths 0, trunc(sqrt(5)+.5)=2, trunc(sqrt(8)+.5)=3, 3, 3, 2, 0.
  EXPECT_EQ(boxOf(d), (Box{-3, 3, -3, 3}));
  EXPECT_EQ(linesOf(d), (std::vector<Runs>{
                            {{0, 0}}, {{-2, 2}}, {{-3, 3}}, {{-3, 3}}, {{-3, 3}}, {{-2, 2}}, {{0, 0}}}));
}

TEST(Rasterise, CircleAgreesWithItsHelper) {
  const TCircle<int> circle(100, -50, 37);
  TRLCArray c(pl(eCircle, {{100, -50}, {137, -40}}));
  long n = 0;
  for (int y = circle.getMinY(); y <= circle.getMaxY(); ++y) {
    ASSERT_EQ(runsOf(c[y]), (Runs{{circle.getLeftBorder(y), circle.getRightBorder(y)}}));
    const double dy = y + 50;
    const double q = 37.0 * 37.0 - dy * dy;
    EXPECT_EQ(circle.getDiffX(y), q <= 0 ? 0 : static_cast<int>(std::sqrt(q) + 0.5));
    n += 2 * circle.getDiffX(y) + 1;
  }
  EXPECT_EQ(c.pixel(), n);
  EXPECT_EQ(circle.getDiffX(circle.getMaxY() + 1), -1);
  EXPECT_EQ(TCircle<int>(0, 0, 0).getRadius(), 1);
}

TEST(Rasterise, LineWithEqualEndsIsOnePixel) {
  TRLCArray l(pl(eLine, {{4, 4}, {4, 4}}));
  EXPECT_EQ(boxOf(l), (Box{4, 4, 4, 4}));
  EXPECT_EQ(l.pixel(), 1);
}

TEST(Rasterise, HorizontalAndVerticalLines) {
  TRLCArray h(pl(eLine, {{9, 2}, {3, 2}}));
  EXPECT_EQ(linesOf(h), (std::vector<Runs>{{{3, 9}}}));
  TRLCArray v(pl(eLine, {{5, 4}, {5, 1}}));
  EXPECT_EQ(boxOf(v), (Box{1, 4, 5, 5}));
  EXPECT_EQ(linesOf(v), (std::vector<Runs>(4, Runs{{5, 5}})));
}

TEST(Rasterise, SteepLineRoundsLikeMulDiv) {
  // x = MulDiv(i, dx, dy) + x0: rounded to nearest, halves away from zero.
  TRLCArray a(pl(eLine, {{0, 0}, {3, 7}}));
  const std::vector<int> xs{0, 0, 1, 1, 2, 2, 3, 3};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(runsOf(a[i]), (Runs{{xs[i], xs[i]}})) << i;
  TRLCArray h(pl(eLine, {{0, 0}, {1, 2}}));
  EXPECT_EQ(runsOf(h[1]), (Runs{{1, 1}}));  // 0.5 -> 1
  TRLCArray n(pl(eLine, {{0, 2}, {-1, 0}}));  // ordered by y: (-1,0) first
  EXPECT_EQ(linesOf(n), (std::vector<Runs>{{{-1, -1}}, {{0, 0}}, {{0, 0}}}));  // -1 + MulDiv(1, 1, 2) = 0
  TRLCArray m(pl(eLine, {{0, 0}, {-1, 2}}));
  EXPECT_EQ(runsOf(m[1]), (Runs{{-1, -1}}));  // -0.5 -> -1, not 0
}

TEST(Rasterise, FlatLineSpreadsEachLineOverItsStep) {
  // step 5: first (0, cut(2.5)), middle (cut(2.5), cut(7.5)), last (cut(7.5), 10).
  TRLCArray a(pl(eLine, {{0, 0}, {10, 2}}));
  EXPECT_EQ(linesOf(a), (std::vector<Runs>{{{0, 3}}, {{3, 8}}, {{8, 10}}}));
  EXPECT_EQ(boxOf(a), (Box{0, 2, 0, 10}));
  TRLCArray b(pl(eLine, {{10, 0}, {0, 2}}));
  EXPECT_EQ(linesOf(b), (std::vector<Runs>{{{8, 10}}, {{3, 8}}, {{0, 3}}}));
  // 45 degrees is flat (|dx| >= |dy|) with step 1.
  TRLCArray d(pl(eLine, {{0, 0}, {3, 3}}));
  EXPECT_EQ(linesOf(d), (std::vector<Runs>{{{0, 1}}, {{1, 2}}, {{2, 3}}, {{3, 3}}}));
}

TEST(Rasterise, PolylineIsTheUnionOfItsLines) {
  TRLCArray p(pl(ePolyline, {{0, 0}, {0, 3}, {4, 3}}));
  EXPECT_EQ(boxOf(p), (Box{0, 3, 0, 4}));
  EXPECT_EQ(linesOf(p), (std::vector<Runs>{{{0, 0}}, {{0, 0}}, {{0, 0}}, {{0, 4}}}));
}

TEST(Rasterise, PolygonTopLineBelongsToNoEdge) {
  // A triangle with a single top vertex: no run on the vertex's line.
  TRLCArray t(pl(ePolygon, {{5, 0}, {10, 5}, {0, 5}}));
  EXPECT_EQ(boxOf(t), (Box{0, 5, 0, 10}));
  EXPECT_EQ(t[0].getSize(), 0);
  EXPECT_EQ(runsOf(t[1]), (Runs{{4, 6}}));
  EXPECT_EQ(runsOf(t[5]), (Runs{{0, 10}}));
  // A flat top: the horizontal edge counts nothing, the others own only their
  // lower ends, so the top line stays empty too.
  TRLCArray f(pl(ePolygon, {{0, 0}, {10, 0}, {5, 5}}));
  EXPECT_EQ(f[0].getSize(), 0);
  EXPECT_EQ(runsOf(f[1]), (Runs{{1, 9}}));
  EXPECT_EQ(runsOf(f[5]), (Runs{{5, 5}}));
}

TEST(Rasterise, PolygonRectangleAndTrapezia) {
  TRLCArray r(pl(ePolygon, {{0, 0}, {10, 0}, {10, 5}, {0, 5}}));
  EXPECT_EQ(r[0].getSize(), 0);
  for (int y = 1; y <= 5; ++y) EXPECT_EQ(runsOf(r[y]), (Runs{{0, 10}}));
  // The four-corner types go through the polygon rasteriser as well.
  TRLCArray h(pl(eHTrapezium, {{2, 0}, {8, 0}, {10, 4}, {0, 4}}));
  EXPECT_EQ(runsOf(h[4]), (Runs{{0, 10}}));
  EXPECT_EQ(h[0].getSize(), 0);
  TRLCArray pg(pl(eParallelogram, {{0, 0}, {6, 0}, {8, 2}, {2, 2}}));
  EXPECT_EQ(runsOf(pg[2]), (Runs{{2, 8}}));
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
  EXPECT_EQ(a.size(), 1);
  EXPECT_EQ(a.pixel(), 0);
  const TRLCArray& c = a;
  const TRLCLine* shared = &c[3];
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
  TLanguage::setEnglisch();
  TRLCArray a(pl(eRectangle, {{0, 0}, {1, 0}, {1, 1}, {0, 1}}));
  EXPECT_EQ(codeOf([&] { a.calcRLC(pl(eEllipse, {{0, 0}, {5, 5}})); }), object98::ulErrRLCTypeNotImplemented);
  EXPECT_EQ(a.size(), 0);  // a failed rasteriser leaves the empty array
  for (TOPL_Typ t : {eOrGroup, eXorGroup, eAndGroup, static_cast<TOPL_Typ>(99)})
    EXPECT_EQ(codeOf([&] { a.calcRLC(pl(t, {{0, 0}})); }), object98::ulErrRLCTypeNotImplemented) << int(t);
  EXPECT_NE(chainOf([&] { a.calcRLC(pl(eEllipse, {})); }).find("not implemented for this type"), std::string::npos);
  EXPECT_EQ(codeOf([&] { a.calcRLC(pl(ePoint, {{0, 0}, {1, 1}})); }), object98::ulErrRLCPointCount);
  EXPECT_NE(chainOf([&] { a.calcRLC(pl(ePoint, {})); }).find("only for Count=1 implemented"), std::string::npos);
  TLanguage::setDeutsch();
  EXPECT_NE(chainOf([&] { a.calcRLC(pl(ePoint, {})); }).find("nur fuer Count=1 implementiert"), std::string::npos);
  EXPECT_EQ(codeOf([&] { a.calcRLC(pl(eCircle, {{0, 0}})); }), object98::ulErrRLCTooFewPoints);
  EXPECT_EQ(codeOf([&] { a.calcRLC(pl(eRectangle, {{0, 0}, {1, 0}, {1, 1}})); }), object98::ulErrRLCTooFewPoints);
  EXPECT_EQ(codeOf([&] { a.calcRLC(pl(ePolyline, {{0, 0}})); }), object98::ulErrRLCTooFewPoints);
  EXPECT_EQ(codeOf([&] { a.calcRLC(pl(ePolygon, {})); }), object98::ulErrRLCTooFewPoints);
  EXPECT_EQ(codeOf([&] { a.calcRLC(pl(eLine, {{0, 0}, {1 << 30, 0}})); }), object98::ulErrRLCCoordinateRange);
  // operator= from a list frees and rasterises.
  a = pl(eLine, {{1, 1}, {3, 1}});
  EXPECT_EQ(a.pixel(), 3);
}

}  // namespace
