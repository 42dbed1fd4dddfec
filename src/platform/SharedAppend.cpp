#include "platform/SharedAppend.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace kx::platform {

std::size_t writeAll(int fd, const char* text, std::size_t size, bool append, int& error) {
  error = 0;
  struct flock lock{};
  if (append) {
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_END;
    lock.l_start = 0;
    lock.l_len = static_cast<off_t>(size);
    while (::fcntl(fd, F_SETLKW, &lock) != 0 && errno == EINTR) {
    }
    ::lseek(fd, 0, SEEK_END);
  }
  std::size_t done = 0;
  while (done < size) {
    const ssize_t n = ::write(fd, text + done, size - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      error = n < 0 ? errno : 0;
      break;
    }
    done += static_cast<std::size_t>(n);
  }
  if (append) {
    lock.l_type = F_UNLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0;
    lock.l_len = 0;
    ::fcntl(fd, F_SETLK, &lock);
  }
  return done;
}

}  // namespace kx::platform
