// The TIFF dialect against libtiff writing and reading the same picture as
// one strip, 3000 x 4000, float and 16-bit, on tmpfs; and the float to 8-bit
// conversions. Bytes per second of the picture.
#include <benchmark/benchmark.h>
#include <tiffio.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

#include "rastrix/TFloatPicture.h"
#include "rastrix/TGreyPicture16.h"
#include "rastrix/TGreyPicture8.h"
#include "rastrix/TImageConverter.h"

namespace {

using namespace Rastrix;
constexpr int iLines = 3000, iColumns = 4000;

std::string tmpfs(const char* stem) {
  const char* dir = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
  return std::string(dir) + "/" + stem + std::to_string(::getpid());
}

template <class P>
void ours(benchmark::State& state, bool write, const char* stem) {
  P p(iLines, iColumns);
  for (int l = 0; l < iLines; ++l)
    for (int c = 0; c < iColumns; ++c) p[l][c] = static_cast<typename P::value_type>((l + c) % 1000);
  const std::string name = tmpfs(stem);
  p.writeFile(name.c_str(), true);
  for (auto _ : state) {
    if (write)
      p.writeFile(name.c_str(), true);
    else
      p.readFile(name.c_str(), true);
  }
  ::unlink(name.c_str());
  state.SetBytesProcessed(state.iterations() * int64_t{iLines} * iColumns * int64_t(sizeof(typename P::value_type)));
}

template <class T>
void libtiff(benchmark::State& state, bool write, const char* stem) {
  std::vector<T> pixels(static_cast<std::size_t>(iLines) * iColumns, T(3));
  const std::string name = tmpfs(stem);
  auto save = [&] {
    TIFF* t = TIFFOpen(name.c_str(), "w");
    TIFFSetField(t, TIFFTAG_IMAGEWIDTH, iColumns);
    TIFFSetField(t, TIFFTAG_IMAGELENGTH, iLines);
    TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, int(8 * sizeof(T)));
    TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(t, TIFFTAG_SAMPLEFORMAT, sizeof(T) == 4 ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
    TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, iLines);
    TIFFSetField(t, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    const tmsize_t n = TIFFWriteEncodedStrip(t, 0, pixels.data(), static_cast<tmsize_t>(pixels.size() * sizeof(T)));
    TIFFClose(t);
    if (n != static_cast<tmsize_t>(pixels.size() * sizeof(T))) state.SkipWithError("libtiff write failed");
  };
  save();
  for (auto _ : state) {
    if (write) {
      save();
    } else {
      TIFF* t = TIFFOpen(name.c_str(), "rc");  // c: one strip stays one strip
      const tmsize_t n = TIFFReadEncodedStrip(t, 0, pixels.data(), static_cast<tmsize_t>(pixels.size() * sizeof(T)));
      TIFFClose(t);
      if (n != static_cast<tmsize_t>(pixels.size() * sizeof(T))) state.SkipWithError("libtiff read failed");
    }
  }
  ::unlink(name.c_str());
  state.SetBytesProcessed(state.iterations() * int64_t{iLines} * iColumns * int64_t(sizeof(T)));
}

void BM_Tiff_WriteFloat12MP(benchmark::State& s) { ours<TFloatPicture>(s, true, "kx_bw.tix"); }
void BM_Tiff_ReadFloat12MP(benchmark::State& s) { ours<TFloatPicture>(s, false, "kx_br.tix"); }
void BM_Tiff_WriteU16_12MP(benchmark::State& s) { ours<TGreyPicture16>(s, true, "kx_bw16.tif"); }
void BM_Tiff_ReadU16_12MP(benchmark::State& s) { ours<TGreyPicture16>(s, false, "kx_br16.tif"); }
void BM_Tiff_LibtiffWriteFloat12MP(benchmark::State& s) { libtiff<float>(s, true, "kx_lw.tif"); }
void BM_Tiff_LibtiffReadFloat12MP(benchmark::State& s) { libtiff<float>(s, false, "kx_lr.tif"); }
void BM_Tiff_LibtiffWriteU16_12MP(benchmark::State& s) { libtiff<uint16_t>(s, true, "kx_lw16.tif"); }
void BM_Tiff_LibtiffReadU16_12MP(benchmark::State& s) { libtiff<uint16_t>(s, false, "kx_lr16.tif"); }
BENCHMARK(BM_Tiff_WriteFloat12MP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Tiff_LibtiffWriteFloat12MP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Tiff_ReadFloat12MP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Tiff_LibtiffReadFloat12MP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Tiff_WriteU16_12MP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Tiff_LibtiffWriteU16_12MP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Tiff_ReadU16_12MP)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Tiff_LibtiffReadU16_12MP)->Unit(benchmark::kMillisecond);

// Float to 8-bit: the table mapping of convertLinear, and the converter.
void BM_Convert_Float2U8_12MP(benchmark::State& state) {
  TFloatPicture f(iLines, iColumns);
  for (int l = 0; l < iLines; ++l)
    for (int c = 0; c < iColumns; ++c) f[l][c] = static_cast<float>((l * 7 + c) % 1000);
  TGreyPicture8 g(iLines, iColumns);
  for (auto _ : state) {
    if (state.range(0) == 0)
      g.convertLinear(f, 0.0f, 999.0f);
    else
      TImageConverter::vCopyImage(&f, &g);
    benchmark::DoNotOptimize(g.getMemory());
  }
  state.SetBytesProcessed(state.iterations() * int64_t{iLines} * iColumns * int64_t(sizeof(float)));
}
BENCHMARK(BM_Convert_Float2U8_12MP)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
