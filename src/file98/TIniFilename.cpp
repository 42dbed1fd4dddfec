#include "file98/TIniFilename.h"

#include <sys/stat.h>

#include "file98/KxPath.h"

TIniFilename::TIniFilename(const char* name) : name_(kx::sToSlash(name)) {}

bool TIniFilename::bExists() const {
  struct stat st{};
  return !name_.empty() && ::stat(name_.c_str(), &st) == 0 && !S_ISDIR(st.st_mode);
}
