// The integration times a camera accepts: a table of lines, each from a
// lower to an upper limit in equal steps (the last step of a line may be
// shorter: the last value is always the upper limit), walked in one of
// three modes: every table value, linear steps of a given size, or
// logarithmic steps of a given factor. A step that lands on the value it
// started from still moves one table value, so a walk always progresses.
//
// Ini form (section given by the caller): "Number" lines; line i (from 0)
// as "Min<i>", "Max<i>", "Step<i>"; "Mode" (0, 1, 2), "ModeStep" (the
// step or factor of the mode) and "Current".
#pragma once

#include <string>
#include <vector>

class TKxIniFile;
class TIniFilename;

class TStepControl {
 public:
  struct TLine {
    double dLower = 0, dUpper = 0, dStep = 0;
    int iCount = 0;  // values of the line: from the limits and the step
  };
  enum EMode : int { eAllValues = 0, eLinear = 1, eLogarithmic = 2 };
  // More lines than this are refused when reading a table.
  static constexpr int iMaxLines = 10000;

  TStepControl() = default;

  // "Number" missing: "Not found: [%s]:%s" (0xe5123001); a line value that
  // does not parse: "Error in: [%s]:%s" (0xe5123002); then the table proof.
  // Nothing changes when reading fails.
  void readIni(const TIniFilename& file, const std::string& section);
  void readIni(TKxIniFile* ini, const std::string& section);
  void writeIni(const TIniFilename& file, const std::string& section) const;
  void writeIni(TKxIniFile* ini, const std::string& section) const;

  // One line from `from` to `to` in `step`; the current value the table
  // value nearest `from`.
  void vSetFromStepTo(double from, double step, double to);

  // An empty table raises 0xe7023001 in these.
  double getFirstValue() const;
  double getLastValue() const;
  double getCurrentValue() const { return dCurrent; }
  // The table value nearest t; it becomes current.
  double getCurrentValue(double t);
  // The next (previous) value after t in the mode; false at the end of the
  // table, the current value then unchanged.
  bool getNextValue(double t, double* out);
  bool getPreviousValue(double t, double* out);
  // How many table values lie from the one nearest a to the one nearest b.
  int getValueNumberBetween(double a, double b) const;
  // The position in the whole table of the value nearest t.
  int getCurrentIndex(double t) const;

  void setModeAllValues();
  void setModeLinearValues(double step);
  // A factor below 1.0 raises 0xe5123003.
  void setModeLogarithmicValues(double factor);
  EMode eGetMode() const { return eMode; }
  double dGetModeStep() const { return dModeStep; }

  int iGetLineCount() const { return static_cast<int>(Lines.size()); }
  const TLine& rGetLine(int i) const { return Lines.at(static_cast<std::size_t>(i)); }

 private:
  // Every line: lower below upper, step above 0, below the next line; the
  // counts follow. 0xe5123004 with the Part's texts.
  static void _proofTable(std::vector<TLine>& lines);
  void _checkNotEmpty() const;
  void _getTableIndex(double t, int& line, int& index) const;
  double _getTableValue(int line, int index) const;
  bool _increaseTableIndex(int& line, int& index) const;
  bool _reduceTableIndex(int& line, int& index) const;

  std::vector<TLine> Lines;
  EMode eMode = eAllValues;
  double dModeStep = 1.0;
  double dCurrent = 0.0;
};
