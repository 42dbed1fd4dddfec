#include "file98/TLoopDir.h"

#include <fnmatch.h>

#include <algorithm>
#include <filesystem>

#include "file98/KxPath.h"

namespace fs = std::filesystem;

namespace {
// The entries of `dir` in name order: files (by their target, so a link to a
// file counts) or, with `dirs`, real directories (links are not followed).
std::vector<std::string> entries(const std::string& dir, bool dirs) {
  std::vector<std::string> names;
  std::error_code ec;
  fs::directory_iterator it(dir.empty() ? fs::path(".") : fs::path(dir), ec), end;
  for (; !ec && it != end; it.increment(ec)) {
    std::error_code ec2;
    const bool isDir = dirs ? it->is_directory(ec2) && !it->is_symlink(ec2) : false;
    const bool isFile = !dirs && !it->is_directory(ec2) && it->exists(ec2);
    if (isDir || isFile) names.push_back(it->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string join(const std::string& dir, const std::string& name) {
  if (dir.empty()) return name;
  return dir.back() == '/' ? dir + name : dir + "/" + name;
}
}  // namespace

bool TLoopDir::bMatch(const char* name, const char* pattern) {
  if (!name) return false;
  if (!pattern || !*pattern) return true;
  const std::string all(pattern);
  size_t pos = 0;
  while (pos <= all.size()) {
    size_t end = all.find(';', pos);
    if (end == std::string::npos) end = all.size();
    const std::string one = all.substr(pos, end - pos);
    pos = end + 1;
    if (one.empty()) continue;
    if (one == "*.*" || ::fnmatch(one.c_str(), name, FNM_CASEFOLD) == 0) return true;
  }
  return false;
}

void TLoopDir::vLoop(const char* start, const char* pattern, std::vector<std::string>& files) {
  files.clear();
  std::string dir = kx::sToSlash(start);
  while (dir.size() > 1 && dir.back() == '/') dir.pop_back();
  if (dir.empty()) dir.push_back('.');
  vLoopCurrentDir(dir, pattern, files);
  vLoopSubDir(dir, pattern, files);
}

void TLoopDir::vLoopCurrentDir(const std::string& dir, const char* pattern, std::vector<std::string>& files) {
  for (const auto& name : entries(dir, false))
    if (bMatch(name.c_str(), pattern)) files.push_back(join(dir, name));
}

void TLoopDir::vLoopSubDir(const std::string& dir, const char* pattern, std::vector<std::string>& files) {
  for (const auto& name : entries(dir, true)) {
    const std::string sub = join(dir, name);
    vLoopCurrentDir(sub, pattern, files);
    vLoopSubDir(sub, pattern, files);
  }
}
