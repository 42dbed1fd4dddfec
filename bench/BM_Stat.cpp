// 1000 discs of radius 20 to 40 on a 3000 x 4000 float picture: count, sum,
// sum of squares, min and max per region. The plain walk over the same runs
// is the reference; the statistics run fresh, again with nothing changed,
// and with a 3-class threshold classifier through the label path.
#include <benchmark/benchmark.h>

#include <cfloat>
#include <map>
#include <random>

#include "object98/TObjectList98.h"
#include "rastrix/TPixelKlassifikatorTypThreshold.h"
#include "statistik/TPicStatistikPlaneBasic.h"

namespace {

using namespace Rastrix;

struct Scene {
  TPlane<float> pic{3000, 4000};
  TObjectList98 list;
  Scene() {
    std::mt19937 rng(8);
    std::uniform_real_distribution<float> d(0, 1000);
    for (int l = 0; l < 3000; ++l)
      for (int c = 0; c < 4000; ++c) pic[l][c] = d(rng);
    for (int i = 0; i < 1000; ++i) {
      const int r = 20 + static_cast<int>(rng() % 21);
      const int x = r + static_cast<int>(rng() % (4000 - 2 * r)), y = r + static_cast<int>(rng() % (3000 - 2 * r));
      list.append(TOPointList<int>(eCircle, {{x, y}, {x + r, y}}));
      list.rGetRegion(i);
    }
  }
};

Scene& scene() {
  static Scene* s = new Scene;
  return *s;
}

// Pixels of all regions, for items per second and bytes (4 per pixel) per
// second, read as a ratio against BM_Memcpy12MP.
long scenePixels() {
  static const long n = [] {
    long p = 0;
    for (int i = 0; i < scene().list.size(); ++i) p += scene().list.rGetRegion(i).pixel();
    return p;
  }();
  return n;
}

void setCounters(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * scenePixels());
  state.SetBytesProcessed(state.iterations() * scenePixels() * 4);
}

void BM_Stat_PlainRunWalk1000(benchmark::State& state) {
  Scene& s = scene();
  for (auto _ : state) {
    double total = 0;
    for (int i = 0; i < s.list.size(); ++i) {
      const TRLCArray& r = s.list.rGetRegion(i);
      double n = 0, sum = 0, sum2 = 0, lo = DBL_MAX, hi = -DBL_MAX;
      for (int l = r.getFirstLine(); l <= r.getLastLine(); ++l) {
        const float* row = s.pic[l];
        for (const TRLC& run : r[l])
          for (int c = run.FirstColumn; c <= run.LastColumn; ++c) {
            const double v = row[c];
            n += 1, sum += v, sum2 += v * v;
            lo = v < lo ? v : lo;
            hi = v > hi ? v : hi;
          }
      }
      total += n + sum + sum2 + lo + hi;
    }
    benchmark::DoNotOptimize(total);
  }
  setCounters(state);
}
BENCHMARK(BM_Stat_PlainRunWalk1000)->Unit(benchmark::kMillisecond);

TStatistikBasicVector& vectorOf(TPixelKlassifikator* k) {
  static std::map<TPixelKlassifikator*, TStatistikBasicVector*> all;
  TStatistikBasicVector*& v = all[k];
  if (!v) {
    v = new TStatistikBasicVector;
    Scene& s = scene();
    TResultStatistik r;
    for (int i = 0; i < s.list.size(); ++i) {
      auto st = std::make_unique<TPicStatistikPlaneBasic>(i, &s.pic, &r);
      st->setObject(i, &s.list, false);
      if (k) st->vSetKlassifikator(k);
      v->append(std::move(st));
    }
  }
  return *v;
}

void BM_Stat_Standard1000(benchmark::State& state) {
  TStatistikBasicVector& v = vectorOf(nullptr);
  for (auto _ : state) benchmark::DoNotOptimize(v.bUpdateObjects(false, true, eStatTypStandard));
  setCounters(state);
}
BENCHMARK(BM_Stat_Standard1000)->Unit(benchmark::kMillisecond);

void BM_Stat_Update1000Unchanged(benchmark::State& state) {
  TStatistikBasicVector& v = vectorOf(nullptr);
  v.bUpdateObjects(false, true, eStatTypStandard);
  for (auto _ : state) benchmark::DoNotOptimize(v.bUpdateObjects(true, false, eStatTypStandard));
  setCounters(state);  // the pixels an update would have walked
}
BENCHMARK(BM_Stat_Update1000Unchanged)->Unit(benchmark::kMillisecond);

void BM_Stat_Label1000(benchmark::State& state) {
  static TPixelKlassifikatorTypThreshold<float> k;
  k.resize(3);
  k.vSetThreshold(0, 300);
  k.vSetThreshold(1, 700);
  TStatistikBasicVector& v = vectorOf(&k);
  for (auto _ : state) benchmark::DoNotOptimize(v.bUpdateObjects(false, true, eStatTypStandard));
  setCounters(state);
}
BENCHMARK(BM_Stat_Label1000)->Unit(benchmark::kMillisecond);

}  // namespace
