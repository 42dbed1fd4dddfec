#include <gtest/gtest.h>

#include <fstream>
#include <thread>
#include <vector>

#include "platform/Clock.h"
#include "platform/SharedLibrary.h"

namespace {

TEST(Clock, StrictlyIncreasingAcrossThreads) {
  std::vector<int64_t> a(20000), b(20000);
  std::thread t([&] {
    for (auto& v : b) v = kx::platform::monotonicNs();
  });
  for (auto& v : a) v = kx::platform::monotonicNs();
  t.join();
  for (size_t i = 1; i < a.size(); ++i) ASSERT_LT(a[i - 1], a[i]);
  std::vector<int64_t> all(a);
  all.insert(all.end(), b.begin(), b.end());
  std::sort(all.begin(), all.end());
  EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
}

TEST(Clock, SleepWaitsAtLeastTheTime) {
  const int64_t t0 = kx::platform::monotonicNs();
  kx::platform::sleepMs(5);
  EXPECT_GE(kx::platform::monotonicNs() - t0, 5'000'000);
}

TEST(Clock, ManualClockDrivesTickAndSleepWithoutWaiting) {
  using namespace kx::platform;
  ManualClock manual(1000);
  const int64_t t0 = monotonicNs();
  {
    ScopedClock guard(&manual);
    EXPECT_EQ(tickMs64(), 1000);
    sleepMs(60000);
    EXPECT_EQ(tickCountMs(), 61000u);
    manual.advance(5);
    EXPECT_EQ(tickMs64(), 61005);
    EXPECT_EQ(manual.sleptMs(), 60000);
    EXPECT_EQ(manual.sleeps(), 1);
  }
  EXPECT_LT(monotonicNs() - t0, 5'000'000'000);  // a minute was never waited
  EXPECT_NE(tickMs64(), 61005);                   // the real clock is back
}

TEST(Clock, MulDivRoundsHalfAwayFromZero) {
  using kx::platform::MulDiv;
  EXPECT_EQ(MulDiv(10, 3, 4), 8);    // 7.5 -> 8
  EXPECT_EQ(MulDiv(-10, 3, 4), -8);  // -7.5 -> -8
  EXPECT_EQ(MulDiv(10, 3, -4), -8);
  EXPECT_EQ(MulDiv(7, 1, 3), 2);     // 2.33 -> 2
  EXPECT_EQ(MulDiv(5, 1, 3), 2);     // 1.67 -> 2
  EXPECT_EQ(MulDiv(1, 1, 0), -1);
  EXPECT_EQ(MulDiv(2147483647, 2, 1), -1);
  EXPECT_EQ(MulDiv(2147483647, 2, 2), 2147483647);
  EXPECT_EQ(MulDiv(-2147483647 - 1, 1, 1), -2147483647 - 1);
}

TEST(SharedLibrary, LoadsByDllNameAndFindsSymbols) {
  kx::platform::SharedLibrary lib;
  // The C library is always there; its soname has no .dll form, so test the
  // fallbacks with a name that cannot exist first.
  EXPECT_FALSE(lib.open("NoSuchGrabber.dll"));
  EXPECT_FALSE(lib.lastError().empty());
  EXPECT_EQ(lib.symbol("x"), nullptr);
  ASSERT_TRUE(lib.open("libm.so.6"));
  EXPECT_NE(lib.symbol("cos"), nullptr);
  EXPECT_EQ(lib.symbol("no_such_symbol_here"), nullptr);
  kx::platform::SharedLibrary moved(std::move(lib));
  EXPECT_TRUE(moved.isOpen());
  EXPECT_FALSE(lib.isOpen());
}

}  // namespace
