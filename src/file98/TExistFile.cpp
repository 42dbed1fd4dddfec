#include "file98/TExistFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iterator>

#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"

namespace {
const TLanguage::TLanguageString texts[] = {
    {"Datei vorhanden", "File exists"},
    {"Ini-Datei nicht gefunden", "Ini file not found"},
    {"Sektion nicht gefunden", "Section not found"},
    {"Eintrag nicht gefunden", "Entry not found"},
    {"Datei nicht gefunden", "File not found"},
    {"Verzeichnis nicht gefunden", "Directory not found"},
};

std::string directoryOf(const char* file) {
  std::string d;
  kx::splitFileName(file, d, kx::eFileDrive | kx::eFileDir);
  return kx::sToSlash(d.c_str());
}

// The directory an ini's relative names are relative to: its file's, if known.
std::string baseOf(TKxIniFile& ini) {
  if (auto* disk = dynamic_cast<TKxStdIniFile*>(&ini)) return directoryOf(disk->cpGetFileName());
  if (auto* mem = dynamic_cast<TKxMemIniFile*>(&ini)) return directoryOf(mem->cpGetFileName());
  return {};
}
}  // namespace

TExistFile::TExistFile(const char* fileKey, const char* dirKey)
    : fileKey_(fileKey ? fileKey : "FileName"), dirKey_(dirKey ? dirKey : "Path") {}

TExistFile::eExist TExistFile::_eProof(TKxIniFile& ini, const char* section, const char* key, std::string& buffer,
                                        const char* baseDir, bool dir) const {
  buffer.clear();
  if (!section || !ini.bSectionExists(section)) return eExistNoSection;
  const std::string name = kx::sToSlash(ini.sReadString(section, key, "").c_str());
  if (name.empty()) return eExistNoKey;
  std::string drive;
  kx::splitFileName(name.c_str(), drive, kx::eFileDrive);
  const bool absolute = name[0] == '/' || !drive.empty();
  const std::string base = baseDir ? kx::sToSlash(baseDir) : baseOf(ini);
  buffer = absolute || base.empty() ? name : kx::fnmerge("", base.c_str(), name.c_str(), "");
  struct stat st{};
  std::string probe = buffer;
  while (probe.size() > 1 && probe.back() == '/') probe.pop_back();
  const bool there = ::stat(probe.c_str(), &st) == 0;
  if (dir) return there && S_ISDIR(st.st_mode) ? eExistOk : eExistNoDir;
  return there && !S_ISDIR(st.st_mode) ? eExistOk : eExistNoFile;
}

TExistFile::eExist TExistFile::eProof(TKxIniFile& ini, const char* section, std::string& buffer,
                                      const char* baseDir) const {
  return _eProof(ini, section, fileKey_.c_str(), buffer, baseDir, false);
}

TExistFile::eExist TExistFile::eProofDir(TKxIniFile& ini, const char* section, std::string& buffer,
                                         const char* baseDir) const {
  return _eProof(ini, section, dirKey_.c_str(), buffer, baseDir, true);
}

TExistFile::eExist TExistFile::eProof(const TIniFilename& ini, const char* section, std::string& buffer) const {
  buffer.clear();
  if (!ini.bExists()) return eExistNoIni;
  TKxStdIniFile file(ini);
  return eProof(file, section, buffer);
}

TExistFile::eExist TExistFile::eProofDir(const TIniFilename& ini, const char* section, std::string& buffer) const {
  buffer.clear();
  if (!ini.bExists()) return eExistNoIni;
  TKxStdIniFile file(ini);
  return eProofDir(file, section, buffer);
}

void TExistFile::vCreateDir(const char* dir) {
  KX_TRY { kx::makeDir(dir); }
  KX_CATCH
}

void TExistFile::vCreateFile(const char* file) {
  KX_TRY {
    const std::string path = kx::sToSlash(file);
    if (path.empty()) KX_THROW(kx::file98::ulIniWrite, "no file name");
    const std::string dir = directoryOf(path.c_str());
    if (!dir.empty()) kx::makeDir(dir.c_str());
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666);
    if (fd < 0) {
      const int err = errno;
      KX_THROW(kx::file98::ulIniWrite, "%s: %s", path.c_str(), std::strerror(err));
    }
    ::close(fd);
  }
  KX_CATCH
}

const TLanguage::TLanguageString& TExistFile::rGetText(eExist e) {
  const int i = static_cast<int>(e);
  return texts[i >= 0 && i < static_cast<int>(std::size(texts)) ? i : 0];
}
