// The image-file calls of the utility library.
//
// B16 (a camera maker's format), DNG and the colour-space text ".cos" are
// formats outside this system: each of their calls answers
// ulFormatNotAvailable, unless a test double is installed, which then
// supplies geometry and pixels, so that the calling side (geometry checks,
// the alloc rules) can be tested. Names are UTF-8 with '/' as separator.
//
// The two text writers are real: ulImage_WriteTextListW writes one line per
// sampled pixel, ulImage_WriteTextArrayW one line per sampled picture line;
// both tab separated, see below.
#pragma once

#include <string>

namespace kxutils {

// The stand-in for the closed readers and writers. Every method answers 0 or
// a code; the defaults answer ulFormatNotAvailable.
class TImageFileDouble {
 public:
  virtual ~TImageFileDouble() = default;
  virtual unsigned long b16Info(const char* name, int* lines, int* columns);
  virtual unsigned long b16Read(const char* name, void* first, int lines, int columns, int lineDistance);
  virtual unsigned long b16Write(const void* first, int lines, int columns, int lineDistance, const char* name,
                                 bool overwrite);
  // Fills the record as the library does (offsets 0x30C.. 0x318).
  virtual unsigned long dngInfo(const char* name, void* record);
  virtual unsigned long dngRead(const char* name, bool thumbnail, void* first, int lines, int columns,
                                int lineDistance);
  virtual unsigned long imageInfo(const char* name, int* type, int* lines, int* columns, int* firstLine,
                                  int* firstColumn);
  virtual unsigned long imageRead(void* imageHandle, const char* name);
};
// Installs a double (null: none); the caller keeps it.
void vSetImageFileDouble(TImageFileDouble* d);

// Flags of the text writers.
enum : unsigned {
  eTextHeader = 1,       // a first line naming the picture's value names and units
  eTextCoordinates = 2,  // the coordinates of each pixel (List) or of rows and columns (Array)
  eTextWorld = 4         // coordinates through the coordinate system handle (offset + scale * pixel)
};

}  // namespace kxutils

unsigned long ulB16_InfoW(const char* name, int* lines, int* columns, int* reserved1, int* reserved2);
unsigned long ulB16_ReadW(const char* name, void* first, int lines, int columns, int lineDistance);
unsigned long ulB16_WriteW(const void* first, int lines, int columns, int lineDistance, int reserved,
                           const char* name, bool overwrite);
// `record` is a zeroed block whose first int holds its size (0x550).
unsigned long ulDNG_InfoW(const char* name, void* record);
unsigned long ulDNG_ReadGrey16ImageW(const char* name, void* first, int lines, int columns, int lineDistance);
unsigned long ulDNG_ReadRGBThumbnailImageW(const char* name, void* first, int lines, int columns, int lineDistance);
unsigned long ulImage_GetFileInfoW(const char* name, int* type, int* lines, int* columns, int* firstLine,
                                   int* firstColumn);
unsigned long ulImage_ReadFile1W(void* imageHandle, const char* name, int reserved);

// The pixels of the image sampled on a grid: `lineCount` lines from `top` to
// `bottom` and `columnCount` columns from `left` to `right` (pixel
// coordinates, rounded to the nearest pixel; a count of 1 takes `top`,
// `left`). List: per sample "line<TAB>column<TAB>value..." (coordinates with
// eTextCoordinates), Array: one line per sampled line, the values of its
// columns tab separated (with eTextCoordinates a first line of the column
// coordinates and the line coordinate in front of each line). Colour pixels
// give three values. The colour-space handle may be null; with eTextWorld the
// coordinates go through the coordinate system handle.
unsigned long ulImage_WriteTextListW(void* image, void* colourSpace, void* coordinateSystem, double top, double bottom,
                                     int lineCount, double left, double right, int columnCount, const char* name,
                                     unsigned flags);
unsigned long ulImage_WriteTextArrayW(void* image, void* colourSpace, void* coordinateSystem, double top,
                                      double bottom, int lineCount, double left, double right, int columnCount,
                                      const char* name, unsigned flags);
