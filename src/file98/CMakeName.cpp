#include "file98/CMakeName.h"

#include <sys/stat.h>

#include <cstdio>
#include <ctime>

#include "file98/KxPath.h"
#include "kxexception/KxError.h"

namespace {
constexpr int kMaxWidth = 9;  // 999999999 still fits an int

// Anything by that name, also a file where a directory is meant.
bool exists(std::string p) {
  while (p.size() > 1 && p.back() == '/') p.pop_back();
  struct stat st{};
  return ::stat(p.c_str(), &st) == 0;
}

std::string stamp(const char* format) {
  const std::time_t now = std::time(nullptr);
  std::tm tm{};
  localtime_r(&now, &tm);
  char buf[32];
  std::strftime(buf, sizeof buf, format, &tm);
  return buf;
}
}  // namespace

CMakeName::CMakeName() { SetTemplate(""); }

CMakeName::CMakeName(const char* tmpl) { SetTemplate(tmpl); }

void CMakeName::SetTemplate(const char* tmpl) {
  template_ = kx::sToSlash(tmpl);
  kx::splitFileName(template_.c_str(), dirPart_, kx::eFileDrive | kx::eFileDir);
  kx::splitFileName(template_.c_str(), filePart_, kx::eFileName | kx::eFileExt);
  aFrom_ = xFrom_ = 0;
  aTo_ = _iMaxOf(dirPart_);
  xTo_ = _iMaxOf(filePart_);
  a_ = x_ = -1;
  InitDate();
  InitTime();
}

int CMakeName::_iMaxOf(const std::string& part) {
  size_t run = 0, longest = 0;
  for (char c : part) {
    run = c == '#' ? run + 1 : 0;
    if (run > longest) longest = run;
  }
  int max = 0;
  for (size_t i = 0; i < longest && i < static_cast<size_t>(kMaxWidth); ++i) max = max * 10 + 9;
  return max;
}

std::string CMakeName::_sExpand(const std::string& part, int counter, const std::string& date, const std::string& time) {
  std::string out;
  for (size_t i = 0; i < part.size();) {
    if (part[i] == '#') {
      size_t n = 0;
      while (i + n < part.size() && part[i + n] == '#') ++n;
      char buf[32];
      std::snprintf(buf, sizeof buf, "%0*d", static_cast<int>(n < 30 ? n : 30), counter);
      out += buf;
      i += n;
    } else if (part[i] == '$' && i + 1 < part.size() && (part[i + 1] == 'D' || part[i + 1] == 'T')) {
      out += part[i + 1] == 'D' ? date : time;
      i += 2;
    } else {
      out += part[i++];
    }
  }
  return out;
}

void CMakeName::SetFromToX(int from, int to) {
  xFrom_ = from < 0 ? 0 : from;
  xTo_ = to;
  x_ = -1;
}

void CMakeName::SetFromToA(int from, int to) {
  aFrom_ = from < 0 ? 0 : from;
  aTo_ = to;
  a_ = -1;
  x_ = -1;
}

void CMakeName::InitDate() { date_ = stamp("%Y%m%d"); }
void CMakeName::InitTime() { time_ = stamp("%H%M%S"); }

std::string CMakeName::MakePath(int a, int x) const {
  return _sExpand(dirPart_, a, date_, time_) + _sExpand(filePart_, x, date_, time_);
}

bool CMakeName::_bDirNext(bool skipExisting) {
  long long a = a_ < 0 ? aFrom_ : static_cast<long long>(a_) + 1;
  while (a <= aTo_ && skipExisting && exists(_sExpand(dirPart_, static_cast<int>(a), date_, time_))) ++a;
  if (a > aTo_) return false;
  a_ = static_cast<int>(a);
  x_ = -1;
  return true;
}

std::string CMakeName::NextDirectory() {
  if (!_bDirNext(false)) return {};
  return _sExpand(dirPart_, a_, date_, time_);
}

std::string CMakeName::NextDirectoryAdd() {
  KX_TRY {
    if (!_bDirNext(true)) return {};
    const std::string dir = _sExpand(dirPart_, a_, date_, time_);
    if (!dir.empty()) kx::makeDir(dir.c_str());
    return dir;
  }
  KX_CATCH
}

std::string CMakeName::NextFileName() {
  if (a_ < 0) {
    if (aFrom_ > aTo_) return {};
    a_ = aFrom_;
  }
  long long x = x_ < 0 ? xFrom_ : static_cast<long long>(x_) + 1;
  while (x <= xTo_ && exists(MakePath(a_, static_cast<int>(x)))) ++x;
  if (x > xTo_) {
    x_ = xTo_;
    return {};
  }
  x_ = static_cast<int>(x);
  return MakePath(a_, x_);
}
