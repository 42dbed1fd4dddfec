#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace kx::platform {

namespace {

std::string dirOf(const std::string& path) {
  const auto slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return path.substr(0, slash);
}

void syncDir(const std::string& dir) {
  const int fd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  ::fsync(fd);  // best effort: some file systems refuse it for directories
  ::close(fd);
}

}  // namespace

AtomicFile::~AtomicFile() { abort(); }

bool AtomicFile::fail(const char* step, const std::string& name) {
  errno_ = errno;
  error_ = std::string(step) + " " + name + ": " + std::strerror(errno_);
  abort();
  return false;
}

bool AtomicFile::open(const std::string& path) {
  abort();
  error_.clear();
  errno_ = 0;
  path_ = path;
  const auto slash = path.find_last_of('/');
  const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
  std::string pattern = (slash == std::string::npos ? std::string() : path.substr(0, slash + 1)) + "." + base + ".XXXXXX";
  std::vector<char> buf(pattern.begin(), pattern.end());
  buf.push_back('\0');
  fd_ = ::mkostemp(buf.data(), O_CLOEXEC);
  if (fd_ < 0) return fail("create", path_);
  temp_ = buf.data();
  return true;
}

bool AtomicFile::write(const void* data, std::size_t size) {
  if (fd_ < 0) {
    errno = EBADF;
    return fail("write", path_);
  }
  const char* p = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t n = ::write(fd_, p, size);
    if (n < 0) {
      if (errno == EINTR) continue;
      return fail("write", path_);
    }
    if (n == 0) {
      errno = EIO;
      return fail("write", path_);
    }
    p += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

bool AtomicFile::commit() {
  if (fd_ < 0) {
    errno = EBADF;
    return fail("commit", path_);
  }
  struct stat st{};
  mode_t mode;
  if (::stat(path_.c_str(), &st) == 0) {
    mode = st.st_mode & 07777;
  } else {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    mode = 0666 & ~mask;
  }
  if (::fchmod(fd_, mode) != 0) return fail("chmod", temp_);
  if (::fsync(fd_) != 0) return fail("sync", path_);
  const int fd = fd_;
  fd_ = -1;
  if (::close(fd) != 0) {
    const int e = errno;
    ::unlink(temp_.c_str());
    temp_.clear();
    errno = e;
    return fail("close", path_);
  }
  if (::rename(temp_.c_str(), path_.c_str()) != 0) {
    const int e = errno;
    ::unlink(temp_.c_str());
    temp_.clear();
    errno = e;
    return fail("rename", path_);
  }
  temp_.clear();
  syncDir(dirOf(path_));
  return true;
}

void AtomicFile::abort() {
  if (fd_ >= 0) {
    ::close(fd_);
    fd_ = -1;
  }
  if (!temp_.empty()) {
    ::unlink(temp_.c_str());
    temp_.clear();
  }
}

bool writeFileAtomic(const std::string& path, std::string_view content, std::string* error) {
  AtomicFile f;
  const bool ok = f.open(path) && f.write(content) && f.commit();
  if (!ok && error) *error = f.error();
  return ok;
}

bool readWholeFile(const std::string& path, std::string& content, std::string* error) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  auto failed = [&](const char* step) {
    if (error) *error = std::string(step) + " " + path + ": " + std::strerror(errno);
    return false;
  };
  if (fd < 0) return failed("open");
  struct stat st{};
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    if (errno == 0 || S_ISREG(st.st_mode) == false) errno = EINVAL;
    ::close(fd);
    return failed("read");
  }
  content.clear();
  char buf[65536];
  for (;;) {
    const ssize_t n = ::read(fd, buf, sizeof buf);
    if (n < 0) {
      if (errno == EINTR) continue;
      const int e = errno;
      ::close(fd);
      errno = e;
      return failed("read");
    }
    if (n == 0) break;
    content.append(buf, static_cast<std::size_t>(n));
  }
  ::close(fd);
  return true;
}

}  // namespace kx::platform
