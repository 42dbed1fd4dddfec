#include "KdoFrontEnd/CPipe.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

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
  struct flock lock{};
  if (bAppend) {
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_END;
    lock.l_len = static_cast<off_t>(count);
    while (::fcntl(fd_, F_SETLKW, &lock) != 0 && errno == EINTR) {
    }
    ::lseek(fd_, 0, SEEK_END);
  }
  std::size_t done = 0;
  while (done < count) {
    const ssize_t n = ::write(fd_, buffer + done, count - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      error_ = n < 0 ? errno : EIO;
      break;
    }
    done += static_cast<std::size_t>(n);
  }
  if (bAppend) {
    lock.l_type = F_UNLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0;
    lock.l_len = 0;
    ::fcntl(fd_, F_SETLK, &lock);
  }
  return error_ == 0;
}
