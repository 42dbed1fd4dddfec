#include "kdoint/TITrace.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "kdoint/TIEAManager.h"

namespace {
TIEAManager* gManager = nullptr;
}

void TITrace::openTrace(TIEAManager* manager) { gManager = manager; }

void TITrace::trace(const char* file, int line, const char* format, ...) {
  if (!gManager) return;
  // Name and extension of the source, without its directories.
  std::string path = file ? file : "";
  const auto slash = path.find_last_of("/\\");
  const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
  const auto dot = base.find_last_of('.');
  const std::string name = dot == std::string::npos ? base : base.substr(0, dot);
  const std::string ext = dot == std::string::npos ? std::string() : base.substr(dot);
  char head[512];
  std::snprintf(head, sizeof head, "Trace %15s%s %4d: ", name.c_str(), ext.c_str(), line);
  std::string text = head;
  if (format) {
    va_list ap;
    va_start(ap, format);
    char buf[2048];
    std::vsnprintf(buf, sizeof buf, format, ap);
    va_end(ap);
    text += buf;
  }
  if (text.empty() || text.back() != '\n') text += "\r\n";
  gManager->writeOutput(text.c_str());
}
