// Calls of methods and built-ins as the line parser has shaped them.
//
// TIFunctionParser, for a line that starts with a variable:
//   callProcedur        a.f(args)
//   callFunction        r = a.f(args)
//   callOperator        a OP= b, a = b, a = constant
//   callAssignOperator  r = a OP b
// TIEmbeddedParser, for a built-in function:
//   callProcedur        f(args)
//   callFunction        r = f(args)
//
// Dispatch is exact: the function of that name whose result class is that
// of the result variable (none without one) and whose argument classes are
// exactly those given. Constants become temporaries of their kind in a level
// of the call, closed when the call returns (also when it fails).
//
// A built-in takes its arguments loosely: a word that names a variable of
// class LITERAL, INT or FLOAT is that variable; any other word, an object of
// another class, or an operator arrives as a LITERAL holding its own text.
// That is what makes "global(obj)" and "exist(Something)" work.
#pragma once

class TIClassList;
class TIEmbeddedFunction;
class TITokenLine;
class TIVariableArray;

class TIFunctionParser {
 public:
  TIFunctionParser(TIClassList& classes, TIVariableArray& variables, TITokenLine& tokens);
  void callProcedur();
  void callFunction();
  void callOperator();
  void callAssignOperator();

 private:
  void _vCall(bool bAssign, bool bOperator);

  TIClassList& classes_;
  TIVariableArray& variables_;
  TITokenLine& tokens_;
};

class TIEmbeddedParser {
 public:
  TIEmbeddedParser(TIEmbeddedFunction& functions, TIClassList& classes, TIVariableArray& variables,
                   TITokenLine& tokens);
  void callProcedur();
  void callFunction();

 private:
  void _vCall(bool bResult);

  TIEmbeddedFunction& functions_;
  TIClassList& classes_;
  TIVariableArray& variables_;
  TITokenLine& tokens_;
};
