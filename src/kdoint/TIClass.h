// Classes and functions of the interpreter: a function is a compiled routine
// with a declared signature, a method of a class or a built-in without one;
// a class is a name and its functions. Dispatch is by exact names and
// classes: no conversion, no inheritance, no default argument.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

class TIClass;
class TIVariable;

using TIRoutine = void (*)(TIVariable**);
using TIStatusFunction = void (*)(const TIVariable*, char*, int);

class TIFunction {
 public:
  // `name` with a '$' suffix is cut there; an 'h' behind the '$' hides the
  // function from lists ("reference$h"). Counts one reference of the result
  // class and of each argument class, unless it is the owner. `help` is not
  // owned; null gives the default help text.
  TIFunction(TIClass* owner, const char* name, const std::vector<TIClass*>& args, TIClass* result,
             TIRoutine address, const char* help = nullptr);
  ~TIFunction();
  TIFunction(const TIFunction&) = delete;
  TIFunction& operator=(const TIFunction&) = delete;

  bool isName(const char* name) const { return name && name_ == name; }
  // Same name, result and arguments; by class names (null or "VOID" for no
  // result) or by class pointers.
  bool isSame(const char* name, const char* resultClass, const std::vector<const char*>& argClasses) const;
  bool isSame(const char* name, const TIClass* result, const std::vector<const TIClass*>& args) const;
  // "RESULT name(ARG,ARG)", VOID for no result, "()" for no arguments.
  std::string getFormat() const;
  void list(FILE* file, int indent) const;

  TIClass* getOwner() const { return owner_; }
  const std::string& getName() const { return name_; }
  unsigned getArgumentCount() const { return static_cast<unsigned>(args_.size()); }
  TIClass* getArgument(unsigned i) const { return args_[i]; }
  TIClass* getResult() const { return result_; }
  TIRoutine getAddress() const { return address_; }
  bool isHidden() const { return hidden_; }
  const char* getHelp() const { return help_; }

 private:
  TIClass* owner_;
  std::string name_;
  std::vector<TIClass*> args_;
  TIClass* result_;
  TIRoutine address_;
  bool hidden_ = false;
  const char* help_;
};

class TIFunctionList {
 public:
  TIFunctionList() = default;
  ~TIFunctionList();
  TIFunctionList(const TIFunctionList&) = delete;
  TIFunctionList& operator=(const TIFunctionList&) = delete;

  // Takes ownership.
  void append(TIFunction* f);
  unsigned getSize() const { return static_cast<unsigned>(functions_.size()); }
  // Index beyond the list: 0xe7420049 (1003).
  TIFunction* operator[](unsigned i) const;
  // The first function of that name, -1 if none; the exact forms compare
  // result and argument classes too. Searched in declaration order.
  int find(const char* name) const;
  int find(const char* name, const char* resultClass, const std::vector<const char*>& argClasses) const;
  int find(const char* name, const TIClass* result, const std::vector<const TIClass*>& args) const;

 private:
  std::vector<TIFunction*> functions_;
};

class TIClass {
 public:
  TIClass(const char* name, const char* help = nullptr, TIStatusFunction status = nullptr);
  TIClass(const TIClass&) = delete;
  TIClass& operator=(const TIClass&) = delete;

  const std::string& getName() const { return name_; }
  unsigned getInstances() const { return instances_; }
  unsigned getReferences() const { return references_; }
  void increaseInstance() { ++instances_; }
  void decreaseInstance() { --instances_; }
  void increaseReference() { ++references_; }
  void decreaseReference() { --references_; }
  TIFunctionList& getFunctionList() { return functions_; }
  const TIFunctionList& getFunctionList() const { return functions_; }
  const char* getHelp() const { return help_; }
  TIStatusFunction getStatusFunction() const { return status_; }
  // The class's "destroy" routine taking no arguments, or null.
  TIRoutine pGetDestroy() const;
  void list(FILE* file, int indent) const;

 private:
  std::string name_;
  unsigned instances_ = 0;
  unsigned references_ = 0;
  TIFunctionList functions_;
  const char* help_;
  TIStatusFunction status_;
};

class TIClassList {
 public:
  TIClassList() = default;
  ~TIClassList();
  TIClassList(const TIClassList&) = delete;
  TIClassList& operator=(const TIClassList&) = delete;

  // Takes ownership.
  void append(TIClass* c);
  // Index of the class, -1 if none.
  int find(const char* name) const;
  unsigned getSize() const { return static_cast<unsigned>(classes_.size()); }
  // 0xe742001c (208).
  TIClass* operator[](unsigned i) const;
  // 0xe7420034 (208) for an index, 0xe7520035 (209) for an unknown name.
  TIClass* addressOf(unsigned i) const;
  TIClass* addressOf(const char* name) const;
  // Index failure 0xe742002c (208); a class with instances 0xe522002d (20a),
  // with references 0xe522002e (20b).
  void remove(unsigned i);

 private:
  std::vector<TIClass*> classes_;
};
