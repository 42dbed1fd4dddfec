// Line cleaning and tokens: the golden dump of a macro over every rule, and
// the cases that raise.
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIFileReadStack.h"
#include "kdoint/TIPraeprozessor.h"
#include "kdoint/TIToken.h"
#include "kdoint/TITokenDump.h"
#include "KdoTestUtil.h"
#include "kxexception/KxError.h"

using kdotest::codeOf;

namespace {

std::string slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// Cleans and tokenises one line; "CODE:text" per token, blank separated.
std::string tokens(const char* text) {
  char line[1100];
  std::snprintf(line, sizeof line, "%s", text);
  TIPraeprozessor().processLine(line);
  TITokenLine t;
  t.nextLine(line, false);
  std::string out;
  for (unsigned i = 0; i < t.getSize(); ++i) {
    char s[1100];
    t[i].getString(s);
    out += (i ? " " : "") + std::to_string(t[i].getMeaning()) + ":" + s;
  }
  return out;
}

}  // namespace

// Lines of the golden macro: comments, the in-string toggle of '/', ';',
// numbers, operators, "operator" fused and not, literals with escapes, a last
// line without line feed, and the endPlayMacro line of the popped top file.
TEST(Tokens, GoldenDumpOfEveryRule) {
  TIFileReadStack stack;
  stack.open(KX_TEST_DATA_DIR "/rules.mac", false, true);
  stack.open(KX_TEST_DATA_DIR "/top.mac", false, true);
  EXPECT_EQ(sDumpTokens(stack), slurp(KX_TEST_DATA_DIR "/rules.golden"));
}

TEST(Tokens, RulesLineByLine) {
  const struct {
    const char* in;
    const char* out;
  } rows[] = {
      {"# x=1", ""},
      {"   // x", ""},
      {"", ""},
      {"a=\"x//y\"", "10:a 73:= 25:x//y"},
      {"a=1; b=2;", "10:a 73:= 31:1 10:b 73:= 31:2"},
      {"1x2x3", "error"},
      {"1.2.3", "error"},
      {"0x1e-5", "33:0x1e-5"},
      {"1e5 1e-5 1e+5", "31:1e5 33:1e-5 31:1e 61:+ 31:5"},
      {"operator= operator", "10:operator= 22:operator"},
      {"VOID x", "18:VOID 10:x"},
      {"\"open", "error"},
      {"a\xe4 b", "10:a 40:\xe4 10:b"},
      {"x$1_ _y", "10:x$1_ 10:_y"},
      {"a<<b", "10:a 64:< 64:< 10:b"},
  };
  for (const auto& r : rows) {
    std::string got;
    try {
      got = tokens(r.in);
    } catch (unsigned long) {
      kx::deleteError();
      got = "error";
    }
    EXPECT_EQ(got, r.out) << r.in;
  }
  // The number errors carry their own codes.
  TITokenLine t;
  EXPECT_EQ(codeOf([&] { t.nextLine("1x2x3", false); }), 0xe602000fUL);
  EXPECT_EQ(codeOf([&] { t.nextLine("1.2x", false); }), 0xe602000fUL);
  EXPECT_EQ(codeOf([&] { t.nextLine("1.2.3", false); }), 0xe6020010UL);
  EXPECT_EQ(codeOf([&] { t.nextLine("s=\"abc", false); }), 0xe7520013UL);
}

TEST(Tokens, BlockModeNumbersAndEdits) {
  TITokenLine t;
  t.nextLine("echo(\"}\")\r\n", true);
  ASSERT_EQ(t.getSize(), 1u);
  EXPECT_EQ(t[0].getMeaning(), 42);
  t.nextLine("  { x", true);
  EXPECT_EQ(t[0].getMeaning(), 41);
  t.nextLine("{ }", true);
  EXPECT_EQ(t[0].getMeaning(), 42);
  t.nextLine("x=1", true);
  EXPECT_EQ(t[0].getMeaning(), 10);

  t.nextLine("a 0x10 0X7fffffff 255 1.5e2 -3", false);
  EXPECT_EQ(t[1].toInteger_(), 16);
  EXPECT_EQ(t[2].toInteger_(), 0x7fffffff);
  EXPECT_EQ(t[3].toInteger_(), 255);
  EXPECT_DOUBLE_EQ(t[4].toFloat_(), 150.0);
  EXPECT_EQ(codeOf([&] { t[0].toInteger_(); }), 0xe7020033UL);
  EXPECT_EQ(codeOf([&] { t[3].toFloat_(); }), 0xe702002fUL);
  EXPECT_EQ(t[5].getMeaning(), 58);  // the sign is no part of a number
  EXPECT_EQ(codeOf([&] { t[7]; }), 0xe742002bUL);

  t.nextLine("f(abc, d)", false);
  t.changeToken(2, "longer_name");
  EXPECT_STREQ(t.cpGetLine(), "f(longer_name, d)");
  char s[64];
  t[4].getString(s);
  EXPECT_STREQ(s, "d");  // later tokens follow their text
  t.deleteToken(3);
  EXPECT_EQ(t.getSize(), 5u);
  t[3].getString(s);
  EXPECT_STREQ(s, "d");
  EXPECT_EQ(codeOf([&] { t.deleteToken(5); }), 0xe742000eUL);
  EXPECT_EQ(codeOf([&] { t.changeToken(9, "x"); }), 0xe7420076UL);
  EXPECT_EQ(codeOf([&] { t.changeToken(0, std::string(1100, 'x').c_str()); }), 0xe7420076UL);
  // More tokens than a line can hold: an error, never an overrun.
  std::string many;
  for (int i = 0; i < 150; ++i) many += "a,";
  EXPECT_EQ(codeOf([&] { t.nextLine(many.c_str(), false); }), 0xe742002bUL);
}

// Random bytes, every byte value, long lines: an error or tokens, nothing else.
TEST(Tokens, FuzzCleanerAndTokeniser) {
  std::mt19937 rng(42);
  const char alphabet[] = "ab1x.e-+\"'/\\;#{}()=<>!&|:%* \t\r\n0123456789_$";
  TIPraeprozessor pre;
  TITokenLine t;
  for (int round = 0; round < 20000; ++round) {
    const std::size_t len = rng() % 300;
    std::string s;
    for (std::size_t i = 0; i < len; ++i)
      s += (round % 3 == 0) ? static_cast<char>(rng() % 255 + 1) : alphabet[rng() % (sizeof alphabet - 1)];
    std::vector<char> line(s.begin(), s.end());
    line.push_back('\0');
    pre.processLine(line.data());
    try {
      t.nextLine(line.data(), round % 7 == 0);
      for (unsigned i = 0; i < t.getSize(); ++i) {
        char out[1100];
        t[i].getString(out);
        ASSERT_GE(t[i].getStart(), t.cpGetLine());
        ASSERT_LE(t[i].getStart() + t[i].getLength(), t.cpGetLine() + 1024);
      }
    } catch (unsigned long) {
      kx::deleteError();
    }
  }
}
