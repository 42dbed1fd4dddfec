#include "kdoint/TILineParser.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <string>

#include "file98/KxPath.h"
#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIClassParser.h"
#include "kdoint/TIConditionParser.h"
#include "kdoint/TIEAManager.h"
#include "kdoint/TIEmbeddedFunction.h"
#include "kdoint/TIFile.h"
#include "kdoint/TIFunctionParser.h"
#include "kdoint/TIInterpreter.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIProcedure.h"
#include "kdoint/TIVariableArray.h"
#include "kdoint/TIVariableParser.h"
#include "kxexception/KxError.h"

using namespace kdoint;

namespace {

bool isCollecting(int status) {
  return status == 2 || status == 5 || status == 7 || status == 9 || status == 10 || status == 12 || status == 14;
}

// The line without its line end, for messages.
std::string shownLine(const char* line) {
  std::string s(line);
  const auto end = s.find_first_of("\r\n");
  if (end != std::string::npos) s.resize(end);
  return s;
}

bool isAssignOperator(int code) {
  return code == eOREQUAL || code == eNOTEQUAL || code == eANDEQUAL || code == eMINUSEQUAL || code == ePLUSEQUAL ||
         code == eMULTEQUAL || code == eDIVEQUAL || code == ePERCENTEQUAL;
}

bool isBinaryOperator(int code) {
  switch (code) {
    case eOROR: case eOR: case eNOTNOT: case eNOTEQUAL: case eNOT: case eANDAND: case eAND: case eMINUS:
    case ePLUS: case eLEFTSHIFT: case eSMALLEREQUAL: case eSMALLER: case eRIGHTSHIFT: case eGREATEREQUAL:
    case eGREATER: case eMULT: case eEQUALEQUAL: case eDIVISION: case ePERCENT:
      return true;
    default:
      return false;
  }
}

template <std::size_t N>
void copyText(char (&to)[N], const char* from) {
  const std::size_t n = from ? strnlen(from, N - 1) : 0;
  std::memcpy(to, from ? from : "", n);
  to[n] = '\0';
}

bool isConstant(int code) { return code == eLITERAL || code == eINTEGER || code == eHEXADECIMAL || code == eFLOAT; }

}  // namespace

TILineParser::TILineParser(TILineParser* parent, TIClassList& classes, TIVariableArray& variables,
                           TIEmbeddedFunction& functions, TIEAManager& io, TIInterpreter& interpreter,
                           TIProcedureList& procedures, int depth)
    : parent_(parent),
      root_(parent ? parent->root_ : this),
      classes_(classes),
      variables_(variables),
      functions_(functions),
      io_(io),
      interpreter_(interpreter),
      procedures_(procedures),
      depth_(depth) {
  variables_.openLevel();
  root_->deepest_ = this;
}

TILineParser::~TILineParser() {
  delete child_;
  if (blockFile_) _vDropBlockFile();
  delete classParser_;
  delete conditionParser_;
  delete procedureParser_;
  try {
    variables_.closeLevel(true);
  } catch (unsigned long) {
    kx::deleteError();
  }
  if (parent_ && parent_->child_ == this) parent_->child_ = nullptr;
  if (root_->deepest_ == this) root_->deepest_ = parent_;
}

const char* TILineParser::cpStatusName(int status) {
  static const char* const names[] = {"0 (Normal Line)", "1 (Begin If)",    "2 (Within If)",    "3 (End If)",
                                      "4 (Begin Else)",  "5 (Within Else)", "6 (Begin While)",  "7 (Within While)",
                                      "8 (Begin Class)", "9 (Within Class)", "10 (Within common Block)"};
  return status >= 0 && status <= 10 ? names[status] : "";
}

int TILineParser::parseLine(const char* line, const char* fileName, int lineNumber) {
  if (root_ != this) {
    if (child_ && child_->isToBeClosed()) delete child_;
    if (child_) return child_->parseLine(line, fileName, lineNumber);
    return _iParseHere(line, fileName, lineNumber);
  }
  // Only the deepest parser can be marked as to be closed: a parser is
  // marked when it has no child, and gets no line afterwards.
  if (deepest_ != this && deepest_->isToBeClosed()) delete deepest_;
  return deepest_->_iParseHere(line, fileName, lineNumber);
}

int TILineParser::_iParseHere(const char* line, const char* fileName, int lineNumber) {
  copyText(line_, line);
  copyText(fileName_, fileName);
  lineNumber_ = lineNumber;
  try {
    tokens_.nextLine(line_, isCollecting(status_));
    if (tokens_.getSize() == 0) return status_;
    if (interpreter_.bIsStepMode()) interpreter_.vStep(line_, fileName_, lineNumber_, depth_, status_);
    if (status_ != 0)
      insideExtraStatus();
    else
      _vDispatch();
  } catch (unsigned long) {
    _vHandleError();
  } catch (const std::exception& e) {
    kx::error(ulToolkitException, KX_FILE, __LINE__, "%s", TIMessage::getString(0x101b, e.what()));
    _vHandleError();
  } catch (...) {
    kx::error(kx::ulForeignError, KX_FILE, __LINE__, "Unknown exception catched");
    _vHandleError();
  }
  return status_;
}

void TILineParser::_vHandleError() {
  status_ = 0;
  if (blockFile_) _vDropBlockFile();
  blockDepth_ = 0;
  if (!interpreter_.bGetShowError()) return;
  std::string macro;
  if (const TIFileReadStack* stack = io_.pGetInput())
    for (unsigned i = stack->getSize(); i > 0 && macro.empty(); --i) {
      const char* name = stack->cpGetFileName(i - 1);
      if (std::strstr(name, ".mac") || std::strstr(name, ".MAC")) {
        std::string drive, dir, stem, ext;
        kx::fnsplit(name, drive, dir, stem, ext);
        macro = stem + ext;
      }
    }
  std::string shown = shownLine(line_);
  shown.erase(0, shown.find_first_not_of(" \t") == std::string::npos ? shown.size() : shown.find_first_not_of(" \t"));
  if (!macro.empty()) kx::trace(KX_FILE, __LINE__, "%s", TIMessage::getString(0x101c, macro.c_str()));
  kx::trace(KX_FILE, __LINE__, "%s", TIMessage::getString(0x1005, shown.c_str()));
  kx::ErrorMessageBox();
  kx::deleteError();
}

void TILineParser::_vDispatch() {
  switch (tokens_[0].getMeaning()) {
    case eIF:
      beginIf();
      return;
    case eWHILE:
      beginWhile();
      return;
    case eCLASS:
      createClass();
      return;
    case eSUPPLEMENT:
      supplementClass();
      return;
    case ePROCEDURE:
      createProcedure();
      return;
    case eBLOCKBEGIN:
      openCommonBlock();
      return;
    case eBLOCKEND:
      closeBlock();
      return;
    default:
      break;
  }
  if (tokens_[0].getMeaning() == eWORD) {
    const std::string name = tokens_[0].sGetString();
    if (variables_.addressOf(name.c_str())) return execVariable();
    if (functions_.find(name.c_str()) >= 0) return execEmbeddedProcedur();
    if (classes_.find(name.c_str()) >= 0) return createVariable();
    if (procedures_.bFind(name.c_str())) return execProcedure();
  }
  KX_THROW(ulUnknownSyntax, "%s", TIMessage::getString(0x1006, shownLine(line_).c_str()));
}

void TILineParser::insideExtraStatus() {
  switch (status_) {
    case 1: case 4: case 6: case 8: case 11: case 13:
      if (tokens_[0].getMeaning() != eBLOCKBEGIN)
        KX_THROW(ulBlockExpected, "%s", TIMessage::getString(0x1007, shownLine(line_).c_str()));
      openBlock();
      ++status_;
      return;
    case 3:
      if (tokens_[0].getMeaning() == eELSE) {
        status_ = 4;
      } else if (std::strstr(line_, "endPlayMacro()")) {
        status_ = 0;
        _vDispatch();
        status_ = 3;
      } else {
        status_ = 0;
        _vDispatch();
      }
      return;
    default:
      if (tokens_[0].getMeaning() == eBLOCKBEGIN)
        openBlock();
      else if (tokens_[0].getMeaning() == eBLOCKEND)
        closeBlock();
      else
        continueBlock();
  }
}

void TILineParser::beginIf() {
  delete conditionParser_;
  conditionParser_ = nullptr;
  conditionParser_ = new TIConditionParser(classes_, variables_, tokens_);
  conditionParser_->setLine(line_);
  condition_ = conditionParser_->isTrue();
  status_ = 1;
}

void TILineParser::beginWhile() {
  beginIf();
  status_ = 6;
}

void TILineParser::createClass() {
  delete classParser_;
  classParser_ = nullptr;
  classParser_ = new TIClassParser(classes_, tokens_);
  classParser_->setClassName();
  status_ = 8;
}

void TILineParser::supplementClass() {
  delete classParser_;
  classParser_ = nullptr;
  classParser_ = new TIClassParser(classes_, tokens_);
  classParser_->findClassName();
  status_ = 11;
}

void TILineParser::createProcedure() {
  delete procedureParser_;
  procedureParser_ = nullptr;
  procedureParser_ = new TIProcedureParser(classes_, procedures_, tokens_);
  procedureParser_->createProcedure();
  status_ = 13;
}

void TILineParser::openCommonBlock() {
  openBlock();
  status_ = 10;
}

void TILineParser::openBlock() {
  if (blockDepth_ == 0) {
    auto file = std::make_unique<TIFileWrite>();
    file->open(true, false);
    blockFile_ = file.release();
    blockDepth_ = 1;
    return;
  }
  ++blockDepth_;
  continueBlock();
}

void TILineParser::continueBlock() {
  blockFile_->write(line_);
  const std::size_t n = std::strlen(line_);
  if (n == 0 || line_[n - 1] != '\n') blockFile_->write("\r\n");
}

void TILineParser::closeBlock() {
  if (blockDepth_ == 0) KX_THROW(ulBlockCloseDepth, "%s", TIMessage::getString(0x1008));
  if (--blockDepth_ >= 1) {
    continueBlock();
    return;
  }
  switch (status_) {
    case 2: closeIfBlock(); return;
    case 5: closeElseBlock(); return;
    case 7: closeWhileBlock(); return;
    case 9: closeClassBlock(); return;
    case 10: closeCommonBlock(); return;
    case 12: closeSupplementBlock(); return;
    case 14: closeProcedureBlock(); return;
    default: KX_THROW(ulBlockCloseStatus, "%s", TIMessage::getString(0x1009, status_));
  }
}

void TILineParser::_vDropBlockFile() {
  try {
    if (blockFile_->isOpen()) blockFile_->close(true);
  } catch (unsigned long) {
    kx::deleteError();
  }
  delete blockFile_;
  blockFile_ = nullptr;
}

void TILineParser::_vPlayBlock(const char* lastLine) {
  blockFile_->write(lastLine);
  const std::string name = blockFile_->getFileName();
  blockFile_->close(false);
  delete blockFile_;
  blockFile_ = nullptr;
  delete child_;
  child_ = new TILineParser(this, classes_, variables_, functions_, io_, interpreter_, procedures_, depth_ + 1);
  try {
    io_.openInput(name.c_str(), true, true);
  } catch (unsigned long) {
    delete child_;
    TIFile::vDelete(name.c_str());
    throw;
  }
  interpreter_.vIncPlayDepth();
  status_ = 0;
}

void TILineParser::closeCommonBlock() { _vPlayBlock("closeParser()\r\n"); }

void TILineParser::closeIfBlock() {
  if (condition_)
    closeCommonBlock();
  else
    _vDropBlockFile();
  condition_ = !condition_;
  delete conditionParser_;
  conditionParser_ = nullptr;
  status_ = 3;
}

void TILineParser::closeElseBlock() {
  if (condition_)
    closeCommonBlock();
  else
    _vDropBlockFile();
  status_ = 0;
}

void TILineParser::closeWhileBlock() {
  if (!condition_) {
    delete conditionParser_;
    conditionParser_ = nullptr;
    _vDropBlockFile();
    status_ = 0;
    return;
  }
  // The condition parser stays for the repetitions.
  _vPlayBlock("repeatWhile()\r\n");
}

void TILineParser::_vReadBlock(void (*use)(TILineParser&, TIFileRead&)) {
  const std::string name = blockFile_->getFileName();
  blockFile_->close(false);
  delete blockFile_;
  blockFile_ = nullptr;
  TIFileRead file(name.c_str());
  struct TCleanup {
    TILineParser& p;
    TIFileRead& f;
    ~TCleanup() {
      try {
        if (f.isOpen()) f.close(true);
        else TIFile::vDelete(f.getFileName());
      } catch (unsigned long) {
        kx::deleteError();
      }
      delete p.classParser_;
      p.classParser_ = nullptr;
      delete p.procedureParser_;
      p.procedureParser_ = nullptr;
      p.status_ = 0;
    }
  } cleanup{*this, file};
  file.open(false, 256);
  use(*this, file);
}

void TILineParser::closeClassBlock() {
  _vReadBlock([](TILineParser& p, TIFileRead& f) { p.classParser_->setMethods(&f); });
}

void TILineParser::closeSupplementBlock() {
  _vReadBlock([](TILineParser& p, TIFileRead& f) { p.classParser_->supplementMethods(&f); });
}

void TILineParser::closeProcedureBlock() {
  _vReadBlock([](TILineParser& p, TIFileRead& f) { p.procedureParser_->setProcedureContent(&f); });
}

void TILineParser::createVariable() { TIVariableParser(classes_, variables_, tokens_).setVariable(); }

void TILineParser::convertVectorVariable(unsigned i) {
  vConvertVectorVariable(tokens_, variables_, i, ulIndexLineParser);
}

void TILineParser::findNegativSign(unsigned i) { vFindNegativSign(tokens_, i); }

void TILineParser::_vFoldIndicesAndSigns(unsigned from) {
  for (unsigned i = from; i + 1 < tokens_.getSize();) {
    const int code = tokens_[i].getMeaning();
    if (code == eINDEXBEGIN && i > 0) {
      convertVectorVariable(i - 1);
      continue;
    }
    if (code == eMINUS) findNegativSign(i);
    ++i;
  }
}

void TILineParser::execVariable() {
  if (tokens_.getSize() < 2) KX_THROW(ulExecTooShort, "%s", TIMessage::getString(0x100a));
  _vFoldIndicesAndSigns(1);
  const int code = tokens_.getSize() > 1 ? tokens_[1].getMeaning() : eERROR;
  if (isAssignOperator(code)) return var_op();
  if (code == eEQUAL) return var_assign();
  if (code == ePOINT) return var_proc();
  const std::string t = tokens_.getSize() > 1 ? tokens_[1].sGetString() : std::string();
  KX_THROW(ulExecUnknownForm, "%s", TIMessage::getString(0x501, t.c_str()));
}

void TILineParser::execEmbeddedProcedur() {
  _vFoldIndicesAndSigns(1);
  TIEmbeddedParser(functions_, classes_, variables_, tokens_).callProcedur();
}

void TILineParser::execProcedure() { procedures_.vExecProcedure(interpreter_, classes_, variables_, tokens_); }

void TILineParser::var_proc() { TIFunctionParser(classes_, variables_, tokens_).callProcedur(); }
void TILineParser::var_op() { TIFunctionParser(classes_, variables_, tokens_).callOperator(); }

void TILineParser::var_assign() {
  const std::string t = tokens_.getSize() > 2 ? tokens_[2].sGetString() : std::string();
  const int code = tokens_.getSize() > 2 ? tokens_[2].getMeaning() : eERROR;
  if (isConstant(code)) return var_op();
  if (code == eWORD && variables_.addressOf(t.c_str())) return var_assign_var();
  if (code == eWORD && functions_.find(t.c_str()) >= 0) return var_assign_proc();
  KX_THROW(ulAssignUnknown, "%s", TIMessage::getString(0x302, t.c_str()));
}

void TILineParser::var_assign_proc() { TIEmbeddedParser(functions_, classes_, variables_, tokens_).callFunction(); }

void TILineParser::var_assign_var() {
  if (tokens_.getSize() == 3) return var_op();
  const int code = tokens_[3].getMeaning();
  if (isBinaryOperator(code)) return var_assign_var_op();
  if (code == ePOINT) return var_assign_var_func();
  KX_THROW(ulAssignVarForm, "%s", TIMessage::getString(0x1006, shownLine(line_).c_str()));
}

void TILineParser::var_assign_var_func() { TIFunctionParser(classes_, variables_, tokens_).callFunction(); }
void TILineParser::var_assign_var_op() { TIFunctionParser(classes_, variables_, tokens_).callAssignOperator(); }

void TILineParser::repeatWhileBlock() {
  KX_TRY {
    if (!child_) KX_THROW(ulRepeatNoChild, "%s", TIMessage::getString(0x1019));
    // The loop belongs to the parent of the deepest parser.
    if (child_->child_) return root_->deepest_->parent_->repeatWhileBlock();
    if (!conditionParser_) KX_THROW(ulRepeatNoCondition, "%s", TIMessage::getString(0x101a));
    if (conditionParser_->isTrue()) {
      io_.rewindInput();
    } else {
      delete conditionParser_;
      conditionParser_ = nullptr;
      child_->setToBeClosed();
    }
  }
  KX_CATCH
}

void TILineParser::closeCurrentChild() {
  KX_TRY {
    if (!child_) KX_THROW(ulCloseNoChild, "%s", TIMessage::getString(0x1018));
    root_->deepest_->setToBeClosed();
  }
  KX_CATCH
}
