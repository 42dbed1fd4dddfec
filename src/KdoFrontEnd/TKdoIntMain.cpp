#include "KdoFrontEnd/TKdoIntMain.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "KdoFrontEnd/KdoFrontEndErrors.h"
#include "KdoFrontEnd/TCommandLineOption.h"
#include "KdoFrontEnd/TStartParameter.h"
#include "file98/KxPath.h"
#include "file98/TIniFile2Registry.h"
#include "kdoint/TIInterpreter.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIStepLoop.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "platform/Clock.h"
#include "platform/Notice.h"

using namespace kdofront;
namespace fs = std::filesystem;

namespace {

std::atomic<int> signals{0};
void onSignal(int) {
  if (signals.fetch_add(1) >= 2) std::_Exit(2);
}

constexpr TLanguage::TLanguageString sIniMissing("Datei %s nicht gefunden. Das Programm wird jetzt beendet.",
                                                 "File %s not found. Close program now.");

std::string defaultPipeName() {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime && *runtime) return std::string(runtime) + "/Ombrix";
  return "/tmp/Ombrix-" + std::to_string(::getuid());
}

bool isDir(const std::string& p) {
  struct stat st{};
  return ::stat(p.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The number of an option "-f2", or 0.
int optionNumber(const TCommandLineOption& o, char letter) {
  for (unsigned i = 0; i < o.size(); ++i) {
    const std::string& name = o.option(i);
    int n = 0;
    if (name.size() > 1 && name[0] == letter && std::sscanf(name.c_str() + 1, "%d", &n) == 1) return n;
  }
  return 0;
}

// The chain of a failed start goes to the error file; the notice points there.
void showStartFailure() {
  const std::string chain = kx::formatErrorChain();
  kx::ErrorMessageBox();
  kx::deleteError();
  kx::platform::notice(kx::platform::eNoticeKind::eError, TIMessage::getString(0x1012),
                       std::string(TIMessage::getString(0x1010)) + TIMessage::getString(0x1011) + "\n" + chain);
}

}  // namespace

TKdoIntMain::TKdoIntMain(int argc, const char* const* argv) {
  for (int i = 0; i < argc; ++i) args_.emplace_back(argv[i] ? argv[i] : "");
  kx::vSetCommandLine(argc, argv);
}

TKdoIntMain::~TKdoIntMain() { FormDestroy(); }

int TKdoIntMain::run() {
  if (!FormCreate()) return 1;
  while (Timer1Timer()) {
  }
  FormDestroy();
  return 0;
}

void TKdoIntMain::_createFileNames(const std::string& workDir) {
  std::string dir = kx::sToSlash(workDir.c_str());
  if (!dir.empty() && dir[0] != '/') dir = fs::current_path().string() + "/" + dir;
  if (!dir.empty() && dir.back() != '/') dir += '/';
  const std::time_t now = std::time(nullptr);
  std::tm t{};
  ::localtime_r(&now, &t);
  char stem[600];
  std::snprintf(stem, sizeof stem, "%s%04d-%02d-%02d-%02d-%02d-%02d-", dir.c_str(), t.tm_year + 1900, t.tm_mon + 1,
                t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
  stdin_ = std::string(stem) + "i.txt";
  stdout_ = std::string(stem) + "o.txt";
  stderr_ = std::string(stem) + "e.txt";
}

void TKdoIntMain::_vDeleteOldTempFiles(const std::string& workDir) {
  // The time stamp of a file written now, against every file's last write:
  // more than 201 in the high word of a 100 ns file time apart (about 24
  // hours), or empty, and the file goes.
  const fs::path scratch = fs::path(workDir) / "TimeCompare.txt";
  { std::ofstream(scratch) << "time"; }
  std::error_code ec;
  const auto stamp = fs::last_write_time(scratch, ec);
  fs::remove(scratch, ec);
  if (ec) return;
  const auto limit = std::chrono::nanoseconds(201LL * (1LL << 32) * 100LL);
  for (const auto& e : fs::directory_iterator(workDir, ec)) {
    std::error_code fe;
    if (!e.is_regular_file(fe)) continue;
    const auto size = e.file_size(fe);
    const auto when = e.last_write_time(fe);
    if (fe) continue;
    const auto diff = when > stamp ? when - stamp : stamp - when;
    if (size == 0 || diff > limit) fs::remove(e.path(), fe);
  }
}

bool TKdoIntMain::FormCreate() {
  try {
    KX_TRY {
      std::vector<const char*> argv;
      for (const auto& a : args_) argv.push_back(a.c_str());
      const TCommandLineOption options(static_cast<int>(argv.size()), argv.data());
      // -e or -g, the first one seen.
      for (unsigned i = 0; i < options.size(); ++i) {
        if (options.option(i) == "e") {
          TLanguage::setEnglisch();
          break;
        }
        if (options.option(i) == "g") {
          TLanguage::setDeutsch();
          break;
        }
      }
      iniFile_ = options.value("u");
      if (iniFile_.empty()) iniFile_ = "KdoIntUse.ini";
      if (iniFile_.find('/') == std::string::npos) iniFile_ = kx::sGetProgramDir() + iniFile_;
      pipeName_ = options.isOption("p") ? options.value("p") : defaultPipeName();
      if (!fs::exists(iniFile_)) KX_THROW(ulStartIniMissing, sIniMissing(), iniFile_.c_str());

      TStartParameter start;
      start.vRead(iniFile_.c_str());
      // Choices by number from 1; each tested against the size of its list
      // with the -i number.
      const int f = optionNumber(options, 'f'), i = optionNumber(options, 'i'), m = optionNumber(options, 'm'),
                t = optionNumber(options, 't');
      if (f > 0 && static_cast<unsigned>(i) <= start.uGetNumberStartmacro()) start.vSetDefaultStartmacro(f - 1);
      if (i > 0 && static_cast<unsigned>(i) <= start.uGetNumberCalibration()) start.vSetDefaultCalibration(i - 1);
      if (m > 0 && static_cast<unsigned>(i) <= start.uGetNumberApplication()) start.vSetDefaultApplication(m - 1);
      if (t > 0 && static_cast<unsigned>(i) <= start.uGetNumberWork()) start.vSetDefaultWork(t - 1);

      const unsigned app = start.uGetDefaultApplication(), cal = start.uGetDefaultCalibration();
      const std::string macroDir = start.cpGetApplicationPath(app);
      const std::string initDir = start.cpGetCalibrationPath(cal);
      const std::string workDir = start.cpGetWorkPath(start.uGetDefaultWork());
      std::vector<std::string> macroDirs, initDirs;
      for (int k = 0; k < start.iSizeApplicationPath2(app); ++k)
        macroDirs.emplace_back(start.cpGetApplicationPath2(app, static_cast<unsigned>(k)));
      for (int k = 0; k < start.iSizeCalibrationPath2(cal); ++k)
        initDirs.emplace_back(start.cpGetCalibrationPath2(cal, static_cast<unsigned>(k)));

      bool writeable = false;
      {
        const std::string probe = workDir + "/TKdoIntMain.tst";
        std::FILE* file = std::fopen(probe.c_str(), "w");
        if (file) {
          writeable = true;
          std::fclose(file);
          std::remove(probe.c_str());
        }
      }
      _createFileNames(workDir);
      if (writeable) _vDeleteOldTempFiles(workDir);
      for (const auto& d : {macroDir, initDir, workDir})
        if (!isDir(d)) KX_THROW(ulStartDirMissing, "%s", TIMessage::getString(0x10f, d.c_str()));

      std::string registry;
      if (kx::bFindPathForFile("registry.ini", macroDir.c_str(), registry)) {
        TIniFile2Registry toRegistry;
        toRegistry.vReplace("%Ini%", iniFile_.c_str());
        toRegistry.bExecIni(TIniFilename(registry + "registry.ini"), "Registry", false);
      }

      // Before the FIFO and the run's files exist: whoever sees them may
      // already send a signal, and it must end the run through the closing
      // macro, not kill the process.
      std::signal(SIGTERM, onSignal);
      std::signal(SIGINT, onSignal);
      if (!pipe_.bOpen(pipeName_.c_str()))
        KX_THROW(ulPipeUnusable, "FIFO %s: %s", pipeName_.c_str(), std::strerror(errno));
      TIInterpreter::vSetPipeName(pipeName_);

      interpreter_ = std::make_unique<TIInterpreter>(stdin_.c_str(), stdout_.c_str(), stderr_.c_str(),
                                                     start.cpGetInstallationPath(), macroDir.c_str(),
                                                     initDir.c_str(), workDir.c_str(), iniFile_.c_str(), macroDirs,
                                                     initDirs);
      interpreter_->vSetEventHook([this] {
        _vDrainPipe();
        _vShowOutput();
      });
      // The step display on the terminal: each held line on standard error,
      // the buttons as letters on standard input (i into, o over, r run,
      // h halt, q hide).
      TIStepLoop& step = interpreter_->rGetStepLoop();
      step.vSetShow([](const TIStepLoop::TRow& r) {
        std::fprintf(stderr, "[step] %s(%d) depth %d, %s: %s\n", r.file.c_str(), r.line, r.depth, r.status.c_str(),
                     r.command.c_str());
      });
      step.vSetEvents([this, &step] {
        _vDrainPipe();
        pollfd in{0, POLLIN, 0};
        char c = 0;
        while (::poll(&in, 1, 0) > 0 && (in.revents & POLLIN) && ::read(0, &c, 1) == 1) {
          if (c == 'i') step.vInto();
          if (c == 'o') step.vOver();
          if (c == 'r') step.vRun();
          if (c == 'h') step.vHalt();
          if (c == 'q') step.vHide();
        }
      });
      interpreter_->init();
      inputClient_.Open(stdin_.c_str());
      outputServer_.Open(stdout_.c_str());
      errorServer_.Open(stderr_.c_str());
      char line[300];
      std::snprintf(line, sizeof line, "play(\"%s\")\r\n", start.cpGetStartmacroName(start.uGetDefaultStartmacro()));
      _vAppendInput(line);
    }
    KX_CATCH
  } catch (unsigned long) {
    showStartFailure();
    interpreter_.reset();
    return false;
  }
  return true;
}

void TKdoIntMain::_vAppendInput(const std::string& text) { inputClient_.Write(text.data(), text.size(), true); }

void TKdoIntMain::_vDrainPipe() {
  char buffer[1024];
  std::size_t n = 0;
  while (pipe_.bRead(buffer, 1023, &n) && n > 0) {
    buffer[n] = '\0';
    inputClient_.Write(buffer, n, true);
  }
  for (int s = signals.load(); s > 0; s = signals.load()) {
    if (signals.compare_exchange_weak(s, s - 1)) _vAppendInput("play(\"Beenden.mac\")\r\n");
  }
}

// With the interpreter shown, what it writes appears on the terminal.
void TKdoIntMain::_vShowOutput() {
  visible_ = interpreter_ && interpreter_->isVisible();
  if (interpreter_) interpreter_->doneBringToFront();
  if (!visible_) return;
  char buffer[128];
  std::size_t n = 0;
  while (outputServer_.Read(buffer, 127, &n) && n > 0) std::fwrite(buffer, 1, n, stdout);
  while (errorServer_.Read(buffer, 127, &n) && n > 0) std::fwrite(buffer, 1, n, stderr);
  std::fflush(stdout);
}

bool TKdoIntMain::Timer1Timer() {
  if (!interpreter_ || !interpreter_->isLoop()) return false;
  if (inTimer_) return true;
  inTimer_ = true;
  const uint64_t start = kx::platform::tickMs64();
  try {
    KX_TRY {
      do {
        if (!interpreter_->isInput()) break;
        interpreter_->doExecute();
      } while (interpreter_->isLoop() && kx::platform::tickMs64() - start < 5);
    }
    KX_CATCH
  } catch (unsigned long) {
    kx::trace(KX_FILE, __LINE__, "%s", TIMessage::getString(0x1013));
    kx::ErrorMessageBox();
    kx::deleteError();
  }
  _vDrainPipe();
  _vShowOutput();
  inTimer_ = false;
  if (!interpreter_->isLoop()) return false;
  // The rest of the 10 ms, or until the FIFO has something.
  const uint64_t spent = kx::platform::tickMs64() - start;
  bool more = false;
  try {
    more = interpreter_->isInput();
  } catch (unsigned long) {
    kx::deleteError();
  }
  if (spent < 10 && !more) {
    pollfd p{pipe_.getHandle(), POLLIN, 0};
    ::poll(&p, 1, static_cast<int>(10 - spent));
  }
  return true;
}

void TKdoIntMain::FormDestroy() {
  if (interpreter_) {
    _vAppendInput("exit()\r\n");
    interpreter_.reset();
  }
  inputClient_.Close(false);
  outputServer_.Close(false);
  errorServer_.Close(false);
  pipe_.bClose();
}
