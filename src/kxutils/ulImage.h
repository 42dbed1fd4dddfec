// Image handles of the utility library: an image is a rectangle of pixels of
// one of the six pixel types (codes 0..5 as eComparePixelTyp: unsigned char,
// unsigned short, float, 3-byte colour, 3-float colour, int), addressed by
// absolute line and column from its first line and column, one line every
// `lineDistance` pixels.
//
// An image either looks onto memory it is given (ulImage_Alloc2 with an
// address, ulImage_ConnectImage) and never owns it, or owns zeroed memory it
// allocated itself (ulImage_Alloc2 with a null address). Memory an image
// looks onto must outlive it. An image connected to an owning image shares
// that memory and keeps it alive.
//
// Every function returns 0 or a code of KxUtilsErrors.h; none throws.
// Thread safe (one mutex over all handles).
#pragma once

namespace kxutils {

struct TImageInfo {
  unsigned long type = 0;
  int lines = 0;
  int columns = 0;
  int firstLine = 0;
  int firstColumn = 0;
  int lineDistance = 0;  // pixels from one line to the next
  bool ownsMemory = false;
};

}  // namespace kxutils

// A new image of pixel type `type`, without pixels yet.
unsigned long ulImage_CreateHandle(unsigned long type, void** handle);
// Gives the image lines x lineDistance pixels from (firstLine, firstColumn):
// onto `address` (the pixel (firstLine, firstColumn)) or, with a null
// address, onto zeroed memory of its own. Its columns are lineDistance.
unsigned long ulImage_Alloc2(void* handle, int lines, int lineDistance, int firstLine, int firstColumn,
                             void* address);
// Makes `handle` look onto the area lines x columns from (firstLine,
// firstColumn) of the image `source` (absolute numbers of the source, which
// the new image keeps). The area must lie inside the source; both images must
// have the same type.
unsigned long ulImage_ConnectImage(void* handle, int lines, int columns, int firstLine, int firstColumn,
                                   void* source);
// Deletes the image and sets *handle to null.
unsigned long ulImage_DeleteHandle(void** handle);

unsigned long ulImage_GetInfo(void* handle, kxutils::TImageInfo* info);
// The address of the pixel (line, column).
unsigned long ulImage_GetPixelAddress(void* handle, int line, int column, void** address);
// The pixel (line, column) as doubles: one value, or three for the colour
// types in memory order (blue, green, red); *count says how many.
unsigned long ulImage_GetPixel(void* handle, int line, int column, double* values, int* count);
// The number of living image handles (for leak checks).
unsigned long ulImage_CountHandles(unsigned long* count);
