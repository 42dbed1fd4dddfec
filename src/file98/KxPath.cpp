#include "file98/KxPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include "file98/File98Errors.h"
#include "kxexception/KxError.h"
#include "platform/Clock.h"

namespace kx {
namespace {

bool isSep(char c) { return c == '/' || c == '\\'; }
bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
char lowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (lowerAscii(a[i]) != lowerAscii(b[i])) return false;
  return true;
}

// Length of the drive "X:" at the start, 0 if there is none.
size_t driveLength(std::string_view p) { return (p.size() >= 2 && isAsciiLetter(p[0]) && p[1] == ':') ? 2 : 0; }

// An existing entry that is not a directory.
bool existFile(const std::string& p) {
  struct stat st{};
  return ::stat(p.c_str(), &st) == 0 && !S_ISDIR(st.st_mode);
}

// The segments of a '/' path with "." dropped and ".." resolved; above the
// root of an absolute path ".." is dropped, in a relative one it is kept.
std::vector<std::string> normalSegments(std::string_view p, bool absolute) {
  std::vector<std::string> segs;
  size_t pos = 0;
  while (pos <= p.size()) {
    size_t next = p.find('/', pos);
    if (next == std::string_view::npos) next = p.size();
    std::string_view s = p.substr(pos, next - pos);
    pos = next + 1;
    if (s.empty() || s == ".") continue;
    if (s == "..") {
      if (!segs.empty() && segs.back() != "..")
        segs.pop_back();
      else if (!absolute)
        segs.emplace_back("..");
      continue;
    }
    segs.emplace_back(s);
  }
  return segs;
}

// A directory in '/' form with "." and ".." resolved, ending in '/' unless empty.
std::string normalDir(const std::string& dir) {
  const bool absolute = !dir.empty() && dir[0] == '/';
  std::string out = absolute ? "/" : "";
  for (const auto& s : normalSegments(dir, absolute)) {
    out += s;
    out += '/';
  }
  return out;
}

std::string currentDir() {
  std::error_code ec;
  auto p = std::filesystem::current_path(ec);
  return ec ? std::string() : p.string();
}

std::mutex& commandLineMutex() {
  static std::mutex m;
  return m;
}
std::optional<std::vector<std::string>>& commandLine() {
  static std::optional<std::vector<std::string>> args;
  return args;
}

std::vector<std::string> processArguments() {
  std::ifstream in("/proc/self/cmdline", std::ios::binary);
  std::string all((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::vector<std::string> args;
  size_t pos = 0;
  while (pos < all.size()) {
    size_t end = all.find('\0', pos);
    if (end == std::string::npos) end = all.size();
    args.emplace_back(all.substr(pos, end - pos));
    pos = end + 1;
  }
  return args;
}

}  // namespace

std::string sToSlash(const char* path) {
  std::string p = path ? path : "";
  for (auto& c : p)
    if (c == '\\') c = '/';
  return p;
}

void fnsplit(const char* path, std::string& drive, std::string& dir, std::string& name, std::string& ext) {
  drive.clear();
  dir.clear();
  name.clear();
  ext.clear();
  if (!path) return;
  std::string_view p(path);
  const size_t d = driveLength(p);
  drive = p.substr(0, d);
  p.remove_prefix(d);
  std::string_view file = p;
  const size_t sep = p.find_last_of("/\\");
  if (sep != std::string_view::npos) {
    dir = p.substr(0, sep + 1);
    file = p.substr(sep + 1);
  }
  const size_t dot = file.rfind('.');
  if (file.find_first_not_of('.') == std::string_view::npos || dot == std::string_view::npos || dot == 0) {
    name = file;
    return;
  }
  name = file.substr(0, dot);
  ext = file.substr(dot);
}

std::string fnmerge(const char* drive, const char* dir, const char* name, const char* ext) {
  std::string out = drive ? drive : "";
  const std::string d = dir ? dir : "";
  const std::string n = name ? name : "";
  const std::string e = ext ? ext : "";
  out += d;
  if (!d.empty() && !isSep(d.back()) && !n.empty()) out += '/';
  out += n;
  if (!e.empty() && e[0] != '.') out += '.';
  out += e;
  return out;
}

void makeDir(const char* path) {
  KX_TRY {
    using namespace file98;
    if (!path || !*path) KX_THROW(ulMakeDirMissing, "makeDir: no path given");
    const std::string p = sToSlash(path);
    size_t pos = p[0] == '/' ? p.find_first_not_of('/') : 0;
    while (pos != std::string::npos && pos < p.size()) {
      const size_t next = p.find('/', pos);
      const std::string prefix = p.substr(0, next);
      pos = next == std::string::npos ? next : p.find_first_not_of('/', next);
      struct stat st{};
      if (::stat(prefix.c_str(), &st) == 0) {
        if (!S_ISDIR(st.st_mode)) KX_THROW(ulMakeDirNotDir, "%s: \"%s\" is no directory", path, prefix.c_str());
        continue;
      }
      const int err = errno;
      if (err != ENOENT) KX_THROW(ulMakeDirStat, "%s: \"%s\": %s", path, prefix.c_str(), std::strerror(err));
      if (::mkdir(prefix.c_str(), 0777) != 0) {
        const int mkErr = errno;
        if (mkErr != EEXIST || !existDir(prefix.c_str()))
          KX_THROW(ulMakeDirCreate, "%s: \"%s\": %s", path, prefix.c_str(), std::strerror(mkErr));
      }
    }
    if (!existDir(p.c_str())) KX_THROW(ulMakeDirMissing, "%s", path);
  }
  KX_CATCH
}

void changeDir(const char* path) {
  KX_TRY {
    if (!path || !*path) KX_THROW(file98::ulChangeDir, "changeDir: no path given");
    std::string p = sToSlash(path);
    while (p.size() > 1 && p.back() == '/') p.pop_back();
    if (::chdir(p.c_str()) != 0) {
      const int err = errno;
      KX_THROW(file98::ulChangeDir, "%s: %s", path, std::strerror(err));
    }
  }
  KX_CATCH
}

bool bRemoveDirectory(const char* path) {
  if (!path || !*path || !existDir(path)) return false;
  namespace fs = std::filesystem;
  const fs::path p(sToSlash(path));
  // Never the root, the current directory or one above it: remove_all would
  // empty them before failing on the name itself.
  std::string norm = p.lexically_normal().generic_string();
  while (norm.size() > 1 && norm.back() == '/') norm.pop_back();
  if (norm.empty() || norm == "/" || norm == "." || norm == ".." ||
      (norm.size() >= 3 && norm.compare(norm.size() - 3, 3, "/..") == 0))
    return false;
  std::error_code ec;
  fs::remove_all(p, ec);
  return !ec && !fs::exists(fs::symlink_status(p, ec));
}

bool bDirWriteable(const char* path) {
  if (!path || !*path || !existDir(path)) return false;
  std::string probe = sToSlash(path);
  if (probe.back() != '/') probe += '/';
  probe += ".kxprobeXXXXXX";
  const int fd = ::mkstemp(probe.data());
  if (fd < 0) return false;
  ::close(fd);
  ::unlink(probe.c_str());
  return true;
}

bool bFileWriteable(const char* path) {
  if (!path || !*path) return false;
  const std::string p = sToSlash(path);
  struct stat st{};
  if (::stat(p.c_str(), &st) == 0) {
    if (S_ISDIR(st.st_mode)) return false;
    const int fd = ::open(p.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return false;
    ::close(fd);
    return true;
  }
  if (errno != ENOENT) return false;
  std::string dir;
  splitFileName(p.c_str(), dir, eFileDrive | eFileDir);
  return bDirWriteable(dir.empty() ? "." : dir.c_str());
}

void vSetCommandLine(int argc, const char* const* argv) {
  std::vector<std::string> args;
  for (int i = 0; argv && i < argc; ++i) args.emplace_back(argv[i] ? argv[i] : "");
  std::lock_guard lock(commandLineMutex());
  commandLine() = std::move(args);
}

bool bFileInCommandline(const char* extension, std::string& file) {
  if (!extension) return false;
  std::string want = extension;
  if (want.empty()) return false;
  if (want[0] != '.') want.insert(want.begin(), '.');
  std::vector<std::string> args;
  {
    std::lock_guard lock(commandLineMutex());
    args = commandLine() ? *commandLine() : processArguments();
  }
  for (size_t i = 1; i < args.size(); ++i) {
    if (args[i].empty() || args[i][0] == '-') continue;
    std::string ext;
    splitFileName(args[i].c_str(), ext, eFileExt);
    if (equalNoCase(ext, want)) {
      file = sToSlash(args[i].c_str());
      return true;
    }
  }
  return false;
}

bool bFindPathForFile(const char* file, const char* startPath, std::string& foundPath) {
  foundPath.clear();
  if (!file || !*file || !startPath || !*startPath) return false;
  const std::string start(startPath);
  const bool backslash = start.find('\\') != std::string::npos;
  std::string dir = sToSlash(startPath);
  const bool trailing = dir.back() == '/';
  if (!trailing) dir += '/';
  const std::string name = sToSlash(file);
  for (;;) {
    if (existFile(dir + name)) break;
    // Cut the last directory, keeping the '/' before it. Every round makes
    // the text shorter, so the walk ends.
    std::string up = dir;
    while (!up.empty() && up.back() == '/') up.pop_back();
    const size_t s = up.rfind('/');
    if (s == std::string::npos) return false;
    dir = up.substr(0, s + 1);
  }
  if (!trailing && dir.size() > 1) dir.pop_back();
  if (backslash)
    for (auto& c : dir)
      if (c == '/') c = '\\';
  foundPath = dir;
  return true;
}

void splitFileName(const char* path, std::string& buffer, int parts) {
  std::string drive, dir, name, ext;
  fnsplit(path, drive, dir, name, ext);
  buffer.clear();
  if (parts & eFileDrive) buffer += drive;
  if (parts & eFileDir) buffer += dir;
  if (parts & eFileName) buffer += name;
  if (parts & eFileExt) buffer += ext;
}

void vCombineFileName(const char* a, const char* b, std::string& buffer, int partsA, int partsB) {
  std::string da, pa, na, ea, db, pb, nb, eb;
  fnsplit(a, da, pa, na, ea);
  fnsplit(b, db, pb, nb, eb);
  auto mask = [](int parts, std::string& d, std::string& p, std::string& n, std::string& e) {
    if (!(parts & eFileDrive)) d.clear();
    if (!(parts & eFileDir)) p.clear();
    if (!(parts & eFileName)) n.clear();
    if (!(parts & eFileExt)) e.clear();
    p = sToSlash(p.c_str());
  };
  mask(partsA, da, pa, na, ea);
  mask(partsB, db, pb, nb, eb);
  const bool bAnchored = !db.empty() || (!pb.empty() && pb[0] == '/');
  const std::string dir = normalDir(bAnchored ? pb : pa + pb);
  buffer = (db.empty() ? da : db) + dir + (nb.empty() ? na : nb) + (eb.empty() ? ea : eb);
}

void vRelativePathName(const char* base, const char* path, std::string& buffer) {
  auto absolute = [](const char* in) {
    std::string p = sToSlash(in);
    if (driveLength(p) == 0 && (p.empty() || p[0] != '/')) p = currentDir() + "/" + p;
    return p;
  };
  const std::string b = absolute(base);
  const std::string p = absolute(path);
  const size_t db = driveLength(b), dp = driveLength(p);
  if (!equalNoCase(std::string_view(b).substr(0, db), std::string_view(p).substr(0, dp))) {
    buffer = p;
    return;
  }
  const auto bs = normalSegments(std::string_view(b).substr(db), true);
  const auto ps = normalSegments(std::string_view(p).substr(dp), true);
  size_t common = 0;
  while (common < bs.size() && common < ps.size() && bs[common] == ps[common]) ++common;
  std::string out;
  for (size_t i = common; i < bs.size(); ++i) out += out.empty() ? ".." : "/..";
  for (size_t i = common; i < ps.size(); ++i) {
    if (!out.empty()) out += '/';
    out += ps[i];
  }
  if (out.empty()) out = ".";
  if (!p.empty() && p.back() == '/') out += '/';
  buffer = out;
}

uint32_t timeGetTime() { return platform::tickCountMs(); }

std::string sGetProgramDir() {
  char buf[4096];
  const ssize_t n = ::readlink("/proc/self/exe", buf, sizeof buf - 1);
  if (n <= 0) return currentDir() + "/";
  std::string p(buf, static_cast<size_t>(n));
  const size_t pos = p.rfind('/');
  return pos == std::string::npos ? std::string("/") : p.substr(0, pos + 1);
}

}  // namespace kx

void vReduceDir(char* path) {
  if (!path) return;
  std::string drive, dir, name, ext;
  kx::fnsplit(path, drive, dir, name, ext);
  std::string d = kx::sToSlash((drive + dir).c_str());
  std::string up = d;
  while (!up.empty() && up.back() == '/') up.pop_back();
  const size_t s = up.rfind('/');
  if (s != std::string::npos) d = up.substr(0, s + 1);
  // drive and directory are a prefix of the path: the result always fits.
  std::memcpy(path, d.c_str(), d.size() + 1);
}
