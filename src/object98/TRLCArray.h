// TRLCArray: a region of a picture in run-length form, one TRLCLine for each
// line of its bounding box.
//
// Lines and columns are the picture's absolute numbers and may be negative.
// The box FirstLine..LastLine, FirstColumn..LastColumn is inclusive; every
// line of it exists, and may be empty. The empty array has the box 0, -1, 0, -1.
// A region is a set of pixels: it may consist of any number of pieces.
//
// The box is a box, not always the tight one: OR and XOR take the union of the
// operands' boxes, an empty operand included with its 0 and -1, so combining
// with an empty array pulls the box out to line 0 and column 0. AND and
// TPicture2RLC tighten it; offset() leaves the columns of the box where they
// were.
//
// An array whose box was set but that received no run at all (a polygon
// without crossings) holds no line objects; the const operator[] then answers
// every line of the box with one shared empty line.
//
// The time stamp is set at every change of content; cached regions compare it.
//
// Errors: operator[] on an empty array or outside the box raises 0xe742203a
// (0xe742203b for the const form) with "Line=%d FirstLine=%d LastLine=%d";
// calcRLC on a type without rasteriser 0xe072203c; a point object whose count
// is not 1 0xe072203d; too few points for the type 0xe7522066, a coordinate
// beyond +-2^29 0xe7522067; write 0xe352203e; read 0xe322203f (cannot open)
// and 0xe3222064 (not a run file: the array is left empty).
//
// Not thread safe; distinct arrays may be used on distinct threads.
#pragma once

#include <memory>
#include <vector>

#include "kxexception/TTimeStamp.h"
#include "object98/TOPointList.h"
#include "object98/TRLCLine.h"

class TObjectList98;

class TRLCArray {
 public:
  TRLCArray();
  // Rasterises the point list (calcRLC).
  explicit TRLCArray(const TOPointList<int>& list);
  // Deep copies: every line of the box becomes a line of the copy.
  TRLCArray(const TRLCArray& o);
  TRLCArray(TRLCArray&& o) noexcept;
  TRLCArray& operator=(const TRLCArray& o);
  TRLCArray& operator=(TRLCArray&& o) noexcept;
  // freeVar, then calcRLC.
  TRLCArray& operator=(const TOPointList<int>& list);
  ~TRLCArray() = default;

  // Rasterisers. Each replaces the content with the region of the list and
  // sets the time stamp. calcRLC dispatches on the list's type:
  // point 0 -> calcRLCPoint; square, rectangle 1, 2 -> calcRLCRect;
  // parallelogram, trapezia, polygon 3..6 -> calcRLCPolygon; circle 7 ->
  // calcRLCCircle; line 9 -> calcRLCLine; polyline 10 -> calcRLCPolyline.
  // Ellipse 8 has no run form, and groups 11..13 are made from their members
  // in the object list: both raise 0xe072203c here.
  void calcRLC(const TOPointList<int>& list);
  // The region of object `index` of the list, through the list's cache.
  void assign(const TObjectList98* list, unsigned index);
  TRLCArray(const TObjectList98* list, unsigned index) : TRLCArray() { assign(list, index); }
  // The region of a group from its sons (those without the flag 0x01000000),
  // each through its own cache: or-ed, xor-ed or and-ed.
  void calcRLC_OR_Group(const TObjectList98* list, unsigned index);
  void calcRLC_XOR_Group(const TObjectList98* list, unsigned index);
  void calcRLC_AND_Group(const TObjectList98* list, unsigned index);
  // Exactly one point: one line with one run of width 1.
  void calcRLCPoint(const TOPointList<int>& list);
  // Lines from the y of point 0 to the y of point 3, each with the run from the
  // x of point 0 to the x of point 1 (an axis-parallel rectangle).
  void calcRLCRect(const TOPointList<int>& list);
  // Centre point 0; the radius is the x distance of point 1 from it (not the
  // Euclidean one), at least 1. One run per line, see TCircle.
  void calcRLCCircle(const TOPointList<int>& list);
  // The line from point 0 to point 1.
  void calcRLCLine(const TOPointList<int>& list);
  // The lines between successive points, or-ed.
  void calcRLCPolyline(const TOPointList<int>& list);
  // The closed polygon, even-odd filled. An edge owns its lower end and not
  // its upper end; horizontal edges count nothing. So the topmost line stays
  // empty unless an edge crosses it.
  void calcRLCPolygon(const TOPointList<int>& list);

  // Set operators, line by line. See the box rules above; XOR has the merge of
  // TRLCLine::merge_XOR_RLC.
  TRLCArray& operator|=(const TRLCArray& other);
  TRLCArray& operator^=(const TRLCArray& other);
  TRLCArray& operator&=(const TRLCArray& other);

  // The line y (absolute). The non-const form gives every line of the box its
  // own line object first.
  TRLCLine& operator[](int line);
  const TRLCLine& operator[](int line) const;

  // LastLine - FirstLine + 1.
  int size() const { return LastLine - FirstLine + 1; }
  // The area: the sum of all run widths.
  long pixel() const;
  int getFirstLine() const { return FirstLine; }
  int getLastLine() const { return LastLine; }
  int getFirstColumn() const { return FirstColumn; }
  int getLastColumn() const { return LastColumn; }
  // Back to the empty array.
  void vClear();
  // Moves every run by dx and the lines by dy. FirstColumn and LastColumn stay
  // as they were, deliberately: callers that move a mask around follow with
  // operator&=, which recomputes them, or ignore the box.
  void offset(int dx, int dy);

  // The text file: decimal integers, each followed by CR LF: FirstLine,
  // LastLine, FirstColumn, LastColumn, then for each line its run count and
  // for each run its first and last column. No header.
  void write(const char* file) const;
  // Reads what write wrote (LF or CR LF, any white space between the
  // numbers). A file that is not such a list of numbers raises 0xe3222064
  // and leaves the array empty.
  void read(const char* file);

  const Process::TTimeStamp& rGetTimeStamp() const { return TimeStamp; }
  void vSetTimeStamp() { TimeStamp.set(); }

 private:
  friend class TPicture2RLC;

  struct TLinePoint {
    int x;
    int y;
  };
  // Runs in a standard block. Standard blocks freed by a thread are kept for
  // its next regions (a few of them, see TRLCArray.cpp): a chain of set
  // operations then reuses memory that is mapped already, instead of handing
  // it back to the system and faulting it in again on every step.
  static constexpr std::size_t kBlockRuns = 8192;  // 64 KB
  struct TFreeRuns {
    bool bStandard = false;  // kBlockRuns runs, reusable
    void operator()(TRLC* p) const noexcept;
  };
  using TRunBlock = std::unique_ptr<TRLC, TFreeRuns>;
  // A block of `runs` runs; a standard one comes from the thread's spares
  // when there are any.
  static TRunBlock _NewBlock(std::size_t runs);
  // Makes the lines and the run blocks of a new content, line by line.
  class TBuilder;
  friend class TBuilder;

  // The empty state, without freeing (Lines must be empty already).
  void resetVar();
  // Deletes all lines and returns to the empty state.
  void freeVar();
  // Gives every line of the box a line object (an array that had received
  // no run holds none).
  void _vMakeLines();
  // The line y or null when the array holds no line objects.
  const TRLCLine* _pLine(int y) const {
    return Lines.empty() ? nullptr : &Lines[static_cast<std::size_t>(y - FirstLine)];
  }
  // OR and XOR, sharing everything but the merge.
  void _vCombine(const TRLCArray& other, bool bXor);
  // The box is set: one run per line, runOf(y).
  template <class F>
  void _vOneRunPerLine(F&& runOf);

  // The polygon: the crossings of the edges with the lines of the box,
  // grouped by line and sorted by x within each line, then paired into runs.
  void getLinePoints(const TOPointList<int>& list, std::vector<TLinePoint>& points,
                     std::vector<int>& lineStart) const;
  static void sortLinePoints(std::vector<TLinePoint>& points, const std::vector<int>& lineStart);
  void calcRuns(const std::vector<TLinePoint>& points, const std::vector<int>& lineStart);

  int FirstLine;
  int LastLine;
  int FirstColumn;
  int LastColumn;
  // The blocks that hold the runs of the lines, a few lines each (kept below
  // the size the allocator maps fresh from the system). Declared before
  // Lines so that they outlive them.
  std::vector<TRunBlock> Pool;
  // Entry y - FirstLine is the line y. Empty while the array has no line
  // objects (the empty array, and a box that received no run).
  std::vector<TRLCLine> Lines;
  Process::TTimeStamp TimeStamp;
};
