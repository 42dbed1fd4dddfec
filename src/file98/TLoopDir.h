// Walks a directory tree and collects the files whose names match a pattern.
//
// Patterns are shell wildcards ('*', '?', '[...]') compared without regard to
// case; several may be given separated by ';' ("*.tif;*.tix"); "*.*", an
// empty pattern and null match every file. Only files are collected, never
// directories. Linked directories are not followed, so a walk always ends.
// Directories that cannot be read are passed over.
#pragma once

#include <string>
#include <vector>

class TLoopDir {
 public:
  virtual ~TLoopDir() = default;

  // Clears `files` and fills it with the matching files of `start` and of all
  // directories below it: full names in '/' form, sorted by name inside each
  // directory, a directory's own files before those of its subdirectories.
  void vLoop(const char* start, const char* pattern, std::vector<std::string>& files);
  // Appends the matching files of `dir` alone.
  virtual void vLoopCurrentDir(const std::string& dir, const char* pattern, std::vector<std::string>& files);
  // Appends the matching files of every directory below `dir`, depth first.
  virtual void vLoopSubDir(const std::string& dir, const char* pattern, std::vector<std::string>& files);

  // Whether `name` (without directory) matches `pattern` by the rules above.
  static bool bMatch(const char* name, const char* pattern);
};
