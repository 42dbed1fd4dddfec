#include "kdoint/TIFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIMessage.h"
#include "kxexception/KxError.h"

using namespace kdoint;

namespace {

// A '\' of a script or ini path never reaches the system.
void copyName(char (&to)[260], const char* from) {
  std::size_t i = 0;
  for (; from && from[i] && i + 1 < sizeof to; ++i) to[i] = from[i] == '\\' ? '/' : from[i];
  to[i] = '\0';
}

}  // namespace

// ---------------------------------------------------------------- TIFile

TIFile::TIFile() {
  KX_TRY {
    const char* dir = std::getenv("TMPDIR");
    std::string pattern = std::string(dir && *dir ? dir : "/tmp") + "/BLKXXXXXX";
    const int fd = ::mkostemp(pattern.data(), O_CLOEXEC);
    if (fd < 0) KX_THROW(ulFileCannotOpen, "%s", TIMessage::getString(0x108, pattern.c_str()));
    ::close(fd);
    copyName(name_, pattern.c_str());
  }
  KX_CATCH
}

TIFile::TIFile(const char* name) { copyName(name_, name); }

TIFile::~TIFile() {
  if (fd_ >= 0) ::close(fd_);
}

void TIFile::_open(int access, bool bNew, bool bExisting) {
  KX_TRY {
    if (fd_ >= 0) KX_THROW(ulFileAlreadyOpen, "%s", TIMessage::getString(0x107, name_));
    int flags = O_CLOEXEC | (access == eWrite ? O_WRONLY : O_RDONLY);
    if (!bExisting) flags |= O_CREAT;
    const int fd = ::open(name_, flags, 0666);
    if (fd < 0) {
      const int err = errno;
      const unsigned long code = KX_ERROR(ulFileCannotOpen, "%s", TIMessage::getString(0x108, name_));
      kx::trace(KX_FILE, __LINE__, "%s", std::strerror(err));
      throw code;
    }
    struct stat st{};
    if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
      ::close(fd);
      KX_THROW(ulFileCannotOpen, "%s", TIMessage::getString(0x108, name_));
    }
    if (bNew && st.st_size > 0) {
      ::close(fd);
      KX_THROW(ulFileNotEmpty, "%s", TIMessage::getString(0x109, name_));
    }
    fd_ = fd;
    access_ = access;
    isNew_ = bNew;
  }
  KX_CATCH
}

void TIFile::close(bool bDelete) {
  KX_TRY {
    if (fd_ < 0) KX_THROW(ulCloseClosed, "%s", TIMessage::getString(0x10a, name_));
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) KX_THROW(ulCloseFailed, "%s", TIMessage::getString(0x10b, name_));
    if (bDelete) ::unlink(name_);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- TIFileRead

TIFileRead::~TIFileRead() { delete[] buffer_; }

void TIFileRead::open(bool bNew, unsigned bufferSize) {
  KX_TRY {
    _open(eRead, bNew, !bNew);
    delete[] buffer_;
    size_ = bufferSize < 1 ? 1 : bufferSize;
    buffer_ = new char[size_ + 3]{};  // room for a completing CR LF and the null
    count_ = 0;
    line_ = 0;
  }
  KX_CATCH
}

bool TIFileRead::isLine() {
  KX_TRY {
    if (fd_ < 0) KX_THROW0(ulIsLineClosed);
    if (std::memchr(buffer_, '\n', count_)) return true;
    // As many bytes as fit: read until the buffer is full or the file has
    // nothing more for now.
    bool atEnd = false;
    while (count_ < size_) {
      const ssize_t n = ::read(fd_, buffer_ + count_, size_ - count_);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) KX_THROW(ulReadFailed, "%s: %s", name_, std::strerror(errno));
      if (n == 0) {
        atEnd = true;
        break;
      }
      count_ += static_cast<unsigned>(n);
      if (std::memchr(buffer_ + count_ - n, '\n', static_cast<std::size_t>(n))) break;
    }
    if (atEnd && count_ > 0 && !isNew_ && !std::memchr(buffer_, '\n', count_)) {
      // The last line of a finished file needs no line feed; the growing
      // input file (opened as new) waits for its line feed instead.
      buffer_[count_++] = '\r';
      buffer_[count_++] = '\n';
    }
    buffer_[count_] = '\0';
    return std::memchr(buffer_, '\n', count_) != nullptr;
  }
  KX_CATCH
}

void TIFileRead::read(char* line, char* fileName, int* lineNumber) {
  KX_TRY {
    if (fd_ < 0) KX_THROW0(ulReadClosed);
    const char* lf = static_cast<const char*>(std::memchr(buffer_, '\n', count_));
    if (!lf) KX_THROW0(ulReadNoLine);
    const unsigned n = static_cast<unsigned>(lf - buffer_) + 1;
    std::memcpy(line, buffer_, n);
    line[n] = '\0';
    if (fileName) std::memcpy(fileName, name_, sizeof name_);
    if (lineNumber) *lineNumber = line_;
    ++line_;
    std::memmove(buffer_, buffer_ + n, count_ - n);
    count_ -= n;
    buffer_[count_] = '\0';
  }
  KX_CATCH
}

void TIFileRead::vContent2String(std::string& out) {
  KX_TRY {
    out.clear();
    TIFileRead whole(name_);
    whole.open(false, 1024);
    char line[1024 + 3];
    char file[260];
    int number = 0;
    while (whole.isLine()) {
      whole.read(line, file, &number);
      out += line;
    }
    whole.close(false);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- TIFileWrite

void TIFileWrite::open(bool bNew, bool bSharedAppend) {
  KX_TRY {
    _open(eWrite, bNew, false);
    sharedAppend_ = bSharedAppend;
  }
  KX_CATCH
}

void TIFileWrite::write(const char* text) { write(text, text ? std::strlen(text) : 0); }

void TIFileWrite::write(const char* text, std::size_t size) {
  KX_TRY {
    if (fd_ < 0) KX_THROW0(ulWriteClosed);
    if (size == 0) return;
    struct flock lock{};
    if (sharedAppend_) {
      // The range this text adds is locked, the text goes to the end.
      lock.l_type = F_WRLCK;
      lock.l_whence = SEEK_END;
      lock.l_start = 0;
      lock.l_len = static_cast<off_t>(size);
      while (::fcntl(fd_, F_SETLKW, &lock) != 0 && errno == EINTR) {
      }
      ::lseek(fd_, 0, SEEK_END);
    }
    std::size_t done = 0;
    int err = 0;
    while (done < size) {
      const ssize_t n = ::write(fd_, text + done, size - done);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) {
        err = n < 0 ? errno : 0;
        break;
      }
      done += static_cast<std::size_t>(n);
    }
    if (sharedAppend_) {
      lock.l_type = F_UNLCK;
      lock.l_whence = SEEK_SET;
      lock.l_start = 0;
      lock.l_len = 0;
      ::fcntl(fd_, F_SETLK, &lock);
    }
    if (err != 0) KX_THROW(ulWriteFailed, "%s: %s", name_, std::strerror(err));
    if (done < size) KX_THROW(ulWriteShort, "%s", name_);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- TIFileBlock

TIFileBlock::TIFileBlock() {
  TIFile temp;
  name_ = temp.getFileName();
}

TIFileBlock::~TIFileBlock() {
  delete writer_;
  delete reader_;
  ::unlink(name_.c_str());
}

void TIFileBlock::write(const char* text) {
  KX_TRY {
    if (!writer_) {
      writer_ = new TIFileWrite(name_.c_str());
      writer_->open(false, false);
    }
    writer_->write(text);
  }
  KX_CATCH
}

void TIFileBlock::rewind() {
  KX_TRY {
    delete writer_;
    writer_ = nullptr;
    delete reader_;
    reader_ = new TIFileRead(name_.c_str());
    reader_->open(false, 256);
  }
  KX_CATCH
}

bool TIFileBlock::isLine() { return reader_ && reader_->isLine(); }

void TIFileBlock::read(char* line, char* fileName, int* lineNumber) {
  KX_TRY {
    if (!reader_) KX_THROW0(ulReadClosed);
    reader_->read(line, fileName, lineNumber);
  }
  KX_CATCH
}
