#include "HDF5/TH5General.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "HDF5/H5Api.h"
#include "kxexception/KxError.h"
#include "kxexception/TSignatur.h"

using namespace kx::h5;

namespace {
std::string join(const std::vector<std::string>& parts, size_t count) {
  std::string s;
  for (size_t i = 0; i < count && i < parts.size(); ++i) s += "/" + parts[i];
  return s.empty() ? "/" : s;
}

// Runs `f`, then gives `child` back to `owner`, also when `f` fails.
template <class F>
void thenDelete(TH5Handle* owner, TH5Handle* child, F&& f) {
  try {
    f();
  } catch (...) {
    owner->vDelete(child);
    throw;
  }
  owner->vDelete(child);
}

// The extent of a buffer that holds a block of `count` at `memFirst`, for a
// data set that must be of rank N; out of range when it is not, or when the
// extent does not fit.
template <size_t N>
std::array<unsigned long long, N> memExtent(const TH5Data* data, const std::string& abs,
                                            const unsigned long long (&count)[N],
                                            const unsigned long long (&memFirst)[N]) {
  if (data->uGetRank() != N) KX_THROW(ulH5Database, sOutOfRange(), abs.c_str());
  std::array<unsigned long long, N> memDims;
  for (size_t i = 0; i < N; ++i) {
    memDims[i] = memFirst[i] + count[i];
    if (memDims[i] < count[i]) KX_THROW(ulH5Database, sOutOfRange(), abs.c_str());
  }
  return memDims;
}
}  // namespace

// An object opened for one operation. A handle the facade opened itself is
// given back at the end; one that was open before (someone else's) stays.
struct TH5General::TOpenObject {
  TH5Handle* p = nullptr;
  bool own = false;
  std::string abs;

  TOpenObject() = default;
  TOpenObject(TOpenObject&& o) noexcept : p(std::exchange(o.p, nullptr)), own(o.own), abs(std::move(o.abs)) {}
  TOpenObject& operator=(TOpenObject&&) = delete;
  ~TOpenObject() {
    if (own && p) delete p;
  }
  TH5Data* data() const { return static_cast<TH5Data*>(p); }
};

// --- TCompound

TH5General::TCompound::TItem::TItem(TDataTyp typ, std::string name, unsigned offset, unsigned dimCount, unsigned d0,
                                     unsigned d1, unsigned d2, unsigned d3)
    : eTyp(typ), sName(std::move(name)), uOffset(offset), uDimCount(dimCount > 4 ? 4 : dimCount) {
  const unsigned d[4] = {d0, d1, d2, d3};
  for (unsigned i = 0; i < uDimCount; ++i) uDims[i] = d[i];
}

unsigned TH5General::TCompound::TItem::uGetSize() const {
  unsigned size = TH5Type::uGetTypSize(eTyp);
  for (unsigned i = 0; i < uDimCount && i < 4; ++i) size *= uDims[i];
  return size;
}

void TH5General::TCompound::vAdd(TDataTyp typ, const char* name, unsigned offset, unsigned dimCount, unsigned d0,
                                 unsigned d1, unsigned d2, unsigned d3) {
  vItems.emplace_back(typ, name ? name : "", offset, dimCount, d0, d1, d2, d3);
}

void TH5General::TCompound::vCalculateOffsets() {
  unsigned offset = 0;
  for (auto& item : vItems) {
    item.uOffset = offset;
    offset += item.uGetSize();
  }
  uElementSize = offset;
}

// --- paths and opening

TH5General::TH5General(TH5File* file, bool readOnly) : file_(file), readOnly_(readOnly) {}

std::vector<std::string> TH5General::_vSplit(const std::string& path) const {
  std::string p = path;
  for (auto& c : p)
    if (c == '\\') c = '/';
  std::vector<std::string> parts;
  if (p.empty() || p[0] != '/') p = current_ + "/" + p;
  size_t pos = 0;
  while (pos <= p.size()) {
    size_t end = p.find('/', pos);
    if (end == std::string::npos) end = p.size();
    const std::string part = p.substr(pos, end - pos);
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.push_back(part);
    }
    pos = end + 1;
  }
  return parts;
}

std::string TH5General::sGetAbsolutePath(const std::string& path) const {
  const auto parts = _vSplit(path);
  return join(parts, parts.size());
}

TH5Directory* TH5General::_pDir(const std::vector<std::string>& parts, size_t count, bool create) const {
  if (!file_) KX_THROW(ulH5Database, "%s", sNotInitialized());
  TH5Directory* dir = file_;
  dir->iGetId();
  for (size_t i = 0; i < count; ++i) {
    const std::string real = dir->_sFindMember(parts[i].c_str());
    if (real.empty()) {
      if (!create) return nullptr;
      dir = dir->pCreateDir(parts[i].c_str());
      continue;
    }
    TH5Handle* h = dir->pOpenChild(real.c_str());
    if (h->_eGetObjectTyp() != TH5Handle::eH5Directory) {
      if (create) KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), join(parts, i + 1).c_str());
      return nullptr;
    }
    dir = static_cast<TH5Directory*>(h);
  }
  return dir;
}

void TH5General::_vCreateAll(const std::vector<std::string>& parts, size_t count) const { _pDir(parts, count, true); }

TH5General::TOpenObject TH5General::_tOpen(const std::string& path, bool mustExist) const {
  const auto parts = _vSplit(path);
  TOpenObject o;
  o.abs = join(parts, parts.size());
  if (parts.empty()) {
    if (!file_) KX_THROW(ulH5Database, "%s", sNotInitialized());
    file_->iGetId();
    o.p = file_;
    return o;
  }
  if (TH5Directory* dir = _pDir(parts, parts.size() - 1, false)) {
    const std::string real = dir->_sFindMember(parts.back().c_str());
    if (!real.empty()) {
      o.own = dir->_pFindOpenChild(real, false) == nullptr;
      o.p = dir->pOpenChild(real.c_str());
    }
  }
  if (!o.p && mustExist) KX_THROW(ulH5NotExist, sObjectNotExist(), o.abs.c_str());
  return o;
}

TH5General::TOpenObject TH5General::_tOpenData(const std::string& path) const {
  TOpenObject o = _tOpen(path, true);
  if (o.p->_eGetObjectTyp() != TH5Handle::eH5Data) KX_THROW(ulH5Database, sNotADataset(), o.abs.c_str());
  return o;
}

void TH5General::_vCheckWrite(const std::string& path) const {
  if (!file_) KX_THROW(ulH5Database, "%s", sNotInitialized());
  if (readOnly_ || file_->bIsReadOnly())
    KX_THROW(ulH5ReadOnly, sReadOnly(), (std::string(file_->cpGetFileName()) + ":" + path).c_str());
  file_->iGetId();
}

// --- directories

void TH5General::vCreateDirectory(const std::string& path) {
  KX_TRY {
    _vCheckWrite(path);
    if (path.empty() || (path[0] != '/' && path[0] != '\\'))
      KX_THROW(ulH5NoAbsolutePath, sNoAbsolutePath(), path.c_str());
    const auto parts = _vSplit(path);
    const std::string abs = join(parts, parts.size());
    if (parts.empty()) KX_THROW(ulH5Database, sDirExists(), abs.c_str());
    TH5Directory* dir = _pDir(parts, parts.size() - 1, true);
    const std::string real = dir->_sFindMember(parts.back().c_str());
    if (!real.empty()) {
      if (dir->eGetObjectTyp(real.c_str()) == TH5Handle::eH5Directory)
        KX_THROW(ulH5Database, sDirExists(), abs.c_str());
      KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), abs.c_str());
    }
    dir->pCreateDir(parts.back().c_str());
  }
  KX_CATCH
}

void TH5General::vChangeDirectory(const std::string& path) {
  KX_TRY {
    const auto parts = _vSplit(path);
    const std::string abs = join(parts, parts.size());
    if (!_pDir(parts, parts.size(), false)) KX_THROW(ulH5NotExist, sDirNotExist(), abs.c_str());
    current_ = abs;
  }
  KX_CATCH
}

// --- look and list

bool TH5General::bExistObject(const std::string& path) const {
  KX_TRY {
    const auto parts = _vSplit(path);
    if (parts.empty()) return true;
    TH5Directory* dir = _pDir(parts, parts.size() - 1, false);
    return dir && !dir->_sFindMember(parts.back().c_str()).empty();
  }
  KX_CATCH
}

bool TH5General::bExistDir(const std::string& path) const {
  KX_TRY { return eGetObjectTyp(path) == TH5Handle::eH5Directory; }
  KX_CATCH
}

TH5Handle::eH5ObjectTyp TH5General::eGetObjectTyp(const std::string& path) const {
  KX_TRY {
    const auto parts = _vSplit(path);
    if (parts.empty()) return TH5Handle::eH5Directory;  // the root group
    TH5Directory* dir = _pDir(parts, parts.size() - 1, false);
    return dir ? dir->eGetObjectTyp(parts.back().c_str()) : TH5Handle::eH5NoObject;
  }
  KX_CATCH
}

unsigned TH5General::uGetObjectNumber(const std::string& path) const {
  KX_TRY {
    const auto parts = _vSplit(path);
    TH5Directory* dir = _pDir(parts, parts.size(), false);
    if (!dir) KX_THROW(ulH5NotExist, sDirNotExist(), join(parts, parts.size()).c_str());
    return dir->uGetNumberNamedChilds();
  }
  KX_CATCH
}

std::string TH5General::sGetObjectName(const std::string& path, unsigned index) const {
  KX_TRY {
    const auto parts = _vSplit(path);
    TH5Directory* dir = _pDir(parts, parts.size(), false);
    if (!dir) KX_THROW(ulH5NotExist, sDirNotExist(), join(parts, parts.size()).c_str());
    const char* name = dir->cpGetChildName(index);
    if (!name) KX_THROW(ulH5NotExist, sObjectNotExist(), (join(parts, parts.size()) + "#" + std::to_string(index)).c_str());
    return name;
  }
  KX_CATCH
}

void TH5General::vGetDirectoryContent(const std::string& path, bool withPath, std::vector<std::string>& names) const {
  KX_TRY {
    const auto parts = _vSplit(path);
    const std::string abs = join(parts, parts.size());
    TH5Directory* dir = _pDir(parts, parts.size(), false);
    if (!dir) KX_THROW(ulH5NotExist, sDirNotExist(), abs.c_str());
    names.clear();
    const std::string prefix = abs == "/" ? abs : abs + "/";
    for (unsigned i = 0, n = dir->uGetNumberNamedChilds(); i < n; ++i) {
      const std::string name = dir->cpGetChildName(i);
      names.push_back(withPath ? prefix + name : name);
    }
  }
  KX_CATCH
}

// --- shape and type

unsigned TH5General::uGetDimensions(const std::string& path) const {
  KX_TRY { return _tOpenData(path).data()->uGetRank(); }
  KX_CATCH
}

unsigned long long TH5General::uGetDimSize(const std::string& path, unsigned dimension) const {
  KX_TRY {
    const auto o = _tOpenData(path);
    const auto dims = o.data()->vGetDims();
    if (dimension >= dims.size()) KX_THROW(ulH5Database, sOutOfRange(), o.abs.c_str());
    return dims[dimension];
  }
  KX_CATCH
}

bool TH5General::bIsSimpleDataTyp(const std::string& path) const {
  KX_TRY {
    const auto o = _tOpenData(path);
    TH5Type* t = o.data()->pGetDataType();
    const bool simple = t->bIsAtomic();
    o.data()->vDelete(t);
    return simple;
  }
  KX_CATCH
}

unsigned TH5General::uGetDataTypSize(const std::string& path) const {
  KX_TRY { return _tOpenData(path).data()->uGetElementSize(); }
  KX_CATCH
}

TH5General::TDataTyp TH5General::eGetSimpleDataTyp(const std::string& path) const {
  KX_TRY { return _tOpenData(path).data()->eGetTyp(); }
  KX_CATCH
}

TH5General::TCompound TH5General::eGetCompoundDataTyp(const std::string& path) const {
  KX_TRY {
    const auto o = _tOpenData(path);
    TH5Type* t = o.data()->pGetDataType();
    if (t->_eGetObjectTyp() != TH5Handle::eH5Compound) {
      o.data()->vDelete(t);
      KX_THROW(ulH5Database, sNotCompound(), o.abs.c_str());
    }
    auto* c = static_cast<TH5Compound*>(t);
    TCompound result(c->uGetSize());
    for (unsigned i = 0, n = c->uGetMembers(); i < n; ++i) {
      unsigned dims[4];
      c->vGetMemberDims(i, dims);
      result.vAdd(c->eGetMemberType(i), c->cpGetMemberName(i).c_str(), c->uGetMemberOffset(i),
                  c->uGetMemberDim(i), dims[0], dims[1], dims[2], dims[3]);
    }
    o.data()->vDelete(t);
    return result;
  }
  KX_CATCH
}

// --- creating

TH5Type* TH5General::_pMakeType(TH5Directory* owner, TDataTyp typ, const TCompound* compound) const {
  if (!compound) return owner->pCreateAtomic(typ);
  if (compound->uElementSize == 0 || compound->vItems.empty())
    KX_THROW(ulH5Database, sBadArgument(), "compound without members");
  TH5Compound* c = owner->pCreateCompound(compound->uElementSize);
  try {
    for (const auto& item : compound->vItems)
      c->vInsertMember(item.sName.c_str(), item.uOffset, item.eTyp, item.uDimCount, item.uDims);
  } catch (...) {
    owner->vDelete(c);
    throw;
  }
  return c;
}

bool TH5General::_bExistThisObject(TH5Directory* dir, const std::string& name, const TH5Type* type,
                                   const std::vector<unsigned long long>& dims) const {
  if (dir->eGetObjectTyp(name.c_str()) != TH5Handle::eH5Data) return false;
  const bool own = dir->_pFindOpenChild(name, false) == nullptr;
  TH5Data* d = dir->pOpenData(name.c_str());
  bool same = d->vGetDims() == dims;
  if (same) {
    TH5Id stored(dgetType(d->iGetId()));
    same = tequal(stored.get(), type->iGetId());
  }
  if (own) dir->vDelete(d);
  return same;
}

void TH5General::_vCreate(const std::vector<unsigned long long>& dims, TDataTyp typ, const TCompound* compound,
                          const std::string& path, bool overwrite) {
  _vCheckWrite(path);
  const auto parts = _vSplit(path);
  const std::string abs = join(parts, parts.size());
  if (parts.empty()) KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), abs.c_str());
  TH5Directory* dir = _pDir(parts, parts.size() - 1, false);
  // The type and space are children of the file until the data set stands.
  TH5Type* type = _pMakeType(file_, typ, compound);
  TH5Space* space = nullptr;
  try {
    std::string name = parts.back();
    if (dir) {
      const std::string real = dir->_sFindMember(name.c_str());
      if (!real.empty()) {
        if (_bExistThisObject(dir, real, type, dims)) {
          file_->vDelete(type);
          return;  // the same data set stays, contents and all
        }
        if (!overwrite) KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), abs.c_str());
        dir->vDeleteObject(real.c_str());
      }
    } else {
      _vCreateAll(parts, parts.size() - 1);
      dir = _pDir(parts, parts.size() - 1, false);
    }
    space = file_->pCreateSpace(static_cast<unsigned>(dims.size()), dims.data());
    TH5Data* data = dir->pCreateData(name.c_str(), type, space);
    dir->vDelete(data);
  } catch (...) {
    file_->vDelete(type);
    if (space) file_->vDelete(space);
    throw;
  }
  file_->vDelete(type);
  file_->vDelete(space);
}

void TH5General::vCreate0(const TCompound& compound, const std::string& path, bool overwrite) {
  KX_TRY { _vCreate({}, TH5Type::eUnknownTyp, &compound, path, overwrite); }
  KX_CATCH
}

void TH5General::vCreate1(unsigned long long count, TDataTyp typ, const std::string& path, bool overwrite) {
  KX_TRY { _vCreate({count}, typ, nullptr, path, overwrite); }
  KX_CATCH
}

void TH5General::vCreate1(unsigned long long count, const TCompound& compound, const std::string& path,
                          bool overwrite) {
  KX_TRY { _vCreate({count}, TH5Type::eUnknownTyp, &compound, path, overwrite); }
  KX_CATCH
}

void TH5General::vCreate2(unsigned long long lines, unsigned long long columns, TDataTyp typ, const std::string& path,
                          bool overwrite) {
  KX_TRY { _vCreate({lines, columns}, typ, nullptr, path, overwrite); }
  KX_CATCH
}

void TH5General::vCreate2(unsigned long long lines, unsigned long long columns, const TCompound& compound,
                          const std::string& path, bool overwrite) {
  KX_TRY { _vCreate({lines, columns}, TH5Type::eUnknownTyp, &compound, path, overwrite); }
  KX_CATCH
}

// --- reading and writing

void TH5General::vRead(const std::string& path, void* buffer) const {
  KX_TRY { _tOpenData(path).data()->vRead(buffer); }
  KX_CATCH
}

void TH5General::vRead(const std::string& path, void* buffer, const TCompound& compound) const {
  KX_TRY {
    const auto o = _tOpenData(path);
    TH5Type* type = _pMakeType(file_, TH5Type::eUnknownTyp, &compound);
    thenDelete(file_, type, [&] { o.data()->vRead(buffer, type); });
  }
  KX_CATCH
}

void TH5General::vRead1(unsigned long long count, unsigned long long firstInFile, unsigned long long firstInMemory,
                        const std::string& path, void* buffer) const {
  KX_TRY {
    const auto o = _tOpenData(path);
    const auto memDims = memExtent<1>(o.data(), o.abs, {count}, {firstInMemory});
    o.data()->vReadBlock(&firstInFile, &count, buffer, nullptr, memDims.data(), &firstInMemory);
  }
  KX_CATCH
}

void TH5General::vRead2(unsigned long long lines, unsigned long long columns, unsigned long long fileLine,
                        unsigned long long fileColumn, unsigned long long memLine, unsigned long long memColumn,
                        const std::string& path, void* buffer) const {
  KX_TRY {
    const auto o = _tOpenData(path);
    const unsigned long long first[2] = {fileLine, fileColumn}, count[2] = {lines, columns};
    const unsigned long long memFirst[2] = {memLine, memColumn};
    const auto memDims = memExtent(o.data(), o.abs, count, memFirst);
    o.data()->vReadBlock(first, count, buffer, nullptr, memDims.data(), memFirst);
  }
  KX_CATCH
}

void TH5General::vWrite(const void* buffer, const std::string& path) {
  KX_TRY {
    _vCheckWrite(path);
    _tOpenData(path).data()->vWrite(buffer);
  }
  KX_CATCH
}

void TH5General::vWrite(const void* buffer, const std::string& path, const TCompound& compound) {
  KX_TRY {
    _vCheckWrite(path);
    const auto o = _tOpenData(path);
    TH5Type* type = _pMakeType(file_, TH5Type::eUnknownTyp, &compound);
    thenDelete(file_, type, [&] { o.data()->vWrite(buffer, type); });
  }
  KX_CATCH
}

void TH5General::vWrite1(unsigned long long count, unsigned long long firstInFile, unsigned long long firstInMemory,
                         const void* buffer, const std::string& path) {
  KX_TRY {
    _vCheckWrite(path);
    const auto o = _tOpenData(path);
    const auto memDims = memExtent<1>(o.data(), o.abs, {count}, {firstInMemory});
    o.data()->vWriteBlock(&firstInFile, &count, buffer, nullptr, memDims.data(), &firstInMemory);
  }
  KX_CATCH
}

void TH5General::vWrite2(unsigned long long lines, unsigned long long columns, unsigned long long fileLine,
                         unsigned long long fileColumn, unsigned long long memLine, unsigned long long memColumn,
                         const void* buffer, const std::string& path) {
  KX_TRY {
    _vCheckWrite(path);
    const auto o = _tOpenData(path);
    const unsigned long long first[2] = {fileLine, fileColumn}, count[2] = {lines, columns};
    const unsigned long long memFirst[2] = {memLine, memColumn};
    const auto memDims = memExtent(o.data(), o.abs, count, memFirst);
    o.data()->vWriteBlock(first, count, buffer, nullptr, memDims.data(), memFirst);
  }
  KX_CATCH
}

// --- attributes

void TH5General::vWriteAttribute(const std::string& path, const std::string& name, TDataTyp typ, unsigned count,
                                 const void* values) {
  KX_TRY {
    _vCheckWrite(path);
    if (count == 0 || !values) KX_THROW(ulH5Database, sBadArgument(), name.c_str());
    const auto o = _tOpen(path, true);
    if (o.p->bExistAttr(name.c_str())) o.p->vDeleteAttr(name.c_str());
    TH5Atomic* type = file_->pCreateAtomic(typ);
    const unsigned long long n = count;
    TH5Space* space = nullptr;
    try {
      space = file_->pCreateSpace(count == 1 ? 0 : 1, &n);
      TH5Attribute* a = o.p->pCreateAttr(name.c_str(), type, space);
      thenDelete(o.p, a, [&] { a->vWrite(values, typ); });
    } catch (...) {
      file_->vDelete(type);
      if (space) file_->vDelete(space);
      throw;
    }
    file_->vDelete(type);
    file_->vDelete(space);
  }
  KX_CATCH
}

void TH5General::vReadAttribute(const std::string& path, const std::string& name, TDataTyp typ, unsigned count,
                                void* values) const {
  KX_TRY {
    const auto o = _tOpen(path, true);
    const std::string real = o.p->_sFindAttr(name.c_str());
    if (real.empty()) KX_THROW(ulH5NotExist, sObjectNotExist(), (o.abs + ":" + name).c_str());
    const bool own = o.p->_pFindOpenChild(real, true) == nullptr;
    TH5Attribute* a = o.p->pOpenAttr(real.c_str());
    try {
      if (a->uGetVolume() != count) KX_THROW(ulH5Database, sOutOfRange(), (o.abs + ":" + name).c_str());
      a->vRead(values, typ);
    } catch (...) {
      if (own) o.p->vDelete(a);
      throw;
    }
    if (own) o.p->vDelete(a);
  }
  KX_CATCH
}

bool TH5General::bExistAttribute(const std::string& path, const std::string& name) const {
  KX_TRY {
    const auto o = _tOpen(path, false);
    return o.p && o.p->bExistAttr(name.c_str());
  }
  KX_CATCH
}

// --- deleting and names

void TH5General::vDeleteObject(const std::string& path) {
  KX_TRY {
    _vCheckWrite(path);
    const auto parts = _vSplit(path);
    if (parts.empty()) KX_THROW(ulH5Database, sBadArgument(), "/");
    TH5Directory* dir = _pDir(parts, parts.size() - 1, false);
    if (!dir) return;
    const std::string real = dir->_sFindMember(parts.back().c_str());
    if (!real.empty()) dir->vDeleteObject(real.c_str());
  }
  KX_CATCH
}

void TH5General::vCreateUniqueName(std::string& name) {
  const std::string sig = TSignatur().get();
  size_t k = 0;
  for (auto& c : name) {
    if (c != '#') continue;
    if (k >= sig.size()) break;
    c = sig[k++];
  }
}
