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

#include <cstdio>
#include <string>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

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
  //  - a last line or column beyond the int range: 0xe71210c8.
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

  // Renumbers the plane (invalid: 0xe7021004; numbers beyond the int range:
  // 0xe71210c8); stamp, message 50.
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
    if (!bValid || line < iFirstLine || line > iFirstLine + (iLines - 1)) _vBadLine(line);
    return ppRows[line];
  }
  const T* operator[](int line) const {
    if (!bValid || line < iFirstLine || line > iFirstLine + (iLines - 1)) _vBadLine(line);
    return ppRows[line];
  }
  T* getMemory() const { return pMemory; }
  // The row table, indexed by absolute line; null for an invalid plane.
  T** getLinePtr() const { return ppRows; }

  // The pixel as a double (a colour pixel gives its luminance). Line as
  // operator[]; a column outside the plane raises 0xe712101f or 0xe7221020.
  double getDoublePixelLC(int line, int column) const override;
  eComparePixelTyp eGetPicturePT() const override { return TTraits::ePixelTyp; }
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

  // ---------------------------------------------------------------------
  // Pixel operations (TPlaneOperations.cpp). Areas are absolute numbers:
  // first line, last line, first column, last column, or a CRectangle with
  // the same four. Every checked area goes through proofArea, whose codes
  // are the failures (0xe7021004 on an invalid plane).
  //
  // Writers of whole regions (clear, setRectangle, setLine, setColumn,
  // putLine, putColumn, insert) take the lock, write, unlock, stamp and send
  // message 51. Readers (getLine, getColumn, calcMinMax) never lock: they can
  // see a half-written picture. scaleDown and the operators stamp and send
  // 51 without the lock.

  // Every pixel to zero bytes. Invalid plane: 0xe7021004.
  void clear();
  // Every pixel of the area (default: the whole plane) takes the value.
  void setRectangle(const T& value);
  void setRectangle(const T& value, int l1, int l2, int c1, int c2);
  void setRectangle(const T& value, const CRectangle& r);
  // One line, or its columns c1..c2.
  void setLine(const T& value, int line);
  void setLine(const T& value, int line, int c1, int c2);
  // One column, or its lines l1..l2.
  void setColumn(const T& value, int column);
  void setColumn(const T& value, int column, int l1, int l2);
  // Line transfers: `out`/`in` hold the pixels of the columns, in order.
  void getLine(T* out, int line) const;
  void getLine(T* out, int line, int c1, int c2) const;
  void putLine(const T* in, int line);
  void putLine(const T* in, int line, int c1, int c2);
  // Column transfers: `out`/`in` are contiguous, one pixel per line.
  void getColumn(T* out, int column) const;
  void getColumn(T* out, int column, int l1, int l2) const;
  void putColumn(const T* in, int column);
  void putColumn(const T* in, int column, int l1, int l2);
  // The bare inner loops for callers that checked the area already: no
  // check, no lock, no stamp, no message. An area outside the plane is
  // undefined behaviour.
  void _setLine(const T& value, int line, int c1, int c2);
  void _getLine(T* out, int line, int c1, int c2) const;
  void _putLine(const T* in, int line, int c1, int c2);

  // Copies the area l1..l2 x c1..c2 of `src` to this plane at (toLine,
  // toColumn), one block move per line. Checks in this order: src is this
  // plane (0xe7721022), src.proofArea of the area, proofArea of the target.
  // A view and its source may overlap; nothing guards against that.
  //  - insert(src): all of src to this plane's first line and column; the
  //    numbers of src do not matter, only its size;
  //  - insert(src, area): to the same numbers in this plane.
  void insert(const TPlane& src);
  void insert(const TPlane& src, int l1, int l2, int c1, int c2);
  void insert(const TPlane& src, const CRectangle& r);
  void insert(const TPlane& src, const CRectangle& r, int toLine, int toColumn);
  void insert(const TPlane& src, int l1, int l2, int c1, int c2, int toLine, int toColumn);

  // The smallest and the largest pixel, folded with TPlaneBasic::min/max
  // from the first pixel of the area on (colour pixels by component, so the
  // result may be no pixel of the plane). The rectangle is cut to the plane;
  // when nothing is left (also: an invalid plane) min and max are untouched
  // and nothing is raised. A float NaN is passed over, unless it is the
  // first pixel, which then is the answer.
  // ---- files (TPlaneFiles.cpp)
  //
  // The raw format: a text header (lines ended by CR LF: "Typ=", "Lines=",
  // "Columns=", "FirstLine=", "FirstColumn=", for colour "ColorSpace=", then
  // "Value%d=" and "Unit%d=" per channel, then the coordinate system's text
  // when it has a type), one null byte, then the pixels line after line with
  // no padding, in the host's byte order. The text format: the type word, the
  // area "%d\t%d\t%d\t%d" (first line, last line, first column, last
  // column), then one text line per picture line.
  //
  // Writing goes to a temporary file beside the target that is renamed over
  // it at the end: a failure never leaves a file that reads as valid.
  void writeFile(const char* name, bool overwrite) const override;
  // ".txt" anywhere in the lower-cased name: text; else raw. Then the last
  // file name, the stamp, not modified, message 51.
  void readFile(const char* name, bool alloc) override;
  void readFileAscii(const char* name, bool alloc);
  void readFileBinaer(const char* name, bool alloc);
  // Reads into a temporary plane (alloc true) and inserts it.
  void insertFile(const char* name) override;
  // The rectangle cut to the plane; a sub-file of a part is always raw.
  void writeSubFile(const char* name, const CRectangle& r, bool overwrite) const;
  // Overwrite: an existing file is deleted (0xe3a21007 if that fails); else
  // an existing file is refused (0xe3721006). An invalid plane: 0xe7021004.
  void vProofWriteable(const char* name, bool overwrite) const;
  // Append the header lines to `out` (room for 2048 bytes).
  virtual void vFormatHeader(char* out) const;
  virtual void vFormatValueUnit(char* out) const;
  virtual void vReadHeader(const char* header, const char* name, int& lines, int& columns, int& firstLine,
                           int& firstColumn);
  virtual void vReadValueUnit(const char* header);
  // The text header: type word and area; all failures 0x03300000.
  void vReadHeader2(std::FILE* f, int* firstColumn, int* lastColumn, int* firstLine, int* lastLine, bool* colour);
  // Text export: the whole plane, an area (cut to the plane), a rectangle.
  // `colourValues`: colour pixels as colour values of the plane's colour
  // space, behind two lines "ColorSpace" and "RefColor". An existing file
  // with overwrite false: 0xe3521095.
  void vPic2AsciiFile(const char* name, bool overwrite, bool colourValues) const;
  void vRect2AsciiFile(const char* name, bool overwrite, int l1, int l2, int c1, int c2, bool colourValues) const;
  void vRegion2AsciiFile(const CRectangle& r, const char* name, bool overwrite, bool colourValues) const;
  // The text format into a string: the header with the numbers as given,
  // the lines cut to the plane.
  void vRect2String(std::string& out, int l1, int l2, int c1, int c2, bool colourValues) const;
  void vHeader2String(std::string& out, int l1, int l2, int c1, int c2, bool& colourValues) const;
  // One text line, pixels separated by tabs, ended by a line feed.
  void vLine2Str(char* out, int line, int c1, int c2) const;
  void vLine2Str2(char* out, int line, int c1, int c2) const;
  // The native clipboard form "TPlane<type>": four ints (first line, last
  // line, first column, last column) and the pixels.
  void vPic2Clipboard() const;
  void vRect2Clipboard(int l1, int l2, int c1, int c2) const;
  static bool bHaveClipboardData();
  // Reads the native clipboard form (alloc true); a block of the wrong
  // length: 0xe752108b.
  void vFromClipboard();
  // "Textformat images (*.txt)|*.txt|Picture float (*.pf)|*.pf" and the
  // patterns alone ("*.txt *.pf ").
  const char* getFileExtension() override;
  void vGetFileExtension(char* out) override;

  void calcMinMax(T& min, T& max) const;
  void calcMinMax(T& min, T& max, const CRectangle& r) const;
  // Over the disc of `radius` (at least 1) around column x, line y: the
  // square y +- radius, x +- radius cut to the plane, starting at its middle
  // pixel; per line the half width trunc(sqrt(radius^2 - (l - y)^2) + 0.5),
  // 0 where that root is 0, cut to the square. Radius 1 is the five-pixel
  // cross.
  void calcMinMax(T& min, T& max, long x, long y, unsigned long radius) const;

  // This plane := src shrunk by blocks of iY lines x iX columns, each the
  // mean of its block, written from this plane's first line and column; the
  // rest of src beyond whole blocks is dropped. Checks: iY < 1 0xe7521071,
  // iX < 1 0xe7521072, iY > src lines 0xe7521073, iX > src columns
  // 0xe7521074; with `alloc` a plane of another size is reallocated to
  // (src lines / iY) x (src columns / iX) from (0, 0); then a plane too small
  // raises 0xe7521075 (lines) or 0xe7521076 (columns). Sums are float for
  // float pixels, double for the integer types, whose means are truncated.
  // A byte colour plane averages the luminance and stores its truncated low
  // eight bits in all three bytes: the result is grey. No lock; stamp, 51.
  virtual void scaleDown(const TPlane& src, int iY, int iX, bool alloc);

  // Pixel by pixel over the lines and columns both planes have, for float
  // planes. No checks, no lock; stamp, message 51. Meant for planes with
  // equal first columns; otherwise the pairing is off (see the definition).
  // A divisor of exactly +-0 gives 0.
  TPlane& operator*=(const TPlane& o)
    requires std::is_same_v<T, float>;
  TPlane& operator/=(const TPlane& o)
    requires std::is_same_v<T, float>;
  // Every pixel times the value (a colour pixel by component). No lock;
  // stamp, message 51.
  TPlane& operator*=(const T& value)
    requires(std::is_same_v<T, float> || std::is_same_v<T, TRGBFloatPixel>);

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
  void _vCheckRange(int64_t firstLine, int64_t firstColumn) const;
  void _vMoveTo(int64_t firstLine, int64_t firstColumn);
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
