#include "HDF5/TH5File.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "HDF5/H5Api.h"
#include "HDF5/TH5Database.h"
#include "kxexception/KxError.h"

using namespace kx::h5;

namespace {
// A new empty file in the temporary directory, in place of GetTempPathA and
// GetTempFileNameA.
std::string tempFileName() {
  const char* dir = std::getenv("TMPDIR");
  std::string pattern = std::string(dir && *dir ? dir : "/tmp") + "/kxh5XXXXXX";
  const int fd = ::mkstemp(pattern.data());
  if (fd < 0) KX_THROW(ulH5Database, sCannotCreate(), pattern.c_str());
  ::close(fd);
  return pattern;
}

// Deletes a file unless another party holds it open, as the platform the
// data bases come from does. A write lease is granted only while no other
// descriptor of the file is open anywhere; where leases are not supported,
// an exclusive lock (which HDF5 readers and writers hold shared or
// exclusive) decides.
bool deleteUnlessOpen(const std::string& name) {
  const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  bool free = false;
  bool lease = false;
  if (::fcntl(fd, F_SETLEASE, F_WRLCK) == 0) {
    free = lease = true;
  } else if (errno != EAGAIN && errno != EBUSY) {
    free = ::flock(fd, LOCK_EX | LOCK_NB) == 0;
  }
  if (free) free = ::unlink(name.c_str()) == 0;
  if (lease) ::fcntl(fd, F_SETLEASE, F_UNLCK);
  ::close(fd);
  return free;
}
}  // namespace

TH5File::TH5File(std::string fileName, std::string alias, bool readOnly)
    : TH5Directory(nullptr, -1, "/"), fileName_(std::move(fileName)), alias_(std::move(alias)), readOnly_(readOnly) {}

TH5File::~TH5File() {
  try {
    vClose();
  } catch (...) {
    kx::deleteError();
  }
}

void TH5File::_vCreate() {
  KX_TRY {
    try {
      TH5Id fcpl(pcreate(H5P_FILE_CREATE));
      psetUserblock(fcpl.get(), TH5Bootblock::iDefaultSize);
      fileId_ = fcreate(fileName_.c_str(), fcpl.get());
      id_ = gopen(fileId_, "/");
      // The block is written after the create, which truncates the file.
      bootblock_ = std::make_unique<TH5Bootblock>(fileName_.c_str(), TH5Bootblock::iDefaultSize, false);
    } catch (unsigned long) {
      vClose();
      throw kx::trace(KX_FILE, __LINE__, sCannotCreate(), fileName_.c_str());
    }
  }
  KX_CATCH
}

void TH5File::_vOpen() {
  KX_TRY {
    const int blockSize = TH5Bootblock::igetBootblockSize(fileName_.c_str());
    const hid_t f = fisHdf5(fileName_.c_str()) ? fopenTry(fileName_.c_str(), readOnly_) : -1;
    if (f < 0) {
      const std::string stack = sTakeErrorStack();
      kx::error(ulH5Database, KX_FILE, __LINE__, sWrongFormat(), fileName_.c_str());
      kx::trace(KX_FILE, __LINE__, "H5Fopen failed: %s", stack.c_str());
      throw kx::trace(KX_FILE, __LINE__, sCannotOpen(), fileName_.c_str());
    }
    fileId_ = f;
    try {
      TH5Id fcpl(fgetCreatePlist(fileId_));
      const hsize_t userBlock = pgetUserblock(fcpl.get());
      // Our magic with a size that is not the file's user block: not one of ours.
      if (blockSize != 0 && (blockSize < 0 || static_cast<hsize_t>(blockSize) != userBlock))
        KX_THROW(ulH5Database, sWrongFormat(), fileName_.c_str());
      id_ = gopen(fileId_, "/");
      bootblock_ = std::make_unique<TH5Bootblock>(fileName_.c_str(), blockSize, readOnly_);
    } catch (unsigned long) {
      vClose();
      throw kx::trace(KX_FILE, __LINE__, sCannotOpen(), fileName_.c_str());
    }
  }
  KX_CATCH
}

void TH5File::vClose() {
  KX_TRY {
    _vCloseChilds();
    bootblock_.reset();
    _vCloseId();
    const hid_t f = fileId_;
    fileId_ = -1;
    if (f >= 0) fclose(f);
  }
  KX_CATCH
}

void TH5File::vFlush() {
  KX_TRY {
    _vCheckOpen();
    fflush(fileId_);
  }
  KX_CATCH
}

void TH5File::vObjectDeleted(unsigned long long size) {
  if (bootblock_) bootblock_->vObjectDeleted(size);
}

void TH5File::vWriteAccess() {
  if (bootblock_) bootblock_->vSetWriteAccess();
}

unsigned long long TH5File::uGetObjectSize() const { return TH5Directory::uGetObjectSize(); }

void TH5File::vCompress() {
  KX_TRY {
    _vCheckWritable();
    const std::string temp = tempFileName();
    try {
      std::unique_ptr<TH5File> copy(new TH5File(temp, "12345678", false));
      copy->_vCreate();
      copy->vDuplicateFrom(this);
      *copy->bootblock_ = *bootblock_;
      copy->bootblock_->vNoDeletedObjects();
      copy->vClose();
    } catch (...) {
      ::unlink(temp.c_str());
      throw;
    }
    // Name, alias and flag stay in this object, which is opened again below.
    // Handles held by callers stay valid, closed.
    for (auto* c : childs_) c->_vRetire();
    vClose();
    if (!deleteUnlessOpen(fileName_)) {
      ::unlink(temp.c_str());
      _vOpen();
      return;
    }
    std::error_code ec;
    std::filesystem::copy_file(temp, fileName_, std::filesystem::copy_options::overwrite_existing, ec);
    ::unlink(temp.c_str());
    if (ec) KX_THROW(ulH5Database, sCannotCreate(), fileName_.c_str());
    _vOpen();
  }
  KX_CATCH
}

void TH5File::vDelete() {
  TH5Database* db = TH5Database::pOpenHDF5();
  try {
    db->vCloseFile(alias_.c_str());
  } catch (...) {
    TH5Database::vCloseHDF5(&db);
    throw;
  }
  TH5Database::vCloseHDF5(&db);
}

void TH5File::_vReport(FILE* out, int indent) const {
  std::fprintf(out, "%*sFile %s alias %s%s", indent, "", fileName_.c_str(), alias_.c_str(),
               readOnly_ ? " read only" : "");
  if (!bIsOpen()) {
    std::fprintf(out, " (closed)\n");
    return;
  }
  std::fprintf(out, " bootblock %d, %u members\n", bootblock_ ? bootblock_->iGetSize() : 0, uGetNumberNamedChilds());
}
