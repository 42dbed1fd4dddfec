#include "HDF5/TH5Directory.h"

#include <cstring>
#include <vector>

#include "HDF5/H5Api.h"
#include "HDF5/TH5File.h"
#include "kxexception/KxError.h"

using namespace kx::h5;

namespace {
// Deeper than this, a tree of hard links is taken to loop.
constexpr int kMaxDepth = 64;

herr_t collectName(hid_t, const char* name, const H5L_info_t*, void* data) {
  static_cast<std::vector<std::string>*>(data)->emplace_back(name);
  return 0;
}

// The member `name` of `dir` as a T when its handle is of kind `typ`, else
// the error `code` with `text` and the member's full name.
template <class T>
T* openAs(TH5Directory* dir, const char* name, TH5Handle::eH5ObjectTyp typ, unsigned long code, const char* text) {
  TH5Handle* h = dir->pOpenChild(name);
  if (h->_eGetObjectTyp() != typ)
    KX_THROW(code, text, (std::string(dir->cpGetFullName()) + "/" + (name ? name : "")).c_str());
  return static_cast<T*>(h);
}

// Bytes of data below a group: data sets and attributes, following hard
// links only.
unsigned long long storageBelow(hid_t group, int depth) {
  if (depth > kMaxDepth) return 0;
  std::vector<std::string> names;
  literate(group, collectName, &names);
  unsigned long long sum = 0;
  for (const auto& n : names) {
    if (lgetType(group, n.c_str()) != H5L_TYPE_HARD) continue;
    TH5Id obj(oopenTry(group, n.c_str()));
    if (!obj) continue;
    switch (iType(obj.get())) {
      case H5I_DATASET: sum += dgetStorageSize(obj.get()); break;
      case H5I_GROUP: sum += storageBelow(obj.get(), depth + 1); break;
      default: break;
    }
  }
  return sum;
}
}  // namespace

unsigned long long TH5Directory::uGetObjectSize() const {
  KX_TRY { return storageBelow(iGetId(), 0); }
  KX_CATCH
}

void TH5Directory::_vCheckNewName(const char* name) const {
  _vCheckWritable();
  if (!name || !*name || std::strchr(name, '/') || std::strcmp(name, ".") == 0)
    KX_THROW(ulH5Database, sBadArgument(), name ? name : "");
  if (!_sFindMember(name).empty())
    KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), (std::string(cpGetFullName()) + "/" + name).c_str());
}

TH5Directory* TH5Directory::pCreateDir(const char* name) {
  KX_TRY {
    _vCheckNewName(name);
    TH5Id g(gcreate(id_, name));
    auto* d = _pAdopt(std::unique_ptr<TH5Directory>(new TH5Directory(this, g.release(), name)));
    _vMemberAdded(name);
    vWriteAccess();
    return d;
  }
  KX_CATCH
}

TH5Directory* TH5Directory::pOpenDir(const char* name) {
  KX_TRY { return openAs<TH5Directory>(this, name, eH5Directory, ulH5NotExist, sDirNotExist()); }
  KX_CATCH
}

TH5Atomic* TH5Directory::pCreateAtomic(TH5Type::TDataTyp typ) {
  KX_TRY {
    _vCheckOpen();
    const hid_t native = TH5Type::iGetNativeTyp(typ);
    if (native < 0) KX_THROW(ulH5Database, sBadArgument(), TH5Type::cpGetTypName(typ));
    TH5Id t(tcopy(native));
    return _pAdopt(std::unique_ptr<TH5Atomic>(new TH5Atomic(this, t.release(), std::string())));
  }
  KX_CATCH
}

TH5Compound* TH5Directory::pCreateCompound(unsigned size) {
  KX_TRY {
    _vCheckOpen();
    if (size == 0) KX_THROW(ulH5Database, sBadArgument(), "pCreateCompound(0)");
    TH5Id t(tcreateCompound(size));
    return _pAdopt(std::unique_ptr<TH5Compound>(new TH5Compound(this, t.release(), std::string())));
  }
  KX_CATCH
}

TH5Atomic* TH5Directory::pOpenAtomic(const char* name) {
  KX_TRY { return openAs<TH5Atomic>(this, name, eH5Atomic, ulH5NotExist, sObjectNotExist()); }
  KX_CATCH
}

TH5Compound* TH5Directory::pOpenCompound(const char* name) {
  KX_TRY { return openAs<TH5Compound>(this, name, eH5Compound, ulH5NotExist, sObjectNotExist()); }
  KX_CATCH
}

TH5Space* TH5Directory::pCreateSpace(unsigned rank, const unsigned long long* dims,
                                     const unsigned long long* maxDims) {
  KX_TRY {
    _vCheckOpen();
    if (rank > 32 || (rank > 0 && !dims)) KX_THROW(ulH5Database, sBadArgument(), "pCreateSpace");
    TH5Id s(rank == 0 ? screateScalar() : screateSimple(static_cast<int>(rank), dims, maxDims));
    return _pAdopt(std::unique_ptr<TH5Space>(new TH5Space(this, s.release())));
  }
  KX_CATCH
}

TH5Data* TH5Directory::pCreateData(const char* name, const TH5Type* type, const TH5Space* space) {
  KX_TRY {
    _vCheckNewName(name);
    if (!type || !space) KX_THROW(ulH5Database, sBadArgument(), name);
    TH5Id dcpl;
    if (space->bIsExtendible()) {
      // Chunks of the current extent (at least 1), halved along the longest
      // side while one chunk exceeds 1 MiB.
      const unsigned rank = space->uGetDim();
      std::vector<hsize_t> chunk(rank);
      space->vGetDims(chunk.data());
      for (auto& c : chunk)
        if (c == 0) c = 1;
      const unsigned long long element = type->uGetSize();
      auto bytes = [&] {
        unsigned long long b = element;
        for (auto c : chunk) b *= c;
        return b;
      };
      while (bytes() > (1ULL << 20)) {
        size_t longest = 0;
        for (size_t i = 1; i < chunk.size(); ++i)
          if (chunk[i] > chunk[longest]) longest = i;
        if (chunk[longest] == 1) break;
        chunk[longest] = (chunk[longest] + 1) / 2;
      }
      dcpl = TH5Id(pcreate(H5P_DATASET_CREATE));
      psetChunk(dcpl.get(), static_cast<int>(rank), chunk.data());
    }
    TH5Id d(dcreate(id_, name, type->iGetId(), space->iGetId(), dcpl ? dcpl.get() : H5P_DEFAULT));
    auto* p = _pAdopt(std::unique_ptr<TH5Data>(new TH5Data(this, d.release(), name)));
    _vMemberAdded(name);
    vWriteAccess();
    return p;
  }
  KX_CATCH
}

TH5Data* TH5Directory::pOpenData(const char* name) {
  KX_TRY { return openAs<TH5Data>(this, name, eH5Data, ulH5Database, sNotADataset()); }
  KX_CATCH
}

TH5Link* TH5Directory::pCreateLink(const char* target, const char* name) {
  KX_TRY {
    auto* link = _pAdopt(std::unique_ptr<TH5Link>(new TH5Link(this, std::string(), std::string())));
    try {
      link->vCreate(target, name);
    } catch (...) {
      delete link;
      throw;
    }
    return link;
  }
  KX_CATCH
}

void TH5Directory::_vCopyHere(const TH5Handle* source, const char* name) {
  _vCheckNewName(name);
  if (!source) KX_THROW(ulH5Database, sBadArgument(), name);
  ocopy(source->iGetId(), ".", id_, name);
  _vMemberAdded(name);
  vWriteAccess();
}

TH5Data* TH5Directory::pDataCopy(const TH5Data* source, const char* name) {
  KX_TRY {
    _vCopyHere(source, name);
    return pOpenData(name);
  }
  KX_CATCH
}

void TH5Directory::vCompoundCopy(const TH5Compound* source, const char* name) {
  KX_TRY {
    _vCheckNewName(name);
    if (!source) KX_THROW(ulH5Database, sBadArgument(), name);
    TH5Id t(tcopy(source->iGetId()));
    tcommit(id_, name, t.get());
    _vMemberAdded(name);
    vWriteAccess();
  }
  KX_CATCH
}

TH5Directory* TH5Directory::pDeepCopy(const TH5Directory* source, const char* name) {
  KX_TRY {
    _vCopyHere(source, name);
    return pOpenDir(name);
  }
  KX_CATCH
}

void TH5Directory::vDuplicateFrom(TH5File* source) {
  KX_TRY {
    _vCheckWritable();
    if (!source || source == pGetFile()) KX_THROW(ulH5Database, sBadArgument(), "vDuplicateFrom");
    const hid_t src = source->iGetId();
    std::vector<std::string> names;
    literate(src, collectName, &names);
    for (const auto& n : names) {
      if (!_sFindMember(n.c_str()).empty())
        KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), (std::string(cpGetFullName()) + "/" + n).c_str());
      // A soft link stays a link; everything else is copied with its tree.
      if (lgetType(src, n.c_str()) == H5L_TYPE_SOFT)
        lcreateSoft(lgetSoftTarget(src, n.c_str()).c_str(), id_, n.c_str());
      else
        ocopy(src, n.c_str(), id_, n.c_str());
      _vMemberAdded(n);
    }
    vCopyAttributeFrom(source);
    vCopyCommentFrom(source);
    vWriteAccess();
  }
  KX_CATCH
}

namespace {
void openBelow(TH5Directory* dir, int depth) {
  for (unsigned i = 0, n = dir->uGetNumberNamedChilds(); i < n; ++i) {
    const std::string name = dir->cpGetChildName(i);
    TH5Handle* h = dir->pOpenChild(name.c_str());
    // Soft links may point upwards: only hard members are descended into.
    if (h->_eGetObjectTyp() == TH5Handle::eH5Directory && depth < kMaxDepth &&
        lgetType(dir->iGetId(), name.c_str()) == H5L_TYPE_HARD)
      openBelow(static_cast<TH5Directory*>(h), depth + 1);
  }
}
}  // namespace

void TH5Directory::vOpenChilds(bool recursive) {
  KX_TRY {
    _vCheckOpen();
    if (recursive) {
      openBelow(this, 0);
    } else {
      for (unsigned i = 0, n = uGetNumberNamedChilds(); i < n; ++i) pOpenChild(std::string(cpGetChildName(i)).c_str());
    }
  }
  KX_CATCH
}

void TH5Directory::_vReport(FILE* out, int indent) const {
  if (!bIsOpen()) return TH5Handle::_vReport(out, indent);
  std::fprintf(out, "%*sDirectory %s (%u members)\n", indent, "", name_.c_str(), uGetNumberNamedChilds());
}

// --- TH5Link

void TH5Link::vCreate(const char* target, const char* name) {
  KX_TRY {
    if (!parent_ || parent_->_eGetObjectTyp() == eH5Attribute || !target || !*target)
      KX_THROW(ulH5Database, sBadArgument(), "TH5Link::vCreate");
    if (!name_.empty()) KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), cpGetFullName());
    auto* dir = static_cast<TH5Directory*>(parent_);
    dir->_vCheckNewName(name);
    lcreateSoft(target, dir->iGetId(), name);
    name_ = name;
    target_ = target;
    dir->_vMemberAdded(name_);
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Link::_vReport(FILE* out, int indent) const {
  std::fprintf(out, "%*sLink %s -> %s\n", indent, "", name_.c_str(), target_.c_str());
}
