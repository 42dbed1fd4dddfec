// An integer rectangle of picture positions: first line, last line, first
// column, last column, in this order, both ends inclusive. Every area of a
// plane is given this way. Empty when last = first - 1 (the default).
//
// Careful: IsCorrectRectangle() is true when the rectangle is ILL-formed
// (first > last in either direction). The sense is the opposite of the name,
// and every caller relies on it; AndRectangle, OrRectangle and ReArrange
// return that same value.
#pragma once

class TKxIniFile;
class TIniFilename;

class CRectangle {
 public:
  int iFirstLine = 0;     // "Top" in ini files
  int iLastLine = -1;     // "Bottom"
  int iFirstColumn = 0;   // "Left"
  int iLastColumn = -1;   // "Right"

  CRectangle() = default;
  CRectangle(int firstLine, int lastLine, int firstColumn, int lastColumn)
      : iFirstLine(firstLine), iLastLine(lastLine), iFirstColumn(firstColumn), iLastColumn(lastColumn) {}
  CRectangle(const CRectangle&) = default;
  CRectangle& operator=(const CRectangle&) = default;

  int getFirstLine() const { return iFirstLine; }
  int getLastLine() const { return iLastLine; }
  int getFirstColumn() const { return iFirstColumn; }
  int getLastColumn() const { return iLastColumn; }

  // last - first + 1 (in 64 bits, cut to int); zero or negative when empty.
  int YSize() const { return static_cast<int>(static_cast<long long>(iLastLine) - iFirstLine + 1); }
  int XSize() const { return static_cast<int>(static_cast<long long>(iLastColumn) - iFirstColumn + 1); }

  // Intersection in place: first values the larger, last values the smaller.
  // No test: the result may be ill-formed.
  CRectangle& operator&=(const CRectangle& r);
  // The intersection, then IsCorrectRectangle() (true: nothing is left).
  bool AndRectangle(const CRectangle& r);
  // The bounding rectangle of both, then IsCorrectRectangle().
  bool OrRectangle(const CRectangle& r);
  // True when ill-formed: first line > last line or first column > last column.
  bool IsCorrectRectangle() const { return iFirstLine > iLastLine || iFirstColumn > iLastColumn; }
  // Exchanges first and last where they are out of order; then
  // IsCorrectRectangle(), which is always false here.
  bool ReArrange();
  // This rectangle lies inside r, touching allowed.
  bool IsSmallerAs(const CRectangle& r) const;
  bool operator<=(const CRectangle& r) const { return IsSmallerAs(r); }
  // This rectangle contains r.
  bool operator>=(const CRectangle& r) const { return r.IsSmallerAs(*this); }
  bool operator==(const CRectangle& r) const {
    return iFirstLine == r.iFirstLine && iLastLine == r.iLastLine && iFirstColumn == r.iFirstColumn &&
           iLastColumn == r.iLastColumn;
  }
  bool operator!=(const CRectangle& r) const { return !(*this == r); }

  // Ini form: integer keys "Left", "Right", "Top", "Bottom" in this order. The
  // section must exist, else 0xe331705c "Not found [%s]" (also for a null
  // ini). readIni takes the present values as defaults; writeIni writes into
  // the existing section.
  void readIni(TKxIniFile* ini, const char* section);
  void writeIni(TKxIniFile* ini, const char* section) const;
  // The same on a file on disk, through a TKxStdIniFile.
  void readIni(const TIniFilename& name, const char* section);
  // Careful: this form READS (it calls readIni) and writes nothing.
  void writeIni(const TIniFilename& name, const char* section);
};
