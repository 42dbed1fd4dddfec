#include "KdoFrontEnd/TStartParameter.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "KdoFrontEnd/KdoFrontEndErrors.h"
#include "file98/KxPath.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "platform/Notice.h"

using namespace kdofront;

namespace {
constexpr TLanguage::TLanguageString sNoName("%s: \"Name\" nicht gefunden in [%s]", "%s: \"NameE\" not found in [%s]");
constexpr TLanguage::TLanguageString sNoPath("%s: \"Path\" nicht gefunden in [%s]", "%s: \"Path\" not found in [%s]");
const char* const sListNames[] = {"Application", "Calibration", "Startmacro", "Work"};
const std::string sEmpty;

bool exists(const std::string& path) {
  struct stat st{};
  return ::stat(path.c_str(), &st) == 0;
}
}  // namespace

const TStartParameter::TEntry& TStartParameter::entry(eList l, unsigned i) const {
  static const TEntry none;
  return i < lists_[l].entries.size() ? lists_[l].entries[i] : none;
}

const char* TStartParameter::more(eList l, unsigned i, unsigned j) const {
  const TEntry& e = entry(l, i);
  return j < e.more.size() ? e.more[j].c_str() : "";
}

void TStartParameter::setDefault(eList l, unsigned i) {
  if (i < lists_[l].entries.size()) lists_[l].def = i;
}

void TStartParameter::vRead(const char* iniFile) {
  KX_TRY {
    const std::string file = kx::sToSlash(iniFile ? iniFile : "");
    std::string drive, dir, stem, ext;
    kx::fnsplit(file.c_str(), drive, dir, stem, ext);
    installation_ = dir.empty() ? kx::sGetProgramDir() : dir;
    if (!installation_.empty() && installation_[0] != '/') {
      char cwd[4096];
      if (::getcwd(cwd, sizeof cwd)) installation_ = std::string(cwd) + "/" + installation_;
    }
    if (!installation_.empty() && installation_.back() != '/') installation_ += '/';
    TKxStdIniFile ini{TIniFilename(file)};
    const bool english = TLanguage::isEnglisch();
    auto absolute = [&](std::string p) {
      p = kx::sToSlash(p.c_str());
      return p.empty() || p[0] == '/' ? p : installation_ + p;
    };
    for (int l = 0; l < 4; ++l) {
      const char* list = sListNames[l];
      TList& target = lists_[l];
      target = TList{};
      const int size = ini.bSectionExists(list) ? ini.iReadInteger(list, "Size", 0) : 0;
      if (size <= 0) KX_THROW(ulStartIniList, "%s: [%s]:%s Not found", file.c_str(), list, "Size");
      const int def = ini.iReadInteger(list, "Default", 0);
      if (def < 1 || def > size) KX_THROW(ulStartIniList, "%s: [%s]:%s", file.c_str(), list, "Default");
      target.def = static_cast<unsigned>(def - 1);
      for (int i = 1; i <= size; ++i) {
        char section[128];
        std::snprintf(section, sizeof section, "%s/%s%d", list, "Entry", i);
        TEntry e;
        if (l != eWork) {
          e.name = ini.sReadString(section, english ? "NameE" : "Name", "");
          if (e.name.empty()) KX_THROW(ulStartIniName, sNoName(), file.c_str(), section);
        }
        if (l != eStartmacro) {
          e.path = ini.sReadString(section, "Path", "");
          if (e.path.empty()) KX_THROW(ulStartIniPath, sNoPath(), file.c_str(), section);
          e.path = absolute(e.path);
          if (!exists(e.path))
            kx::platform::notice(kx::platform::eNoticeKind::eError, "Fehler",
                                 file + "::[" + section + "]::Path existiert nicht:\n\"" + e.path + "\"");
          for (int k = 1;; ++k) {
            const std::string key = "Path" + std::to_string(k);
            if (!ini.bValueExists(section, key.c_str())) break;
            e.more.push_back(kx::sToSlash(ini.sReadString(section, key.c_str(), "").c_str()));
          }
        }
        target.entries.push_back(std::move(e));
      }
    }
  }
  KX_CATCH
}
