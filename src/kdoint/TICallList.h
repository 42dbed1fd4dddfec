// The call list of one routine call: this, the result, the arguments and a
// closing 0, the layout every method and built-in receives.
//
// Constants become short-lived variables "__TICallList__%d" (the argument
// count at the time) of class INT, FLOAT or LITERAL in the innermost level:
// the caller opens a level for them and closes it after the call.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class TIClass;
class TIClassList;
class TIVariable;
class TIVariableArray;

class TICallList {
 public:
  TICallList(TIClassList& classes, TIVariableArray& variables);

  TIVariable** getCallList() { return list_.data(); }
  TIVariable** getArgList() { return list_.data() + 2; }
  TIVariable* getThis() const { return list_[0]; }
  TIVariable* getReturn() const { return list_[1]; }
  unsigned getSize() const { return count_; }
  // The classes of the arguments, for the exact lookup of a function.
  std::vector<const TIClass*> getArgClasses() const;
  // The argument classes comma-separated and ")" ("INT,FLOAT)"): how a
  // failed lookup completes its message.
  std::string sGetArgClassList() const;
  // Classes of result and this, null for none.
  const TIClass* getReturnClass() const;

  void reset();
  // By name; a null name stores 0. Unknown: 0xe0a20043 / 0xe0a20044 (302).
  void useThis(const char* name);
  void useReturn(const char* name);
  void useThis(TIVariable* v) { list_[0] = v; }
  void useReturn(TIVariable* v) { list_[1] = v; }
  // An existing variable as the next argument: 0xe0a20045 (302) if unknown.
  void appendVariable(const char* name);
  void appendVariable(TIVariable* v);
  // A constant as the next argument. A missing built-in class raises
  // 0xe0a20046 (205, 206, 207).
  void appendInteger(int32_t value);
  void appendFloat(double value);
  void appendLiteral(const char* text);

 private:
  TIVariable* _temporary(const char* className, unsigned long messageId);

  TIClassList& classes_;
  TIVariableArray& variables_;
  unsigned count_ = 0;
  std::vector<TIVariable*> list_;
};
