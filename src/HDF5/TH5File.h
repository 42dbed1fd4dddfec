// TH5File: an open data base file; as a directory it is the root group "/".
// Files are made and opened only through TH5Database, which keeps them under
// their alias until vCloseFile.
#pragma once

#include <memory>
#include <string>

#include "HDF5/TH5Bootblock.h"
#include "HDF5/TH5Directory.h"

class TH5Database;

class TH5File : public TH5Directory {
 public:
  ~TH5File() override;
  eH5ObjectTyp _eGetObjectTyp() const override { return eH5File; }

  bool bIsReadOnly() const { return readOnly_; }
  const char* cpGetFileName() const { return fileName_.c_str(); }
  const char* cpGetAlias() const { return alias_.c_str(); }
  TH5Bootblock* pGetBootblock() const { return bootblock_.get(); }

  // Closes every handle of the file, the root group and the file; the object
  // stays in the data base's list, closed, until vCloseFile.
  void vClose() override;
  // Writes buffered data of HDF5 to the disk.
  void vFlush();
  // Rewrites the file through a temporary copy so that the space of deleted
  // objects is given back, and resets the bootblock's deletion counters.
  // When another process holds the file open, the file stays as it was. The
  // file is open again afterwards, without child handles: handles opened
  // before stay valid pointers but are closed.
  void vCompress();

  void vObjectDeleted(unsigned long long size) override;
  void vWriteAccess() override;
  unsigned long long uGetObjectSize() const override;
  void _vReport(FILE* out, int indent) const override;
  using TH5Handle::vDelete;
  // Closes the file in the data base.
  void vDelete() override;

 private:
  friend class TH5Database;
  TH5File(std::string fileName, std::string alias, bool readOnly);
  // Makes a new file (1024-byte user block) or opens one; raises with the
  // texts of the data base.
  void _vCreate();
  void _vOpen();
  std::string fileName_;
  std::string alias_;
  bool readOnly_;
  hid_t fileId_ = -1;
  std::unique_ptr<TH5Bootblock> bootblock_;
};
