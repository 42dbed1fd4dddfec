#include "kdoint/TIInterpreter.h"

#include <cstdio>
#include <cstring>
#include <mutex>

#include "file98/KxPath.h"
#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIUserBasic.h"
#include "kdoint/TIBuiltInClasses.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIStepLoop.h"
#include "kdoint/TITrace.h"
#include "kxexception/KxError.h"
#include "platform/Clock.h"

using namespace kdoint;

namespace {
TIInterpreter* instance = nullptr;
std::mutex pipeMutex;
std::string pipeName;

void processEventsOfInstance() {
  if (instance) instance->vProcessEvents();
}

// A path as script text: '/' throughout, directories with a trailing '/'.
std::string scriptPath(const char* path, bool dir) {
  std::string p = kx::sToSlash(path ? path : "");
  if (dir && !p.empty() && p.back() != '/') p += '/';
  return p;
}

void copy(char (&to)[260], const char* from) { std::snprintf(to, sizeof to, "%s", from ? from : ""); }
}  // namespace

TIInterpreter::TIInterpreter(const char* stdinFile, const char* stdoutFile, const char* stderrFile, const char* exeDir,
                             const char* macroDir, const char* initDir, const char* tempDir, const char* iniFile,
                             std::vector<std::string>& macroDirs, std::vector<std::string>& initDirs)
    : macroDirs_(macroDirs),
      initDirs_(initDirs),
      functions_(*this),
      parser_(nullptr, classes_, variables_, functions_, io_, *this, procedures_, 0) {
  copy(stdin_, stdinFile);
  copy(stdout_, stdoutFile);
  copy(stderr_, stderrFile);
  copy(exeDir_, exeDir);
  copy(macroDir_, macroDir);
  copy(initDir_, initDir);
  copy(tempDir_, tempDir);
  copy(iniFile_, iniFile);
  stepLoop_ = std::make_unique<TIStepLoop>(*this);
  stepDisplay_ = stepLoop_.get();
  instance = this;
  TIVariableArray::vSetEventHook(processEventsOfInstance);
}

TIInterpreter::~TIInterpreter() {
  if (instance == this) instance = nullptr;
  TIVariableArray::vSetEventHook(nullptr);
  TITrace::openTrace(nullptr);
}

TIInterpreter* TIInterpreter::pGetInstance() { return instance; }

void TIInterpreter::init() {
  KX_TRY {
    try {
      io_.openInput(stdin_, false, false);
      io_.openOutput(stdout_);
      io_.openError(stderr_);
      TITrace::openTrace(&io_);
      loadBuildInClasses();
      functions_.init();
      createVariable();
    } catch (unsigned long) {
      kx::trace(KX_FILE, __LINE__, "%s", TIMessage::getString(0x1004));
      throw;
    }
  }
  KX_CATCH
}

void TIInterpreter::_vRunLine(const char* line) { execLine(line, "TIInterpreter", 0); }

void TIInterpreter::vSetPipeName(const std::string& name) {
  const std::lock_guard<std::mutex> lock(pipeMutex);
  pipeName = name;
}

std::string TIInterpreter::sGetPipeName() {
  const std::lock_guard<std::mutex> lock(pipeMutex);
  return pipeName;
}

void TIInterpreter::loadBuildInClasses() {
  KX_TRY {
    for (const auto& provider : vBuiltInClassProviders()) {
      provider->registerClass(execLine);
      if (classes_.find(provider->getClassName()) < 0) {
        // The line parser kept the failure of a class line: it goes on.
        if (kx::getErrorCode()) throw kx::getErrorCode();
        KX_THROW(ulClassExists, "%s", provider->getClassName());
      }
    }
  }
  KX_CATCH
}

void TIInterpreter::createVariable() {
  KX_TRY {
    const std::string exe = scriptPath(exeDir_, true);
    auto literal = [&](const char* name, const std::string& value) {
      _vRunLine(("LITERAL " + std::string(name) + "=\"" + value + "\"\r\n").c_str());
    };
    literal("stdin", scriptPath(stdin_, false));
    literal("stdout", scriptPath(stdout_, false));
    literal("stderr", scriptPath(stderr_, false));
    literal("ExeDir", exe);
    literal("ColorDir", exe + "Application/color");
    literal("MacroDir", scriptPath(macroDir_, true));
    literal("InitDir", scriptPath(initDir_, true));
    literal("TempDir", scriptPath(tempDir_, true));
    _vRunLine("LITERAL WorkingDir\r\n");
    _vRunLine("WorkingDir=getCurrentDir()\r\n");
    literal("ApplIniFile", scriptPath(iniFile_, false));
    _vRunLine("SEARCHPATH MacroPaths\r\n");
    _vRunLine("SEARCHPATH InitPaths\r\n");
    _vRunLine("FLOAT M_PI=3.14159265358979323846\r\n");
    _vRunLine("INT True=1\r\n");
    _vRunLine("INT False=0\r\n");
    _vRunLine("INT Ret\r\n");
    _vRunLine("Ret=MacroPaths.insert(MacroDir,99)\r\n");
    char line[1200];
    for (const auto& d : macroDirs_) {
      std::snprintf(line, sizeof line, "Ret=MacroPaths.insert(\"%s%s\",1)\r\n", d.empty() || d[0] != '/' ? exe.c_str() : "",
                    kx::sToSlash(d.c_str()).c_str());
      _vRunLine(line);
    }
    _vRunLine("Ret=InitPaths.insert(InitDir,99)\r\n");
    for (const auto& d : initDirs_) {
      std::snprintf(line, sizeof line, "Ret=InitPaths.insert(\"%s%s\",1)\r\n", d.empty() || d[0] != '/' ? exe.c_str() : "",
                    kx::sToSlash(d.c_str()).c_str());
      _vRunLine(line);
    }
    _vRunLine("destroy(\"Ret\")\r\n");
  }
  KX_CATCH
}

bool TIInterpreter::isInput() {
  KX_TRY { return io_.isInput(); }
  KX_CATCH
}

void TIInterpreter::doExecute() {
  KX_TRY {
    io_.readInput(line_, fileName_, &lineNumber_);
    praeprozessor_.processLine(line_);
    char cleaned[sizeof line_];
    std::memcpy(cleaned, line_, sizeof line_);
    recordingBefore_ = recording_;
    playDepthBefore_ = playDepth_;
    lastStatus_ = parser_.parseLine(line_, fileName_, lineNumber_);
    if (recordingBefore_ && recording_ && playDepthBefore_ == 0) io_.write2Macro(cleaned);
  }
  KX_CATCH
}

void TIInterpreter::execute() {
  messageStartExecute();
  while (loop_) {
    try {
      if (isInput())
        doExecute();
      else
        kx::platform::sleepMs(200);
    } catch (unsigned long) {
      kx::trace(KX_FILE, __LINE__, "%s", TIMessage::getString(0x1005, line_));
      kx::ErrorMessageBox();
      kx::deleteError();
    }
  }
  messageStopExecute();
}

void TIInterpreter::execLine(const char* line, const char* fileName, int lineNumber) {
  KX_TRY {
    TIInterpreter* self = instance;
    if (!self) return;
    std::snprintf(self->line_, sizeof self->line_, "%s", line ? line : "");
    try {
      self->praeprozessor_.processLine(self->line_);
      self->lastStatus_ = self->parser_.parseLine(self->line_, fileName, lineNumber);
    } catch (unsigned long) {
      kx::trace(KX_FILE, __LINE__, "%s", TIMessage::getString(0x1005, self->line_));
      throw;
    }
  }
  KX_CATCH
}

void TIInterpreter::messageStartExecute() { io_.writeOutput(TIMessage::getString(0x200a)); }
void TIInterpreter::messageStopExecute() { io_.writeOutput(TIMessage::getString(0x200b)); }
void TIInterpreter::messageErrorExecute() { io_.writeOutput(TIMessage::getString(0x1013)); }

void TIInterpreter::vSetStepDisplay(TIStepDisplay* display) { stepDisplay_ = display ? display : stepLoop_.get(); }

void TIInterpreter::vSetStepMode(bool on) {
  stepMode_ = on;
  if (on && stepDisplay_) stepDisplay_->vShow();
}

void TIInterpreter::vStep(const char* line, const char* fileName, int lineNumber, int depth, int status) {
  if (stepDisplay_) stepDisplay_->vStep(line, fileName, lineNumber, depth, status);
}
