// The reference of every benchmark of pixel work: a plain memcpy of a
// 3000 x 4000 float picture (48 MB). Pixel benchmarks report bytes per second
// the same way, so each reads as a ratio against this one in the same run.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

static void BM_Memcpy12MP(benchmark::State& state) {
  const size_t n = 3000u * 4000u;
  std::vector<float> src(n, 1.0f), dst(n, 0.0f);
  for (auto _ : state) {
    std::memcpy(dst.data(), src.data(), n * sizeof(float));
    benchmark::DoNotOptimize(dst.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(n * sizeof(float)));
}
BENCHMARK(BM_Memcpy12MP)->Unit(benchmark::kMillisecond);
