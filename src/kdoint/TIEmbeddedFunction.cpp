#include "kdoint/TIEmbeddedFunction.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIInterpreter.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "platform/CLocale.h"

using namespace kdoint;

namespace {

TIEmbeddedFunction* instance = nullptr;

constexpr TLanguage::TLanguageString sReferenceUnknown("Variable %s nicht gefunden", "Variable %s not found");

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
        {"exit", nullptr, {}, fExit, nullptr},
        {"endPlayMacro$h", nullptr, {}, fEndPlayMacro, nullptr},
        {"closeParser$h", nullptr, {}, fCloseParser, nullptr},
        {"repeatWhile$h", nullptr, {}, fRepeatWhile, nullptr},
        {"showError", nullptr, {N}, fShowError, nullptr},
        {"echo", nullptr, {L}, fEchoText, nullptr},
        {"echo", nullptr, {N}, fEchoInt, nullptr},
        {"echo", nullptr, {D}, fEchoFloat, nullptr},
        {"destroy", nullptr, {L}, fDestroy, nullptr},
        {"global", nullptr, {L}, fGlobal, nullptr},
        {"global", nullptr, {N}, fGlobal, nullptr},
        {"global", nullptr, {D}, fGlobal, nullptr},
        {"exist", N, {L}, fExistText, nullptr},
        {"exist", N, {N}, fExistValue, nullptr},
        {"exist", N, {D}, fExistValue, nullptr},
        {"reference$h", nullptr, {L, L}, fReference, nullptr},
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
