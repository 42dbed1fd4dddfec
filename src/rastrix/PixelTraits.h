// The six pixel types as one list, and what differs between them.
//
//   KX_FOR_EACH_PIXEL_TYPE(X)  expands X(T) for every pixel type, in the
//                              order of eComparePixelTyp (explicit instantiation)
//   TPixelTraits<T>            number, names, values per pixel, text forms
//   dispatchPixelTyp(e, f)     calls f(std::type_identity<T>{}) for the type e
//
// Text forms. pixel2Str writes one pixel with no separator after it ("%u",
// "%d", "%e", colour pixels in memory order separated by tabs). str2Pixel reads
// one pixel the way the plane text reader does: each value is a white-space
// separated word whose first comma becomes a point, scanned with "%le"; integer
// types keep the low bits of the truncated value, float rounds. A colour pixel
// reads three words into memory positions one, two, three, and TRGBPixel then
// exchanges the first and third byte (TRGBFloatPixel does not): so a byte colour
// pixel comes back from its own text with red and blue exchanged. That
// asymmetry is relied on by the typed picture's reader and is kept as it is.
#pragma once

#include <cstddef>
#include <type_traits>

#include "rastrix/RastrixTexts.h"
#include "rastrix/TRGBPixel.h"
#include "rastrix/epixeltyp.h"

#define KX_FOR_EACH_PIXEL_TYPE(X) \
  X(unsigned char)                \
  X(unsigned short)               \
  X(float)                        \
  X(::Rastrix::TRGBPixel)         \
  X(::Rastrix::TRGBFloatPixel)    \
  X(int)

namespace Rastrix {

// Room that pixel2Str and TPlane<T>::vPixel2Str/vPixel2Str2 need at most,
// terminating null included.
inline constexpr std::size_t iPixelStrSize = 160;

template <class T>
struct TPixelTraits;

#define KX_PIXEL_TRAITS(T, e, typeName, tag, vpp, nameFn)                     \
  template <>                                                                  \
  struct TPixelTraits<T> {                                                     \
    static constexpr eComparePixelTyp ePixelTyp = e;                           \
    static constexpr const char* cpTypeName = typeName; /* "Typ=" in files */  \
    static constexpr const char* cpTag = tag;                                  \
    static constexpr int iValuesPerPixel = vpp;                                \
    static constexpr bool bColor = (vpp == 3);                                 \
    static const TLanguage::TLanguageString& rName() { return nameFn(); }      \
    static void pixel2Str(const T& p, char* out);                              \
    static const char* str2Pixel(const char* text, T* p);                      \
  };

KX_PIXEL_TRAITS(unsigned char, eUC, "unsigned char", "UC", 1, STR_PLANE_GREYPIC1)
KX_PIXEL_TRAITS(unsigned short, eUS, "unsigned short", "US", 1, STR_PLANE_SHORTPIC1)
KX_PIXEL_TRAITS(float, eF, "float", "F", 1, STR_PLANE_FLOATPIC1)
KX_PIXEL_TRAITS(TRGBPixel, eRGB, "Rastrix::TRGBPixel", "RGB", 3, STR_PLANE_RGBPIC1)
KX_PIXEL_TRAITS(TRGBFloatPixel, eRGBF, "Rastrix::TRGBFloatPixel", "RGBF", 3, STR_PLANE_RGBFLOATPIC1)
KX_PIXEL_TRAITS(int, eI, "int", "I", 1, STR_PLANE_INTPIC1)
#undef KX_PIXEL_TRAITS

template <class T>
inline constexpr bool bIsPixelType = requires { TPixelTraits<T>::ePixelTyp; };

// Reads one value word at `text` (see above) into a double and returns the
// position after it. No word, or a word that does not scan: 0x03300000.
const char* cpReadPixelWord(const char* text, double* value);

// Calls f(std::type_identity<T>{}) with the pixel type numbered e, and returns
// what it returns. A number outside 0..5 raises 0x07000000.
template <class F>
decltype(auto) dispatchPixelTyp(eComparePixelTyp e, F&& f);

[[noreturn]] void vThrowUnknownPixelTyp(int e);

template <class F>
decltype(auto) dispatchPixelTyp(eComparePixelTyp e, F&& f) {
  switch (e) {
    case eUC: return f(std::type_identity<unsigned char>{});
    case eUS: return f(std::type_identity<unsigned short>{});
    case eF: return f(std::type_identity<float>{});
    case eRGB: return f(std::type_identity<TRGBPixel>{});
    case eRGBF: return f(std::type_identity<TRGBFloatPixel>{});
    case eI: return f(std::type_identity<int>{});
  }
  vThrowUnknownPixelTyp(static_cast<int>(e));
}

}  // namespace Rastrix
