// An ini held in memory: sections of entries, all values as text.
//
// Reading text (vReadFromString, vReadFromIniFile):
//  - all CR characters are deleted first (so CR LF and LF files read alike);
//  - a line holding '[' and, later, ']' starts a section named by what stands
//    between them;
//  - the lines after it are entries while each holds a '=' that is not its
//    first character: the key is what stands before the first '=', the value
//    everything after it (nothing is trimmed); lines of only blanks and tabs
//    are skipped;
//  - the first other line ends the section and is read again as a possible
//    section head, so "=x" or a comment line ends a section, while "[x]=y"
//    inside a section is an entry;
//  - lines before the first section and lines of other shapes are dropped.
// Duplicate keys and sections are kept in order; lookup finds the first.
// Reading never fails: a missing file leaves the ini empty, bytes that are
// no text are kept as they stand (NUL bytes are dropped like CRs).
//
// Writing: "[%s]\r\n" per section, "%s=%s\r\n" per entry, and an empty line
// (CR LF) after each section. Writing, reading and writing again gives the
// same bytes.
//
// The changed flag is set by every operation that changes the content and
// cleared by reading, vClearChange, and writing the ini's own file.
// Copy and assignment are deep. Not thread safe.
#pragma once

#include <string>
#include <vector>

#include "file98/TKxIniFile.h"

class TIniFilename;

class TKxMemIniFile : public TKxIniFile {
 public:
  class TSection {
   public:
    class TEntry {
     public:
      std::string name;
      std::string value;
      bool operator==(const TEntry&) const = default;
    };

    // Takes the entry lines of `text` (the text after the section head, without
    // CRs) and answers where the first line that is neither an entry nor
    // blank starts (or the terminating zero).
    const char* cpReadFromString(const char* text);
    bool operator==(const TSection&) const = default;

    std::string name;
    std::vector<TEntry> entries;
  };

  TKxMemIniFile() = default;
  // Reads the file (see vReadFromIniFile).
  explicit TKxMemIniFile(const char* fileName);
  explicit TKxMemIniFile(const TIniFilename& fileName);
  TKxMemIniFile(const TKxMemIniFile&) = default;
  TKxMemIniFile& operator=(const TKxMemIniFile&) = default;
  TKxMemIniFile(TKxMemIniFile&&) = default;
  TKxMemIniFile& operator=(TKxMemIniFile&&) = default;
  ~TKxMemIniFile() override;

  // Reads the whole file (binary) and remembers its name; a missing or
  // unreadable file leaves the ini empty.
  void vReadFromIniFile(const char* fileName);
  void vReadFromString(const char* text);
  // Writes the text to the file (the ini's own file for null), replacing it.
  // Raises kx::file98::ulIniWrite when the file cannot be written.
  void vOverwriteFile(const char* fileName = nullptr);
  // The text as vWriteToString writes it.
  std::string sWriteToString() const;
  void vClear();
  void vClearChange() { changed_ = false; }
  bool bIsChanged() const { return changed_; }
  const char* cpGetFileName() const { return fileName_.c_str(); }
  void vSetFileName(const char* fileName);

  // Index of the first section of that name; it is appended if absent.
  unsigned uGetSection(const char* name);
  // Index of the first section of that name, -1 if absent.
  int iGetSectionIndex(const char* name) const;

  // Reading and writing by position. Indices out of range read the default
  // and write nothing.
  unsigned uGetSectionCount() const { return static_cast<unsigned>(sections_.size()); }
  unsigned uGetEntryCount(unsigned section) const;
  const char* cpGetSectionName(unsigned section) const;
  const char* cpGetEntryName(unsigned section, unsigned entry) const;
  // (int indices and a non-const twin: a literal 0 must not look like a null
  // section name to overload resolution)
  std::string sReadString(int section, int entry, const char* def) const;
  std::string sReadString(int section, int entry, const char* def) {
    return static_cast<const TKxMemIniFile&>(*this).sReadString(section, entry, def);
  }
  // Appends an entry to the section even if the key is there already.
  void vAppendString(unsigned section, const char* key, const char* value);

  // TKxIniFile
  void vReadSections(std::vector<std::string>& sections) override;
  std::size_t uGetStringSize() override;
  void vWriteToString(char* text) override;
  bool bSectionExists(const char* section) override;
  void vReadSection(const char* section, std::vector<std::string>& keys) override;
  void vCopySection(TKxIniFile* source, const char* section) override;
  void vDeleteSection(const char* section) override;
  void vRenameSection(const char* from, const char* to) override;
  void vFlush() override {}
  bool bValueExists(const char* section, const char* key) override;
  void vDeleteEntry(const char* section, const char* key) override;
  std::string sReadString(const char* section, const char* key, const char* def) override;
  void vWriteString(const char* section, const char* key, const char* value) override;

  // The section itself, or null (for derived stores and copies).
  const TSection* pGetSection(const char* name) const;

 protected:
  void _vParse(std::string text);
  std::size_t _uTextSize() const;
  TSection* _pFind(const char* name);
  const TSection::TEntry* _pFindEntry(const char* section, const char* key) const;

  std::vector<TSection> sections_;
  bool changed_ = false;
  std::string fileName_;
};
