#include "kxutils/ulImageFile.h"

#include <atomic>
#include <cmath>
#include <cstdio>
#include <string>

#include "kxutils/KxUtilsErrors.h"
#include "kxutils/ulCoordinatesystem.h"
#include "kxutils/ulImage.h"
#include "platform/AtomicFile.h"
#include "platform/CLocale.h"

using namespace kxutils;

namespace {
std::atomic<TImageFileDouble*> gDouble{nullptr};
TImageFileDouble gNone;
TImageFileDouble& current() {
  TImageFileDouble* d = gDouble.load();
  return d ? *d : gNone;
}

int sample(double from, double to, int count, int i) {
  if (count <= 1) return static_cast<int>(std::lround(from));
  return static_cast<int>(std::lround(from + (to - from) * i / (count - 1)));
}

// Coordinates of a pixel, through the coordinate system when asked.
void coordinates(void* ks, unsigned flags, int line, int column, double& y, double& x) {
  y = line;
  x = column;
  TCoordinatesystemInfo info;
  if ((flags & eTextWorld) && ks && ulCoordinatesystem_GetInfo(ks, &info) == ulOk) {
    x = info.offsetX + info.scaleX * column;
    y = info.offsetY + info.scaleY * line;
  }
}

std::string number(double v) {
  char b[64];
  std::snprintf(b, sizeof b, "%.9g", v);
  return b;
}

unsigned long writeText(void* image, void* ks, double top, double bottom, int lineCount, double left, double right,
                        int columnCount, const char* name, unsigned flags, bool array) {
  TImageInfo info;
  if (const unsigned long r = ulImage_GetInfo(image, &info)) return r;
  if (lineCount < 1 || columnCount < 1 || !name) return ulBadArgument;
  const kx::platform::CNumericScope cLocale;
  std::string text;
  if (flags & eTextHeader) text += array ? "Array\n" : "List\n";
  if (array && (flags & eTextCoordinates)) {
    for (int c = 0; c < columnCount; ++c) {
      double y, x;
      coordinates(ks, flags, 0, sample(left, right, columnCount, c), y, x);
      text += "\t" + number(x);
    }
    text += "\n";
  }
  double values[3];
  for (int l = 0; l < lineCount; ++l) {
    const int line = sample(top, bottom, lineCount, l);
    if (array && (flags & eTextCoordinates)) {
      double y, x;
      coordinates(ks, flags, line, 0, y, x);
      text += number(y) + "\t";
    }
    for (int c = 0; c < columnCount; ++c) {
      const int column = sample(left, right, columnCount, c);
      int count = 0;
      if (const unsigned long r = ulImage_GetPixel(image, line, column, values, &count)) return r;
      if (!array && (flags & eTextCoordinates)) {
        double y, x;
        coordinates(ks, flags, line, column, y, x);
        text += number(y) + "\t" + number(x) + "\t";
      }
      for (int v = 0; v < count; ++v) text += (v ? "\t" : "") + number(values[v]);
      text += array ? (c + 1 < columnCount ? "\t" : "\n") : "\n";
    }
  }
  return kx::platform::writeFileAtomic(name, text) ? ulOk : ulWriteFailed;
}
}  // namespace

namespace kxutils {
unsigned long TImageFileDouble::b16Info(const char*, int*, int*) { return ulFormatNotAvailable; }
unsigned long TImageFileDouble::b16Read(const char*, void*, int, int, int) { return ulFormatNotAvailable; }
unsigned long TImageFileDouble::b16Write(const void*, int, int, int, const char*, bool) { return ulFormatNotAvailable; }
unsigned long TImageFileDouble::dngInfo(const char*, void*) { return ulFormatNotAvailable; }
unsigned long TImageFileDouble::dngRead(const char*, bool, void*, int, int, int) { return ulFormatNotAvailable; }
unsigned long TImageFileDouble::imageInfo(const char*, int*, int*, int*, int*, int*) { return ulFormatNotAvailable; }
unsigned long TImageFileDouble::imageRead(void*, const char*) { return ulFormatNotAvailable; }
void vSetImageFileDouble(TImageFileDouble* d) { gDouble.store(d); }
}  // namespace kxutils

unsigned long ulB16_InfoW(const char* name, int* lines, int* columns, int*, int*) {
  return current().b16Info(name, lines, columns);
}
unsigned long ulB16_ReadW(const char* name, void* first, int lines, int columns, int lineDistance) {
  return current().b16Read(name, first, lines, columns, lineDistance);
}
unsigned long ulB16_WriteW(const void* first, int lines, int columns, int lineDistance, int, const char* name,
                           bool overwrite) {
  return current().b16Write(first, lines, columns, lineDistance, name, overwrite);
}
unsigned long ulDNG_InfoW(const char* name, void* record) { return current().dngInfo(name, record); }
unsigned long ulDNG_ReadGrey16ImageW(const char* name, void* first, int lines, int columns, int lineDistance) {
  return current().dngRead(name, false, first, lines, columns, lineDistance);
}
unsigned long ulDNG_ReadRGBThumbnailImageW(const char* name, void* first, int lines, int columns, int lineDistance) {
  return current().dngRead(name, true, first, lines, columns, lineDistance);
}
unsigned long ulImage_GetFileInfoW(const char* name, int* type, int* lines, int* columns, int* firstLine,
                                   int* firstColumn) {
  return current().imageInfo(name, type, lines, columns, firstLine, firstColumn);
}
unsigned long ulImage_ReadFile1W(void* imageHandle, const char* name, int) {
  return current().imageRead(imageHandle, name);
}

unsigned long ulImage_WriteTextListW(void* image, void*, void* ks, double top, double bottom, int lineCount,
                                     double left, double right, int columnCount, const char* name, unsigned flags) {
  return writeText(image, ks, top, bottom, lineCount, left, right, columnCount, name, flags, false);
}
unsigned long ulImage_WriteTextArrayW(void* image, void*, void* ks, double top, double bottom, int lineCount,
                                      double left, double right, int columnCount, const char* name, unsigned flags) {
  return writeText(image, ks, top, bottom, lineCount, left, right, columnCount, name, flags, true);
}
