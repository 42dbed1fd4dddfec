#include "KdoFrontEnd/TNamedPipe.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

bool TNamedPipe::bOpen(const char* name) {
  bClose();
  name_ = name ? name : "";
  struct stat st{};
  if (::lstat(name_.c_str(), &st) != 0) {
    if (errno != ENOENT || ::mkfifo(name_.c_str(), 0600) != 0) return false;
  } else if (!S_ISFIFO(st.st_mode)) {
    errno = EEXIST;
    return false;
  }
  fd_ = ::open(name_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  return fd_ >= 0;
}

bool TNamedPipe::bRead(char* buffer, std::size_t count, std::size_t* bytesRead) {
  if (bytesRead) *bytesRead = 0;
  if (fd_ < 0) return false;
  ssize_t n;
  do n = ::read(fd_, buffer, count);
  while (n < 0 && errno == EINTR);
  if (n < 0) return errno == EAGAIN || errno == EWOULDBLOCK;
  if (bytesRead) *bytesRead = static_cast<std::size_t>(n);
  return true;
}

bool TNamedPipe::bWrite(const char* buffer, std::size_t count) {
  if (fd_ < 0) return false;
  std::size_t done = 0;
  while (done < count) {
    const ssize_t n = ::write(fd_, buffer + done, count - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

bool TNamedPipe::bClose() {
  if (fd_ < 0) return true;
  const bool ok = ::close(fd_) == 0;
  fd_ = -1;
  return ok;
}
