// The operations of the typed pictures.
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <immintrin.h>

#include "kxexception/KxError.h"
#include "math98/TPicConvol.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TFloatPicture.h"
#include "rastrix/TGreyPicture16.h"
#include "rastrix/TGreyPicture8.h"
#include "rastrix/TPixelColorSpace.h"
#include "rastrix/TRGBFloatPicture.h"
#include "rastrix/TRGBPicture.h"

namespace Rastrix {

namespace {

// The 8-bit mapping of convertLinear with AVX2 where the processor has it:
// the entry j of the table (257 entries, the last +inf) is gathered and
// compared, as in the SSE2 form below. Returns the columns done.
__attribute__((target("avx2"))) int convertLinearAvx2(const float* s, unsigned char* d, int n, const float* table,
                                                      float min, float scale) {
  const __m256 vMin = _mm256_set1_ps(min), vScale = _mm256_set1_ps(scale);
  const __m256 vTop = _mm256_set1_ps(256.0f), vZero = _mm256_setzero_ps();
  const __m256i mask = _mm256_set1_epi32(0xff), order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
  auto block = [&](const float* p) __attribute__((target("avx2"))) {
    const __m256 x = _mm256_loadu_ps(p);
    const __m256 e = _mm256_min_ps(_mm256_max_ps(_mm256_mul_ps(_mm256_sub_ps(x, vMin), vScale), vZero), vTop);
    const __m256i j = _mm256_cvttps_epi32(e);
    const __m256 entry = _mm256_i32gather_ps(table, j, 4);
    return _mm256_and_si256(_mm256_sub_epi32(j, _mm256_castps_si256(_mm256_cmp_ps(entry, x, _CMP_LT_OQ))), mask);
  };
  int c = 0;
  for (; c + 32 <= n; c += 32) {
    const __m256i ab = _mm256_packs_epi32(block(s + c), block(s + c + 8));
    const __m256i ef = _mm256_packs_epi32(block(s + c + 16), block(s + c + 24));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + c),
                        _mm256_permutevar8x32_epi32(_mm256_packus_epi16(ab, ef), order));
  }
  return c;
}

const bool bHasAvx2 = __builtin_cpu_supports("avx2");

// The intersection of the extensions of two planes; false when empty.
bool intersection(const TPlaneBasic& a, const TPlaneBasic& b, int& l1, int& l2, int& c1, int& c2) {
  l1 = std::max(a.getFirstLine(), b.getFirstLine());
  l2 = std::min(a.getFirstLine() + a.getLines(), b.getFirstLine() + b.getLines()) - 1;
  c1 = std::max(a.getFirstColumn(), b.getFirstColumn());
  c2 = std::min(a.getFirstColumn() + a.getColumns(), b.getFirstColumn() + b.getColumns()) - 1;
  return l1 <= l2 && c1 <= c2;
}

// The area cut to the plane; false when empty.
bool cut(const TPlaneBasic& p, const CRectangle& r, int& l1, int& l2, int& c1, int& c2) {
  l1 = std::max(r.iFirstLine, p.getFirstLine());
  l2 = std::min(r.iLastLine, p.getFirstLine() + p.getLines() - 1);
  c1 = std::max(r.iFirstColumn, p.getFirstColumn());
  c2 = std::min(r.iLastColumn, p.getFirstColumn() + p.getColumns() - 1);
  return l1 <= l2 && c1 <= c2;
}

CRectangle whole(const TPlaneBasic& p) {
  return CRectangle(p.getFirstLine(), p.getFirstLine() + p.getLines() - 1, p.getFirstColumn(),
                    p.getFirstColumn() + p.getColumns() - 1);
}

template <class D, class S, class F>
void overIntersection(D& dst, const S& src, F f) {
  int l1, l2, c1, c2;
  if (!intersection(dst, src, l1, l2, c1, c2)) return;
  for (int l = l1; l <= l2; ++l) {
    auto* d = dst[l];
    const auto* s = src[l];
    for (int c = c1; c <= c2; ++c) f(d[c], s[c]);
  }
}

template <class P>
void stamped(P& p) {
  p.setTimeStamp();
  p.vSendCommonMessage(51, 0);
}

}  // namespace

// ---------------------------------------------------------------- 8 bit

void TGreyPicture8::binarize(unsigned char threshold) {
  KX_TRY {
    for (int l = getFirstLine(); l < getFirstLine() + getLines(); ++l) {
      unsigned char* row = (*this)[l];
      for (int c = getFirstColumn(); c < getFirstColumn() + getColumns(); ++c) row[c] = row[c] > threshold ? 255 : 0;
    }
    stamped(*this);
  }
  KX_CATCH
}

void TGreyPicture8::convertLinear(const TPlane<float>& src) {
  float min, max;
  src.calcMinMax(min, max);
  _convertLinear(src, whole(src), min, max);
}
void TGreyPicture8::convertLinear(const TPlane<float>& src, float min, float max) {
  _convertLinear(src, whole(src), min, max);
}
void TGreyPicture8::convertLinear(const TPlane<float>& src, const CRectangle& r) {
  float min, max;
  src.calcMinMax(min, max);
  _convertLinear(src, r, min, max);
}
void TGreyPicture8::convertLinear(const TPlane<float>& src, const CRectangle& r, float min, float max) {
  _convertLinear(src, r, min, max);
}

void TGreyPicture8::_convertLinear(const TPlane<float>& src, const CRectangle& r, float min, float max) {
  KX_TRY {
    if (max < min) KX_THROW0(Err::ulConvertMaxBelowMin);
    int l1, l2, c1, c2;
    if (!cut(src, r, l1, l2, c1, c2) || !cut(*this, CRectangle(l1, l2, c1, c2), l1, l2, c1, c2))
      KX_THROW0(Err::ulConvertEmptyArea);
    float table[257];
    for (int i = 0; i < 256; ++i) table[i] = (2.0f * i + 1.0f) * (max - min) / (256.0f * 2 - 2) + min;
    table[256] = std::numeric_limits<float>::infinity();
    const float range = max - min;
    // The exact count of entries below a pixel (what the binary search over
    // the table finds), 0 to 256; 256 keeps its low byte.
    auto search = [&](float x) {
      if (!(x == x)) return 0;
      // Estimated from the spacing, then settled against the table itself.
      const float e = range > 0 ? ((x - min) / (range / 510.0f) - 1.0f) * 0.5f : 0.0f;
      int index = e <= 0 ? 0 : e >= 256 ? 256 : static_cast<int>(e);
      while (index < 256 && table[index] < x) ++index;
      while (index > 0 && table[index - 1] >= x) --index;
      return index;
    };
    // Vector form. j = floor((x - min) * 255 / range), cut to 0..256, is the
    // count or one below it as long as the table's rounding and that of the
    // estimate stay far below half an entry: the range must be well above
    // the rounding of the values themselves (|min|, |max| <= 1000 range) and
    // neither tiny nor near overflow. The entry j is computed in the very
    // operations that made the table, so the comparison with it is exact.
    const float scale = 255.0f / range;
    const float magnitude = std::max(std::fabs(min), std::fabs(max));
    const bool vector = range > 1e-30f && range < 1e35f && std::isfinite(scale) && magnitude <= 1000.0f * range;
    const __m128 vMin = _mm_set1_ps(min), vRange = _mm_set1_ps(range), vScale = _mm_set1_ps(scale);
    const __m128 vTop = _mm_set1_ps(256.0f), vZero = _mm_setzero_ps(), v510 = _mm_set1_ps(510.0f);
    const __m128i i256 = _mm_set1_epi32(256), iOne = _mm_set1_epi32(1);
    auto block = [&](const float* s) {
      const __m128 x = _mm_loadu_ps(s);
      __m128 e = _mm_mul_ps(_mm_sub_ps(x, vMin), vScale);
      e = _mm_min_ps(_mm_max_ps(e, vZero), vTop);  // NaN becomes 0
      const __m128i j = _mm_cvttps_epi32(e);
      const __m128 entry = _mm_add_ps(
          _mm_div_ps(_mm_mul_ps(_mm_cvtepi32_ps(_mm_add_epi32(_mm_add_epi32(j, j), iOne)), vRange), v510), vMin);
      const __m128i below = _mm_andnot_si128(_mm_cmpeq_epi32(j, i256), _mm_castps_si128(_mm_cmplt_ps(entry, x)));
      return _mm_sub_epi32(j, below);  // below is -1 where the entry j lies under the pixel
    };
    for (int l = l1; l <= l2; ++l) {
      const float* s = src[l];
      unsigned char* d = (*this)[l];
      int c = c1;
      if (vector && bHasAvx2) c += convertLinearAvx2(s + c, d + c, c2 + 1 - c, table, min, scale);
      if (vector) {
        for (; c + 16 <= c2 + 1; c += 16) {
          const __m128i a = block(s + c), b = block(s + c + 4), e = block(s + c + 8), f = block(s + c + 12);
          const __m128i mask = _mm_set1_epi32(0xff);
          const __m128i ab = _mm_packs_epi32(_mm_and_si128(a, mask), _mm_and_si128(b, mask));
          const __m128i ef = _mm_packs_epi32(_mm_and_si128(e, mask), _mm_and_si128(f, mask));
          _mm_storeu_si128(reinterpret_cast<__m128i*>(d + c), _mm_packus_epi16(ab, ef));
        }
      }
      for (; c <= c2; ++c) d[c] = static_cast<unsigned char>(search(s[c]) & 0xff);
    }
    stamped(*this);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- 16 bit

int TGreyPicture16::getBits() const {
  double min = 0, step = 0, max = 0;
  if (!getValueRangeMSM(&min, &step, &max) || std::fabs(min) >= 0.001) return 16;
  const struct {
    double max;
    int bits;
  } rows[] = {{255, 8}, {511, 9}, {1023, 10}, {2047, 11}, {4095, 12}, {8190, 13}};
  for (const auto& r : rows)
    if (std::fabs(max - r.max) < 0.001) return r.bits;
  return 16;
}

// ---------------------------------------------------------------- float

#define KX_FLOAT_OP(Type, op)                                                              \
  TFloatPicture& TFloatPicture::operator op(const TPlane<Type>& o) {                      \
    KX_TRY {                                                                               \
      overIntersection(*this, o, [](float& d, const Type& s) { d op static_cast<float>(s); }); \
      stamped(*this);                                                                      \
      return *this;                                                                        \
    }                                                                                      \
    KX_CATCH                                                                               \
  }
KX_FLOAT_OP(unsigned char, +=)
KX_FLOAT_OP(unsigned short, +=)
KX_FLOAT_OP(int, +=)
KX_FLOAT_OP(unsigned char, -=)
KX_FLOAT_OP(unsigned short, -=)
KX_FLOAT_OP(int, -=)
#undef KX_FLOAT_OP

void TFloatPicture::convert(TPlane<unsigned char>& dst, float& min, float& max, bool automatic) const {
  KX_TRY {
    int l1, l2, c1, c2;
    if (!intersection(*this, dst, l1, l2, c1, c2)) return;
    if (automatic) calcMinMax(min, max, CRectangle(l1, l2, c1, c2));
    if (!(max - min > 0)) return;
    const double scale = (static_cast<double>(max) - min) / 255.0;
    for (int l = l1; l <= l2; ++l) {
      const float* s = (*this)[l];
      unsigned char* d = dst[l];
      for (int c = c1; c <= c2; ++c) {
        const double v = (s[c] - static_cast<double>(min)) / scale + 0.5;
        d[c] = v < 0 ? 0 : v >= 256 ? 255 : static_cast<unsigned char>(v);
      }
    }
    stamped(dst);
  }
  KX_CATCH
}

void TFloatPicture::convert(TPlane<unsigned char>& dst, double decades, float& max, bool automatic) const {
  KX_TRY {
    int l1, l2, c1, c2;
    if (!intersection(*this, dst, l1, l2, c1, c2)) return;
    if (automatic) {
      float min;
      calcMinMax(min, max, CRectangle(l1, l2, c1, c2));
    }
    if (!(max > 0)) return;
    const double top = std::log10(max), bottom = top - decades, low = std::pow(10.0, bottom);
    for (int l = l1; l <= l2; ++l) {
      const float* s = (*this)[l];
      unsigned char* d = dst[l];
      for (int c = c1; c <= c2; ++c) {
        const double x = s[c];
        d[c] = x <= low ? 0 : x >= max ? 255 : static_cast<unsigned char>((std::log10(x) - bottom) * 255.0 / decades);
      }
    }
    stamped(dst);
  }
  KX_CATCH
}

void TFloatPicture::greaterNull() { greaterNull(whole(*this)); }
void TFloatPicture::greaterNull(const CRectangle& r) {
  KX_TRY {
    int l1, l2, c1, c2;
    if (!cut(*this, r, l1, l2, c1, c2)) return;
    for (int l = l1; l <= l2; ++l) {
      float* row = (*this)[l];
      for (int c = c1; c <= c2; ++c)
        if (row[c] < 0) row[c] = 0;
    }
    stamped(*this);
  }
  KX_CATCH
}

void TFloatPicture::vBox(int width, int height) {
  KX_TRY {
    math98::TPicConvol<float>::vBox(*this, width, height);
    stamped(*this);
  }
  KX_CATCH
}

void TFloatPicture::vGauss(unsigned int n) {
  KX_TRY {
    math98::TPicConvol<float>::vGauss(*this, n);
    stamped(*this);
  }
  KX_CATCH
}

void TFloatPicture::vMakeTestbild(int n) {
  KX_TRY {
    clear();
    const double pi2 = 2 * 3.14159265358979323846;
    const int lines = getLines(), columns = getColumns();
    for (int l = getFirstLine(); l < getFirstLine() + lines; ++l) {
      float* row = (*this)[l];
      for (int c = getFirstColumn(); c < getFirstColumn() + columns; ++c) {
        double v = 0;
        switch (n) {
          case 1: v = l; break;
          case 2: v = c; break;
          case 3: v = l + c; break;
          case 4: v = l % 256; break;
          case 5: v = c % 256; break;
          case 6: v = (l + c) % 256; break;
          case 7: v = std::sin(l * pi2 / lines) + 1; break;
          case 8: v = std::sin(c * pi2 / columns) + 1; break;
          case 9: v = std::sin((l + c) * pi2 / (lines + columns)) + 1; break;
          case 10: {
            // Rings of luminance around the centre on a slope: a synthetic
            // scene with a fixed set of parameters (there is no dialogue).
            const double y = l - (getFirstLine() + lines / 2.0), x = c - (getFirstColumn() + columns / 2.0);
            v = 100.0 + 50.0 * std::cos(std::hypot(x, y) / 8.0) + 0.1 * x;
            break;
          }
          default: break;
        }
        row[c] = static_cast<float>(v);
      }
    }
    stamped(*this);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- colour

void TRGBPicture::_swapRB() const {
  auto* self = const_cast<TRGBPicture*>(this);
  for (int l = getFirstLine(); l < getFirstLine() + getLines(); ++l) {
    TRGBPixel* row = (*self)[l];
    for (int c = getFirstColumn(); c < getFirstColumn() + getColumns(); ++c) row[c].swapRB();
  }
}

void TRGBFloatPicture::_swapRB() const {
  auto* self = const_cast<TRGBFloatPicture*>(this);
  for (int l = getFirstLine(); l < getFirstLine() + getLines(); ++l) {
    TRGBFloatPixel* row = (*self)[l];
    for (int c = getFirstColumn(); c < getFirstColumn() + getColumns(); ++c) row[c].swapRB();
  }
}

#define KX_RGBF_OP(Type, op)                                                          \
  TRGBFloatPicture& TRGBFloatPicture::operator op(const TPlane<Type>& o) {           \
    KX_TRY {                                                                          \
      overIntersection(*this, o, [](TRGBFloatPixel& d, const Type& s) {               \
        d.b op static_cast<float>(s.b);                                               \
        d.g op static_cast<float>(s.g);                                               \
        d.r op static_cast<float>(s.r);                                               \
      });                                                                             \
      stamped(*this);                                                                 \
      return *this;                                                                   \
    }                                                                                 \
    KX_CATCH                                                                          \
  }
KX_RGBF_OP(TRGBPixel, +=)
KX_RGBF_OP(TRGBPixel, -=)
KX_RGBF_OP(TRGBFloatPixel, +=)
KX_RGBF_OP(TRGBFloatPixel, -=)
#undef KX_RGBF_OP

TRGBFloatPicture& TRGBFloatPicture::operator*=(float f) {
  KX_TRY {
    for (int l = getFirstLine(); l < getFirstLine() + getLines(); ++l) {
      TRGBFloatPixel* row = (*this)[l];
      for (int c = getFirstColumn(); c < getFirstColumn() + getColumns(); ++c) {
        row[c].b *= f;
        row[c].g *= f;
        row[c].r *= f;
      }
    }
    stamped(*this);
    return *this;
  }
  KX_CATCH
}

void TRGBFloatPicture::greaterNull() { greaterNull(whole(*this)); }
void TRGBFloatPicture::greaterNull(const CRectangle& r) {
  KX_TRY {
    int l1, l2, c1, c2;
    if (!cut(*this, r, l1, l2, c1, c2)) return;
    for (int l = l1; l <= l2; ++l) {
      TRGBFloatPixel* row = (*this)[l];
      for (int c = c1; c <= c2; ++c) {
        row[c].b = std::max(0.0f, row[c].b);
        row[c].g = std::max(0.0f, row[c].g);
        row[c].r = std::max(0.0f, row[c].r);
      }
    }
    stamped(*this);
  }
  KX_CATCH
}

void TRGBFloatPicture::greaterNullXYZ() { greaterNullXYZ(whole(*this)); }
void TRGBFloatPicture::greaterNullXYZ(const CRectangle& r) {
  KX_TRY {
    int l1, l2, c1, c2;
    if (!cut(*this, r, l1, l2, c1, c2)) return;
    TPixelColorSpace toXyz, toRgb;
    toXyz.vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::XYZ);
    toRgb.vSetFlag(TPixelColorSpace::XYZ, TPixelColorSpace::CIE_RGB);
    for (int l = l1; l <= l2; ++l) {
      TRGBFloatPixel* row = (*this)[l];
      for (int c = c1; c <= c2; ++c) {
        toXyz.vSetCIE_RGB(row[c]);
        TRGBFloatPixel xyz = toXyz.rGetXYZ();
        xyz.b = std::max(0.0f, xyz.b);
        xyz.g = std::max(0.0f, xyz.g);
        xyz.r = std::max(0.0f, xyz.r);
        toRgb.vSetXYZ(xyz);
        row[c] = toRgb.rGetCIE_RGB();
      }
    }
    stamped(*this);
  }
  KX_CATCH
}

void TRGBFloatPicture::vBox(int width, int height) {
  KX_TRY {
    math98::TPicConvol<TRGBFloatPixel>::vBox(*this, width, height);
    stamped(*this);
  }
  KX_CATCH
}

}  // namespace Rastrix
