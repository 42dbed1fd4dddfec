// The interpreter: all its objects, and one line at a time.
//
// doExecute reads the next line from the input stack, cleans it and gives it
// to the top-level line parser, which either runs it or advances its state
// (blocks are collected into files and played back through the stack). A
// failing line never ends the loop: the line parser catches it.
//
// One instance at a time: execLine, handed out as a plain function to class
// providers, reaches it through a static pointer.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kdoint/TIClass.h"
#include "kdoint/TIEAManager.h"
#include "kdoint/TIEmbeddedFunction.h"
#include "kdoint/TILineParser.h"
#include "kdoint/TIPraeprozessor.h"
#include "kdoint/TIProcedure.h"
#include "kdoint/TIVariableArray.h"

// What the front end shows in step mode. `vStep` may hold the interpreter
// (it runs the front end's event loop) until the user lets the line go.
class TIStepDisplay {
 public:
  virtual ~TIStepDisplay() = default;
  virtual void vStep(const char* line, const char* fileName, int lineNumber, int depth, int status) = 0;
  virtual void vShow() {}
};

class TIStepLoop;

class TIInterpreter {
 public:
  using TExecLine = void (*)(const char* line, const char* fileName, int lineNumber);

  TIInterpreter(const char* stdinFile, const char* stdoutFile, const char* stderrFile, const char* exeDir,
                const char* macroDir, const char* initDir, const char* tempDir, const char* iniFile,
                std::vector<std::string>& macroDirs, std::vector<std::string>& initDirs);
  // Destroys the parser first: level 0 closes by force, all variables die
  // in reverse order of creation.
  ~TIInterpreter();
  TIInterpreter(const TIInterpreter&) = delete;
  TIInterpreter& operator=(const TIInterpreter&) = delete;

  // Opens the three files, the trace, loads the built-in classes and
  // functions and defines the global variables. A failure is traced with
  // message 1004 and goes on to the caller.
  void init();
  bool isLoop() const { return loop_; }
  bool isInput();
  // One line: read, clean, parse; recorded when recording was on before and
  // still is, and the line came from the input file itself (play depth 0).
  void doExecute();
  // The blocking loop for use without a timer: runs until exit().
  void execute();
  // Cleans and parses a line at once, past the input stack.
  static void execLine(const char* line, const char* fileName, int lineNumber);
  static TIInterpreter* pGetInstance();
  void close() { loop_ = false; }

  void messageStartExecute();
  void messageStopExecute();
  void messageErrorExecute();

  // Files pushed by blocks, macros and procedures and not yet popped.
  int iGetPlayDepth() const { return playDepth_; }
  void vIncPlayDepth() { ++playDepth_; }
  void vDecPlayDepth() { --playDepth_; }
  bool bGetShowError() const { return showError_; }
  void vSetShowError(bool on) { showError_ = on; }
  bool bIsRecording() const { return recording_; }
  void vSetRecording(bool on) { recording_ = on; }
  int iGetLastStatus() const { return lastStatus_; }
  bool isVisible() const { return visible_; }
  void vSetVisible(bool on) {
    visible_ = on;
    if (on) bringToFront_ = true;
  }
  bool isBringToFront() const { return bringToFront_; }
  void doneBringToFront() { bringToFront_ = false; }
  bool bIsStepMode() const { return stepMode_; }
  void vSetStepMode(bool on);
  // The step display: the interpreter's own TIStepLoop unless another one
  // (not owned) is set; null sets the own one back.
  void vSetStepDisplay(TIStepDisplay* display);
  TIStepLoop& rGetStepLoop() { return *stepLoop_; }
  void vStep(const char* line, const char* fileName, int lineNumber, int depth, int status);

  // What "processMessages()" and a destroy run: the front end's events.
  void vSetEventHook(std::function<void()> hook) { eventHook_ = std::move(hook); }
  void vProcessEvents() {
    if (eventHook_) eventHook_();
  }
  // The pipe "postCommand" writes to (the front end's FIFO).
  static void vSetPipeName(const std::string& name);
  static std::string sGetPipeName();

  // Registers the built-in classes through their class lines.
  void loadBuildInClasses();
  // Defines the global variables: stdin, stdout, stderr, ExeDir, ColorDir,
  // MacroDir, InitDir, TempDir, WorkingDir, ApplIniFile, MacroPaths,
  // InitPaths, M_PI, True, False.
  void createVariable();

  TIEAManager& getEAManager() { return io_; }
  TIClassList& getClassList() { return classes_; }
  TIProcedureList& getProcedureList() { return procedures_; }
  TIVariableArray& getVariableArray() { return variables_; }
  TIEmbeddedFunction& getEmbeddedFunction() { return functions_; }
  TILineParser& getLineParser() { return parser_; }

  const char* cpGetStdin() const { return stdin_; }
  const char* cpGetStdout() const { return stdout_; }
  const char* cpGetStderr() const { return stderr_; }
  const char* cpGetExeDir() const { return exeDir_; }
  const char* cpGetMacroDir() const { return macroDir_; }
  const char* cpGetInitDir() const { return initDir_; }
  const char* cpGetTempDir() const { return tempDir_; }
  const char* cpGetIniFile() const { return iniFile_; }
  const std::vector<std::string>& getMacroDirs() const { return macroDirs_; }
  const std::vector<std::string>& getInitDirs() const { return initDirs_; }

 private:
  void _vRunLine(const char* line);

  char stdin_[260]{}, stdout_[260]{}, stderr_[260]{}, exeDir_[260]{}, macroDir_[260]{}, initDir_[260]{},
      tempDir_[260]{}, iniFile_[260]{};
  std::vector<std::string> macroDirs_, initDirs_;

  TIEAManager io_;
  TIClassList classes_;
  TIProcedureList procedures_;
  TIPraeprozessor praeprozessor_;
  TIVariableArray variables_;
  TIEmbeddedFunction functions_;
  TILineParser parser_;

  char line_[1024]{};
  char fileName_[260]{};
  int lineNumber_ = 0;
  bool loop_ = true;
  bool recording_ = false;
  bool recordingBefore_ = false;
  int playDepth_ = 0;
  int playDepthBefore_ = 0;
  int lastStatus_ = 0;
  bool visible_ = false;
  bool bringToFront_ = false;
  bool showError_ = false;
  std::unique_ptr<TIStepLoop> stepLoop_;
  TIStepDisplay* stepDisplay_ = nullptr;
  bool stepMode_ = false;
  std::function<void()> eventHook_;
};
