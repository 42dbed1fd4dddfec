// Plane operations on a 3000 x 4000 float plane (48 MB), each reporting the
// bytes of the plane it works on per iteration, so that it reads as a ratio
// against BM_Memcpy12MP.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "rastrix/TPlane.h"

namespace {

using Rastrix::TPlane;

constexpr int iLines = 3000;
constexpr int iColumns = 4000;
constexpr int64_t iPlaneBytes = int64_t{iLines} * iColumns * sizeof(float);

// Pixels that are not all alike, with some zeros among the divisors.
void fillPattern(TPlane<float>& p, int seed) {
  for (int l = 0; l < iLines; ++l) {
    float* row = p[l];
    for (int c = 0; c < iColumns; ++c) row[c] = static_cast<float>((l * 31 + c * 17 + seed) % 1021) - 3.0f;
  }
}

void report(benchmark::State& state) { state.SetBytesProcessed(state.iterations() * iPlaneBytes); }

void BM_Plane_Insert12MP(benchmark::State& state) {
  TPlane<float> src(iLines, iColumns), dst(iLines, iColumns);
  fillPattern(src, 1);
  src.moveTo(100, -7);  // the numbers of the source do not matter to the whole-plane insert
  for (auto _ : state) {
    dst.insert(src);
    benchmark::DoNotOptimize(dst.getMemory());
    benchmark::ClobberMemory();
  }
  report(state);
}
BENCHMARK(BM_Plane_Insert12MP)->Unit(benchmark::kMillisecond);

void BM_Plane_SetRectangle12MP(benchmark::State& state) {
  TPlane<float> p(iLines, iColumns);
  float v = 0.0f;
  for (auto _ : state) {
    p.setRectangle(v);
    v += 1.0f;
    benchmark::DoNotOptimize(p.getMemory());
    benchmark::ClobberMemory();
  }
  report(state);
}
BENCHMARK(BM_Plane_SetRectangle12MP)->Unit(benchmark::kMillisecond);

void BM_Plane_CalcMinMax12MP(benchmark::State& state) {
  TPlane<float> p(iLines, iColumns);
  fillPattern(p, 2);
  float mn = 0.0f, mx = 0.0f;
  for (auto _ : state) {
    p.calcMinMax(mn, mx);
    benchmark::DoNotOptimize(mn);
    benchmark::DoNotOptimize(mx);
  }
  report(state);
}
BENCHMARK(BM_Plane_CalcMinMax12MP)->Unit(benchmark::kMillisecond);

void BM_Plane_Divide12MP(benchmark::State& state) {
  TPlane<float> p(iLines, iColumns), q(iLines, iColumns);
  fillPattern(p, 3);
  fillPattern(q, 4);
  for (auto _ : state) {
    p /= q;
    benchmark::DoNotOptimize(p.getMemory());
    benchmark::ClobberMemory();
  }
  report(state);
}
BENCHMARK(BM_Plane_Divide12MP)->Unit(benchmark::kMillisecond);

void BM_Plane_ScaleDown2x2_12MP(benchmark::State& state) {
  TPlane<float> src(iLines, iColumns), dst(iLines / 2, iColumns / 2);
  fillPattern(src, 5);
  for (auto _ : state) {
    dst.scaleDown(src, 2, 2, false);
    benchmark::DoNotOptimize(dst.getMemory());
    benchmark::ClobberMemory();
  }
  report(state);
}
BENCHMARK(BM_Plane_ScaleDown2x2_12MP)->Unit(benchmark::kMillisecond);

}  // namespace
