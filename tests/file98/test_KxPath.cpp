#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "File98TestUtil.h"
#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "kxexception/KxError.h"
#include "platform/Clock.h"

namespace {

using kxtest::CurrentDir;
using kxtest::TempDir;
using kxtest::writeFile;
namespace f98 = kx::file98;

std::string split(const char* path, int parts) {
  std::string s;
  kx::splitFileName(path, s, parts);
  return s;
}

std::string reduce(const char* path) {
  std::string s(path);
  vReduceDir(s.data());
  return s.c_str();
}

std::string combine(const char* a, const char* b, int pa = 15, int pb = 15) {
  std::string s;
  kx::vCombineFileName(a, b, s, pa, pb);
  return s;
}

std::string relative(const char* base, const char* path) {
  std::string s;
  kx::vRelativePathName(base, path, s);
  return s;
}

// Runs f, expects it to raise `code`, and returns the texts of the chain.
template <class F>
std::string raised(unsigned long code, F f) {
  try {
    f();
  } catch (unsigned long c) {
    EXPECT_EQ(c, code);
    std::string text = kx::formatErrorChain();
    kx::deleteError();
    return text;
  }
  ADD_FAILURE() << "no error raised";
  return {};
}

TEST(SplitFileName, PartsOfBothSeparatorForms) {
  for (const char* p : {"c:/a/b/name.tif", "c:\\a\\b\\name.tif"}) {
    std::string drive, dir, name, ext;
    kx::fnsplit(p, drive, dir, name, ext);
    EXPECT_EQ(drive, "c:");
    EXPECT_EQ(dir, std::string(p).substr(2, 5));  // separators stay as given
    EXPECT_EQ(name, "name");
    EXPECT_EQ(ext, ".tif");
  }
  EXPECT_EQ(split("c:/a/b/name.tif", kx::eFileExt), ".tif");
  EXPECT_EQ(split("c:/a/b/name.tif", kx::eFileDrive | kx::eFileDir), "c:/a/b/");
  EXPECT_EQ(split("c:/a/b/name.tif", kx::eFileName | kx::eFileExt), "name.tif");
  EXPECT_EQ(split("c:/a/b/name.tif", kx::eFileAll), "c:/a/b/name.tif");
  EXPECT_EQ(split("c:/a/b/name.tif", 0), "");
  EXPECT_EQ(split("c:name.tif", kx::eFileDrive | kx::eFileName), "c:name");
  EXPECT_EQ(split("/x/y/", kx::eFileDir), "/x/y/");
  EXPECT_EQ(split("/x/y/", kx::eFileName | kx::eFileExt), "");
  EXPECT_EQ(split("archive.tar.gz", kx::eFileExt), ".gz");
  EXPECT_EQ(split("archive.tar.gz", kx::eFileName), "archive.tar");
  EXPECT_EQ(split("dir.d/file", kx::eFileExt), "");
  EXPECT_EQ(split("/home/.profile", kx::eFileName), ".profile");
  EXPECT_EQ(split("/home/.profile", kx::eFileExt), "");
  EXPECT_EQ(split("c:/a/..", kx::eFileName), "..");
  EXPECT_EQ(split("c:/a/..", kx::eFileExt), "");
  EXPECT_EQ(split("name.", kx::eFileExt), ".");
  EXPECT_EQ(split("1:/a", kx::eFileDrive), "");  // a drive is a letter
  EXPECT_EQ(split(nullptr, kx::eFileAll), "");
  EXPECT_EQ(kx::fnmerge("c:", "/a/b", "x", "ini"), "c:/a/b/x.ini");
  EXPECT_EQ(kx::fnmerge("", "a\\", "x", ".ini"), "a\\x.ini");
  EXPECT_EQ(kx::fnmerge(nullptr, nullptr, "x", nullptr), "x");
}

TEST(ReduceDir, CutsTheLastDirectory) {
  EXPECT_EQ(reduce("c:\\a\\b\\file.ini"), "c:/a/");
  EXPECT_EQ(reduce("c:/a/b/"), "c:/a/");
  EXPECT_EQ(reduce("c:/a/"), "c:/");
  EXPECT_EQ(reduce("/usr/share/x"), "/usr/");
  EXPECT_EQ(reduce("c:/a//"), "c:/");
  // No further '/': the path stays.
  EXPECT_EQ(reduce("c:/"), "c:/");
  EXPECT_EQ(reduce("c:\\"), "c:/");
  EXPECT_EQ(reduce("a/"), "a/");
  EXPECT_EQ(reduce("/"), "/");
  EXPECT_EQ(reduce("/x.ini"), "/");
  // Only a name: no directory to keep.
  EXPECT_EQ(reduce("x.ini"), "");
  EXPECT_EQ(reduce(""), "");
  vReduceDir(nullptr);
}

TEST(FindPathForFile, ClimbsFromTheStartDirectory) {
  TempDir t;
  CurrentDir here(t.path());
  writeFile("c:/a/x.ini", "[s]\r\n");
  kx::makeDir("c:/a/b/c");
  std::string found = "stale";
  EXPECT_TRUE(kx::bFindPathForFile("x.ini", "c:/a/b/", found));
  EXPECT_EQ(found, "c:/a/");
  EXPECT_TRUE(kx::bFindPathForFile("x.ini", "c:/a/b/c", found));
  EXPECT_EQ(found, "c:/a");  // the start path's form: no trailing separator
  EXPECT_TRUE(kx::bFindPathForFile("x.ini", "c:\\a\\b\\", found));
  EXPECT_EQ(found, "c:\\a\\");
  EXPECT_TRUE(kx::bFindPathForFile("x.ini", "c:/a/", found));
  EXPECT_EQ(found, "c:/a/");
  // A file name may carry a directory of its own.
  EXPECT_TRUE(kx::bFindPathForFile("a/x.ini", "c:/a/b/c/", found));
  EXPECT_EQ(found, "c:/");

  found = "stale";
  EXPECT_FALSE(kx::bFindPathForFile("y.ini", "c:/a/b/", found));
  EXPECT_EQ(found, "");
  // A directory of that name is no file.
  EXPECT_FALSE(kx::bFindPathForFile("b", "c:/a/b/c/", found));
  EXPECT_FALSE(kx::bFindPathForFile("x.ini", "", found));
  EXPECT_FALSE(kx::bFindPathForFile("", "c:/a/", found));
  EXPECT_FALSE(kx::bFindPathForFile(nullptr, nullptr, found));
  // Doubled separators end the climb as well.
  EXPECT_FALSE(kx::bFindPathForFile("y.ini", "c://a//b//", found));
}

TEST(FindPathForFile, AbsolutePathsUpToTheRoot) {
  TempDir t;
  writeFile(t / "x.ini", "");
  kx::makeDir((t / "p/q/r").c_str());
  std::string found;
  EXPECT_TRUE(kx::bFindPathForFile("x.ini", (t / "p/q/r/").c_str(), found));
  EXPECT_EQ(found, t.path() + "/");
  EXPECT_FALSE(kx::bFindPathForFile("kx-no-such-file.ini", (t / "p/q/r").c_str(), found));
}

TEST(CombineFileName, PartsFromBothPaths) {
  EXPECT_EQ(combine("c:/macros/", "start.mac"), "c:/macros/start.mac");
  EXPECT_EQ(combine("c:/m/x.mac", "../ini/y.ini"), "c:/ini/y.ini");
  EXPECT_EQ(combine("c:\\m\\x.mac", "sub\\"), "c:/m/sub/x.mac");
  EXPECT_EQ(combine("c:/m/x.mac", "/abs/y"), "c:/abs/y.mac");
  EXPECT_EQ(combine("c:/m/x.mac", "d:y"), "d:y.mac");
  EXPECT_EQ(combine("c:/m/./n/../x.mac", ""), "c:/m/x.mac");
  EXPECT_EQ(combine("rel/a/", "../../../b.txt"), "../b.txt");
  EXPECT_EQ(combine("/a/", "../../b.txt"), "/b.txt");
  // Masks: only the selected parts take part.
  EXPECT_EQ(combine("c:/m/x.mac", "y.ini", kx::eFileDrive | kx::eFileDir, kx::eFileAll), "c:/m/y.ini");
  EXPECT_EQ(combine("c:/m/x.mac", "d:/o/y.ini", kx::eFileAll, kx::eFileExt), "c:/m/x.ini");
  EXPECT_EQ(combine(nullptr, nullptr), "");
}

TEST(RelativePathName, AgainstABaseDirectory) {
  EXPECT_EQ(relative("c:/a/b/", "c:/a/b/x.ini"), "x.ini");
  EXPECT_EQ(relative("c:/a/b", "c:/a/c/x.ini"), "../c/x.ini");
  EXPECT_EQ(relative("c:\\a\\b\\", "C:\\a\\x.ini"), "../x.ini");
  EXPECT_EQ(relative("c:/a/b/", "c:/a/b/"), "./");
  EXPECT_EQ(relative("c:/a/b/", "c:/a/b"), ".");
  EXPECT_EQ(relative("c:/a/b/", "d:/a/x.ini"), "d:/a/x.ini");
  EXPECT_EQ(relative("/x/y/z", "/x/q/./r/../s"), "../../q/s");
  EXPECT_EQ(relative("/", "/etc/passwd"), "etc/passwd");
  TempDir t;
  CurrentDir here(t.path());
  EXPECT_EQ(relative("sub", t.path().c_str()), "..");
  EXPECT_EQ(relative(t.path().c_str(), "sub/f.txt"), "sub/f.txt");
  EXPECT_EQ(relative(nullptr, "f.txt"), "f.txt");
}

TEST(MakeDir, CreatesParentsAndRaisesItsCodes) {
  TempDir t;
  const std::string deep = t / "a/b\\c/d";
  kx::makeDir(deep.c_str());
  EXPECT_TRUE(kx::existDir((t / "a/b/c/d").c_str()));
  EXPECT_FALSE(std::filesystem::exists(t / "a/b\\c"));  // never a '\' in a name
  kx::makeDir((t / "a/b/").c_str());                  // existing: no error
  kx::makeDir(t.path().c_str());

  writeFile(t / "file", "x");
  EXPECT_NE(raised(f98::ulMakeDirNotDir, [&] { kx::makeDir((t / "file/sub").c_str()); }).find("file/sub"),
            std::string::npos);
  EXPECT_NE(raised(f98::ulMakeDirStat, [&] { kx::makeDir((t / std::string(300, 'n')).c_str()); }), "");
  raised(f98::ulMakeDirCreate, [] { kx::makeDir("/proc/kx-no-such-dir/x"); });
  raised(f98::ulMakeDirMissing, [] { kx::makeDir(nullptr); });
  raised(f98::ulMakeDirMissing, [] { kx::makeDir(""); });

  CurrentDir here(t.path());
  kx::makeDir("rel/one");
  EXPECT_TRUE(kx::existDir("rel/one"));
}

TEST(ChangeDir, ChangesAndRaises) {
  TempDir t;
  kx::makeDir((t / "sub").c_str());
  CurrentDir keep(t.path());
  kx::changeDir((t / "sub/").c_str());
  EXPECT_EQ(std::filesystem::current_path(), std::filesystem::path(t / "sub"));
  kx::changeDir("..\\");
  EXPECT_EQ(std::filesystem::current_path(), std::filesystem::path(t.path()));
  EXPECT_NE(raised(f98::ulChangeDir, [&] { kx::changeDir((t / "none").c_str()); }).find("none"), std::string::npos);
  raised(f98::ulChangeDir, [] { kx::changeDir(nullptr); });
  raised(f98::ulChangeDir, [] { kx::changeDir(""); });
  EXPECT_EQ(std::filesystem::current_path(), std::filesystem::path(t.path()));
}

TEST(RemoveDirectory, RemovesTreesOnly) {
  TempDir t;
  writeFile(t / "tree/a/b/f.txt", "x");
  writeFile(t / "tree/g.txt", "y");
  writeFile(t / "plain.txt", "z");
  EXPECT_TRUE(kx::bRemoveDirectory((t / "tree\\").c_str()));
  EXPECT_FALSE(std::filesystem::exists(t / "tree"));
  EXPECT_FALSE(kx::bRemoveDirectory((t / "tree").c_str()));
  EXPECT_FALSE(kx::bRemoveDirectory((t / "plain.txt").c_str()));
  EXPECT_TRUE(std::filesystem::exists(t / "plain.txt"));
  EXPECT_FALSE(kx::bRemoveDirectory(nullptr));
  CurrentDir here(t.path());
  for (const char* p : {"/", ".", "./", "..", "x/../.."}) EXPECT_FALSE(kx::bRemoveDirectory(p)) << p;
  EXPECT_TRUE(std::filesystem::exists(t / "plain.txt"));
}

TEST(Writeable, DirectoriesAndFiles) {
  TempDir t;
  EXPECT_TRUE(kx::bDirWriteable(t.path().c_str()));
  EXPECT_TRUE(kx::bDirWriteable((t.path() + "/").c_str()));
  EXPECT_TRUE(std::filesystem::is_empty(t.path()));  // the probe is gone
  EXPECT_FALSE(kx::bDirWriteable((t / "none").c_str()));
  EXPECT_FALSE(kx::bDirWriteable("/proc"));
  EXPECT_FALSE(kx::bDirWriteable(nullptr));

  writeFile(t / "f.txt", "content");
  EXPECT_TRUE(kx::bFileWriteable((t / "f.txt").c_str()));
  EXPECT_EQ(kxtest::readFile(t / "f.txt"), "content");
  EXPECT_FALSE(kx::bDirWriteable((t / "f.txt").c_str()));
  EXPECT_TRUE(kx::bFileWriteable((t / "new.txt").c_str()));
  EXPECT_FALSE(std::filesystem::exists(t / "new.txt"));
  EXPECT_FALSE(kx::bFileWriteable((t / "none/new.txt").c_str()));
  EXPECT_FALSE(kx::bFileWriteable(t.path().c_str()));
  EXPECT_FALSE(kx::bFileWriteable("/proc/kx-new-file"));
  EXPECT_FALSE(kx::bFileWriteable(""));
  ASSERT_EQ(::mkfifo((t / "fifo").c_str(), 0600), 0);
  EXPECT_FALSE(kx::bFileWriteable((t / "fifo").c_str()));  // no reader: never blocks
}

TEST(FileInCommandline, FindsByExtension) {
  const char* argv[] = {"/opt/kx/kxdemo", "-u=KdoIntUse.ini", "-e", "data\\Run.MAC", "second.mac", nullptr};
  kx::vSetCommandLine(5, argv);
  std::string file = "unchanged";
  EXPECT_TRUE(kx::bFileInCommandline("mac", file));
  EXPECT_EQ(file, "data/Run.MAC");
  EXPECT_TRUE(kx::bFileInCommandline(".Mac", file));
  EXPECT_EQ(file, "data/Run.MAC");
  file = "unchanged";
  EXPECT_FALSE(kx::bFileInCommandline("ini", file));  // options do not count
  EXPECT_FALSE(kx::bFileInCommandline("", file));
  EXPECT_FALSE(kx::bFileInCommandline(nullptr, file));
  EXPECT_EQ(file, "unchanged");
  const char* only[] = {"prog.mac"};  // the program itself never counts
  kx::vSetCommandLine(1, only);
  EXPECT_FALSE(kx::bFileInCommandline("mac", file));
  kx::vSetCommandLine(0, nullptr);
  EXPECT_FALSE(kx::bFileInCommandline("mac", file));
}

TEST(TimeGetTime, MillisecondsGoOn) {
  const uint32_t t0 = kx::timeGetTime();
  kx::platform::sleepMs(20);
  const uint32_t d = kx::timeGetTime() - t0;
  EXPECT_GE(d, 19u);
  EXPECT_LT(d, 5000u);
}

TEST(ProgramDir, EndsInSlashAndHoldsTheTestProgram) {
  const std::string dir = kx::sGetProgramDir();
  ASSERT_FALSE(dir.empty());
  EXPECT_EQ(dir.back(), '/');
  EXPECT_TRUE(kx::existDir(dir.c_str()));
  EXPECT_TRUE(std::filesystem::exists(dir + "test_file98"));
}

}  // namespace
