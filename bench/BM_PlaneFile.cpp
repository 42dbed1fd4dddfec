// Plane files of a 3000 x 4000 float plane (48 MB) on tmpfs (/dev/shm),
// against a plain write()/read() of the same bytes; and the text export of a
// 1000 x 1000 float plane (bytes per second of text).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

#include "rastrix/TPlane.h"

namespace {

using Rastrix::TPlane;
constexpr int iLines = 3000, iColumns = 4000;
constexpr int64_t iBytes = int64_t{iLines} * iColumns * sizeof(float);

std::string tmpfsName(const char* stem) {
  const char* dir = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
  return std::string(dir) + "/" + stem + std::to_string(::getpid());
}

void BM_PlaneFile_Write12MP(benchmark::State& state) {
  TPlane<float> p(iLines, iColumns);
  p.setRectangle(1.5f);
  const std::string name = tmpfsName("kx_bench_plane.pf");
  for (auto _ : state) p.writeFile(name.c_str(), true);
  ::unlink(name.c_str());
  state.SetBytesProcessed(state.iterations() * iBytes);
}
BENCHMARK(BM_PlaneFile_Write12MP)->Unit(benchmark::kMillisecond);

void BM_PlaneFile_Read12MP(benchmark::State& state) {
  TPlane<float> p(iLines, iColumns);
  p.setRectangle(1.5f);
  const std::string name = tmpfsName("kx_bench_plane_r.pf");
  p.writeFile(name.c_str(), true);
  TPlane<float> q(iLines, iColumns);
  for (auto _ : state) q.readFile(name.c_str(), true);
  ::unlink(name.c_str());
  state.SetBytesProcessed(state.iterations() * iBytes);
}
BENCHMARK(BM_PlaneFile_Read12MP)->Unit(benchmark::kMillisecond);

// The plain reference: the same bytes with one write() into a new file and
// one read() back.
void BM_PlaneFile_RawWrite12MP(benchmark::State& state) {
  std::vector<float> v(static_cast<std::size_t>(iLines) * iColumns, 1.5f);
  const std::string name = tmpfsName("kx_bench_raw.bin");
  for (auto _ : state) {
    ::unlink(name.c_str());
    const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    benchmark::DoNotOptimize(::write(fd, v.data(), static_cast<std::size_t>(iBytes)));
    ::close(fd);
  }
  ::unlink(name.c_str());
  state.SetBytesProcessed(state.iterations() * iBytes);
}
BENCHMARK(BM_PlaneFile_RawWrite12MP)->Unit(benchmark::kMillisecond);

void BM_PlaneFile_RawRead12MP(benchmark::State& state) {
  std::vector<float> v(static_cast<std::size_t>(iLines) * iColumns, 1.5f);
  const std::string name = tmpfsName("kx_bench_raw_r.bin");
  int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  benchmark::DoNotOptimize(::write(fd, v.data(), static_cast<std::size_t>(iBytes)));
  ::close(fd);
  for (auto _ : state) {
    fd = ::open(name.c_str(), O_RDONLY);
    benchmark::DoNotOptimize(::read(fd, v.data(), static_cast<std::size_t>(iBytes)));
    ::close(fd);
  }
  ::unlink(name.c_str());
  state.SetBytesProcessed(state.iterations() * iBytes);
}
BENCHMARK(BM_PlaneFile_RawRead12MP)->Unit(benchmark::kMillisecond);

void BM_PlaneFile_Text1MP(benchmark::State& state) {
  TPlane<float> p(1000, 1000);
  for (int l = 0; l < 1000; ++l)
    for (int c = 0; c < 1000; ++c) p[l][c] = static_cast<float>(l * 0.37 + c * 1.1);
  const std::string name = tmpfsName("kx_bench_plane.txt");
  int64_t bytes = 0;
  for (auto _ : state) {
    p.vPic2AsciiFile(name.c_str(), true, false);
    state.PauseTiming();
    const int fd = ::open(name.c_str(), O_RDONLY);
    bytes += ::lseek(fd, 0, SEEK_END);
    ::close(fd);
    state.ResumeTiming();
  }
  ::unlink(name.c_str());
  state.SetBytesProcessed(bytes);
}
BENCHMARK(BM_PlaneFile_Text1MP)->Unit(benchmark::kMillisecond);

}  // namespace
