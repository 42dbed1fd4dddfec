#include "kdoint/TIEAManager.h"

#include <unistd.h>

#include <memory>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIMessage.h"
#include "kxexception/KxError.h"

using namespace kdoint;

TIEAManager::~TIEAManager() {
  delete recorder_;
  delete output_;
  delete input_;
  (void)reserved_;
}

void TIEAManager::openInput(const char* name, bool bDeleteWhenPopped, bool bExisting) {
  KX_TRY {
    if (!input_) input_ = new TIFileReadStack;
    input_->open(name, bDeleteWhenPopped, bExisting);
  }
  KX_CATCH
}

void TIEAManager::rewindInput() {
  KX_TRY {
    if (!input_) KX_THROW(ulIsInputNoInput, "%s", TIMessage::getString(0x101));
    input_->rewind();
  }
  KX_CATCH
}

void TIEAManager::openOutput(const char* name) {
  KX_TRY {
    if (output_) KX_THROW(ulOutputTwice, "%s", TIMessage::getString(0x105));
    auto out = std::make_unique<TIFileWrite>(name);
    out->open(false, true);
    output_ = out.release();
  }
  KX_CATCH
}

void TIEAManager::openError(const char* name) {
  KX_TRY {
    TKxReportLastError(false);
    kx::openErrorFile(name);
  }
  KX_CATCH
}

bool TIEAManager::isInput() {
  KX_TRY {
    if (!input_) KX_THROW(ulIsInputNoInput, "%s", TIMessage::getString(0x101));
    return input_->isLine();
  }
  KX_CATCH
}

void TIEAManager::readInput(char* line, char* fileName, int* lineNumber) {
  KX_TRY {
    if (!input_) KX_THROW(ulReadInputNoInput, "%s", TIMessage::getString(0x101));
    input_->read(line, fileName, lineNumber);
  }
  KX_CATCH
}

void TIEAManager::writeOutput(const char* text) {
  KX_TRY {
    if (!output_) KX_THROW(ulWriteOutputNoOutput, "%s", TIMessage::getString(0x102));
    if (silent_) return;
    output_->write(text ? text : "(Null)");
  }
  KX_CATCH
}

void TIEAManager::recordMacro(const char* name, bool bReplace) {
  KX_TRY {
    if (recorder_) KX_THROW(ulRecordingOn, "%s", TIMessage::getString(0x10d));
    if (uGetInputDepth() != 1) KX_THROW(ulRecordStartDepth, "%s", TIMessage::getString(0x110));
    if (bReplace && name) ::unlink(name);
    // A failed start leaves no half-made recorder behind.
    auto rec = std::make_unique<TIFileWrite>(name);
    rec->open(true, false);
    recorder_ = rec.release();
  }
  KX_CATCH
}

void TIEAManager::endMacro() {
  KX_TRY {
    if (!recorder_) KX_THROW(ulRecordingOff, "%s", TIMessage::getString(0x10e));
    if (uGetInputDepth() != 1) KX_THROW(ulRecordEndDepth, "%s", TIMessage::getString(0x111));
    delete recorder_;
    recorder_ = nullptr;
  }
  KX_CATCH
}

void TIEAManager::write2Macro(const char* text) {
  KX_TRY {
    if (recorder_) recorder_->write(text);
  }
  KX_CATCH
}
