#include "kdoint/TIProcedure.h"

#include <cstdio>
#include <memory>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIFile.h"
#include "kdoint/TIInterpreter.h"
#include "kdoint/TIToken.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kdoint/TIVariableParser.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

using namespace kdoint;

namespace {
constexpr TLanguage::TLanguageString sIncomplete("Prozedurdeklaration unvollständig", "Procedure declaration not complete");
constexpr TLanguage::TLanguageString sNoName("Prozedurdeklaration: Name fehlt", "Procedure declaration: missing name");
constexpr TLanguage::TLanguageString sNoOpen("Prozedurdeklaration: \"(\" fehlt", "Procedure declaration: missing \"(\"");
constexpr TLanguage::TLanguageString sNoClose("Prozedurdeklaration: \")\" fehlt", "Procedure declaration: missing \")\"");
constexpr TLanguage::TLanguageString sVector("Vektoren in Prozedurdeklaration nicht erlaubt",
                                             "Using of vectors in procedure declaration is not allowed");
constexpr TLanguage::TLanguageString sExists("Prozedur %s existiert bereits", "Procedure %s already exist");
constexpr TLanguage::TLanguageString sIndex("Index=%d >= Size=%d", "Index=%d >= Size=%d");
constexpr TLanguage::TLanguageString sCallFormat("Formatfehler in Aufrufzeile", "Format error in input line");
constexpr TLanguage::TLanguageString sNoVariable("Variable %s existiert nicht", "Variable %s not found");
constexpr TLanguage::TLanguageString sNotFound("Prozedur %s nicht gefunden", "Procedure %s not found");

bool sameClasses(const TIProcedure& p, const std::vector<const TIClass*>& classes) {
  if (p.getParams().size() != classes.size()) return false;
  for (std::size_t i = 0; i < classes.size(); ++i)
    if (p.getParams()[i].cls != classes[i]) return false;
  return true;
}
}  // namespace

TIProcedure::TIProcedure(std::string name, std::vector<TParam> params)
    : name_(std::move(name)), params_(std::move(params)) {
  declaration_ = name_ + "(";
  for (std::size_t i = 0; i < params_.size(); ++i) {
    if (i) declaration_ += ',';
    declaration_ += (params_[i].cls ? params_[i].cls->getName() : std::string("VOID")) + " " + params_[i].name;
  }
  declaration_ += ")";
}

bool TIProcedureList::bFind(const char* name) const {
  for (const auto& p : list_)
    if (name && p.getName() == name) return true;
  return false;
}

int TIProcedureList::iFind(const char* name, const std::vector<const TIClass*>& classes) const {
  for (std::size_t i = 0; i < list_.size(); ++i)
    if (name && list_[i].getName() == name && sameClasses(list_[i], classes)) return static_cast<int>(i);
  return -1;
}

bool TIProcedureList::bExist(const char* name, const std::vector<const TIClass*>& classes) const {
  return iFind(name, classes) >= 0;
}

void TIProcedureList::append(TIProcedure p) {
  std::vector<const TIClass*> classes;
  for (const auto& param : p.getParams()) classes.push_back(param.cls);
  if (bExist(p.getName().c_str(), classes)) KX_THROW(ulProcExists, sExists(), p.getName().c_str());
  list_.push_back(std::move(p));
}

void TIProcedureList::remove(unsigned i) {
  if (i >= list_.size()) KX_THROW(ulProcIndex, sIndex(), static_cast<int>(i), static_cast<int>(list_.size()));
  list_.erase(list_.begin() + i);
}

TIProcedure& TIProcedureList::operator[](unsigned i) {
  if (i >= list_.size()) KX_THROW(ulProcIndex, sIndex(), static_cast<int>(i), static_cast<int>(list_.size()));
  return list_[i];
}

void TIProcedureList::vExecProcedure(TIInterpreter& interpreter, TIClassList& classes, TIVariableArray& variables,
                                     TITokenLine& t) {
  KX_TRY {
    variables.vInLevel([&] {
      if (t.getSize() < 2 || t[1].getMeaning() != eLISTBEGIN) KX_THROW(ulProcCallNoOpen, "%s", sCallFormat());
      if (t[t.getSize() - 1].getMeaning() != eLISTEND) KX_THROW(ulProcCallNoClose, "%s", sCallFormat());
      std::vector<std::string> actual;
      for (unsigned i = 2; i + 1 < t.getSize();) {
        const int code = t[i].getMeaning();
        if (bIsWordCode(code)) {
          if (i + 1 < t.getSize() && t[i + 1].getMeaning() == eINDEXBEGIN)
            vConvertVectorVariable(t, variables, i, ulIndexProcedureCall);
        } else if (code == eLITERAL || code == eINTEGER || code == eHEXADECIMAL || code == eFLOAT) {
          char name[48];
          std::snprintf(name, sizeof name, "__ProcedureList%u", i);
          const char* cls = code == eLITERAL ? "LITERAL" : code == eFLOAT ? "FLOAT" : "INT";
          auto* v = new TIVariable(name, classes.addressOf(cls));
          variables.append(v);
          if (code == eLITERAL)
            v->setContent(t[i].sGetString().c_str());
          else if (code == eFLOAT)
            v->setContent(t[i].toFloat_());
          else
            v->setContent(t[i].toInteger_());
          t.changeToken(i, name);
        } else {
          KX_THROW(ulProcCallFormat, "%s", sCallFormat());
        }
        actual.push_back(t[i].sGetString());
        ++i;
        if (i + 1 < t.getSize()) {
          if (t[i].getMeaning() != eKOMMA || i + 2 >= t.getSize()) KX_THROW(ulProcCallFormat, "%s", sCallFormat());
          ++i;
        }
      }
      std::vector<const TIClass*> argClasses;
      for (const auto& name : actual) {
        const TIVariable* v = variables.addressOf(name.c_str());
        if (!v) KX_THROW(ulProcVariableUnknown, sNoVariable(), name.c_str());
        argClasses.push_back(v->getClass());
      }
      const std::string name = t[0].sGetString();
      const int index = iFind(name.c_str(), argClasses);
      if (index < 0) KX_THROW(ulProcNotFound, sNotFound(), name.c_str());
      const TIProcedure& p = list_[static_cast<unsigned>(index)];
      auto file = std::make_unique<TIFileWrite>();
      file->open(true, false);
      std::string text = "{\r\n";
      for (std::size_t k = 0; k < actual.size(); ++k) {
        char line[600];
        std::snprintf(line, sizeof line, "    reference(\"%s\",\"%s\")\r\n", actual[k].c_str(),
                      p.getParams()[k].name.c_str());
        text += line;
      }
      text += p.getContent();
      if (!text.empty() && text.back() != '\n') text += "\r\n";
      text += "}\r\n";
      file->write(text.c_str(), text.size());
      const std::string fileName = file->getFileName();
      file->close(false);
      try {
        interpreter.getEAManager().openInput(fileName.c_str(), true, true);
      } catch (unsigned long) {
        TIFile::vDelete(fileName.c_str());
        throw;
      }
      interpreter.vIncPlayDepth();
    });
  }
  KX_CATCH
}

TIProcedureParser::TIProcedureParser(TIClassList& classes, TIProcedureList& procedures, TITokenLine& tokens)
    : classes_(classes), procedures_(procedures), tokens_(tokens) {}

void TIProcedureParser::createProcedure() {
  KX_TRY {
    TITokenLine& t = tokens_;
    const unsigned n = t.getSize();
    if (n < 4) KX_THROW(ulProcDeclIncomplete, "%s", sIncomplete());
    if (t[1].getMeaning() != eWORD) KX_THROW(ulProcDeclNoName, "%s", sNoName());
    if (t[2].getMeaning() != eLISTBEGIN) KX_THROW(ulProcDeclNoOpen, "%s", sNoOpen());
    if (t[n - 1].getMeaning() != eLISTEND) KX_THROW(ulProcDeclNoClose, "%s", sNoClose());
    unsigned count = 0;
    if (n > 4) {
      count = 1;
      for (unsigned k = 5; k < n; k += 3) {
        if (t[k].getMeaning() == eINDEXBEGIN) KX_THROW(ulProcDeclVector, "%s", sVector());
        if (t[k].getMeaning() != eKOMMA) break;
        ++count;
      }
    }
    std::vector<TIProcedure::TParam> params;
    std::vector<const TIClass*> classes;
    for (unsigned p = 0; p < count; ++p) {
      const unsigned c = 3 + 3 * p;
      if (c + 1 >= n - 1 || t[c + 1].getMeaning() != eWORD) KX_THROW(ulProcDeclIncomplete, "%s", sIncomplete());
      TIClass* cls = classes_.addressOf(t[c].sGetString().c_str());
      params.push_back({cls, t[c + 1].sGetString()});
      classes.push_back(cls);
    }
    const std::string name = t[1].sGetString();
    const int old = procedures_.iFind(name.c_str(), classes);
    if (old >= 0) procedures_.remove(static_cast<unsigned>(old));
    procedures_.append(TIProcedure(name, std::move(params)));
  }
  KX_CATCH
}

void TIProcedureParser::setProcedureContent(TIFileRead* file) {
  KX_TRY {
    std::string content;
    file->vContent2String(content);
    if (procedures_.size() > 0) procedures_[procedures_.size() - 1].setContent(std::move(content));
  }
  KX_CATCH
}
