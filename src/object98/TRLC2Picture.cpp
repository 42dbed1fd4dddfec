#include "object98/TRLC2Picture.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <type_traits>

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "rastrix/PixelTraits.h"
#include "rastrix/RastrixErrors.h"

using namespace Rastrix;
using object98::ulRLCValueRange;
using object98::ulRLCValueText;

namespace {

const TLanguage::TLanguageString sNoNumber("Kann nicht in Zahl konvertiert werden: %s", "Can not convert to a number: %s");
const TLanguage::TLanguageString sNoNumbers("Kann nicht in Zahlen konvertiert werden: %s",
                                            "Can not convert to numbers: %s");
const TLanguage::TLanguageString sOutOfRange("%d ausserhalb des Bereichs", "%d out of range");

// One "%i" conversion: white space, a sign, then decimal, 0x hexadecimal or
// 0 octal digits. Advances `p` past it; false when there is no number.
bool bReadInt(const char*& p, long long& v) {
  char* end = nullptr;
  errno = 0;
  v = std::strtoll(p, &end, 0);
  if (end == p) return false;
  p = end;
  return true;
}

// One "%e" conversion.
bool bReadFloat(const char*& p, float& v) {
  char* end = nullptr;
  v = std::strtof(p, &end);
  if (end == p) return false;
  p = end;
  return true;
}

// The value as "%d" prints it in the message.
int iShown(long long v) { return static_cast<int>(std::clamp<long long>(v, INT_MIN, INT_MAX)); }

long long llInRange(long long v, long long lo, long long hi) {
  if (v < lo || v > hi) KX_THROW(ulRLCValueRange, sOutOfRange(), iShown(v));
  return v;
}

template <class T>
void vSetRegion(const T& value, const TRLCArray& region, TPlane<T>* plane) {
  if (!plane) vThrowUnknownPixelTyp(-1);
  if (plane->isValid() && region.size() > 0) {
    const int c0 = plane->getFirstColumn(), c1 = plane->getLastColumn();
    const int first = std::max(region.getFirstLine(), plane->getFirstLine());
    const int last = std::min(region.getLastLine(), plane->getLastLine());
    for (int y = first; y <= last; ++y)
      for (const TRLC& r : region[y]) {
        const int a = std::max(r.FirstColumn, c0), b = std::min(r.LastColumn, c1);
        if (a <= b) plane->_setLine(value, y, a, b);
      }
  }
  plane->setTimeStamp();
  plane->vSendCommonMessage(51, 0);
}

}  // namespace

// The value text for a pixel of type T, with the type's range rules.
template <class T>
T valueOf(const char* text) {
  const char* p = text;
  if constexpr (std::is_same_v<T, float>) {
    float v;
    if (!bReadFloat(p, v)) KX_THROW(ulRLCValueText, sNoNumber(), text);
    return v;
  } else if constexpr (std::is_same_v<T, TRGBFloatPixel>) {
    TRGBFloatPixel px;
    if (!bReadFloat(p, px.r) || !bReadFloat(p, px.g) || !bReadFloat(p, px.b))
      KX_THROW(ulRLCValueText, sNoNumbers(), text);
    return px;
  } else if constexpr (std::is_same_v<T, TRGBPixel>) {
    long long r, g, b;
    if (!bReadInt(p, r) || !bReadInt(p, g) || !bReadInt(p, b)) KX_THROW(ulRLCValueText, sNoNumbers(), text);
    // Each up to 65535, then cut to eight bits; kept as it is.
    TRGBPixel px;
    px.r = static_cast<unsigned char>(llInRange(r, 0, 65535));
    px.g = static_cast<unsigned char>(llInRange(g, 0, 65535));
    px.b = static_cast<unsigned char>(llInRange(b, 0, 65535));
    return px;
  } else {
    long long v;
    if (!bReadInt(p, v)) KX_THROW(ulRLCValueText, sNoNumber(), text);
    if constexpr (std::is_same_v<T, unsigned char>)
      return static_cast<unsigned char>(llInRange(v, 0, 256));  // 256 passes and keeps its low bits (0); kept as it is
    else if constexpr (std::is_same_v<T, unsigned short>)
      return static_cast<unsigned short>(llInRange(v, 0, 65535));
    else
      return static_cast<int>(llInRange(v, INT_MIN, INT_MAX));
  }
}

void TRLC2Picture::vSet(const char* value, const TRLCArray& region) {
  KX_TRY {
    const char* text = value ? value : "";
    // No plane, or one of no pixel type: the unknown type.
    eComparePixelTyp e = eUC;
    try {
      if (!pPlane) throw 0UL;
      e = pPlane->eGetPicturePT();
    } catch (unsigned long) {
      kx::deleteError();
      vThrowUnknownPixelTyp(-1);
    }
    dispatchPixelTyp(e, [&](auto tag) {
      using T = typename decltype(tag)::type;
      vSet(valueOf<T>(text), region, static_cast<TPlane<T>*>(pPlane));
    });
  }
  KX_CATCH
}

void TRLC2Picture::vSet(unsigned char value, const TRLCArray& region, TPlane<unsigned char>* plane) {
  KX_TRY { vSetRegion(value, region, plane); }
  KX_CATCH
}
void TRLC2Picture::vSet(unsigned short value, const TRLCArray& region, TPlane<unsigned short>* plane) {
  KX_TRY { vSetRegion(value, region, plane); }
  KX_CATCH
}
void TRLC2Picture::vSet(float value, const TRLCArray& region, TPlane<float>* plane) {
  KX_TRY { vSetRegion(value, region, plane); }
  KX_CATCH
}
void TRLC2Picture::vSet(TRGBPixel value, const TRLCArray& region, TPlane<TRGBPixel>* plane) {
  KX_TRY { vSetRegion(value, region, plane); }
  KX_CATCH
}
void TRLC2Picture::vSet(TRGBFloatPixel value, const TRLCArray& region, TPlane<TRGBFloatPixel>* plane) {
  KX_TRY { vSetRegion(value, region, plane); }
  KX_CATCH
}
void TRLC2Picture::vSet(int value, const TRLCArray& region, TPlane<int>* plane) {
  KX_TRY { vSetRegion(value, region, plane); }
  KX_CATCH
}
