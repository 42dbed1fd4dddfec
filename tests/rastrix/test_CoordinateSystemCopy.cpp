// TCopyCoordinates: the picture-to-screen mapping of the zoom factors.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <span>
#include <utility>

#include "rastrix/TCopyCoordinates.h"

using namespace Rastrix;

namespace {

// The table of the zoom factors, written out plainly.
int refDst(int z, int v) {
  if (z > 1) return z * v;
  if (z == 1) return static_cast<int>(std::trunc(v * 3 * 0.5 + 0.5));
  if (z == 0) return v;
  if (z == -1) return static_cast<int>(std::trunc(v * 2.0 / 3.0 + 0.5));
  return static_cast<int>(std::trunc(v / static_cast<double>(-z) + 0.5));
}

int refSrc(int z, int v) {
  if (z > 1) return v / z;
  if (z == 1) return v * 2 / 3;
  if (z == 0) return v;
  if (z == -1) return v * 3 / 2;
  return -z * v;
}

}  // namespace

TEST(CopyCoordinates, PointsFollowTheZoomTable) {
  for (int z : {-7, -3, -2, -1, 0, 1, 2, 3, 8}) {
    TCopyCoordinates c(z);
    for (int v = -20; v <= 40; ++v) {
      EXPECT_EQ(c.getDst(v), refDst(z, v)) << "z=" << z << " v=" << v;
      EXPECT_EQ(c.getSrc(v), refSrc(z, v)) << "z=" << z << " v=" << v;
    }
  }
  EXPECT_DOUBLE_EQ(TCopyCoordinates(1).dGetScale(), 1.5);
  EXPECT_DOUBLE_EQ(TCopyCoordinates(-1).dGetScale(), 2.0 / 3.0);
  EXPECT_DOUBLE_EQ(TCopyCoordinates(-4).dGetScale(), 0.25);
  for (const auto& [z, offset] : {std::pair{5, 2}, {2, 1}, {1, 0}, {-3, 0}})
    EXPECT_EQ(TCopyCoordinates(z).getDstRoundOffset(), offset) << z;
  // Far out, nothing overflows.
  EXPECT_EQ(TCopyCoordinates(INT_MAX).getDst(INT_MAX), INT_MAX);
  EXPECT_EQ(TCopyCoordinates(INT_MIN).getSrc(INT_MAX), INT_MAX);
  EXPECT_EQ(TCopyCoordinates(1).getDst(INT_MAX), INT_MAX) << "screen positions saturate";
  EXPECT_EQ(TCopyCoordinates(-1).getSrc(INT_MIN), INT_MIN);
}

TEST(CopyCoordinates, LengthsInWholeSteps) {
  struct Case {
    int z, length;
    bool exact;
    int src, dst;
  };
  const Case fromSrc[] = {
      {3, 7, false, 7, 21},   {0, 7, true, 7, 7},     {1, 7, true, 6, 9},    {1, 7, false, 8, 12},
      {1, 8, false, 8, 12},   {-1, 7, true, 6, 4},    {-1, 7, false, 9, 6},  {-1, 9, false, 9, 6},
      {-4, 10, true, 8, 2},   {-4, 10, false, 12, 3}, {-4, 12, false, 12, 3}, {-4, -5, false, 0, 0}};
  // From the destination: the same steps, seen from the other side.
  const Case fromDst[] = {{3, 7, true, 2, 6},  {3, 7, false, 3, 9},  {1, 7, true, 4, 6},    {1, 7, false, 6, 9},
                          {-1, 5, true, 6, 4}, {-1, 5, false, 9, 6}, {-4, 5, false, 20, 5}, {0, 5, false, 5, 5}};
  for (bool dstSide : {false, true})
    for (const Case& k : dstSide ? std::span<const Case>(fromDst) : std::span<const Case>(fromSrc)) {
      SCOPED_TRACE(::testing::Message() << "z=" << k.z << " length=" << k.length << " exact=" << k.exact << " dst " << dstSide);
      TCopyCoordinates c(k.z);
      int src = -1, dst = -1;
      if (dstSide) c.setDstLength(k.length, src, dst, k.exact);
      else c.setSrcLength(k.length, src, dst, k.exact);
      EXPECT_EQ(src, k.src);
      EXPECT_EQ(dst, k.dst);
      EXPECT_EQ(dstSide ? c.getSrc(dst) : c.getDst(src), dstSide ? src : dst) << "whole steps map exactly";
    }
}

TEST(CopyCoordinates, RectanglesSourceDestinationAndCopy) {
  // A picture of lines 10..19, columns -5..4 shown 3/2 at (100, 200).
  TCopyCoordinates c(1);
  c.setDstOrigin(100, 200);
  c.setSrc(CRectangle(10, 19, -5, 4));
  EXPECT_EQ(c.rGetSrc(), CRectangle(10, 19, -5, 4));
  EXPECT_EQ(c.rGetDst(), CRectangle(100, 114, 200, 214));
  EXPECT_EQ(c.rGetCopySrc(), c.rGetSrc());
  EXPECT_EQ(c.rGetCopyDst(), c.rGetDst());
  EXPECT_TRUE(c.getXDst(-5) == 200 && c.getYDst(12) == 103 && c.getXSrc(203) == -3);
  EXPECT_EQ(c.getDstPoint({-3, 12}), (TCopyCoordinates::TPoint{203, 103}));
  EXPECT_EQ(c.getSrcPoint({203, 103}), (TCopyCoordinates::TPoint{-3, 12}));
  // A rectangle covers whole zoomed pixels, and maps back.
  EXPECT_EQ(c.getDstRect(CRectangle(10, 11, -5, -4)), CRectangle(100, 102, 200, 202));
  EXPECT_EQ(c.getSrcRect(CRectangle(100, 102, 200, 202)), CRectangle(10, 11, -5, -4));

  // A zoom change re-sets source, destination and copy: an odd width of 11
  // needs a widened last step at 2/3 (12 source, 8 destination pixels), but
  // the copy stays inside the picture.
  c.setSrc(CRectangle(0, 8, 0, 10));
  c.setZoomFactor(-1);
  EXPECT_EQ(c.rGetSrc(), CRectangle(0, 8, 0, 11));
  EXPECT_EQ(c.rGetDst(), CRectangle(100, 105, 200, 207));
  EXPECT_EQ(c.rGetCopySrc(), CRectangle(0, 8, 0, 10));
  c.setSrc(CRectangle(0, 8, 0, 10), true);
  EXPECT_EQ(c.rGetSrc(), CRectangle(0, 8, 0, 8));
  EXPECT_EQ(c.rGetDst(), CRectangle(100, 105, 200, 205));

  // Copy rectangles are clipped to the picture or the destination.
  c.setZoomFactor(2);
  c.setDstOrigin(0, 0);
  ASSERT_TRUE(c.setCopySrc(CRectangle(-3, 2, 5, 40)));
  EXPECT_EQ(c.rGetCopySrc(), CRectangle(0, 2, 5, 10));
  EXPECT_EQ(c.rGetCopyDst(), CRectangle(0, 5, 10, 21));
  ASSERT_TRUE(c.setCopyDst(CRectangle(3, 100, 4, 7)));
  EXPECT_EQ(c.rGetCopyDst(), CRectangle(3, 17, 4, 7));
  EXPECT_EQ(c.rGetCopySrc(), CRectangle(1, 8, 2, 3));
  // A rectangle wholly outside: refused, nothing changes; touching the
  // border from outside leaves an empty copy, which is accepted.
  const CRectangle keepSrc = c.rGetCopySrc(), keepDst = c.rGetCopyDst();
  EXPECT_FALSE(c.setCopySrc(CRectangle(50, 60, 0, 3)));
  EXPECT_FALSE(c.setCopyDst(CRectangle(0, 3, -30, -20)));
  EXPECT_EQ(c.rGetCopySrc(), keepSrc);
  EXPECT_EQ(c.rGetCopyDst(), keepDst);
  EXPECT_TRUE(c.setCopySrc(CRectangle(9, 12, 0, 3)));
  EXPECT_EQ(c.rGetCopySrc().YSize(), 0);
  EXPECT_EQ(c.rGetCopyDst().YSize(), 0);

  CRectangle r(0, 10, 0, 10);
  EXPECT_TRUE(TCopyCoordinates::proofCopy(r, CRectangle(5, 20, -5, 3)));
  EXPECT_EQ(r, CRectangle(5, 10, 0, 3));
  EXPECT_FALSE(TCopyCoordinates::proofCopy(r, CRectangle(12, 20, 0, 3)));
  EXPECT_EQ(r, CRectangle(5, 10, 0, 3));
}
