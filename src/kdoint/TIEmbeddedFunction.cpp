#include "kdoint/TIEmbeddedFunction.h"

#include <fcntl.h>
#include <pwd.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "file98/KxPath.h"
#include "file98/TSearchPath.h"
#include "kdoint/KdoIntErrors.h"
#include "kdoint/TISearchPath.h"
#include "kdoint/TIInterpreter.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "platform/CLocale.h"
#include "platform/Clock.h"
#include "platform/Notice.h"
#include "platform/SharedLibrary.h"

extern char** environ;

#ifndef KX_VERSION_TEXT
#define KX_VERSION_TEXT "0.1"
#endif

using namespace kdoint;

namespace {

TIEmbeddedFunction* instance = nullptr;

constexpr TLanguage::TLanguageString sReferenceUnknown("Variable %s nicht gefunden", "Variable %s not found");
constexpr TLanguage::TLanguageString sMacroNotFound("Makrodatei \"%s\" nicht gefunden", "Macro file \"%s\" not found");
constexpr const char* sShowHideHelp = "Anzeigen bzw. Verbergen des Interpreterfensters.";
constexpr const char* sMessageBoxHelp =
    "Ret=MessageBox(Text,Caption,Style)\r\nStyle: MB_OK, MB_OKCANCEL, MB_ABORTRETRYIGNORE, MB_YESNOCANCEL, MB_YESNO, "
    "MB_RETRYCANCEL\r\nRet: IDOK, IDCANCEL, IDABORT, IDRETRY, IDIGNORE, IDYES, IDNO";

TIInterpreter& interp() { return instance->getInterpreter(); }
TIVariableArray& vars() { return interp().getVariableArray(); }
TIVariable* result(TIVariable** c) { return c[1]; }
TIVariable* arg(TIVariable** c, int i) { return c[2 + i]; }
const char* text(const TIVariable* v) { return v && v->getString() ? v->getString() : ""; }
// A temporary made by a call list for a constant or a loose word.
bool isTemporary(const TIVariable* v) { return std::strncmp(v->getName(), "__TICallList", 12) == 0; }

void fExit(TIVariable**) { interp().close(); }
void fEndPlayMacro(TIVariable**) { interp().vDecPlayDepth(); }
void fCloseParser(TIVariable**) { interp().getLineParser().closeCurrentChild(); }
void fRepeatWhile(TIVariable**) { interp().getLineParser().repeatWhileBlock(); }
void fShowError(TIVariable** c) { interp().vSetShowError(arg(c, 0)->getLong() != 0); }

void fEchoText(TIVariable** c) { interp().getEAManager().writeOutput(text(arg(c, 0))); }
void fEchoInt(TIVariable** c) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%ld", static_cast<long>(arg(c, 0)->getLong()));
  interp().getEAManager().writeOutput(buffer);
}
void fEchoFloat(TIVariable** c) {
  const kx::platform::CNumericScope cLocale;
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%le", arg(c, 0)->getDouble());
  interp().getEAManager().writeOutput(buffer);
}

void fDestroy(TIVariable** c) {
  const char* name = text(arg(c, 0));
  if (!vars().addressOf(name)) KX_THROW(ulDestroyUnknown, "%s", TIMessage::getString(0x302, name));
  vars().remove(name);
}

void fGlobal(TIVariable** c) {
  TIVariable* a = arg(c, 0);
  const bool literal = a->getClass() && a->getClass()->getName() == "LITERAL";
  if (literal) {
    const int named = vars().find(text(a));
    if (named >= 0) return vars().global(named);
  }
  if (isTemporary(a)) KX_THROW(ulGlobalUnknown, "%s", TIMessage::getString(0x313, literal ? text(a) : a->getName()));
  vars().global(vars().find(a));
}

void fExistText(TIVariable** c) {
  TIVariable* a = arg(c, 0);
  int32_t exists = 1;
  if (isTemporary(a))
    exists = vars().addressOf(text(a)) || interp().getClassList().find(text(a)) >= 0 ? 1 : 0;
  result(c)->setContent(exists);
}
void fExistValue(TIVariable** c) { result(c)->setContent(int32_t{1}); }

void fReference(TIVariable** c) {
  TIVariable* actual = vars().addressOf(text(arg(c, 0)));
  if (!actual) KX_THROW(ulReferenceUnknown, sReferenceUnknown(), text(arg(c, 0)));
  auto* param = new TIVariable(text(arg(c, 1)), actual->getClass());
  vars().append(param);
  vars().preserve(vars().find(param));
  param->vSetReference(actual);
}

// ---------------------------------------------------------------- the rest

void fVersion(TIVariable**) {
  kx::platform::notice(kx::platform::eNoticeKind::eInfo, "Version", "kxbasics command interpreter " KX_VERSION_TEXT);
}
void fHide(TIVariable**) { interp().vSetVisible(false); }
void fShow(TIVariable**) { interp().vSetVisible(true); }
void fEnd(TIVariable**) {
  interp().getEAManager().endMacro();
  interp().vSetRecording(false);
}
void fStep(TIVariable**) { interp().vSetStepMode(true); }
void fProcessMessages(TIVariable**) { interp().vProcessEvents(); }
void fSleep(TIVariable** c) {
  const int32_t ms = arg(c, 0)->getLong();
  if (ms > 0) kx::platform::sleepMs(static_cast<unsigned>(ms));
}
void fSetCurrentDir(TIVariable** c) {
  std::string dir = text(arg(c, 0));
  if (!dir.empty() && (dir.back() == '/' || dir.back() == '\\')) dir.pop_back();
  (void)::chdir(kx::sToSlash(dir.c_str()).c_str());
}

std::string macroDir() {
  const TIVariable* v = vars().addressOf("MacroDir");
  if (!v) KX_THROW(ulMacroDirUnknown, "%s", TIMessage::getString(0x302, "MacroDir"));
  const std::string dir = kx::sToSlash(text(v));
  struct stat st{};
  if (::stat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
    KX_THROW(ulMacroDirMissing, "%s", TIMessage::getString(0x10f, dir.c_str()));
  return dir;
}

bool isFile(const std::string& path) {
  struct stat st{};
  return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

std::string existingMacroName(const char* name) {
  std::string drive, dir, stem, ext;
  kx::fnsplit(name, drive, dir, stem, ext);
  if ((!dir.empty() || !drive.empty()) && isFile(kx::sToSlash(name))) return kx::sToSlash(name);
  if (const TSearchPath* paths = pGetSearchPath(vars().addressOf("MacroPaths")))
    for (int i = 0; i < paths->size(); ++i) {
      const std::string candidate = kx::sToSlash(kx::fnmerge("", (*paths)[i].c_str(), stem.c_str(), ".mac").c_str());
      if (isFile(candidate)) return candidate;
    }
  KX_THROW(ulMacroNotFound, sMacroNotFound(), name);
}

void fPlay(TIVariable** c) {
  const std::string file = existingMacroName(text(arg(c, 0)));
  interp().getEAManager().openInput(file.c_str(), false, true);
  interp().vIncPlayDepth();
}

void fRecord(TIVariable** c) {
  std::string drive, dir, stem, ext;
  kx::fnsplit(text(arg(c, 0)), drive, dir, stem, ext);
  std::string name = macroDir();
  if (!name.empty() && name.back() != '/') name += '/';
  name += stem + ".mac";
  interp().getEAManager().recordMacro(name.c_str(), false);
  interp().vSetRecording(true);
}

void fExec(TIVariable** c) {
  const int r = std::system(text(arg(c, 0)));
  if (r != 0) KX_THROW(ulExecFailed, "%s", TIMessage::getString(0x505, r));
}

void fUse(TIVariable** c) {
  std::string name = text(arg(c, 0));
  for (auto& ch : name) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  const bool package = name.find(".bpl") != std::string::npos;
  static std::vector<std::unique_ptr<kx::platform::SharedLibrary>> loaded;  // for the life of the process
  auto lib = std::make_unique<kx::platform::SharedLibrary>();
  if (!lib->open(kx::sToSlash(name.c_str()))) {
    if (package)
      KX_THROW(ulUsePackage, "Paket nicht geladen / package not loaded: %s (%s)", name.c_str(), lib->lastError().c_str());
    const unsigned long code = KX_ERROR(ulUseLoad, "%s", TIMessage::getString(0x112, name.c_str()));
    kx::trace(KX_FILE, __LINE__, "%s", lib->lastError().c_str());
    throw code;
  }
  using TUseDll = void (*)(void*);
  const auto entry = reinterpret_cast<TUseDll>(lib->symbol("useDll"));
  if (!entry) KX_THROW(ulUseEntry, "%s", TIMessage::getString(0x113, name.c_str()));
  loaded.push_back(std::move(lib));
  entry(reinterpret_cast<void*>(&TIInterpreter::execLine));
}

void setBool(TIVariable* v, bool b) { v->setContent(static_cast<int32_t>(b ? 1 : 0)); }
void fWriteableDir(TIVariable** c) { setBool(result(c), kx::bDirWriteable(kx::sToSlash(text(arg(c, 0))).c_str())); }
void fWriteableFile(TIVariable** c) { setBool(result(c), kx::bFileWriteable(kx::sToSlash(text(arg(c, 0))).c_str())); }
void fExistFile(TIVariable** c) { setBool(result(c), isFile(kx::sToSlash(text(arg(c, 0))))); }
void fExistDir(TIVariable** c) {
  struct stat st{};
  setBool(result(c), ::stat(kx::sToSlash(text(arg(c, 0))).c_str(), &st) == 0 && S_ISDIR(st.st_mode));
}
void fWinExec(TIVariable** c) {
  // Started in the background: the interpreter does not wait for it.
  pid_t pid = 0;
  const char* argv[] = {"/bin/sh", "-c", text(arg(c, 0)), nullptr};
  const bool ok = ::posix_spawn(&pid, "/bin/sh", nullptr, nullptr, const_cast<char* const*>(argv), environ) == 0;
  setBool(result(c), ok);
}
void fGetCurrentDir(TIVariable** c) {
  char buffer[4096];
  std::string dir = ::getcwd(buffer, sizeof buffer) ? buffer : ".";
  if (dir.empty() || dir.back() != '/') dir += '/';
  result(c)->setContent(dir.c_str());
}
void fGetLoginName(TIVariable** c) {
  const passwd* pw = ::getpwuid(::getuid());
  const char* env = std::getenv("USER");
  result(c)->setContent(pw && pw->pw_name ? pw->pw_name : env ? env : "");
}

// What a message box answers with nobody to press a button: the first
// button of its style (OK, OK, Abort, Yes, Yes, Retry).
int32_t firstButton(int32_t style) {
  static const int32_t first[] = {1, 1, 3, 6, 6, 4};
  const int32_t kind = style & 0xf;
  return kind >= 0 && kind < 6 ? first[kind] : 1;
}
void fMessageBox(TIVariable** c) {
  kx::platform::notice(kx::platform::eNoticeKind::eInfo, text(arg(c, 1)), text(arg(c, 0)));
}
void fMessageBoxStyle(TIVariable** c) {
  const int32_t style = arg(c, 2)->getLong() | 0x1000;
  const auto kind = (style & 0xf) == 0 ? kx::platform::eNoticeKind::eInfo : kx::platform::eNoticeKind::eQuestion;
  kx::platform::notice(kind, text(arg(c, 1)), text(arg(c, 0)));
  result(c)->setContent(firstButton(style));
}
void fCopyFile(TIVariable** c) {
  std::error_code ec;
  std::filesystem::copy_file(kx::sToSlash(text(arg(c, 0))), kx::sToSlash(text(arg(c, 1))),
                             std::filesystem::copy_options::overwrite_existing, ec);
}
// An input box answers Ok with the content as it is.
void fInputBox(TIVariable** c) {
  kx::platform::notice(kx::platform::eNoticeKind::eQuestion, text(arg(c, 0)),
                       std::string(text(arg(c, 1))) + ": " + text(arg(c, 2)));
  result(c)->setContent(int32_t{1});
}
void fKxInputBox(TIVariable** c) {
  kx::platform::notice(kx::platform::eNoticeKind::eQuestion, text(arg(c, 0)),
                       std::string(text(arg(c, 1))) + ": " + text(arg(c, 2)));
}
void fFindFile(TIVariable** c) {
  std::string found;
  const bool ok = kx::bFindPathForFile(text(arg(c, 0)), text(arg(c, 1)), found);
  if (ok) arg(c, 2)->setContent(found.c_str());
  setBool(result(c), ok);
}
void fBeep(TIVariable**) {}
void fFileInCommandline(TIVariable** c) {
  std::string file;
  const bool ok = kx::bFileInCommandline(text(arg(c, 0)), file);
  if (ok) arg(c, 1)->setContent(file.c_str());
  setBool(result(c), ok);
}
void fSetLanguage(TIVariable** c) {
  TLanguage::vSetAktLanguage(arg(c, 0)->getLong() == 1 ? TLanguage::eEnglisch : TLanguage::eDeutsch);
}
void fGetLanguage(TIVariable** c) { result(c)->setContent(static_cast<int32_t>(TLanguage::eGetAktLanguage())); }
void fMakeDir(TIVariable** c) {
  try {
    kx::makeDir(kx::sToSlash(text(arg(c, 0))).c_str());
  } catch (unsigned long) {
    kx::deleteError();
  }
}
void fDeleteFile(TIVariable** c) { (void)::unlink(kx::sToSlash(text(arg(c, 0))).c_str()); }
void fDeleteDir(TIVariable** c) { (void)kx::bRemoveDirectory(kx::sToSlash(text(arg(c, 0))).c_str()); }
void fMemoryReport(TIVariable**) {
  kx::platform::notice(kx::platform::eNoticeKind::eInfo, "Speicherreport", "Nicht mehr unterstützt");
}
void fPostCommand(TIVariable** c) {
  const std::string pipe = TIInterpreter::sGetPipeName();
  const int fd = pipe.empty() ? -1 : ::open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) KX_THROW(ulPostCommand, "Pipe %s: %s", pipe.c_str(), std::strerror(errno));
  const char* t = text(arg(c, 0));
  const ssize_t n = ::write(fd, t, std::strlen(t));
  ::close(fd);
  if (n < 0 || static_cast<std::size_t>(n) != std::strlen(t)) KX_THROW(ulPostCommand, "Pipe %s", pipe.c_str());
}
void fSplitFileName(TIVariable** c) {
  std::string drive, dir, stem, ext;
  kx::fnsplit(text(arg(c, 0)), drive, dir, stem, ext);
  arg(c, 1)->setContent(drive.c_str());
  arg(c, 2)->setContent(dir.c_str());
  arg(c, 3)->setContent(stem.c_str());
  arg(c, 4)->setContent(ext.c_str());
}
void fMergeFileName(TIVariable** c) {
  arg(c, 0)->setContent(
      kx::fnmerge(text(arg(c, 1)), text(arg(c, 2)), text(arg(c, 3)), text(arg(c, 4))).c_str());
}

struct TBuiltIn {
  const char* name;
  const char* result;  // null: VOID
  std::vector<const char*> args;
  TIRoutine routine;
  const char* help;
};

}  // namespace

TIEmbeddedFunction::TIEmbeddedFunction(TIInterpreter& interpreter) : interpreter_(interpreter) { instance = this; }

TIEmbeddedFunction::~TIEmbeddedFunction() {
  if (instance == this) instance = nullptr;
}

TIEmbeddedFunction* TIEmbeddedFunction::pGetInstance() { return instance; }

void TIEmbeddedFunction::init() {
  KX_TRY {
    const char* L = "LITERAL";
    const char* N = "INT";
    const char* D = "FLOAT";
    const std::vector<TBuiltIn> table = {
        {"exit", nullptr, {}, fExit, "Beendet den Interpreter."},
        {"version", nullptr, {}, fVersion, nullptr},
        {"hideInterpreter", nullptr, {}, fHide, sShowHideHelp},
        {"showInterpreter", nullptr, {}, fShow, sShowHideHelp},
        {"endPlayMacro$h", nullptr, {}, fEndPlayMacro, nullptr},
        {"end", nullptr, {}, fEnd, nullptr},
        {"closeParser$h", nullptr, {}, fCloseParser, nullptr},
        {"repeatWhile$h", nullptr, {}, fRepeatWhile, nullptr},
        {"step", nullptr, {}, fStep, nullptr},
        {"processMessages", nullptr, {}, fProcessMessages, nullptr},
        {"sleep", nullptr, {N}, fSleep, "Ruft mit dem INT-Parameter (Zeit in ms) die Windows-API-Funktion Sleep() auf."},
        {"showError", nullptr, {N}, fShowError, nullptr},
        {"setCurrentDir", nullptr, {L}, fSetCurrentDir, nullptr},
        {"play", nullptr, {L}, fPlay, nullptr},
        {"record", nullptr, {L}, fRecord, nullptr},
        {"echo", nullptr, {L}, fEchoText, nullptr},
        {"echo", nullptr, {N}, fEchoInt, nullptr},
        {"echo", nullptr, {D}, fEchoFloat, nullptr},
        {"exec", nullptr, {L}, fExec, nullptr},
        {"destroy", nullptr, {L}, fDestroy, nullptr},
        {"use", nullptr, {L}, fUse, nullptr},
        {"global", nullptr, {L}, fGlobal, nullptr},
        {"global", nullptr, {N}, fGlobal, nullptr},
        {"global", nullptr, {D}, fGlobal, nullptr},
        {"exist", N, {L}, fExistText, nullptr},
        {"exist", N, {N}, fExistValue, nullptr},
        {"exist", N, {D}, fExistValue, nullptr},
        {"writeableDir", N, {L}, fWriteableDir, nullptr},
        {"writeableFile", N, {L}, fWriteableFile, nullptr},
        {"existFile", N, {L}, fExistFile, nullptr},
        {"WinExec", N, {L}, fWinExec, "Ret=WinExec(CommandLine)\r\nRet=1 alles Ok, Ret=0 Fehler."},
        {"getCurrentDir", L, {}, fGetCurrentDir, nullptr},
        {"getLoginName", L, {}, fGetLoginName, nullptr},
        {"MessageBox", nullptr, {L, L}, fMessageBox, sMessageBoxHelp},
        {"MessageBox", N, {L, L, N}, fMessageBoxStyle, sMessageBoxHelp},
        {"copyFile", nullptr, {L, L}, fCopyFile, "copyFile(Src,Dst)"},
        {"InputBox", N, {L, L, L}, fInputBox, nullptr},
        {"TKxInputBox", nullptr, {L, L, L}, fKxInputBox, nullptr},
        {"findFile", N, {L, L, L}, fFindFile, nullptr},
        {"reference$h", nullptr, {L, L}, fReference, nullptr},
        {"beep", nullptr, {N, N}, fBeep, "beep(Hertz,Milliseconds)"},
        {"fileInCommandline", N, {L, L}, fFileInCommandline, nullptr},
        {"setLanguage", nullptr, {N}, fSetLanguage, nullptr},
        {"getLanguage", N, {}, fGetLanguage, nullptr},
        {"existDir", N, {L}, fExistDir, nullptr},
        {"makeDir", nullptr, {L}, fMakeDir, nullptr},
        {"deleteFile", nullptr, {L}, fDeleteFile, nullptr},
        {"deleteDir", nullptr, {L}, fDeleteDir, nullptr},
        {"MemoryReport", nullptr, {}, fMemoryReport, nullptr},
        {"postCommand", nullptr, {L}, fPostCommand, nullptr},
        {"splitFileName", nullptr, {L, L, L, L, L}, fSplitFileName, nullptr},
        {"mergeFileName", nullptr, {L, L, L, L, L}, fMergeFileName, nullptr},
    };
    TIClassList& classes = interpreter_.getClassList();
    for (const auto& b : table) {
      std::vector<TIClass*> args;
      for (const char* a : b.args) args.push_back(classes.addressOf(a));
      append(new TIFunction(nullptr, b.name, args, b.result ? classes.addressOf(b.result) : nullptr, b.routine, b.help));
    }
  }
  KX_CATCH
}
