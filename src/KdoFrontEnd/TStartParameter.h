// The start configuration of the interpreter front end, from one ini file:
// the applications (macro directories), calibrations (init directories),
// start macros and work directories to choose from, each with a default.
//
//   [Application]            Size=2  Default=1
//   [Application/Entry1]     Name=...  NameE=...  Path=...  Path1=...  Path2=...
//   [Calibration], [Calibration/Entry1]   the same
//   [Startmacro/Entry1]      Name=...  NameE=...
//   [Work/Entry1]            Path=...
//
// "Default" is the number of the default entry, from 1. Relative paths are
// made absolute with the directory of the ini file (the program's directory
// in an installation). A path that does not exist is no failure: a notice
// says so and reading goes on.
#pragma once

#include <string>
#include <vector>

class TStartParameter {
 public:
  // Reads the ini. Errors: 0xe7034004 a list missing, of size 0 or with a
  // default out of range; 0xe7834001 an entry without its name; 0xe7834002
  // an entry without its path.
  void vRead(const char* iniFile);

  unsigned uGetNumberApplication() const { return size(eApplication); }
  unsigned uGetDefaultApplication() const { return lists_[eApplication].def; }
  void vSetDefaultApplication(unsigned i) { setDefault(eApplication, i); }
  const char* cpGetApplicationName(unsigned i) const { return entry(eApplication, i).name.c_str(); }
  const char* cpGetApplicationPath(unsigned i) const { return entry(eApplication, i).path.c_str(); }
  int iSizeApplicationPath2(unsigned i) const { return static_cast<int>(entry(eApplication, i).more.size()); }
  const char* cpGetApplicationPath2(unsigned i, unsigned j) const { return more(eApplication, i, j); }

  unsigned uGetNumberCalibration() const { return size(eCalibration); }
  unsigned uGetDefaultCalibration() const { return lists_[eCalibration].def; }
  void vSetDefaultCalibration(unsigned i) { setDefault(eCalibration, i); }
  const char* cpGetCalibrationName(unsigned i) const { return entry(eCalibration, i).name.c_str(); }
  const char* cpGetCalibrationPath(unsigned i) const { return entry(eCalibration, i).path.c_str(); }
  int iSizeCalibrationPath2(unsigned i) const { return static_cast<int>(entry(eCalibration, i).more.size()); }
  const char* cpGetCalibrationPath2(unsigned i, unsigned j) const { return more(eCalibration, i, j); }

  unsigned uGetNumberStartmacro() const { return size(eStartmacro); }
  unsigned uGetDefaultStartmacro() const { return lists_[eStartmacro].def; }
  void vSetDefaultStartmacro(unsigned i) { setDefault(eStartmacro, i); }
  const char* cpGetStartmacroName(unsigned i) const { return entry(eStartmacro, i).name.c_str(); }

  unsigned uGetNumberWork() const { return size(eWork); }
  unsigned uGetDefaultWork() const { return lists_[eWork].def; }
  void vSetDefaultWork(unsigned i) { setDefault(eWork, i); }
  const char* cpGetWorkPath(unsigned i) const { return entry(eWork, i).path.c_str(); }

  const char* cpGetInstallationPath() const { return installation_.c_str(); }

 private:
  enum eList { eApplication, eCalibration, eStartmacro, eWork };
  struct TEntry {
    std::string name, path;
    std::vector<std::string> more;
  };
  struct TList {
    std::vector<TEntry> entries;
    unsigned def = 0;  // index from 0
  };
  unsigned size(eList l) const { return static_cast<unsigned>(lists_[l].entries.size()); }
  const TEntry& entry(eList l, unsigned i) const;
  const char* more(eList l, unsigned i, unsigned j) const;
  void setDefault(eList l, unsigned i);

  TList lists_[4];
  std::string installation_;
};
