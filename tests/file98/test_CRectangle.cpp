#include <gtest/gtest.h>

#include <climits>

#include "file98/CRectangle.h"

namespace {

TEST(CRectangle, DefaultIsEmptyAndReportedIllFormed) {
  const CRectangle r;
  EXPECT_EQ(r.YSize(), 0);
  EXPECT_EQ(r.XSize(), 0);
  EXPECT_EQ(r, CRectangle(0, -1, 0, -1));
  // The inverted sense: true means ill-formed.
  EXPECT_TRUE(r.IsCorrectRectangle());
  EXPECT_FALSE(CRectangle(5, 5, 7, 7).IsCorrectRectangle());
  EXPECT_TRUE(CRectangle(5, 5, 7, 6).IsCorrectRectangle());
  EXPECT_TRUE(CRectangle(5, 4, 7, 7).IsCorrectRectangle());
  EXPECT_EQ(CRectangle(-3, 2, 10, 19).YSize(), 6);
  EXPECT_EQ(CRectangle(-3, 2, 10, 19).XSize(), 10);
  EXPECT_EQ(CRectangle(9, 2, 0, 0).YSize(), -6);
  EXPECT_EQ(CRectangle(INT_MIN, INT_MAX, 0, 0).YSize(), 0);  // 2^32 cut to int, no overflow trap
}

TEST(CRectangle, IntersectionAndBoundingBox) {
  CRectangle a(0, 10, 0, 10);
  EXPECT_FALSE(a.AndRectangle(CRectangle(5, 20, -5, 3)));
  EXPECT_EQ(a, CRectangle(5, 10, 0, 3));
  CRectangle b(0, 10, 0, 10);
  EXPECT_TRUE(b.AndRectangle(CRectangle(20, 30, 0, 10)));  // nothing left: reported true
  EXPECT_EQ(b, CRectangle(20, 10, 0, 10));
  CRectangle c(0, 1, 0, 1);
  c &= CRectangle(1, 5, 1, 5);
  EXPECT_EQ(c, CRectangle(1, 1, 1, 1));
  CRectangle d(0, 1, 0, 1);
  EXPECT_FALSE(d.OrRectangle(CRectangle(-5, -4, 8, 9)));
  EXPECT_EQ(d, CRectangle(-5, 1, 0, 9));
}

TEST(CRectangle, ReArrangeAlwaysGivesFalse) {
  CRectangle r(9, 2, 7, -7);
  EXPECT_FALSE(r.ReArrange());
  EXPECT_EQ(r, CRectangle(2, 9, -7, 7));
  CRectangle s(1, 2, 3, 4);
  EXPECT_FALSE(s.ReArrange());
  EXPECT_EQ(s, CRectangle(1, 2, 3, 4));
}

TEST(CRectangle, InclusionTouchingAllowed) {
  const CRectangle outer(0, 99, 0, 199), inner(0, 99, 10, 199), out(-1, 5, 0, 5);
  EXPECT_TRUE(inner.IsSmallerAs(outer));
  EXPECT_TRUE(inner <= outer);
  EXPECT_TRUE(outer >= inner);
  EXPECT_FALSE(outer <= inner);
  EXPECT_FALSE(out <= outer);
  EXPECT_TRUE(outer <= outer);
  EXPECT_FALSE(CRectangle(0, 100, 0, 0) <= outer);
  EXPECT_NE(inner, outer);
  CRectangle copy(inner);
  EXPECT_EQ(copy, inner);
  copy = out;
  EXPECT_EQ(copy.getFirstLine(), -1);
  EXPECT_EQ(copy.getLastColumn(), 5);
}

}  // namespace
