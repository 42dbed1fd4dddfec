// TH5Database: the process-wide table of open data base files.
//
// One instance, made by the first pOpenHDF5() and counted: each pOpenHDF5()
// is matched by one vCloseHDF5(&p), and the last one closes every file and
// deletes the table. Files are known by an alias (compared without regard to
// case) and by their index in the list.
//
// Not thread safe (see TH5General.h).
#pragma once

#include <cstdio>
#include <string>
#include <vector>

class TH5File;

class TH5Database {
 public:
  static TH5Database* pOpenHDF5();
  // Counts down and sets *pp to null; at zero closes all files.
  static void vCloseHDF5(TH5Database** pp);
  // The number of pOpenHDF5 calls not yet matched (tests).
  static unsigned uGetReferences();

  // A new file with a 1024-byte user block. The file must not exist; the
  // name must not be open; the alias must be free. An empty alias takes the
  // file name.
  TH5File* pCreateFile(const char* fileName, const char* alias);
  // An existing file; with `openChildren` a handle for every object in it.
  TH5File* pOpenFile(const char* fileName, const char* alias, bool openChildren, bool readOnly);
  // Closes the file and removes it; ulH5Database for an unknown alias.
  void vCloseFile(const char* alias);
  static bool bExistFile(const char* fileName);
  bool bExistAlias(const char* alias) const;

  unsigned uGetSize() const { return static_cast<unsigned>(files_.size()); }
  // Null past the end / for an unknown alias.
  TH5File* operator[](unsigned index) const;
  TH5File* operator[](const char* alias) const;
  // "Database: <count>" and then every file with its open tree; to a file,
  // or to standard output when the name is null or empty.
  void vReport(const char* fileName) const;
  void vReport(FILE* out) const;

 private:
  TH5Database();
  ~TH5Database();
  void _vCheckInitialised() const;
  void _vCheckNew(const std::string& fileName, const std::string& alias) const;
  std::vector<TH5File*> files_;
  bool initialised_ = false;
  unsigned references_ = 0;
};
