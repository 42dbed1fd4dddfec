// The innermost calls of every statistic: addValueLC into a standard result
// (count, sums, extremes and their positions, centre sums) and into a
// 256-bin histogram, fed 12 million values of a 3000 x 4000 picture, in the
// form the statistics use (a run of pixels of a line per call, converted to
// doubles first, the conversion timed too) and value by value. The
// reference loop gathers count, sums, min and max in plain variables.
// Items are values.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "statistik/TResultHist.h"
#include "statistik/TResultStatistik.h"

namespace {

constexpr int iLines = 3000, iColumns = 4000;

const std::vector<float>& values() {
  static const std::vector<float> v = [] {
    std::vector<float> out(std::size_t{iLines} * iColumns);
    std::mt19937 rng(11);
    std::uniform_real_distribution<float> d(0, 256);
    for (float& f : out) f = d(rng);
    return out;
  }();
  return v;
}

// Arg 0: a line per call through the virtual run form; arg 1: value by value.
void feed(TResultBasic& r, const std::vector<float>& v, bool perValue) {
  const float* p = v.data();
  if (perValue) {
    for (int l = 0; l < iLines; ++l)
      for (int c = 0; c < iColumns; ++c) r.addValueLC(*p++, l, c, 1.0, l, c);
    return;
  }
  std::vector<double> line(iColumns);
  for (int l = 0; l < iLines; ++l, p += iColumns) {
    for (int c = 0; c < iColumns; ++c) line[c] = p[c];
    r.addValuesLC(line.data(), iColumns, l, 0, 1.0, 1.0, l, 0);
  }
}

void BM_Result_AddValue(benchmark::State& state) {
  const auto& v = values();
  TResultStatistik r;
  TResultBasic& base = r;
  for (auto _ : state) {
    r.start();
    feed(base, v, state.range(0) != 0);
    r.stop();
    benchmark::DoNotOptimize(r.rRGetXResult().dGetMean());
  }
  state.SetItemsProcessed(state.iterations() * int64_t{iLines} * iColumns);
}
BENCHMARK(BM_Result_AddValue)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_Result_Hist(benchmark::State& state) {
  const auto& v = values();
  TResultHist h;
  h.setHistStartStepStop(0, 1, 256, true);
  for (auto _ : state) {
    h.start();
    feed(h, v, state.range(0) != 0);
    h.stop();
    benchmark::DoNotOptimize(h.rGetEntry(100).rRGetXResult().dGetMean());
  }
  state.SetItemsProcessed(state.iterations() * int64_t{iLines} * iColumns);
}
BENCHMARK(BM_Result_Hist)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The plain loop: count, sum, sum of squares, min and max.
void BM_Result_PlainLoop(benchmark::State& state) {
  const auto& v = values();
  for (auto _ : state) {
    double n = 0, s = 0, s2 = 0, lo = v[0], hi = v[0];
    for (float f : v) {
      const double d = f;
      n += 1, s += d, s2 += d * d;
      lo = d < lo ? d : lo;
      hi = hi < d ? d : hi;
    }
    benchmark::DoNotOptimize(n + s + s2 + lo + hi);
  }
  state.SetItemsProcessed(state.iterations() * int64_t{iLines} * iColumns);
}
BENCHMARK(BM_Result_PlainLoop)->Unit(benchmark::kMillisecond);

}  // namespace
