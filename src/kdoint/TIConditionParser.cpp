#include "kdoint/TIConditionParser.h"

#include <atomic>
#include <cstdio>
#include <cstring>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIToken.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kdoint/TIVariableParser.h"
#include "kxexception/KxError.h"

using namespace kdoint;

namespace {
std::atomic<unsigned> counter{0};

bool isComparison(int code) {
  return code == eSMALLER || code == eSMALLEREQUAL || code == eGREATER || code == eGREATEREQUAL ||
         code == eEQUALEQUAL || code == eNOTEQUAL;
}

std::string freshName() { return "__ConditionParser__" + std::to_string(counter.fetch_add(1)); }
}  // namespace

TIConditionParser::TIConditionParser(TIClassList& classes, TIVariableArray& variables, TITokenLine& tokens)
    : classes_(classes), variables_(variables), tokens_(tokens), call_(classes, variables) {
  std::snprintf(returnName_, sizeof returnName_, "%s", freshName().c_str());
  thisName_ = freshName();
  argumentName_ = freshName();
}

void TIConditionParser::setLine(const char* line) { std::snprintf(line_, sizeof line_, "%s", line ? line : ""); }

void TIConditionParser::_vOperand(unsigned i, unsigned long code) {
  const TIToken& t = tokens_[i];
  const std::string text = t.sGetString();
  TIVariable* v = nullptr;
  if (bIsWordCode(t.getMeaning())) {
    v = variables_.addressOf(text.c_str());
    if (!v)
      KX_THROW(i == 0 ? ulCallThisUnknown : ulCallVariableUnknown, "%s", TIMessage::getString(0x302, text.c_str()));
  } else if (t.getMeaning() == eINTEGER || t.getMeaning() == eHEXADECIMAL || t.getMeaning() == eFLOAT) {
    const bool isInt = t.getMeaning() != eFLOAT;
    TIClass* c = classes_.addressOf(isInt ? "INT" : "FLOAT");
    v = new TIVariable((i == 0 ? thisName_ : argumentName_).c_str(), c);
    variables_.append(v);
    if (isInt)
      v->setContent(t.toInteger_());
    else
      v->setContent(t.toFloat_());
  } else {
    KX_THROW(code, "%s", TIMessage::getString(0x1001));
  }
  if (i == 0)
    call_.useThis(v);
  else
    call_.appendVariable(v);
}

bool TIConditionParser::isTrue() {
  KX_TRY {
    tokens_.nextLine(line_, false);
    for (unsigned i = 2; i + 1 < tokens_.getSize();) {
      const int code = tokens_[i].getMeaning();
      if (code == eINDEXBEGIN) {
        vConvertVectorVariable(tokens_, variables_, i - 1, ulIndexConditionParser);
        continue;
      }
      if (code == eMINUS) vFindNegativSign(tokens_, i);
      ++i;
    }
    if (tokens_.getSize() != 6)
      KX_THROW(ulConditionTokens, "%s", TIMessage::getString(0x413, static_cast<int>(tokens_.getSize())));
    if (tokens_[1].getMeaning() != eLISTBEGIN) KX_THROW(ulConditionNoOpen, "%s", TIMessage::getString(0x408));
    if (tokens_[5].getMeaning() != eLISTEND) KX_THROW(ulConditionNoClose, "%s", TIMessage::getString(0x407));
    tokens_.deleteToken(5);
    tokens_.deleteToken(1);
    tokens_.deleteToken(0);
    if (!isComparison(tokens_[1].getMeaning()))
      KX_THROW(ulConditionOperator, "%s", TIMessage::getString(0x502, tokens_[1].sGetString().c_str()));
    functionName_ = "operator" + tokens_[1].sGetString();
    variables_.openLevel();
    try {
      call_.reset();
      TIClass* intClass = classes_.addressOf("INT");
      auto* result = new TIVariable(returnName_, intClass);
      variables_.append(result);
      call_.useReturn(result);
      _vOperand(0, ulConditionLeft);
      _vOperand(2, ulConditionRight);
      const TIClass* argClass = call_.getArgList()[0]->getClass();
      TIClass* c = call_.getThis()->getClass();
      const int f = c ? c->getFunctionList().find(functionName_.c_str(), intClass, {argClass}) : -1;
      if (f < 0)
        KX_THROW(ulConditionNotFound, "%s",
                 TIMessage::getString(0x1014, c ? c->getName().c_str() : "", functionName_.c_str(),
                                      argClass ? argClass->getName().c_str() : "VOID"));
      c->getFunctionList()[static_cast<unsigned>(f)]->getAddress()(call_.getCallList());
      const bool value = result->getLong() != 0;
      call_.reset();
      variables_.closeLevel(true);
      return value;
    } catch (...) {
      call_.reset();
      try {
        variables_.closeLevel(true);
      } catch (unsigned long) {
      }
      throw;
    }
  }
  KX_CATCH
}
