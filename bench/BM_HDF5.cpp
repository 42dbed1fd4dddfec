// The HDF5 object layer against the bare HDF5 C API, in the same binary.
//
// BM_H5_WriteRead12MP and BM_H5_CApiWriteRead12MP do the same work per
// iteration: create a data base file with a 1024-byte user block, create a
// 3000 x 4000 float data set, write it, read it back, close and remove the
// file. Bytes processed count the write and the read (2 x 48 MB), so both
// read as ratios against BM_Memcpy12MP and against each other. Like the
// reference, they are timed in CPU time: the file goes to the page cache,
// and wall time on a shared machine mostly measures the neighbours.
//
// BM_H5_Small1000: 1000 data sets of 10 x 10 floats with one attribute each,
// created, written and read back through the facade; "s/object" is the time
// per object.
#include <benchmark/benchmark.h>
#include <hdf5.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "HDF5/TH5Database.h"
#include "HDF5/TH5General.h"
#include "kxexception/KxError.h"

namespace {
constexpr hsize_t kLines = 3000, kColumns = 4000;

std::string benchFile(const char* name) {
  const char* dir = std::getenv("TMPDIR");
  return std::string(dir && *dir ? dir : "/tmp") + "/" + name + std::to_string(::getpid()) + ".h5";
}

std::vector<float> picture() {
  std::vector<float> v(kLines * kColumns);
  for (size_t i = 0; i < v.size(); ++i) v[i] = static_cast<float>(i % 4093) * 0.25f;
  return v;
}
}  // namespace

static void BM_H5_WriteRead12MP(benchmark::State& state) {
  const std::string name = benchFile("kxbench-h5-");
  const auto src = picture();
  std::vector<float> dst(src.size());
  TH5Database* db = TH5Database::pOpenHDF5();
  try {
    for (auto _ : state) {
      ::unlink(name.c_str());
      TH5File* f = db->pCreateFile(name.c_str(), "bench");
      TH5General g(f, false);
      g.vCreate2(kLines, kColumns, TH5Type::eFloat, "/Plane/bench.pf/Content", false);
      g.vWrite(src.data(), "/Plane/bench.pf/Content");
      g.vRead("/Plane/bench.pf/Content", dst.data());
      benchmark::DoNotOptimize(dst.data());
      db->vCloseFile("bench");
    }
  } catch (unsigned long) {
    state.SkipWithError(kx::formatErrorChain().c_str());
    kx::deleteError();
  }
  TH5Database::vCloseHDF5(&db);
  ::unlink(name.c_str());
  if (dst != src) state.SkipWithError("read back differs");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 2 * static_cast<int64_t>(src.size() * 4));
}
BENCHMARK(BM_H5_WriteRead12MP)->Unit(benchmark::kMillisecond);

static void BM_H5_CApiWriteRead12MP(benchmark::State& state) {
  const std::string name = benchFile("kxbench-capi-");
  const auto src = picture();
  std::vector<float> dst(src.size());
  H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  bool ok = true;
  for (auto _ : state) {
    ::unlink(name.c_str());
    const hid_t fcpl = H5Pcreate(H5P_FILE_CREATE);
    H5Pset_userblock(fcpl, 1024);
    const hid_t f = H5Fcreate(name.c_str(), H5F_ACC_TRUNC, fcpl, H5P_DEFAULT);
    H5Pclose(fcpl);
    const hid_t plane = H5Gcreate2(f, "Plane", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    const hid_t group = H5Gcreate2(plane, "bench.pf", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    const hsize_t dims[2] = {kLines, kColumns};
    const hid_t space = H5Screate_simple(2, dims, nullptr);
    const hid_t d = H5Dcreate2(group, "Content", H5T_NATIVE_FLOAT, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    ok = ok && H5Dwrite(d, H5T_NATIVE_FLOAT, H5S_ALL, H5S_ALL, H5P_DEFAULT, src.data()) >= 0;
    ok = ok && H5Dread(d, H5T_NATIVE_FLOAT, H5S_ALL, H5S_ALL, H5P_DEFAULT, dst.data()) >= 0;
    benchmark::DoNotOptimize(dst.data());
    H5Dclose(d);
    H5Sclose(space);
    H5Gclose(group);
    H5Gclose(plane);
    ok = ok && H5Fclose(f) >= 0;
  }
  ::unlink(name.c_str());
  if (!ok || dst != src) state.SkipWithError("HDF5 C API failed");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 2 * static_cast<int64_t>(src.size() * 4));
}
BENCHMARK(BM_H5_CApiWriteRead12MP)->Unit(benchmark::kMillisecond);

static void BM_H5_Small1000(benchmark::State& state) {
  constexpr int kObjects = 1000;
  const std::string name = benchFile("kxbench-small-");
  std::vector<float> block(100), back(100);
  for (int i = 0; i < 100; ++i) block[i] = static_cast<float>(i);
  TH5Database* db = TH5Database::pOpenHDF5();
  try {
    for (auto _ : state) {
      ::unlink(name.c_str());
      TH5File* f = db->pCreateFile(name.c_str(), "small");
      TH5General g(f, false);
      for (int i = 0; i < kObjects; ++i) {
        const std::string path = "/Small/d" + std::to_string(i);
        const int32_t index = i;
        g.vCreate2(10, 10, TH5Type::eFloat, path, false);
        g.vWrite(block.data(), path);
        g.vWriteAttribute(path, "Index", TH5Type::eSignedLong, 1, &index);
      }
      for (int i = 0; i < kObjects; ++i) {
        const std::string path = "/Small/d" + std::to_string(i);
        int32_t index = -1;
        g.vRead(path, back.data());
        g.vReadAttribute(path, "Index", TH5Type::eSignedLong, 1, &index);
        if (index != i || back != block) state.SkipWithError("read back differs");
      }
      db->vCloseFile("small");
    }
  } catch (unsigned long) {
    state.SkipWithError(kx::formatErrorChain().c_str());
    kx::deleteError();
  }
  TH5Database::vCloseHDF5(&db);
  ::unlink(name.c_str());
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kObjects);
  state.counters["s/object"] =
      benchmark::Counter(kObjects, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_H5_Small1000)->Unit(benchmark::kMillisecond);
