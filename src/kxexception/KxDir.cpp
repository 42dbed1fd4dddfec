#include "kxexception/KxDir.h"

#include <sys/stat.h>

#include <string>

namespace kx {
bool existDir(const char* path) {
  if (!path || !*path) return false;
  std::string p(path);
  for (auto& c : p)
    if (c == '\\') c = '/';
  while (p.size() > 1 && p.back() == '/') p.pop_back();
  struct stat st{};
  return ::stat(p.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}
}  // namespace kx
