// Colour-space conversion of a 3000 x 4000 TRGBFloatPixel picture (144 MB),
// against plain loops over the same formulas in this binary. Bytes per second
// are those of the picture, to be read as a ratio against BM_Memcpy12MP.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "Color/TImageColorSpace.h"

namespace {

using Rastrix::TImageColorSpace;
using Rastrix::TPixelColorSpace;
using Rastrix::TPlane;
using Rastrix::TRGBFloatPixel;

constexpr int iLines = 3000;
constexpr int iColumns = 4000;
constexpr int64_t iBytes = int64_t{iLines} * iColumns * sizeof(TRGBFloatPixel);

void fill(TPlane<TRGBFloatPixel>& p) {
  for (int l = 0; l < iLines; ++l)
    for (int c = 0; c < iColumns; ++c)
      p[l][c].set(static_cast<float>(1 + (l * 7 + c) % 250), static_cast<float>(1 + (l + c * 3) % 250),
                  static_cast<float>(1 + (l * 5 + c * 11) % 250));
}

void BM_Color_RGBF2Lab12MP(benchmark::State& state) {
  TPlane<TRGBFloatPixel> src(iLines, iColumns), dst;
  fill(src);
  for (auto _ : state) {
    TImageColorSpace::vTransform(src, dst, TPixelColorSpace::CIE_RGB, TPixelColorSpace::LSASBS);
    benchmark::DoNotOptimize(dst.getMemory());
  }
  state.SetBytesProcessed(state.iterations() * iBytes);
}
BENCHMARK(BM_Color_RGBF2Lab12MP)->Unit(benchmark::kMillisecond);

void BM_Color_RGBF2Lxy12MP(benchmark::State& state) {
  TPlane<TRGBFloatPixel> src(iLines, iColumns), dst;
  fill(src);
  for (auto _ : state) {
    TImageColorSpace::vTransform(src, dst, TPixelColorSpace::CIE_RGB, TPixelColorSpace::LXY);
    benchmark::DoNotOptimize(dst.getMemory());
  }
  state.SetBytesProcessed(state.iterations() * iBytes);
}
BENCHMARK(BM_Color_RGBF2Lxy12MP)->Unit(benchmark::kMillisecond);

// The plain loops: the same matrix and formulas, written out, from one
// array of pixels into another.
struct TPx {
  float b, g, r;
};

void plainSource(std::vector<TPx>& v) {
  v.resize(static_cast<std::size_t>(iLines) * iColumns);
  for (int l = 0; l < iLines; ++l)
    for (int c = 0; c < iColumns; ++c)
      v[static_cast<std::size_t>(l) * iColumns + c] = {static_cast<float>(1 + (l * 5 + c * 11) % 250),
                                                       static_cast<float>(1 + (l + c * 3) % 250),
                                                       static_cast<float>(1 + (l * 7 + c) % 250)};
}

void BM_Color_PlainRGBF2Lab12MP(benchmark::State& state) {
  std::vector<TPx> src, dst(static_cast<std::size_t>(iLines) * iColumns);
  plainSource(src);
  const double Xn = 2.7689 * 255 + 1.7518 * 255 + 1.1302 * 255, Yn = 1440.954, Zn = (0.0565 + 5.5943) * 255;
  for (auto _ : state) {
    for (std::size_t i = 0; i < src.size(); ++i) {
      const double R = src[i].r, G = src[i].g, B = src[i].b;
      const double X = 2.7689 * R + 1.7518 * G + 1.1302 * B, Y = 1.0 * R + 4.5907 * G + 0.0601 * B,
                   Z = 0.0565 * G + 5.5943 * B;
      double fx = X / Xn, fy = Y / Yn, fz = Z / Zn, L;
      if (fy <= 0.008856) {
        L = 903.3 * fy;
        fy = 7.787 * fy + 16.0 / 116.0;
      } else {
        fy = std::cbrt(fy);
        L = 116.0 * fy - 16.0;
      }
      fx = fx <= 0.00856 ? 7.787 * fx + 16.0 / 116.0 : std::cbrt(fx);
      fz = fz <= 0.00856 ? 7.787 * fz + 16.0 / 116.0 : std::cbrt(fz);
      dst[i] = {static_cast<float>(200.0 * (fy - fz)), static_cast<float>(500.0 * (fx - fy)), static_cast<float>(L)};
    }
    benchmark::DoNotOptimize(dst.data());
  }
  state.SetBytesProcessed(state.iterations() * iBytes);
}
BENCHMARK(BM_Color_PlainRGBF2Lab12MP)->Unit(benchmark::kMillisecond);

void BM_Color_PlainRGBF2Lxy12MP(benchmark::State& state) {
  std::vector<TPx> src, dst(static_cast<std::size_t>(iLines) * iColumns);
  plainSource(src);
  for (auto _ : state) {
    for (std::size_t i = 0; i < src.size(); ++i) {
      const double R = src[i].r, G = src[i].g, B = src[i].b;
      const double X = 2.7689 * R + 1.7518 * G + 1.1302 * B, Y = 1.0 * R + 4.5907 * G + 0.0601 * B,
                   Z = 0.0565 * G + 5.5943 * B;
      const double s = X + Y + Z;
      const bool ok = Y > 0 && std::fabs(s) > 1e-6;
      dst[i] = {static_cast<float>(ok ? Y / s : 0.0), static_cast<float>(ok ? X / s : 0.0), static_cast<float>(Y)};
    }
    benchmark::DoNotOptimize(dst.data());
  }
  state.SetBytesProcessed(state.iterations() * iBytes);
}
BENCHMARK(BM_Color_PlainRGBF2Lxy12MP)->Unit(benchmark::kMillisecond);

}  // namespace
