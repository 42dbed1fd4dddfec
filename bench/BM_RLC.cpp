// Run-length regions: the set operators on two regions of 1000 discs each over
// a 3000 x 4000 picture, against a plain byte-mask OR of the same picture
// (BM_Mask_Or12MP); the polygon rasteriser; a float picture turned into a
// region. The set operations and the mask report one byte per picture pixel,
// so their bytes per second compare directly; the float picture reports its
// bytes, to be read against BM_Memcpy12MP.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "object98/TCircle.h"
#include "object98/TPicture2RLC.h"
#include "object98/TRLCArray.h"
#include "rastrix/TPlane.h"

namespace {

constexpr int kLines = 3000, kColumns = 4000;
constexpr int64_t kPixels = int64_t{kLines} * kColumns;

// 1000 discs of radius 20 to 40, at places fixed by the seed.
TRLCArray discs(uint32_t seed) {
  uint32_t s = seed;
  auto next = [&s]() {
    s = s * 1664525u + 1013904223u;
    return s >> 8;
  };
  std::vector<std::vector<TRLC>> runs(kLines);
  for (int i = 0; i < 1000; ++i) {
    const int r = 20 + static_cast<int>(next() % 21);
    const int x = 40 + static_cast<int>(next() % (kColumns - 80));
    const int y = 40 + static_cast<int>(next() % (kLines - 80));
    const TCircle<int> c(x, y, r);
    for (int l = c.getMinY(); l <= c.getMaxY(); ++l) runs[l].emplace_back(c.getLeftBorder(l), c.getRightBorder(l));
  }
  TRLCArray a(TOPointList<int>(eRectangle, {{0, 0}, {kColumns - 1, 0}, {kColumns - 1, kLines - 1}, {0, kLines - 1}}));
  for (int l = 0; l < kLines; ++l) {
    TRLCLine line;
    line |= TRLCLine(static_cast<int>(runs[l].size()), runs[l].data());  // sorted and merged
    a[l] = std::move(line);
  }
  return a;
}

const TRLCArray& discsA() {
  static const TRLCArray a = discs(1);
  return a;
}
const TRLCArray& discsB() {
  static const TRLCArray b = discs(2);
  return b;
}

template <class Op>
void setOperation(benchmark::State& state, Op op) {
  const TRLCArray& a = discsA();
  const TRLCArray& b = discsB();
  long pixels = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TRLCArray c = a;
    state.ResumeTiming();
    op(c, b);
    benchmark::DoNotOptimize(c);
    state.PauseTiming();
    pixels = c.pixel();
    c.vClear();
    state.ResumeTiming();
  }
  state.counters["result_pixels"] = static_cast<double>(pixels);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kPixels);
}

void BM_RLC_Or1000Discs(benchmark::State& state) {
  setOperation(state, [](TRLCArray& c, const TRLCArray& b) { c |= b; });
}
void BM_RLC_Xor1000Discs(benchmark::State& state) {
  setOperation(state, [](TRLCArray& c, const TRLCArray& b) { c ^= b; });
}
void BM_RLC_And1000Discs(benchmark::State& state) {
  setOperation(state, [](TRLCArray& c, const TRLCArray& b) { c &= b; });
}

// The same picture as byte masks, or-ed in a plain loop.
void BM_Mask_Or12MP(benchmark::State& state) {
  std::vector<unsigned char> a(kPixels), b(kPixels);
  for (int64_t i = 0; i < kPixels; ++i) {
    a[static_cast<std::size_t>(i)] = static_cast<unsigned char>((i / 37) & 1);
    b[static_cast<std::size_t>(i)] = static_cast<unsigned char>((i / 53) & 1);
  }
  for (auto _ : state) {
    unsigned char* pa = a.data();
    const unsigned char* pb = b.data();
    for (int64_t i = 0; i < kPixels; ++i) pa[i] |= pb[i];
    benchmark::DoNotOptimize(a.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kPixels);
}

// A regular 64-corner polygon covering a quarter of the picture.
void BM_RLC_RasterisePolygon(benchmark::State& state) {
  TOPointList<int> p(ePolygon);
  const double radius = std::sqrt(kPixels / 4.0 / (32.0 * std::sin(2.0 * M_PI / 64.0)));
  for (int i = 0; i < 64; ++i) {
    const double a = 2.0 * M_PI * i / 64.0;
    p.append(static_cast<int>(kColumns / 2 + radius * std::cos(a)), static_cast<int>(kLines / 2 + radius * std::sin(a)));
  }
  TRLCArray r;
  for (auto _ : state) {
    r.calcRLCPolygon(p);
    benchmark::DoNotOptimize(r);
  }
  state.counters["region_pixels"] = static_cast<double>(r.pixel());
  state.counters["picture_share"] = static_cast<double>(r.pixel()) / static_cast<double>(kPixels);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * r.pixel());
}

// vFloatPicture2RLC over a 12 MP float picture: a smooth background with the
// 1000 discs of region A brighter; the range picks the discs.
void BM_RLC_FloatPicture2RLC12MP(benchmark::State& state) {
  Rastrix::TPlane<float> p(kLines, kColumns);
  for (int l = 0; l < kLines; ++l) {
    float* row = p[l];
    for (int c = 0; c < kColumns; ++c) row[c] = 0.01f * static_cast<float>((l + c) % 97);
  }
  TPicture2RLC::vRLC2FloatPicture(discsA(), p, 5.0f, 0.0f);
  for (int l = 0; l < kLines; ++l) {
    float* row = p[l];
    for (int c = 0; c < kColumns; ++c) row[c] += 0.01f * static_cast<float>((l * 7 + c) % 89);
  }
  TRLCArray r;
  for (auto _ : state) {
    TPicture2RLC::vFloatPicture2RLC(p, r, 4.5f, 10.0f);
    benchmark::DoNotOptimize(r);
  }
  state.counters["region_pixels"] = static_cast<double>(r.pixel());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kPixels * static_cast<int64_t>(sizeof(float)));
}

}  // namespace

BENCHMARK(BM_Mask_Or12MP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RLC_Or1000Discs)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RLC_Xor1000Discs)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RLC_And1000Discs)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RLC_RasterisePolygon)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RLC_FloatPicture2RLC12MP)->Unit(benchmark::kMillisecond);
