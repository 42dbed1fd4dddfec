// Date and time as one double, and signatures.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <ctime>
#include <set>
#include <string>
#include <thread>

#include "kxexception/TDateTime.h"
#include "kxexception/TSignatur.h"

namespace {

TEST(DateTime, DaysSince30December1899) {
  EXPECT_EQ(TDateTime::encode(1899, 12, 30).val, 0.0);
  EXPECT_EQ(TDateTime::encode(1900, 1, 1).val, 2.0);
  EXPECT_EQ(TDateTime::encode(2000, 1, 1, 12).val, 36526.5);
  EXPECT_EQ(TDateTime::encode(1899, 12, 29, 18).val, -0.25);
  EXPECT_EQ(TDateTime::encode(2023, 14, 1).val, TDateTime::encode(2024, 2, 1).val);  // month rolls over
  int y, mo, d, h, mi, s, ms;
  TDateTime::encode(2024, 2, 29, 23, 59, 58, 999).decode(&y, &mo, &d, &h, &mi, &s, &ms);
  EXPECT_EQ(y * 10000 + mo * 100 + d, 20240229);
  EXPECT_EQ(h * 10000 + mi * 100 + s, 235958);
  EXPECT_EQ(ms, 999);
  TDateTime(-1.5).decode(&y, &mo, &d, &h);
  EXPECT_EQ(y * 10000 + mo * 100 + d, 18991228);
  EXPECT_EQ(h, 12);
  TDateTime(std::nan("")).decode(&y, nullptr, nullptr);
  EXPECT_EQ(y, 1899);
  // now() is local time of this moment.
  const std::time_t t = std::time(nullptr);
  std::tm local{};
  localtime_r(&t, &local);
  TDateTime::now().decode(&y, &mo, &d, &h, &mi);
  const int diff = std::abs((h * 60 + mi) - (local.tm_hour * 60 + local.tm_min));
  EXPECT_TRUE(diff <= 1 || diff >= 24 * 60 - 1);
}

TEST(Signatur, UniqueAnd23Characters) {
  std::set<std::string> seen;
  for (int i = 0; i < 5000; ++i) {
    TSignatur s;
    EXPECT_EQ(std::strlen(s.get()), 23u);
    EXPECT_TRUE(seen.insert(s.get()).second) << s.get();
  }
  TSignatur a, b;
  b = a;
  EXPECT_EQ(a, b);
  b.set("0123456789012345678901234567");
  EXPECT_STREQ(b.get(), "01234567890123456789012");
  EXPECT_TRUE(b != a);
  b.set(nullptr);
  EXPECT_STREQ(b.get(), "");
  EXPECT_TRUE(a > b);
}

}  // namespace
