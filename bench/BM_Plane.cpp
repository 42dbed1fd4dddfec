// Planes: the cost of alloc with an unchanged geometry (the capture loop's
// road), row access through operator[] against a plain pointer, and what a
// plane and a view take in memory.
//
// Allocations are counted by replacing the global operator new/delete of
// kxbench (all forms; the counters are relaxed atomics and cost every other
// benchmark one increment per allocation).
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

#include "rastrix/TPlane.h"

// The replaced operators below pair malloc with free themselves; the compiler
// cannot see that through the library's inlined allocators.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

namespace {
std::atomic<std::size_t> gNews{0};
std::atomic<std::size_t> gNewBytes{0};

void* countedAlloc(std::size_t n, std::size_t align) {
  gNews.fetch_add(1, std::memory_order_relaxed);
  gNewBytes.fetch_add(n, std::memory_order_relaxed);
  if (n == 0) n = 1;
  void* p = align <= alignof(std::max_align_t) ? std::malloc(n)
                                               : std::aligned_alloc(align, (n + align - 1) / align * align);
  return p;
}
}  // namespace

void* operator new(std::size_t n) {
  if (void* p = countedAlloc(n, 0)) return p;
  throw std::bad_alloc();
}
void* operator new[](std::size_t n) { return operator new(n); }
void* operator new(std::size_t n, std::align_val_t a) {
  if (void* p = countedAlloc(n, static_cast<std::size_t>(a))) return p;
  throw std::bad_alloc();
}
void* operator new[](std::size_t n, std::align_val_t a) { return operator new(n, a); }
void* operator new(std::size_t n, const std::nothrow_t&) noexcept { return countedAlloc(n, 0); }
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return countedAlloc(n, 0); }
void* operator new(std::size_t n, std::align_val_t a, const std::nothrow_t&) noexcept {
  return countedAlloc(n, static_cast<std::size_t>(a));
}
void* operator new[](std::size_t n, std::align_val_t a, const std::nothrow_t&) noexcept {
  return countedAlloc(n, static_cast<std::size_t>(a));
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept { std::free(p); }

namespace {

constexpr int kLines = 3000;
constexpr int kColumns = 4000;

void BM_Plane_AllocSameGeometry(benchmark::State& state) {
  Rastrix::TPlane<float> p(kLines, kColumns);
  const std::size_t before = gNews.load();
  for (auto _ : state) {
    p.alloc(kLines, kColumns);
    benchmark::DoNotOptimize(p.getLinePtr());
  }
  const std::size_t news = gNews.load() - before;
  state.counters["allocations"] = static_cast<double>(news);
  if (news != 0) state.SkipWithError("alloc with an unchanged geometry allocated memory");
}
BENCHMARK(BM_Plane_AllocSameGeometry);

float rowSum(const float* row, int first, int last) {
  float s = 0.f;
  for (int c = first; c <= last; ++c) s += row[c];
  return s;
}

void BM_Plane_RowWalk12MP(benchmark::State& state) {
  Rastrix::TPlane<float> p(kLines, kColumns, 100, -50, kColumns);
  for (int l = p.getFirstLine(); l <= p.getLastLine(); ++l)
    for (int c = p.getFirstColumn(); c <= p.getLastColumn(); ++c) p[l][c] = 1.0f;
  for (auto _ : state) {
    double sum = 0.0;
    for (int l = p.getFirstLine(); l <= p.getLastLine(); ++l)
      sum += rowSum(p[l], p.getFirstColumn(), p.getLastColumn());
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kLines * kColumns *
                          static_cast<int64_t>(sizeof(float)));
}
BENCHMARK(BM_Plane_RowWalk12MP)->Unit(benchmark::kMillisecond);

void BM_Plane_PointerWalk12MP(benchmark::State& state) {
  std::vector<float> v(static_cast<std::size_t>(kLines) * kColumns, 1.0f);
  for (auto _ : state) {
    double sum = 0.0;
    const float* p = v.data();
    for (int l = 0; l < kLines; ++l, p += kColumns) sum += rowSum(p, 0, kColumns - 1);
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kLines * kColumns *
                          static_cast<int64_t>(sizeof(float)));
}
BENCHMARK(BM_Plane_PointerWalk12MP)->Unit(benchmark::kMillisecond);

// Bytes allocated by alloc of a 3000 x 4000 float plane (pixels plus row
// table), and by making a view of the whole of it (its row table, and the two
// links of the message connection to the shared description).
void BM_Plane_Memory12MP(benchmark::State& state) {
  std::size_t planeBytes = 0, viewBytes = 0;
  for (auto _ : state) {
    Rastrix::TPlane<float> p;
    Rastrix::TPlane<float> view;
    std::size_t b0 = gNewBytes.load();
    p.alloc(kLines, kColumns);
    planeBytes = gNewBytes.load() - b0;
    b0 = gNewBytes.load();
    view.beSubPicture(p, p.getExtension());
    viewBytes = gNewBytes.load() - b0;
    benchmark::DoNotOptimize(view.getLinePtr());
  }
  state.counters["plane_bytes"] = static_cast<double>(planeBytes);
  state.counters["pixel_bytes"] = static_cast<double>(std::size_t(kLines) * kColumns * sizeof(float));
  state.counters["row_table_bytes"] = static_cast<double>(kLines * sizeof(float*));
  state.counters["view_bytes"] = static_cast<double>(viewBytes);
}
BENCHMARK(BM_Plane_Memory12MP)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
