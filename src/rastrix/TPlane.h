// TPlane<T>: a plane of pixels of type T, for the six pixel types of
// PixelTraits.h (explicitly instantiated in TPlane.cpp).
//
// Rows and memory. A pixel is always reached through the row table:
// `plane[line][column]` with absolute numbers; there is no multiplication by
// a stride anywhere. The row table is the plane's own allocation (one pointer
// per line, indexed by absolute line number) and makes three layouts look
// alike:
//   own memory     one zero-filled block of lines * line distance pixels;
//                  row[first line + i] + first column = block + i * line distance
//   extern, one    the caller's pointer is the pixel at absolute (0, 0),
//     block        whatever the first line and column: row[n] = mem + n * ld
//                  (the first column is NOT subtracted, so a plane from line
//                  100 reads line 100 of the caller's block)
//   extern, two    interlaced fields (a frame grabber's): even lines from
//     blocks       mem, odd lines from mem2, row[n] = block + (n / 2) * ld,
//                  the halving rounding toward zero (negative lines occur)
// Extern memory is never owned; it must outlive the plane.
//
// getMemory() is the address of pixel (0, 0) of the numbering in a one-block
// layout: getMemory() + line * getLineDistance() + column is the pixel
// (line, column) of an own or one-block plane (it may lie outside the block).
// For two blocks it is the block of the even lines.
//
// Inner loops fetch the row once with operator[] (which checks the line) or
// index getLinePtr() directly, and walk the row with no further test.
//
// Errors: operations on an invalid plane raise 0xe7021004; see each operation.
//
// Adding operations in another unit: declare them here and define them in
// that unit, instantiating each new member for every pixel type, e.g.
//   #define X(T) template void Rastrix::TPlane<T>::clear();
//   KX_FOR_EACH_PIXEL_TYPE(X)
#pragma once

#include <cstddef>
#include <memory>

#include "file98/CRectangle.h"
#include "rastrix/PixelTraits.h"
#include "rastrix/TPlaneBasic.h"

namespace Rastrix {

template <class T>
class TPlane : public TPlaneBasic {
  static_assert(bIsPixelType<T>, "TPlane<T> exists for the six pixel types only");

 public:
  using value_type = T;
  using TTraits = TPixelTraits<T>;

  // An invalid plane, carrying the name, value name and unit of a fresh plane
  // of its type; not modified.
  TPlane();
  // alloc with the same arguments (see there).
  TPlane(int lines, int columns, const T* mem = nullptr, const T* mem2 = nullptr);
  TPlane(int lines, int columns, int firstLine, int firstColumn, int lineDistance, const T* mem = nullptr,
         const T* mem2 = nullptr);
  TPlane(const CRectangle& r, const T* mem = nullptr, const T* mem2 = nullptr);
  TPlane(const CRectangle& r, int lineDistance, const T* mem = nullptr, const T* mem2 = nullptr);
  // Always a deep, compact copy (line distance = columns, own memory, own
  // common with the same description), whatever the source's layout.
  TPlane(const TPlane& o);
  ~TPlane() override;

  // Assignment, in this order (it matters for views): o's description goes
  // into the common in use, so assigning to a view renames its SOURCE; then
  // a plane with extern memory or another size detaches to its own common
  // (message 11) and frees quietly; then, for a valid source, alloc(lines,
  // columns), moveTo its numbers, copy the pixels under the lock (message
  // 51); the plane is stamped and dated now (message 5).
  TPlane& operator=(const TPlane& o);

  // Makes the plane lines x columns from (firstLine, firstColumn) with the
  // given line distance (default: columns), over own memory (mem null) or the
  // caller's memory (mem; two blocks with mem2).
  //  - Valid, same five numbers, both pointers null: returns at once; pixels,
  //    stamp and messages untouched (the capture loop's road: no allocation).
  //  - Otherwise a valid plane first detaches to its own common (message 11)
  //    and frees quietly.
  //  - lines < 1 or columns < 1: stays invalid, no error (alloc(0, 0) empties).
  //  - line distance < columns: 0xe7121003.
  //  - Then the numbers are stored, memory and row table set up, the plane is
  //    valid, stamped, message 50. Memory exhaustion passes through (as
  //    0xe0000000) and leaves the numbers stored with the plane invalid.
  void alloc(int lines, int columns, const T* mem = nullptr, const T* mem2 = nullptr);
  void alloc(int lines, int columns, int firstLine, int firstColumn, int lineDistance, const T* mem = nullptr,
             const T* mem2 = nullptr);
  void alloc(const CRectangle& r, const T* mem = nullptr, const T* mem2 = nullptr);
  void alloc(const CRectangle& r, int lineDistance, const T* mem = nullptr, const T* mem2 = nullptr);
  // Releases the row table and, unless extern, the pixel block; the plane
  // goes back to its own common (11) with no pixels; stamp, message 50. The
  // description survives in the own common. Nothing happens on an invalid
  // plane.
  void free();

  // Makes this plane a view onto the rectangle r of `source`, with no copy:
  // the view shares the source's pixels and its common (name, units, time
  // stamp, lock), and its numbers are the source's: pixel (l, c) of the view
  // is pixel (l, c) of the source. Already exactly that view: nothing happens.
  // r empty or not inside the source (or the source itself): 0xe5121023.
  // Ends with the source's value range copied, stamp, message 50.
  //
  // LIFETIME: the source must outlive every use of the view. Nothing ties the
  // two together: a view of a destroyed source holds dangling rows and a
  // dangling common. Destroying such a view is safe (it only releases its row
  // table), nothing else is.
  void beSubPicture(const TPlane& source, const CRectangle& r);

  // Renumbers the plane (invalid: 0xe7021004); stamp, message 50.
  //  - own memory: pixels stay where they are, only their numbers change;
  //  - extern memory or a view: the memory's pixel (0, 0) stays fixed and the
  //    plane is a window sliding over it, so it shows other pixels; moving
  //    past the memory is not detected;
  //  - two blocks: the same per field; fewer than two lines: 0xe7121005.
  void moveBy(int lines, int columns);
  void moveTo(int firstLine, int firstColumn);

  // The row of an absolute line: invalid plane 0xe7021004, line outside
  // 0xe742101b. Indexed by absolute column, unchecked.
  T* operator[](int line) {
    if (!bValid || line < iFirstLine || line > iFirstLine + iLines - 1) _vBadLine(line);
    return ppRows[line];
  }
  const T* operator[](int line) const {
    if (!bValid || line < iFirstLine || line > iFirstLine + iLines - 1) _vBadLine(line);
    return ppRows[line];
  }
  T* getMemory() const { return pMemory; }
  // The row table, indexed by absolute line; null for an invalid plane.
  T** getLinePtr() const { return ppRows; }

  // The pixel as a double (a colour pixel gives its luminance). Line as
  // operator[]; a column outside the plane raises 0xe712101f or 0xe7221020.
  double getDoublePixelLC(int line, int column) const override;
  // Also releases the memory still held, so that it is never lost.
  void attrib2Zero() override;

  // One pixel as text, with no separator after it: "%u", "%d", "%e", colour
  // pixels in memory order "%u\t%u\t%u" or "%f\t%f\t%f". `out` needs
  // iPixelStrSize bytes.
  void vPixel2Str(const T* p, char* out) const { TTraits::pixel2Str(*p, out); }
  // A colour pixel as a colour: handed to the plane's colour space as CIE RGB,
  // written in the space of its to-flag, third float first ("%f\t%f\t%f").
  // A grey pixel writes nothing, leaving `out` as it is.
  void vPixel2Str2(const T* p, char* out) const;
  // Reads one pixel from text (see PixelTraits.h), returns the position after
  // it; a word that does not scan raises 0x03300000.
  static const char* cpStr2Pixel(const char* text, T* p) { return TTraits::str2Pixel(text, p); }

  // Keys of the plane file header.
  const char* cpKeyTyp = "Typ=";
  const char* cpKeyLines = "Lines=";
  const char* cpKeyColumns = "Columns=";
  const char* cpKeyFirstLine = "FirstLine=";
  const char* cpKeyFirstColumn = "FirstColumn=";
  const char* cpKeyColorSpace = "ColorSpace=";

 protected:
  // Copies all pixels of `src` (same size) to this plane from its first line
  // and column, under the lock; stamp, message 51.
  void _vInsertAll(const TPlane& src);

  // Where the typed pictures build the text getFileExtension() returns.
  char caExtension[16]{};

 private:
  [[noreturn]] void _vBadLine(int line) const;
  void _vSetRows(T** store);

  struct TAlignedFree {
    void operator()(T* p) const;
  };

  T* pMemory = nullptr;   // pixel (0, 0) of the numbering, see above
  T** ppRows = nullptr;   // row table, shifted: indexed by absolute line
  std::unique_ptr<T*[]> rowStore;            // the row table's allocation
  std::unique_ptr<T, TAlignedFree> block;    // own pixel block
};

#define KX_EXTERN_PLANE(T) extern template class TPlane<T>;
KX_FOR_EACH_PIXEL_TYPE(KX_EXTERN_PLANE)
#undef KX_EXTERN_PLANE

}  // namespace Rastrix
