// Applies an installation ini to the system registry, once.
//
// The ini's `section` holds the bool "Done": an ini that has been applied is
// not applied again (unless forced), and "Done" is written back after a run.
// The sections "HKEY_CLASSES_ROOT" and "HKEY_LOCAL_MACHINE" hold "Count" and
// "Key1".."Key<Count>", each naming a section of its own, whose name is the
// registry key and whose keys are:
//   Standard     the key's default value
//   DefaultIcon  the default value of <key>\DefaultIcon
//   Open         the default value of <key>\shell\open\command
//   Path, Version, Install   named values of the key
//   Overwrite    bool, default 1: replace values that exist already
// Texts registered with vReplace are replaced in every value first ("%Ini%"
// by the ini file's own name, as the interpreter front end does).
//
// There is no registry here: the values go to platform/Registry.h, a
// documented no-op that shows them to an observer. The "Done" logic and the
// replacements are real.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "file98/TIniFilename.h"

class TIniFile2Registry {
 public:
  // Every later value has each `from` replaced by `to`, in the order given.
  void vReplace(const char* from, const char* to);
  // Applies the ini unless its "Done" is set and `force` is false. True when
  // it was applied now. Raises what writing "Done" back raises.
  bool bExecIni(const TIniFilename& name, const char* section, bool force);

  std::string sReplaced(std::string value) const;

 private:
  std::vector<std::pair<std::string, std::string>> replace_;
};
