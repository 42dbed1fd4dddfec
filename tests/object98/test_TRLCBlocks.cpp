// Regions large enough to span several run blocks, built on one thread and
// combined and destroyed on another after the first has ended (its spare
// blocks are gone by then). Checked against byte masks.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "RLCTestUtil.h"

namespace {

using rlctest::Runs;

constexpr int kLines = 1500, kColumns = 1200;
using Mask = std::vector<std::vector<unsigned char>>;

// Line y holds runs of `len` pixels every `period` columns, shifted per line.
std::vector<Runs> stripes(int period, int len, int shift) {
  std::vector<Runs> lines(kLines);
  for (int y = 0; y < kLines; ++y)
    for (int x = (y * shift) % period; x + len <= kColumns; x += period) lines[y].emplace_back(x, x + len - 1);
  return lines;
}

Mask maskOf(const std::vector<Runs>& lines) {
  Mask m(kLines, std::vector<unsigned char>(kColumns, 0));
  for (int y = 0; y < kLines; ++y)
    for (const TRLC& r : lines[y])
      for (int x = r.FirstColumn; x <= r.LastColumn; ++x) m[y][x] = 1;
  return m;
}

void expectMask(const TRLCArray& a, const Mask& want) {
  Mask got(kLines, std::vector<unsigned char>(kColumns, 0));
  for (int y = a.getFirstLine(); y <= a.getLastLine(); ++y)
    for (const TRLC& r : a[y])
      for (int x = r.FirstColumn; x <= r.LastColumn; ++x) got[y][x] = 1;
  for (int y = 0; y < kLines; ++y) ASSERT_EQ(got[y], want[y]) << "line " << y;
}

TEST(TRLCBlocks, ManyBlockRegionsOutliveTheThreadThatBuiltThem) {
  // Disjoint runs, so that XOR has no overlap to shift: it is the mask's XOR.
  const auto la = stripes(12, 4, 3);
  const auto lb = stripes(12, 4, 3);
  std::vector<Runs> lbShifted(kLines);
  for (int y = 0; y < kLines; ++y)
    for (const TRLC& r : lb[y])
      if (r.LastColumn + 5 < kColumns) lbShifted[y].emplace_back(r.FirstColumn + 5, r.LastColumn + 5);
  // Overlapping by two columns, for AND.
  std::vector<Runs> lc(kLines);
  for (int y = 0; y < kLines; ++y)
    for (const TRLC& r : la[y])
      if (r.LastColumn + 2 < kColumns) lc[y].emplace_back(r.FirstColumn + 2, r.LastColumn + 2);
  const Mask ma = maskOf(la), mb = maskOf(lbShifted), mc = maskOf(lc);
  ASSERT_GT(kLines * (kColumns / 12), 8192 * 4);  // more runs than four blocks hold

  TRLCArray orResult, andResult;
  std::thread builder([&] {
    TRLCArray a = rlctest::makeArray(0, 0, kColumns - 1, la);
    TRLCArray b = rlctest::makeArray(0, 0, kColumns - 1, lbShifted);
    TRLCArray o = a;
    o |= b;
    const TRLCArray c = rlctest::makeArray(0, 0, kColumns - 1, lc);
    for (int i = 0; i < 3; ++i) {  // blocks freed and taken again from the spares
      TRLCArray t = a;
      t &= c;
      andResult = std::move(t);
    }
    orResult = std::move(o);
  });
  builder.join();

  Mask mor = ma, mand = ma, mxor = ma;
  for (int y = 0; y < kLines; ++y)
    for (int x = 0; x < kColumns; ++x) {
      mor[y][x] = ma[y][x] | mb[y][x];
      mand[y][x] = ma[y][x] & mc[y][x];
      mxor[y][x] = ma[y][x] ^ mb[y][x];
    }
  expectMask(orResult, mor);
  expectMask(andResult, mand);
  EXPECT_GT(andResult.pixel(), 0);

  // Combined again on this thread, then destroyed here.
  TRLCArray x = rlctest::makeArray(0, 0, kColumns - 1, la);
  x ^= rlctest::makeArray(0, 0, kColumns - 1, lbShifted);
  expectMask(x, mxor);
  orResult &= x;
  expectMask(orResult, mxor);
}

}  // namespace
