// The table of integration times: walks in the three modes over the
// shipped table, snapping, the proof texts, and malformed tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>

#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"
#include "stepcontrol/TStepControl.h"

namespace {

unsigned long codeOf(const std::function<void()>& f, std::string* text = nullptr) {
  try {
    f();
  } catch (unsigned long c) {
    if (text) *text = kx::formatErrorChain();
    kx::deleteError();
    return c;
  }
  return 0;
}

TStepControl shipped() {
  TStepControl s;
  s.readIni(TIniFilename(std::string(KX_EXAMPLES_DIR) + "/ini/IntegrationTimes.ini"), "IntegrationTime");
  return s;
}

}  // namespace

TEST(StepControl, WalksOverTheShippedTable) {
  TStepControl s = shipped();
  ASSERT_EQ(s.iGetLineCount(), 5);
  EXPECT_EQ(s.getCurrentValue(), 0.04);
  EXPECT_EQ(s.getFirstValue(), 1e-5);
  EXPECT_EQ(s.getLastValue(), 10);
  // Every value, independently enumerated: 10 + 9 + 9 + 99 + 18 values.
  std::vector<double> all;
  for (int i = 0; i < s.iGetLineCount(); ++i) {
    const auto& l = s.rGetLine(i);
    for (int k = 0; l.dLower + k * l.dStep < l.dUpper - 1e-9 * l.dStep; ++k) all.push_back(l.dLower + k * l.dStep);
    all.push_back(l.dUpper);
  }
  ASSERT_EQ(all.size(), 145u);
  s.setModeAllValues();
  std::vector<double> up{s.getCurrentValue(1e-5)};
  for (double v; s.getNextValue(up.back(), &v);) up.push_back(v);
  ASSERT_EQ(up.size(), all.size());
  for (std::size_t i = 0; i < all.size(); ++i) EXPECT_NEAR(up[i], all[i], 1e-12) << i;
  double v = 0;
  EXPECT_FALSE(s.getPreviousValue(1e-5, &v));  // the first value: false, current unchanged
  EXPECT_EQ(s.getCurrentValue(), 10);
  EXPECT_EQ(s.getCurrentIndex(10), 144);
  EXPECT_EQ(s.getValueNumberBetween(0.002, 0.01), 9);

  // Snapping between lines: to the nearest limit.
  EXPECT_EQ(s.getCurrentValue(0.00014), 0.0001);
  EXPECT_EQ(s.getCurrentValue(0.00016), 0.0002);
  EXPECT_EQ(s.getCurrentValue(1.2), 1.0);
  EXPECT_EQ(s.getCurrentValue(99), 10);

  // Logarithmic steps of 2 from 10 us, and back.
  s.setModeLogarithmicValues(2);
  std::vector<double> log{1e-5};
  for (double n; s.getNextValue(log.back(), &n);) log.push_back(n);
  const std::vector<double> expect{1e-5, 2e-5, 4e-5, 8e-5, 0.0002, 0.0004, 0.0008, 0.002, 0.004, 0.008,
                                   0.02, 0.04,  0.08, 0.16, 0.32,   0.64,   1.5,    3,     6,     10};
  ASSERT_EQ(log.size(), expect.size());
  for (std::size_t i = 0; i < log.size(); ++i) EXPECT_NEAR(log[i], expect[i], 1e-12) << i;
  EXPECT_TRUE(s.getPreviousValue(6, &v));
  EXPECT_EQ(v, 3);
  // A factor so small that it rounds to the same value still moves a step.
  s.setModeLogarithmicValues(1.0);
  EXPECT_TRUE(s.getNextValue(0.5, &v));
  EXPECT_NEAR(v, 0.51, 1e-12);
  EXPECT_EQ(codeOf([&] { s.setModeLogarithmicValues(0.999); }), 0xe5123003UL);
  s.setModeLinearValues(0.25);
  EXPECT_TRUE(s.getNextValue(1.5, &v));
  EXPECT_EQ(v, 2);  // 1.75 is no value: the nearer one of the line

  TStepControl empty;
  EXPECT_EQ(codeOf([&] { empty.getFirstValue(); }), 0xe7023001UL);
  EXPECT_EQ(codeOf([&] { empty.getNextValue(1, &v); }), 0xe7023001UL);
  empty.vSetFromStepTo(0, 0.3, 1);
  EXPECT_EQ(empty.rGetLine(0).iCount, 4);
  EXPECT_EQ(empty.getCurrentValue(0.95), 1);  // the last value is the upper limit
}

TEST(StepControl, MalformedTables) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Min0=1\nMax0=1\nStep0=0.1\n", "StepControl table, line=0: invalid range limits (1.000000<=1.000000)"},
      {"Min0=0\nMax0=1\nStep0=0\n", "StepControl table, line=0: invalid step value 0.000000 (<=0)"},
      {"Min0=0\nMax0=1\nStep0=-1\n", "StepControl table, line=0: invalid step value -1.000000 (<=0)"},
      {"Min0=0\nMax0=1\nStep0=0.1\nMin1=1\nMax1=2\nStep1=0.1\n",
       "StepControl table: invalid range limits (1.000000 (line=0) >= 1.000000 (line=1))"},
      {"Min0=0\nMax0=1e9\nStep0=1e-9\n", "StepControl table, line=0: invalid step value 0.000000 (<=0)"},
      {"Min0=zero\nMax0=1\nStep0=0.1\n", "Error in: [T]:Min0"},
  };
  TStepControl s = shipped();
  for (const auto& [lines, text] : cases) {
    const int n = static_cast<int>(std::count(lines.begin(), lines.end(), '\n') / 3);
    TKxMemIniFile ini;
    ini.vReadFromString(("[T]\nNumber=" + std::to_string(n) + "\n" + lines).c_str());
    std::string got;
    EXPECT_NE(codeOf([&] { s.readIni(&ini, "T"); }, &got), 0u) << lines;
    EXPECT_NE(got.find(text), std::string::npos) << got;
    EXPECT_EQ(s.iGetLineCount(), 5);  // nothing taken over
  }
  for (const char* bad : {"[T]\nMin0=1\n", "[T]\nNumber=1000000\n", "[T]\nNumber=-1\n", "[T]\nNumber=x\n",
                          "[T]\nNumber=1\nMin0=0\nMax0=1\nStep0=0.1\nMode=2\nModeStep=0.5\n"}) {
    TKxMemIniFile ini;
    ini.vReadFromString(bad);
    EXPECT_NE(codeOf([&] { s.readIni(&ini, "T"); }), 0u) << bad;
  }
  TKxMemIniFile none;
  std::string got;
  EXPECT_EQ(codeOf([&] { s.readIni(&none, "T"); }, &got), 0xe5123001UL);
  EXPECT_NE(got.find("Not found: [T]:Number"), std::string::npos);

  // Exactly between two lines: only a strictly nearer limit changes the line.
  TKxMemIniFile two;
  two.vReadFromString("[T]\nNumber=2\nMin0=1\nMax0=2\nStep0=0.5\nMin1=3\nMax1=4\nStep1=0.5\n");
  TStepControl t;
  t.readIni(&two, "T");
  EXPECT_EQ(t.getCurrentValue(2.5), 2);

  TKxMemIniFile out;
  s.writeIni(&out, "W");
  TStepControl back;
  back.readIni(&out, "W");
  EXPECT_EQ(back.iGetLineCount(), 5);
  EXPECT_EQ(back.eGetMode(), s.eGetMode());
  EXPECT_EQ(back.getLastValue(), 10);
}

// Every walk over the shipped table, up from the first value and down from
// the last, in each mode, against the golden file (values in "%.9g").
TEST(StepControl, WalksAgainstGoldenFile) {
  TStepControl s = shipped();
  std::string text;
  char buf[64];
  auto walk = [&](const char* name) {
    text += name;
    text += " up:";
    double v = s.getCurrentValue(s.getFirstValue());
    do {
      std::snprintf(buf, sizeof buf, " %.9g", v);
      text += buf;
    } while (s.getNextValue(v, &v));
    text += "\n";
    text += name;
    text += " down:";
    v = s.getCurrentValue(s.getLastValue());
    do {
      std::snprintf(buf, sizeof buf, " %.9g", v);
      text += buf;
    } while (s.getPreviousValue(v, &v));
    text += "\n";
  };
  s.setModeAllValues();
  walk("all");
  s.setModeLinearValues(0.05);
  walk("linear 0.05");
  s.setModeLinearValues(0.5);
  walk("linear 0.5");
  s.setModeLogarithmicValues(2);
  walk("log 2");
  s.setModeLogarithmicValues(1.5);
  walk("log 1.5");
  s.setModeLogarithmicValues(10);
  walk("log 10");
  const std::string golden = std::string(KX_TEST_DATA_DIR) + "/walks.golden";
  std::ifstream in(golden);
  std::stringstream want;
  want << in.rdbuf();
  if (want.str().empty() && std::getenv("KX_WRITE_GOLDEN")) {
    std::ofstream(golden) << text;
    GTEST_SKIP() << "golden file written";
  }
  EXPECT_EQ(text, want.str());
}
