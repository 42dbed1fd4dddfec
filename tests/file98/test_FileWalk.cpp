// CMakeName and TLoopDir: serial names and directory walks.
#include <gtest/gtest.h>

#include <unistd.h>

#include <climits>
#include <filesystem>
#include <string>
#include <vector>

#include "File98TestUtil.h"
#include "file98/CMakeName.h"
#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "file98/TLoopDir.h"
#include "kxexception/KxError.h"

namespace {

using namespace kxtest;

TEST(MakeName, SerialFilesSkipExistingOnes) {
  TempDir t;
  CMakeName n((t / "Bild###.tif").c_str());
  EXPECT_EQ(n.MakePath(0, 7), t / "Bild007.tif");
  EXPECT_EQ(n.NextFileName(), t / "Bild000.tif");
  writeFile(t / "Bild001.tif", "");
  writeFile(t / "Bild002.tif", "");
  EXPECT_EQ(n.NextFileName(), t / "Bild003.tif");
  EXPECT_EQ(n.iGetX(), 3);
  n.SetFromToX(998, 1000);  // wider than the run: written in full
  EXPECT_EQ(n.NextFileName(), t / "Bild998.tif");
  EXPECT_EQ(n.NextFileName(), t / "Bild999.tif");
  EXPECT_EQ(n.NextFileName(), t / "Bild1000.tif");
  EXPECT_EQ(n.NextFileName(), "");
  n.SetFromToX(5, 4);
  EXPECT_EQ(n.NextFileName(), "");
  n.SetFromToX(INT_MAX - 1, INT_MAX);
  EXPECT_NE(n.NextFileName(), "");
  EXPECT_NE(n.NextFileName(), "");
  EXPECT_EQ(n.NextFileName(), "");  // no overflow past the end
}

TEST(MakeName, DirectoriesCountAndAreCreated) {
  TempDir t;
  CMakeName n((t / "Serie##\\Bild#.tif").c_str());
  kx::makeDir((t / "Serie00").c_str());
  EXPECT_EQ(n.NextDirectoryAdd(), t / "Serie01/");
  EXPECT_TRUE(kx::existDir((t / "Serie01").c_str()));
  EXPECT_EQ(n.NextFileName(), t / "Serie01/Bild0.tif");
  EXPECT_EQ(n.NextFileName(), t / "Serie01/Bild1.tif");
  EXPECT_EQ(n.NextDirectory(), t / "Serie02/");  // not created
  EXPECT_FALSE(kx::existDir((t / "Serie02").c_str()));
  EXPECT_EQ(n.NextFileName(), t / "Serie02/Bild0.tif");  // the file counter starts again
  n.SetFromToA(98, 99);
  EXPECT_EQ(n.NextDirectory(), t / "Serie98/");
  EXPECT_EQ(n.NextDirectory(), t / "Serie99/");
  EXPECT_EQ(n.NextDirectory(), "");

  // A file where the directory should be: makeDir's code comes through.
  CMakeName blocked((t / "Block#/x.txt").c_str());
  writeFile(t / "Block0", "");
  EXPECT_EQ(blocked.NextDirectoryAdd(), t / "Block1/");  // existing names are skipped
  writeFile(t / "Stop", "");
  CMakeName stop((t / "Stop/Dir#/x.txt").c_str());
  expectCode(kx::file98::ulMakeDirNotDir, [&] { stop.NextDirectoryAdd(); });
}

TEST(MakeName, DateTimeAndPlainTemplates) {
  CMakeName n("/data/$D/run_$T_#.txt");
  const std::string p = n.MakePath(0, 4);
  ASSERT_EQ(p.size(), std::string("/data/YYYYMMDD/run_HHMMSS_4.txt").size()) << p;
  EXPECT_EQ(p.substr(0, 6), "/data/");
  EXPECT_EQ(p.find_first_not_of("0123456789", 6), 14u);
  EXPECT_EQ(p.substr(p.size() - 6), "_4.txt");
  CMakeName plain("/kx-none/fixed.txt");  // no '#': one name only
  EXPECT_EQ(plain.NextFileName(), "/kx-none/fixed.txt");
  EXPECT_EQ(plain.NextFileName(), "");
  EXPECT_EQ(CMakeName().MakePath(3, 4), "");
}

TEST(LoopDir, WalksTheTreeInOrder) {
  TempDir t;
  for (const char* f : {"b.mac", "A.MAC", "c.ini", "sub/z.mac", "sub/deeper/y.Mac", "sub/deeper/x.txt", "other/w.mac",
                        ".hidden.mac"})
    writeFile(t / f, "");
  kx::makeDir((t / "dir.mac").c_str());
  ASSERT_EQ(::symlink(t.path().c_str(), (t / "sub/loop").c_str()), 0);  // a cycle that must not be followed
  ASSERT_EQ(::symlink((t / "c.ini").c_str(), (t / "link.mac").c_str()), 0);

  TLoopDir loop;
  std::vector<std::string> files{"old"};
  loop.vLoop((t.path() + "\\").c_str(), "*.mac", files);
  EXPECT_EQ(files, (std::vector<std::string>{t / ".hidden.mac", t / "A.MAC", t / "b.mac", t / "link.mac",
                                             t / "other/w.mac", t / "sub/z.mac", t / "sub/deeper/y.Mac"}));
  loop.vLoop(t.path().c_str(), "*.ini;*.txt", files);
  EXPECT_EQ(files, (std::vector<std::string>{t / "c.ini", t / "sub/deeper/x.txt"}));
  loop.vLoop(t.path().c_str(), "*.*", files);
  EXPECT_EQ(files.size(), 9u);
  files.clear();
  loop.vLoopCurrentDir(t / "sub", nullptr, files);
  EXPECT_EQ(files, std::vector<std::string>{t / "sub/z.mac"});
  loop.vLoop((t / "none").c_str(), "*", files);
  EXPECT_TRUE(files.empty());
  EXPECT_TRUE(TLoopDir::bMatch("Start.MAC", "x*;*.mac"));
  EXPECT_FALSE(TLoopDir::bMatch("Start.MAC", ";;x*"));
  EXPECT_FALSE(TLoopDir::bMatch(nullptr, "*"));
}

}  // namespace
