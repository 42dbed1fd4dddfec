#include <gtest/gtest.h>

#include <climits>

#include "file98/CRectangle.h"

namespace {

TEST(CRectangle, SizesAndTheInvertedCorrectnessFlag) {
  EXPECT_EQ(CRectangle(), CRectangle(0, -1, 0, -1));
  // The inverted sense: IsCorrectRectangle() true means ill-formed.
  const struct {
    CRectangle r;
    int ySize, xSize;
    bool ill;
  } cases[] = {{CRectangle(), 0, 0, true},          {CRectangle(5, 5, 7, 7), 1, 1, false},
               {CRectangle(5, 5, 7, 6), 1, 0, true}, {CRectangle(5, 4, 7, 7), 0, 1, true},
               {CRectangle(-3, 2, 10, 19), 6, 10, false}, {CRectangle(9, 2, 0, 0), -6, 1, true}};
  for (const auto& c : cases) {
    EXPECT_EQ(c.r.YSize(), c.ySize) << c.r.getFirstLine();
    EXPECT_EQ(c.r.XSize(), c.xSize) << c.r.getFirstLine();
    EXPECT_EQ(c.r.IsCorrectRectangle(), c.ill) << c.r.getFirstLine();
  }
  EXPECT_EQ(CRectangle(INT_MIN, INT_MAX, 0, 0).YSize(), 0);  // 2^32 cut to int, no overflow trap
}

TEST(CRectangle, IntersectionBoundingBoxAndReArrange) {
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
  CRectangle r(9, 2, 7, -7);
  EXPECT_FALSE(r.ReArrange());  // always false once sorted
  EXPECT_EQ(r, CRectangle(2, 9, -7, 7));
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
}

}  // namespace
