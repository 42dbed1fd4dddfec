#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>

#include <string>
#include <thread>
#include <vector>

#include "File98TestUtil.h"
#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"

namespace {

using namespace kxtest;

TEST(StdIni, WritesThroughAndReadsCreateNothing) {
  TempDir t;
  const std::string name = t / "settings.ini";
  TKxStdIniFile ini(TIniFilename(name.c_str()));
  EXPECT_EQ(ini.iReadInteger("Camera", "Gain", 7), 7);
  EXPECT_FALSE(ini.bSectionExists("Camera"));
  ini.vFlush();
  EXPECT_FALSE(std::filesystem::exists(name));

  ini.vWriteInteger("Camera", "Gain", 3);
  EXPECT_EQ(readFile(name), "[Camera]\r\nGain=3\r\n\r\n");
  ini.vWriteFloat("Camera", "Time", 0.04);
  ini.vWriteBool("Flags", "Dark", true);
  // An unchanged value does not touch the file.
  const struct timespec old[2] = {{1000, 0}, {1000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, name.c_str(), old, 0), 0);
  ini.vWriteInteger("Camera", "Gain", 3);
  struct stat after{};
  ::stat(name.c_str(), &after);
  EXPECT_EQ(after.st_mtim.tv_sec, 1000);
  ini.vWriteInteger("Camera", "Gain", 4);
  ::stat(name.c_str(), &after);
  EXPECT_NE(after.st_mtim.tv_sec, 1000);
  ini.vWriteInteger("Camera", "Gain", 3);

  ini.vRenameSection("Flags", "Switches");
  ini.vDeleteEntry("Camera", "Time");
  EXPECT_EQ(readFile(name), "[Camera]\r\nGain=3\r\n\r\n[Switches]\r\nDark=1\r\n\r\n");
  ini.vDeleteSection("Switches");
  EXPECT_EQ(readFile(name), "[Camera]\r\nGain=3\r\n\r\n");
}

TEST(StdIni, ObjectsOnOneFileShareTheContent) {
  TempDir t;
  writeFile(t / "shared.ini", "[s]\nk=1\n");
  kx::makeDir((t / "sub").c_str());
  TKxStdIniFile first(TIniFilename((t / "shared.ini").c_str()));
  EXPECT_EQ(first.sReadString("s", "k", ""), "1");
  {
    // Another spelling of the same file: a new object, as readIni(TIniFilename) makes one.
    TKxStdIniFile second(TIniFilename((t.path() + "\\sub\\..\\shared.ini").c_str()));
    second.vWriteString("s", "k", "2");
  }
  EXPECT_EQ(first.sReadString("s", "k", ""), "2");
  // A change by somebody else on disk is seen too.
  writeFile(t / "shared.ini", "[s]\r\nk=from outside\r\n");
  EXPECT_EQ(first.sReadString("s", "k", ""), "from outside");
  std::filesystem::remove(t / "shared.ini");
  EXPECT_FALSE(first.bSectionExists("s"));
  first.vWriteString("s", "k", "again");
  EXPECT_EQ(readFile(t / "shared.ini"), "[s]\r\nk=again\r\n\r\n");
}

TEST(StdIni, CopiesSectionsBetweenAllKinds) {
  TempDir t;
  writeFile(t / "src.ini", "[Cam]\nA=1\nA=2\nB=\n[Other]\nx=1\n");
  TKxStdIniFile src(TIniFilename((t / "src.ini").c_str()));
  TKxMemIniFile mem;
  mem.vCopySection(&src, "Cam");
  EXPECT_EQ(mem.sWriteToString(), "[Cam]\r\nA=1\r\nA=2\r\nB=\r\n\r\n");

  TKxStdIniFile dst(TIniFilename((t / "dst.ini").c_str()));
  dst.vCopySection(&mem, "Cam");
  dst.vCopySection(&src, "Other");
  dst.vCopySection(&src, "Absent");
  EXPECT_EQ(readFile(t / "dst.ini"), "[Cam]\r\nA=1\r\nA=2\r\nB=\r\n\r\n[Other]\r\nx=1\r\n\r\n");
  // From another object on the very same file: no deadlock, no change.
  TKxStdIniFile same(TIniFilename((t / "dst.ini").c_str()));
  dst.vCopySection(&same, "Cam");
  dst.vDeleteSubsections("O");
  EXPECT_EQ(readFile(t / "dst.ini"), "[Cam]\r\nA=1\r\nA=2\r\nB=\r\n\r\n");
}

TEST(StdIni, FailedWriteRaisesAndKeepsTheValue) {
  TempDir t;
  TKxStdIniFile ini(TIniFilename((t / "missing-dir/x.ini").c_str()));
  EXPECT_NE(expectCode(kx::file98::ulIniWrite, [&] { ini.vWriteString("s", "k", "v"); }).find("missing-dir/x.ini"),
            std::string::npos);
  EXPECT_EQ(ini.sReadString("s", "k", ""), "v");
  kx::makeDir((t / "missing-dir").c_str());
  ini.vFlush();  // goes out now
  EXPECT_EQ(readFile(t / "missing-dir/x.ini"), "[s]\r\nk=v\r\n\r\n");
}

TEST(StdIni, ThreadsWritingOneFile) {
  TempDir t;
  const TIniFilename name((t / "threads.ini").c_str());
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&, i] {
      TKxStdIniFile ini(name);
      for (int k = 0; k < 50; ++k) ini.vWriteInteger(("T" + std::to_string(i)).c_str(), ("k" + std::to_string(k)).c_str(), k);
    });
  for (auto& th : threads) th.join();
  TKxMemIniFile back(name);
  ASSERT_EQ(back.uGetSectionCount(), 4u);
  for (unsigned s = 0; s < 4; ++s) EXPECT_EQ(back.uGetEntryCount(s), 50u);
}

TEST(StdIni, DirectoryOrNoNameIsNoFile) {
  TempDir t;
  // The text itself is read by the in-memory file; here only what is no file.
  TKxStdIniFile dir(TIniFilename(t.path().c_str()));
  EXPECT_FALSE(dir.bSectionExists("ok"));
  TKxStdIniFile unnamed{TIniFilename()};
  EXPECT_EQ(unnamed.sReadString("a", "b", "d"), "d");
  EXPECT_THROW(unnamed.vWriteString("a", "b", "c"), unsigned long);
  kx::deleteError();
}

}  // namespace

// A save that fails on the way (here: over the file-size limit) leaves the old
// file whole on disk and the unsaved setting in memory; a later read of the
// unchanged file does not load the old text over it.
TEST(StdIni, FailedSaveNeverLosesTheFile) {
  TempDir t;
  const std::string path = t / "keep.ini";
  {
    TKxStdIniFile ini{TIniFilename(path.c_str())};
    ini.vWriteString("s", "a", "1");
  }
  const std::string before = readFile(t / "keep.ini");
  TKxStdIniFile ini{TIniFilename(path.c_str())};
  struct rlimit old{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
  auto handler = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit small = old;
  small.rlim_cur = before.size() + 4;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string why = expectCode(0xe301301bUL, [&] { ini.vWriteString("s", "b", std::string(200, 'x').c_str()); });
  ::setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
  EXPECT_NE(why.find("File too large"), std::string::npos) << why;
  EXPECT_EQ(readFile(t / "keep.ini"), before);
  EXPECT_EQ(ini.sReadString("s", "b", "").size(), 200u);
  EXPECT_EQ(ini.sReadString("s", "a", ""), "1");
  ini.vFlush();
  EXPECT_NE(readFile(t / "keep.ini").find(std::string(200, 'x')), std::string::npos);
}

TEST(StdIni, BatchWritesOnceAtItsEnd) {
  TempDir t;
  const std::string path = t / "batch.ini";
  TKxStdIniFile ini{TIniFilename(path.c_str())};
  {
    TKxStdIniFile::TBatch batch(ini);
    for (int k = 0; k < 1000; ++k) ini.vWriteInteger("S", ("k" + std::to_string(k)).c_str(), k);
    EXPECT_FALSE(std::filesystem::exists(path));  // nothing written yet
    TKxStdIniFile other{TIniFilename(path.c_str())};
    EXPECT_EQ(other.iReadInteger("S", "k999", -1), 999);  // but read back at once
  }
  TKxMemIniFile back(path.c_str());
  ASSERT_EQ(back.uGetSectionCount(), 1u);
  EXPECT_EQ(back.uGetEntryCount(0), 1000u);
}
