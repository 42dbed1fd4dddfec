#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "File98TestUtil.h"
#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "file98/TSearchPath.h"
#include "kxexception/KxError.h"

namespace {

using namespace kxtest;

std::vector<std::string> listOf(const TSearchPath& s) {
  std::vector<std::string> v;
  for (int i = 0; i < s.size(); ++i) v.push_back(s[i]);
  return v;
}

// <tmp>/exe is the program's directory, with macros below it.
struct SearchPathTest : ::testing::Test {
  SearchPathTest() {
    kx::makeDir((t / "exe/appl/macros/sub").c_str());
    kx::makeDir((t / "exe/other").c_str());
    sp.vSetProgramDir((t / "exe/").c_str());
  }
  TempDir t;
  TSearchPath sp;
};

TEST_F(SearchPathTest, InsertClimbsToTheProgramDirLongestFirst) {
  EXPECT_TRUE(sp.bInsert((t / "exe/appl/macros/sub/").c_str(), 99));
  EXPECT_EQ(listOf(sp), (std::vector<std::string>{t / "exe/appl/macros/sub", t / "exe/appl/macros", t / "exe/appl",
                                                  t / "exe"}));
  // A later call's directories come first.
  EXPECT_TRUE(sp.bInsert((t / "exe/other").c_str(), 1));
  // The same directory again changes nothing.
  EXPECT_TRUE(sp.bInsert((t / "exe/appl/macros/sub").c_str(), 99));
  EXPECT_TRUE(sp.bInsert((t / "exe\\other\\").c_str(), 1));
  EXPECT_EQ(sp.sGetSearchPaths(), t / "exe/other;" + t / "exe/appl/macros/sub;" + t / "exe/appl/macros;" +
                                      t / "exe/appl;" + t / "exe");
}

TEST_F(SearchPathTest, CountLimitsTheRoundsAndKnownDirsStopTheClimb) {
  EXPECT_FALSE(sp.bInsert((t / "exe/none/deeper").c_str(), 99));  // a missing directory inserts nothing
  EXPECT_TRUE(sp.bInsert("relative-without-slash", 99));          // no '/': nothing to enter
  EXPECT_EQ(sp.size(), 0);
  EXPECT_TRUE(sp.bInsert((t / "exe/appl").c_str(), 1));
  EXPECT_EQ(listOf(sp), std::vector<std::string>{t / "exe/appl"});
  // Climbs from sub, meets appl which is there already: stops with true.
  EXPECT_TRUE(sp.bInsert((t / "exe/appl/macros/sub").c_str(), 99));
  EXPECT_EQ(listOf(sp),
            (std::vector<std::string>{t / "exe/appl/macros/sub", t / "exe/appl/macros", t / "exe/appl"}));
  TSearchPath two;
  two.vSetProgramDir("/kx-not-the-program-dir");
  EXPECT_TRUE(two.bInsert((t / "exe/appl/macros/sub").c_str(), 2));
  EXPECT_EQ(two.size(), 2);
  EXPECT_TRUE(two.bInsert("anything", 0));
  EXPECT_EQ(two.size(), 2);
}

TEST_F(SearchPathTest, ClimbEndsBelowTheRootWithoutTheProgramDir) {
  sp.vSetProgramDir("/kx-not-the-program-dir");
  EXPECT_TRUE(sp.bInsert((t / "exe/appl").c_str(), 99));
  ASSERT_GE(sp.size(), 3);
  EXPECT_EQ(sp[0], t / "exe/appl");
  for (int i = 0; i < sp.size(); ++i) EXPECT_NE(sp[i], "/");
  EXPECT_EQ(sp[sp.size() - 1].find('/', 1), std::string::npos);  // "/tmp": the last one below the root
}

TEST_F(SearchPathTest, LookupsFindTheFirstAndThePrevious) {
  writeFile(t / "exe/appl/macros/start.mac", "a");
  writeFile(t / "exe/start.mac", "b");
  writeFile(t / "exe/only.mac", "c");
  kx::makeDir((t / "exe/appl/dir.mac").c_str());
  ASSERT_TRUE(sp.bInsert((t / "exe/appl/macros").c_str(), 99));

  EXPECT_EQ(sp.sGetDir("start.mac"), t / "exe/appl/macros/");
  EXPECT_EQ(sp.sGetPath("start.mac"), t / "exe/appl/macros/start.mac");
  EXPECT_EQ(sp.sGetDir("only.mac"), t / "exe/");
  EXPECT_EQ(sp.sGetDir("dir.mac"), "");  // a directory is no file
  EXPECT_EQ(sp.sGetPath("none.mac"), "");
  EXPECT_EQ(sp.sGetDir(nullptr), "");
  for (int i : {-1, sp.size(), 1000}) expectCode(kx::file98::ulSearchPathIndex, [&] { (void)sp[i]; });

  // The overridden macro: search after the directory of the first one.
  for (const std::string& first : {t / "exe/appl/macros/", t / "EXE/Appl/MACROS/", t / "exe/appl\\macros"})
    EXPECT_EQ(sp.sGetPreviousDir("start.mac", first.c_str()), t / "exe/") << first;
  for (const std::string& first : {t / "exe/", t / "exe/nowhere/", std::string()})
    EXPECT_EQ(sp.sGetPreviousDir("start.mac", first.c_str()), "") << first;
}

TEST(SearchPath, DefaultProgramDirIsTheProgramsOwn) {
  TSearchPath s;
  EXPECT_EQ(s.sGetProgramDir() + "/", kx::sGetProgramDir());
  EXPECT_TRUE(s.bInsert(kx::sGetProgramDir().c_str(), 99));
  EXPECT_EQ(s.size(), 1);  // the program's directory ends the climb at once
}

}  // namespace
