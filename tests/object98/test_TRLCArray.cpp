#include <gtest/gtest.h>

#include "RLCTestUtil.h"
#include "object98/Object98Errors.h"
#include "object98/TRLCArray.h"

using namespace rlctest;

namespace {

TEST(TRLCArray, EmptyArray) {
  TRLCArray a;
  EXPECT_EQ(boxOf(a), (Box{0, -1, 0, -1}));
  EXPECT_EQ(a.size(), 0);
  EXPECT_EQ(a.pixel(), 0);
  const TRLCArray& c = a;
  EXPECT_EQ(codeOf([&] { (void)c[0]; }), object98::ulErrRLCLineIndexConst);
  EXPECT_EQ(codeOf([&] { (void)a[0]; }), object98::ulErrRLCLineIndex);
  EXPECT_NE(chainOf([&] { (void)a[3]; }).find("Line=3 FirstLine=0 LastLine=-1"), std::string::npos);
}

TEST(TRLCArray, OrCombinesTheBoxesAndFusesRuns) {
  TRLCArray a = makeArray(10, 5, 9, {{{5, 9}}, {{5, 6}}});
  const TRLCArray b = makeArray(11, 7, 20, {{{7, 8}}, {{10, 20}}});
  a |= b;
  EXPECT_EQ(boxOf(a), (Box{10, 12, 5, 20}));
  EXPECT_EQ(linesOf(a), (std::vector<Runs>{{{5, 9}}, {{5, 8}}, {{10, 20}}}));
  EXPECT_EQ(a.pixel(), 5 + 4 + 11);
}

TEST(TRLCArray, CombiningWithAnEmptyArrayPullsTheBoxToZero) {
  // What an OR group with one member gets: the member's pixels, but a box
  // that reaches line 0 and column 0.
  TRLCArray group;
  const TRLCArray member = makeArray(10, 20, 30, {{{20, 30}}, {{22, 25}}});
  group |= member;
  EXPECT_EQ(boxOf(group), (Box{0, 11, 0, 30}));
  EXPECT_EQ(group.pixel(), member.pixel());
  EXPECT_EQ(group[0].getSize(), 0);
  EXPECT_EQ(runsOf(group[11]), (Runs{{22, 25}}));

  TRLCArray x = makeArray(-5, -8, -2, {{{-8, -2}}});
  x ^= TRLCArray();
  // The empty operand takes part with its last line and column -1.
  EXPECT_EQ(boxOf(x), (Box{-5, -1, -8, -1}));
  EXPECT_EQ(runsOf(x[-5]), (Runs{{-8, -2}}));
}

TEST(TRLCArray, XorOfArraysUsesTheLineMerge) {
  TRLCArray a = makeArray(0, 2, 5, {{{2, 5}}, {{2, 5}}});
  a ^= makeArray(0, 2, 8, {{{3, 8}}, {{2, 5}}});
  EXPECT_EQ(linesOf(a), (std::vector<Runs>{{{2, 2}, {5, 7}}, {}}));
  EXPECT_EQ(boxOf(a), (Box{0, 1, 2, 8}));  // XOR does not tighten
}

TEST(TRLCArray, AndWithNothingInCommonIsTheEmptyArray) {
  TRLCArray a = makeArray(0, 0, 5, {{{0, 5}}});
  a &= makeArray(0, 6, 9, {{{6, 9}}});
  EXPECT_EQ(boxOf(a), (Box{0, -1, 0, -1}));
  EXPECT_EQ(a.size(), 0);
  TRLCArray b = makeArray(0, 0, 5, {{{0, 5}}});
  b &= makeArray(3, 0, 5, {{{0, 5}}});  // no common line
  EXPECT_EQ(boxOf(b), (Box{0, -1, 0, -1}));
  TRLCArray c;
  c &= TRLCArray();
  EXPECT_EQ(c.size(), 0);
}

TEST(TRLCArray, AndTightensTheBoxButKeepsInteriorEmptyLines) {
  TRLCArray a = makeArray(0, 0, 100, {{{0, 100}}, {{0, 100}}, {{0, 100}}, {{0, 100}}, {{0, 100}}});
  const TRLCArray b = makeArray(-3, 0, 100, {{}, {}, {}, {}, {{40, 50}}, {}, {{30, 60}, {70, 72}}, {}, {}});
  a &= b;
  EXPECT_EQ(boxOf(a), (Box{1, 3, 30, 72}));
  EXPECT_EQ(linesOf(a), (std::vector<Runs>{{{40, 50}}, {}, {{30, 60}, {70, 72}}}));
}

TEST(TRLCArray, SelfOperations) {
  const TRLCArray orig = makeArray(2, 0, 9, {{{0, 3}, {5, 9}}});
  TRLCArray a = orig;
  a |= a;
  EXPECT_EQ(linesOf(a), linesOf(orig));
  a &= a;
  EXPECT_EQ(linesOf(a), linesOf(orig));
  a ^= a;
  EXPECT_EQ(a.pixel(), 0);
  EXPECT_EQ(boxOf(a), boxOf(orig));
}

TEST(TRLCArray, UnsortedLinesAreNormalisedByOrAndXor) {
  // A line given by hand out of order and touching: the operators sort and
  // merge it even where the other operand has nothing.
  TRLCArray a = makeArray(0, 0, 20, {{{10, 12}, {0, 4}, {5, 6}}});
  a |= makeArray(5, 0, 0, {{}});
  EXPECT_EQ(runsOf(a[0]), (Runs{{0, 6}, {10, 12}}));
  TRLCArray x = makeArray(0, 0, 20, {{{3, 8}, {2, 5}}});
  x ^= makeArray(5, 0, 0, {{}});
  EXPECT_EQ(runsOf(x[0]), (Runs{{2, 2}, {5, 7}}));
}

TEST(TRLCArray, ChangingARunByHandIsSeenByTheOperators) {
  // Lines made by an operator are known to be normal; a run changed through
  // operator[] must make the next operator look at the line again.
  TRLCArray a = makeArray(0, 0, 20, {{{0, 4}, {10, 12}}});
  a |= TRLCArray();
  a[0][1] = TRLC(3, 6);  // now overlapping its neighbour
  a |= makeArray(0, 0, 0, {{}});
  EXPECT_EQ(runsOf(a[0]), (Runs{{0, 6}}));
  TRLCArray x = makeArray(0, 0, 20, {{{0, 4}, {10, 12}}});
  x ^= TRLCArray();
  x[0][0] = TRLC(11, 14);  // out of order
  x ^= makeArray(0, 0, 0, {{}});
  EXPECT_EQ(runsOf(x[0]), (Runs{{10, 10}, {12, 13}}));
}

TEST(TRLCArray, LinesTakenOutOfAnArrayOutliveIt) {
  TRLCLine kept, moved;
  {
    TRLCArray a(TOPointList<int>(eCircle, {{0, 0}, {5, 0}}));
    a |= TRLCArray(TOPointList<int>(eCircle, {{8, 0}, {11, 0}}));
    kept = static_cast<const TRLCArray&>(a)[0];
    moved = std::move(a[1]);
    EXPECT_EQ(a[1].getSize(), 0);
  }
  EXPECT_EQ(runsOf(kept), (Runs{{-5, 11}}));
  EXPECT_EQ(moved.pixel(), 10 + 7);
}

TEST(TRLCArray, OffsetMovesRunsAndLinesButNotTheColumnsOfTheBox) {
  TRLCArray a = makeArray(3, 10, 20, {{{10, 20}}, {{12, 14}}});
  const auto before = a.rGetTimeStamp();
  a.offset(-15, -10);
  EXPECT_EQ(boxOf(a), (Box{-7, -6, 10, 20}));
  EXPECT_EQ(runsOf(a[-7]), (Runs{{-5, 5}}));
  EXPECT_EQ(runsOf(a[-6]), (Runs{{-3, -1}}));
  EXPECT_GT(a.rGetTimeStamp(), before);
  // And-ing with the picture's mask recomputes the columns.
  a &= makeArray(-7, -100, 100, {{{-100, 100}}, {{-100, 100}}});
  EXPECT_EQ(boxOf(a), (Box{-7, -6, -5, 5}));
}

TEST(TRLCArray, CopiesAreDeepAndStampsMove) {
  TRLCArray a = makeArray(0, 0, 5, {{{0, 5}}, {{1, 2}}});
  TRLCArray b(a);
  b.offset(1, 0);
  EXPECT_EQ(runsOf(a[0]), (Runs{{0, 5}}));
  const auto t = a.rGetTimeStamp();
  a = b;
  EXPECT_GT(a.rGetTimeStamp(), t);
  EXPECT_EQ(runsOf(a[1]), (Runs{{2, 3}}));
  TRLCArray m(std::move(b));
  EXPECT_EQ(b.size(), 0);
  EXPECT_EQ(m.pixel(), 8);
  a.vClear();
  EXPECT_EQ(boxOf(a), (Box{0, -1, 0, -1}));
}

TEST(TRLCArray, OperatorsSetTheTimeStamp) {
  TRLCArray a = makeArray(0, 0, 5, {{{0, 5}}});
  const TRLCArray b = makeArray(0, 0, 5, {{{0, 5}}});
  auto t = a.rGetTimeStamp();
  a |= b;
  EXPECT_GT(a.rGetTimeStamp(), t);
  t = a.rGetTimeStamp();
  a ^= b;
  EXPECT_GT(a.rGetTimeStamp(), t);
  t = a.rGetTimeStamp();
  a &= b;
  EXPECT_GT(a.rGetTimeStamp(), t);
}

}  // namespace
