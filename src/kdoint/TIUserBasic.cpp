#include "kdoint/TIUserBasic.h"

#include <cstdio>
#include <memory>

#include "kdoint/TIClassParser.h"
#include "kdoint/TIFile.h"
#include "kdoint/TIHandleTable.h"
#include "kdoint/TIInterpreter.h"
#include "kdoint/TIToken.h"
#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace {
constexpr TLanguage::TLanguageString sStatus("Name=%s\r\nKlasse=%s\r\nWeitere Informationen sind nicht verfügbar",
                                             "Name=%s\r\nclass=%s\r\nFurther informations are not available");
const char* const sNoClassHelp = "Für diese Interpeterklasse steht keine Hilfe zur Verfügung.";

void defaultStatus(const TIVariable* v, char* buffer, int size) {
  if (!buffer || size <= 0) return;
  std::snprintf(buffer, static_cast<std::size_t>(size), sStatus(), v ? v->getName() : "",
                v && v->getClass() ? v->getClass()->getName().c_str() : "");
}
}  // namespace

const char* TIUserBasic::cpGetClassHelp() const { return sNoClassHelp; }

TIStatusFunction TIUserBasic::vpGetStatus() { return defaultStatus; }

std::vector<std::string> TIUserBasic::getClassLines(bool bSupplement) {
  std::vector<std::string> lines;
  char line[600];
  if (bSupplement)
    std::snprintf(line, sizeof line, "supplement %s\r\n", getClassName());
  else
    std::snprintf(line, sizeof line, "class %s 0x%08lx 0x%08lx\r\n", getClassName(),
                  static_cast<unsigned long>(kdoint::uHelpHandle(cpGetClassHelp())),
                  static_cast<unsigned long>(kdoint::uStatusHandle(vpGetStatus())));
  lines.emplace_back(line);
  lines.emplace_back("{\r\n");
  for (const TIMethodRecord* r = getFunctionList(); r && r->signature; ++r) {
    std::snprintf(line, sizeof line, "    %s 0x%08lx 0x%08lx\r\n", r->signature,
                  static_cast<unsigned long>(kdoint::uRoutineHandle(r->routine)),
                  static_cast<unsigned long>(kdoint::uHelpHandle(r->help)));
    lines.emplace_back(line);
  }
  lines.emplace_back("}\r\n");
  return lines;
}

void TIUserBasic::registerClass(TExecLine execLine) {
  KX_TRY {
    int n = 0;
    for (const auto& l : getClassLines(false)) execLine(l.c_str(), KX_FILE, ++n);
  }
  KX_CATCH
}

void TIUserBasic::supplementClass(TExecLine execLine) {
  KX_TRY {
    int n = 0;
    for (const auto& l : getClassLines(true)) execLine(l.c_str(), KX_FILE, ++n);
  }
  KX_CATCH
}

bool TIUserBasic::bExistClass(const char* name) {
  TIInterpreter* i = TIInterpreter::pGetInstance();
  return i && name && i->getClassList().find(name) >= 0;
}

void TIUserBasic::vRegisterInto(TIClassList& classes) {
  KX_TRY {
    const auto lines = getClassLines(false);
    TITokenLine tokens;
    tokens.nextLine(lines[0].c_str(), false);
    TIClassParser parser(classes, tokens);
    parser.setClassName();
    TIFileWrite block;
    block.open(true, false);
    for (std::size_t i = 2; i + 1 < lines.size(); ++i) block.write(lines[i].c_str());
    const std::string name = block.getFileName();
    block.close(false);
    TIFileRead methods(name.c_str());
    methods.open(false, 256);
    try {
      parser.setMethods(&methods);
    } catch (unsigned long) {
      methods.close(true);
      throw;
    }
    methods.close(true);
  }
  KX_CATCH
}

TITableClass::TITableClass(const char* name, const char* help, TIStatusFunction status,
                           const std::vector<TMethod>& methods)
    : name_(name), help_(help), status_(status) {
  signatures_.reserve(methods.size());
  for (const auto& m : methods) {
    std::string sig = std::string(m.result ? m.result : "VOID") + " " + m.name + "(";
    for (std::size_t i = 0; i < m.args.size(); ++i) sig += (i ? "," : "") + std::string(m.args[i]);
    signatures_.push_back(sig + ")");
  }
  for (std::size_t i = 0; i < methods.size(); ++i)
    records_.push_back({signatures_[i].c_str(), methods[i].routine, methods[i].help});
  records_.push_back({nullptr, nullptr, nullptr});
}
