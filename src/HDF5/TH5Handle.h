// TH5Handle: a node of the tree of objects open in one data base file.
//
// Every object of the layer that has an HDF5 identifier is a handle. A handle
// owns its children: the handles opened through it (members of a directory,
// attributes, data spaces and types asked for). Whoever opens a handle holds a
// pointer that stays valid until the handle is given back with
// parent->vDelete(child) (or child->vDelete()), or until the parent goes.
// Closing or deleting a handle first closes its children, deepest first, so no
// identifier outlives the one it was opened from, and every identifier is
// closed exactly once, whatever order the caller gives handles back in.
//
// vClose() closes the identifiers but keeps the objects, so pointers held by a
// caller stay valid; using a closed handle raises ulH5HandleClosed.
//
// Names of members compare without regard to case; the name as stored in the
// file is what cpGetName and cpGetChildName give. A directory handle reads
// its member names once and keeps them in step with every change made
// through this layer; a change made past it (raw HDF5 calls on the same
// file) is seen after the handle is closed and opened again.
//
// Not thread safe: the serial HDF5 library is not, and nothing here is locked.
// Use one data base from one thread at a time.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

// The HDF5 identifier type, as hdf5.h declares it (checked in TH5Handle.cpp).
typedef int64_t hid_t;

class TH5File;
class TH5Attribute;
class TH5Type;
class TH5Space;

class TH5Handle {
 public:
  // What a handle, or a member named in a directory, is.
  enum eH5ObjectTyp {
    eH5NoObject = 0,  // nothing of that name
    eH5File = 1,
    eH5Directory = 2,
    eH5Data = 3,
    eH5Attribute = 4,
    eH5Atomic = 5,    // an atomic type, committed under a name or not
    eH5Compound = 6,  // a compound type, committed under a name or not
    eH5Space = 7,
    eH5Link = 8,      // a soft link whose target does not exist
    eH5Other = 9      // a type of another class, or an object of an unknown kind
  };

  virtual ~TH5Handle();
  TH5Handle(const TH5Handle&) = delete;
  TH5Handle& operator=(const TH5Handle&) = delete;

  virtual eH5ObjectTyp _eGetObjectTyp() const = 0;
  virtual const char* cpGetObjectTypName() const;
  static const char* cpGetObjectTypName(eH5ObjectTyp e);
  // Closes the children (they stay, closed) and then the own identifier.
  virtual void vClose();
  // An object of `size` bytes was deleted below this handle: passed up to the
  // file, whose bootblock counts it.
  virtual void vObjectDeleted(unsigned long long size);
  // Something was written below this handle: passed up to the file, whose
  // bootblock notes the time.
  virtual void vWriteAccess();
  virtual void _vReport(FILE* out, int indent) const;
  virtual void _vReportChilds(FILE* out, int indent) const;
  // Bytes the object takes in the file: data storage for a data set or an
  // attribute, the sum of the members for a directory, 0 otherwise.
  virtual unsigned long long uGetObjectSize() const;

  bool bIsOpen() const { return id_ >= 0; }
  // The identifier; raises ulH5HandleClosed when closed.
  hid_t iGetId() const;
  TH5Handle* pGetParent() const { return parent_; }
  // The file this handle belongs to (itself for a file).
  TH5File* pGetFile() const;
  bool bIsReadOnly() const;

  // Members of a directory (none for other handles).
  bool bExistChild(const char* name) const;
  // The handle of a member: an open one of that name if there is one, else it
  // is opened. Raises ulH5NotExist for a missing member.
  TH5Handle* pOpenChild(const char* name);
  unsigned uGetNumberNamedChilds() const;
  // The name of a member by index, in the order of names; null past the end.
  // The text lives until the next call of a cp... function of this handle.
  const char* cpGetChildName(unsigned index) const;
  eH5ObjectTyp eGetObjectTyp(const char* name) const;

  const char* cpGetName() const { return name_.c_str(); }
  // "/dir/data"; an attribute adds ":name" to its owner's name.
  const char* cpGetFullName() const;
  // Renames this member within its directory, or this attribute.
  void vRename(const char* newName);
  void vSetComment(const char* text);
  void vGetComment(std::string& text) const;

  // Attributes of this object. pOpenAttr raises ulH5NotExist when missing.
  bool bExistAttr(const char* name) const;
  unsigned uGetNumberAttrs() const;
  std::string sGetAttrName(unsigned index) const;
  TH5Attribute* pOpenAttr(const char* name);
  TH5Attribute* pCreateAttr(const char* name, const TH5Type* type, const TH5Space* space);
  void vDeleteAttr(const char* name);
  // Copies every attribute of `source`, replacing attributes of the same name.
  void vCopyAttributeFrom(const TH5Handle* source);
  void vCopyCommentFrom(const TH5Handle* source);

  // How many hard links lead to this object.
  int iCountLinks() const;
  // The soft links of this directory, one "name -> target" per line.
  const char* cpGetNamedLinks() const;

  // Gives this handle back to its parent (closes and frees it; the object in
  // the file stays). For a file: closes it in the data base.
  virtual void vDelete();
  // Gives a child handle back: closes and frees it.
  void vDelete(TH5Handle* child);
  // Deletes the member `name` from the file (its open handle first); counts
  // it in the bootblock. A missing member raises ulH5NotExist.
  void vDeleteObject(const char* name);

  // This handle and everything open below it as text.
  void vReport(FILE* out, int indent) const;

  // Open children, in the order they were opened.
  const std::vector<TH5Handle*>& vGetOpenChilds() const { return childs_; }

 protected:
  TH5Handle(TH5Handle* parent, hid_t id, std::string name);
  friend class TH5Type;
  friend class TH5Compound;
  friend class TH5DataBasic;
  friend class TH5Data;
  friend class TH5Attribute;
  friend class TH5Directory;
  friend class TH5Link;
  friend class TH5File;
  friend class TH5General;
  // Called by a child that is being deleted.
  virtual void _vChildDeleted(TH5Handle* child);
  void _vCheckOpen() const;
  void _vCheckWritable() const;
  bool _bIsGroup() const;
  // The name of the member as stored, found without regard to case; empty
  // when there is none.
  std::string _sFindMember(const char* name) const;
  std::string _sFindAttr(const char* name) const;
  // Keeps the member names known to this directory in step with a change made
  // through this handle.
  void _vMemberAdded(const std::string& name);
  void _vMemberRemoved(const std::string& name);
  // Drops the member names kept by every directory handle of the file but
  // `keep`: a group reached by two names (a soft link and its target) has a
  // handle for each, and a change through one must be seen through the other.
  void _vForgetNamesOfOthers(const TH5Handle* keep);
  // An open child that is a member (or an attribute) of this name.
  TH5Handle* _pFindOpenChild(const std::string& name, bool attribute) const;
  template <class T>
  T* _pAdopt(std::unique_ptr<T> child) {
    T* p = child.release();
    childs_.push_back(p);
    return p;
  }
  // Closes and frees every child, last opened first.
  void _vDeleteChilds();
  // Closes every child, keeping them.
  void _vCloseChilds();
  // Closes the own identifier.
  void _vCloseId();
  // The object behind an open handle was deleted: whoever holds the handle
  // keeps a valid pointer to a closed, nameless handle.
  void _vRetire();

  TH5Handle* parent_;
  std::vector<TH5Handle*> childs_;
  hid_t id_;
  std::string name_;
  mutable std::string text_;

 private:
  struct TNames;
  const TNames& _names() const;
  mutable std::unique_ptr<TNames> names_;  // member names of a directory
};
