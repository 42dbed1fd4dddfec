#include "file98/TKxStdIniFile.h"

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <mutex>

#include "kxexception/KxError.h"

namespace {

// What tells that a file changed on disk without reading it.
struct TFileSig {
  bool exists = false;
  dev_t dev = 0;
  ino_t ino = 0;
  off_t size = 0;
  long long mtimeNs = 0;
  long long ctimeNs = 0;
  bool operator==(const TFileSig&) const = default;
};

TFileSig sigOf(const std::string& path) {
  TFileSig s;
  struct stat st{};
  if (path.empty() || ::stat(path.c_str(), &st) != 0) return s;
  s.exists = true;
  s.dev = st.st_dev;
  s.ino = st.st_ino;
  s.size = st.st_size;
  s.mtimeNs = static_cast<long long>(st.st_mtim.tv_sec) * 1000000000LL + st.st_mtim.tv_nsec;
  s.ctimeNs = static_cast<long long>(st.st_ctim.tv_sec) * 1000000000LL + st.st_ctim.tv_nsec;
  return s;
}

// One name per file, however it was written ("a/../x.ini", a link).
std::string fileKey(const std::string& path) {
  if (path.empty()) return path;
  namespace fs = std::filesystem;
  std::error_code ec;
  fs::path p = fs::weakly_canonical(fs::absolute(path, ec), ec);
  if (ec) p = fs::absolute(path, ec).lexically_normal();
  return p.string();
}

}  // namespace

struct TKxStdIniFile::TShared {
  std::mutex m;
  std::string path;
  TKxMemIniFile mem;
  TFileSig sig;
  bool loaded = false;
  int batches = 0;  // open TBatch scopes: changes wait for the last to end

  // Under the lock: reads the file when it is new to us or changed on disk.
  // Content not yet saved (a failed write, an open batch) is never replaced
  // by what the disk holds.
  void vRefresh() {
    if (loaded && mem.bIsChanged()) return;
    const TFileSig now = sigOf(path);
    if (loaded && now == sig) return;
    mem.vReadFromIniFile(path.c_str());
    sig = now;
    loaded = true;
  }
  // Under the lock: writes the content back if it changed.
  void vWriteBack() {
    if (batches > 0 || !mem.bIsChanged()) return;
    mem.vOverwriteFile(path.c_str());
    sig = sigOf(path);
  }
};

namespace {
std::mutex& registryMutex() {
  static std::mutex m;
  return m;
}
std::map<std::string, std::weak_ptr<TKxStdIniFile::TShared>>& registry() {
  static std::map<std::string, std::weak_ptr<TKxStdIniFile::TShared>> r;
  return r;
}

template <class F>
auto reading(TKxStdIniFile::TShared& s, F f) {
  std::lock_guard lock(s.m);
  s.vRefresh();
  return f(s.mem);
}

template <class F>
void changing(TKxStdIniFile::TShared& s, F f) {
  std::lock_guard lock(s.m);
  s.vRefresh();
  f(s.mem);
  s.vWriteBack();
}
}  // namespace

TKxStdIniFile::TKxStdIniFile(const TIniFilename& name) : name_(name) {
  const std::string key = fileKey(name_.str());
  std::lock_guard lock(registryMutex());
  auto& reg = registry();
  std::erase_if(reg, [](const auto& kv) { return kv.second.expired(); });
  auto& slot = reg[key];
  shared_ = slot.lock();
  if (!shared_) {
    shared_ = std::make_shared<TShared>();
    shared_->path = name_.str();
    slot = shared_;
  }
}

TKxStdIniFile::~TKxStdIniFile() = default;

TKxStdIniFile::TBatch::TBatch(TKxStdIniFile& ini) : shared_(ini.shared_) {
  std::lock_guard lock(shared_->m);
  ++shared_->batches;
}

TKxStdIniFile::TBatch::~TBatch() {
  try {
    vEnd();
  } catch (unsigned long) {
    // The changes stay in memory and go out with the next write; the error
    // chain of the failed write is kept for the caller's handler.
  }
}

void TKxStdIniFile::TBatch::vEnd() {
  if (!shared_) return;
  const std::shared_ptr<TShared> s = std::move(shared_);
  std::lock_guard lock(s->m);
  --s->batches;
  s->vWriteBack();
}

TKxMemIniFile TKxStdIniFile::mGetContent() {
  return reading(*shared_, [](TKxMemIniFile& m) { return m; });
}

void TKxStdIniFile::vReadSections(std::vector<std::string>& sections) {
  reading(*shared_, [&](TKxMemIniFile& m) { m.vReadSections(sections); });
}

std::size_t TKxStdIniFile::uGetStringSize() {
  return reading(*shared_, [](TKxMemIniFile& m) { return m.uGetStringSize(); });
}

void TKxStdIniFile::vWriteToString(char* text) {
  reading(*shared_, [&](TKxMemIniFile& m) { m.vWriteToString(text); });
}

bool TKxStdIniFile::bSectionExists(const char* section) {
  return reading(*shared_, [&](TKxMemIniFile& m) { return m.bSectionExists(section); });
}

void TKxStdIniFile::vReadSection(const char* section, std::vector<std::string>& keys) {
  reading(*shared_, [&](TKxMemIniFile& m) { m.vReadSection(section, keys); });
}

void TKxStdIniFile::vCopySection(TKxIniFile* source, const char* section) {
  KX_TRY {
    if (!source || !section || source == this) return;
    // Take the source's section first: it may be another object on this very
    // file, whose lock must not be taken inside ours.
    TKxMemIniFile taken;
    taken.vCopySection(source, section);
    if (!taken.bSectionExists(section)) return;
    changing(*shared_, [&](TKxMemIniFile& m) { m.vCopySection(&taken, section); });
  }
  KX_CATCH
}

void TKxStdIniFile::vDeleteSection(const char* section) {
  KX_TRY { changing(*shared_, [&](TKxMemIniFile& m) { m.vDeleteSection(section); }); }
  KX_CATCH
}

void TKxStdIniFile::vRenameSection(const char* from, const char* to) {
  KX_TRY { changing(*shared_, [&](TKxMemIniFile& m) { m.vRenameSection(from, to); }); }
  KX_CATCH
}

void TKxStdIniFile::vFlush() {
  KX_TRY { changing(*shared_, [](TKxMemIniFile&) {}); }
  KX_CATCH
}

bool TKxStdIniFile::bValueExists(const char* section, const char* key) {
  return reading(*shared_, [&](TKxMemIniFile& m) { return m.bValueExists(section, key); });
}

void TKxStdIniFile::vDeleteEntry(const char* section, const char* key) {
  KX_TRY { changing(*shared_, [&](TKxMemIniFile& m) { m.vDeleteEntry(section, key); }); }
  KX_CATCH
}

std::string TKxStdIniFile::sReadString(const char* section, const char* key, const char* def) {
  return reading(*shared_, [&](TKxMemIniFile& m) { return m.sReadString(section, key, def); });
}

void TKxStdIniFile::vWriteString(const char* section, const char* key, const char* value) {
  KX_TRY { changing(*shared_, [&](TKxMemIniFile& m) { m.vWriteString(section, key, value); }); }
  KX_CATCH
}
