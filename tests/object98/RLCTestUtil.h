// Helpers of the region tests: building arrays from plain run lists, reading
// them back, and catching error codes.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kxexception/KxError.h"
#include "object98/TRLCArray.h"

namespace rlctest {

using Runs = std::vector<TRLC>;

inline Runs runsOf(const TRLCLine& l) { return Runs(l.begin(), l.end()); }

// A region with the given box whose line FirstLine + i has lines[i]
// (exactly as given: neither sorted nor merged).
inline TRLCArray makeArray(int firstLine, int firstColumn, int lastColumn, const std::vector<Runs>& lines) {
  TRLCArray a;
  if (lines.empty()) return a;
  const int lastLine = firstLine + static_cast<int>(lines.size()) - 1;
  a.calcRLCRect(TOPointList<int>(eRectangle, {{firstColumn, firstLine},
                                              {lastColumn, firstLine},
                                              {lastColumn, lastLine},
                                              {firstColumn, lastLine}}));
  for (int i = 0; i < static_cast<int>(lines.size()); ++i)
    a[firstLine + i] = TRLCLine(static_cast<int>(lines[i].size()), lines[i].data());
  return a;
}

struct Box {
  int fl, ll, fc, lc;
  bool operator==(const Box&) const = default;
};
inline Box boxOf(const TRLCArray& a) {
  return {a.getFirstLine(), a.getLastLine(), a.getFirstColumn(), a.getLastColumn()};
}
inline std::ostream& operator<<(std::ostream& o, const Box& b) {
  return o << "[" << b.fl << ".." << b.ll << " x " << b.fc << ".." << b.lc << "]";
}

// The lines of the box as run lists.
inline std::vector<Runs> linesOf(const TRLCArray& a) {
  std::vector<Runs> v;
  const TRLCArray& c = a;
  for (int y = c.getFirstLine(); y <= c.getLastLine(); ++y) v.push_back(runsOf(c[y]));
  return v;
}

// Runs `f` and returns the error code it raised (0: none), ending the chain.
template <class F>
unsigned long codeOf(F&& f) {
  try {
    f();
  } catch (unsigned long code) {
    kx::deleteError();
    return code;
  }
  return 0;
}

// The text of the chain `f` raised, ending it.
template <class F>
std::string chainOf(F&& f) {
  try {
    f();
  } catch (unsigned long) {
    std::string s = kx::formatErrorChain();
    kx::deleteError();
    return s;
  }
  return {};
}

}  // namespace rlctest

inline std::ostream& operator<<(std::ostream& o, const TRLC& r) {
  return o << "(" << r.FirstColumn << "," << r.LastColumn << ")";
}
