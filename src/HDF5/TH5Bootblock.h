// TH5Bootblock: the text block at the start of a data base file.
//
// A data base file begins with a user block of (normally) 1024 bytes that the
// HDF5 library leaves alone. It holds, as plain bytes:
//   "KXHDF5 <size in decimal>" NUL, then "key=value" NUL per entry in list
//   order, then an empty string; all of it within size - 2 bytes, the rest
//   zero.
// The block is read and written through the file's name with ordinary file
// I/O, never through HDF5. Every change is written at once; a read-only block
// (or one of size 0, a plain HDF5 file) is never written.
#pragma once

#include <string>
#include <utility>
#include <vector>

class TH5Bootblock {
 public:
  static constexpr const char* cpMagic = "KXHDF5";
  static constexpr int iDefaultSize = 1024;
  // The version text of this class, the default of "FileVersion".
  static const char* cpGetVersion();

  // Reads the block of `fileName` (`size` bytes; 0 for a file without one),
  // fills in the keys that are missing, and writes it back unless read-only.
  TH5Bootblock(const char* fileName, int size, bool readOnly);
  // Writes the block once more (errors are dropped here).
  ~TH5Bootblock();
  TH5Bootblock(const TH5Bootblock&) = delete;
  // Takes over the entries of another block (not its file, size or flag) and
  // writes.
  TH5Bootblock& operator=(const TH5Bootblock& other);

  // The block size of a file: 0 when the file has fewer than 32 bytes or does
  // not begin with the magic, else the number after the magic and the blank.
  static int igetBootblockSize(const char* fileName);

  void vRead();
  void vWrite() const;
  // Fills in only the keys that are missing.
  void vSetDefaults();

  bool bExistEntry(const std::string& key) const;
  // Adds or replaces, then writes.
  void vSetEntry(const std::string& key, const std::string& value);
  // Removes the key, then writes; ulH5BootblockKey when it is not there.
  void vDeleteEntry(const std::string& key);
  // The value of a key; ulH5BootblockKey when it is not there.
  std::string sGetEntry(const std::string& key) const;
  const std::vector<std::pair<std::string, std::string>>& vGetEntries() const { return entries_; }

  // "LastWrite" := now, then writes; nothing on a read-only block.
  void vSetWriteAccess();
  // "DeletedObjects" += 1, "DeletedSize" += size, then writes.
  void vObjectDeleted(unsigned long long size);
  // "DeletedObjects" and "DeletedSize" := "0", then writes.
  void vNoDeletedObjects();

  const char* cpGetDateCreated() const;
  const char* cpGetLastWrite() const;
  const char* cpGetLastWorker() const;
  void vSetLastWorker(const char* name);

  int iGetSize() const { return size_; }
  bool bIsReadOnly() const { return readOnly_; }
  const std::string& sGetFileName() const { return fileName_; }
  // The block as it is written: exactly iGetSize() bytes.
  std::string sImage() const;
  // Local time now as "%04d-%02d-%02d %02d:%02d:%02d".
  static std::string sNow();

 private:
  bool _bFits() const;
  const std::string* _pFind(const std::string& key) const;
  std::string fileName_;
  int size_;
  bool readOnly_;
  std::vector<std::pair<std::string, std::string>> entries_;
};
