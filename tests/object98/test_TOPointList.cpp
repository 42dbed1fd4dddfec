#include <gtest/gtest.h>

#include <array>

#include "RLCTestUtil.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "object98/TOPointList.h"
#include "object98/TVector98.h"

using rlctest::chainOf;
using rlctest::codeOf;

namespace {

TEST(TVector98, GrowsByTenAndChecksIndices) {
  TVector98<int> v(2);
  v.append(1);
  v.append(2);
  EXPECT_EQ(v.getCapacity(), 2);
  v.append(3);
  EXPECT_EQ(v.getCapacity(), 12);
  int& first = v[0];
  for (int i = 0; i < 30; ++i) v.append(i);
  EXPECT_EQ(&first, &v[0]);  // elements stay where they are
  v.erase(0);
  EXPECT_EQ(v.size(), 32);
  EXPECT_EQ(v[0], 2);
  EXPECT_EQ(codeOf([&] { (void)v[32]; }), object98::ulVectorIndex);
  EXPECT_EQ(codeOf([&] { v.erase(32); }), object98::ulVectorErase);
  EXPECT_EQ(codeOf([&] { v.erase(-1); }), object98::ulVectorErase);
  EXPECT_NE(chainOf([&] { (void)v[40]; }).find("Index=40 >= Size=32"), std::string::npos);
  TVector98<int> c(v);
  c[0] = 99;
  EXPECT_EQ(v[0], 2);
  v.resize(3);
  v.resize(5);
  EXPECT_EQ(v[4], 0);
}

TEST(TOPointList, PointsExtentAndNames) {
  const TOPoint<int> a(3, 4), b(1, 2);
  EXPECT_EQ(a - b, TOPoint<int>(2, 2));
  EXPECT_DOUBLE_EQ(a ^ b, 2.0);  // x1*y2 - y1*x2
  EXPECT_DOUBLE_EQ(a * b, 11.0);
  EXPECT_DOUBLE_EQ(a.magnitude(), 5.0);
  EXPECT_EQ(TOPoint<double>(1e-60, 0).magnitude(), 0.0);
  auto extent = [](const TOPointList<int>& p) {
    std::array<int, 4> e{};
    p.Extent(e[0], e[1], e[2], e[3]);
    return e;
  };
  const TOPointList<int> p(ePolygon, {{3, -2}, {-7, 5}, {0, 9}});
  EXPECT_EQ(extent(p), (std::array{-7, 3, -2, 9}));
  // A circle's extent uses the Euclidean radius (its region the x distance).
  EXPECT_EQ(extent(TOPointList<int>(eCircle, {{10, 10}, {13, 14}})), (std::array{5, 15, 5, 15}));
  const auto e = extent(TOPointList<int>());
  EXPECT_EQ(e[1] - e[0], -1);
  EXPECT_STREQ(cpGetTOPL_TypName(eCircle, TLanguage::eDeutsch), "Kreis");
  EXPECT_STREQ(cpGetTOPL_TypName(eXorGroup, TLanguage::eEnglisch), "XOR-Group");
  EXPECT_STREQ(cpGetTOPL_TypName(static_cast<TOPL_Typ>(14)), "?");
  TOPointList<int> q(p);  // deep
  q[0].x = 100;
  EXPECT_EQ(p[0].x, 3);
}

}  // namespace

// Measures of a point list: area, distance, inside, and the type check.
TEST(TOPointList, AreaDistanceInsideAndType) {
  TOPointList<int> tri(ePolygon, {{0, 0}, {10, 0}, {0, 10}});
  EXPECT_DOUBLE_EQ(tri.getArea(), 50);
  EXPECT_DOUBLE_EQ(tri.dGetDistance({5, 5}), 0);
  EXPECT_DOUBLE_EQ(tri.dGetDistance({-3, 4}), 3);
  EXPECT_TRUE(tri.bIsInside({2, 2}));
  EXPECT_TRUE(tri.bIsInside({0, 0}));  // a corner
  EXPECT_FALSE(tri.bIsInside({6, 6}));
  EXPECT_FALSE(tri.bIsInside({-1, 5}));
  TOPointList<int> circle(eCircle, {{0, 0}, {3, 4}});
  EXPECT_NEAR(circle.getArea(), M_PI * 25, 1e-9);
  EXPECT_DOUBLE_EQ(circle.dGetDistance({10, 0}), 5);
  EXPECT_TRUE(circle.bIsInside({0, 5}));
  EXPECT_FALSE(circle.bIsInside({4, 4}));
  TOPointList<int> line(ePolyline, {{0, 0}, {10, 0}, {10, 10}});
  EXPECT_DOUBLE_EQ(line.dGetDistance({0, 10}), 10);  // open: no edge back to the start
  EXPECT_EQ(line.Width(true), 11);
  EXPECT_EQ(rlctest::codeOf([&] { line.getArea(); }), object98::ulObjectNoArea);
  EXPECT_EQ(rlctest::codeOf([&] { line.setTyp(eCircle); }), object98::ulObjectSetTyp);
  EXPECT_EQ(line.eGetTyp(), ePolyline);
  line.setTyp(ePolygon);
  EXPECT_DOUBLE_EQ(line.getArea(), 50);
  TOPointList<int> e(eEllipse, {{0, 0}, {1, 1}});
  EXPECT_EQ(rlctest::codeOf([&] { e.dGetDistance({0, 0}); }), object98::ulObjectEllipse);
}
