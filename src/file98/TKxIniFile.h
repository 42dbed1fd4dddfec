// The settings interface: objects read and write themselves through
// TKxIniFile, so that the same readIni works on a file on disk
// (TKxStdIniFile), on a block of memory (TKxMemIniFile) or on ini text held in
// an HDF5 file.
//
// An ini is a list of sections, each a list of entries key=value; all values
// are text. Lookups are exact (with case) and find the first section and the
// first entry of a name; writing to an absent section or key appends it.
// Section names with '/' are the convention for subsections
// ("Application/Entry1"); the format itself has no nesting.
//
// Reads never fail: a missing or unreadable value yields the default, and the
// caller decides whether that is an error. Value forms:
//   string     written as it stands; an empty value reads as the default
//   bool       written "%d" (0 or 1); read as a number, else the default
//   integer    written "%d"; read as a number, else the default
//   long long  written "%lld"; read as a number, else the default
//   float      written "%le"; read after modKomma, so "1,5" is 1.5 in every
//              language; else the default
// Numbers are written and read with the point whatever the C locale is.
// Null section or key: reads give the default, writes do nothing.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class TKxIniFile {
 public:
  // The operations stay in this order (slot order of the interface).
  virtual ~TKxIniFile();
  // All section names, in order (a name that occurs twice is listed twice).
  virtual void vReadSections(std::vector<std::string>& sections) = 0;
  // Bytes vWriteToString writes, the terminating zero included.
  virtual std::size_t uGetStringSize() = 0;
  // The ini as text ("[%s]\r\n", "%s=%s\r\n", an empty line after each
  // section), zero terminated; `text` must hold uGetStringSize() bytes.
  virtual void vWriteToString(char* text) = 0;
  virtual bool bSectionExists(const char* section) = 0;
  // The keys of the section in order, duplicates included; empty if absent.
  virtual void vReadSection(const char* section, std::vector<std::string>& keys) = 0;
  // Makes this ini's section `section` a copy of the source's: it replaces a
  // section of that name in place or is appended. Nothing happens when the
  // source has no such section.
  virtual void vCopySection(TKxIniFile* source, const char* section) = 0;
  // Removes every section of that name.
  virtual void vDeleteSection(const char* section) = 0;
  // Renames the first section `from`; sections already named `to` go.
  virtual void vRenameSection(const char* from, const char* to) = 0;
  // Brings the storage up to date (a disk or HDF5 file); the memory ini has
  // nothing to do.
  virtual void vFlush() = 0;
  virtual bool bValueExists(const char* section, const char* key) = 0;
  // Removes every entry `key` of the section.
  virtual void vDeleteEntry(const char* section, const char* key) = 0;
  virtual std::string sReadString(const char* section, const char* key, const char* def) = 0;
  virtual bool bReadBool(const char* section, const char* key, bool def);
  virtual double dReadFloat(const char* section, const char* key, double def);
  virtual int iReadInteger(const char* section, const char* key, int def);
  virtual long long iReadLongLong(const char* section, const char* key, long long def);
  // Line breaks in a section name, key or value become blanks (an entry is
  // one line); an empty key is not written.
  virtual void vWriteString(const char* section, const char* key, const char* value) = 0;
  virtual void vWriteBool(const char* section, const char* key, bool value);
  virtual void vWriteFloat(const char* section, const char* key, double value);
  virtual void vWriteInteger(const char* section, const char* key, int value);
  virtual void vWriteLongLong(const char* section, const char* key, long long value);

  // Deletes every section whose name begins with `prefix`
  // ("Application/" removes "Application/Entry1", "Application/Entry2", ...).
  void vDeleteSubsections(const char* prefix);

 protected:
  TKxIniFile() = default;
  TKxIniFile(const TKxIniFile&) = default;
  TKxIniFile& operator=(const TKxIniFile&) = default;
};

namespace kx::ini {
// The value forms, shared by every implementation. The parsers answer false
// (and leave `out` alone) when the text holds no number of the type.
std::string sFormatBool(bool v);
std::string sFormatInteger(int v);
std::string sFormatLongLong(long long v);
std::string sFormatFloat(double v);
bool bParseInteger(const std::string& text, int& out);
bool bParseLongLong(const std::string& text, long long& out);
bool bParseFloat(std::string text, double& out);
// One line of ini text: CR and LF become blanks, a null pointer "".
std::string sOneLine(const char* text);
}  // namespace kx::ini
