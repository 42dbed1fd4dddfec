// An ini file on disk, with the rules and value forms of TKxMemIniFile.
//
// All TKxStdIniFile objects of one process that name the same file share one
// copy of its content, so a value written through one is read through every
// other at once, as the callers expect who open a new object on a
// TIniFilename for each read. The file is read when it is first opened and
// again whenever it has changed on disk; every operation that changes the
// content writes the file back at once (an operation that changes nothing
// writes nothing, and reading never creates the file). A write that fails
// raises kx::file98::ulIniWrite; the old file stays whole (the content is
// saved beside it and renamed over it), the change stays in memory and goes
// out with the next successful write. Many changes in a row: TBatch.
//
// Thread safe: operations on one file are serialised.
//
// A distinct class: dynamic_cast<TKxStdIniFile*> of a memory ini fails, which
// is how settings that must come from a file on disk are checked.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "file98/TIniFilename.h"
#include "file98/TKxIniFile.h"
#include "file98/TKxMemIniFile.h"

class TKxStdIniFile : public TKxIniFile {
 public:
  explicit TKxStdIniFile(const TIniFilename& name);
  ~TKxStdIniFile() override;
  TKxStdIniFile(const TKxStdIniFile&) = delete;
  TKxStdIniFile& operator=(const TKxStdIniFile&) = delete;

  const char* cpGetFileName() const { return name_.c_str(); }
  const TIniFilename& rGetFileName() const { return name_; }
  // A copy of the content as it is now (after looking at the disk).
  TKxMemIniFile mGetContent();

  void vReadSections(std::vector<std::string>& sections) override;
  std::size_t uGetStringSize() override;
  void vWriteToString(char* text) override;
  bool bSectionExists(const char* section) override;
  void vReadSection(const char* section, std::vector<std::string>& keys) override;
  void vCopySection(TKxIniFile* source, const char* section) override;
  void vDeleteSection(const char* section) override;
  void vRenameSection(const char* from, const char* to) override;
  // Writes the file if the content differs from it (after a failed write).
  void vFlush() override;
  bool bValueExists(const char* section, const char* key) override;
  void vDeleteEntry(const char* section, const char* key) override;
  std::string sReadString(const char* section, const char* key, const char* def) override;
  void vWriteString(const char* section, const char* key, const char* value) override;

  struct TShared;  // the content shared by all objects on one file

  // Many changes, one write: while a batch on the file is open, changes stay
  // in memory (read back at once through every object on the file); the end
  // of the last open batch writes the file once. vEnd() raises a failed
  // write; the destructor ends the batch quietly, keeping the changes in
  // memory for the next write.
  class TBatch {
   public:
    explicit TBatch(TKxStdIniFile& ini);
    ~TBatch();
    TBatch(const TBatch&) = delete;
    TBatch& operator=(const TBatch&) = delete;
    void vEnd();

   private:
    std::shared_ptr<TShared> shared_;
  };

 private:
  TIniFilename name_;
  std::shared_ptr<TShared> shared_;
};
