#include "file98/TIniFile2Registry.h"

#include <algorithm>

#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"
#include "platform/Registry.h"

void TIniFile2Registry::vReplace(const char* from, const char* to) {
  if (!from || !*from) return;
  replace_.emplace_back(from, to ? to : "");
}

std::string TIniFile2Registry::sReplaced(std::string value) const {
  for (const auto& [from, to] : replace_) {
    for (size_t pos = value.find(from); pos != std::string::npos; pos = value.find(from, pos + to.size()))
      value.replace(pos, from.size(), to);
  }
  return value;
}

bool TIniFile2Registry::bExecIni(const TIniFilename& name, const char* section, bool force) {
  KX_TRY {
    if (!section) section = "";
    TKxStdIniFile ini(name);
    if (!force && ini.bReadBool(section, "Done", false)) return false;
    struct TValue {
      const char* iniKey;
      const char* subKey;
      const char* valueName;
    };
    static const TValue values[] = {
        {"Standard", "", ""},        {"DefaultIcon", "\\DefaultIcon", ""},
        {"Open", "\\shell\\open\\command", ""}, {"Path", "", "Path"},
        {"Version", "", "Version"},  {"Install", "", "Install"},
    };
    for (const char* hive : {"HKEY_CLASSES_ROOT", "HKEY_LOCAL_MACHINE"}) {
      // Never more rounds than the section has keys: a broken "Count" must not
      // keep us here.
      std::vector<std::string> keys;
      ini.vReadSection(hive, keys);
      const long long count = std::min<long long>(ini.iReadInteger(hive, "Count", 0), static_cast<long long>(keys.size()));
      for (long long i = 1; i <= count; ++i) {
        const std::string entry = ini.sReadString(hive, ("Key" + std::to_string(i)).c_str(), "");
        if (entry.empty() || !ini.bSectionExists(entry.c_str())) continue;
        const bool overwrite = ini.bReadBool(entry.c_str(), "Overwrite", true);
        for (const auto& v : values) {
          if (!ini.bValueExists(entry.c_str(), v.iniKey)) continue;
          kx::platform::registrySetString({hive, entry + v.subKey, v.valueName,
                                           sReplaced(ini.sReadString(entry.c_str(), v.iniKey, "")), overwrite});
        }
      }
    }
    ini.vWriteBool(section, "Done", true);
    return true;
  }
  KX_CATCH
}
