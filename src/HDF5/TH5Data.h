// Data sets and attributes: a typed array of a given extent.
#pragma once

#include "HDF5/TH5Type.h"

class TH5DataBasic : public TH5Handle {
 public:
  // The data space and type of the object, as child handles of this one.
  TH5Space* pGetDataspace();
  TH5Type* pGetDataType();
  // The atomic code of the stored type, eUnknownTyp for other types.
  TH5Type::TDataTyp eGetTyp() const;
  // Rank and dimensions without opening child handles.
  unsigned uGetRank() const;
  std::vector<unsigned long long> vGetDims() const;
  unsigned long long uGetVolume() const;
  // Size of one element of the stored type.
  unsigned uGetElementSize() const;

 protected:
  TH5DataBasic(TH5Handle* parent, hid_t id, std::string name) : TH5Handle(parent, id, std::move(name)) {}
  virtual hid_t _iOpenSpace() const = 0;  // new identifier, caller closes
  virtual hid_t _iOpenType() const = 0;   // new identifier, caller closes
  friend class TH5Directory;
};

class TH5Data : public TH5DataBasic {
 public:
  eH5ObjectTyp _eGetObjectTyp() const override { return eH5Data; }
  unsigned long long uGetObjectSize() const override;
  void _vReport(FILE* out, int indent) const override;

  // The whole data set. Without `memType` the memory layout is the stored
  // one with native numbers; with it, HDF5 converts (compound members are
  // matched by name).
  void vRead(void* buffer, const TH5Type* memType = nullptr) const;
  void vRead(void* buffer, TH5Type::TDataTyp memType) const;
  void vWrite(const void* buffer, const TH5Type* memType = nullptr);
  void vWrite(const void* buffer, TH5Type::TDataTyp memType);
  // A block: `count[i]` elements from `first[i]` in every dimension of the
  // data set. Without `memDims` the buffer holds the block densely; with it
  // the buffer is a dense array of `memDims` and the block lies at `memFirst`
  // in it. Raises ulH5Database for a block outside either extent.
  void vReadBlock(const unsigned long long* first, const unsigned long long* count, void* buffer,
                  const TH5Type* memType = nullptr, const unsigned long long* memDims = nullptr,
                  const unsigned long long* memFirst = nullptr) const;
  void vWriteBlock(const unsigned long long* first, const unsigned long long* count, const void* buffer,
                   const TH5Type* memType = nullptr, const unsigned long long* memDims = nullptr,
                   const unsigned long long* memFirst = nullptr);
  // Grows (or shrinks) an extendible data set to `sizes`, one per dimension.
  void vExtend(const unsigned long long* sizes);

 private:
  TH5Data(TH5Handle* parent, hid_t id, std::string name) : TH5DataBasic(parent, id, std::move(name)) {}
  hid_t _iOpenSpace() const override;
  hid_t _iOpenType() const override;
  hid_t _iMemType(const TH5Type* memType) const;
  // Selects the block in a new file space and builds the memory space.
  void _vSelect(const unsigned long long* first, const unsigned long long* count, const unsigned long long* memDims,
                const unsigned long long* memFirst, hid_t& fileSpace, hid_t& memSpace) const;
  friend class TH5Handle;
  friend class TH5Directory;
};

class TH5Attribute : public TH5DataBasic {
 public:
  eH5ObjectTyp _eGetObjectTyp() const override { return eH5Attribute; }
  unsigned long long uGetObjectSize() const override;
  void _vReport(FILE* out, int indent) const override;

  // The whole attribute in its stored layout with native numbers.
  void vRead(void* buffer) const;
  // Converted to `memType` (an atomic code, or a type handle).
  void vRead(void* buffer, TH5Type::TDataTyp memType) const;
  void vRead(void* buffer, const TH5Type* memType) const;
  void vWrite(const void* buffer);
  void vWrite(const void* buffer, TH5Type::TDataTyp memType);

 private:
  TH5Attribute(TH5Handle* parent, hid_t id, std::string name) : TH5DataBasic(parent, id, std::move(name)) {}
  hid_t _iOpenSpace() const override;
  hid_t _iOpenType() const override;
  friend class TH5Handle;
};
