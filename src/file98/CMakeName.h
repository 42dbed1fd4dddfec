// Serial file and directory names from a template, for series of pictures.
//
// A template is a path. In its directory part and in its file part a run of
// '#' stands for that part's counter, written with leading zeros in the run's
// width; "$D" stands for the date (YYYYMMDD) and "$T" for the time (HHMMSS)
// taken by InitDate and InitTime (both are taken when the template is set).
//   CMakeName n("c:/data/Serie##/Bild###.tif");
//   n.NextDirectoryAdd();   // "c:/data/Serie00/" created (or the next free one)
//   n.NextFileName();       // "c:/data/Serie00/Bild000.tif"
// The directory counter is called A, the file counter X. Each runs from its
// "from" value to its "to" value; by default from 0 to the largest number its
// run can show (a part without '#' has the single value 0). A "Next" call past
// the end answers "". Names are written in '/' form.
#pragma once

#include <string>

class CMakeName {
 public:
  CMakeName();
  explicit CMakeName(const char* tmpl);

  // Sets the template; both counters start again, the ranges become the
  // defaults, date and time are taken.
  void SetTemplate(const char* tmpl);
  // The range of the file counter X; from > to empties it.
  void SetFromToX(int from, int to);
  // The range of the directory counter A.
  void SetFromToA(int from, int to);

  // Makes the next directory current and answers it, with a trailing '/'.
  // The file counter starts again.
  std::string NextDirectory();
  // As NextDirectory, but skips directories that exist already and creates the
  // one it answers (makeDir; failures raise its codes).
  std::string NextDirectoryAdd();
  // The next name in the current directory (the first of the range if no
  // directory was chosen yet) whose file does not exist yet.
  std::string NextFileName();
  // The name for the given counter values, without changing anything.
  std::string MakePath(int a, int x) const;

  void InitDate();
  void InitTime();

  const std::string& sGetTemplate() const { return template_; }
  // The current counter values (-1 before the first Next... call).
  int iGetA() const { return a_; }
  int iGetX() const { return x_; }

 private:
  static std::string _sExpand(const std::string& part, int counter, const std::string& date, const std::string& time);
  static int _iMaxOf(const std::string& part);
  bool _bDirNext(bool skipExisting);

  std::string template_;
  std::string dirPart_;   // drive and directory of the template, '/' form
  std::string filePart_;  // name and extension of the template
  std::string date_, time_;
  int aFrom_ = 0, aTo_ = 0, xFrom_ = 0, xTo_ = 0;
  int a_ = -1;  // current directory counter, -1: none chosen yet
  int x_ = -1;  // last file counter answered
};
