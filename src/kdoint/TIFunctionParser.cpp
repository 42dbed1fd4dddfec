#include "kdoint/TIFunctionParser.h"

#include <string>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TICallList.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIEmbeddedFunction.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIToken.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kdoint/TIVariableParser.h"
#include "kxexception/KxError.h"

using namespace kdoint;

namespace {

bool isConstant(int code) { return code == eLITERAL || code == eINTEGER || code == eHEXADECIMAL || code == eFLOAT; }


// Appends the token as an argument: a variable by name, a constant as a
// temporary of its kind.
void appendArgument(TICallList& call, const TIToken& t) {
  const std::string text = t.sGetString();
  switch (t.getMeaning()) {
    case eINTEGER:
    case eHEXADECIMAL:
      call.appendInteger(t.toInteger_());
      return;
    case eFLOAT:
      call.appendFloat(t.toFloat_());
      return;
    case eLITERAL:
      call.appendLiteral(text.c_str());
      return;
    default:
      call.appendVariable(text.c_str());
  }
}

}  // namespace

// ---------------------------------------------------------------- methods

TIFunctionParser::TIFunctionParser(TIClassList& classes, TIVariableArray& variables, TITokenLine& tokens)
    : classes_(classes), variables_(variables), tokens_(tokens) {}

void TIFunctionParser::callProcedur() {
  KX_TRY {
    if (tokens_.getSize() < 5) KX_THROW(ulCallProcedurTokens, "%s", TIMessage::getString(0x40e));
    tokens_[2].setMeaning(eFUNCTION);
    _vCall(false, false);
  }
  KX_CATCH
}

void TIFunctionParser::callFunction() {
  KX_TRY {
    if (tokens_.getSize() < 7) KX_THROW(ulCallFunctionTokens, "%s", TIMessage::getString(0x40e));
    tokens_[2].setMeaning(eVARIABLE);
    tokens_[4].setMeaning(eFUNCTION);
    _vCall(true, false);
  }
  KX_CATCH
}

void TIFunctionParser::callOperator() {
  KX_TRY {
    if (tokens_.getSize() < 2) KX_THROW(ulCallOperatorFew, "%s", TIMessage::getString(0x40e));
    if (tokens_.getSize() > 3) KX_THROW(ulCallOperatorMany, "%s", TIMessage::getString(0x40f));
    _vCall(false, true);
  }
  KX_CATCH
}

void TIFunctionParser::callAssignOperator() {
  KX_TRY {
    if (tokens_.getSize() != 5) KX_THROW(ulCallAssignTokens, "%s", TIMessage::getString(0x410));
    tokens_[2].setMeaning(eVARIABLE);
    _vCall(true, true);
  }
  KX_CATCH
}

void TIFunctionParser::_vCall(bool bAssign, bool bOperator) {
  variables_.vInLevel([&] {
    TITokenLine& t = tokens_;
    if (bAssign) t.deleteToken(1);
    const unsigned self = bAssign ? 1 : 0;
    const unsigned name = self + 1;
    unsigned first = self + 2;
    if (!bOperator) {
      t.deleteToken(name);  // "."
      if (t.getSize() <= first || t[first].getMeaning() != eLISTBEGIN)
        KX_THROW(ulCallNoOpen, "%s", TIMessage::getString(0x406));
      t.deleteToken(first);
      if (t.getSize() <= first || t[t.getSize() - 1].getMeaning() != eLISTEND)
        KX_THROW(ulCallNoClose, "%s", TIMessage::getString(0x407));
      t.deleteToken(t.getSize() - 1);
    } else if (bAssign) {
      first = t.getSize() - 1;  // r = a OP b: the last token alone
    }
    for (unsigned i = first; i < t.getSize();) {
      const int code = t[i].getMeaning();
      if (code == eKOMMA) {
        t.deleteToken(i);
        continue;
      }
      if (!bIsWordCode(code) && !isConstant(code)) KX_THROW(ulCallBadArgument, "%s", TIMessage::getString(0x1001));
      ++i;
    }
    TICallList call(classes_, variables_);
    if (bAssign) call.useReturn(t[0].sGetString().c_str());
    call.useThis(t[self].sGetString().c_str());
    for (unsigned i = first; i < t.getSize(); ++i) appendArgument(call, t[i]);
    const std::string function = bOperator ? "operator" + t[name].sGetString() : t[name].sGetString();
    TIClass* c = call.getThis()->getClass();
    const TIClass* result = call.getReturnClass();
    const int f = c ? c->getFunctionList().find(function.c_str(), result, call.getArgClasses()) : -1;
    if (f < 0) {
      const std::string text =
          std::string(TIMessage::getString(0x1016, result ? result->getName().c_str() : "VOID",
                                           c ? c->getName().c_str() : "", function.c_str())) +
          call.sGetArgClassList();
      KX_THROW(ulCallNotFound, "%s", text.c_str());
    }
    c->getFunctionList()[static_cast<unsigned>(f)]->getAddress()(call.getCallList());
  });
}

// ---------------------------------------------------------------- built-ins

TIEmbeddedParser::TIEmbeddedParser(TIEmbeddedFunction& functions, TIClassList& classes, TIVariableArray& variables,
                                   TITokenLine& tokens)
    : functions_(functions), classes_(classes), variables_(variables), tokens_(tokens) {}

void TIEmbeddedParser::callProcedur() {
  KX_TRY {
    if (tokens_.getSize() < 3) KX_THROW(ulEmbeddedProcedurTokens, "%s", TIMessage::getString(0x200d));
    _vCall(false);
  }
  KX_CATCH
}

void TIEmbeddedParser::callFunction() {
  KX_TRY {
    if (tokens_.getSize() < 5) KX_THROW(ulEmbeddedFunctionTokens, "%s", TIMessage::getString(0x200c));
    _vCall(true);
  }
  KX_CATCH
}

void TIEmbeddedParser::_vCall(bool bResult) {
  variables_.vInLevel([&] {
    TITokenLine& t = tokens_;
    if (bResult) t.deleteToken(1);
    const unsigned name = bResult ? 1 : 0;
    const unsigned first = name + 1;
    if (t.getSize() <= first || t[first].getMeaning() != eLISTBEGIN)
      KX_THROW(ulEmbeddedNoOpen, "%s", TIMessage::getString(0x406));
    t.deleteToken(first);
    if (t.getSize() <= first || t[t.getSize() - 1].getMeaning() != eLISTEND)
      KX_THROW(ulEmbeddedNoClose, "%s", TIMessage::getString(0x407));
    t.deleteToken(t.getSize() - 1);
    TICallList call(classes_, variables_);
    if (bResult) call.useReturn(t[0].sGetString().c_str());
    for (unsigned i = first; i < t.getSize();) {
      TIToken& token = t[i];
      const int code = token.getMeaning();
      if (code == eKOMMA) {
        t.deleteToken(i);
        continue;
      }
      const std::string text = token.sGetString();
      if (!isConstant(code)) {
        // A plain variable arrives as itself, anything else as its text.
        const TIVariable* v = bIsWordCode(code) ? variables_.addressOf(text.c_str()) : nullptr;
        const TIClass* c = v ? v->getClass() : nullptr;
        const bool plain = c && (c->getName() == "LITERAL" || c->getName() == "INT" || c->getName() == "FLOAT");
        token.setMeaning(plain ? eVARIABLE : eLITERAL);
      }
      appendArgument(call, token);
      ++i;
    }
    const std::string function = t[name].sGetString();
    const TIClass* result = call.getReturnClass();
    const int f = functions_.find(function.c_str(), result, call.getArgClasses());
    if (f < 0) {
      const std::string text =
          std::string(TIMessage::getString(0x1015, result ? result->getName().c_str() : "VOID", function.c_str())) +
          call.sGetArgClassList();
      KX_THROW(ulEmbeddedNotFound, "%s", text.c_str());
    }
    functions_[static_cast<unsigned>(f)]->getAddress()(call.getCallList());
  });
}
