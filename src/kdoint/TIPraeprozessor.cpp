#include "kdoint/TIPraeprozessor.h"

namespace {
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }
}  // namespace

void TIPraeprozessor::processLine(char* line) {
  if (!line) return;
  char* p = line;
  while (*p && isBlank(*p)) ++p;
  if (!*p) return;
  if (*p == '#') {
    p[0] = '\n';
    p[1] = '\0';
    return;
  }
  bool inString = false;
  for (; *p; ++p) {
    if (*p == '"') {
      inString = !inString;
    } else if (*p == '/') {
      if (!inString && p[1] == '/') {
        p[0] = '\n';
        p[1] = '\0';
        return;
      }
      inString = !inString;
    } else if (*p == ';' && !inString) {
      *p = '\n';
    }
  }
}
