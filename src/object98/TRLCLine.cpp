#include "object98/TRLCLine.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "kxexception/KxError.h"
#include "object98/Object98Errors.h"
#include "object98/RLCKernels.h"

namespace object98::rlc {

// The checks run to the end instead of stopping at the first fault: lines are
// almost always fine, and a loop without an exit is cheaper.
bool bIsSorted(const TRLC* r, int n) {
  bool bad = false;
  for (int i = 1; i < n; ++i) bad |= iKey(r[i]) < iKey(r[i - 1]);
  return !bad;
}

bool bIsNormal(const TRLC* r, int n) {
  bool bad = false;
  for (int i = 0; i < n; ++i) bad |= r[i].FirstColumn > r[i].LastColumn;
  for (int i = 1; i < n; ++i) bad |= static_cast<long long>(r[i - 1].LastColumn) + 1 >= r[i].FirstColumn;
  return !bad;
}

namespace {

// a ++ b in the sort order. Sorted arrays are merged: that gives the same
// sequence as sorting their concatenation, since equal keys are equal runs.
// Which side comes next is as good as random in real regions, so the merge
// does not branch on it.
int iSortedUnion(const TRLC* a, int na, const TRLC* b, int nb, TRLC* o) {
  const int n = na + nb;
  if (bIsSorted(a, na) && bIsSorted(b, nb)) {
    int i = 0, j = 0, k = 0;
    while (i < na && j < nb) {
      const TRLC x = a[i], y = b[j];
      const bool takeB = iKey(y) < iKey(x);
      o[k++] = takeB ? y : x;
      j += takeB;
      i += !takeB;
    }
    while (i < na) o[k++] = a[i++];
    while (j < nb) o[k++] = b[j++];
  } else {
    std::copy(a, a + na, o);
    std::copy(b, b + nb, o + na);
    TRLCLine::sortRLC(n, o);
  }
  return n;
}

// The exclusive-or merge over a stream of sorted runs. It holds a pair (a, b)
// of neighbours: everything before a is final, everything after b is not read
// yet. A run that is removed or changed is tested again against its new
// neighbour, never against an earlier one, so one pass suffices. `next(x)`
// gives the next run, false at the end. Output may go to the array being
// read: a run is written only to a place already read.
template <class Next>
int iXorStream(Next&& next, TRLC* out) {
  TRLC a{}, b{};
  if (!next(a)) return 0;
  bool haveA = true, haveB = false;
  int w = 0;
  for (;;) {
    if (!haveA) {
      if (!next(a)) break;
      haveA = true;
    }
    if (!haveB) {
      if (!next(b)) break;
      haveB = true;
    }
    const long long aEnd = static_cast<long long>(a.LastColumn) + 1;
    if (aEnd < b.FirstColumn) {  // apart: a is final
      out[w++] = a;
      a = b;
      haveB = false;
    } else if (aEnd == b.FirstColumn) {  // touching: fuse
      a.LastColumn = std::max(a.LastColumn, b.LastColumn);
      haveB = false;
    } else {  // overlapping
      const int lo = std::min(a.LastColumn, b.LastColumn);
      const int hi = std::max(a.LastColumn, b.LastColumn);
      const int bFirst = b.FirstColumn;
      // (lo, hi - 1) and not (lo + 1, hi): the column lo, in both operands,
      // stays and hi drops out. Kept as it is; regions stored by the system
      // were made this way.
      if (hi == lo) {
        haveB = false;
      } else {
        b = TRLC(lo, hi - 1);
      }
      if (bFirst <= a.FirstColumn) {  // a removed
        if (haveB) {
          a = b;
          haveB = false;
        } else {
          haveA = false;
        }
      } else {
        a.LastColumn = bFirst - 1;
      }
    }
  }
  if (haveA) out[w++] = a;
  return w;
}

// The union of two normal lines in one pass: the merge and merge_OR_RLC at
// once. `cur` is the run being grown. Runs are well formed, so a fused run's
// end is the larger end. (Plain branches: in real regions they predict well
// and keep the loads off the chain of dependencies, which makes them faster
// here than selection by masks.)
int iOrNormal(const TRLC* a, int na, const TRLC* b, int nb, TRLC* o) {
  const TRLC* ea = a + na;
  const TRLC* eb = b + nb;
  TRLC* const start = o;
  TRLC cur;
  if (b == eb || (a != ea && a->FirstColumn <= b->FirstColumn)) {
    cur = *a++;
  } else {
    cur = *b++;
  }
  auto push = [&](const TRLC x) {
    if (x.FirstColumn <= static_cast<long long>(cur.LastColumn) + 1) {
      if (x.LastColumn > cur.LastColumn) cur.LastColumn = x.LastColumn;
    } else {
      *o++ = cur;
      cur = x;
    }
  };
  while (a != ea && b != eb) {
    if (b->FirstColumn < a->FirstColumn) {
      push(*b++);
    } else {
      push(*a++);
    }
  }
  while (a != ea) push(*a++);
  while (b != eb) push(*b++);
  *o++ = cur;
  return static_cast<int>(o - start);
}

// a when c, else b, by masking (no branch).
inline int iSel(bool c, int a, int b) { return b ^ ((a ^ b) & -static_cast<int>(c)); }

// One step of iXorNormal: the pending run p (valid unless a pair of
// identical runs removed both) meets the next run x. The steps of
// iXorStream, with the comparison of a changed pair resolved at once: runs
// are well formed, so after an overlap the head (p.first, x.first - 1)
// either touches the moved tail (lo, hi - 1) or ends before it. "Apart" is a
// branch, as in the union; what follows an overlap is computed by masks,
// since its cases follow no pattern; equal columns take a rare branch.
inline void vXorStep(TRLC& p, bool& valid, const TRLC x, TRLC*& o) {
  if (!valid) [[unlikely]] {
    p = x;
    valid = true;
    return;
  }
  const int pf = p.FirstColumn, pl = p.LastColumn, xf = x.FirstColumn, xl = x.LastColumn;
  const long long pEnd = static_cast<long long>(pl) + 1;
  if (pEnd < xf) {  // apart: p is final
    *o++ = p;
    p = x;
    return;
  }
  const bool overlap = pEnd > xf;  // else touching: they fuse
  const bool xShorter = xl < pl;
  const int lo = iSel(xShorter, xl, pl);
  const int hi = iSel(xShorter, pl, xl);
  if ((overlap & ((xf <= pf) | (lo == hi))) != 0) [[unlikely]] {
    if (xf > pf) {
      p.LastColumn = xf - 1;  // the tail goes
    } else if (lo == hi) {
      valid = false;  // both go
    } else {
      p = TRLC(lo, hi - 1);  // the head goes
    }
    return;
  }
  // The head is final unless the moved tail touches it. (lo, hi - 1): the
  // column lo stays and hi drops out; kept as it is.
  const bool split = overlap & (lo != xf);
  o->FirstColumn = pf;
  o->LastColumn = xf - 1;
  o += split;
  p.FirstColumn = iSel(split, lo, pf);
  p.LastColumn = iSel(overlap, hi - 1, xl);
}

// The exclusive-or merge of two normal lines in one pass, merged by the sort
// order as it goes.
int iXorNormal(const TRLC* a, int na, const TRLC* b, int nb, TRLC* o) {
  const TRLC* ea = a + na;
  const TRLC* eb = b + nb;
  TRLC* const start = o;
  TRLC p;
  if (a == ea || (b != eb && bBefore(*b, *a))) {
    p = *b++;
  } else {
    p = *a++;
  }
  bool valid = true;
  while (a != ea && b != eb) {
    if (bBefore(*b, *a)) {
      vXorStep(p, valid, *b++, o);
    } else {
      vXorStep(p, valid, *a++, o);
    }
  }
  while (a != ea) vXorStep(p, valid, *a++, o);
  while (b != eb) vXorStep(p, valid, *b++, o);
  if (valid) *o++ = p;
  return static_cast<int>(o - start);
}

}  // namespace

TResult combineOr(const TRLC* a, int na, bool aNormal, const TRLC* b, int nb, bool bNormal, TRLC* o) {
  if (na + nb == 0) return {0, true};
  if (aNormal && bNormal) return {iOrNormal(a, na, b, nb, o), true};
  const int n = TRLCLine::merge_OR_RLC(iSortedUnion(a, na, b, nb, o), o);
  return {n, bIsNormal(o, n)};
}

TResult combineXor(const TRLC* a, int na, bool aNormal, const TRLC* b, int nb, bool bNormal, TRLC* o) {
  if (na + nb == 0) return {0, true};
  // Two normal lines give a normal result.
  if (aNormal && bNormal) return {iXorNormal(a, na, b, nb, o), true};
  const int n = TRLCLine::merge_XOR_RLC(iSortedUnion(a, na, b, nb, o), o);
  return {n, bIsNormal(o, n)};
}

TResult intersect(const TRLC* a, int na, bool aNormal, const TRLC* b, int nb, bool bNormal, TRLC* o) {
  if (na == 0 || nb == 0) return {0, true};
  int k = 0;
  if (aNormal && bNormal) {
    // Ordered and disjoint: the overlaps come out in the order of the nested
    // loop below, in one pass, and at most na + nb - 1 of them. The pieces
    // keep the gaps of both lines, so they are normal again.
    const TRLC* ea = a + na;
    const TRLC* eb = b + nb;
    TRLC* const start = o;
    while (a != ea && b != eb) {
      if (a->LastColumn < b->FirstColumn) {
        ++a;
      } else if (b->LastColumn < a->FirstColumn) {
        ++b;
      } else {
        *o++ = TRLC(std::max(a->FirstColumn, b->FirstColumn), std::min(a->LastColumn, b->LastColumn));
        if (a->LastColumn < b->LastColumn) {
          ++a;
        } else if (b->LastColumn < a->LastColumn) {
          ++b;
        } else {
          ++a;
          ++b;
        }
      }
    }
    return {static_cast<int>(o - start), true};
  }
  for (int i = 0; i < na; ++i)
    for (int j = 0; j < nb; ++j) {
      const int lo = std::max(a[i].FirstColumn, b[j].FirstColumn);
      const int hi = std::min(a[i].LastColumn, b[j].LastColumn);
      if (lo <= hi) o[k++] = TRLC(lo, hi);
    }
  return {k, bIsNormal(o, k)};
}

TRLC* pRoom(std::vector<TRLC>& v, std::size_t n) {
  if (v.size() < n) v.resize(n);
  return v.data();
}

std::vector<TRLC>& rScratch() {
  thread_local std::vector<TRLC> scratch;
  return scratch;
}

}  // namespace object98::rlc

using namespace object98;

TRLCLine::TRLCLine(int count, const TRLC* runs) {
  if (count > 0 && runs == nullptr) KX_THROW(ulRLCRunIndex, "TRLCLine(Count=%d) without runs", count);
  _vSetRuns(count, runs);
}

TRLCLine::TRLCLine(const TRLCLine& o) { _vSetRuns(o.Size, o.Begin, o.State); }

TRLCLine::TRLCLine(TRLCLine&& o) {
  if (o.Owned) {
    _vTake(o);
  } else {
    _vSetRuns(o.Size, o.Begin, o.State);  // borrowed runs stay with their array
    o._vSetRuns(0, nullptr);
  }
}

TRLCLine& TRLCLine::operator=(const TRLCLine& o) {
  if (this != &o) _vSetRuns(o.Size, o.Begin, o.State);
  return *this;
}

TRLCLine& TRLCLine::operator=(TRLCLine&& o) {
  if (this != &o) {
    if (o.Owned) {
      vFreeOwn();
      _vTake(o);
    } else {
      _vSetRuns(o.Size, o.Begin, o.State);
      o._vSetRuns(0, nullptr);
    }
  }
  return *this;
}

void TRLCLine::_vSetRuns(int count, const TRLC* runs, signed char state) {
  TRLC* a = nullptr;
  if (count > 0) {
    a = static_cast<TRLC*>(std::malloc(static_cast<std::size_t>(count) * sizeof(TRLC)));
    if (!a) throw std::bad_alloc();
    std::memcpy(a, runs, static_cast<std::size_t>(count) * sizeof(TRLC));
  }
  vFreeOwn();  // after the copy: `runs` may be this line's own
  Begin = a;
  Owned = a != nullptr;
  Size = count > 0 ? count : 0;
  State = count > 0 ? state : static_cast<signed char>(eNormal);
}

void TRLCLine::_vBorrow(int count, TRLC* runs, signed char state) {
  vFreeOwn();
  if (count <= 0) {
    Begin = nullptr;
    Size = 0;
    State = eNormal;
    return;
  }
  Begin = runs;
  Size = count;
  State = state;
}

void TRLCLine::_vTake(TRLCLine& o) noexcept {
  Begin = std::exchange(o.Begin, nullptr);
  Size = std::exchange(o.Size, 0);
  State = std::exchange(o.State, eNormal);
  Owned = std::exchange(o.Owned, false);
}

bool TRLCLine::_bFindNormal() const {
  State = rlc::bIsNormal(Begin, Size) ? eNormal : eNotNormal;
  return State == eNormal;
}

TRLC& TRLCLine::operator[](int index) {
  if (index < 0 || index >= Size)
    KX_THROW(ulRLCRunIndex, "Index=%d Size=%d (Index>=0, Index<Size)", index, Size);
  State = eUnknown;
  return Begin[index];
}

const TRLC& TRLCLine::operator[](int index) const {
  if (index < 0 || index >= Size)
    KX_THROW(ulRLCRunIndex, "Index=%d Size=%d (Index>=0, Index<Size)", index, Size);
  return Begin[index];
}

long TRLCLine::pixel() const {
  long n = 0;
  for (const TRLC& r : *this) n += static_cast<long>(r.LastColumn) - r.FirstColumn + 1;
  return n;
}

int TRLCLine::getFirstColumn() const {
  if (Size <= 0) KX_THROW(ulRLCEmptyLine, "Size>0");
  return Begin[0].FirstColumn;
}

int TRLCLine::getLastColumn() const {
  if (Size <= 0) KX_THROW(ulRLCEmptyLine, "Size>0");
  return Begin[Size - 1].LastColumn;
}

void TRLCLine::offsetX(int dx) {
  for (int i = 0; i < Size; ++i) Begin[i].offsetX(dx);
}

TRLCLine& TRLCLine::operator|=(const TRLCLine& other) {
  TRLC* out = rlc::pRoom(rlc::rScratch(), static_cast<std::size_t>(Size + other.Size));
  const auto r = rlc::combineOr(begin(), Size, bIsNormal(), other.begin(), other.Size, other.bIsNormal(), out);
  _vSetRuns(r.count, out, r.normal ? eNormal : eUnknown);
  return *this;
}

TRLCLine& TRLCLine::operator^=(const TRLCLine& other) {
  TRLC* out = rlc::pRoom(rlc::rScratch(), static_cast<std::size_t>(Size + other.Size));
  const auto r = rlc::combineXor(begin(), Size, bIsNormal(), other.begin(), other.Size, other.bIsNormal(), out);
  _vSetRuns(r.count, out, r.normal ? eNormal : eUnknown);
  return *this;
}

TRLCLine& TRLCLine::operator&=(const TRLCLine& other) {
  TRLC* out = rlc::pRoom(rlc::rScratch(), rlc::uIntersectRoom(Size, bIsNormal(), other.Size, other.bIsNormal()));
  const auto r = rlc::intersect(begin(), Size, bIsNormal(), other.begin(), other.Size, other.bIsNormal(), out);
  _vSetRuns(r.count, out, r.normal ? eNormal : eUnknown);
  return *this;
}

void TRLCLine::sortRLC(int count, TRLC* runs) {
  if (count > 1) std::sort(runs, runs + count, rlc::bBefore);
}

int TRLCLine::merge_OR_RLC(int count, TRLC* r) {
  if (count < 2) return count < 0 ? 0 : count;
  int w = 0;
  for (int i = 1; i < count; ++i) {
    if (static_cast<long long>(r[w].LastColumn) + 1 >= r[i].FirstColumn) {
      r[w].LastColumn = std::max(r[w].LastColumn, r[i].LastColumn);
    } else {
      r[++w] = r[i];
    }
  }
  return w + 1;
}

int TRLCLine::merge_XOR_RLC(int count, TRLC* r) {
  if (count < 2) return count < 0 ? 0 : count;
  int k = 0;
  auto next = [&](TRLC& x) {
    if (k >= count) return false;
    x = r[k++];
    return true;
  };
  return rlc::iXorStream(next, r);
}
