#include "KdoFrontEnd/CPipe.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/SharedAppend.h"

CPipe::~CPipe() {
  if (fd_ >= 0) ::close(fd_);
}

bool CPipe::Open(const char* name, int access, bool bNew) {
  if (error_) return false;
  name_ = name ? name : "";
  const int fd = ::open(name_.c_str(), (access == eWrite ? O_WRONLY : O_RDONLY) | O_CREAT | O_CLOEXEC, 0666);
  if (fd < 0) {
    error_ = errno ? errno : EIO;
    return false;
  }
  struct stat st{};
  if (::fstat(fd, &st) != 0 || (bNew && st.st_size > 0)) {
    ::close(fd);
    error_ = EEXIST;
    return false;
  }
  fd_ = fd;
  return true;
}

void CPipe::Close(bool bDelete) {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  if (bDelete && !name_.empty()) ::unlink(name_.c_str());
}

long CPipe::getFileSize() const {
  struct stat st{};
  return fd_ >= 0 && ::fstat(fd_, &st) == 0 ? static_cast<long>(st.st_size) : 0;
}

void CPipe::gotoEndOfFile() {
  if (!error_ && fd_ >= 0) ::lseek(fd_, 0, SEEK_END);
}

bool CPipeServer::Read(char* buffer, std::size_t count, std::size_t* bytesRead) {
  if (bytesRead) *bytesRead = 0;
  if (error_ || fd_ < 0) return false;
  ssize_t n;
  do n = ::read(fd_, buffer, count);
  while (n < 0 && errno == EINTR);
  if (n < 0) {
    error_ = errno;
    return false;
  }
  if (bytesRead) *bytesRead = static_cast<std::size_t>(n);
  return true;
}

bool CPipeClient::Write(const char* buffer, std::size_t count, bool bAppend) {
  if (error_ || fd_ < 0) return false;
  int err = 0;
  const std::size_t done = kx::platform::writeAll(fd_, buffer, count, bAppend, err);
  if (done < count) error_ = err ? err : EIO;
  return error_ == 0;
}
