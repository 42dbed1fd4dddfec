#include <gtest/gtest.h>

#include "RLCTestUtil.h"
#include "object98/Object98Errors.h"
#include "object98/TRLCLine.h"

using namespace rlctest;

namespace {

TRLCLine line(const Runs& r) { return TRLCLine(static_cast<int>(r.size()), r.data()); }

enum Op { eOr, eXor, eAnd };

TEST(TRLCLine, OperatorsOnHandPickedLines) {
  const struct {
    Runs a;
    Op op;
    Runs b, want;
    const char* why;
  } cases[] = {
      // Every merge is also checked against the slow reference on random lines;
      // these are the cases to read. XOR: the overlap goes; the column 5 of both stays and 8 drops out (the tail moves left).
      {{{2, 5}}, eXor, {{3, 8}}, {{2, 2}, {5, 7}}, "overlap"},
      {{{0, 10}}, eXor, {{3, 4}}, {{0, 2}, {4, 9}}, "a run inside another"},
      {{{2, 4}}, eXor, {{2, 9}}, {{4, 8}}, "equal first columns: the longer sorts first and goes"},
      {{{2, 9}}, eXor, {{5, 9}}, {{2, 4}}, "equal last columns: only the head stays"},
      {{{2, 5}}, eXor, {{5, 8}}, {{2, 7}}, "one common column: head and tail touch and fuse"},
      {{{2, 5}}, eXor, {{6, 8}}, {{2, 8}}, "touching runs fuse"},
      {{{2, 5}, {10, 12}}, eXor, {{2, 5}, {10, 12}}, {}, "identical runs vanish"},
      {{{0, 5}, {10, 12}, {15, 25}}, eXor, {{3, 20}}, {{0, 2}, {5, 9}, {12, 14}, {18, 24}}, "tail shortened twice"},
      // OR fuses overlapping and touching runs, sorting first.
      {{{2, 5}}, eOr, {{6, 8}}, {{2, 8}}, "touching"},
      {{{10, 12}, {0, 1}}, eOr, {{2, 3}}, {{0, 3}, {10, 12}}, "unsorted input"},
      {{{0, 3}, {5, 6}, {8, 9}}, eOr, {{4, 4}, {7, 7}}, {{0, 9}}, "gaps filled"},
      {{}, eOr, {{-3, -1}}, {{-3, -1}}, "empty"},
      // AND keeps the order of its nested loop: neither sorted nor merged afterwards.
      {{{0, 10}}, eAnd, {{2, 3}, {5, 20}}, {{2, 3}, {5, 10}}, "cut"},
      {{{0, 3}, {6, 9}}, eAnd, {{4, 5}}, {}, "nothing in common"},
      {{{5, 9}, {0, 6}}, eAnd, {{0, 20}}, {{5, 9}, {0, 6}}, "unsorted stays"},
      {{{0, 10}, {5, 6}}, eAnd, {{3, 8}}, {{3, 8}, {5, 6}}, "overlapping stays"},
      {{{1, 2}}, eAnd, {}, {}, "empty"},
  };
  for (const auto& c : cases) {
    TRLCLine l = line(c.a);
    if (c.op == eOr) l |= line(c.b);
    if (c.op == eXor) l ^= line(c.b);
    if (c.op == eAnd) l &= line(c.b);
    EXPECT_EQ(runsOf(l), c.want) << c.why;
    if (c.want.empty()) {
      EXPECT_EQ(l.begin(), nullptr) << c.why;  // an emptied line frees its array
    }
  }
}

TEST(TRLCLine, SortAndInPlaceMerges) {
  Runs r{{5, 6}, {1, 2}, {5, 9}, {1, 7}, {0, 0}};
  TRLCLine::sortRLC(static_cast<int>(r.size()), r.data());
  EXPECT_EQ(r, (Runs{{0, 0}, {1, 7}, {1, 2}, {5, 9}, {5, 6}}));  // the longer run first at equal start
  Runs o{{0, 1}, {2, 3}, {3, 3}, {9, 9}};
  EXPECT_EQ(TRLCLine::merge_OR_RLC(4, o.data()), 2);
  EXPECT_EQ(Runs(o.begin(), o.begin() + 2), (Runs{{0, 3}, {9, 9}}));
  Runs x{{2, 5}, {3, 8}};
  EXPECT_EQ(TRLCLine::merge_XOR_RLC(2, x.data()), 2);
  EXPECT_EQ(x, (Runs{{2, 2}, {5, 7}}));
  EXPECT_EQ(TRLCLine::merge_XOR_RLC(0, x.data()), 0);
}

TEST(TRLCLine, AccessPixelAndErrors) {
  TRLCLine l = line({{-4, -2}, {3, 3}});
  EXPECT_EQ(l.pixel(), 4);
  EXPECT_EQ(l.getFirstColumn(), -4);
  EXPECT_EQ(l.getLastColumn(), 3);
  l.offsetX(10);
  EXPECT_EQ(runsOf(l), (Runs{{6, 8}, {13, 13}}));
  TRLCLine c(l);  // deep
  c.offsetX(1);
  EXPECT_EQ(l[0], TRLC(6, 8));
  TRLCLine empty;
  EXPECT_EQ(empty.pixel(), 0);
  EXPECT_EQ(codeOf([&] { (void)l[2]; }), object98::ulRLCRunIndex);
  EXPECT_EQ(codeOf([&] { (void)l[-1]; }), object98::ulRLCRunIndex);
  EXPECT_EQ(codeOf([&] { (void)empty.getFirstColumn(); }), object98::ulRLCEmptyLine);
  EXPECT_EQ(codeOf([&] { (void)empty.getLastColumn(); }), object98::ulRLCEmptyLine);
}

}  // namespace
