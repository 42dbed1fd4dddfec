#include "object98/TRLC2Picture.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "rastrix/PixelTraits.h"
#include "rastrix/RastrixErrors.h"

using namespace Rastrix;
using object98::ulErrRLCValueRange;
using object98::ulErrRLCValueText;

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
  if (v < lo || v > hi) KX_THROW(ulErrRLCValueRange, sOutOfRange(), iShown(v));
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

void TRLC2Picture::vSet(const char* value, const TRLCArray& region) {
  KX_TRY {
    const char* text = value ? value : "";
    const char* p = text;
    if (auto* q = dynamic_cast<TPlane<unsigned char>*>(pPlane)) {
      long long v;
      if (!bReadInt(p, v)) KX_THROW(ulErrRLCValueText, sNoNumber(), text);
      // 256 passes the test and keeps its low eight bits (0); kept as it is.
      vSet(static_cast<unsigned char>(llInRange(v, 0, 256)), region, q);
    } else if (auto* q = dynamic_cast<TPlane<unsigned short>*>(pPlane)) {
      long long v;
      if (!bReadInt(p, v)) KX_THROW(ulErrRLCValueText, sNoNumber(), text);
      vSet(static_cast<unsigned short>(llInRange(v, 0, 65535)), region, q);
    } else if (auto* q = dynamic_cast<TPlane<int>*>(pPlane)) {
      long long v;
      if (!bReadInt(p, v)) KX_THROW(ulErrRLCValueText, sNoNumber(), text);
      vSet(static_cast<int>(llInRange(v, INT_MIN, INT_MAX)), region, q);
    } else if (auto* q = dynamic_cast<TPlane<float>*>(pPlane)) {
      float v;
      if (!bReadFloat(p, v)) KX_THROW(ulErrRLCValueText, sNoNumber(), text);
      vSet(v, region, q);
    } else if (auto* q = dynamic_cast<TPlane<TRGBPixel>*>(pPlane)) {
      long long r, g, b;
      if (!bReadInt(p, r) || !bReadInt(p, g) || !bReadInt(p, b)) KX_THROW(ulErrRLCValueText, sNoNumbers(), text);
      // Each up to 65535, then cut to eight bits; kept as it is.
      TRGBPixel px;
      px.r = static_cast<unsigned char>(llInRange(r, 0, 65535));
      px.g = static_cast<unsigned char>(llInRange(g, 0, 65535));
      px.b = static_cast<unsigned char>(llInRange(b, 0, 65535));
      vSet(px, region, q);
    } else if (auto* q = dynamic_cast<TPlane<TRGBFloatPixel>*>(pPlane)) {
      TRGBFloatPixel px;
      if (!bReadFloat(p, px.r) || !bReadFloat(p, px.g) || !bReadFloat(p, px.b))
        KX_THROW(ulErrRLCValueText, sNoNumbers(), text);
      vSet(px, region, q);
    } else {
      vThrowUnknownPixelTyp(-1);
    }
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
