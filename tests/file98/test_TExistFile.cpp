#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "File98TestUtil.h"
#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "file98/TExistFile.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace {

using namespace kxtest;

TEST(ExistFile, ProvesFilesAndDirectoriesNamedInAnIni) {
  TempDir t;
  writeFile(t / "calib/dark.pf", "");
  kx::makeDir((t / "calib/shading").c_str());
  writeFile(t / "calib/calib.ini",
            "[Dark]\r\nFileName=dark.pf\r\nPath=shading\r\n[Missing]\r\nFileName=none.pf\r\nPath=dark.pf\r\n"
            "[Abs]\r\nFileName=" + t / "calib/dark.pf" + "\r\n[NoKey]\r\nOther=1\r\n");
  const TIniFilename ini((t / "calib/calib.ini").c_str());
  TExistFile check;
  std::string buffer;
  EXPECT_EQ(check.eProof(ini, "Dark", buffer), TExistFile::eExistOk);
  EXPECT_EQ(buffer, t / "calib/dark.pf");
  EXPECT_EQ(check.eProofDir(ini, "Dark", buffer), TExistFile::eExistOk);
  EXPECT_EQ(check.eProof(ini, "Abs", buffer), TExistFile::eExistOk);
  EXPECT_EQ(check.eProof(ini, "Missing", buffer), TExistFile::eExistNoFile);
  EXPECT_EQ(buffer, t / "calib/none.pf");
  EXPECT_EQ(check.eProofDir(ini, "Missing", buffer), TExistFile::eExistNoDir);  // a file is no directory
  EXPECT_EQ(check.eProof(ini, "NoKey", buffer), TExistFile::eExistNoKey);
  EXPECT_EQ(check.eProof(ini, "Nowhere", buffer), TExistFile::eExistNoSection);
  EXPECT_EQ(check.eProof(TIniFilename((t / "none.ini").c_str()), "Dark", buffer), TExistFile::eExistNoIni);

  auto mem = parsed("[S]\nFileName=calib\\dark.pf\nPath=new/dir\n");
  EXPECT_EQ(check.eProof(mem, "S", buffer, t.path().c_str()), TExistFile::eExistOk);
  EXPECT_EQ(check.eProofDir(mem, "S", buffer, t.path().c_str()), TExistFile::eExistNoDir);
  TExistFile::vCreateDir(buffer.c_str());
  EXPECT_EQ(check.eProofDir(mem, "S", buffer, t.path().c_str()), TExistFile::eExistOk);
  TExistFile::vCreateFile((t / "made/deep/f.txt").c_str());
  EXPECT_TRUE(std::filesystem::is_regular_file(t / "made/deep/f.txt"));
  writeFile(t / "keep.txt", "content");
  TExistFile::vCreateFile((t / "keep.txt").c_str());
  EXPECT_EQ(readFile(t / "keep.txt"), "content");
  expectCode(kx::file98::ulIniWrite, [] { TExistFile::vCreateFile(""); });

  TExistFile own("Datei", "Ordner");
  auto keys = parsed("[S]\nDatei=" + t / "keep.txt" + "\n");
  EXPECT_EQ(own.eProof(keys, "S", buffer), TExistFile::eExistOk);
  EXPECT_STREQ(TExistFile::rGetText(TExistFile::eExistNoDir)(TLanguage::eEnglisch), "Directory not found");
  EXPECT_STREQ(TExistFile::rGetText(TExistFile::eExistNoDir)(TLanguage::eDeutsch), "Verzeichnis nicht gefunden");
}

}  // namespace
