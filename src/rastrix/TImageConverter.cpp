#include "rastrix/TImageConverter.h"

#include <algorithm>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "kxexception/KxError.h"
#include "kxexception/TKxClipboard.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TPlane.h"

using namespace Rastrix;

namespace {

template <class T>
TPlane<T>& as(TPlaneBasic* p) {
  auto* t = dynamic_cast<TPlane<T>*>(p);
  if (!t) KX_THROW(Err::ulConverterWrongType, "%s", TImageConverter::cpWrongType);
  return *t;
}
template <class T>
const TPlane<T>& as(const TPlaneBasic* p) {
  auto* t = dynamic_cast<const TPlane<T>*>(p);
  if (!t) KX_THROW(Err::ulConverterWrongType, "%s", TImageConverter::cpWrongType);
  return *t;
}

// dst takes the source's rectangle when its extension differs; `cleared`
// conversions clear an equal one.
template <class D, class S>
void prepare(TPlane<D>& dst, const TPlane<S>& src, bool cleared) {
  const bool same = dst.isValid() && dst.getLines() == src.getLines() && dst.getColumns() == src.getColumns() &&
                    dst.getFirstLine() == src.getFirstLine() && dst.getFirstColumn() == src.getFirstColumn();
  if (!same) {
    dst.alloc(src.getLines(), src.getColumns(), src.getFirstLine(), src.getFirstColumn(), src.getColumns());
    if (cleared) dst.clear();
  } else if (cleared) {
    dst.clear();
  }
}

template <class S, class D, class F>
void perPixel(const TPlaneBasic* s, TPlaneBasic* d, bool cleared, F f) {
  const TPlane<S>& src = as<S>(s);
  TPlane<D>& dst = as<D>(d);
  prepare(dst, src, cleared);
  for (int l = src.getFirstLine(); l < src.getFirstLine() + src.getLines(); ++l) {
    const S* in = src[l];
    D* out = dst[l];
    for (int c = src.getFirstColumn(); c < src.getFirstColumn() + src.getColumns(); ++c) f(in[c], out[c]);
  }
}

template <class T>
void copy(const TPlaneBasic* s, TPlaneBasic* d) {
  perPixel<T, T>(s, d, false, [](const T& a, T& b) { b = a; });
}
template <class S, class D>
void widen(const TPlaneBasic* s, TPlaneBasic* d) {
  perPixel<S, D>(s, d, false, [](const S& a, D& b) { b = static_cast<D>(a); });
}
void ucToUs(const TPlaneBasic* s, TPlaneBasic* d) {
  perPixel<unsigned char, unsigned short>(s, d, true, [](const unsigned char& a, unsigned short& b) { b = a; });
}
template <class S>
void greyToRgb(const TPlaneBasic* s, TPlaneBasic* d) {
  perPixel<S, TRGBPixel>(s, d, false, [](const S& a, TRGBPixel& b) { b.b = b.g = b.r = static_cast<unsigned char>(a); });
}
void floatToRgbf(const TPlaneBasic* s, TPlaneBasic* d) {
  perPixel<float, TRGBFloatPixel>(s, d, false, [](const float& a, TRGBFloatPixel& b) { b.b = b.g = b.r = a; });
}
template <class S>
void luminance(const TPlaneBasic* s, TPlaneBasic* d) {
  perPixel<S, float>(s, d, false, [](const S& a, float& b) {
    b = static_cast<float>(1.0 * a.r + 4.5907 * a.g + 0.0601 * a.b);
  });
}
void rgbToRgbf(const TPlaneBasic* s, TPlaneBasic* d) {
  perPixel<TRGBPixel, TRGBFloatPixel>(s, d, false, [](const TRGBPixel& a, TRGBFloatPixel& b) {
    b.b = a.b;
    b.g = a.g;
    b.r = a.r;
  });
}

// Float to 8-bit (A, top 255) and 16-bit (B, top usMaximum).
// One line of scale A or B: every value lies in 0 .. top + 0.5 here, so a
// truncation to int is exact, and so is the narrowing with saturation.
template <class D>
void scaleLine(const float* in, D* out, int columns, float min, float scale) {
  int c = 0;
#if defined(__SSE2__)
  const __m128 vmin = _mm_set1_ps(min), vscale = _mm_set1_ps(scale), half = _mm_set1_ps(0.5f);
  auto four = [&](int at) {
    return _mm_cvttps_epi32(_mm_add_ps(_mm_mul_ps(_mm_sub_ps(_mm_loadu_ps(in + at), vmin), vscale), half));
  };
  if constexpr (sizeof(D) == 1) {
    for (; c + 16 <= columns; c += 16) {
      const __m128i lo = _mm_packs_epi32(four(c), four(c + 4)), hi = _mm_packs_epi32(four(c + 8), four(c + 12));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + c), _mm_packus_epi16(lo, hi));
    }
  } else {
    for (; c + 8 <= columns; c += 8)
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + c), _mm_packs_epi32(four(c), four(c + 4)));
  }
#endif
  for (; c < columns; ++c) out[c] = static_cast<D>(static_cast<int>((in[c] - min) * scale + 0.5f));
}

template <class D>
void scaleFloat(const TPlaneBasic* s, TPlaneBasic* d, float top) {
  const TPlane<float>& src = as<float>(s);
  float min, max;
  src.calcMinMax(min, max);
  TPlane<D>& dst = as<D>(d);
  // Cleared, as the rule says; when every pixel is written below anyway,
  // the clearing is left out.
  prepare(dst, src, false);
  if (!(max - min > 0)) {
    dst.clear();
    return;
  }
  const float scale = top / (max - min);
  for (int l = src.getFirstLine(); l < src.getFirstLine() + src.getLines(); ++l)
    scaleLine(src[l] + src.getFirstColumn(), dst[l] + dst.getFirstColumn(), src.getColumns(), min, scale);
}
void scaleA(const TPlaneBasic* s, TPlaneBasic* d) { scaleFloat<unsigned char>(s, d, 255.0f); }
void scaleB(const TPlaneBasic* s, TPlaneBasic* d) { scaleFloat<unsigned short>(s, d, TImageConverter::usMaximum); }
// Float to int: the origin stays.
void scaleC(const TPlaneBasic* s, TPlaneBasic* d) {
  const TPlane<float>& src = as<float>(s);
  float min, max;
  src.calcMinMax(min, max);
  TPlane<int>& dst = as<int>(d);
  prepare(dst, src, true);
  if (!(max - min > 0)) return;
  const float scale = static_cast<float>(TImageConverter::iMaximum) / std::max(std::fabs(min), std::fabs(max));
  perPixel<float, int>(s, d, false, [&](const float& a, int& b) { b = static_cast<int>(a * scale + 0.5f); });
}
// Float colour to byte colour by the largest component.
void scaleD(const TPlaneBasic* s, TPlaneBasic* d) {
  const TPlane<TRGBFloatPixel>& src = as<TRGBFloatPixel>(s);
  float m = -std::numeric_limits<float>::infinity();
  for (int l = src.getFirstLine(); l < src.getFirstLine() + src.getLines(); ++l)
    for (int c = src.getFirstColumn(); c < src.getFirstColumn() + src.getColumns(); ++c) {
      const TRGBFloatPixel& p = src[l][c];
      m = std::max({m, p.b, p.g, p.r});
    }
  TPlane<TRGBPixel>& dst = as<TRGBPixel>(d);
  prepare(dst, src, true);
  if (!(m > 0)) return;
  const float scale = 255.0f / m;
  auto byte = [&](float v) { return static_cast<unsigned char>(static_cast<int>(v * scale + 0.5f) & 0xff); };
  perPixel<TRGBFloatPixel, TRGBPixel>(s, d, false, [&](const TRGBFloatPixel& a, TRGBPixel& b) {
    b.b = byte(a.b);
    b.g = byte(a.g);
    b.r = byte(a.r);
  });
}

// Through a temporary plane of type X.
template <class X, TImageConverter::TFunktion First, TImageConverter::TFunktion Second>
void through(const TPlaneBasic* s, TPlaneBasic* d) {
  TPlane<X> tmp;
  First(s, &tmp);
  Second(&tmp, d);
}

using UC = unsigned char;
using US = unsigned short;
using RGB = TRGBPixel;
using RGBF = TRGBFloatPixel;

}  // namespace

const TImageConverter::TFunktion TImageConverter::Funktion[36] = {
    // UC ->
    copy<UC>, ucToUs, widen<UC, float>, greyToRgb<UC>, through<float, widen<UC, float>, floatToRgbf>, widen<UC, int>,
    // US ->
    through<float, widen<US, float>, scaleA>, copy<US>, widen<US, float>,
    through<UC, through<float, widen<US, float>, scaleA>, greyToRgb<UC>>, through<float, widen<US, float>, floatToRgbf>,
    widen<US, int>,
    // F ->
    scaleA, scaleB, copy<float>, through<UC, scaleA, greyToRgb<UC>>, floatToRgbf, scaleC,
    // RGB ->
    through<float, luminance<RGB>, scaleA>, through<float, luminance<RGB>, scaleB>, luminance<RGB>, copy<RGB>, rgbToRgbf,
    through<float, luminance<RGB>, scaleC>,
    // RGBF ->
    through<float, luminance<RGBF>, scaleA>, through<float, luminance<RGBF>, scaleB>, luminance<RGBF>, scaleD, copy<RGBF>,
    through<float, luminance<RGBF>, scaleC>,
    // I ->
    through<float, widen<int, float>, scaleA>, through<float, widen<int, float>, scaleB>, widen<int, float>,
    through<UC, through<float, widen<int, float>, scaleA>, greyToRgb<UC>>, through<float, widen<int, float>, floatToRgbf>,
    copy<int>,
};

void TImageConverter::vCopyImage(const TPlaneBasic* src, TPlaneBasic* dst) {
  KX_TRY {
    if (!src || !dst) KX_THROW(Err::ulConverterNull, "%s", cpNullPointer);
    if (src == dst) KX_THROW(Err::ulConverterSame, "src and dst are equal");
    const int s = src->eGetPicturePT(), d = dst->eGetPicturePT();
    if (s < 0 || s > 5 || d < 0 || d > 5) KX_THROW(Err::ulConverterWrongType, "%s", cpWrongType);
    Funktion[s * 6 + d](src, dst);
    dst->vSetDateTime(nullptr);
    dst->setTimeStamp();
  }
  KX_CATCH
}

namespace {
bool isColour(const TPlaneBasic* p) { return p->eGetPicturePT() == eRGB || p->eGetPicturePT() == eRGBF; }
}  // namespace

void TImageConverter::vSplitRGB(const TPlaneBasic* colour, TPlaneBasic* a, TPlaneBasic* b, TPlaneBasic* c) {
  KX_TRY {
    if (!colour) KX_THROW(Err::ulConverterNull, "%s", cpNullPointer);
    if (!isColour(colour)) KX_THROW0(Err::ulConverterWrongType);
    if (!a && !b && !c) KX_THROW(Err::ulConverterNull, "%s", cpNullPointer);
    for (const TPlaneBasic* t : {a, b, c})
      if (t && isColour(t)) KX_THROW0(Err::ulConverterWrongType);
    TPlane<RGBF> tmp;
    const TPlane<RGBF>* rgbf = dynamic_cast<const TPlane<RGBF>*>(colour);
    if (!rgbf) {
      vCopyImage(colour, &tmp);
      rgbf = &tmp;
    }
    TPlaneBasic* targets[3] = {a, b, c};
    for (int index = 0; index < 3; ++index) {
      TPlaneBasic* target = targets[index];
      if (!target) continue;
      // Channel 0 is the third float, channel 2 the first.
      TPlane<float> values;
      TPlane<float>* f = dynamic_cast<TPlane<float>*>(target);
      TPlane<float>& into = f ? *f : values;
      prepare(into, *rgbf, false);
      for (int l = rgbf->getFirstLine(); l < rgbf->getFirstLine() + rgbf->getLines(); ++l)
        for (int col = rgbf->getFirstColumn(); col < rgbf->getFirstColumn() + rgbf->getColumns(); ++col) {
          const RGBF& p = (*rgbf)[l][col];
          into[l][col] = index == 0 ? p.r : index == 1 ? p.g : p.b;
        }
      into.setValueUnitPic(0, rgbf->rStrGetValuePic(index), rgbf->rStrGetUnitPic(index));
      if (!f) {
        vCopyImage(&values, target);
        target->setValueUnitPic(0, rgbf->rStrGetValuePic(index), rgbf->rStrGetUnitPic(index));
      } else {
        into.setTimeStamp();
      }
    }
  }
  KX_CATCH
}

void TImageConverter::vMergeRGB(TPlaneBasic* a, TPlaneBasic* b, TPlaneBasic* c, TPlaneBasic* colour) {
  KX_TRY {
    if (!colour) KX_THROW(Err::ulConverterNull, "%s", cpNullPointer);
    if (!isColour(colour)) KX_THROW0(Err::ulConverterWrongType);
    if (!a && !b && !c) KX_THROW(Err::ulConverterNull, "%s", cpNullPointer);
    const TPlaneBasic* first = nullptr;
    for (const TPlaneBasic* t : {a, b, c}) {
      if (!t) continue;
      if (isColour(t)) KX_THROW0(Err::ulConverterWrongType);
      if (!first) first = t;
      if (t->getLines() != first->getLines() || t->getColumns() != first->getColumns() ||
          t->getFirstLine() != first->getFirstLine() || t->getFirstColumn() != first->getFirstColumn())
        KX_THROW(Err::ulConverterWrongSize, "wrong image size");
    }
    TPlane<RGBF> tmp;
    TPlane<RGBF>* rgbf = dynamic_cast<TPlane<RGBF>*>(colour);
    TPlane<RGBF>& into = rgbf ? *rgbf : tmp;
    const bool same = into.isValid() && into.getLines() == first->getLines() && into.getColumns() == first->getColumns() &&
                      into.getFirstLine() == first->getFirstLine() && into.getFirstColumn() == first->getFirstColumn();
    if (!same)
      into.alloc(first->getLines(), first->getColumns(), first->getFirstLine(), first->getFirstColumn(),
                 first->getColumns());
    into.clear();
    TPlaneBasic* sources[3] = {a, b, c};
    for (int index = 0; index < 3; ++index) {
      if (!sources[index]) continue;
      TPlane<float> values;
      const TPlane<float>* f = dynamic_cast<const TPlane<float>*>(sources[index]);
      if (!f) {
        vCopyImage(sources[index], &values);
        f = &values;
      }
      for (int l = into.getFirstLine(); l < into.getFirstLine() + into.getLines(); ++l)
        for (int col = into.getFirstColumn(); col < into.getFirstColumn() + into.getColumns(); ++col) {
          RGBF& p = into[l][col];
          (index == 0 ? p.r : index == 1 ? p.g : p.b) = (*f)[l][col];
        }
    }
    // The names of all three channels from channel 0 of a (kept as it is).
    if (a)
      for (int i = 0; i < 3; ++i) into.setValueUnitPic(i, a->rStrGetValuePic(0), a->rStrGetUnitPic(0));
    if (!rgbf) vCopyImage(&tmp, colour);
    colour->setTimeStamp();
    colour->vSetDateTime(nullptr);
  }
  KX_CATCH
}

void TImageConverter::vToClipboard(const TPlaneBasic* plane, bool clear, bool native, bool text) {
  KX_TRY {
    if (!plane) KX_THROW(Err::ulConverterNull, "%s", cpNullPointer);
    if (clear) TKxClipboard::vClear();
    dispatchPixelTyp(plane->eGetPicturePT(), [&](auto tag) {
      using T = typename decltype(tag)::type;
      const TPlane<T>& p = as<T>(plane);
      if (native) p.vPic2Clipboard();
      if (text) {
        std::string s;
        p.vRect2String(s, p.getFirstLine(), p.getFirstLine() + p.getLines() - 1, p.getFirstColumn(),
                       p.getFirstColumn() + p.getColumns() - 1, false);
        s.push_back('\0');
        TKxClipboard::vSetData(TKxClipboard::uTextFormat, s.data(), s.size());
      }
    });
  }
  KX_CATCH
}

int TImageConverter::eHaveClipboardData() {
  for (int e = 0; e < 6; ++e) {
    const bool has = dispatchPixelTyp(static_cast<eComparePixelTyp>(e), [](auto tag) {
      using T = typename decltype(tag)::type;
      return TPlane<T>::bHaveClipboardData();
    });
    if (has) return e;
  }
  return -1;
}

bool TImageConverter::bFromClipboard(TPlaneBasic* plane) {
  KX_TRY {
    const int e = eHaveClipboardData();
    if (e < 0 || !plane) return false;
    dispatchPixelTyp(static_cast<eComparePixelTyp>(e), [&](auto tag) {
      using T = typename decltype(tag)::type;
      TPlane<T> form;
      form.vFromClipboard();
      vCopyImage(&form, plane);
    });
    plane->vSetDateTime(nullptr);
    return true;
  }
  KX_CATCH
}

bool TImageConverter::bGetImageSize(CRectangle* r) {
  const int e = eHaveClipboardData();
  if (e < 0 || !r) return false;
  return dispatchPixelTyp(static_cast<eComparePixelTyp>(e), [&](auto tag) {
    using T = typename decltype(tag)::type;
    const auto block = TKxClipboard::vGetData(
        TKxClipboard::uRegisterFormat((std::string("TPlane<") + TPixelTraits<T>::cpTypeName + ">").c_str()));
    if (block.size() < 16) return false;
    int32_t h[4];
    std::memcpy(h, block.data(), 16);
    *r = CRectangle(h[0], h[1], h[2], h[3]);
    return true;
  });
}
