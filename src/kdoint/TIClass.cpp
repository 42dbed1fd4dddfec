#include "kdoint/TIClass.h"

#include <cstdint>
#include <cstring>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIMessage.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

using namespace kdoint;

namespace {
const char* const sNoFunctionHelp = "Für diese Funktion ist keine Hilfe verfügbar.";

const char* nameOf(const TIClass* c) { return c ? c->getName().c_str() : "VOID"; }
bool sameClassName(const TIClass* c, const char* name) {
  if (!c) return !name || std::strcmp(name, "VOID") == 0;
  return name && c->getName() == name;
}
}  // namespace

// ---------------------------------------------------------------- TIFunction

TIFunction::TIFunction(TIClass* owner, const char* name, const std::vector<TIClass*>& args, TIClass* result,
                       TIRoutine address, const char* help)
    : owner_(owner), args_(args), result_(result), address_(address), help_(help ? help : sNoFunctionHelp) {
  std::string n = name ? name : "";
  const auto dollar = n.find('$');
  if (dollar != std::string::npos) {
    hidden_ = n.find('h', dollar) != std::string::npos;
    n.resize(dollar);
  }
  name_ = n;
  if (result_ && result_ != owner_) result_->increaseReference();
  for (auto* a : args_)
    if (a && a != owner_) a->increaseReference();
}

TIFunction::~TIFunction() {
  if (result_ && result_ != owner_) result_->decreaseReference();
  for (auto* a : args_)
    if (a && a != owner_) a->decreaseReference();
}

bool TIFunction::isSame(const char* name, const char* resultClass, const std::vector<const char*>& argClasses) const {
  if (!isName(name) || !sameClassName(result_, resultClass) || argClasses.size() != args_.size()) return false;
  for (std::size_t i = 0; i < args_.size(); ++i)
    if (!sameClassName(args_[i], argClasses[i])) return false;
  return true;
}

bool TIFunction::isSame(const char* name, const TIClass* result, const std::vector<const TIClass*>& args) const {
  if (!isName(name) || result != result_ || args.size() != args_.size()) return false;
  for (std::size_t i = 0; i < args_.size(); ++i)
    if (args[i] != args_[i]) return false;
  return true;
}

std::string TIFunction::getFormat() const {
  std::string s = std::string(nameOf(result_)) + " " + name_ + "(";
  for (std::size_t i = 0; i < args_.size(); ++i) s += (i ? "," : "") + std::string(nameOf(args_[i]));
  return s + ")";
}

void TIFunction::list(FILE* file, int indent) const {
  if (!file) return;
  std::fprintf(file, "%*s%s %s(", indent, "", nameOf(result_), name_.c_str());
  if (args_.empty()) std::fprintf(file, "VOID");
  for (auto* a : args_) std::fprintf(file, "%s,", nameOf(a));
  std::fprintf(file, ") 0x%08lx\r\n", static_cast<unsigned long>(reinterpret_cast<uintptr_t>(address_)));
}

// ---------------------------------------------------------------- TIFunctionList

TIFunctionList::~TIFunctionList() {
  for (auto it = functions_.rbegin(); it != functions_.rend(); ++it) delete *it;
}

void TIFunctionList::append(TIFunction* f) {
  if (f) functions_.push_back(f);
}

TIFunction* TIFunctionList::operator[](unsigned i) const {
  if (i >= functions_.size())
    KX_THROW(ulFunctionIndex, "%s", TIMessage::getString(0x1003, static_cast<int>(i), static_cast<int>(functions_.size())));
  return functions_[i];
}

int TIFunctionList::find(const char* name) const {
  for (std::size_t i = 0; i < functions_.size(); ++i)
    if (functions_[i]->isName(name)) return static_cast<int>(i);
  return -1;
}

int TIFunctionList::find(const char* name, const char* resultClass, const std::vector<const char*>& argClasses) const {
  for (std::size_t i = 0; i < functions_.size(); ++i)
    if (functions_[i]->isSame(name, resultClass, argClasses)) return static_cast<int>(i);
  return -1;
}

int TIFunctionList::find(const char* name, const TIClass* result, const std::vector<const TIClass*>& args) const {
  for (std::size_t i = 0; i < functions_.size(); ++i)
    if (functions_[i]->isSame(name, result, args)) return static_cast<int>(i);
  return -1;
}

// ---------------------------------------------------------------- TIClass

TIClass::TIClass(const char* name, const char* help, TIStatusFunction status)
    : name_(name ? name : ""), help_(help), status_(status) {}

TIRoutine TIClass::pGetDestroy() const {
  const int i = functions_.find("destroy", static_cast<const TIClass*>(nullptr), {});
  return i < 0 ? nullptr : functions_[static_cast<unsigned>(i)]->getAddress();
}

void TIClass::list(FILE* file, int indent) const {
  if (!file) return;
  if (indent > 0) {
    std::fprintf(file, "%*s", indent, "");
    std::fprintf(file, "%s", TIMessage::getString(0x2002, name_.c_str(), instances_, references_));
  } else {
    std::fprintf(file, "%s", TIMessage::getString(0x2003, name_.c_str()));
    std::fprintf(file, "%s", TIMessage::getString(0x2004, instances_));
    std::fprintf(file, "%s", TIMessage::getString(0x2005, references_));
  }
  for (unsigned i = 0; i < functions_.getSize(); ++i) functions_[i]->list(file, 4);
}

// ---------------------------------------------------------------- TIClassList

TIClassList::~TIClassList() {
  // Functions hold references to classes loaded before their own: the
  // classes go in the reverse order of loading, functions first.
  for (auto it = classes_.rbegin(); it != classes_.rend(); ++it) delete *it;
}

void TIClassList::append(TIClass* c) {
  if (c) classes_.push_back(c);
}

int TIClassList::find(const char* name) const {
  for (std::size_t i = 0; i < classes_.size(); ++i)
    if (name && classes_[i]->getName() == name) return static_cast<int>(i);
  return -1;
}

TIClass* TIClassList::operator[](unsigned i) const {
  if (i >= classes_.size())
    KX_THROW(ulClassIndex, "%s", TIMessage::getString(0x208, static_cast<int>(i), static_cast<int>(classes_.size())));
  return classes_[i];
}

TIClass* TIClassList::addressOf(unsigned i) const {
  if (i >= classes_.size())
    KX_THROW(ulClassAddressIndex, "%s",
             TIMessage::getString(0x208, static_cast<int>(i), static_cast<int>(classes_.size())));
  return classes_[i];
}

TIClass* TIClassList::addressOf(const char* name) const {
  const int i = find(name);
  if (i < 0) KX_THROW(ulClassAddressName, "%s", TIMessage::getString(0x209, name ? name : ""));
  return classes_[static_cast<std::size_t>(i)];
}

void TIClassList::remove(unsigned i) {
  if (i >= classes_.size())
    KX_THROW(ulClassRemoveIndex, "%s", TIMessage::getString(0x208, static_cast<int>(i), static_cast<int>(classes_.size())));
  TIClass* c = classes_[i];
  // Message 20a takes the count as "%d" in German and as "%s" in English:
  // each language gets the argument its text asks for.
  if (c->getInstances() > 0) {
    const std::string count = std::to_string(c->getInstances());
    KX_THROW(ulClassHasInstances, "%s",
             TLanguage::isEnglisch() ? TIMessage::getString(0x20a, c->getName().c_str(), count.c_str())
                                     : TIMessage::getString(0x20a, c->getName().c_str(), c->getInstances()));
  }
  if (c->getReferences() > 0)
    KX_THROW(ulClassHasReferences, "%s", TIMessage::getString(0x20b, c->getName().c_str(), c->getReferences()));
  delete c;
  classes_.erase(classes_.begin() + i);
}
