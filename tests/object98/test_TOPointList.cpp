#include <gtest/gtest.h>

#include <cmath>

#include "RLCTestUtil.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "object98/TOPointList.h"
#include "object98/TVector98.h"

using rlctest::codeOf;
using rlctest::chainOf;

namespace {

TEST(TVector98, GrowsByTenAndChecksIndices) {
  TVector98<int> v(2);
  EXPECT_EQ(v.getCapacity(), 2);
  v.append(1);
  v.append(2);
  EXPECT_EQ(v.getCapacity(), 2);
  v.append(3);
  EXPECT_EQ(v.getCapacity(), 12);
  int& first = v[0];
  for (int i = 0; i < 30; ++i) v.append(i);
  EXPECT_EQ(&first, &v[0]);  // elements stay where they are
  EXPECT_EQ(v.size(), 33);
  v.erase(0);
  EXPECT_EQ(v[0], 2);
  EXPECT_EQ(codeOf([&] { (void)v[32]; }), object98::ulErrVectorIndex);
  EXPECT_EQ(codeOf([&] { v.erase(32); }), object98::ulErrVectorErase);
  EXPECT_EQ(codeOf([&] { v.erase(-1); }), object98::ulErrVectorErase);
  EXPECT_NE(chainOf([&] { (void)v[40]; }).find("Index=40 >= Size=32"), std::string::npos);
  TVector98<int> c(v);
  c[0] = 99;
  EXPECT_EQ(v[0], 2);
  v.resize(3);
  EXPECT_EQ(v.size(), 3);
  v.resize(5);
  EXPECT_EQ(v[4], 0);
  v.clear();
  EXPECT_EQ(v.size(), 0);
}

TEST(TOPoint, Operations) {
  const TOPoint<int> a(3, 4), b(1, 2);
  EXPECT_EQ(a - b, TOPoint<int>(2, 2));
  EXPECT_DOUBLE_EQ(a ^ b, 3.0 * 2 - 4.0 * 1);
  EXPECT_DOUBLE_EQ(a * b, 3.0 + 8.0);
  EXPECT_DOUBLE_EQ(a.magnitude(), 5.0);
  EXPECT_EQ(TOPoint<double>(1e-60, 0).magnitude(), 0.0);
}

TEST(TOPointList, ExtentAndNames) {
  TOPointList<int> p(ePolygon, {{3, -2}, {-7, 5}, {0, 9}});
  int x0, x1, y0, y1;
  p.Extent(x0, x1, y0, y1);
  EXPECT_EQ(x0, -7);
  EXPECT_EQ(x1, 3);
  EXPECT_EQ(y0, -2);
  EXPECT_EQ(y1, 9);
  // A circle's extent uses the Euclidean radius (its region the x distance).
  TOPointList<int> c(eCircle, {{10, 10}, {13, 14}});
  c.Extent(x0, x1, y0, y1);
  EXPECT_EQ(x0, 5);
  EXPECT_EQ(x1, 15);
  EXPECT_EQ(y0, 5);
  EXPECT_EQ(y1, 15);
  TOPointList<int> e;
  e.Extent(x0, x1, y0, y1);
  EXPECT_EQ(x1 - x0, -1);
  EXPECT_STREQ(cpGetTOPL_TypName(eCircle, TLanguage::eDeutsch), "Kreis");
  EXPECT_STREQ(cpGetTOPL_TypName(eXorGroup, TLanguage::eEnglisch), "XOR-Group");
  EXPECT_STREQ(cpGetTOPL_TypName(static_cast<TOPL_Typ>(14)), "?");
  // Copies are deep.
  TOPointList<int> q(p);
  q[0].x = 100;
  EXPECT_EQ(p[0].x, 3);
  EXPECT_EQ(q.eGetTyp(), ePolygon);
}

}  // namespace
