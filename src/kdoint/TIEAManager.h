// The interpreter's input and output: the input stack, the output file that
// another party reads while it grows, the error file, and the macro recorder.
//
// Errors: 0xe312003a/0xe312003b (101) input used before openInput,
// 0xe312003c (102) output used before openOutput, 0xe3720038 (105) output
// opened twice, 0xe5020084 (10d) recording already on, 0xe5020085 (10e)
// recording not on, 0xe762008c (110) and 0xe762008d (111) recording started
// or ended anywhere but from the input file itself (stack depth 1).
#pragma once

#include "kdoint/TIFile.h"
#include "kdoint/TIFileReadStack.h"

class TIEAManager {
 public:
  TIEAManager() = default;
  ~TIEAManager();
  TIEAManager(const TIEAManager&) = delete;
  TIEAManager& operator=(const TIEAManager&) = delete;

  // Pushes a file on the input stack (creating the stack at the first call).
  void openInput(const char* name, bool bDeleteWhenPopped, bool bExisting);
  void rewindInput();
  // Opens the output file for shared appending (it need not be new).
  void openOutput(const char* name);
  // Drops a recorded error and sends the error chains to `name`.
  void openError(const char* name);
  bool isInput();
  void readInput(char* line, char* fileName, int* lineNumber);
  // Writes unless output is silent; a null text is written as "(Null)".
  void writeOutput(const char* text);
  void silentOutput(bool on) { silent_ = on; }
  bool bIsSilentOutput() const { return silent_; }
  // Starts recording into `name`, a new file (`bReplace` deletes an old one
  // first; else an existing file is refused with 109).
  void recordMacro(const char* name, bool bReplace);
  void endMacro();
  bool bIsRecording() const { return recorder_ != nullptr; }
  void write2Macro(const char* text);
  unsigned uGetInputDepth() const { return input_ ? input_->getSize() : 0; }
  TIFileReadStack* pGetInput() const { return input_; }

 private:
  TIFileReadStack* input_ = nullptr;
  TIFileWrite* output_ = nullptr;
  void* reserved_ = nullptr;
  TIFileWrite* recorder_ = nullptr;
  bool silent_ = false;
};
