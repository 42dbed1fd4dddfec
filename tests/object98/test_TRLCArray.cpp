#include <gtest/gtest.h>

#include <functional>

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
  EXPECT_EQ(codeOf([&] { (void)c[0]; }), object98::ulRLCLineIndexConst);
  EXPECT_EQ(codeOf([&] { (void)a[0]; }), object98::ulRLCLineIndex);
  EXPECT_NE(chainOf([&] { (void)a[3]; }).find("Line=3 FirstLine=0 LastLine=-1"), std::string::npos);
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

TEST(TRLCArray, AndWithNothingInCommonIsTheEmptyArray) {
  TRLCArray a = makeArray(0, 0, 5, {{{0, 5}}});
  a &= makeArray(0, 6, 9, {{{6, 9}}});
  EXPECT_EQ(boxOf(a), (Box{0, -1, 0, -1}));
  EXPECT_EQ(a.size(), 0);
  TRLCArray b = makeArray(0, 0, 5, {{{0, 5}}});
  b &= makeArray(3, 0, 5, {{{0, 5}}});  // no common line
  EXPECT_EQ(boxOf(b), (Box{0, -1, 0, -1}));
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
  a.offset(-15, -10);
  EXPECT_EQ(boxOf(a), (Box{-7, -6, 10, 20}));
  EXPECT_EQ(runsOf(a[-7]), (Runs{{-5, 5}}));
  EXPECT_EQ(runsOf(a[-6]), (Runs{{-3, -1}}));
  // And-ing with the picture's mask recomputes the columns.
  a &= makeArray(-7, -100, 100, {{{-100, 100}}, {{-100, 100}}});
  EXPECT_EQ(boxOf(a), (Box{-7, -6, -5, 5}));
}

TEST(TRLCArray, CopiesAreDeepAndEveryChangeMovesTheStamp) {
  TRLCArray a = makeArray(0, 0, 5, {{{0, 5}}, {{1, 2}}});
  TRLCArray b(a);
  b.offset(1, 0);
  EXPECT_EQ(runsOf(a[0]), (Runs{{0, 5}}));
  TRLCArray m(std::move(b));
  EXPECT_EQ(b.size(), 0);
  EXPECT_EQ(m.pixel(), 8);
  const TRLCArray other = makeArray(0, 0, 5, {{{0, 5}}});
  for (const auto& change : std::initializer_list<std::function<void()>>{
           [&] { a = m; }, [&] { a |= other; }, [&] { a ^= other; }, [&] { a &= other; }, [&] { a.offset(1, 1); }}) {
    const auto t = a.rGetTimeStamp();
    change();
    EXPECT_GT(a.rGetTimeStamp(), t);
  }
  a.vClear();
  EXPECT_EQ(boxOf(a), (Box{0, -1, 0, -1}));
}

}  // namespace
