#include "HDF5/TH5File.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "HDF5/H5Api.h"
#include "HDF5/TH5Database.h"
#include "kxexception/KxError.h"

using namespace kx::h5;

namespace {
// A fresh name beside `name`, in the same directory, so that the finished
// copy can be renamed over the original.
std::string tempFileBeside(const std::string& name) {
  const auto slash = name.find_last_of('/');
  std::string pattern = (slash == std::string::npos ? std::string() : name.substr(0, slash + 1)) + ".kxh5XXXXXX";
  const int fd = ::mkstemp(pattern.data());
  if (fd < 0) {
    const int err = errno;
    const unsigned long code = KX_ERROR(ulH5Database, sCannotCreate(), pattern.c_str());
    kx::trace(KX_FILE, __LINE__, "%s", std::strerror(err));
    throw code;
  }
  ::close(fd);
  return pattern;
}

// Puts `temp` in the place of `name` unless another party holds `name` open,
// as the platform the data bases come from refuses to delete an open file. A
// write lease is granted only while no other descriptor of the file is open
// anywhere; where leases are not supported, an exclusive lock (which HDF5
// readers and writers hold shared or exclusive) decides. The copy takes the
// original's mode, is flushed to the disk and renamed over it: the original
// is never gone before its replacement is complete. Returns false when the
// file is in use; raises when the rename fails (the original stays).
// Refuses a compress that cannot fit: the copy needs about the live part of
// the file, in the file's directory and under the process's file-size limit.
// (The HDF5 library does not survive a write that fails inside its object
// copy, so a full disk must be seen before the copy starts.)
void checkRoomForCopy(const std::string& name, uint64_t deletedBytes) {
  struct stat st{};
  if (::stat(name.c_str(), &st) != 0) return;
  const uint64_t size = static_cast<uint64_t>(st.st_size);
  const uint64_t need = (size > deletedBytes ? size - deletedBytes : 0) + 64 * 1024;
  const auto slash = name.find_last_of('/');
  const std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : name.substr(0, slash));
  struct statvfs vfs{};
  struct rlimit lim{};
  uint64_t room = UINT64_MAX;
  if (::statvfs(dir.c_str(), &vfs) == 0) room = static_cast<uint64_t>(vfs.f_bavail) * vfs.f_frsize;
  if (::getrlimit(RLIMIT_FSIZE, &lim) == 0 && lim.rlim_cur != RLIM_INFINITY)
    room = std::min<uint64_t>(room, lim.rlim_cur);
  if (room < need) {
    const unsigned long code = KX_ERROR(ulH5Database, sCannotCreate(), name.c_str());
    kx::trace(KX_FILE, __LINE__, "no room for the compressed copy: %llu bytes needed, %llu free",
              static_cast<unsigned long long>(need), static_cast<unsigned long long>(room));
    throw code;
  }
}

bool replaceUnlessOpen(const std::string& temp, const std::string& name) {
  const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  bool free = false;
  bool lease = false;
  if (::fcntl(fd, F_SETLEASE, F_WRLCK) == 0) {
    free = lease = true;
  } else if (errno != EAGAIN && errno != EBUSY) {
    free = ::flock(fd, LOCK_EX | LOCK_NB) == 0;
  }
  int err = 0;
  if (free) {
    struct stat st{};
    const int tfd = ::open(temp.c_str(), O_RDONLY | O_CLOEXEC);
    if (tfd < 0 || ::fstat(fd, &st) != 0 || ::fchmod(tfd, st.st_mode & 07777) != 0 || ::fsync(tfd) != 0 ||
        ::rename(temp.c_str(), name.c_str()) != 0)
      err = errno ? errno : EIO;
    if (tfd >= 0) ::close(tfd);
  }
  if (lease) ::fcntl(fd, F_SETLEASE, F_UNLCK);
  ::close(fd);
  if (err != 0) {
    const unsigned long code = KX_ERROR(ulH5Database, sCannotCreate(), name.c_str());
    kx::trace(KX_FILE, __LINE__, "%s", std::strerror(err));
    throw code;
  }
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
    // The copy is made beside the file and checked; only a complete copy
    // is renamed over the original, so a full disk costs the copy, never
    // the file.
    uint64_t deleted = 0;
    try {
      deleted = std::stoull(bootblock_->sGetEntry("DeletedSize"));
    } catch (const std::exception&) {
    }
    checkRoomForCopy(fileName_, deleted);
    const std::string temp = tempFileBeside(fileName_);
    try {
      std::unique_ptr<TH5File> copy(new TH5File(temp, "12345678", false));
      copy->_vCreate();
      copy->vDuplicateFrom(this);
      *copy->bootblock_ = *bootblock_;
      copy->bootblock_->vNoDeletedObjects();
      copy->vClose();
      if (!fisHdf5(temp.c_str())) KX_THROW(ulH5Database, sCannotCreate(), temp.c_str());
    } catch (...) {
      ::unlink(temp.c_str());
      throw;
    }
    // Name, alias and flag stay in this object, which is opened again below.
    // Handles held by callers stay valid, closed.
    for (auto* c : childs_) c->_vRetire();
    vClose();
    bool replaced = false;
    try {
      replaced = replaceUnlessOpen(temp, fileName_);
    } catch (...) {
      ::unlink(temp.c_str());
      _vOpen();
      throw;
    }
    if (!replaced) ::unlink(temp.c_str());
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
