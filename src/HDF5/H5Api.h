// The HDF5 C calls of this module, each wrapped once: call, test, raise.
//
// Private to src/HDF5: it includes hdf5.h, which no public header does. A
// failing call raises ulH5LibraryError with the name of the call and the text
// of HDF5's error stack; the stack is cleared. HDF5 prints nothing itself
// (vSilenceLibrary turns its automatic printing off).
//
// The ...Quiet twins never raise: they serve clean-up paths.
#pragma once

#include <hdf5.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "HDF5/H5Errors.h"

namespace kx::h5 {

// The HDF5 library of the system is built without thread safety: every call
// into it goes through this one process-wide lock (recursive, since a failing
// call reads the library's error stack under it).
std::recursive_mutex& libraryMutex();
#define KX_H5_LOCK const std::lock_guard<std::recursive_mutex> kxH5Lock(::kx::h5::libraryMutex())

// Turns HDF5's automatic error printing off, for good. Idempotent.
void vSilenceLibrary();
// The text of HDF5's current error stack ("H5Fopen: unable to open file; ...");
// clears the stack.
std::string sTakeErrorStack();
// Raises `code` with "<call>: <stack text>".
[[noreturn]] void vRaise(const char* call, unsigned long code = ulH5LibraryError);

template <class R>
inline R check(R r, const char* call) {
  if (r < 0) vRaise(call);
  return r;
}

// Closes any identifier by its kind; ignores invalid ones, never raises.
void vCloseQuiet(hid_t id) noexcept;

// An owned identifier, closed once, by its kind.
class TH5Id {
 public:
  TH5Id() = default;
  explicit TH5Id(hid_t id) : id_(id) {}
  ~TH5Id() { vCloseQuiet(id_); }
  TH5Id(TH5Id&& o) noexcept : id_(std::exchange(o.id_, -1)) {}
  TH5Id& operator=(TH5Id&& o) noexcept {
    if (this != &o) {
      vCloseQuiet(id_);
      id_ = std::exchange(o.id_, -1);
    }
    return *this;
  }
  TH5Id(const TH5Id&) = delete;
  TH5Id& operator=(const TH5Id&) = delete;
  hid_t get() const { return id_; }
  hid_t release() { return std::exchange(id_, -1); }
  explicit operator bool() const { return id_ >= 0; }

 private:
  hid_t id_ = -1;
};

// --- files and property lists
inline hid_t fcreate(const char* name, hid_t fcpl) {
  KX_H5_LOCK;
  return check(H5Fcreate(name, H5F_ACC_TRUNC, fcpl, H5P_DEFAULT), "H5Fcreate");
}
// Does not raise: the caller reports a file it cannot open with its own text.
inline hid_t fopenTry(const char* name, bool readOnly) {
  KX_H5_LOCK;
  return H5Fopen(name, readOnly ? H5F_ACC_RDONLY : H5F_ACC_RDWR, H5P_DEFAULT);
}
// True for a file HDF5 recognises; never raises. (An empty file would open
// read-write as if it were new.)
inline bool fisHdf5(const char* name) {
  KX_H5_LOCK;
  const htri_t r = H5Fis_hdf5(name);
  if (r < 0) H5Eclear2(H5E_DEFAULT);
  return r > 0;
}
inline void fclose(hid_t f) {
  KX_H5_LOCK;
  check(H5Fclose(f), "H5Fclose");
}
inline void fflush(hid_t f) {
  KX_H5_LOCK;
  check(H5Fflush(f, H5F_SCOPE_LOCAL), "H5Fflush");
}
inline hid_t fgetCreatePlist(hid_t f) {
  KX_H5_LOCK;
  return check(H5Fget_create_plist(f), "H5Fget_create_plist");
}
inline hid_t pcreate(hid_t cls) {
  KX_H5_LOCK;
  return check(H5Pcreate(cls), "H5Pcreate");
}
inline void psetUserblock(hid_t p, hsize_t size) {
  KX_H5_LOCK;
  check(H5Pset_userblock(p, size), "H5Pset_userblock");
}
inline hsize_t pgetUserblock(hid_t p) {
  KX_H5_LOCK;
  hsize_t s = 0;
  check(H5Pget_userblock(p, &s), "H5Pget_userblock");
  return s;
}
inline void psetChunk(hid_t p, int rank, const hsize_t* dims) {
  KX_H5_LOCK;
  check(H5Pset_chunk(p, rank, dims), "H5Pset_chunk");
}

// --- groups, links, objects
inline hid_t gcreate(hid_t loc, const char* name) {
  KX_H5_LOCK;
  return check(H5Gcreate2(loc, name, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT), "H5Gcreate2");
}
inline hid_t gopen(hid_t loc, const char* name) {
  KX_H5_LOCK;
  return check(H5Gopen2(loc, name, H5P_DEFAULT), "H5Gopen2");
}
inline hsize_t gnumLinks(hid_t g) {
  KX_H5_LOCK;
  H5G_info_t info;
  check(H5Gget_info(g, &info), "H5Gget_info");
  return info.nlinks;
}
inline void literate(hid_t g, H5L_iterate_t op, void* data) {
  KX_H5_LOCK;
  hsize_t idx = 0;
  check(H5Literate(g, H5_INDEX_NAME, H5_ITER_INC, &idx, op, data), "H5Literate");
}
inline bool lexists(hid_t loc, const char* name) {
  KX_H5_LOCK;
  return check(H5Lexists(loc, name, H5P_DEFAULT), "H5Lexists") > 0;
}
inline void ldelete(hid_t loc, const char* name) {
  KX_H5_LOCK;
  check(H5Ldelete(loc, name, H5P_DEFAULT), "H5Ldelete");
}
inline void lmove(hid_t loc, const char* from, const char* to) {
  KX_H5_LOCK;
  check(H5Lmove(loc, from, loc, to, H5P_DEFAULT, H5P_DEFAULT), "H5Lmove");
}
inline void lcreateSoft(const char* target, hid_t loc, const char* name) {
  KX_H5_LOCK;
  check(H5Lcreate_soft(target, loc, name, H5P_DEFAULT, H5P_DEFAULT), "H5Lcreate_soft");
}
inline H5L_type_t lgetType(hid_t loc, const char* name) {
  KX_H5_LOCK;
  H5L_info_t info;
  check(H5Lget_info(loc, name, &info, H5P_DEFAULT), "H5Lget_info");
  return info.type;
}
std::string lgetSoftTarget(hid_t loc, const char* name);
// Does not raise: a dangling soft link is no error for the caller.
inline hid_t oopenTry(hid_t loc, const char* name) {
  KX_H5_LOCK;
  hid_t id = H5Oopen(loc, name, H5P_DEFAULT);
  if (id < 0) H5Eclear2(H5E_DEFAULT);
  return id;
}
inline hid_t oopen(hid_t loc, const char* name) {
  KX_H5_LOCK;
  return check(H5Oopen(loc, name, H5P_DEFAULT), "H5Oopen");
}
unsigned ogetRefCount(hid_t obj);
inline void osetComment(hid_t obj, const char* text) {
  KX_H5_LOCK;
  check(H5Oset_comment(obj, text), "H5Oset_comment");
}
std::string ogetComment(hid_t obj);
inline void ocopy(hid_t srcLoc, const char* srcName, hid_t dstLoc, const char* dstName) {
  KX_H5_LOCK;
  check(H5Ocopy(srcLoc, srcName, dstLoc, dstName, H5P_DEFAULT, H5P_DEFAULT), "H5Ocopy");
}
inline H5I_type_t iType(hid_t id) {
  KX_H5_LOCK;
  return H5Iget_type(id);
}

// --- types
inline hid_t tcopy(hid_t t) {
  KX_H5_LOCK;
  return check(H5Tcopy(t), "H5Tcopy");
}
inline hid_t tcreateCompound(size_t size) {
  KX_H5_LOCK;
  return check(H5Tcreate(H5T_COMPOUND, size), "H5Tcreate");
}
inline void tinsert(hid_t t, const char* name, size_t offset, hid_t member) {
  KX_H5_LOCK;
  check(H5Tinsert(t, name, offset, member), "H5Tinsert");
}
inline hid_t tarrayCreate(hid_t base, unsigned rank, const hsize_t* dims) {
  KX_H5_LOCK;
  return check(H5Tarray_create2(base, rank, dims), "H5Tarray_create2");
}
inline void tcommit(hid_t loc, const char* name, hid_t t) {
  KX_H5_LOCK;
  check(H5Tcommit2(loc, name, t, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT), "H5Tcommit2");
}
inline bool tcommitted(hid_t t) {
  KX_H5_LOCK;
  return check(H5Tcommitted(t), "H5Tcommitted") > 0;
}
inline hid_t topen(hid_t loc, const char* name) {
  KX_H5_LOCK;
  return check(H5Topen2(loc, name, H5P_DEFAULT), "H5Topen2");
}
inline size_t tgetSize(hid_t t) {
  KX_H5_LOCK;
  size_t s = H5Tget_size(t);
  if (s == 0) vRaise("H5Tget_size");
  return s;
}
inline H5T_class_t tgetClass(hid_t t) {
  KX_H5_LOCK;
  return check(H5Tget_class(t), "H5Tget_class");
}
inline H5T_sign_t tgetSign(hid_t t) {
  KX_H5_LOCK;
  return check(H5Tget_sign(t), "H5Tget_sign");
}
inline bool tequal(hid_t a, hid_t b) {
  KX_H5_LOCK;
  return check(H5Tequal(a, b), "H5Tequal") > 0;
}
inline int tnmembers(hid_t t) {
  KX_H5_LOCK;
  return check(H5Tget_nmembers(t), "H5Tget_nmembers");
}
std::string tmemberName(hid_t t, unsigned i);
inline size_t tmemberOffset(hid_t t, unsigned i) {
  KX_H5_LOCK;
  return H5Tget_member_offset(t, i);
}
inline hid_t tmemberType(hid_t t, unsigned i) {
  KX_H5_LOCK;
  return check(H5Tget_member_type(t, i), "H5Tget_member_type");
}
inline int tarrayNdims(hid_t t) {
  KX_H5_LOCK;
  return check(H5Tget_array_ndims(t), "H5Tget_array_ndims");
}
inline void tarrayDims(hid_t t, hsize_t* dims) {
  KX_H5_LOCK;
  check(H5Tget_array_dims2(t, dims), "H5Tget_array_dims2");
}
inline hid_t tsuper(hid_t t) {
  KX_H5_LOCK;
  return check(H5Tget_super(t), "H5Tget_super");
}
inline hid_t tnative(hid_t t) {
  KX_H5_LOCK;
  return check(H5Tget_native_type(t, H5T_DIR_ASCEND), "H5Tget_native_type");
}

// --- dataspaces
inline hid_t screateScalar() {
  KX_H5_LOCK;
  return check(H5Screate(H5S_SCALAR), "H5Screate");
}
inline hid_t screateSimple(int rank, const hsize_t* dims, const hsize_t* maxDims) {
  KX_H5_LOCK;
  return check(H5Screate_simple(rank, dims, maxDims), "H5Screate_simple");
}
inline int sgetRank(hid_t s) {
  KX_H5_LOCK;
  return check(H5Sget_simple_extent_ndims(s), "H5Sget_simple_extent_ndims");
}
inline void sgetDims(hid_t s, hsize_t* dims, hsize_t* maxDims) {
  KX_H5_LOCK;
  check(H5Sget_simple_extent_dims(s, dims, maxDims), "H5Sget_simple_extent_dims");
}
inline hssize_t sgetVolume(hid_t s) {
  KX_H5_LOCK;
  return check(H5Sget_simple_extent_npoints(s), "H5Sget_simple_extent_npoints");
}
inline void sselectSlab(hid_t s, const hsize_t* start, const hsize_t* count) {
  KX_H5_LOCK;
  check(H5Sselect_hyperslab(s, H5S_SELECT_SET, start, nullptr, count, nullptr), "H5Sselect_hyperslab");
}
inline bool sequalExtent(hid_t a, hid_t b) {
  KX_H5_LOCK;
  return check(H5Sextent_equal(a, b), "H5Sextent_equal") > 0;
}

// --- datasets
inline hid_t dcreate(hid_t loc, const char* name, hid_t type, hid_t space, hid_t dcpl) {
  KX_H5_LOCK;
  return check(H5Dcreate2(loc, name, type, space, H5P_DEFAULT, dcpl, H5P_DEFAULT), "H5Dcreate2");
}
inline hid_t dopen(hid_t loc, const char* name) {
  KX_H5_LOCK;
  return check(H5Dopen2(loc, name, H5P_DEFAULT), "H5Dopen2");
}
inline hid_t dgetSpace(hid_t d) {
  KX_H5_LOCK;
  return check(H5Dget_space(d), "H5Dget_space");
}
inline hid_t dgetType(hid_t d) {
  KX_H5_LOCK;
  return check(H5Dget_type(d), "H5Dget_type");
}
inline void dread(hid_t d, hid_t memType, hid_t memSpace, hid_t fileSpace, void* buf) {
  KX_H5_LOCK;
  check(H5Dread(d, memType, memSpace, fileSpace, H5P_DEFAULT, buf), "H5Dread");
}
inline void dwrite(hid_t d, hid_t memType, hid_t memSpace, hid_t fileSpace, const void* buf) {
  KX_H5_LOCK;
  check(H5Dwrite(d, memType, memSpace, fileSpace, H5P_DEFAULT, buf), "H5Dwrite");
}
inline void dsetExtent(hid_t d, const hsize_t* dims) {
  KX_H5_LOCK;
  check(H5Dset_extent(d, dims), "H5Dset_extent");
}
inline hsize_t dgetStorageSize(hid_t d) {
  KX_H5_LOCK;
  return H5Dget_storage_size(d);
}

// --- attributes
inline hid_t acreate(hid_t loc, const char* name, hid_t type, hid_t space) {
  KX_H5_LOCK;
  return check(H5Acreate2(loc, name, type, space, H5P_DEFAULT, H5P_DEFAULT), "H5Acreate2");
}
inline bool aexists(hid_t loc, const char* name) {
  KX_H5_LOCK;
  return check(H5Aexists(loc, name), "H5Aexists") > 0;
}
inline hid_t aopen(hid_t loc, const char* name) {
  KX_H5_LOCK;
  return check(H5Aopen(loc, name, H5P_DEFAULT), "H5Aopen");
}
inline void aread(hid_t a, hid_t memType, void* buf) {
  KX_H5_LOCK;
  check(H5Aread(a, memType, buf), "H5Aread");
}
inline void awrite(hid_t a, hid_t memType, const void* buf) {
  KX_H5_LOCK;
  check(H5Awrite(a, memType, buf), "H5Awrite");
}
inline hid_t agetSpace(hid_t a) {
  KX_H5_LOCK;
  return check(H5Aget_space(a), "H5Aget_space");
}
inline hid_t agetType(hid_t a) {
  KX_H5_LOCK;
  return check(H5Aget_type(a), "H5Aget_type");
}
inline hsize_t agetStorageSize(hid_t a) {
  KX_H5_LOCK;
  return H5Aget_storage_size(a);
}
inline void arename(hid_t loc, const char* from, const char* to) {
  KX_H5_LOCK;
  check(H5Arename(loc, from, to), "H5Arename");
}
inline void adelete(hid_t loc, const char* name) {
  KX_H5_LOCK;
  check(H5Adelete(loc, name), "H5Adelete");
}
inline void aiterate(hid_t loc, H5A_operator2_t op, void* data) {
  KX_H5_LOCK;
  hsize_t idx = 0;
  check(H5Aiterate2(loc, H5_INDEX_NAME, H5_ITER_INC, &idx, op, data), "H5Aiterate2");
}

// A memory type for data stored with `fileType`: numbers become native, the
// layout (offsets, element size, array shapes) stays, so a record with holes
// keeps its holes. The caller owns the result.
hid_t memTypeOf(hid_t fileType);

// What a writer of FILE* streams writes, as one text (reports are written
// through this and then saved whole).
template <class F>
std::string sCaptureStream(F write) {
  char* buf = nullptr;
  std::size_t size = 0;
  FILE* out = ::open_memstream(&buf, &size);
  if (!out) throw std::bad_alloc();
  try {
    write(out);
  } catch (...) {
    std::fclose(out);
    std::free(buf);
    throw;
  }
  std::fclose(out);
  std::string text(buf ? buf : "", size);
  std::free(buf);
  return text;
}

}  // namespace kx::h5
