// Checks that a file or directory named in an ini exists, for the checks of
// calibration and settings files.
//
// The name is read from a key of a section (by default "FileName" for files
// and "Path" for directories). A relative name is taken relative to a base
// directory: the directory of the ini file when it is known (TIniFilename,
// TKxStdIniFile, TKxMemIniFile read from a file), else the current one. The
// full name goes to `buffer` in '/' form, whatever the result, so that the
// caller can report it or create what is missing (vCreateDir, vCreateFile).
#pragma once

#include <string>

#include "kxexception/TLanguage.h"

class TIniFilename;
class TKxIniFile;

class TExistFile {
 public:
  enum eExist {
    eExistOk = 0,       // the file or directory exists
    eExistNoIni = 1,    // the ini file itself does not exist
    eExistNoSection = 2,
    eExistNoKey = 3,    // the key is missing or empty
    eExistNoFile = 4,   // the named file does not exist (or is a directory)
    eExistNoDir = 5,    // the named directory does not exist (or is a file)
  };

  explicit TExistFile(const char* fileKey = "FileName", const char* dirKey = "Path");

  eExist eProof(const TIniFilename& ini, const char* section, std::string& buffer) const;
  eExist eProof(TKxIniFile& ini, const char* section, std::string& buffer, const char* baseDir = nullptr) const;
  eExist eProofDir(const TIniFilename& ini, const char* section, std::string& buffer) const;
  eExist eProofDir(TKxIniFile& ini, const char* section, std::string& buffer, const char* baseDir = nullptr) const;

  // Creates the directory with its parents (makeDir; raises its codes).
  static void vCreateDir(const char* dir);
  // Creates an empty file, and its directory, unless it exists. Raises
  // kx::file98::ulIniWrite when it cannot.
  static void vCreateFile(const char* file);

  // The user's text for a result, German and English.
  static const TLanguage::TLanguageString& rGetText(eExist e);

 private:
  eExist _eProof(TKxIniFile& ini, const char* section, const char* key, std::string& buffer, const char* baseDir,
                 bool dir) const;

  std::string fileKey_;
  std::string dirKey_;
};
