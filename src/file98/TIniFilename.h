// The name of an ini file on disk, passed by value where a file is meant.
//
// Every object with readIni(TKxIniFile*, section) also has
// readIni(const TIniFilename&, section), which opens a TKxStdIniFile on the
// name and calls the first form. The name is kept in '/' form ("\" becomes
// "/"), so it can go to the system as it is.
#pragma once

#include <string>

class TIniFilename {
 public:
  TIniFilename() = default;
  explicit TIniFilename(const char* name);
  explicit TIniFilename(const std::string& name) : TIniFilename(name.c_str()) {}

  const char* c_str() const { return name_.c_str(); }
  const std::string& str() const { return name_; }
  bool empty() const { return name_.empty(); }
  // Whether a file (not a directory) of this name exists.
  bool bExists() const;
  bool operator==(const TIniFilename&) const = default;

 private:
  std::string name_;
};
