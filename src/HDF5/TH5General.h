// TH5General: the path-based face of a data base file, through which all
// storage of pictures, tables, texts, object lists and ini texts goes.
//
// Paths: "\" counts as "/"; a trailing "/" is dropped; a path that begins
// with "/" is absolute, any other is relative to the current directory
// (which starts as "/"); "." is skipped and ".." goes up. Names compare
// without regard to case.
//
// A facade made read-only (or on a file opened read-only) refuses every write
// with ulH5ReadOnly (0xe002e00e). The facade is a light value: copies share
// the file and each has its own current directory. It owns nothing; the file
// must outlive it.
//
// Thread safety: none. Debian's HDF5 is the serial build, which is not thread
// safe; the data base, its files and every facade on them must be used from
// one thread at a time (and no other thread may call HDF5 meanwhile).
#pragma once

#include <string>
#include <vector>

#include "HDF5/TH5File.h"

class TH5General {
 public:
  using TDataTyp = TH5Type::TDataTyp;

  // A record layout: element size and members.
  class TCompound {
   public:
    class TItem {
     public:
      TItem() = default;
      TItem(TDataTyp typ, std::string name, unsigned offset = 0, unsigned dimCount = 0, unsigned d0 = 0,
            unsigned d1 = 0, unsigned d2 = 0, unsigned d3 = 0);
      // The member's bytes: the atomic size times each dimension.
      unsigned uGetSize() const;
      bool operator==(const TItem&) const = default;

      TDataTyp eTyp = TH5Type::eUnknownTyp;
      std::string sName;
      unsigned uOffset = 0;
      unsigned uDimCount = 0;  // 0 (a scalar) to 4
      unsigned uDims[4] = {0, 0, 0, 0};
    };

    TCompound() = default;
    explicit TCompound(unsigned elementSize) : uElementSize(elementSize) {}
    // Appends a member (at `offset`; vCalculateOffsets may lay them out).
    void vAdd(TDataTyp typ, const char* name, unsigned offset = 0, unsigned dimCount = 0, unsigned d0 = 0,
              unsigned d1 = 0, unsigned d2 = 0, unsigned d3 = 0);
    // Offsets in list order without gaps; the element size becomes the sum.
    void vCalculateOffsets();
    bool operator==(const TCompound&) const = default;

    unsigned uElementSize = 0;
    std::vector<TItem> vItems;
  };

  TH5General(TH5File* file, bool readOnly);
  TH5General(const TH5General&) = default;
  TH5General& operator=(const TH5General&) = default;

  TH5File* pGetFile() const { return file_; }
  bool bIsReadOnly() const { return readOnly_; }

  // --- directories
  // Absolute paths only (ulH5NoAbsolutePath); missing directories on the way
  // are made; an existing last one raises "Directory already exist".
  void vCreateDirectory(const std::string& path);
  // ulH5NotExist when the directory is missing.
  void vChangeDirectory(const std::string& path);
  std::string sGetCurrentDirectory() const { return current_; }
  // The absolute, normalised form of a path.
  std::string sGetAbsolutePath(const std::string& path) const;

  // --- look and list
  bool bExistObject(const std::string& path) const;
  bool bExistDir(const std::string& path) const;
  TH5Handle::eH5ObjectTyp eGetObjectTyp(const std::string& path) const;
  // Members of the directory `path`; ulH5NotExist when it is missing.
  unsigned uGetObjectNumber(const std::string& path) const;
  std::string sGetObjectName(const std::string& path, unsigned index) const;
  // Appends the member names (with the directory in front when `withPath`).
  void vGetDirectoryContent(const std::string& path, bool withPath, std::vector<std::string>& names) const;

  // --- a data set's shape and type (ulH5NotExist when missing)
  unsigned uGetDimensions(const std::string& path) const;
  unsigned long long uGetDimSize(const std::string& path, unsigned dimension) const;
  bool bIsSimpleDataTyp(const std::string& path) const;
  unsigned uGetDataTypSize(const std::string& path) const;
  TDataTyp eGetSimpleDataTyp(const std::string& path) const;
  // The stored record as a TCompound (ulH5Database when it is no compound).
  TCompound eGetCompoundDataTyp(const std::string& path) const;

  // --- creating. An existing data set of the same type and extent stays,
  // contents and all; any other object of the name is deleted when
  // `overwrite`, else ulH5ObjectInTheWay. Missing directories are made.
  void vCreate0(const TCompound& compound, const std::string& path, bool overwrite);
  void vCreate1(unsigned long long count, TDataTyp typ, const std::string& path, bool overwrite);
  void vCreate1(unsigned long long count, const TCompound& compound, const std::string& path, bool overwrite);
  void vCreate2(unsigned long long lines, unsigned long long columns, TDataTyp typ, const std::string& path,
                bool overwrite);
  void vCreate2(unsigned long long lines, unsigned long long columns, const TCompound& compound,
                const std::string& path, bool overwrite);

  // --- reading. Memory holds the stored layout with native numbers unless a
  // compound is given (members are then matched by name).
  void vRead(const std::string& path, void* buffer) const;
  void vRead(const std::string& path, void* buffer, const TCompound& compound) const;
  // `count` elements from element `firstInFile` of a 1-D data set into the
  // buffer from element `firstInMemory` on.
  void vRead1(unsigned long long count, unsigned long long firstInFile, unsigned long long firstInMemory,
              const std::string& path, void* buffer) const;
  // A block of `lines` x `columns` from (`fileLine`, `fileColumn`) of a 2-D
  // data set into a dense buffer of (`memLine` + lines) x (`memColumn` +
  // columns) elements, at (`memLine`, `memColumn`).
  void vRead2(unsigned long long lines, unsigned long long columns, unsigned long long fileLine,
              unsigned long long fileColumn, unsigned long long memLine, unsigned long long memColumn,
              const std::string& path, void* buffer) const;

  // --- writing, the same way round
  void vWrite(const void* buffer, const std::string& path);
  void vWrite(const void* buffer, const std::string& path, const TCompound& compound);
  void vWrite1(unsigned long long count, unsigned long long firstInFile, unsigned long long firstInMemory,
               const void* buffer, const std::string& path);
  void vWrite2(unsigned long long lines, unsigned long long columns, unsigned long long fileLine,
               unsigned long long fileColumn, unsigned long long memLine, unsigned long long memColumn,
               const void* buffer, const std::string& path);

  // --- attributes of the object at `path`: `count` values of `typ`, a
  // scalar for count 1; an existing attribute of the name is replaced.
  void vWriteAttribute(const std::string& path, const std::string& name, TDataTyp typ, unsigned count,
                       const void* values);
  // Reads `count` values converted to `typ`; ulH5NotExist when missing,
  // ulH5Database when the attribute holds another number of values.
  void vReadAttribute(const std::string& path, const std::string& name, TDataTyp typ, unsigned count,
                      void* values) const;
  bool bExistAttribute(const std::string& path, const std::string& name) const;

  // Deletes the object if it is there; a missing one is no error.
  void vDeleteObject(const std::string& path);
  // Fills each "#" of `name`, from the start, with the next character of a
  // new signature, until either runs out.
  static void vCreateUniqueName(std::string& name);

 private:
  struct TOpenObject;  // an object opened for one operation
  std::vector<std::string> _vSplit(const std::string& path) const;
  // The directory at the first `count` components; null when missing (or,
  // with `create`, made on the way).
  TH5Directory* _pDir(const std::vector<std::string>& parts, size_t count, bool create) const;
  // The object at `path`; with `mustExist` ulH5NotExist when missing, else
  // an empty result.
  TOpenObject _tOpen(const std::string& path, bool mustExist) const;
  // The data set at `path` (ulH5NotExist, or ulH5Database for another kind).
  TOpenObject _tOpenData(const std::string& path) const;
  void _vCheckWrite(const std::string& path) const;
  // True when a data set of this type and extent stands at `name`.
  bool _bExistThisObject(TH5Directory* dir, const std::string& name, const TH5Type* type,
                         const std::vector<unsigned long long>& dims) const;
  TH5Type* _pMakeType(TH5Directory* owner, TDataTyp typ, const TCompound* compound) const;
  void _vCreate(const std::vector<unsigned long long>& dims, TDataTyp typ, const TCompound* compound,
                const std::string& path, bool overwrite);
  void _vCreateAll(const std::vector<std::string>& parts, size_t count) const;

  TH5File* file_;
  bool readOnly_;
  std::string current_ = "/";
};
