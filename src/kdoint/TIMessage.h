// The interpreter's messages: one table of ids with a German and an English
// text, used through getString by the whole interpreter.
#pragma once

class TIMessage {
 public:
  // The text of `id` in the current language, formatted with the arguments
  // (vsnprintf) into one static buffer of 2048 bytes, valid until the next
  // call: not reentrant, the interpreter's thread only. An id that is not in
  // the table gives the table's ending entry ("?").
  static const char* getString(unsigned long id, ...);
  // The raw text of `id` in a language (0 German, 1 English), unformatted;
  // the ending entry's text for an unknown id.
  static const char* getText(unsigned long id, int language);
  // Whether the table has the id.
  static bool bExists(unsigned long id);
};
