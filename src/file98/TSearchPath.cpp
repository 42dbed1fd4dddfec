#include "file98/TSearchPath.h"

#include <sys/stat.h>

#include <algorithm>

#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "kxexception/KxError.h"

namespace {
// '/' form without trailing '/' (the root stays "/").
std::string plainDir(const char* path) {
  std::string p = kx::sToSlash(path);
  while (p.size() > 1 && p.back() == '/') p.pop_back();
  return p;
}

bool equalNoCase(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    auto l = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; };
    return l(x) == l(y);
  });
}
}  // namespace

TSearchPath::TSearchPath() : programDir_(plainDir(kx::sGetProgramDir().c_str())) {}

void TSearchPath::vSetProgramDir(const char* dir) { programDir_ = plainDir(dir); }

bool TSearchPath::bInsert(const char* path, int count) {
  std::string dir = plainDir(path);
  for (int round = 0; round < count; ++round) {
    if (dir.find('/') == std::string::npos) return true;
    if (!kx::existDir(dir.c_str())) return false;
    if (std::find(dirs_.begin(), dirs_.end(), dir) != dirs_.end()) return true;
    dirs_.insert(dirs_.begin() + std::min<size_t>(static_cast<size_t>(round), dirs_.size()), dir);
    if (dir == programDir_) return true;
    const size_t s = dir.rfind('/');
    dir.erase(s);  // "/a" becomes "": the root itself is never entered
  }
  return true;
}

const std::string& TSearchPath::operator[](int i) const {
  KX_TRY {
    if (i < 0 || static_cast<size_t>(i) >= dirs_.size())
      KX_THROW(kx::file98::ulSearchPathIndex, "Index %d, size %zu", i, dirs_.size());
    return dirs_[static_cast<size_t>(i)];
  }
  KX_CATCH
}

std::string TSearchPath::sGetSearchPaths() const {
  std::string out;
  for (const auto& d : dirs_) {
    if (!out.empty()) out += ';';
    out += d;
  }
  return out;
}

std::string TSearchPath::_sFind(const char* file, size_t from) const {
  if (!file || !*file) return {};
  for (size_t i = from; i < dirs_.size(); ++i) {
    const std::string path = kx::sToSlash(kx::fnmerge("", dirs_[i].c_str(), file, "").c_str());
    struct stat st{};
    if (::stat(path.c_str(), &st) == 0 && !S_ISDIR(st.st_mode))
      return dirs_[i] == "/" ? dirs_[i] : dirs_[i] + "/";
  }
  return {};
}

std::string TSearchPath::sGetDir(const char* file) const { return _sFind(file, 0); }

std::string TSearchPath::sGetPreviousDir(const char* file, const char* dir) const {
  std::string after = kx::sToSlash(dir);
  if (after.empty()) return {};
  if (after.back() != '/') after += '/';
  for (size_t i = 0; i < dirs_.size(); ++i)
    if (equalNoCase(dirs_[i] == "/" ? dirs_[i] : dirs_[i] + "/", after)) return _sFind(file, i + 1);
  return {};
}

std::string TSearchPath::sGetPath(const char* file) const {
  const std::string dir = _sFind(file, 0);
  return dir.empty() ? dir : dir + kx::sToSlash(file);
}
