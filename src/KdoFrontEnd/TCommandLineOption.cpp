#include "KdoFrontEnd/TCommandLineOption.h"

#include <cstring>

TCommandLineOption::TCommandLineOption(int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    const char* a = argv[i];
    if (!a || a[0] != '-' || std::strlen(a) < 2) continue;
    const char* eq = std::strchr(a, '=');
    if (eq)
      options_.emplace_back(std::string(a + 1, eq), std::string(eq + 1));
    else
      options_.emplace_back(std::string(a + 1), std::string());
  }
}

bool TCommandLineOption::isOption(const char* name) const {
  for (const auto& o : options_)
    if (o.first == name) return true;
  return false;
}

std::string TCommandLineOption::value(const char* name) const {
  for (const auto& o : options_)
    if (o.first == name) return o.second;
  return std::string();
}
