#include "kdoint/TICallList.h"

#include <cstdio>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kxexception/KxError.h"

using namespace kdoint;

TICallList::TICallList(TIClassList& classes, TIVariableArray& variables)
    : classes_(classes), variables_(variables), list_(3, nullptr) {}

void TICallList::reset() {
  count_ = 0;
  list_.assign(3, nullptr);
}

std::vector<const TIClass*> TICallList::getArgClasses() const {
  std::vector<const TIClass*> out;
  for (unsigned i = 0; i < count_; ++i) out.push_back(list_[2 + i]->getClass());
  return out;
}

std::string TICallList::sGetArgClassList() const {
  std::string out;
  for (unsigned i = 0; i < count_; ++i) {
    if (i) out += ',';
    const TIClass* c = list_[2 + i]->getClass();
    out += c ? c->getName() : "VOID";
  }
  return out + ")";
}

const TIClass* TICallList::getReturnClass() const { return list_[1] ? list_[1]->getClass() : nullptr; }

void TICallList::useThis(const char* name) {
  TIVariable* v = name ? variables_.addressOf(name) : nullptr;
  if (name && !v) KX_THROW(ulCallThisUnknown, "%s", TIMessage::getString(0x302, name));
  list_[0] = v;
}

void TICallList::useReturn(const char* name) {
  TIVariable* v = name ? variables_.addressOf(name) : nullptr;
  if (name && !v) KX_THROW(ulCallReturnUnknown, "%s", TIMessage::getString(0x302, name));
  list_[1] = v;
}

void TICallList::appendVariable(TIVariable* v) {
  list_.back() = v;
  list_.push_back(nullptr);
  ++count_;
}

void TICallList::appendVariable(const char* name) {
  TIVariable* v = variables_.addressOf(name);
  if (!v) KX_THROW(ulCallVariableUnknown, "%s", TIMessage::getString(0x302, name ? name : ""));
  appendVariable(v);
}

TIVariable* TICallList::_temporary(const char* className, unsigned long messageId) {
  const int c = classes_.find(className);
  if (c < 0) KX_THROW(ulCallNoBuiltInClass, "%s", TIMessage::getString(messageId));
  static const std::vector<std::string> names = [] {
    std::vector<std::string> n;
    for (unsigned i = 0; i < 32; ++i) n.push_back("__TICallList__" + std::to_string(i));
    return n;
  }();
  const std::string name = count_ < names.size() ? names[count_] : "__TICallList__" + std::to_string(count_);
  auto* v = new TIVariable(name.c_str(), classes_[static_cast<unsigned>(c)]);
  variables_.append(v);
  return v;
}

void TICallList::appendInteger(int32_t value) {
  TIVariable* v = _temporary("INT", 0x205);
  v->setContent(value);
  appendVariable(v);
}

void TICallList::appendFloat(double value) {
  TIVariable* v = _temporary("FLOAT", 0x206);
  v->setContent(value);
  appendVariable(v);
}

void TICallList::appendLiteral(const char* text) {
  TIVariable* v = _temporary("LITERAL", 0x207);
  v->setContent(text);
  appendVariable(v);
}
