// The built-in functions: functions without a class, called as a statement
// "f(args)" or, with a result, as "r = f(args)". The routines are plain
// functions of the call-list signature; they reach the interpreter through
// the one instance.
#pragma once

#include "kdoint/TIClass.h"

class TIInterpreter;

class TIEmbeddedFunction : public TIFunctionList {
 public:
  explicit TIEmbeddedFunction(TIInterpreter& interpreter);
  ~TIEmbeddedFunction();
  // Builds the list; needs the classes INT, FLOAT and LITERAL.
  void init();
  TIInterpreter& getInterpreter() { return interpreter_; }
  static TIEmbeddedFunction* pGetInstance();

 private:
  TIInterpreter& interpreter_;
};
