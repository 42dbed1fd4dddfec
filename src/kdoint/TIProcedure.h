// Procedures: script text with typed parameters, no result.
//
//   procedure NAME(CLASS name, CLASS name)
//   {
//     body
//   }
//
// A call "NAME(a, b)" writes a block file "{", one hidden
// reference("ACTUAL","PARAM") line per parameter, the body and "}", and
// pushes it on the input stack: the call returns before a line of the body
// has run, and the body arrives as a common block. All parameters are passed
// by reference. Overloads are selected by name, count and exact classes.
// Constant arguments select the overload but do not live long enough for
// their reference lines: procedures take variables.
#pragma once

#include <string>
#include <vector>

class TIClass;
class TIClassList;
class TIFileRead;
class TIInterpreter;
class TITokenLine;
class TIVariableArray;

class TIProcedure {
 public:
  struct TParam {
    TIClass* cls;
    std::string name;
  };
  TIProcedure(std::string name, std::vector<TParam> params);

  const std::string& getName() const { return name_; }
  const std::vector<TParam>& getParams() const { return params_; }
  const std::string& getContent() const { return content_; }
  void setContent(std::string content) { content_ = std::move(content); }
  // "name(CLASS a,CLASS b)".
  const std::string& getDeclaration() const { return declaration_; }

 private:
  std::string name_;
  std::vector<TParam> params_;
  std::string content_;
  std::string declaration_;
};

class TIProcedureList {
 public:
  bool bFind(const char* name) const;
  // Exact: equal name, count and class pointers; -1 if none.
  int iFind(const char* name, const std::vector<const TIClass*>& classes) const;
  bool bExist(const char* name, const std::vector<const TIClass*>& classes) const;
  // An existing overload with the same classes: 0xe762009e.
  void append(TIProcedure p);
  void remove(unsigned i);
  // 0xe742009f ("Index=%d >= Size=%d").
  TIProcedure& operator[](unsigned i);
  unsigned size() const { return static_cast<unsigned>(list_.size()); }

  // The call "NAME(args)" in `tokens`: pushes the body file and increments
  // the play depth.
  void vExecProcedure(TIInterpreter& interpreter, TIClassList& classes, TIVariableArray& variables,
                      TITokenLine& tokens);

 private:
  std::vector<TIProcedure> list_;
};

class TIProcedureParser {
 public:
  TIProcedureParser(TIClassList& classes, TIProcedureList& procedures, TITokenLine& tokens);
  // At the "procedure" line: appends the procedure with an empty body,
  // replacing one of the same name and parameter classes.
  void createProcedure();
  // At the block's end: the whole block becomes the body of the last one.
  void setProcedureContent(TIFileRead* file);

 private:
  TIClassList& classes_;
  TIProcedureList& procedures_;
  TITokenLine& tokens_;
};
