// Variable definition: "INT a", "INT b(5)", "INT c=a", "FLOAT f(a)",
// "LITERAL s="text"", "SEARCHPATH p(a,b)" and the vector "INT v[10]".
//
// The new variable goes into the innermost level and is made by the class's
// "create" whose argument classes are exactly those given: there is no
// conversion. If anything fails after the variable was made, it is removed
// again and the failure goes on.
#pragma once

#include "kdoint/KdoIntErrors.h"

class TIClassList;
class TITokenLine;
class TIVariableArray;

class TIVariableParser {
 public:
  TIVariableParser(TIClassList& classes, TIVariableArray& variables, TITokenLine& tokens);
  // Token 0 is a known class name.
  void setVariable();

 private:
  void _vSetVector();

  TIClassList& classes_;
  TIVariableArray& variables_;
  TITokenLine& tokens_;
};

// Folds "name [ index ]" at token i into the one token "name[index]". The
// index is an integer or hexadecimal token or a word naming an INT variable;
// nothing else (no "a[b+1]", no "a[b[1]]"). Whether the element exists shows
// only when it is looked up. Each parser raises its own codes.
void vConvertVectorVariable(TITokenLine& tokens, const TIVariableArray& variables, unsigned i,
                            const kdoint::TIIndexCodes& codes);

// The only treatment of a sign: the "-" at token i is merged with the next
// token when that is an integer or a float (not hexadecimal) and the token
// before is not a word. "a=-1" and "a=b*-1" hold a negative constant,
// "a=b-1" stays a subtraction.
void vFindNegativSign(TITokenLine& tokens, unsigned i);

// Whether a token's code is that of a word (a plain word, or one already
// recognised as a class, function or variable name).
bool bIsWordCode(int code);
