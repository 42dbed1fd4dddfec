// TRLC and TRLCLine: the runs of one picture line.
//
// A run is an interval of columns, both ends inclusive. A line holds exactly
// getSize() runs; the pointer to them is null exactly when the line is empty.
// A line made on its own owns its array. The lines of a TRLCArray keep their
// runs in one block of the array instead (one allocation per region, not per
// line); such a line is valid as long as its array is unchanged. Copying or
// moving a line out of an array gives a line that owns its runs.
//
// The set operators keep a line normal: runs sorted by ascending first column,
// no two overlapping or touching (a run ending at c and one starting at c + 1
// are one run). The constructor from a count and an array copies the runs as
// they are: the caller keeps them normal.
//
// Order used by every sort: ascending first column; at equal first column the
// longer run first. The merges rely on it.
//
// Errors: operator[] outside 0..getSize()-1 raises 0xe7422060 ("Index>=0",
// "Index<Size"); getFirstColumn/getLastColumn of an empty line 0xe7422061
// ("Size>0"). Not thread safe; distinct lines may be used on distinct threads.
#pragma once

#include <cstdlib>


struct TRLC {
  int FirstColumn;
  int LastColumn;

  TRLC() = default;  // left uninitialised, like the arrays it fills
  constexpr TRLC(int first, int last) : FirstColumn(first), LastColumn(last) {}

  int getWidth() const { return LastColumn - FirstColumn + 1; }
  void offsetX(int dx) {
    FirstColumn += dx;
    LastColumn += dx;
  }
  bool operator==(const TRLC&) const = default;
};

class TRLCLine {
 public:
  TRLCLine() = default;
  // Copies `count` runs, without sorting or merging. A count of 0 or less
  // gives an empty line.
  TRLCLine(int count, const TRLC* runs);
  TRLCLine(const TRLCLine& o);
  TRLCLine(TRLCLine&& o);
  TRLCLine& operator=(const TRLCLine& o);
  TRLCLine& operator=(TRLCLine&& o);
  ~TRLCLine() { vFreeOwn(); }

  int getSize() const { return Size; }
  // The non-const form forgets that the line was known to be normal: the
  // caller may change the run.
  TRLC& operator[](int index);
  const TRLC& operator[](int index) const;
  const TRLC* begin() const { return Begin; }
  const TRLC* end() const { return Begin + Size; }

  // The number of pixels: the sum of the run widths.
  long pixel() const;
  // The first column of the first run and the last column of the last run.
  int getFirstColumn() const;
  int getLastColumn() const;
  void offsetX(int dx);

  // Union. The runs of both lines are sorted together and merged; touching
  // runs fuse.
  TRLCLine& operator|=(const TRLCLine& other);
  // Exclusive or, with this system's merge: where two runs overlap, the part
  // behind the overlap comes out one column to the left (see merge_XOR_RLC).
  TRLCLine& operator^=(const TRLCLine& other);
  // Intersection: for each run of this line in order, its overlaps with the
  // runs of the other line in order. Neither sorted nor merged afterwards.
  TRLCLine& operator&=(const TRLCLine& other);

  // Sorts `count` runs in place in the order above.
  static void sortRLC(int count, TRLC* runs);
  // Fuses overlapping and touching neighbours of sorted runs in place;
  // returns the new count.
  static int merge_OR_RLC(int count, TRLC* runs);
  // The exclusive-or merge of sorted runs in place; returns the new count.
  static int merge_XOR_RLC(int count, TRLC* runs);

  // Whether the runs are normal: each well formed (first <= last), sorted,
  // with at least one free column between neighbours. Remembered until the
  // runs change.
  bool bIsNormal() const { return State == eNormal || (State == eUnknown && _bFindNormal()); }

 private:
  friend class TRLCArray;
  friend class TPicture2RLC;
  enum : signed char { eUnknown = 0, eNormal = 1, eNotNormal = 2 };
  // Tests the runs and remembers the answer.
  bool _bFindNormal() const;
  // Replaces the runs by an own copy of exactly `count` runs, whose
  // normality is `state` (eUnknown when not known).
  void _vSetRuns(int count, const TRLC* runs, signed char state = eUnknown);
  // Points the line at `count` runs in its array's block.
  void _vBorrow(int count, TRLC* runs, signed char state);
  // Takes the runs of `o` as they are, own or borrowed (within one array).
  void _vTake(TRLCLine& o) noexcept;
  void vFreeOwn() noexcept {
    if (Owned) std::free(Begin);
    Owned = false;
  }

  TRLC* Begin = nullptr;  // the runs; null exactly when Size is 0
  int Size = 0;
  // Whether the runs are normal (see bIsNormal), found out once: the set
  // operators take their one-pass paths for normal lines without testing
  // them each time.
  mutable signed char State = eNormal;
  bool Owned = false;  // Begin is the line's own allocation (std::malloc)
};
