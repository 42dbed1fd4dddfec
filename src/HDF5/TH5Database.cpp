#include "platform/AtomicFile.h"
#include "HDF5/TH5Database.h"

#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "HDF5/H5Api.h"
#include "HDF5/TH5File.h"
#include "kxexception/KxError.h"

using namespace kx::h5;

namespace {
TH5Database* gInstance = nullptr;

std::string slashes(const char* name) {
  std::string s = name ? name : "";
  for (auto& c : s)
    if (c == '\\') c = '/';
  return s;
}

// Two names of the same file: the same inode when both exist, else the same
// absolute normal form.
bool sameFile(const std::string& a, const std::string& b) {
  struct stat sa {}, sb {};
  if (::stat(a.c_str(), &sa) == 0 && ::stat(b.c_str(), &sb) == 0) return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
  std::error_code ec;
  const auto na = std::filesystem::absolute(a, ec).lexically_normal();
  const auto nb = std::filesystem::absolute(b, ec).lexically_normal();
  return na == nb;
}
}  // namespace

TH5Database::TH5Database() = default;

TH5Database::~TH5Database() {
  while (!files_.empty()) {
    TH5File* f = files_.back();
    files_.pop_back();
    delete f;
  }
}

TH5Database* TH5Database::pOpenHDF5() {
  if (!gInstance) {
    gInstance = new TH5Database();
    if (H5open() >= 0) {
      vSilenceLibrary();
      gInstance->initialised_ = true;
    }
  }
  ++gInstance->references_;
  return gInstance;
}

void TH5Database::vCloseHDF5(TH5Database** pp) {
  if (!pp || !*pp) return;
  *pp = nullptr;
  if (!gInstance || gInstance->references_ == 0) return;
  if (--gInstance->references_ == 0) {
    delete gInstance;
    gInstance = nullptr;
  }
}

unsigned TH5Database::uGetReferences() { return gInstance ? gInstance->references_ : 0; }

void TH5Database::_vCheckInitialised() const {
  if (!initialised_) KX_THROW(ulH5Database, "%s", sNotInitialized());
}

void TH5Database::_vCheckNew(const std::string& fileName, const std::string& alias) const {
  for (const TH5File* f : files_) {
    if (sameFile(f->cpGetFileName(), fileName)) KX_THROW(ulH5Database, sFileOpened(), fileName.c_str());
    if (strcasecmp(f->cpGetAlias(), alias.c_str()) == 0) KX_THROW(ulH5Database, sAliasTaken(), alias.c_str());
  }
}

bool TH5Database::bExistFile(const char* fileName) {
  const std::string name = slashes(fileName);
  struct stat st {};
  return !name.empty() && ::stat(name.c_str(), &st) == 0;
}

bool TH5Database::bExistAlias(const char* alias) const { return (*this)[alias] != nullptr; }

TH5File* TH5Database::pCreateFile(const char* fileName, const char* alias) {
  KX_TRY {
    _vCheckInitialised();
    const std::string name = slashes(fileName);
    const std::string a = (alias && *alias) ? alias : name;
    if (name.empty()) KX_THROW(ulH5Database, sCannotCreate(), "");
    if (bExistFile(name.c_str())) KX_THROW(ulH5Database, sFileExists(), name.c_str());
    _vCheckNew(name, a);
    std::unique_ptr<TH5File> f(new TH5File(name, a, false));
    f->_vCreate();
    files_.push_back(f.get());
    return f.release();
  }
  KX_CATCH
}

TH5File* TH5Database::pOpenFile(const char* fileName, const char* alias, bool openChildren, bool readOnly) {
  KX_TRY {
    _vCheckInitialised();
    const std::string name = slashes(fileName);
    const std::string a = (alias && *alias) ? alias : name;
    if (name.empty() || !bExistFile(name.c_str())) KX_THROW(ulH5Database, sWrongFormat(), name.c_str());
    _vCheckNew(name, a);
    std::unique_ptr<TH5File> f(new TH5File(name, a, readOnly));
    f->_vOpen();
    if (openChildren) f->vOpenChilds(true);
    files_.push_back(f.get());
    return f.release();
  }
  KX_CATCH
}

void TH5Database::vCloseFile(const char* alias) {
  KX_TRY {
    for (auto it = files_.begin(); it != files_.end(); ++it)
      if (strcasecmp((*it)->cpGetAlias(), alias ? alias : "") == 0) {
        std::unique_ptr<TH5File> f(*it);
        files_.erase(it);
        f->vClose();
        return;
      }
    KX_THROW(ulH5Database, sAliasUnknown(), alias ? alias : "");
  }
  KX_CATCH
}

TH5File* TH5Database::operator[](unsigned index) const { return index < files_.size() ? files_[index] : nullptr; }

TH5File* TH5Database::operator[](const char* alias) const {
  for (TH5File* f : files_)
    if (strcasecmp(f->cpGetAlias(), alias ? alias : "") == 0) return f;
  return nullptr;
}

void TH5Database::vReport(FILE* out) const {
  KX_TRY {
    if (!out) return;
    std::fprintf(out, "Database: %u\n", uGetSize());
    for (const TH5File* f : files_) f->vReport(out, 2);
  }
  KX_CATCH
}

void TH5Database::vReport(const char* fileName) const {
  KX_TRY {
    if (!fileName || !*fileName) return vReport(stdout);
    const std::string text = kx::h5::sCaptureStream([this](FILE* out) { vReport(out); });
    std::string why;
    if (!kx::platform::writeFileAtomic(slashes(fileName), text, &why)) {
      const unsigned long code = KX_ERROR(ulH5Database, sCannotCreate(), fileName);
      kx::trace(KX_FILE, __LINE__, "%s", why.c_str());
      throw code;
    }
  }
  KX_CATCH
}
