// The clipboard: an in-process store of named formats. There is no system
// clipboard; what one part of the program puts here, another reads back.
// Format names are registered to ids from 0xC000 on; format 1 (CF_TEXT) is
// plain text. Opening clears nothing; vClear empties every format. Process
// wide and guarded by a mutex.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class TKxClipboard {
 public:
  static constexpr unsigned uTextFormat = 1;

  // The id of a named format, registered on first use (same name, same id).
  static unsigned uRegisterFormat(const char* name);
  static void vClear();
  static void vSetData(unsigned format, const void* data, std::size_t size);
  static bool bHasFormat(unsigned format);
  // Copies the bytes of `format`; empty when there are none.
  static std::vector<char> vGetData(unsigned format);

  static void vSetText(const std::string& text) { vSetData(uTextFormat, text.data(), text.size()); }
  static std::string sGetText();
};
