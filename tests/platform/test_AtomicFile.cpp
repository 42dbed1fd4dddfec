#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/AtomicFile.h"

namespace fs = std::filesystem;
using kx::platform::AtomicFile;
using kx::platform::readWholeFile;
using kx::platform::writeFileAtomic;

namespace {

struct TempDir {
  fs::path p;
  TempDir() {
    p = fs::temp_directory_path() / ("kx_atomic_" + std::to_string(::getpid()));
    fs::remove_all(p);
    fs::create_directories(p);
  }
  ~TempDir() { fs::remove_all(p); }
};

std::string slurp(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

size_t entries(const fs::path& dir) {
  size_t n = 0;
  for ([[maybe_unused]] const auto& e : fs::directory_iterator(dir)) ++n;
  return n;
}

}  // namespace

// Over the file-size limit (SIGXFSZ ignored, so the write fails with EFBIG)
// the old content stays, no temporary file is left, and the error names the
// step, the file and the system's text.
TEST(AtomicFile, FailedSaveKeepsTheOldFileAndItsMode) {
  TempDir d;
  const fs::path target = d.p / "settings.ini";
  ASSERT_TRUE(writeFileAtomic(target, "old content\r\n"));
  ::chmod(target.c_str(), 0640);

  struct rlimit old{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
  auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit small = old;
  small.rlim_cur = 64;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  std::string why;
  const bool ok = writeFileAtomic(target, std::string(1000, 'x'), &why);
  ::setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, oldHandler);

  EXPECT_FALSE(ok);
  EXPECT_NE(why.find("write " + target.string() + ": File too large"), std::string::npos) << why;
  EXPECT_EQ(slurp(target), "old content\r\n");
  EXPECT_EQ(entries(d.p), 1u);

  // A good save replaces the content and keeps the mode.
  ASSERT_TRUE(writeFileAtomic(target, "new\r\n", &why)) << why;
  EXPECT_EQ(slurp(target), "new\r\n");
  EXPECT_EQ(fs::status(target).permissions() & fs::perms::all, fs::perms(0640));
  EXPECT_EQ(entries(d.p), 1u);
}

TEST(AtomicFile, UnwritableDirectoryAndAbort) {
  std::string why;
  EXPECT_FALSE(writeFileAtomic("/proc/kx_no_such_dir/x.ini", "a", &why));
  EXPECT_EQ(why.rfind("create /proc/kx_no_such_dir/x.ini: ", 0), 0u) << why;

  TempDir d;
  const fs::path target = d.p / "a.txt";
  {
    AtomicFile f;
    ASSERT_TRUE(f.open(target));
    ASSERT_TRUE(f.write("partial"));
  }  // destroyed without commit: nothing appears
  EXPECT_FALSE(fs::exists(target));
  EXPECT_EQ(entries(d.p), 0u);

  std::string content;
  EXPECT_FALSE(readWholeFile(d.p, content, &why));  // a directory is no file
  ASSERT_TRUE(writeFileAtomic(target, std::string("a\0b", 3)));
  ASSERT_TRUE(readWholeFile(target, content));
  EXPECT_EQ(content, std::string("a\0b", 3));
}
