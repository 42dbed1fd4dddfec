// The stack of files the interpreter reads its lines from. The bottom is the
// input file that another party keeps appending to; every block, macro and
// procedure call that runs is one more file on top. A file that has no more
// lines is popped (never the bottom one), and each pop is followed by exactly
// one synthetic line "endPlayMacro()\r\n" from "FileReadStack", line -1,
// which is how the interpreter counts its nesting down.
//
// Errors: isLine with depth 0 0xe502000c, read with depth 0 0xe502000d (10c).
#pragma once

#include <vector>

#include "kdoint/TIFile.h"

class TIFileReadStack {
 public:
  TIFileReadStack() = default;
  ~TIFileReadStack();
  TIFileReadStack(const TIFileReadStack&) = delete;
  TIFileReadStack& operator=(const TIFileReadStack&) = delete;

  // Pushes `name`, opened as new unless `bExisting`, with a 256-byte buffer.
  void open(const char* name, bool bDeleteWhenPopped, bool bExisting);
  // Closes the top file (not deleting it) and opens it again from its start.
  void rewind();
  bool isLine();
  void read(char* line, char* fileName, int* lineNumber);
  unsigned getSize() const { return depth_; }
  // The name of file i, counted from the bottom (0).
  const char* cpGetFileName(unsigned i) const { return i < depth_ ? files_[i]->getFileName() : ""; }

 private:
  unsigned depth_ = 0;
  std::vector<TIFileRead*> files_;
  std::vector<bool> deleteWhenPopped_;
  bool pendingEnd_ = false;
};
