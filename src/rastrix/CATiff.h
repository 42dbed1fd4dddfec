// The printing analyser of TIFF files: header, every directory, every tag
// with name, count and type in the row format "%-29s %-7ld %-8s " and then
// its values (the first 16; a text whole).
#pragma once

#include <cstdint>
#include <string>

class CTag;

class CATiffHeader {
 public:
  static const char* GetTagTypStr(uint16_t tag);
  // One row of a tag.
  static std::string PrintTag(const CTag& t);
};

class CATiff {
 public:
  // Writes the analysis of the file `in` to the file `out`; 0 or a code of
  // the container layer (the analysis of a broken file says where it broke).
  unsigned long Analyse(const char* in, const char* out);
  // The analysis as text.
  static std::string sAnalyse(const char* in, unsigned long* code);
};
