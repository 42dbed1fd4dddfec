#include "HDF5/H5Api.h"

#include <vector>

#include "kxexception/KxError.h"

namespace kx::h5 {

std::recursive_mutex& libraryMutex() {
  static auto* const m = new std::recursive_mutex;  // never destroyed: handles may close at exit
  return *m;
}

void vSilenceLibrary() {
  KX_H5_LOCK;
  // Serial HDF5 keeps one automatic error handler for the process.
  H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}

namespace {
herr_t collectError(unsigned n, const H5E_error2_t* e, void* data) {
  auto& text = *static_cast<std::string*>(data);
  if (n >= 4) return 0;  // the innermost entries repeat the first ones
  if (!text.empty()) text += "; ";
  if (e->func_name) {
    text += e->func_name;
    text += ": ";
  }
  text += e->desc ? e->desc : "?";
  return 0;
}
}  // namespace

std::string sTakeErrorStack() {
  KX_H5_LOCK;
  std::string text;
  H5Ewalk2(H5E_DEFAULT, H5E_WALK_DOWNWARD, collectError, &text);
  H5Eclear2(H5E_DEFAULT);
  if (text.empty()) text = "no HDF5 error stack";
  return text;
}

void vRaise(const char* call, unsigned long code) {
  KX_H5_LOCK;
  const std::string stack = sTakeErrorStack();
  KX_THROW(code, "%s failed: %s", call, stack.c_str());
}

void vCloseQuiet(hid_t id) noexcept {
  KX_H5_LOCK;
  if (id < 0) return;
  herr_t r = 0;
  switch (H5Iget_type(id)) {
    case H5I_FILE: r = H5Fclose(id); break;
    case H5I_GROUP: r = H5Gclose(id); break;
    case H5I_DATATYPE: r = H5Tclose(id); break;
    case H5I_DATASPACE: r = H5Sclose(id); break;
    case H5I_DATASET: r = H5Dclose(id); break;
    case H5I_ATTR: r = H5Aclose(id); break;
    case H5I_GENPROP_LST: r = H5Pclose(id); break;
    default: r = 0; break;
  }
  if (r < 0) H5Eclear2(H5E_DEFAULT);
}

std::string lgetSoftTarget(hid_t loc, const char* name) {
  KX_H5_LOCK;
  H5L_info_t info;
  check(H5Lget_info(loc, name, &info, H5P_DEFAULT), "H5Lget_info");
  if (info.type != H5L_TYPE_SOFT) return {};
  std::string target(info.u.val_size, '\0');
  check(H5Lget_val(loc, name, target.data(), target.size(), H5P_DEFAULT), "H5Lget_val");
  while (!target.empty() && target.back() == '\0') target.pop_back();
  return target;
}

unsigned ogetRefCount(hid_t obj) {
  KX_H5_LOCK;
  H5O_info_t info;
#if H5_VERSION_GE(1, 12, 0)
  check(H5Oget_info3(obj, &info, H5O_INFO_BASIC), "H5Oget_info3");
#else
  check(H5Oget_info2(obj, &info, H5O_INFO_BASIC), "H5Oget_info2");
#endif
  return info.rc;
}

std::string ogetComment(hid_t obj) {
  KX_H5_LOCK;
  const ssize_t n = check(H5Oget_comment(obj, nullptr, 0), "H5Oget_comment");
  if (n <= 0) return {};
  std::string text(static_cast<size_t>(n) + 1, '\0');
  check(H5Oget_comment(obj, text.data(), text.size()), "H5Oget_comment");
  text.resize(static_cast<size_t>(n));
  return text;
}

std::string tmemberName(hid_t t, unsigned i) {
  KX_H5_LOCK;
  char* p = H5Tget_member_name(t, i);
  if (!p) vRaise("H5Tget_member_name");
  std::string name = p;
  H5free_memory(p);
  return name;
}

hid_t memTypeOf(hid_t fileType) {
  KX_H5_LOCK;
  switch (tgetClass(fileType)) {
    case H5T_INTEGER:
    case H5T_FLOAT: return tnative(fileType);
    case H5T_ARRAY: {
      const int rank = tarrayNdims(fileType);
      std::vector<hsize_t> dims(static_cast<size_t>(rank > 0 ? rank : 1));
      tarrayDims(fileType, dims.data());
      TH5Id base(tsuper(fileType));
      TH5Id memBase(memTypeOf(base.get()));
      return tarrayCreate(memBase.get(), static_cast<unsigned>(rank), dims.data());
    }
    case H5T_COMPOUND: {
      TH5Id mem(tcreateCompound(tgetSize(fileType)));
      const int n = tnmembers(fileType);
      for (int i = 0; i < n; ++i) {
        const auto u = static_cast<unsigned>(i);
        TH5Id member(tmemberType(fileType, u));
        TH5Id memMember(memTypeOf(member.get()));
        tinsert(mem.get(), tmemberName(fileType, u).c_str(), tmemberOffset(fileType, u), memMember.get());
      }
      return mem.release();
    }
    default: return tcopy(fileType);
  }
}

}  // namespace kx::h5
