#include "kdoint/TIFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIMessage.h"
#include "kxexception/KxError.h"
#include "platform/SharedAppend.h"

using namespace kdoint;

namespace {

// A '\' of a script or ini path never reaches the system.
void copyName(char (&to)[260], const char* from) {
  std::size_t i = 0;
  for (; from && from[i] && i + 1 < sizeof to; ++i) to[i] = from[i] == '\\' ? '/' : from[i];
  to[i] = '\0';
}

// The temporary files of this process, by name.
struct TStore {
  std::mutex mutex;
  std::unordered_map<std::string, std::shared_ptr<std::string>> files;
};
TStore& store() {
  static TStore s;
  return s;
}
std::shared_ptr<std::string> storeFind(const char* name) {
  TStore& s = store();
  const std::lock_guard<std::mutex> lock(s.mutex);
  const auto it = s.files.find(name);
  return it == s.files.end() ? nullptr : it->second;
}

}  // namespace

// ---------------------------------------------------------------- TIFile

TIFile::TIFile() {
  static std::atomic<unsigned long> serial{0};
  static const char digits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const char* dir = std::getenv("TMPDIR");
  TStore& s = store();
  const std::lock_guard<std::mutex> lock(s.mutex);
  std::string name;
  do {
    unsigned long n = serial.fetch_add(1) * 2654435761UL + static_cast<unsigned long>(::getpid());
    std::string tail;
    for (int i = 0; i < 6; ++i, n /= 62) tail += digits[n % 62];
    name = std::string(dir && *dir ? dir : "/tmp") + "/BLK" + tail;
    copyName(name_, name.c_str());
  } while (s.files.count(name_));
  s.files.emplace(name_, std::make_shared<std::string>());
}

void TIFile::vDelete(const char* name) {
  char n[260];
  copyName(n, name);
  TStore& s = store();
  {
    const std::lock_guard<std::mutex> lock(s.mutex);
    if (s.files.erase(n)) return;
  }
  ::unlink(n);
}

bool TIFile::bIsTemporary(const char* name) { return name && storeFind(name) != nullptr; }

long TIFile::_read(char* buffer, std::size_t size) {
  if (!mem_) return static_cast<long>(::read(fd_, buffer, size));
  const std::size_t n = memPos_ < mem_->size() ? std::min(size, mem_->size() - memPos_) : 0;
  std::memcpy(buffer, mem_->data() + memPos_, n);
  memPos_ += n;
  return static_cast<long>(n);
}

long TIFile::_write(const char* text, std::size_t size) {
  if (!mem_) return static_cast<long>(::write(fd_, text, size));
  mem_->append(text, size);
  return static_cast<long>(size);
}

TIFile::TIFile(const char* name) { copyName(name_, name); }

TIFile::~TIFile() {
  if (fd_ >= 0) ::close(fd_);
}

void TIFile::_open(int access, bool bNew, bool bExisting) {
  KX_TRY {
    if (isOpen()) KX_THROW(ulFileAlreadyOpen, "%s", TIMessage::getString(0x107, name_));
    if (auto mem = storeFind(name_)) {
      if (bNew && !mem->empty()) KX_THROW(ulFileNotEmpty, "%s", TIMessage::getString(0x109, name_));
      mem_ = std::move(mem);
      memPos_ = 0;
      access_ = access;
      isNew_ = bNew;
      return;
    }
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
    if (!isOpen()) KX_THROW(ulCloseClosed, "%s", TIMessage::getString(0x10a, name_));
    if (mem_) {
      mem_.reset();
      if (bDelete) vDelete(name_);
      return;
    }
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
    if (!isOpen()) KX_THROW0(ulIsLineClosed);
    if (std::memchr(buffer_, '\n', count_)) return true;
    // As many bytes as fit: read until the buffer is full or the file has
    // nothing more for now.
    bool atEnd = false;
    while (count_ < size_) {
      const long n = _read(buffer_ + count_, size_ - count_);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) KX_THROW(ulReadFailed, "%s: %s", name_, std::strerror(errno));
      if (n == 0) {
        atEnd = true;
        break;
      }
      count_ += static_cast<unsigned>(n);
      if (std::memchr(buffer_ + count_ - n, '\n', static_cast<std::size_t>(n))) break;
    }
    if (count_ == size_ && isNew_ && !std::memchr(buffer_, '\n', count_)) {
      // A line longer than the buffer in the growing input file would stop
      // it for good: the full buffer is delivered as a line of its own.
      buffer_[count_++] = '\r';
      buffer_[count_++] = '\n';
    } else if (atEnd && count_ > 0 && !isNew_ && !std::memchr(buffer_, '\n', count_)) {
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
    if (!isOpen()) KX_THROW0(ulReadClosed);
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
    if (!isOpen()) KX_THROW0(ulWriteClosed);
    if (size == 0) return;
    if (mem_) {
      _write(text, size);
      return;
    }
    int err = 0;
    const std::size_t done = kx::platform::writeAll(fd_, text, size, sharedAppend_, err);
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
  TIFile::vDelete(name_.c_str());
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
