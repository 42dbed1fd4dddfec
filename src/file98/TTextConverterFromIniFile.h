// Rewrites a text by the keys of an ini: every placeholder <begin>name<end>
// ("%Ini%" with the default marks) is replaced by the value of the key
// `name` in the ini's `section`.
//
// A placeholder whose key the ini does not have (or an ini that is null)
// stays as it stands when `keepUnknown` is set, else it becomes `unknownText`.
// An empty name ("%%") is no placeholder. Lines are kept with their own line
// ends (CR LF or LF). The filters that take `dropEmptyLines` leave out a line
// that held a placeholder and is blank after the replacement (bIsEmptyString),
// so optional lines of a template disappear when their value is empty.
#pragma once

#include <cstdio>
#include <string>

class TKxIniFile;

class TTextConverterFromIniFile {
 public:
  TTextConverterFromIniFile(const char* section = "Replace", const char* begin = "%", const char* end = "%",
                            bool keepUnknown = true, const char* unknownText = "");

  // Reads the file `source` and writes the result to the file `target`.
  // Raises kx::file98::ulFileRead / ulIniWrite when a file cannot be read or
  // written.
  void vFilter(const char* source, const char* target, TKxIniFile* ini, bool dropEmptyLines);
  // Reads the file `source` and writes the result to the open stream (all
  // lines kept).
  void vFilter(std::FILE* target, const char* source, TKxIniFile* ini);
  // The rewritten text.
  std::string sFilter(const std::string& text, TKxIniFile* ini, bool dropEmptyLines) const;

  // True for a text of only blanks and tabs, the empty text and null.
  static bool bIsEmptyString(const char* text);

 private:
  std::string _sLine(const std::string& line, TKxIniFile* ini, bool& replaced) const;

  std::string section_;
  std::string begin_;
  std::string end_;
  bool keepUnknown_;
  std::string unknownText_;
};
