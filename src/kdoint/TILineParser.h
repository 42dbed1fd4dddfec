// The line parser: takes one cleaned line at a time and either executes it
// or advances its state machine. There is no statement list and no jump: the
// shape of a line's tokens selects one of a few statement forms, and a block
// ("{" ... "}" on lines of their own) is collected into a file that is then
// played back through the input stack to a child parser. The deepest child
// executes; its ancestors see nothing.
//
// States: 0 normal line; 1 "if" seen, 2 within if, 3 end of if ("else"
// possible); 4 "else" seen, 5 within else; 6 "while" seen, 7 within while;
// 8 "class" seen, 9 within class; 10 within a common block; 11 "supplement"
// seen, 12 within it; 13 "procedure" seen, 14 within it.
//
// A failure of a line is caught here. With show-error off (the default) the
// status goes to 0 and the chain stays as it is; with it on, the chain gets
// the macro and the line, is shown and deleted. Either way the next line is
// read as usual: a failing "if" line leaves status 0, so its "{" opens a
// common block and the body runs unconditionally.
#pragma once

#include "kdoint/TIToken.h"

class TIClassList;
class TIVariableArray;
class TIEmbeddedFunction;
class TIEAManager;
class TIInterpreter;
class TIProcedureList;
class TIFileWrite;
class TIClassParser;
class TIConditionParser;
class TIProcedureParser;

class TILineParser {
 public:
  TILineParser(TILineParser* parent, TIClassList& classes, TIVariableArray& variables, TIEmbeddedFunction& functions,
               TIEAManager& io, TIInterpreter& interpreter, TIProcedureList& procedures, int depth);
  ~TILineParser();
  TILineParser(const TILineParser&) = delete;
  TILineParser& operator=(const TILineParser&) = delete;

  // Returns the new status.
  int parseLine(const char* line, const char* fileName, int lineNumber);
  // "repeatWhile()": re-evaluates the loop of the parent of the deepest
  // parser; rewinds the body, or lets it run out. No child: 0xe5020089
  // (1019); no condition: 0xe502008a (101a).
  void repeatWhileBlock();
  // "closeParser()": marks the deepest child as to be closed. No child:
  // 0xe5020088 (1018).
  void closeCurrentChild();
  void setToBeClosed() { toBeClosed_ = true; }
  bool isToBeClosed() const { return toBeClosed_; }
  int getStatus() const { return status_; }
  int getDepth() const { return depth_; }
  TILineParser* getChild() const { return child_; }
  // The status names shown in step mode ("0 (Normal Line)"); "" for 11-14.
  static const char* cpStatusName(int status);

 private:
  void _vDispatch();
  void _vHandleError();
  void insideExtraStatus();
  void beginIf();
  void beginWhile();
  void createClass();
  void supplementClass();
  void createProcedure();
  void openCommonBlock();
  void openBlock();
  void continueBlock();
  void closeBlock();
  void closeIfBlock();
  void closeElseBlock();
  void closeWhileBlock();
  void closeClassBlock();
  void closeSupplementBlock();
  void closeProcedureBlock();
  void closeCommonBlock();
  void createVariable();
  void execVariable();
  void execEmbeddedProcedur();
  void execProcedure();
  void var_proc();
  void var_op();
  void var_assign();
  void var_assign_proc();
  void var_assign_var();
  void var_assign_var_func();
  void var_assign_var_op();
  void convertVectorVariable(unsigned i);
  void findNegativSign(unsigned i);
  void _vFoldIndicesAndSigns(unsigned from);
  // Pushes the collected block with `lastLine` at its end to a new child.
  void _vPlayBlock(const char* lastLine);
  void _vDropBlockFile();
  void _vReadBlock(void (*use)(TILineParser&, class TIFileRead&));

  // Lines the top-level parser receives go straight to the deepest parser
  // of the chain of children (kept by the top-level one), so that a deep
  // recursion does not pass every line through every level.
  int _iParseHere(const char* line, const char* fileName, int lineNumber);
  TILineParser* parent_;
  TILineParser* root_;
  TILineParser* deepest_ = nullptr;
  TIClassList& classes_;
  TIVariableArray& variables_;
  TIEmbeddedFunction& functions_;
  TIEAManager& io_;
  TIInterpreter& interpreter_;
  TIProcedureList& procedures_;
  TITokenLine tokens_;
  int status_ = 0;
  int blockDepth_ = 0;
  TIFileWrite* blockFile_ = nullptr;
  TIClassParser* classParser_ = nullptr;
  TIConditionParser* conditionParser_ = nullptr;
  TILineParser* child_ = nullptr;
  TIProcedureParser* procedureParser_ = nullptr;
  char line_[1024]{};
  char fileName_[260]{};
  int lineNumber_ = 0;
  bool condition_ = false;
  bool toBeClosed_ = false;
  int depth_;
};
