// A table of typed columns: the list views of classifiers, statistics and
// spectra fill one, and export it as text.
//
// Each column is described by a TItem (name, caption, unit, format, adjust,
// minimum, maximum, type, length and offset). A line is a block of lineSize()
// bytes in which each column has its cell at its offset: a string of
// `length` bytes (zero terminated, longer texts are cut), an int32, a double
// or a bool byte. Cells are read and written through the typed accessors by
// line and column number; a bad number raises 0x5100000.
//
// Formats of number columns: a printf form for one double or int ("%.3lf",
// "%d"), or "%t<n>", the number with n significant digits (as "%.<n>g").
//
// vTable2String gives the header line (the column names) and one line per
// row, the cells separated by tabs, every line ended by CR LF. TKxTableFrame
// is the text view of a table: columns padded to their widths and adjusted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class TKxTable {
 public:
  enum eType : int32_t { eString = 0, eInt = 1, eDouble = 2, eBool = 3 };
  enum eAdjust : int32_t { eLeft = 0, eCenter = 1, eRight = 2 };

  struct TItem {
    std::string name;     // the header
    std::string caption;  // a longer text for tool tips; may be empty
    std::string unit;
    std::string format;   // number columns; empty gives "%g" and "%d"
    eAdjust adjust = eLeft;
    double min = 0, max = 0;  // the range an editor offers; 0, 0 for none
    eType type = eString;
    unsigned length = 0;  // characters shown; a string cell holds length + 1 bytes
    unsigned offset = 0;  // set by vAddColumn
  };

  TKxTable() = default;

  // Appends a column; its offset follows the last column. Only while the
  // table has no lines (0x5100000 otherwise).
  void vAddColumn(TItem item);
  TItem& addColumn(const std::string& name, eType type, unsigned length, eAdjust adjust = eLeft,
                   const std::string& format = "");
  void vClear();       // columns and lines
  void vClearLines();  // lines only
  std::size_t columns() const { return items_.size(); }
  std::size_t lines() const { return lineCount_; }
  std::size_t lineSize() const { return lineSize_; }
  const TItem& item(std::size_t column) const;
  TItem& item(std::size_t column);
  const std::vector<TItem>& items() const { return items_; }
  // The index of the column of that name, -1 if none.
  int iFindColumn(const std::string& name) const;

  // Appends an empty line (zero bytes) and returns its number.
  std::size_t appendLine();
  unsigned char* line(std::size_t index);
  const unsigned char* line(std::size_t index) const;

  void vSetString(std::size_t line, std::size_t column, const std::string& v);
  void vSetInt(std::size_t line, std::size_t column, int32_t v);
  void vSetDouble(std::size_t line, std::size_t column, double v);
  void vSetBool(std::size_t line, std::size_t column, bool v);
  std::string sGetString(std::size_t line, std::size_t column) const;
  int32_t iGetInt(std::size_t line, std::size_t column) const;
  double dGetDouble(std::size_t line, std::size_t column) const;
  bool bGetBool(std::size_t line, std::size_t column) const;
  // The cell as its column shows it.
  std::string sFormatCell(std::size_t line, std::size_t column) const;

 private:
  unsigned char* cell(std::size_t line, std::size_t column, eType want);
  const unsigned char* cell(std::size_t line, std::size_t column, eType want) const;

  std::vector<TItem> items_;
  std::size_t lineSize_ = 0;
  std::size_t lineCount_ = 0;
  std::vector<unsigned char> data_;
};

// The text view of a table: a header line and the lines, each column padded
// to the larger of its length and its header and adjusted as its item says,
// columns separated by one blank, lines ended by CR LF.
class TKxTableFrame {
 public:
  explicit TKxTableFrame(const TKxTable* table = nullptr) : table_(table) {}
  void vSetTable(const TKxTable* table) { table_ = table; }
  const TKxTable* pGetTable() const { return table_; }
  std::string sText() const;

 private:
  const TKxTable* table_;
};

// Header line and rows, tab separated, CR LF.
std::string vTable2String(const TKxTable& table);
// Writes vTable2String to the file; false if it cannot be written.
bool vTableToFile(const TKxTable& table, const char* fileName);
// The cells as text, the header first.
std::vector<std::vector<std::string>> vTableToGrid(const TKxTable& table);
