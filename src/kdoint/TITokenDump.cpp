#include "kdoint/TITokenDump.h"

#include <cstdio>

#include "kdoint/TIFileReadStack.h"
#include "kdoint/TIPraeprozessor.h"
#include "kdoint/TIToken.h"
#include "kxexception/KxError.h"

std::string sDumpTokens(TIFileReadStack& stack) {
  std::string out;
  TIPraeprozessor pre;
  TITokenLine tokens;
  char line[1024 + 3];
  char file[260];
  int number = 0;
  while (stack.isLine()) {
    stack.read(line, file, &number);
    std::string name = file;
    const auto slash = name.find_last_of('/');
    if (slash != std::string::npos) name = name.substr(slash + 1);
    char head[320];
    std::snprintf(head, sizeof head, "%s:%d:", name.c_str(), number);
    out += head;
    try {
      pre.processLine(line);
      tokens.nextLine(line, false);
      for (unsigned i = 0; i < tokens.getSize(); ++i) {
        char text[1024];
        tokens[i].getString(text);
        char item[1200];
        std::snprintf(item, sizeof item, " %s(%d) '%s'", tokens[i].getMeaningAsString(), tokens[i].getMeaning(), text);
        out += item;
      }
    } catch (unsigned long code) {
      char item[64];
      std::snprintf(item, sizeof item, " error 0x%08lx", code & 0xffffffffUL);
      out += item;
      kx::deleteError();
    }
    out += '\n';
  }
  return out;
}
