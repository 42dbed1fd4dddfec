#include "kdoint/TIVariableParser.h"

#include <cstdio>
#include <string>
#include <vector>

#include "kdoint/TICallList.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIToken.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

using namespace kdoint;

namespace {
constexpr TLanguage::TLanguageString sVectorFormat("Formatfehler in Vektorvariable", "Format error in vector variable");
constexpr TLanguage::TLanguageString sIndexClass("Falsche Klasse für Index: %s gewünscht: INT",
                                                 "Wrong class for index: %s expected: INT");
constexpr TLanguage::TLanguageString sNotFound("Variable %s existiert nicht", "Variable %s not found");
constexpr TLanguage::TLanguageString sCallFormat("Formatfehler in Aufrufzeile", "Format error in input line");

std::string withName(const char* format, const std::string& name) {
  char buffer[512];
  std::snprintf(buffer, sizeof buffer, format, name.c_str());
  return buffer;
}

}  // namespace

bool bIsWordCode(int code) {
  return code == eWORD || code == eCLASSNAME || code == eFUNCTION || code == eVARIABLE;
}

void vConvertVectorVariable(TITokenLine& tokens, const TIVariableArray& variables, unsigned i,
                            const TIIndexCodes& codes) {
  const bool procedure = codes.tooFew == ulIndexProcedureCall.tooFew;
  if (i + 3 >= tokens.getSize())
    KX_THROW(codes.tooFew, "%s", procedure ? sVectorFormat() : TIMessage::getString(0x40e));
  if (tokens[i + 3].getMeaning() != eINDEXEND) {
    const std::string t = tokens[i + 3].sGetString();
    KX_THROW(codes.noClose, "%s", procedure ? sVectorFormat() : TIMessage::getString(0x40a, t.c_str()));
  }
  const TIToken& index = tokens[i + 2];
  const std::string text = index.sGetString();
  int32_t value = 0;
  if (index.getMeaning() == eINTEGER || index.getMeaning() == eHEXADECIMAL) {
    value = index.toInteger_();
  } else if (bIsWordCode(index.getMeaning())) {
    const TIVariable* v = variables.addressOf(text.c_str());
    if (!v)
      KX_THROW(codes.unknown, "%s",
               procedure ? withName(sNotFound(), text).c_str() : TIMessage::getString(0x302, text.c_str()));
    if (!v->getClass() || v->getClass()->getName() != "INT")
      KX_THROW(codes.notInt, "%s",
               procedure ? withName(sIndexClass(), text).c_str() : TIMessage::getString(0x308, text.c_str()));
    value = v->getLong();
  } else {
    KX_THROW(codes.badToken, "%s", procedure ? sCallFormat() : TIMessage::getString(0x40a, text.c_str()));
  }
  char suffix[24];
  std::snprintf(suffix, sizeof suffix, "[%u]", static_cast<unsigned>(value));
  tokens.changeToken(i, (tokens[i].sGetString() + suffix).c_str());
  for (int k = 0; k < 3; ++k) tokens.deleteToken(i + 1);
}

void vFindNegativSign(TITokenLine& tokens, unsigned i) {
  if (i + 1 >= tokens.getSize()) return;
  TIToken& minus = tokens[i];
  const TIToken& next = tokens[i + 1];
  if (next.getMeaning() != eINTEGER && next.getMeaning() != eFLOAT) return;
  if (i > 0 && bIsWordCode(tokens[i - 1].getMeaning())) return;
  minus.setMeaning(next.getMeaning());
  minus.setLength(static_cast<unsigned>(next.getStart() + next.getLength() - minus.getStart()));
  tokens.deleteToken(i + 1);
}

TIVariableParser::TIVariableParser(TIClassList& classes, TIVariableArray& variables, TITokenLine& tokens)
    : classes_(classes), variables_(variables), tokens_(tokens) {}

void TIVariableParser::setVariable() {
  KX_TRY {
    TITokenLine& t = tokens_;
    if (t.getSize() < 2) KX_THROW(ulDefineTooShort, "%s", TIMessage::getString(0x412, static_cast<int>(t.getSize())));
    const std::string name = t[1].sGetString();
    if (variables_.find1(name.c_str()) >= 0) KX_THROW(ulDefineExists, "%s", TIMessage::getString(0x303, name.c_str()));
    if (t.getSize() > 2 && t[2].getMeaning() == eINDEXBEGIN) {
      _vSetVector();
      return;
    }
    TIClass* c = classes_.addressOf(t[0].sGetString().c_str());
    auto* v = new TIVariable(name.c_str(), c);
    variables_.append(v);
    t[1].setMeaning(eVARIABLE);
    variables_.openLevel();
    try {
      for (unsigned i = 3; i + 1 < t.getSize();) {
        const int code = t[i].getMeaning();
        if (code == eINDEXBEGIN) {
          vConvertVectorVariable(t, variables_, i - 1, ulIndexVariableParser);
          continue;
        }
        if (code == eMINUS) vFindNegativSign(t, i);
        ++i;
      }
      if (t.getSize() > 2) {
        if (t[2].getMeaning() == eLISTBEGIN) {
          t.deleteToken(2);
          if (t.getSize() < 3 || t[t.getSize() - 1].getMeaning() != eLISTEND)
            KX_THROW(ulDefineNoClose, "%s", TIMessage::getString(0x30b));
          t.deleteToken(t.getSize() - 1);
        } else if (t[2].getMeaning() == eEQUAL) {
          t.deleteToken(2);
          if (t.getSize() < 3) KX_THROW(ulDefineNothingRight, "%s", TIMessage::getString(0x100d));
          if (t.getSize() > 3) KX_THROW(ulDefineTooMuchRight, "%s", TIMessage::getString(0x100e));
        } else {
          KX_THROW(ulDefineNoOpen, "%s", TIMessage::getString(0x30c));
        }
      }
      TICallList call(classes_, variables_);
      call.useThis(v);
      for (unsigned i = 2; i < t.getSize();) {
        const int code = t[i].getMeaning();
        const std::string text = t[i].sGetString();
        if (code == eKOMMA) {
          t.deleteToken(i);
          continue;
        }
        if (bIsWordCode(code) && variables_.addressOf(text.c_str())) {
          t[i].setMeaning(eVARIABLE);
          call.appendVariable(text.c_str());
        } else if (code == eINTEGER || code == eHEXADECIMAL) {
          call.appendInteger(t[i].toInteger_());
        } else if (code == eFLOAT) {
          call.appendFloat(t[i].toFloat_());
        } else if (code == eLITERAL) {
          call.appendLiteral(text.c_str());
        } else {
          KX_THROW(ulDefineBadArgument, "%s", TIMessage::getString(0x40a, text.c_str()));
        }
        ++i;
      }
      const int f = c ? c->getFunctionList().find("create", static_cast<const TIClass*>(nullptr), call.getArgClasses())
                      : -1;
      if (f < 0) {
        const std::string text = std::string(TIMessage::getString(0x1017, "create")) + call.sGetArgClassList();
        KX_THROW(ulDefineNoCreate, "%s", text.c_str());
      }
      c->getFunctionList()[static_cast<unsigned>(f)]->getAddress()(call.getCallList());
      variables_.closeLevel(true);
    } catch (unsigned long) {
      try {
        variables_.closeLevel(true);
      } catch (unsigned long) {
      }
      variables_.vDiscard(v);
      throw;
    }
  }
  KX_CATCH
}

void TIVariableParser::_vSetVector() {
  TITokenLine& t = tokens_;
  if (t.getSize() != 5) KX_THROW(ulVectorDefineTokens, "%s", TIMessage::getString(0x414, static_cast<int>(t.getSize())));
  if (t[4].getMeaning() != eINDEXEND) KX_THROW(ulVectorDefineNoClose, "%s", TIMessage::getString(0x311));
  const TIToken& sizeToken = t[3];
  const std::string sizeText = sizeToken.sGetString();
  int32_t size = 0;
  if (sizeToken.getMeaning() == eINTEGER || sizeToken.getMeaning() == eHEXADECIMAL) {
    size = sizeToken.toInteger_();
  } else if (bIsWordCode(sizeToken.getMeaning())) {
    const TIVariable* s = variables_.addressOf(sizeText.c_str());
    if (!s) KX_THROW(ulVectorSizeUnknown, "%s", TIMessage::getString(0x302, sizeText.c_str()));
    if (!s->getClass() || s->getClass()->getName() != "INT")
      KX_THROW(ulVectorSizeNotInt, "%s", TIMessage::getString(0x308, sizeText.c_str()));
    size = s->getLong();
  } else {
    KX_THROW(ulVectorSizeToken, "%s", TIMessage::getString(0x40a, sizeText.c_str()));
  }
  if (size < 0 || static_cast<unsigned>(size) > TIVariableArray::uMaxVectorSize)
    KX_THROW(ulVectorSizeLimit, "%s", TIMessage::getString(0x40a, sizeText.c_str()));
  const std::string className = t[0].sGetString();
  TIClass* element = classes_.addressOf(className.c_str());
  if (element->getFunctionList().find("create", static_cast<const TIClass*>(nullptr), {}) < 0)
    KX_THROW(ulVectorNoCreate, "%s", TIMessage::getString(0x504, className.c_str()));
  auto* record = new TIVectorRecord;
  std::snprintf(record->className, sizeof record->className, "%s", className.c_str());
  record->elementClass = element;
  TIVariable* v = nullptr;
  try {
    v = new TIVariable(t[1].sGetString().c_str(), classes_.addressOf("VECTOR"));
  } catch (...) {
    delete record;
    throw;
  }
  v->setContent(static_cast<void*>(record));
  variables_.append(v);
  t[1].setMeaning(eVARIABLE);
  try {
    variables_.vResizeVector(variables_.find(v), static_cast<unsigned>(size));
  } catch (unsigned long) {
    // Take the half-made vector away again; its elements go with it.
    try {
      variables_.remove(variables_.find(v));
    } catch (unsigned long) {
    }
    throw;
  }
}
