#include "kdoint/TIFileReadStack.h"

#include <cstring>
#include <memory>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIMessage.h"
#include "kxexception/KxError.h"

using namespace kdoint;

namespace {
constexpr unsigned uLineBuffer = 256;
}

TIFileReadStack::~TIFileReadStack() {
  for (unsigned i = depth_; i > 0; --i) {
    TIFileRead* f = files_[i - 1];
    try {
      if (f->isOpen()) f->close(deleteWhenPopped_[i - 1]);
    } catch (unsigned long) {
      kx::deleteError();
    }
    delete f;
  }
}

void TIFileReadStack::open(const char* name, bool bDeleteWhenPopped, bool bExisting) {
  KX_TRY {
    auto f = std::make_unique<TIFileRead>(name);
    f->open(!bExisting, uLineBuffer);
    files_.push_back(f.release());
    deleteWhenPopped_.push_back(bDeleteWhenPopped);
    ++depth_;
  }
  KX_CATCH
}

void TIFileReadStack::rewind() {
  KX_TRY {
    if (depth_ == 0) KX_THROW(ulStackIsLineEmpty, "%s", TIMessage::getString(0x10c));
    TIFileRead* top = files_[depth_ - 1];
    top->close(false);
    top->open(false, uLineBuffer);
  }
  KX_CATCH
}

bool TIFileReadStack::isLine() {
  KX_TRY {
    if (depth_ == 0) KX_THROW(ulStackIsLineEmpty, "%s", TIMessage::getString(0x10c));
    for (;;) {
      if (files_[depth_ - 1]->isLine() || pendingEnd_) return true;
      if (depth_ == 1) return false;
      TIFileRead* top = files_[depth_ - 1];
      const bool del = deleteWhenPopped_[depth_ - 1];
      files_.pop_back();
      deleteWhenPopped_.pop_back();
      --depth_;
      pendingEnd_ = true;
      std::unique_ptr<TIFileRead> gone(top);
      gone->close(del);
    }
  }
  KX_CATCH
}

void TIFileReadStack::read(char* line, char* fileName, int* lineNumber) {
  KX_TRY {
    if (depth_ == 0) KX_THROW(ulStackReadEmpty, "%s", TIMessage::getString(0x10c));
    if (pendingEnd_) {
      pendingEnd_ = false;
      std::strcpy(line, "endPlayMacro()\r\n");
      if (fileName) std::strcpy(fileName, "FileReadStack");
      if (lineNumber) *lineNumber = -1;
      return;
    }
    files_[depth_ - 1]->read(line, fileName, lineNumber);
  }
  KX_CATCH
}
