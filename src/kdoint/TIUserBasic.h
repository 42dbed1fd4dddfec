// The base of every class provider: a class name, a method table, help and a
// status function. Registration writes the class as script text,
//
//   class NAME 0xHELP 0xSTATUS
//   {
//       RESULT name(ARGS) 0xROUTINE 0xHELP
//   }
//
// and executes it line by line, so that a class comes into being by the same
// route as any script text (the numbers are handles, TIHandleTable.h). A
// provider lives only for the registration; the class lives on in the class
// list. The value of an object variable is a pointer owned by the variable,
// made by its "create" and freed by its "destroy" routine: every class must
// have "destroy", and "create()" if vectors of it are to exist.
#pragma once

#include <string>
#include <vector>

#include "kdoint/TIClass.h"

class TIClassList;

// One method: its signature as a method line holds it before the two
// numbers ("INT insert(LITERAL,INT)"), the routine, the help text (static,
// may be null). A table ends with a record whose signature is null.
struct TIMethodRecord {
  const char* signature;
  TIRoutine routine;
  const char* help;
};

class TIUserBasic {
 public:
  using TExecLine = void (*)(const char* line, const char* fileName, int lineNumber);

  virtual ~TIUserBasic() = default;
  virtual const char* getClassName() const = 0;
  virtual const TIMethodRecord* getFunctionList() const = 0;
  // "Für diese Interpeterklasse steht keine Hilfe zur Verfügung."
  virtual const char* cpGetClassHelp() const;
  // Writes "Name=%s\r\nKlasse=%s\r\nWeitere Informationen sind nicht
  // verfügbar" (or the English text), cut to the buffer.
  virtual TIStatusFunction vpGetStatus();

  // Executes the class lines through `execLine` (the interpreter's).
  void registerClass(TExecLine execLine);
  // The same with "supplement NAME": adds the table's methods to the class.
  void supplementClass(TExecLine execLine);
  // Whether the running interpreter knows a class of that name.
  static bool bExistClass(const char* name);

  // The lines registration executes, with their line ends.
  std::vector<std::string> getClassLines(bool bSupplement);
  // Declares the class in `classes` from the same lines, past any
  // interpreter (the class parser reads them directly).
  void vRegisterInto(TIClassList& classes);
};

// A provider made from a table: name, help, status function and methods as
// (name, result class or null for VOID, argument classes, routine, help).
class TITableClass : public TIUserBasic {
 public:
  struct TMethod {
    const char* name;
    const char* result;
    std::vector<const char*> args;
    TIRoutine routine;
    const char* help = nullptr;
  };
  TITableClass(const char* name, const char* help, TIStatusFunction status, const std::vector<TMethod>& methods);
  const char* getClassName() const override { return name_.c_str(); }
  const TIMethodRecord* getFunctionList() const override { return records_.data(); }
  const char* cpGetClassHelp() const override { return help_ ? help_ : TIUserBasic::cpGetClassHelp(); }
  TIStatusFunction vpGetStatus() override { return status_ ? status_ : TIUserBasic::vpGetStatus(); }

 private:
  std::string name_;
  const char* help_;
  TIStatusFunction status_;
  std::vector<std::string> signatures_;
  std::vector<TIMethodRecord> records_;
};
