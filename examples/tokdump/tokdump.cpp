// tokdump: plays macros through the interpreter's input stack and prints each
// line's tokens with their codes.
//   tokdump FILE [FILE...]   the first file is the bottom of the stack, the
//                            last the top: lines come from the top first, and
//                            every popped file is followed by its
//                            "endPlayMacro()" line.
#include <cstdio>

#include "kdoint/TIFileReadStack.h"
#include "kdoint/TITokenDump.h"
#include "kxexception/KxError.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: tokdump FILE [FILE...]\n");
    return 2;
  }
  try {
    TIFileReadStack stack;
    for (int i = 1; i < argc; ++i) stack.open(argv[i], false, true);
    std::fputs(sDumpTokens(stack).c_str(), stdout);
  } catch (unsigned long) {
    std::fputs(kx::formatErrorChain().c_str(), stderr);
    return 1;
  }
  return 0;
}
