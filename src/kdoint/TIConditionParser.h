// The one comparison of "if(a OP b)" and "while(a OP b)": exactly six tokens
// after folding indices and signs, OP one of < <= > >= == !=. The left
// operand is a variable (or a number), the right one a variable or a number,
// never a literal; the method "operator OP" of the left operand's class with
// result INT and exactly the right operand's class decides. So a FLOAT
// compared with ">" fails (FLOAT has no operator>), and "f<1" fails for
// want of "operator<(INT)" in FLOAT.
//
// The result variable and the temporaries of constant operands have names
// "__ConditionParser__%u" numbered once per parser, at its construction: a
// loop condition evaluated a million times makes no new names.
//
// Errors: 0xe752005c (413) not six tokens; 0xe732005d (408) no "(";
// 0xe732005e (407) no ")"; 0xe7520061 (502) no comparison; 0xe752005f /
// 0xe7520060 (1001) an operand of another kind; 0xe7520062 (1014) no such
// method.
#pragma once

#include <string>

#include "kdoint/TICallList.h"

class TIClassList;
class TITokenLine;
class TIVariableArray;

class TIConditionParser {
 public:
  TIConditionParser(TIClassList& classes, TIVariableArray& variables, TITokenLine& tokens);
  void setLine(const char* line);
  // Tokenises the line afresh and evaluates it.
  bool isTrue();

 private:
  void _vOperand(unsigned i, unsigned long code);

  TIClassList& classes_;
  TIVariableArray& variables_;
  TITokenLine& tokens_;
  TICallList call_;
  char line_[1024]{};
  char returnName_[128]{};
  std::string thisName_, argumentName_, functionName_;
};
