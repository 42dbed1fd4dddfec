// The set operators against two independent references: a byte mask per line
// (OR and AND, and XOR where the runs of the two operands do not overlap or
// overlap once), and the merges written out the slow way, with an exchange
// sort and removal from the array, for every case.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "RLCTestUtil.h"
#include "object98/TRLCArray.h"

using namespace rlctest;

namespace {

// ---- the slow reference ----------------------------------------------------

void refSort(Runs& r) {
  for (std::size_t i = 0; i + 1 < r.size(); ++i)
    for (std::size_t j = i + 1; j < r.size(); ++j)
      if (r[i].FirstColumn > r[j].FirstColumn ||
          (r[i].FirstColumn == r[j].FirstColumn && r[i].LastColumn < r[j].LastColumn))
        std::swap(r[i], r[j]);
}

void refMergeOr(Runs& r) {
  std::size_t i = 0;
  while (i + 1 < r.size()) {
    if (r[i].LastColumn + 1 >= r[i + 1].FirstColumn) {
      r[i].LastColumn = std::max(r[i].LastColumn, r[i + 1].LastColumn);
      r.erase(r.begin() + long(i) + 1);
    } else {
      ++i;
    }
  }
}

void refMergeXor(Runs& r) {
  std::size_t i = 0;
  while (i + 1 < r.size()) {
    const TRLC a = r[i], b = r[i + 1];
    if (a.LastColumn + 1 < b.FirstColumn) {
      ++i;
    } else if (a.LastColumn + 1 == b.FirstColumn) {
      r[i].LastColumn = std::max(a.LastColumn, b.LastColumn);
      r.erase(r.begin() + long(i) + 1);
    } else {
      const int lo = std::min(a.LastColumn, b.LastColumn), hi = std::max(a.LastColumn, b.LastColumn);
      if (hi == lo)
        r.erase(r.begin() + long(i) + 1);
      else
        r[i + 1] = TRLC(lo, hi - 1);
      if (b.FirstColumn <= a.FirstColumn)
        r.erase(r.begin() + long(i));
      else
        r[i].LastColumn = b.FirstColumn - 1;
    }
  }
}

enum Op { eOr, eXor, eAnd };
const char* const kOpNames[] = {"OR", "XOR", "AND"};

Runs refLine(const Runs& a, const Runs& b, Op op) {
  Runs t;
  if (op == eAnd) {
    for (const TRLC& x : a)
      for (const TRLC& y : b) {
        const int lo = std::max(x.FirstColumn, y.FirstColumn), hi = std::min(x.LastColumn, y.LastColumn);
        if (lo <= hi) t.emplace_back(lo, hi);
      }
    return t;
  }
  t = a;
  t.insert(t.end(), b.begin(), b.end());
  refSort(t);
  if (op == eOr)
    refMergeOr(t);
  else
    refMergeXor(t);
  return t;
}

struct RefArray {
  int fl = 0, ll = -1, fc = 0, lc = -1;
  std::vector<Runs> lines;
  const Runs* line(int y) const { return y >= fl && y <= ll ? &lines[y - fl] : nullptr; }
};

RefArray refOf(const TRLCArray& a) { return {a.getFirstLine(), a.getLastLine(), a.getFirstColumn(), a.getLastColumn(), linesOf(a)}; }

RefArray refArray(const RefArray& a, const RefArray& b, Op op) {
  RefArray r;
  if (op == eAnd) {
    const int f = std::max(a.fl, b.fl), l = std::min(a.ll, b.ll);
    if (f > l) return r;
    std::vector<Runs> lines;
    for (int y = f; y <= l; ++y) lines.push_back(refLine(*a.line(y), *b.line(y), eAnd));
    int top = 0, bottom = static_cast<int>(lines.size()) - 1;
    while (top <= bottom && lines[top].empty()) ++top;
    while (bottom >= top && lines[bottom].empty()) --bottom;
    if (top > bottom) return r;
    r.fl = f + top;
    r.ll = f + bottom;
    r.lines.assign(lines.begin() + top, lines.begin() + bottom + 1);
    r.fc = 32767;
    r.lc = -32767;
    for (const Runs& x : r.lines)
      if (!x.empty()) {
        r.fc = std::min(r.fc, x.front().FirstColumn);
        r.lc = std::max(r.lc, x.back().LastColumn);
      }
    return r;
  }
  r.fl = std::min(a.fl, b.fl);
  r.ll = std::max(a.ll, b.ll);
  r.fc = std::min(a.fc, b.fc);
  r.lc = std::max(a.lc, b.lc);
  for (int y = r.fl; y <= r.ll; ++y) {
    Runs line;
    if (const Runs* x = a.line(y)) line = refLine(line, *x, op);
    if (const Runs* x = b.line(y)) line = refLine(line, *x, op);
    r.lines.push_back(line);
  }
  return r;
}

// ---- random regions --------------------------------------------------------

// Normal runs (sorted, with gaps) in about [0, 120).
Runs randomNormal(std::mt19937& g, int maxRuns) {
  Runs r;
  int x = int(g() % 6);
  const int n = int(g() % unsigned(maxRuns + 1));
  for (int i = 0; i < n; ++i) {
    const int w = 1 + int(g() % 12);
    r.emplace_back(x, x + w - 1);
    x += w + 1 + int(g() % 8);
  }
  return r;
}

// Anything: unsorted, overlapping, touching, repeated runs.
Runs randomAny(std::mt19937& g, int maxRuns) {
  Runs r;
  const int n = int(g() % unsigned(maxRuns + 1));
  for (int i = 0; i < n; ++i) {
    const int a = int(g() % 60);
    r.emplace_back(a, a + int(g() % 10));
    if (g() % 5 == 0) r.push_back(r.back());
  }
  return r;
}

TRLCArray randomArray(std::mt19937& g, bool normal) {
  if (g() % 10 == 0) return TRLCArray();
  const int fl = int(g() % 12) - 6;
  const int n = 1 + int(g() % 8);
  std::vector<Runs> lines;
  for (int i = 0; i < n; ++i) lines.push_back(normal ? randomNormal(g, 6) : randomAny(g, 6));
  return makeArray(fl, -2 + int(g() % 4), 100 + int(g() % 30), lines);
}

void expectSame(const TRLCArray& got, const RefArray& want, const char* what, int round) {
  ASSERT_EQ(boxOf(got), (Box{want.fl, want.ll, want.fc, want.lc})) << what << " round " << round;
  ASSERT_EQ(linesOf(got), want.lines) << what << " round " << round;
}

TEST(RLCReference, OperatorsMatchTheSlowMergesOnNormalAndArbitraryRuns) {
  std::mt19937 g(20240611);
  for (int round = 0; round < 3000; ++round) {
    const bool normal = round % 2 == 0;
    const TRLCArray a = randomArray(g, normal), b = randomArray(g, normal);
    const RefArray ra = refOf(a), rb = refOf(b);
    for (Op op : {eOr, eXor, eAnd}) {
      TRLCArray r = a;
      if (op == eOr) r |= b;
      if (op == eXor) r ^= b;
      if (op == eAnd) r &= b;
      expectSame(r, refArray(ra, rb, op), kOpNames[op], round);
    }
  }
}

// ---- the mask reference ----------------------------------------------------

constexpr int kW = 160;  // mask columns [0, kW)
using Mask = std::vector<char>;

Mask maskOf(const Runs& r) {
  Mask m(kW, 0);
  for (const TRLC& x : r) std::fill(m.begin() + x.FirstColumn, m.begin() + x.LastColumn + 1, 1);
  return m;
}

template <class F>
Mask combined(const Mask& a, const Mask& b, F f) {
  Mask m(kW);
  for (int c = 0; c < kW; ++c) m[c] = f(a[c], b[c]);
  return m;
}

Runs runsOfMask(const Mask& m) {
  Runs r;
  for (int c = 0; c < kW; ++c) {
    if (!m[c]) continue;
    int e = c;
    while (e + 1 < kW && m[e + 1]) ++e;
    r.emplace_back(c, e);
    c = e;
  }
  return r;
}

Runs lineOf(const TRLCArray& x, int y) {
  return y >= x.getFirstLine() && y <= x.getLastLine() ? runsOf(static_cast<const TRLCArray&>(x)[y]) : Runs{};
}

TEST(RLCReference, OrAndAndMatchAByteMaskLineByLine) {
  std::mt19937 g(7);
  for (int round = 0; round < 2000; ++round) {
    const TRLCArray a = randomArray(g, true), b = randomArray(g, true);
    TRLCArray o = a, n = a;
    o |= b;
    n &= b;
    long orPixels = 0, andPixels = 0;
    for (int y = std::min(a.getFirstLine(), b.getFirstLine()) - 1; y <= std::max(a.getLastLine(), b.getLastLine()) + 1;
         ++y) {
      const Mask ma = maskOf(lineOf(a, y)), mb = maskOf(lineOf(b, y));
      const Mask mo = combined(ma, mb, [](char p, char q) { return p | q; });
      const Mask mn = combined(ma, mb, [](char p, char q) { return p & q; });
      // Exactly the runs of the mask: normal, no touching runs.
      ASSERT_EQ(lineOf(o, y), runsOfMask(mo)) << "OR line " << y << " round " << round;
      ASSERT_EQ(lineOf(n, y), runsOfMask(mn)) << "AND line " << y << " round " << round;
      orPixels += std::count(mo.begin(), mo.end(), 1);
      andPixels += std::count(mn.begin(), mn.end(), 1);
    }
    ASSERT_EQ(o.pixel(), orPixels);
    ASSERT_EQ(n.pixel(), andPixels);
  }
}

TEST(RLCReference, XorWithoutOverlapsIsTheMaskXor) {
  // Runs of b only in the gaps of a, or equal to runs of a: no partial
  // overlap, so the merge's shift never comes into play.
  std::mt19937 g(11);
  for (int round = 0; round < 2000; ++round) {
    const Runs a = randomNormal(g, 8);
    Runs b;
    int prevEnd = -2;
    for (const TRLC& r : a) {
      const int gapFirst = prevEnd + 2 > 0 ? prevEnd + 2 : 0, gapLast = r.FirstColumn - 2;
      if (gapFirst <= gapLast && g() % 2) {
        const int s = gapFirst + int(g() % unsigned(gapLast - gapFirst + 1));
        b.emplace_back(s, s + int(g() % unsigned(gapLast - s + 1)));
      }
      if (g() % 3 == 0) b.push_back(r);
      prevEnd = r.LastColumn;
    }
    TRLCArray x = makeArray(0, 0, kW, {a});
    x ^= makeArray(0, 0, kW, {b});
    ASSERT_EQ(runsOf(x[0]), runsOfMask(combined(maskOf(a), maskOf(b), [](char p, char q) { return p ^ q; })))
        << "round " << round;
  }
}

TEST(RLCReference, XorOfOneOverlapShiftsThePartBehindIt) {
  // Two overlapping runs: the mask XOR has a head before the common part and
  // a tail behind it; the merge gives the head as it is and the tail moved
  // one column to the left (it keeps the last common column and loses its
  // own last one). A head and a moved tail that touch fuse.
  std::mt19937 g(5);
  for (int round = 0; round < 3000; ++round) {
    const int a0 = int(g() % 40) + 10, a1 = a0 + int(g() % 30);
    const int b0 = int(g() % 40) + 10, b1 = b0 + int(g() % 30);
    if (std::max(a0, b0) > std::min(a1, b1)) continue;  // no overlap
    const Runs a{{a0, a1}}, b{{b0, b1}};
    TRLCArray x = makeArray(0, 0, kW, {a});
    x ^= makeArray(0, 0, kW, {b});

    const Mask mx = combined(maskOf(a), maskOf(b), [](char p, char q) { return p ^ q; });
    Mask want(kW, 0);
    for (int c = 0; c < kW; ++c)
      if (mx[c]) want[c < std::min(a1, b1) ? c : c - 1] = 1;  // the head as it is, the tail one to the left
    ASSERT_EQ(runsOf(x[0]), runsOfMask(want)) << a[0] << " ^ " << b[0];
  }
}

}  // namespace
