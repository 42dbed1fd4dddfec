// The regions of 1000 objects (discs, rectangles, polygons) spread over a
// 3000 x 4000 picture, computed through the object list: fresh (every
// object changed) and once more with nothing changed (the cache); and the
// ".oa" file of the list written and read.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <random>

#include "object98/TObjectList98.h"

namespace {

void fill(TObjectList98& l) {
  std::mt19937 rng(21);
  for (int i = 0; i < 1000; ++i) {
    const int x = static_cast<int>(rng() % 3900), y = static_cast<int>(rng() % 2900), s = 10 + static_cast<int>(rng() % 90);
    switch (i % 3) {
      case 0: l.append(TOPointList<int>(eCircle, {{x + s / 2, y + s / 2}, {x + s, y + s / 2}})); break;
      case 1: l.append(TOPointList<int>(eRectangle, {{x, y}, {x + s, y}, {x + s, y + s}, {x, y + s}})); break;
      default: l.append(TOPointList<int>(ePolygon, {{x, y}, {x + s, y + s / 3}, {x + s / 2, y + s}, {x, y + s / 2}})); break;
    }
  }
}

// Each region taken from the list (its box read, so that it is used).
long regions(TObjectList98& l) {
  long n = 0;
  for (int i = 0; i < l.size(); ++i) n += l.rGetRegion(i).size();
  return n;
}

void BM_ObjList_Regions1000Fresh(benchmark::State& state) {
  TObjectList98 l;
  fill(l);
  for (auto _ : state) {
    state.PauseTiming();
    l.setAllTimeStamp();  // every object changed
    state.ResumeTiming();
    benchmark::DoNotOptimize(regions(l));
  }
  state.SetItemsProcessed(state.iterations() * l.size());  // objects
}
BENCHMARK(BM_ObjList_Regions1000Fresh)->Unit(benchmark::kMillisecond);

void BM_ObjList_Regions1000Cached(benchmark::State& state) {
  TObjectList98 l;
  fill(l);
  regions(l);
  for (auto _ : state) benchmark::DoNotOptimize(regions(l));
  state.SetItemsProcessed(state.iterations() * l.size());  // objects
}
BENCHMARK(BM_ObjList_Regions1000Cached)->Unit(benchmark::kMillisecond);

void BM_ObjList_WriteRead1000(benchmark::State& state) {
  TObjectList98 l;
  fill(l);
  const std::string file =
      (std::filesystem::temp_directory_path() / ("kx_bench_" + std::to_string(::getpid()) + ".oa")).string();
  TObjectList98 back;
  for (auto _ : state) {
    l.write(file.c_str());
    back.read(file.c_str(), false);
    benchmark::DoNotOptimize(back.size());
  }
  state.SetItemsProcessed(state.iterations() * l.size());  // objects written and read
  std::filesystem::remove(file);
}
BENCHMARK(BM_ObjList_WriteRead1000)->Unit(benchmark::kMillisecond);

}  // namespace
