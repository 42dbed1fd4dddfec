#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "RLCTestUtil.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "object98/TRLCArray.h"

using namespace rlctest;
namespace fs = std::filesystem;

namespace {

class RLCFile : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("kx_rlcfile_" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string path(const char* name) const { return (dir_ / name).string(); }
  std::string put(const char* name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }
  static std::string slurp(const std::string& p) {
    std::ifstream in(p, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }
  fs::path dir_;
};

TEST_F(RLCFile, WritesDecimalNumbersEachFollowedByCrLf) {
  const TRLCArray a = makeArray(-1, -3, 7, {{{-3, -1}, {4, 7}}, {}});
  a.write(path("a.rlc").c_str());
  EXPECT_EQ(slurp(path("a.rlc")), "-1\r\n0\r\n-3\r\n7\r\n2\r\n-3\r\n-1\r\n4\r\n7\r\n0\r\n");
  TRLCArray().write(path("e.rlc").c_str());
  EXPECT_EQ(slurp(path("e.rlc")), "0\r\n-1\r\n0\r\n-1\r\n");
}

TEST_F(RLCFile, RoundTripKeepsBoxLinesAndSetsTheStamp) {
  TRLCArray a(TOPointList<int>(ePolygon, {{-20, -5}, {40, 10}, {-3, 33}, {10, 12}}));
  a |= TRLCArray(TOPointList<int>(eCircle, {{100, 100}, {117, 0}}));
  a.write(path("r.rlc").c_str());
  TRLCArray b;
  const auto before = b.rGetTimeStamp();
  b.read(path("r.rlc").c_str());
  EXPECT_GT(b.rGetTimeStamp(), before);
  EXPECT_EQ(boxOf(b), boxOf(a));
  EXPECT_EQ(linesOf(b), linesOf(a));
  // A box without line objects is written with empty lines and reads back.
  TRLCArray n(TOPointList<int>(ePolygon, {{0, 3}, {5, 3}}));
  n.write(path("n.rlc").c_str());
  b.read(path("n.rlc").c_str());
  EXPECT_EQ(boxOf(b), (Box{3, 3, 0, 5}));
  EXPECT_EQ(b.pixel(), 0);
}

TEST_F(RLCFile, ReadAcceptsLfAndAnyWhiteSpace) {
  TRLCArray a;
  a.read(put("lf.rlc", "2\n3\n0\n9\n1\n0\n4\n2\n5 6 8 9").c_str());
  EXPECT_EQ(boxOf(a), (Box{2, 3, 0, 9}));
  EXPECT_EQ(linesOf(a), (std::vector<Runs>{{{0, 4}}, {{5, 6}, {8, 9}}}));
  // A Windows name with backslashes reaches the file.
  put("win.rlc", "0\r\n-1\r\n0\r\n-1\r\n");
  std::string win = path("win.rlc");
  std::replace(win.begin(), win.end(), '/', '\\');
  a.read(win.c_str());
  EXPECT_EQ(a.size(), 0);
}

TEST_F(RLCFile, MissingFilesRaiseTheirCodes) {
  TLanguage::setEnglisch();
  TRLCArray a = makeArray(0, 0, 1, {{{0, 1}}});
  EXPECT_EQ(codeOf([&] { a.read(path("none.rlc").c_str()); }), object98::ulRLCRead);
  EXPECT_EQ(a.size(), 0);
  EXPECT_NE(chainOf([&] { a.read(path("none.rlc").c_str()); }).find("Can not read file"), std::string::npos);
  EXPECT_EQ(codeOf([&] { a.write(path("no/such/dir.rlc").c_str()); }), object98::ulRLCWrite);
  TLanguage::setDeutsch();
  EXPECT_NE(chainOf([&] { a.write(path("no/dir.rlc").c_str()); }).find("nicht schreibbar"), std::string::npos);
  EXPECT_EQ(codeOf([&] { a.read(dir_.string().c_str()); }), object98::ulRLCRead);  // a directory
}

TEST_F(RLCFile, MalformedFilesRaiseAndLeaveAnEmptyArray) {
  const char* bad[] = {
      "",                                   // nothing
      "0\r\n",                              // truncated header
      "0\r\n0\r\n0\r\n5\r\n",               // a line without its count
      "0\r\n0\r\n0\r\n5\r\n1\r\n3\r\n",     // a run without its end
      "0\r\n0\r\n0\r\n5\r\n2\r\n0\r\n1\r\n",  // a count beyond the data
      "0\r\n1\r\n0\r\n5\r\n0\r\n",          // one line missing
      "0\r\n0\r\n0\r\n5\r\nx\r\n",          // not a number
      "0\r\n0\r\n0\r\n5\r\n1x\r\n",         // a number with garbage
      "0\r\n0\r\n0\r\n5\r\n-1\r\n",         // a negative count
      "0\r\n0\r\n0\r\n5\r\n1\r\n4\r\n2\r\n",  // a run backwards
      "5\r\n3\r\n0\r\n5\r\n",               // LastLine before FirstLine - 1
      "-2147483648\r\n2147483647\r\n0\r\n5\r\n",  // a box of 2^32 lines
      "0\r\n0\r\n0\r\n5\r\n2000000000\r\n",     // a huge count
      "0\r\n0\r\n0\r\n99999999999\r\n0\r\n",    // beyond int
      "0\r\n0\r\n0\r\n5\r\n0\r\n7\r\n",         // data after the end
      "-\r\n",                                  // a sign alone
  };
  int i = 0;
  for (const char* text : bad) {
    TRLCArray a = makeArray(0, 0, 1, {{{0, 1}}});
    const std::string p = put("bad.rlc", text);
    EXPECT_EQ(codeOf([&] { a.read(p.c_str()); }), object98::ulRLCFileFormat) << "case " << i;
    EXPECT_EQ(boxOf(a), (Box{0, -1, 0, -1})) << "case " << i;
    ++i;
  }
}

TEST_F(RLCFile, FuzzedFilesNeverCrash) {
  TRLCArray src(TOPointList<int>(ePolygon, {{0, 0}, {30, 5}, {12, 40}}));
  src.write(path("good.rlc").c_str());
  const std::string good = slurp(path("good.rlc"));
  std::mt19937 g(99);
  int accepted = 0;
  for (int round = 0; round < 400; ++round) {
    std::string s = good;
    switch (round % 4) {
      case 0:  // truncated anywhere
        s.resize(g() % s.size());
        break;
      case 1:  // random bytes flipped, binary included
        for (int k = 0; k < 3; ++k) s[g() % s.size()] = static_cast<char>(g() % 256);
        break;
      case 2:  // a digit changed
        for (char& c : s)
          if (c >= '0' && c <= '9' && g() % 20 == 0) c = static_cast<char>('0' + g() % 10);
        break;
      case 3:  // a huge line of digits
        s.insert(g() % s.size(), std::string(5000, '7'));
        break;
    }
    const std::string p = put("fuzz.rlc", s);
    TRLCArray a;
    const unsigned long code = codeOf([&] { a.read(p.c_str()); });
    if (code == 0) {
      ++accepted;
      long n = 0;  // whatever was accepted is a consistent array
      for (const Runs& l : linesOf(a))
        for (const TRLC& r : l) n += r.getWidth();
      EXPECT_EQ(n, a.pixel());
    } else {
      EXPECT_EQ(code, object98::ulRLCFileFormat);
      EXPECT_EQ(a.size(), 0);
    }
  }
  EXPECT_GT(accepted, 0);
}

}  // namespace
