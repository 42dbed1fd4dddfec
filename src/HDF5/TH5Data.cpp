#include "HDF5/TH5Data.h"

#include <vector>

#include "HDF5/H5Api.h"
#include "HDF5/TH5Space.h"
#include "kxexception/KxError.h"

using namespace kx::h5;

// --- TH5DataBasic

TH5Space* TH5DataBasic::pGetDataspace() {
  KX_TRY {
    _vCheckOpen();
    TH5Id s(_iOpenSpace());
    return _pAdopt(std::unique_ptr<TH5Space>(new TH5Space(this, s.release())));
  }
  KX_CATCH
}

TH5Type* TH5DataBasic::pGetDataType() {
  KX_TRY {
    _vCheckOpen();
    TH5Id t(_iOpenType());
    if (tgetClass(t.get()) == H5T_COMPOUND)
      return _pAdopt(std::unique_ptr<TH5Compound>(new TH5Compound(this, t.release(), std::string())));
    return _pAdopt(std::unique_ptr<TH5Atomic>(new TH5Atomic(this, t.release(), std::string())));
  }
  KX_CATCH
}

TH5Type::TDataTyp TH5DataBasic::eGetTyp() const {
  KX_TRY {
    _vCheckOpen();
    TH5Id t(_iOpenType());
    return TH5Type::eGetTypFromHdf(t.get());
  }
  KX_CATCH
}

unsigned TH5DataBasic::uGetRank() const {
  KX_TRY {
    _vCheckOpen();
    TH5Id s(_iOpenSpace());
    return static_cast<unsigned>(sgetRank(s.get()));
  }
  KX_CATCH
}

std::vector<unsigned long long> TH5DataBasic::vGetDims() const {
  KX_TRY {
    _vCheckOpen();
    TH5Id s(_iOpenSpace());
    std::vector<unsigned long long> dims(static_cast<size_t>(sgetRank(s.get())));
    if (!dims.empty()) sgetDims(s.get(), dims.data(), nullptr);
    return dims;
  }
  KX_CATCH
}

unsigned long long TH5DataBasic::uGetVolume() const {
  KX_TRY {
    _vCheckOpen();
    TH5Id s(_iOpenSpace());
    return static_cast<unsigned long long>(sgetVolume(s.get()));
  }
  KX_CATCH
}

unsigned TH5DataBasic::uGetElementSize() const {
  KX_TRY {
    _vCheckOpen();
    TH5Id t(_iOpenType());
    return static_cast<unsigned>(tgetSize(t.get()));
  }
  KX_CATCH
}

// --- TH5Data

hid_t TH5Data::_iOpenSpace() const { return dgetSpace(id_); }
hid_t TH5Data::_iOpenType() const { return dgetType(id_); }

hid_t TH5Data::_iMemType(const TH5Type* memType) const {
  if (memType) return tcopy(memType->iGetId());
  TH5Id fileType(dgetType(id_));
  return memTypeOf(fileType.get());
}

unsigned long long TH5Data::uGetObjectSize() const { return id_ >= 0 ? dgetStorageSize(id_) : 0; }

void TH5Data::vRead(void* buffer, const TH5Type* memType) const {
  KX_TRY {
    _vCheckOpen();
    TH5Id mt(_iMemType(memType));
    dread(id_, mt.get(), H5S_ALL, H5S_ALL, buffer);
  }
  KX_CATCH
}

void TH5Data::vRead(void* buffer, TH5Type::TDataTyp memType) const {
  KX_TRY {
    _vCheckOpen();
    const hid_t native = TH5Type::iGetNativeTyp(memType);
    if (native < 0) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    dread(id_, native, H5S_ALL, H5S_ALL, buffer);
  }
  KX_CATCH
}

void TH5Data::vWrite(const void* buffer, const TH5Type* memType) {
  KX_TRY {
    _vCheckWritable();
    TH5Id mt(_iMemType(memType));
    dwrite(id_, mt.get(), H5S_ALL, H5S_ALL, buffer);
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Data::vWrite(const void* buffer, TH5Type::TDataTyp memType) {
  KX_TRY {
    _vCheckWritable();
    const hid_t native = TH5Type::iGetNativeTyp(memType);
    if (native < 0) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    dwrite(id_, native, H5S_ALL, H5S_ALL, buffer);
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Data::_vSelect(const unsigned long long* first, const unsigned long long* count,
                       const unsigned long long* memDims, const unsigned long long* memFirst, hid_t& fileSpace,
                       hid_t& memSpace) const {
  TH5Id fs(dgetSpace(id_));
  const int rank = sgetRank(fs.get());
  if (rank <= 0 || !first || !count) KX_THROW(ulH5Database, sOutOfRange(), cpGetFullName());
  std::vector<hsize_t> dims(static_cast<size_t>(rank));
  sgetDims(fs.get(), dims.data(), nullptr);
  for (int i = 0; i < rank; ++i) {
    if (first[i] > dims[i] || count[i] > dims[i] - first[i]) KX_THROW(ulH5Database, sOutOfRange(), cpGetFullName());
    if (memDims) {
      const unsigned long long mf = memFirst ? memFirst[i] : 0;
      if (mf > memDims[i] || count[i] > memDims[i] - mf) KX_THROW(ulH5Database, sOutOfRange(), cpGetFullName());
    }
  }
  sselectSlab(fs.get(), first, count);
  TH5Id ms;
  if (memDims) {
    ms = TH5Id(screateSimple(rank, memDims, nullptr));
    std::vector<hsize_t> start(static_cast<size_t>(rank), 0);
    if (memFirst) start.assign(memFirst, memFirst + rank);
    sselectSlab(ms.get(), start.data(), count);
  } else {
    ms = TH5Id(screateSimple(rank, count, nullptr));
  }
  fileSpace = fs.release();
  memSpace = ms.release();
}

void TH5Data::vReadBlock(const unsigned long long* first, const unsigned long long* count, void* buffer,
                         const TH5Type* memType, const unsigned long long* memDims,
                         const unsigned long long* memFirst) const {
  KX_TRY {
    _vCheckOpen();
    hid_t f = -1, m = -1;
    _vSelect(first, count, memDims, memFirst, f, m);
    TH5Id fs(f), ms(m);
    for (int i = 0, n = sgetRank(f); i < n; ++i)
      if (count[i] == 0) return;  // an empty block reads nothing
    TH5Id mt(_iMemType(memType));
    dread(id_, mt.get(), ms.get(), fs.get(), buffer);
  }
  KX_CATCH
}

void TH5Data::vWriteBlock(const unsigned long long* first, const unsigned long long* count, const void* buffer,
                          const TH5Type* memType, const unsigned long long* memDims,
                          const unsigned long long* memFirst) {
  KX_TRY {
    _vCheckWritable();
    hid_t f = -1, m = -1;
    _vSelect(first, count, memDims, memFirst, f, m);
    TH5Id fs(f), ms(m);
    for (int i = 0, n = sgetRank(f); i < n; ++i)
      if (count[i] == 0) return;
    TH5Id mt(_iMemType(memType));
    dwrite(id_, mt.get(), ms.get(), fs.get(), buffer);
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Data::vExtend(const unsigned long long* sizes) {
  KX_TRY {
    _vCheckWritable();
    if (!sizes) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    dsetExtent(id_, sizes);
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Data::_vReport(FILE* out, int indent) const {
  if (!bIsOpen()) return TH5Handle::_vReport(out, indent);
  std::fprintf(out, "%*sData %s ", indent, "", name_.c_str());
  TH5Id t(dgetType(id_));
  const TH5Type::TDataTyp typ = TH5Type::eGetTypFromHdf(t.get());
  if (typ != TH5Type::eUnknownTyp)
    std::fprintf(out, "%s", TH5Type::cpGetTypName(typ));
  else
    std::fprintf(out, "%s of %zu bytes", tgetClass(t.get()) == H5T_COMPOUND ? "compound" : "type", tgetSize(t.get()));
  std::fprintf(out, " [");
  const auto dims = vGetDims();
  for (size_t i = 0; i < dims.size(); ++i) std::fprintf(out, "%s%llu", i ? " x " : "", dims[i]);
  std::fprintf(out, "]\n");
}

// --- TH5Attribute

hid_t TH5Attribute::_iOpenSpace() const { return agetSpace(id_); }
hid_t TH5Attribute::_iOpenType() const { return agetType(id_); }

unsigned long long TH5Attribute::uGetObjectSize() const { return id_ >= 0 ? agetStorageSize(id_) : 0; }

void TH5Attribute::vRead(void* buffer) const {
  KX_TRY {
    _vCheckOpen();
    TH5Id ft(agetType(id_));
    TH5Id mt(memTypeOf(ft.get()));
    aread(id_, mt.get(), buffer);
  }
  KX_CATCH
}

void TH5Attribute::vRead(void* buffer, TH5Type::TDataTyp memType) const {
  KX_TRY {
    _vCheckOpen();
    const hid_t native = TH5Type::iGetNativeTyp(memType);
    if (native < 0) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    aread(id_, native, buffer);
  }
  KX_CATCH
}

void TH5Attribute::vRead(void* buffer, const TH5Type* memType) const {
  KX_TRY {
    _vCheckOpen();
    if (!memType) return vRead(buffer);
    aread(id_, memType->iGetId(), buffer);
  }
  KX_CATCH
}

void TH5Attribute::vWrite(const void* buffer) {
  KX_TRY {
    _vCheckWritable();
    TH5Id ft(agetType(id_));
    TH5Id mt(memTypeOf(ft.get()));
    awrite(id_, mt.get(), buffer);
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Attribute::vWrite(const void* buffer, TH5Type::TDataTyp memType) {
  KX_TRY {
    _vCheckWritable();
    const hid_t native = TH5Type::iGetNativeTyp(memType);
    if (native < 0) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
    awrite(id_, native, buffer);
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Attribute::_vReport(FILE* out, int indent) const {
  if (!bIsOpen()) return TH5Handle::_vReport(out, indent);
  TH5Id t(agetType(id_));
  std::fprintf(out, "%*sAttribute %s %s [%llu]\n", indent, "", name_.c_str(),
               TH5Type::cpGetTypName(TH5Type::eGetTypFromHdf(t.get())), uGetVolume());
}
