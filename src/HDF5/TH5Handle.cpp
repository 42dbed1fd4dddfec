#include "HDF5/TH5Handle.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <map>
#include <type_traits>

#include "HDF5/H5Api.h"
#include "HDF5/TH5Data.h"
#include "HDF5/TH5Directory.h"
#include "HDF5/TH5File.h"
#include "kxexception/KxError.h"

static_assert(std::is_same_v<hsize_t, unsigned long long>, "sizes are passed as unsigned long long");

using namespace kx::h5;

namespace {
std::string lower(const std::string& s) {
  std::string r = s;
  for (auto& c : r) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return r;
}

herr_t collectLink(hid_t, const char* name, const H5L_info_t*, void* data) {
  static_cast<std::vector<std::string>*>(data)->emplace_back(name);
  return 0;
}

herr_t collectAttr(hid_t, const char* name, const H5A_info_t*, void* data) {
  static_cast<std::vector<std::string>*>(data)->emplace_back(name);
  return 0;
}

std::vector<std::string> attrNames(hid_t obj) {
  std::vector<std::string> names;
  aiterate(obj, collectAttr, &names);
  return names;
}
}  // namespace

// Member names of a group, read once per handle and then kept in step by
// every change made through this layer: sorted as HDF5 orders them, and by
// their lower-case form for lookups without regard to case. (Counting the
// links of an old-style group walks all of it, so the count is not checked
// on every lookup; a change made past this layer is seen once the handle is
// opened again.)
struct TH5Handle::TNames {
  std::vector<std::string> sorted;
  std::map<std::string, std::string> byLower;  // the first name of each lower-case form

  void vAdd(const std::string& name) {
    auto it = std::lower_bound(sorted.begin(), sorted.end(), name);
    if (it != sorted.end() && *it == name) return;
    sorted.insert(it, name);
    byLower.emplace(lower(name), name);
  }
  void vRemove(const std::string& name) {
    auto it = std::lower_bound(sorted.begin(), sorted.end(), name);
    if (it == sorted.end() || *it != name) return;
    sorted.erase(it);
    const std::string key = lower(name);
    auto bl = byLower.find(key);
    if (bl != byLower.end() && bl->second == name) {
      byLower.erase(bl);
      for (const auto& other : sorted)
        if (lower(other) == key) {
          byLower.emplace(key, other);
          break;
        }
    }
  }
};

TH5Handle::TH5Handle(TH5Handle* parent, hid_t id, std::string name)
    : parent_(parent), id_(id), name_(std::move(name)) {}

TH5Handle::~TH5Handle() {
  _vDeleteChilds();
  _vCloseId();
  if (parent_) parent_->_vChildDeleted(this);
}

const char* TH5Handle::cpGetObjectTypName(eH5ObjectTyp e) {
  switch (e) {
    case eH5NoObject: return "None";
    case eH5File: return "File";
    case eH5Directory: return "Directory";
    case eH5Data: return "Data";
    case eH5Attribute: return "Attribute";
    case eH5Atomic: return "Atomic";
    case eH5Compound: return "Compound";
    case eH5Space: return "Space";
    case eH5Link: return "Link";
    case eH5Other: return "Other";
  }
  return "Other";
}

const char* TH5Handle::cpGetObjectTypName() const { return cpGetObjectTypName(_eGetObjectTyp()); }

void TH5Handle::_vDeleteChilds() {
  while (!childs_.empty()) delete childs_.back();  // the child's destructor unlinks it
}

void TH5Handle::_vCloseChilds() {
  for (auto* c : childs_) c->vClose();
}

void TH5Handle::_vCloseId() {
  vCloseQuiet(id_);
  id_ = -1;
  names_.reset();
}

void TH5Handle::_vRetire() {
  vClose();
  name_.clear();
}

void TH5Handle::vClose() {
  _vCloseChilds();
  _vCloseId();
}

void TH5Handle::_vChildDeleted(TH5Handle* child) {
  auto it = std::find(childs_.begin(), childs_.end(), child);
  if (it != childs_.end()) childs_.erase(it);
}

void TH5Handle::vObjectDeleted(unsigned long long size) {
  if (parent_) parent_->vObjectDeleted(size);
}

void TH5Handle::vWriteAccess() {
  if (parent_) parent_->vWriteAccess();
}

unsigned long long TH5Handle::uGetObjectSize() const { return 0; }

void TH5Handle::_vCheckOpen() const {
  if (id_ < 0) KX_THROW(ulH5HandleClosed, sHandleClosed(), cpGetFullName());
}

hid_t TH5Handle::iGetId() const {
  _vCheckOpen();
  return id_;
}

TH5File* TH5Handle::pGetFile() const {
  const TH5Handle* h = this;
  while (h->parent_) h = h->parent_;
  return h->_eGetObjectTyp() == eH5File ? static_cast<TH5File*>(const_cast<TH5Handle*>(h)) : nullptr;
}

bool TH5Handle::bIsReadOnly() const {
  const TH5File* f = pGetFile();
  return f && f->bIsReadOnly();
}

void TH5Handle::_vCheckWritable() const {
  _vCheckOpen();
  const TH5File* f = pGetFile();
  if (!f || f->bIsReadOnly()) KX_THROW(ulH5ReadOnly, sReadOnly(), f ? f->cpGetFileName() : cpGetFullName());
}

bool TH5Handle::_bIsGroup() const { return id_ >= 0 && iType(id_) == H5I_GROUP; }

const TH5Handle::TNames& TH5Handle::_names() const {
  static const TNames none;
  _vCheckOpen();
  if (!_bIsGroup()) return none;
  if (!names_) {
    auto n = std::make_unique<TNames>();
    literate(id_, collectLink, &n->sorted);
    std::sort(n->sorted.begin(), n->sorted.end());
    for (const auto& s : n->sorted) n->byLower.emplace(lower(s), s);
    names_ = std::move(n);
  }
  return *names_;
}

std::string TH5Handle::_sFindMember(const char* name) const {
  if (!name || !*name) return {};
  const TNames& n = _names();
  const std::string s = name;
  if (std::binary_search(n.sorted.begin(), n.sorted.end(), s)) return s;
  auto it = n.byLower.find(lower(s));
  return it == n.byLower.end() ? std::string() : it->second;
}

void TH5Handle::_vMemberAdded(const std::string& name) {
  if (names_) names_->vAdd(name);
  if (TH5Handle* root = pGetFile()) root->_vForgetNamesOfOthers(this);
}

void TH5Handle::_vMemberRemoved(const std::string& name) {
  if (names_) names_->vRemove(name);
  if (TH5Handle* root = pGetFile()) root->_vForgetNamesOfOthers(this);
}

void TH5Handle::_vForgetNamesOfOthers(const TH5Handle* keep) {
  if (this != keep) names_.reset();
  for (auto* c : childs_) c->_vForgetNamesOfOthers(keep);
}

std::string TH5Handle::_sFindAttr(const char* name) const {
  if (!name || !*name) return {};
  const hid_t id = iGetId();
  if (aexists(id, name)) return name;
  for (const auto& a : attrNames(id))
    if (strcasecmp(a.c_str(), name) == 0) return a;
  return {};
}

TH5Handle* TH5Handle::_pFindOpenChild(const std::string& name, bool attribute) const {
  for (auto* c : childs_) {
    if (c->name_.empty() || c->name_ != name) continue;
    if (c->_eGetObjectTyp() == eH5Link) continue;  // a link leads on to its target
    const bool isAttr = c->_eGetObjectTyp() == eH5Attribute;
    if (isAttr == attribute) return c;
  }
  return nullptr;
}

bool TH5Handle::bExistChild(const char* name) const {
  KX_TRY { return !_sFindMember(name).empty(); }
  KX_CATCH
}

TH5Handle* TH5Handle::pOpenChild(const char* name) {
  KX_TRY {
    const std::string real = _sFindMember(name);
    if (real.empty())
      KX_THROW(ulH5NotExist, sObjectNotExist(), (std::string(cpGetFullName()) + "/" + (name ? name : "")).c_str());
    if (TH5Handle* open = _pFindOpenChild(real, false)) return open;
    TH5Id obj(oopenTry(id_, real.c_str()));
    if (!obj) {
      if (lgetType(id_, real.c_str()) == H5L_TYPE_SOFT) {
        // A link whose target is missing: its own handle.
        for (auto* c : childs_)
          if (c->_eGetObjectTyp() == eH5Link && c->name_ == real) return c;
        return _pAdopt(std::unique_ptr<TH5Link>(new TH5Link(this, real, lgetSoftTarget(id_, real.c_str()))));
      }
      vRaise("H5Oopen");
    }
    switch (iType(obj.get())) {
      case H5I_GROUP:
        return _pAdopt(std::unique_ptr<TH5Directory>(new TH5Directory(this, obj.release(), real)));
      case H5I_DATASET: return _pAdopt(std::unique_ptr<TH5Data>(new TH5Data(this, obj.release(), real)));
      case H5I_DATATYPE:
        if (tgetClass(obj.get()) == H5T_COMPOUND)
          return _pAdopt(std::unique_ptr<TH5Compound>(new TH5Compound(this, obj.release(), real)));
        return _pAdopt(std::unique_ptr<TH5Atomic>(new TH5Atomic(this, obj.release(), real)));
      default:
        KX_THROW(ulH5Database, sBadArgument(), (std::string(cpGetFullName()) + "/" + real).c_str());
    }
  }
  KX_CATCH
}

unsigned TH5Handle::uGetNumberNamedChilds() const {
  KX_TRY { return static_cast<unsigned>(_names().sorted.size()); }
  KX_CATCH
}

const char* TH5Handle::cpGetChildName(unsigned index) const {
  KX_TRY {
    const TNames& n = _names();
    if (index >= n.sorted.size()) return nullptr;
    text_ = n.sorted[index];
    return text_.c_str();
  }
  KX_CATCH
}

TH5Handle::eH5ObjectTyp TH5Handle::eGetObjectTyp(const char* name) const {
  KX_TRY {
    const std::string real = _sFindMember(name);
    if (real.empty()) return eH5NoObject;
    if (const TH5Handle* open = _pFindOpenChild(real, false)) return open->_eGetObjectTyp();
    TH5Id obj(oopenTry(id_, real.c_str()));
    if (!obj) return lgetType(id_, real.c_str()) == H5L_TYPE_SOFT ? eH5Link : eH5Other;
    switch (iType(obj.get())) {
      case H5I_GROUP: return eH5Directory;
      case H5I_DATASET: return eH5Data;
      case H5I_DATATYPE: {
        const H5T_class_t c = tgetClass(obj.get());
        if (c == H5T_COMPOUND) return eH5Compound;
        return (c == H5T_INTEGER || c == H5T_FLOAT) ? eH5Atomic : eH5Other;
      }
      default: return eH5Other;
    }
  }
  KX_CATCH
}

const char* TH5Handle::cpGetFullName() const {
  std::string full;
  if (!parent_) {
    full = "/";
  } else {
    full = parent_->cpGetFullName();
    if (_eGetObjectTyp() == eH5Attribute) {
      full += ":" + name_;
    } else if (name_.empty()) {
      full += std::string(" (") + cpGetObjectTypName() + ")";
    } else {
      if (full.back() != '/') full += '/';
      full += name_;
    }
  }
  text_ = full;
  return text_.c_str();
}

void TH5Handle::vRename(const char* newName) {
  KX_TRY {
    _vCheckWritable();
    if (!parent_ || !newName || !*newName || std::strchr(newName, '/'))
      KX_THROW(ulH5Database, sBadArgument(), newName ? newName : "");
    const hid_t pid = parent_->iGetId();
    if (_eGetObjectTyp() == eH5Attribute) {
      const std::string other = parent_->_sFindAttr(newName);
      if (!other.empty() && other != name_) KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), newName);
      arename(pid, name_.c_str(), newName);
    } else {
      if (name_.empty()) KX_THROW(ulH5Database, sBadArgument(), cpGetFullName());
      const std::string other = parent_->_sFindMember(newName);
      if (!other.empty() && other != name_) KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), newName);
      lmove(pid, name_.c_str(), newName);
      parent_->_vMemberRemoved(name_);
      parent_->_vMemberAdded(newName);
    }
    name_ = newName;
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Handle::vSetComment(const char* text) {
  KX_TRY {
    _vCheckWritable();
    osetComment(id_, text ? text : "");
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Handle::vGetComment(std::string& text) const {
  KX_TRY { text = ogetComment(iGetId()); }
  KX_CATCH
}

bool TH5Handle::bExistAttr(const char* name) const {
  KX_TRY { return !_sFindAttr(name).empty(); }
  KX_CATCH
}

unsigned TH5Handle::uGetNumberAttrs() const {
  KX_TRY { return static_cast<unsigned>(attrNames(iGetId()).size()); }
  KX_CATCH
}

std::string TH5Handle::sGetAttrName(unsigned index) const {
  KX_TRY {
    auto names = attrNames(iGetId());
    return index < names.size() ? names[index] : std::string();
  }
  KX_CATCH
}

TH5Attribute* TH5Handle::pOpenAttr(const char* name) {
  KX_TRY {
    const std::string real = _sFindAttr(name);
    if (real.empty())
      KX_THROW(ulH5NotExist, sObjectNotExist(), (std::string(cpGetFullName()) + ":" + (name ? name : "")).c_str());
    if (TH5Handle* open = _pFindOpenChild(real, true)) return static_cast<TH5Attribute*>(open);
    return _pAdopt(std::unique_ptr<TH5Attribute>(new TH5Attribute(this, aopen(id_, real.c_str()), real)));
  }
  KX_CATCH
}

TH5Attribute* TH5Handle::pCreateAttr(const char* name, const TH5Type* type, const TH5Space* space) {
  KX_TRY {
    _vCheckWritable();
    if (!name || !*name || !type || !space) KX_THROW(ulH5Database, sBadArgument(), "pCreateAttr");
    if (!_sFindAttr(name).empty())
      KX_THROW(ulH5ObjectInTheWay, sObjectInTheWay(), (std::string(cpGetFullName()) + ":" + name).c_str());
    TH5Id a(acreate(id_, name, type->iGetId(), space->iGetId()));
    auto* p = _pAdopt(std::unique_ptr<TH5Attribute>(new TH5Attribute(this, a.release(), name)));
    vWriteAccess();
    return p;
  }
  KX_CATCH
}

void TH5Handle::vDeleteAttr(const char* name) {
  KX_TRY {
    _vCheckWritable();
    const std::string real = _sFindAttr(name);
    if (real.empty())
      KX_THROW(ulH5NotExist, sObjectNotExist(), (std::string(cpGetFullName()) + ":" + (name ? name : "")).c_str());
    if (TH5Handle* open = _pFindOpenChild(real, true)) open->_vRetire();
    adelete(id_, real.c_str());
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Handle::vCopyAttributeFrom(const TH5Handle* source) {
  KX_TRY {
    _vCheckWritable();
    if (!source) KX_THROW(ulH5Database, sBadArgument(), "vCopyAttributeFrom");
    const hid_t src = source->iGetId();
    for (const auto& name : attrNames(src)) {
      TH5Id a(aopen(src, name.c_str()));
      TH5Id fileType(agetType(a.get()));
      TH5Id space(agetSpace(a.get()));
      TH5Id memType(memTypeOf(fileType.get()));
      std::vector<unsigned char> buf(tgetSize(memType.get()) * static_cast<size_t>(sgetVolume(space.get())));
      aread(a.get(), memType.get(), buf.data());
      const std::string existing = _sFindAttr(name.c_str());
      if (!existing.empty()) {
        if (TH5Handle* open = _pFindOpenChild(existing, true)) open->_vRetire();
        adelete(id_, existing.c_str());
      }
      TH5Id b(acreate(id_, name.c_str(), fileType.get(), space.get()));
      awrite(b.get(), memType.get(), buf.data());
    }
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Handle::vCopyCommentFrom(const TH5Handle* source) {
  KX_TRY {
    _vCheckWritable();
    if (!source) KX_THROW(ulH5Database, sBadArgument(), "vCopyCommentFrom");
    const std::string text = ogetComment(source->iGetId());
    if (!text.empty() || !ogetComment(id_).empty()) osetComment(id_, text.c_str());
    vWriteAccess();
  }
  KX_CATCH
}

int TH5Handle::iCountLinks() const {
  KX_TRY { return static_cast<int>(ogetRefCount(iGetId())); }
  KX_CATCH
}

const char* TH5Handle::cpGetNamedLinks() const {
  KX_TRY {
    std::string out;
    const TNames& n = _names();
    for (const auto& name : n.sorted)
      if (lgetType(id_, name.c_str()) == H5L_TYPE_SOFT) out += name + " -> " + lgetSoftTarget(id_, name.c_str()) + "\n";
    text_ = out;
    return text_.c_str();
  }
  KX_CATCH
}

void TH5Handle::vDelete() {
  if (parent_) parent_->vDelete(this);
}

void TH5Handle::vDelete(TH5Handle* child) {
  KX_TRY {
    if (!child || std::find(childs_.begin(), childs_.end(), child) == childs_.end())
      KX_THROW(ulH5Database, sBadArgument(), "vDelete");
    delete child;
  }
  KX_CATCH
}

void TH5Handle::vDeleteObject(const char* name) {
  KX_TRY {
    _vCheckWritable();
    const std::string real = _sFindMember(name);
    if (real.empty())
      KX_THROW(ulH5NotExist, sObjectNotExist(), (std::string(cpGetFullName()) + "/" + (name ? name : "")).c_str());
    TH5Handle* open = _pFindOpenChild(real, false);
    TH5Handle* child = open ? open : pOpenChild(real.c_str());
    const unsigned long long size = child->uGetObjectSize();
    if (open) {
      open->_vRetire();
    } else {
      delete child;
    }
    ldelete(id_, real.c_str());
    _vMemberRemoved(real);
    vObjectDeleted(size);
    vWriteAccess();
  }
  KX_CATCH
}

void TH5Handle::_vReport(FILE* out, int indent) const {
  std::fprintf(out, "%*s%s %s%s\n", indent, "", cpGetObjectTypName(), name_.empty() ? "-" : name_.c_str(),
               bIsOpen() ? "" : " (closed)");
}

void TH5Handle::_vReportChilds(FILE* out, int indent) const {
  for (const auto* c : childs_) c->vReport(out, indent);
}

void TH5Handle::vReport(FILE* out, int indent) const {
  KX_TRY {
    if (!out) return;
    _vReport(out, indent);
    _vReportChilds(out, indent + 2);
  }
  KX_CATCH
}
