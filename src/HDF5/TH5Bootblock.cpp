#include "HDF5/TH5Bootblock.h"

#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "HDF5/H5Errors.h"
#include "kxexception/KxError.h"

using namespace kx::h5;

namespace {
constexpr const char* kFirma = "Firma";
constexpr const char* kFileVersion = "FileVersion";
constexpr const char* kDateCreated = "DateCreated";
constexpr const char* kLastWrite = "LastWrite";
constexpr const char* kDeletedObjects = "DeletedObjects";
constexpr const char* kDeletedSize = "DeletedSize";
constexpr const char* kLastWorker = "LastWorker";

std::string loginName() {
  char buf[1024];
  passwd pw{};
  passwd* result = nullptr;
  if (getpwuid_r(geteuid(), &pw, buf, sizeof buf, &result) == 0 && result && result->pw_name)
    return result->pw_name;
  const char* user = std::getenv("USER");
  return user && *user ? user : "unknown";
}

unsigned long long number(const std::string& s) {
  char* end = nullptr;
  errno = 0;
  const unsigned long long v = std::strtoull(s.c_str(), &end, 10);
  return (errno != 0 || end == s.c_str()) ? 0 : v;
}

// Reads up to `size` bytes from the start of a file; fewer when it is shorter.
bool readHead(const std::string& name, size_t size, std::string& out) {
  const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  out.assign(size, '\0');
  size_t got = 0;
  while (got < size) {
    const ssize_t n = ::pread(fd, out.data() + got, size - got, static_cast<off_t>(got));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  ::close(fd);
  out.resize(got);
  return true;
}
}  // namespace

const char* TH5Bootblock::cpGetVersion() { return "$Revision: 1.6 $ $Date: 2001-02-15 13:12:59+01 $"; }

TH5Bootblock::TH5Bootblock(const char* fileName, int size, bool readOnly)
    : fileName_(fileName ? fileName : ""), size_(size), readOnly_(readOnly) {
  KX_TRY {
    for (auto& c : fileName_)
      if (c == '\\') c = '/';
    vRead();
    vSetDefaults();
    vWrite();
  }
  KX_CATCH
}

TH5Bootblock::~TH5Bootblock() {
  // Never raises: a failure here would overwrite the chain of an error on
  // its way up.
  if (readOnly_ || size_ <= 0) return;
  const std::string image = sImage();
  const int fd = ::open(fileName_.c_str(), O_WRONLY | O_CLOEXEC);
  if (fd < 0) return;
  [[maybe_unused]] const ssize_t n = ::pwrite(fd, image.data(), image.size(), 0);
  ::close(fd);
}

TH5Bootblock& TH5Bootblock::operator=(const TH5Bootblock& other) {
  KX_TRY {
    if (this != &other) {
      entries_ = other.entries_;
      vWrite();
    }
    return *this;
  }
  KX_CATCH
}

int TH5Bootblock::igetBootblockSize(const char* fileName) {
  if (!fileName) return 0;
  std::string name = fileName;
  for (auto& c : name)
    if (c == '\\') c = '/';
  std::string head;
  if (!readHead(name, 32, head) || head.size() < 32) return 0;
  const size_t magic = std::strlen(cpMagic);
  if (head.compare(0, magic, cpMagic) != 0 || head[magic] != ' ') return 0;
  head.push_back('\0');
  const long v = std::strtol(head.c_str() + magic + 1, nullptr, 10);
  if (v > INT_MAX) return INT_MAX;
  if (v < INT_MIN) return INT_MIN;
  return static_cast<int>(v);
}

void TH5Bootblock::vRead() {
  KX_TRY {
    entries_.clear();
    if (size_ <= 0) return;
    std::string block;
    if (!readHead(fileName_, static_cast<size_t>(size_), block))
      KX_THROW(ulH5Database, sBootblockIo(), fileName_.c_str(), std::strerror(errno));
    const size_t limit = std::min(block.size(), static_cast<size_t>(size_ > 2 ? size_ - 2 : 0));
    size_t pos = block.find('\0');  // the first string is the magic and the size
    if (pos == std::string::npos || pos >= limit) return;
    ++pos;
    while (pos < limit) {
      const size_t end = block.find('\0', pos);
      if (end == std::string::npos || end >= limit) break;  // cut off: not an entry
      if (end == pos) break;                                // the empty string ends the list
      const std::string entry = block.substr(pos, end - pos);
      const size_t eq = entry.find('=');
      if (eq == std::string::npos)
        entries_.emplace_back(entry, std::string());
      else
        entries_.emplace_back(entry.substr(0, eq), entry.substr(eq + 1));
      pos = end + 1;
    }
  }
  KX_CATCH
}

std::string TH5Bootblock::sImage() const {
  if (size_ <= 0) return {};
  std::string image(static_cast<size_t>(size_), '\0');
  const size_t limit = size_ > 2 ? static_cast<size_t>(size_ - 2) : 0;
  std::string text = std::string(cpMagic) + " " + std::to_string(size_);
  size_t pos = 0;
  auto put = [&](const std::string& s) {
    // The string, its null byte, and the empty string after it must fit.
    if (pos + s.size() + 2 > limit) return false;
    std::memcpy(image.data() + pos, s.data(), s.size());
    pos += s.size() + 1;
    return true;
  };
  if (!put(text)) return image;
  for (const auto& [key, value] : entries_)
    if (!put(key + "=" + value)) break;
  return image;
}

bool TH5Bootblock::_bFits() const {
  // Magic and every entry, each with its null byte, and the closing empty
  // string, within size - 2 (as sImage lays them out).
  const size_t limit = size_ > 2 ? static_cast<size_t>(size_ - 2) : 0;
  size_t pos = std::string(cpMagic).size() + 1 + std::to_string(size_).size() + 1;
  if (pos + 1 > limit) return false;
  for (const auto& [key, value] : entries_) {
    pos += key.size() + 1 + value.size() + 1;
    if (pos + 1 > limit) return false;
  }
  return true;
}

void TH5Bootblock::vWrite() const {
  KX_TRY {
    if (readOnly_ || size_ <= 0) return;
    const std::string image = sImage();
    const int fd = ::open(fileName_.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) KX_THROW(ulH5Database, sBootblockIo(), fileName_.c_str(), std::strerror(errno));
    size_t done = 0;
    while (done < image.size()) {
      const ssize_t n = ::pwrite(fd, image.data() + done, image.size() - done, static_cast<off_t>(done));
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) {
        const int e = errno;
        ::close(fd);
        KX_THROW(ulH5Database, sBootblockIo(), fileName_.c_str(), std::strerror(e));
      }
      done += static_cast<size_t>(n);
    }
    ::close(fd);
  }
  KX_CATCH
}

void TH5Bootblock::vSetDefaults() {
  const std::string now = sNow();
  const std::pair<const char*, std::string> defaults[] = {
      {kFirma, "Kelvarix"},     {kFileVersion, cpGetVersion()}, {kDateCreated, now},
      {kLastWrite, now},        {kDeletedObjects, "0"},         {kDeletedSize, "0"},
      {kLastWorker, loginName()}};
  for (const auto& [key, value] : defaults)
    if (!_pFind(key)) entries_.emplace_back(key, value);
}

const std::string* TH5Bootblock::_pFind(const std::string& key) const {
  for (const auto& e : entries_)
    if (e.first == key) return &e.second;
  return nullptr;
}

bool TH5Bootblock::bExistEntry(const std::string& key) const { return _pFind(key) != nullptr; }

void TH5Bootblock::vSetEntry(const std::string& key, const std::string& value) {
  KX_TRY {
    if (key.empty() || key.find('=') != std::string::npos || key.find('\0') != std::string::npos ||
        value.find('\0') != std::string::npos)
      KX_THROW(ulH5Database, sBadArgument(), key.c_str());
    const auto before = entries_;
    if (auto* v = const_cast<std::string*>(_pFind(key)))
      *v = value;
    else
      entries_.emplace_back(key, value);
    if (size_ > 0 && !_bFits()) {
      entries_ = before;
      KX_THROW(ulH5Database, sBootblockFull(), fileName_.c_str(), size_, key.c_str());
    }
    vWrite();
  }
  KX_CATCH
}

void TH5Bootblock::vDeleteEntry(const std::string& key) {
  KX_TRY {
    for (auto it = entries_.begin(); it != entries_.end(); ++it)
      if (it->first == key) {
        entries_.erase(it);
        vWrite();
        return;
      }
    KX_THROW(ulH5BootblockKey, sKeyMissing(), key.c_str());
  }
  KX_CATCH
}

std::string TH5Bootblock::sGetEntry(const std::string& key) const {
  KX_TRY {
    const std::string* v = _pFind(key);
    if (!v) KX_THROW(ulH5BootblockKey, sKeyMissing(), key.c_str());
    return *v;
  }
  KX_CATCH
}

void TH5Bootblock::vSetWriteAccess() {
  KX_TRY {
    if (readOnly_) return;
    const std::string now = sNow();
    const std::string* v = _pFind(kLastWrite);
    if (v && *v == now) return;  // the block would be written unchanged
    vSetEntry(kLastWrite, now);
  }
  KX_CATCH
}

void TH5Bootblock::vObjectDeleted(unsigned long long size) {
  KX_TRY {
    const std::string* objects = _pFind(kDeletedObjects);
    const std::string* bytes = _pFind(kDeletedSize);
    const unsigned long long n = objects ? number(*objects) : 0;
    const unsigned long long b = bytes ? number(*bytes) : 0;
    const std::string sn = std::to_string(n + 1), sb = std::to_string(b + size);
    if (objects)
      *const_cast<std::string*>(objects) = sn;
    else
      entries_.emplace_back(kDeletedObjects, sn);
    if (bytes)
      *const_cast<std::string*>(bytes) = sb;
    else
      entries_.emplace_back(kDeletedSize, sb);
    vWrite();
  }
  KX_CATCH
}

void TH5Bootblock::vNoDeletedObjects() {
  KX_TRY {
    for (const char* key : {kDeletedObjects, kDeletedSize}) {
      if (auto* v = const_cast<std::string*>(_pFind(key)))
        *v = "0";
      else
        entries_.emplace_back(key, "0");
    }
    vWrite();
  }
  KX_CATCH
}

const char* TH5Bootblock::cpGetDateCreated() const {
  const std::string* v = _pFind(kDateCreated);
  return v ? v->c_str() : "";
}

const char* TH5Bootblock::cpGetLastWrite() const {
  const std::string* v = _pFind(kLastWrite);
  return v ? v->c_str() : "";
}

const char* TH5Bootblock::cpGetLastWorker() const {
  const std::string* v = _pFind(kLastWorker);
  return v ? v->c_str() : "";
}

void TH5Bootblock::vSetLastWorker(const char* name) {
  KX_TRY { vSetEntry(kLastWorker, name ? name : ""); }
  KX_CATCH
}

std::string TH5Bootblock::sNow() {
  const std::time_t t = std::time(nullptr);
  std::tm tm{};
  localtime_r(&t, &tm);
  char buf[64];
  std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday,
                tm.tm_hour, tm.tm_min, tm.tm_sec);
  return buf;
}
