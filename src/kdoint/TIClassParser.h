// Classes declared by text:
//
//   class NAME 0xHHHHHHHH 0xHHHHHHHH      (help, status function)
//   {
//       RESULT name(CLASS [param], CLASS [param]) 0xHHHHHHHH 0xHHHHHHHH
//   }
//   supplement NAME
//   { method lines }
//
// The numbers are handles of the running process (TIHandleTable.h): routine
// first, help second in method lines. Registration writes these lines; a
// script may "supplement" a class with methods whose handles it got from
// another class's listing.
#pragma once

#include <cstdint>

class TIClassList;
class TIFileRead;
class TITokenLine;

class TIClassParser {
 public:
  TIClassParser(TIClassList& classes, TITokenLine& tokens);
  // At the "class" line: four tokens (0xe752001f, 40b), token 1 a word and
  // token 2 hexadecimal (0xe7320020; 40c, 415, and 416 for the second test
  // of token 2: token 3 is not tested, a decimal number there is accepted),
  // no class of that name yet (0xe7720021, 20c).
  void setClassName();
  // At the "supplement" line: two tokens, a word, an existing class.
  void findClassName();
  // At the block's end: creates the class and adds the methods; if that
  // fails the class is removed again.
  void setMethods(TIFileRead* file);
  void supplementMethods(TIFileRead* file);

 private:
  void compressFunctionLine();
  void appendMethod();

  TIClassList& classes_;
  TITokenLine& tokens_;
  char name_[128]{};
  uint32_t help_ = 0;
  uint32_t status_ = 0;
};
