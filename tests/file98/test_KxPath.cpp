#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "File98TestUtil.h"
#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "kxexception/KxError.h"
#include "platform/Clock.h"

namespace {

using namespace kxtest;
namespace f98 = kx::file98;

TEST(SplitFileName, PartsOfBothSeparatorForms) {
  for (const char* p : {"c:/a/b/name.tif", "c:\\a\\b\\name.tif"}) {
    std::string drive, dir, name, ext;
    kx::fnsplit(p, drive, dir, name, ext);
    EXPECT_EQ(drive, "c:");
    EXPECT_EQ(dir, std::string(p).substr(2, 5));  // separators stay as given
    EXPECT_EQ(name, "name");
    EXPECT_EQ(ext, ".tif");
  }
  const int dd = kx::eFileDrive | kx::eFileDir, ne = kx::eFileName | kx::eFileExt, n = kx::eFileName, e = kx::eFileExt;
  const struct {
    const char* in;
    int parts;
    const char* want;
  } cases[] = {{"c:/a/b/name.tif", dd, "c:/a/b/"}, {"c:/a/b/name.tif", ne, "name.tif"},
               {"c:/a/b/name.tif", kx::eFileAll, "c:/a/b/name.tif"}, {"c:/a/b/name.tif", 0, ""},
               {"c:name.tif", kx::eFileDrive | n, "c:name"}, {"/x/y/", kx::eFileDir, "/x/y/"}, {"/x/y/", ne, ""},
               {"archive.tar.gz", e, ".gz"}, {"archive.tar.gz", n, "archive.tar"}, {"dir.d/file", e, ""},
               {"/home/.profile", n, ".profile"}, {"/home/.profile", e, ""}, {"c:/a/..", n, ".."}, {"c:/a/..", e, ""},
               {"name.", e, "."}, {"1:/a", kx::eFileDrive, ""},  // a drive is a letter
               {nullptr, kx::eFileAll, ""}};
  for (const auto& c : cases) {
    std::string s = "stale";
    kx::splitFileName(c.in, s, c.parts);
    EXPECT_EQ(s, c.want) << (c.in ? c.in : "null") << " " << c.parts;
  }
  EXPECT_EQ(kx::fnmerge("c:", "/a/b", "x", "ini"), "c:/a/b/x.ini");
  EXPECT_EQ(kx::fnmerge("", "a\\", "x", ".ini"), "a\\x.ini");
  EXPECT_EQ(kx::fnmerge(nullptr, nullptr, "x", nullptr), "x");
}

TEST(ReduceDir, CutsTheLastDirectory) {
  // A path without a further '/' stays; only a name leaves no directory.
  const std::pair<const char*, const char*> cases[] = {
      {"c:\\a\\b\\file.ini", "c:/a/"}, {"c:/a/b/", "c:/a/"}, {"c:/a/", "c:/"}, {"/usr/share/x", "/usr/"},
      {"c:/a//", "c:/"}, {"c:/", "c:/"}, {"c:\\", "c:/"}, {"a/", "a/"}, {"/", "/"}, {"/x.ini", "/"},
      {"x.ini", ""}, {"", ""}};
  for (const auto& [in, want] : cases) {
    std::string s(in);
    vReduceDir(s.data());
    EXPECT_STREQ(s.c_str(), want) << in;
  }
  vReduceDir(nullptr);
}

TEST(FindPathForFile, ClimbsFromTheStartDirectory) {
  TempDir t;
  CurrentDir here(t.path());
  writeFile("c:/a/x.ini", "[s]\r\n");
  kx::makeDir("c:/a/b/c");
  writeFile(t / "abs/x.ini", "");
  kx::makeDir((t / "abs/p/q/r").c_str());
  const std::string absStart = t / "abs/p/q/r/", absFound = t / "abs/";
  // The result keeps the start path's form (separators, trailing one or not).
  const struct {
    const char *file, *start, *found;
  } hits[] = {{"x.ini", "c:/a/b/", "c:/a/"},       {"x.ini", "c:/a/b/c", "c:/a"},
              {"x.ini", "c:\\a\\b\\", "c:\\a\\"}, {"x.ini", "c:/a/", "c:/a/"},
              {"a/x.ini", "c:/a/b/c/", "c:/"},     // a file name may carry a directory of its own
              {"x.ini", absStart.c_str(), absFound.c_str()}};
  std::string found;
  for (const auto& h : hits) {
    found = "stale";
    EXPECT_TRUE(kx::bFindPathForFile(h.file, h.start, found)) << h.file << " from " << h.start;
    EXPECT_EQ(found, h.found) << h.file << " from " << h.start;
  }
  // A directory of that name is no file; doubled separators end the climb.
  const std::pair<const char*, const char*> misses[] = {{"y.ini", "c:/a/b/"}, {"b", "c:/a/b/c/"}, {"x.ini", ""},
                                                        {"", "c:/a/"},        {nullptr, nullptr},   {"y.ini", "c://a//b//"},
                                                        {"kx-no-such-file.ini", absStart.c_str()}};
  for (const auto& [file, from] : misses) {
    found = "stale";
    EXPECT_FALSE(kx::bFindPathForFile(file, from, found)) << (file ? file : "null");
    EXPECT_EQ(found, "");
  }
}

TEST(CombineFileName, PartsFromBothPaths) {
  const int all = kx::eFileAll;
  const struct {
    const char *a, *b;
    int pa, pb;
    const char* want;
  } cases[] = {{"c:/macros/", "start.mac", all, all, "c:/macros/start.mac"},
               {"c:/m/x.mac", "../ini/y.ini", all, all, "c:/ini/y.ini"},
               {"c:\\m\\x.mac", "sub\\", all, all, "c:/m/sub/x.mac"}, {"c:/m/x.mac", "/abs/y", all, all, "c:/abs/y.mac"},
               {"c:/m/x.mac", "d:y", all, all, "d:y.mac"}, {"c:/m/./n/../x.mac", "", all, all, "c:/m/x.mac"},
               {"rel/a/", "../../../b.txt", all, all, "../b.txt"}, {"/a/", "../../b.txt", all, all, "/b.txt"},
               // Masks: only the selected parts take part.
               {"c:/m/x.mac", "y.ini", kx::eFileDrive | kx::eFileDir, all, "c:/m/y.ini"},
               {"c:/m/x.mac", "d:/o/y.ini", all, kx::eFileExt, "c:/m/x.ini"}, {nullptr, nullptr, all, all, ""}};
  for (const auto& c : cases) {
    std::string s = "stale";
    kx::vCombineFileName(c.a, c.b, s, c.pa, c.pb);
    EXPECT_EQ(s, c.want) << c.want;
  }
}

TEST(RelativePathName, AgainstABaseDirectory) {
  TempDir t;
  CurrentDir here(t.path());
  const struct {
    const char *base, *path, *want;
  } cases[] = {{"c:/a/b/", "c:/a/b/x.ini", "x.ini"},       {"c:/a/b", "c:/a/c/x.ini", "../c/x.ini"},
               {"c:\\a\\b\\", "C:\\a\\x.ini", "../x.ini"}, {"c:/a/b/", "c:/a/b/", "./"},
               {"c:/a/b/", "c:/a/b", "."},                 {"c:/a/b/", "d:/a/x.ini", "d:/a/x.ini"},
               {"/x/y/z", "/x/q/./r/../s", "../../q/s"},   {"/", "/etc/passwd", "etc/passwd"},
               {nullptr, "f.txt", "f.txt"},                {"sub", t.path().c_str(), ".."},
               {t.path().c_str(), "sub/f.txt", "sub/f.txt"}};
  for (const auto& c : cases) {
    std::string s = "stale";
    kx::vRelativePathName(c.base, c.path, s);
    EXPECT_EQ(s, c.want) << c.path;
  }
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
  EXPECT_NE(expectCode(f98::ulMakeDirNotDir, [&] { kx::makeDir((t / "file/sub").c_str()); }).find("file/sub"),
            std::string::npos);
  EXPECT_NE(expectCode(f98::ulMakeDirStat, [&] { kx::makeDir((t / std::string(300, 'n')).c_str()); }), "");
  expectCode(f98::ulMakeDirCreate, [] { kx::makeDir("/proc/kx-no-such-dir/x"); });
  expectCode(f98::ulMakeDirMissing, [] { kx::makeDir(nullptr); });
  expectCode(f98::ulMakeDirMissing, [] { kx::makeDir(""); });

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
  EXPECT_NE(expectCode(f98::ulChangeDir, [&] { kx::changeDir((t / "none").c_str()); }).find("none"), std::string::npos);
  expectCode(f98::ulChangeDir, [] { kx::changeDir(nullptr); });
  expectCode(f98::ulChangeDir, [] { kx::changeDir(""); });
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
  writeFile(t / "f.txt", "content");
  ASSERT_EQ(::mkfifo((t / "fifo").c_str(), 0600), 0);
  const std::string dir = t.path(), dirSlash = dir + "/", none = t / "none", file = t / "f.txt", newFile = t / "new.txt",
                    deep = t / "none/new.txt", fifo = t / "fifo";
  const std::pair<const char*, bool> dirs[] = {{dir.c_str(), true},  {dirSlash.c_str(), true}, {none.c_str(), false},
                                               {"/proc", false},     {nullptr, false},         {file.c_str(), false}};
  for (const auto& [p, want] : dirs) EXPECT_EQ(kx::bDirWriteable(p), want) << (p ? p : "null");
  // A fifo without a reader must not block.
  const std::pair<const char*, bool> files[] = {{file.c_str(), true},   {newFile.c_str(), true}, {deep.c_str(), false},
                                                {dir.c_str(), false},   {"/proc/kx-new-file", false}, {"", false},
                                                {fifo.c_str(), false}};
  for (const auto& [p, want] : files) EXPECT_EQ(kx::bFileWriteable(p), want) << p;
  // The probes leave nothing behind and change nothing.
  EXPECT_EQ(readFile(file), "content");
  EXPECT_FALSE(std::filesystem::exists(newFile));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir), std::filesystem::directory_iterator()), 2);
}

TEST(FileInCommandline, FindsByExtension) {
  const char* argv[] = {"/opt/kx/kxdemo", "-u=KdoIntUse.ini", "-e", "data\\Run.MAC", "second.mac", nullptr};
  kx::vSetCommandLine(5, argv);
  std::string file;
  EXPECT_TRUE(kx::bFileInCommandline(".Mac", file));
  EXPECT_EQ(file, "data/Run.MAC");
  file = "unchanged";
  for (const char* ext : {"ini", "", static_cast<const char*>(nullptr)})  // options do not count
    EXPECT_FALSE(kx::bFileInCommandline(ext, file));
  EXPECT_EQ(file, "unchanged");
  const char* only[] = {"prog.mac"};  // the program itself never counts
  kx::vSetCommandLine(1, only);
  EXPECT_FALSE(kx::bFileInCommandline("mac", file));
}

TEST(ProgramDirAndClock, TheTestProgramsDirectoryAndMilliseconds) {
  const uint32_t t0 = kx::timeGetTime();
  kx::platform::sleepMs(20);
  const uint32_t d = kx::timeGetTime() - t0;
  EXPECT_GE(d, 19u);
  EXPECT_LT(d, 5000u);
  const std::string dir = kx::sGetProgramDir();
  ASSERT_FALSE(dir.empty());
  EXPECT_EQ(dir.back(), '/');
  EXPECT_TRUE(std::filesystem::exists(dir + "test_file98"));
}

}  // namespace
