#include "platform/AtomicFile.h"
#include "HDF5/TH5Type.h"

#include <strings.h>

#include <cerrno>
#include <cstring>

#include "HDF5/H5Api.h"
#include "kxexception/KxError.h"

using namespace kx::h5;

namespace {
const char* const kTypNames[] = {"unknown typ",  "unsigned char", "signed char", "unsigned short", "signed short",
                                 "unsigned long", "signed long",   "float",       "double"};
}

const char* TH5Type::cpGetTypName(TDataTyp e) {
  const int i = static_cast<int>(e);
  return (i >= 0 && i <= 8) ? kTypNames[i] : kTypNames[0];
}

TH5Type::TDataTyp TH5Type::eGetTypFromString(const char* name) {
  if (!name) return eUnknownTyp;
  for (int i = 1; i <= 8; ++i)
    if (std::strcmp(name, kTypNames[i]) == 0) return static_cast<TDataTyp>(i);
  return eUnknownTyp;
}

unsigned TH5Type::uGetTypSize(TDataTyp e) {
  switch (e) {
    case eUnsignedChar:
    case eSignedChar: return 1;
    case eUnsignedShort:
    case eSignedShort: return 2;
    case eUnsignedLong:
    case eSignedLong:
    case eFloat: return 4;
    case eDouble: return 8;
    default: return 0;
  }
}

hid_t TH5Type::iGetNativeTyp(TDataTyp e) {
  switch (e) {
    case eUnsignedChar: return H5T_NATIVE_UINT8;
    case eSignedChar: return H5T_NATIVE_INT8;
    case eUnsignedShort: return H5T_NATIVE_UINT16;
    case eSignedShort: return H5T_NATIVE_INT16;
    case eUnsignedLong: return H5T_NATIVE_UINT32;  // 4 bytes in every file
    case eSignedLong: return H5T_NATIVE_INT32;
    case eFloat: return H5T_NATIVE_FLOAT;
    case eDouble: return H5T_NATIVE_DOUBLE;
    default: return -1;
  }
}

TH5Type::TDataTyp TH5Type::eGetTypFromHdf(hid_t type) {
  const H5T_class_t c = tgetClass(type);
  const size_t size = tgetSize(type);
  if (c == H5T_INTEGER) {
    const bool isSigned = tgetSign(type) == H5T_SGN_2;
    switch (size) {
      case 1: return isSigned ? eSignedChar : eUnsignedChar;
      case 2: return isSigned ? eSignedShort : eUnsignedShort;
      case 4: return isSigned ? eSignedLong : eUnsignedLong;
      default: return eUnknownTyp;
    }
  }
  if (c == H5T_FLOAT) return size == 4 ? eFloat : size == 8 ? eDouble : eUnknownTyp;
  return eUnknownTyp;
}

void TH5Type::vCommit(const char* name) {
  KX_TRY {
    _vCheckWritable();
    if (!parent_ || !parent_->_bIsGroup() || !name || !*name || std::strchr(name, '/'))
      KX_THROW(ulH5Database, sBadArgument(), name ? name : "vCommit");
    if (tcommitted(id_)) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    if (!parent_->_sFindMember(name).empty())
      KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), (std::string(parent_->cpGetFullName()) + "/" + name).c_str());
    tcommit(parent_->id_, name, id_);
    name_ = name;
    parent_->_vMemberAdded(name_);
    vWriteAccess();
  }
  KX_CATCH
}

bool TH5Type::bCommitted() const {
  KX_TRY { return tcommitted(iGetId()); }
  KX_CATCH
}

unsigned TH5Type::uGetSize() const {
  KX_TRY { return static_cast<unsigned>(tgetSize(iGetId())); }
  KX_CATCH
}

int TH5Type::iGetClass() const {
  KX_TRY { return static_cast<int>(tgetClass(iGetId())); }
  KX_CATCH
}

bool TH5Type::bIsAtomic() const {
  KX_TRY {
    const H5T_class_t c = tgetClass(iGetId());
    return c == H5T_INTEGER || c == H5T_FLOAT;
  }
  KX_CATCH
}

TH5Type::TDataTyp TH5Type::eGetTyp() const {
  KX_TRY { return eGetTypFromHdf(iGetId()); }
  KX_CATCH
}

unsigned long long TH5Type::uGetObjectSize() const { return id_ >= 0 ? kx::h5::tgetSize(id_) : 0; }

void TH5Type::_vReport(FILE* out, int indent) const {
  if (!bIsOpen()) return TH5Handle::_vReport(out, indent);
  std::fprintf(out, "%*s%s %s size %zu%s\n", indent, "", cpGetObjectTypName(), name_.empty() ? "-" : name_.c_str(),
               kx::h5::tgetSize(id_), bIsAtomic() ? (std::string(" ") + cpGetTypName(eGetTyp())).c_str() : "");
}

// --- TH5Compound

void TH5Compound::vInsertMember(const char* name, unsigned offset, TDataTyp typ, unsigned dimCount,
                                const unsigned* dims) {
  KX_TRY {
    _vCheckOpen();
    const hid_t native = iGetNativeTyp(typ);
    if (!name || !*name || native < 0 || dimCount > 4 || (dimCount > 0 && !dims))
      KX_THROW(ulH5Database, sBadArgument(), name ? name : "vInsertMember");
    if (dimCount == 0) {
      tinsert(id_, name, offset, native);
    } else {
      hsize_t d[4];
      for (unsigned i = 0; i < dimCount; ++i) d[i] = dims[i];
      TH5Id array(tarrayCreate(native, dimCount, d));
      tinsert(id_, name, offset, array.get());
    }
  }
  KX_CATCH
}

unsigned TH5Compound::uGetMembers() const {
  KX_TRY { return static_cast<unsigned>(tnmembers(iGetId())); }
  KX_CATCH
}

std::string TH5Compound::cpGetMemberName(unsigned index) const {
  KX_TRY { return tmemberName(iGetId(), index); }
  KX_CATCH
}

unsigned TH5Compound::uGetMemberDim(unsigned index) const {
  KX_TRY {
    TH5Id m(tmemberType(iGetId(), index));
    return tgetClass(m.get()) == H5T_ARRAY ? static_cast<unsigned>(tarrayNdims(m.get())) : 0u;
  }
  KX_CATCH
}

unsigned TH5Compound::uGetMemberOffset(unsigned index) const {
  KX_TRY {
    const hid_t id = iGetId();
    if (index >= static_cast<unsigned>(tnmembers(id))) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    return static_cast<unsigned>(tmemberOffset(id, index));
  }
  KX_CATCH
}

TH5Type::TDataTyp TH5Compound::eGetMemberType(unsigned index) const {
  KX_TRY {
    TH5Id m(tmemberType(iGetId(), index));
    if (tgetClass(m.get()) == H5T_ARRAY) {
      TH5Id base(tsuper(m.get()));
      return eGetTypFromHdf(base.get());
    }
    return eGetTypFromHdf(m.get());
  }
  KX_CATCH
}

void TH5Compound::vGetMemberDims(unsigned index, unsigned dims[4]) const {
  KX_TRY {
    for (int i = 0; i < 4; ++i) dims[i] = 0;
    TH5Id m(tmemberType(iGetId(), index));
    if (tgetClass(m.get()) != H5T_ARRAY) return;
    const int rank = tarrayNdims(m.get());
    if (rank > 4) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    hsize_t d[4] = {0, 0, 0, 0};
    tarrayDims(m.get(), d);
    for (int i = 0; i < rank; ++i) dims[i] = static_cast<unsigned>(d[i]);
  }
  KX_CATCH
}

unsigned TH5Compound::uGetMemberVolume(unsigned index) const {
  KX_TRY {
    unsigned dims[4];
    vGetMemberDims(index, dims);
    unsigned volume = 1;
    for (unsigned i = 0; i < 4 && dims[i] != 0; ++i) volume *= dims[i];
    return volume;
  }
  KX_CATCH
}

void TH5Compound::vWriteFile(FILE* out) const {
  KX_TRY {
    const unsigned n = uGetMembers();
    std::fprintf(out, "Compound %s size %u members %u\n", name_.empty() ? "-" : name_.c_str(), uGetSize(), n);
    for (unsigned i = 0; i < n; ++i) {
      unsigned dims[4];
      vGetMemberDims(i, dims);
      std::fprintf(out, "%u %s %s", uGetMemberOffset(i), cpGetMemberName(i).c_str(), cpGetTypName(eGetMemberType(i)));
      for (unsigned k = 0; k < 4 && dims[k] != 0; ++k) std::fprintf(out, "[%u]", dims[k]);
      std::fprintf(out, "\n");
    }
  }
  KX_CATCH
}

void TH5Compound::vWriteFile(const char* fileName) const {
  KX_TRY {
    std::string path = fileName ? fileName : "";
    for (auto& c : path)
      if (c == '\\') c = '/';
    const std::string text = kx::h5::sCaptureStream([this](FILE* out) { vWriteFile(out); });
    std::string why;
    if (path.empty() || !kx::platform::writeFileAtomic(path, text, &why)) {
      const unsigned long code = KX_ERROR(ulH5Database, sCannotCreate(), path.c_str());
      kx::trace(KX_FILE, __LINE__, "%s", why.c_str());
      throw code;
    }
  }
  KX_CATCH
}

void TH5Compound::vTakeContentFrom(const TH5Compound* source) {
  KX_TRY {
    _vCheckOpen();
    if (!source || source == this) KX_THROW(ulH5Database, sBadArgument(), "vTakeContentFrom");
    if (tcommitted(id_)) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    const hid_t copy = tcopy(source->iGetId());
    vCloseQuiet(id_);
    id_ = copy;
  }
  KX_CATCH
}
