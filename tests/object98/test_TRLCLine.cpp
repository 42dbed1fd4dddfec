#include <gtest/gtest.h>

#include "RLCTestUtil.h"
#include "object98/Object98Errors.h"
#include "object98/TRLCLine.h"

using namespace rlctest;

namespace {

TRLCLine line(const Runs& r) { return TRLCLine(static_cast<int>(r.size()), r.data()); }

Runs orOf(const Runs& a, const Runs& b) {
  TRLCLine l = line(a);
  l |= line(b);
  return runsOf(l);
}
Runs xorOf(const Runs& a, const Runs& b) {
  TRLCLine l = line(a);
  l ^= line(b);
  return runsOf(l);
}
Runs andOf(const Runs& a, const Runs& b) {
  TRLCLine l = line(a);
  l &= line(b);
  return runsOf(l);
}

TEST(TRLCLine, XorOfOverlappingRunsShiftsTheTail) {
  // The overlap goes; the column 5 of both stays and 8 drops out.
  EXPECT_EQ(xorOf({{2, 5}}, {{3, 8}}), (Runs{{2, 2}, {5, 7}}));
  EXPECT_EQ(xorOf({{3, 8}}, {{2, 5}}), (Runs{{2, 2}, {5, 7}}));
  // A run inside another: the rest after it is shifted the same way.
  EXPECT_EQ(xorOf({{0, 10}}, {{3, 4}}), (Runs{{0, 2}, {4, 9}}));
  // Equal first columns: the longer run sorts first and is removed.
  EXPECT_EQ(xorOf({{2, 4}}, {{2, 9}}), (Runs{{4, 8}}));
  // Equal last columns: only the head stays.
  EXPECT_EQ(xorOf({{2, 9}}, {{5, 9}}), (Runs{{2, 4}}));
  // A single common column that leaves the head touching the tail fuses.
  EXPECT_EQ(xorOf({{2, 5}}, {{5, 8}}), (Runs{{2, 7}}));
}

TEST(TRLCLine, XorFusesTouchingAndRemovesIdentical) {
  EXPECT_EQ(xorOf({{2, 5}}, {{6, 8}}), (Runs{{2, 8}}));
  EXPECT_EQ(xorOf({{2, 5}}, {{2, 5}}), Runs{});
  EXPECT_EQ(xorOf({{2, 5}, {10, 12}}, {{2, 5}, {10, 12}}), Runs{});
  EXPECT_EQ(xorOf({{2, 5}}, {{7, 8}}), (Runs{{2, 5}, {7, 8}}));
  EXPECT_EQ(xorOf({}, {}), Runs{});
  // A tail shortened twice when it crosses two runs of the other line.
  EXPECT_EQ(xorOf({{0, 5}, {10, 12}, {15, 25}}, {{3, 20}}), (Runs{{0, 2}, {5, 9}, {12, 14}, {18, 24}}));
}

TEST(TRLCLine, OrFusesOverlappingAndTouching) {
  EXPECT_EQ(orOf({{2, 5}}, {{6, 8}}), (Runs{{2, 8}}));
  EXPECT_EQ(orOf({{2, 5}}, {{3, 4}}), (Runs{{2, 5}}));
  EXPECT_EQ(orOf({{2, 5}}, {{7, 8}}), (Runs{{2, 5}, {7, 8}}));
  EXPECT_EQ(orOf({{10, 12}, {0, 1}}, {{2, 3}}), (Runs{{0, 3}, {10, 12}}));  // unsorted input
  EXPECT_EQ(orOf({{0, 3}, {5, 6}, {8, 9}}, {{4, 4}, {7, 7}}), (Runs{{0, 9}}));
  EXPECT_EQ(orOf({}, {{-3, -1}}), (Runs{{-3, -1}}));
}

TEST(TRLCLine, AndKeepsTheOrderOfTheNestedLoop) {
  EXPECT_EQ(andOf({{0, 10}}, {{2, 3}, {5, 20}}), (Runs{{2, 3}, {5, 10}}));
  EXPECT_EQ(andOf({{0, 3}, {6, 9}}, {{4, 5}}), Runs{});
  // Unsorted and overlapping input is neither sorted nor merged afterwards.
  EXPECT_EQ(andOf({{5, 9}, {0, 6}}, {{0, 20}}), (Runs{{5, 9}, {0, 6}}));
  EXPECT_EQ(andOf({{0, 10}, {5, 6}}, {{3, 8}}), (Runs{{3, 8}, {5, 6}}));
  EXPECT_EQ(andOf({{1, 2}}, {}), Runs{});
}

TEST(TRLCLine, SortPutsTheLongerRunFirstAtEqualStart) {
  Runs r{{5, 6}, {1, 2}, {5, 9}, {1, 7}, {0, 0}};
  TRLCLine::sortRLC(static_cast<int>(r.size()), r.data());
  EXPECT_EQ(r, (Runs{{0, 0}, {1, 7}, {1, 2}, {5, 9}, {5, 6}}));
}

TEST(TRLCLine, MergesWorkInPlaceAndReturnTheCount) {
  Runs r{{0, 1}, {2, 3}, {3, 3}, {9, 9}};
  EXPECT_EQ(TRLCLine::merge_OR_RLC(4, r.data()), 2);
  EXPECT_EQ(r[0], TRLC(0, 3));
  EXPECT_EQ(r[1], TRLC(9, 9));
  Runs x{{2, 5}, {3, 8}};
  EXPECT_EQ(TRLCLine::merge_XOR_RLC(2, x.data()), 2);
  EXPECT_EQ(x[0], TRLC(2, 2));
  EXPECT_EQ(x[1], TRLC(5, 7));
  EXPECT_EQ(TRLCLine::merge_XOR_RLC(0, x.data()), 0);
  EXPECT_EQ(TRLCLine::merge_OR_RLC(1, x.data()), 1);
}

TEST(TRLCLine, AccessPixelAndErrors) {
  TRLCLine l = line({{-4, -2}, {3, 3}});
  EXPECT_EQ(l.getSize(), 2);
  EXPECT_EQ(l.pixel(), 4);
  EXPECT_EQ(l.getFirstColumn(), -4);
  EXPECT_EQ(l.getLastColumn(), 3);
  l.offsetX(10);
  EXPECT_EQ(runsOf(l), (Runs{{6, 8}, {13, 13}}));
  EXPECT_EQ(codeOf([&] { (void)l[2]; }), object98::ulErrRLCRunIndex);
  EXPECT_EQ(codeOf([&] { (void)l[-1]; }), object98::ulErrRLCRunIndex);

  TRLCLine empty;
  EXPECT_EQ(empty.begin(), nullptr);
  EXPECT_EQ(empty.pixel(), 0);
  EXPECT_EQ(codeOf([&] { (void)empty.getFirstColumn(); }), object98::ulErrRLCEmptyLine);
  EXPECT_EQ(codeOf([&] { (void)empty.getLastColumn(); }), object98::ulErrRLCEmptyLine);

  // Copies are deep; an operation that empties a line frees its array.
  TRLCLine c(l);
  c.offsetX(1);
  EXPECT_EQ(l[0], TRLC(6, 8));
  c ^= c;
  EXPECT_EQ(c.getSize(), 0);
  EXPECT_EQ(c.begin(), nullptr);
  l &= TRLCLine();
  EXPECT_EQ(l.begin(), nullptr);
}

}  // namespace
