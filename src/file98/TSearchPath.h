// An ordered list of directories to look for files in, as the interpreter's
// SEARCHPATH variables use it for macros and ini files.
//
// Directories are held in '/' form without a trailing '/'. Lookups go through
// the list from the front: directories inserted by a later bInsert come first,
// so a macro in an application directory overrides one of the same name
// further up. Not thread safe; one object belongs to one owner.
#pragma once

#include <string>
#include <vector>

class TSearchPath {
 public:
  TSearchPath();

  // Enters `path` and, with count > 1, the directories above it, one per
  // round, up to `count` directories, the longest first, all before the
  // directories already in the list. Ends with true when a directory has no
  // '/' left, is in the list already, or is the program's directory; with
  // false when a directory does not exist (what earlier rounds entered
  // stays). insert(MacroDir, 99) thus enters the macro directory and its
  // parents up to the program's directory.
  bool bInsert(const char* path, int count);

  int size() const { return static_cast<int>(dirs_.size()); }
  // The i-th directory; an index outside the list raises ulSearchPathIndex.
  const std::string& operator[](int i) const;
  // All directories joined with ";".
  std::string sGetSearchPaths() const;
  // The first directory holding `file`, with a trailing '/'; "" if none does.
  std::string sGetDir(const char* file) const;
  // As sGetDir, but the search starts after the entry `dir` (compared with a
  // trailing '/' and without regard to case): the macro that overrides another
  // finds the overridden one. "" if `dir` is not in the list.
  std::string sGetPreviousDir(const char* file, const char* dir) const;
  // The whole path of the first `file` found, in '/' form; "" if none.
  std::string sGetPath(const char* file) const;

  // The directory where bInsert stops climbing; by default the directory of
  // the running program.
  void vSetProgramDir(const char* dir);
  const std::string& sGetProgramDir() const { return programDir_; }

 private:
  std::string _sFind(const char* file, size_t from) const;

  std::vector<std::string> dirs_;
  std::string programDir_;  // '/' form, no trailing '/'
};
