// Classifying a 3000 x 4000 float plane into an 8-bit class plane: the
// 4-class threshold classifier and the integral classifier, with the plain
// per-pixel virtual getTyp as the reference loop. Bytes are those read plus
// written (5 per pixel), to be read as a ratio against BM_Memcpy12MP.
#include <benchmark/benchmark.h>

#include <random>

#include "rastrix/TPixelKlassifikatorTypThreshold.h"
#include "rastrix/TPlane.h"

namespace {

using namespace Rastrix;
constexpr int iLines = 3000, iColumns = 4000;

const TPlane<float>& source() {
  static TPlane<float>* p = [] {
    auto* f = new TPlane<float>(iLines, iColumns);
    std::mt19937 rng(3);
    std::uniform_real_distribution<float> d(0, 1000);
    for (int l = 0; l < iLines; ++l)
      for (int c = 0; c < iColumns; ++c) (*f)[l][c] = d(rng);
    return f;
  }();
  return *p;
}

void setBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * int64_t{iLines} * iColumns * 5);
}

// Arg 0: the plane kernel; arg 1: getTyp per pixel.
void BM_Klass_Threshold4Float12MP(benchmark::State& state) {
  const TPlane<float>& f = source();
  TPlane<unsigned char> cls(iLines, iColumns);
  TPixelKlassifikatorTypThreshold<float> k;
  k.resize(4);
  k.vSetThreshold(0, 250);
  k.vSetThreshold(1, 500);
  k.vSetThreshold(2, 750);
  const TPixelKlassifikatorTyp& any = k;
  for (auto _ : state) {
    if (state.range(0) == 0) {
      k.vClassifyPlane(f, cls, false);
    } else {
      for (int l = 0; l < iLines; ++l) {
        const float* s = f[l];
        unsigned char* d = cls[l];
        for (int c = 0; c < iColumns; ++c) d[c] = static_cast<unsigned char>(any.getTyp(s[c], l, c, nullptr));
      }
    }
    benchmark::DoNotOptimize(cls.getMemory());
  }
  setBytes(state);
}
BENCHMARK(BM_Klass_Threshold4Float12MP)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_Klass_Integral12MP(benchmark::State& state) {
  const TPlane<float>& f = source();
  TPlane<unsigned char> cls(iLines, iColumns);
  TPixelKlassifikatorTypThresholdIntegral<float> k;
  k.resize(0);
  k.vSetThreshold(0, 100);
  const unsigned size = static_cast<unsigned>(state.range(0));
  k.vSetIntegralData(size, size, 0.9, false);
  for (auto _ : state) {
    k.vClassifyPlane(f, cls, true);
    benchmark::DoNotOptimize(cls.getMemory());
  }
  setBytes(state);
}
BENCHMARK(BM_Klass_Integral12MP)->Arg(5)->Arg(51)->Unit(benchmark::kMillisecond);

}  // namespace
