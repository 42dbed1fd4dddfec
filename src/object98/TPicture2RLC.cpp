#include "object98/TPicture2RLC.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include "kxexception/KxError.h"
#include "object98/TRLCBuilder.h"
#include "rastrix/RastrixErrors.h"

using Rastrix::TPlane;

namespace {

constexpr std::size_t kUnknownRoom = std::numeric_limits<std::size_t>::max();

// The runs of the set flags (each 0 or 1) of one line, columns numbered from
// c0, into `runs`; returns their count. Eight flags are tested at a time
// while they are all equal.
int iFlagsToRuns(const unsigned char* f, int n, int c0, TRLC* runs) {
  constexpr uint64_t kAll = 0x0101010101010101ULL;
  auto word = [f](int i) {
    uint64_t w;
    std::memcpy(&w, f + i, sizeof w);
    return w;
  };
  int k = 0, i = 0;
  for (;;) {
    while (i + 8 <= n && word(i) == 0) i += 8;
    while (i < n && !f[i]) ++i;
    if (i >= n) break;
    const int start = i;
    while (i + 8 <= n && word(i) == kAll) i += 8;
    while (i < n && f[i]) ++i;
    runs[k++] = TRLC(start + c0, i - 1 + c0);
  }
  return k;
}

// The box of a region being found: lines exact, columns from +-32767.
struct TExtent {
  int firstIndex = -1, lastIndex = -1;  // line indexes with runs
  int firstColumn = 32767, lastColumn = -32767;
  void add(int index, const TRLC* runs, int k) {
    if (firstIndex < 0) firstIndex = index;
    lastIndex = index;
    firstColumn = std::min(firstColumn, runs[0].FirstColumn);
    lastColumn = std::max(lastColumn, runs[k - 1].LastColumn);
  }
};

}  // namespace

void TPicture2RLC::vFloatPicture2RLC(const TPlane<float>& plane, TRLCArray& result, float lower, float upper) {
  KX_TRY {
    if (!plane.isValid()) return;  // nothing found: the result stays
    const int lines = plane.getLines(), cols = plane.getColumns();
    const int line0 = plane.getFirstLine(), c0 = plane.getFirstColumn();
    std::unique_ptr<unsigned char[]> flags(new unsigned char[static_cast<std::size_t>(cols)]);
    std::unique_ptr<TRLC[]> runs(new TRLC[static_cast<std::size_t>(cols / 2 + 1)]);
    TRLCArray::TBuilder builder(lines, kUnknownRoom);
    TExtent ext;
    for (int i = 0; i < lines; ++i) {
      const float* row = plane[line0 + i] + c0;
      unsigned char* f = flags.get();
#pragma omp simd
      for (int c = 0; c < cols; ++c) f[c] = static_cast<unsigned char>((lower <= row[c]) & (row[c] <= upper));
      const int k = iFlagsToRuns(f, cols, c0, runs.get());
      if (k > 0) {
        std::memcpy(builder.pRoom(static_cast<std::size_t>(k)), runs.get(), static_cast<std::size_t>(k) * sizeof(TRLC));
        ext.add(i, runs.get(), k);
      }
      builder.vEndLine(k, TRLCLine::eNormal);
    }
    if (ext.firstIndex < 0) return;  // nothing found: the result stays
    TRLCArray found;
    builder.vFinish(found, ext.firstIndex, ext.lastIndex);
    found.FirstLine = line0 + ext.firstIndex;
    found.LastLine = line0 + ext.lastIndex;
    found.FirstColumn = ext.firstColumn;
    found.LastColumn = ext.lastColumn;
    result = std::move(found);
  }
  KX_CATCH
}

void TPicture2RLC::vTransform256(const TPlane<unsigned char>& plane, std::vector<TRLCArray>& result,
                                 unsigned char upper, unsigned char lower) {
  KX_TRY {
    if (!plane.isValid()) KX_THROW(Rastrix::Err::ulPlaneNotValid, "TPicture2RLC::vTransform256");
    unsigned char mn = 0, mx = 0;
    plane.calcMinMax(mn, mx);
    lower = std::max(lower, mn);
    upper = std::min(upper, mx);
    result.resize(static_cast<std::size_t>(upper) + 1);
    for (TRLCArray& r : result) r.vClear();
    if (lower > upper) return;

    // One pass over the plane for all grey values at once: each value gets
    // its builder at the first line where it occurs.
    const int lines = plane.getLines(), cols = plane.getColumns();
    const int line0 = plane.getFirstLine(), c0 = plane.getFirstColumn();
    struct TValue {
      std::unique_ptr<TRLCArray::TBuilder> builder;
      int firstIndex = 0;  // the line index the builder starts at
      TExtent ext;
      std::vector<TRLC> runs;  // of the current line
    };
    std::vector<TValue> values(static_cast<std::size_t>(upper - lower) + 1);
    std::vector<int> active;  // values with a builder, by index into `values`
    for (int i = 0; i < lines; ++i) {
      const unsigned char* row = plane[line0 + i] + c0;
      for (int c = 0; c < cols;) {
        const unsigned char v = row[c];
        int e = c + 1;
        while (e < cols && row[e] == v) ++e;
        if (v >= lower && v <= upper) {
          TValue& t = values[static_cast<std::size_t>(v - lower)];
          if (!t.builder) {
            t.builder = std::make_unique<TRLCArray::TBuilder>(lines - i, kUnknownRoom);
            t.firstIndex = i;
            active.push_back(v - lower);
          }
          t.runs.emplace_back(c + c0, e - 1 + c0);
        }
        c = e;
      }
      for (int a : active) {
        TValue& t = values[static_cast<std::size_t>(a)];
        const int k = static_cast<int>(t.runs.size());
        if (k > 0) {
          std::memcpy(t.builder->pRoom(static_cast<std::size_t>(k)), t.runs.data(),
                      static_cast<std::size_t>(k) * sizeof(TRLC));
          t.ext.add(i, t.runs.data(), k);
          t.runs.clear();
        }
        t.builder->vEndLine(k, TRLCLine::eNormal);
      }
    }
    for (int a : active) {
      TValue& t = values[static_cast<std::size_t>(a)];
      TRLCArray& r = result[static_cast<std::size_t>(a + lower)];
      t.builder->vFinish(r, t.ext.firstIndex - t.firstIndex, t.ext.lastIndex - t.firstIndex);
      r.FirstLine = line0 + t.ext.firstIndex;
      r.LastLine = line0 + t.ext.lastIndex;
      r.FirstColumn = t.ext.firstColumn;
      r.LastColumn = t.ext.lastColumn;
      r.TimeStamp.set();
    }
  }
  KX_CATCH
}

void TPicture2RLC::vRLC2FloatPicture(const TRLCArray& rlc, TPlane<float>& plane, float inside, float outside) {
  KX_TRY {
    if (!plane.isValid()) KX_THROW(Rastrix::Err::ulPlaneNotValid, "TPicture2RLC::vRLC2FloatPicture");
    const int c0 = plane.getFirstColumn(), c1 = plane.getLastColumn();
    for (int l = plane.getFirstLine(); l <= plane.getLastLine(); ++l) plane._setLine(outside, l, c0, c1);
    const int first = std::max(rlc.getFirstLine(), plane.getFirstLine());
    const int last = std::min(rlc.getLastLine(), plane.getLastLine());
    for (int y = first; y <= last; ++y)
      for (const TRLC& r : rlc[y]) {
        const int a = std::max(r.FirstColumn, c0), b = std::min(r.LastColumn, c1);
        if (a <= b) plane._setLine(inside, y, a, b);
      }
    plane.setTimeStamp();
    // The call the system has always made: a null date, which is now.
    plane.vSetDateTime(nullptr);
    plane.vSendCommonMessage(51, 0);
  }
  KX_CATCH
}
