// Data types of a data base: atomic numbers and compound records.
//
// TDataTyp is the code of an atomic type as files and records of the system
// store it. "unsigned long" and "signed long" are 4 bytes wide in every file,
// whatever a long is on the machine.
#pragma once

#include <string>

#include "HDF5/TH5Handle.h"

class TH5Type : public TH5Handle {
 public:
  enum TDataTyp {
    eUnknownTyp = 0,
    eUnsignedChar = 1,
    eSignedChar = 2,
    eUnsignedShort = 3,
    eSignedShort = 4,
    eUnsignedLong = 5,  // 4 bytes
    eSignedLong = 6,    // 4 bytes
    eFloat = 7,
    eDouble = 8
  };

  // Commits the type to the file under `name` in the owning directory.
  void vCommit(const char* name);
  bool bCommitted() const;
  // Size of one element in bytes.
  unsigned uGetSize() const;
  // The HDF5 class of the type (H5T_class_t).
  int iGetClass() const;
  bool bIsAtomic() const;
  // The code of an atomic type; eUnknownTyp for a compound or another class.
  TDataTyp eGetTyp() const;

  // "unknown typ", "unsigned char", "signed char", "unsigned short",
  // "signed short", "unsigned long", "signed long", "float", "double".
  static const char* cpGetTypName(TDataTyp e);
  // The code of a name as cpGetTypName gives it; eUnknownTyp otherwise.
  static TDataTyp eGetTypFromString(const char* name);
  // 1, 1, 2, 2, 4, 4, 4, 8 bytes for codes 1 to 8; 0 otherwise.
  static unsigned uGetTypSize(TDataTyp e);
  // The HDF5 native type of a code (not to be closed); negative for code 0.
  static hid_t iGetNativeTyp(TDataTyp e);
  // The code of an HDF5 type: integers by size and sign, floats by size.
  static TDataTyp eGetTypFromHdf(hid_t type);

  unsigned long long uGetObjectSize() const override;
  void _vReport(FILE* out, int indent) const override;

 protected:
  TH5Type(TH5Handle* parent, hid_t id, std::string name) : TH5Handle(parent, id, std::move(name)) {}
  friend class TH5Handle;
  friend class TH5Directory;
  friend class TH5DataBasic;
};

class TH5Atomic : public TH5Type {
 public:
  eH5ObjectTyp _eGetObjectTyp() const override { return eH5Atomic; }

 private:
  TH5Atomic(TH5Handle* parent, hid_t id, std::string name) : TH5Type(parent, id, std::move(name)) {}
  friend class TH5Handle;
  friend class TH5Directory;
  friend class TH5DataBasic;
};

class TH5Compound : public TH5Type {
 public:
  eH5ObjectTyp _eGetObjectTyp() const override { return eH5Compound; }

  // Adds a member at `offset`: a scalar of `typ`, or an array of it when
  // `dimCount` (at most 4) dimensions are given. A committed type cannot
  // change any more.
  void vInsertMember(const char* name, unsigned offset, TDataTyp typ, unsigned dimCount = 0,
                     const unsigned* dims = nullptr);

  unsigned uGetMembers() const;
  std::string cpGetMemberName(unsigned index) const;
  // Number of array dimensions of a member, 0 for a scalar.
  unsigned uGetMemberDim(unsigned index) const;
  unsigned uGetMemberOffset(unsigned index) const;
  // The atomic code of the member (of its elements for an array).
  TDataTyp eGetMemberType(unsigned index) const;
  // Fills up to 4 dimensions (0 for those the member does not have).
  void vGetMemberDims(unsigned index, unsigned dims[4]) const;
  // Elements in the member: the product of its dimensions, 1 for a scalar.
  unsigned uGetMemberVolume(unsigned index) const;
  // Writes a description of the record as text: one header line
  // "Compound <name> size <n> members <m>", then one line per member
  // "<offset> <name> <type name>[d1][d2]...".
  void vWriteFile(const char* fileName) const;
  void vWriteFile(FILE* out) const;
  // Makes this handle a transient copy of another compound.
  void vTakeContentFrom(const TH5Compound* source);

 private:
  TH5Compound(TH5Handle* parent, hid_t id, std::string name) : TH5Type(parent, id, std::move(name)) {}
  friend class TH5Handle;
  friend class TH5Directory;
  friend class TH5DataBasic;
};
