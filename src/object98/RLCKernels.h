// Run kernels shared by TRLCLine, TRLCArray and TPicture2RLC (private to the
// module). They work on plain run arrays and leave their result in a
// per-thread scratch vector, so that a line operation allocates only the exact
// array it keeps.
//
// Each operation gives exactly what the definition of the line operators
// gives (concatenate, sort, merge; or the nested loop for AND). Lines known to
// be normal take one pass that merges and combines at once; any other line
// goes the long way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "object98/TRLCLine.h"

namespace object98::rlc {

// The order of every sort: ascending first column, the longer run first.
inline bool bBefore(const TRLC& x, const TRLC& y) {
  return x.FirstColumn < y.FirstColumn || (x.FirstColumn == y.FirstColumn && x.LastColumn > y.LastColumn);
}
// The same order as one signed 64-bit key: the first column above, the last
// column inverted below.
inline int64_t iKey(const TRLC& r) {
  return static_cast<int64_t>(static_cast<uint64_t>(static_cast<int64_t>(r.FirstColumn)) << 32 |
                              (0x7fffffffu - static_cast<uint32_t>(r.LastColumn)));
}
// Sorted in that order.
bool bIsSorted(const TRLC* r, int n);
// Normal: every run well formed and a free column between neighbours.
bool bIsNormal(const TRLC* r, int n);

// The result of a kernel: its count, and whether it is known to be normal.
struct TResult {
  int count;
  bool normal;
};

// line (op) other for the three operators, `a` standing for this line. The
// flags say whether a and b are known to be normal. The result is written to
// `o`, which must not overlap a or b and must have room for na + nb runs (OR,
// XOR) or uIntersectRoom runs (AND).
TResult combineOr(const TRLC* a, int na, bool aNormal, const TRLC* b, int nb, bool bNormal, TRLC* o);
TResult combineXor(const TRLC* a, int na, bool aNormal, const TRLC* b, int nb, bool bNormal, TRLC* o);
TResult intersect(const TRLC* a, int na, bool aNormal, const TRLC* b, int nb, bool bNormal, TRLC* o);
// Normal lines give at most na + nb - 1 pieces, others up to na * nb.
inline std::size_t uIntersectRoom(int na, bool aNormal, int nb, bool bNormal) {
  return aNormal && bNormal ? static_cast<std::size_t>(na) + static_cast<std::size_t>(nb)
                            : static_cast<std::size_t>(na) * static_cast<std::size_t>(nb);
}

// `v` with room for n runs; its data.
TRLC* pRoom(std::vector<TRLC>& v, std::size_t n);

// A scratch vector of the calling thread, for one line.
std::vector<TRLC>& rScratch();

}  // namespace object98::rlc
