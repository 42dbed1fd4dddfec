#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "kxexception/KxError.h"
#include "platform/Notice.h"

namespace {

// Records notices instead of writing them to standard error.
struct NoticeRecorder {
  std::vector<std::string> texts;
  kx::platform::NoticeSink old;
  NoticeRecorder() {
    old = kx::platform::setNoticeSink(
        [this](kx::platform::eNoticeKind, const std::string&, const std::string& t) { texts.push_back(t); });
  }
  ~NoticeRecorder() { kx::platform::setNoticeSink(std::move(old)); }
};

void deepest() { KX_TRY { KX_THROW(0xe5217003, "value %d out of range", 42); } KX_CATCH }
const int kDeepestLine = __LINE__ - 1;
void middle() { KX_TRY { deepest(); } KX_CATCH }
const int kMiddleLine = __LINE__ - 1;
void top() { KX_TRY { middle(); } KX_CATCH }
const int kTopLine = __LINE__ - 1;

class ErrorTest : public ::testing::Test {
 protected:
  void TearDown() override {
    kx::deleteError();
    kx::closeErrorFile();
  }
};

TEST_F(ErrorTest, ChainGrowsOneLinkPerGuardedLevelAndKeepsTheCode) {
  unsigned long caught = 0;
  try {
    top();
  } catch (unsigned long c) {
    caught = c;
  }
  EXPECT_EQ(caught, 0xe5217003UL);
  EXPECT_EQ(kx::getErrorCode(), 0xe5217003UL);
  auto chain = kx::getErrorChain();
  ASSERT_EQ(chain.size(), 4u);  // raise + three guards
  EXPECT_EQ(chain[0].file, "kxexception\\test_KxError");
  EXPECT_EQ(chain[0].line, kDeepestLine);
  EXPECT_EQ(chain[0].text, "value 42 out of range");
  EXPECT_EQ(chain[1].line, kDeepestLine);
  EXPECT_EQ(chain[2].line, kMiddleLine);
  EXPECT_EQ(chain[3].line, kTopLine);
  for (const auto& l : chain) EXPECT_EQ(l.file, "kxexception\\test_KxError");
}

TEST_F(ErrorTest, ForeignExceptionsBecomeTheForeignCode) {
  auto guarded = [](auto body) {
    KX_TRY { body(); }
    KX_CATCH
  };
  unsigned long c = 0;
  try {
    guarded([] { throw std::runtime_error("disk full"); });
  } catch (unsigned long code) {
    c = code;
  }
  EXPECT_EQ(c, 0xe0000000UL);
  ASSERT_EQ(kx::getErrorChain().size(), 1u);
  EXPECT_EQ(kx::getErrorChain()[0].text, "disk full");

  c = 0;
  try {
    guarded([] { throw 3.5; });
  } catch (unsigned long code) {
    c = code;
  }
  EXPECT_EQ(c, 0xe0000000UL);
  EXPECT_EQ(kx::getErrorChain().back().text, "Unknown exception catched");
}

// A destructor that raises and drops an error of its own while the stack
// unwinds (it ends with deleteError) must not change the code on its way up.
struct TDropsAnError {
  ~TDropsAnError() {
    try {
      KX_THROW(0xe5217044, "in a destructor");
    } catch (unsigned long) {
      kx::deleteError();
    }
  }
};

TEST_F(ErrorTest, GuardKeepsTheCodeItCaughtThroughEveryLevel) {
  auto inner = [] {
    KX_TRY {
      TDropsAnError d;
      KX_THROW(0xe3020002, "Can not open file x");
    }
    KX_CATCH
  };
  auto middle = [&] {
    KX_TRY {
      TDropsAnError d;
      inner();
    }
    KX_CATCH
  };
  unsigned long c = 0;
  try {
    KX_TRY { middle(); }
    KX_CATCH
  } catch (unsigned long code) {
    c = code;
  }
  EXPECT_EQ(c, 0xe3020002UL);
  EXPECT_EQ(kx::getErrorCode(), 0xe3020002UL);
  EXPECT_FALSE(kx::getErrorChain().empty());

  NoticeRecorder rec;
  try {
    TDropsAnError d;
    KX_THROW(0xe7520081, "x");
  } KX_CATCH_TOP
  ASSERT_EQ(rec.texts.size(), 1u);
  EXPECT_EQ(rec.texts[0].rfind("0xe7520081\n", 0), 0u) << rec.texts[0];
}

TEST_F(ErrorTest, TopLevelShowsTheChainAndDeletesIt) {
  NoticeRecorder rec;
  auto tmp = std::filesystem::temp_directory_path() / "kx_errfile_test.txt";
  std::filesystem::remove(tmp);
  kx::openErrorFile(tmp.c_str());
  try {
    top();
  } KX_CATCH_TOP
  EXPECT_EQ(kx::getErrorCode(), 0u);
  EXPECT_TRUE(kx::getErrorChain().empty());
  ASSERT_EQ(rec.texts.size(), 1u);
  const std::string& shown = rec.texts[0];
  EXPECT_EQ(shown.rfind("0xe5217003\n", 0), 0u) << shown;
  // raise, three guards and the top-level link: five lines below the code
  std::istringstream in(shown);
  std::string line;
  int lines = 0;
  while (std::getline(in, line)) ++lines;
  EXPECT_EQ(lines, 6);
  kx::closeErrorFile();
  std::ifstream f(tmp);
  std::stringstream content;
  content << f.rdbuf();
  EXPECT_EQ(content.str(), shown);
  std::filesystem::remove(tmp);
}

TEST_F(ErrorTest, TopLevelStartsAChainForAForeignException) {
  NoticeRecorder rec;
  try {
    throw std::logic_error("bad state");
  } KX_CATCH_TOP
  ASSERT_EQ(rec.texts.size(), 1u);
  EXPECT_NE(rec.texts[0].find("0xe0000000"), std::string::npos);
  EXPECT_NE(rec.texts[0].find("bad state"), std::string::npos);
  EXPECT_EQ(kx::getErrorCode(), 0u);
}

TEST_F(ErrorTest, NewErrorWhileAChainIsOpenStartsAFreshChainAndFilesTheOld) {
  auto tmp = std::filesystem::temp_directory_path() / "kx_errfile_superseded.txt";
  std::filesystem::remove(tmp);
  kx::openErrorFile(tmp.c_str());
  kx::error(0xe0213001, "a", 1, "first");
  kx::trace("b", 2);
  kx::error(0xe0213002, "c", 3, nullptr);
  EXPECT_EQ(kx::getErrorCode(), 0xe0213002UL);
  ASSERT_EQ(kx::getErrorChain().size(), 1u);
  EXPECT_TRUE(kx::getErrorChain()[0].text.empty());  // null format: no message
  kx::closeErrorFile();
  std::ifstream f(tmp);
  std::stringstream content;
  content << f.rdbuf();
  EXPECT_NE(content.str().find("superseded: 0xe0213001"), std::string::npos);
  EXPECT_NE(content.str().find("first"), std::string::npos);
  std::filesystem::remove(tmp);
}

TEST_F(ErrorTest, LongMessagesAreKeptWhole) {
  std::string big(3000, 'x');
  kx::error(0xe0000000, "f", 1, "%s|", big.c_str());
  EXPECT_EQ(kx::getErrorChain()[0].text.size(), 3001u);
}

TEST_F(ErrorTest, ChainIsPerThread) {
  kx::error(0xe0213005, "main", 1, "main thread");
  unsigned long other = 1;
  std::thread t([&] {
    other = kx::getErrorCode();
    kx::error(0xe0213006, "thread", 2, "capture thread");
  });
  t.join();
  EXPECT_EQ(other, 0u);
  EXPECT_EQ(kx::getErrorCode(), 0xe0213005UL);
}

TEST_F(ErrorTest, LastErrorIsRecordedReportedAndDropped) {
  NoticeRecorder rec;
  EXPECT_EQ(_TKxSetLastErrorLS(0x3300001, "file98\\x", 7, "/tmp/a"), 0x3300001);
  EXPECT_EQ(TKxGetLastError(), 0x3300001);
  TKxReportLastError(false);
  EXPECT_EQ(TKxGetLastError(), 0);
  EXPECT_TRUE(rec.texts.empty());
  _KxSetLastErrorL(0x3300002, "file98\\y", 8);
  TKxReportLastError(true);
  ASSERT_EQ(rec.texts.size(), 1u);
  EXPECT_NE(rec.texts[0].find("file98\\y(8)"), std::string::npos);
  EXPECT_EQ(TKxGetLastError(), 0);
}

TEST(ShortSourceName, TakesLastDirectoryAndStem) {
  static_assert(std::string_view(kx::shortSourceName("/a/b/src/kdoint/TILineParser.cpp").s) == "kdoint\\TILineParser");
  static_assert(std::string_view(kx::shortSourceName("TPlane.h").s) == "TPlane");
  static_assert(std::string_view(kx::shortSourceName("x/y.z/TPlane").s) == "y.z\\TPlane");
  static_assert(std::string_view(kx::shortSourceName("").s).empty());
  EXPECT_STREQ(KX_FILE, "kxexception\\test_KxError");
}

}  // namespace
