#include "kdoint/TIClassParser.h"

#include <cstdio>
#include <string>
#include <vector>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIFile.h"
#include "kdoint/TIHandleTable.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIToken.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

using namespace kdoint;

namespace {
constexpr TLanguage::TLanguageString sNoClass("Klasse %s existiert nicht", "Class %s does not exist");
constexpr TLanguage::TLanguageString sSameMethod("Funktion %s in Klasse %s mit gleichen Parametern bereits vorhanden",
                                                 "Function %s in class %s with the same arguments already exists");
uint32_t handleOf(const TIToken& t) { return static_cast<uint32_t>(t.toInteger_()); }
}  // namespace

TIClassParser::TIClassParser(TIClassList& classes, TITokenLine& tokens) : classes_(classes), tokens_(tokens) {}

void TIClassParser::setClassName() {
  KX_TRY {
    TITokenLine& t = tokens_;
    if (t.getSize() != 4)
      KX_THROW(ulClassLineTokens, "%s", TIMessage::getString(0x40b, static_cast<int>(t.getSize())));
    if (t[1].getMeaning() != eWORD)
      KX_THROW(ulClassLineToken, "%s", TIMessage::getString(0x40c, static_cast<int>(eWORD), t[1].getMeaning()));
    if (t[2].getMeaning() != eHEXADECIMAL)
      KX_THROW(ulClassLineToken, "%s", TIMessage::getString(0x415, static_cast<int>(eHEXADECIMAL), t[2].getMeaning()));
    // Meant for token 3, made on token 2 once more: a decimal number in the
    // fourth place passes.
    if (t[2].getMeaning() != eHEXADECIMAL)
      KX_THROW(ulClassLineToken, "%s", TIMessage::getString(0x416, static_cast<int>(eHEXADECIMAL), t[2].getMeaning()));
    const std::string name = t[1].sGetString();
    if (classes_.find(name.c_str()) >= 0) KX_THROW(ulClassExists, "%s", TIMessage::getString(0x20c, name.c_str()));
    std::snprintf(name_, sizeof name_, "%s", name.c_str());
    help_ = handleOf(t[2]);
    status_ = handleOf(t[3]);
  }
  KX_CATCH
}

void TIClassParser::findClassName() {
  KX_TRY {
    TITokenLine& t = tokens_;
    if (t.getSize() != 2) KX_THROW(ulClassLineTokens, "%s", TIMessage::getString(0x410));
    if (t[1].getMeaning() != eWORD)
      KX_THROW(ulClassLineToken, "%s", TIMessage::getString(0x40c, static_cast<int>(eWORD), t[1].getMeaning()));
    const std::string name = t[1].sGetString();
    if (classes_.find(name.c_str()) < 0) KX_THROW(ulClassExists, sNoClass(), name.c_str());
    std::snprintf(name_, sizeof name_, "%s", name.c_str());
  }
  KX_CATCH
}

void TIClassParser::setMethods(TIFileRead* file) {
  KX_TRY {
    auto* c = new TIClass(name_, pHelpOfHandle(help_), pStatusOfHandle(status_));
    classes_.append(c);
    try {
      supplementMethods(file);
    } catch (unsigned long) {
      try {
        classes_.remove(static_cast<unsigned>(classes_.find(name_)));
      } catch (unsigned long) {
      }
      throw;
    }
  }
  KX_CATCH
}

void TIClassParser::supplementMethods(TIFileRead* file) {
  KX_TRY {
    char line[1024];
    char fileName[260];
    int lineNumber = 0;
    while (file->isLine()) {
      file->read(line, fileName, &lineNumber);
      tokens_.nextLine(line, false);
      if (tokens_.getSize() == 0) continue;
      compressFunctionLine();
      appendMethod();
    }
  }
  KX_CATCH
}

void TIClassParser::compressFunctionLine() {
  TITokenLine& t = tokens_;
  if (t.getSize() < 6) KX_THROW(ulMethodTooShort, "%s", TIMessage::getString(0x40d));
  for (unsigned i = 0; i < t.getSize(); ++i)
    if (t[i].getMeaning() == eWORD && classes_.find(t[i].sGetString().c_str()) >= 0) t[i].setMeaning(eCLASSNAME);
  const unsigned n = t.getSize();
  if (t[0].getMeaning() != eVOID && t[0].getMeaning() != eCLASSNAME)
    KX_THROW(ulMethodResult, "%s", TIMessage::getString(0x401));
  if (t[1].getMeaning() != eWORD) KX_THROW(ulMethodName, "%s", TIMessage::getString(0x402));
  if (t[2].getMeaning() != eLISTBEGIN) KX_THROW(ulMethodOpen, "%s", TIMessage::getString(0x403));
  if (t[n - 3].getMeaning() != eLISTEND) KX_THROW(ulMethodClose, "%s", TIMessage::getString(0x404));
  if (t[n - 2].getMeaning() != eHEXADECIMAL) KX_THROW(ulMethodNumber, "%s", TIMessage::getString(0x405));
  if (t[n - 1].getMeaning() != eHEXADECIMAL) KX_THROW(ulMethodNumber, "%s", TIMessage::getString(0x405));
  if (n == 7 && t[3].getMeaning() == eVOID) {
    t.deleteToken(3);
  } else {
    for (unsigned i = 3; t[i].getMeaning() != eLISTEND;) {
      if (t[i].getMeaning() != eCLASSNAME) KX_THROW(ulMethodArgument, "%s", TIMessage::getString(0x20d));
      ++i;
      if (t[i].getMeaning() == eWORD) t.deleteToken(i);
      if (t[i].getMeaning() == eKOMMA) t.deleteToken(i);
    }
  }
  t.deleteToken(2);
  t.deleteToken(t.getSize() - 3);
}

void TIClassParser::appendMethod() {
  TITokenLine& t = tokens_;
  TIClass* c = classes_.addressOf(name_);
  const unsigned n = t.getSize();
  TIClass* result = t[0].getMeaning() == eVOID ? nullptr : classes_.addressOf(t[0].sGetString().c_str());
  const std::string name = t[1].sGetString();
  std::vector<TIClass*> args;
  std::vector<const TIClass*> argsConst;
  for (unsigned i = 2; i + 2 < n; ++i) {
    args.push_back(classes_.addressOf(t[i].sGetString().c_str()));
    argsConst.push_back(args.back());
  }
  const TIRoutine routine = pRoutineOfHandle(handleOf(t[n - 2]));
  const char* help = pHelpOfHandle(handleOf(t[n - 1]));
  if (c->getFunctionList().find(name.c_str(), result, argsConst) >= 0)
    KX_THROW(ulMethodExists, sSameMethod(), name.c_str(), name_);
  c->getFunctionList().append(new TIFunction(c, name.c_str(), args, result, routine, help));
}
