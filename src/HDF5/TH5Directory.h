// TH5Directory: a group of a data base file. Members are looked up by name
// without regard to case; new members take the name as given.
#pragma once

#include "HDF5/TH5Data.h"
#include "HDF5/TH5Space.h"

class TH5Link;

class TH5Directory : public TH5Handle {
 public:
  eH5ObjectTyp _eGetObjectTyp() const override { return eH5Directory; }
  unsigned long long uGetObjectSize() const override;

  // A new group; ulH5ObjectInTheWay when the name is taken.
  TH5Directory* pCreateDir(const char* name);
  // An existing group; ulH5NotExist when missing or not a group.
  TH5Directory* pOpenDir(const char* name);
  // Transient types, children of this directory until given back.
  TH5Atomic* pCreateAtomic(TH5Type::TDataTyp typ);
  TH5Compound* pCreateCompound(unsigned size);
  // Types committed under a name in this directory.
  TH5Atomic* pOpenAtomic(const char* name);
  TH5Compound* pOpenCompound(const char* name);
  // A simple space; rank 0 is a scalar. `maxDims` may be null (fixed extent)
  // or hold TH5Space::uUnlimited.
  TH5Space* pCreateSpace(unsigned rank, const unsigned long long* dims, const unsigned long long* maxDims = nullptr);
  // A new data set. An extendible space makes it chunked.
  TH5Data* pCreateData(const char* name, const TH5Type* type, const TH5Space* space);
  TH5Data* pOpenData(const char* name);
  // A soft link `name` to the path `target`.
  TH5Link* pCreateLink(const char* target, const char* name);
  // Copies the data set `source` (of any file) here under `name`.
  TH5Data* pDataCopy(const TH5Data* source, const char* name);
  // Commits a copy of the compound `source` here under `name`.
  void vCompoundCopy(const TH5Compound* source, const char* name);
  // Copies the directory `source` with everything in it here under `name`.
  TH5Directory* pDeepCopy(const TH5Directory* source, const char* name);
  // Copies every member, the attributes and the comment of the root of
  // `source` into this directory.
  void vDuplicateFrom(TH5File* source);
  // Opens a handle for every member; with `recursive` down the whole tree.
  void vOpenChilds(bool recursive);

  void _vReport(FILE* out, int indent) const override;

 protected:
  TH5Directory(TH5Handle* parent, hid_t id, std::string name) : TH5Handle(parent, id, std::move(name)) {}
  void _vCheckNewName(const char* name) const;
  // Copies the object `source` (of any file) here under the new `name`.
  void _vCopyHere(const TH5Handle* source, const char* name);
  friend class TH5Handle;
  friend class TH5Link;
};

// A soft link in a directory: a name that stands for a path.
class TH5Link : public TH5Handle {
 public:
  eH5ObjectTyp _eGetObjectTyp() const override { return eH5Link; }
  // Makes the link `name` in the owning directory point at `target`.
  void vCreate(const char* target, const char* name);
  const std::string& sGetTarget() const { return target_; }
  void _vReport(FILE* out, int indent) const override;

 private:
  // A link has no identifier of its own: it is open while its directory is.
  TH5Link(TH5Handle* parent, std::string name, std::string target)
      : TH5Handle(parent, -1, std::move(name)), target_(std::move(target)) {}
  std::string target_;
  friend class TH5Handle;
  friend class TH5Directory;
};
