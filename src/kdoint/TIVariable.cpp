#include "kdoint/TIVariable.h"

#include <cstdio>
#include <cstring>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIClass.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

using namespace kdoint;

namespace {
constexpr TLanguage::TLanguageString sUnderflow("Unterlauf Referenzzähler", "Underflow reference counter");
}

void TIContentNumber::vDecreaseReference() {
  if (uReference == 0) KX_THROW(ulReferenceUnderflow, "%s", sUnderflow());
  --uReference;
}

void vExpandLineFeeds(char* text) {
  if (!text) return;
  for (char* p = text; p[0] && p[1]; ++p)
    if (p[0] == '\\' && p[1] == 'n') {
      p[0] = '\r';
      p[1] = '\n';
      ++p;
    }
}

TIVariable::TIVariable(const char* name, TIClass* c) : name_(name ? name : ""), class_(c), content_(new TIContentNumber) {
  content_->vIncreaseReference();
  if (class_) class_->increaseInstance();
}

TIVariable::~TIVariable() {
  if (--content_->uReference == 0) delete content_;
  if (class_) class_->decreaseInstance();
}

void TIVariable::vSetReference(TIVariable* other) {
  if (!other || other->content_ == content_) return;
  if (--content_->uReference == 0) delete content_;
  content_ = other->content_;
  content_->vIncreaseReference();
}

void TIVariable::setContent(const char* text) {
  delete[] content_->value.s;
  content_->value.s = nullptr;
  if (!text) return;
  const std::size_t n = std::strlen(text);
  char* copy = new char[n + 1];
  std::memcpy(copy, text, n + 1);
  vExpandLineFeeds(copy);
  content_->value.s = copy;
}

void TIVariable::vGetStatus(char* buffer, int size) const {
  if (!buffer || size <= 0) return;
  char own[1024] = {};
  if (class_ && class_->getStatusFunction()) class_->getStatusFunction()(this, own, sizeof own);
  std::snprintf(buffer, static_cast<std::size_t>(size), "Klasse: %s\r\nReferenzen: %u\r\n%s",
                class_ ? class_->getName().c_str() : "", content_->uReference, own);
}
