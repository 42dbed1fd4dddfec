// Monotonic clock and sleeping, in place of the performance counter,
// GetTickCount and Sleep.
#pragma once

#include <atomic>
#include <cstdint>

namespace kx::platform {

// Nanoseconds of a monotonic clock; strictly increasing across the process:
// two calls never return the same value, so time stamps taken one after the
// other are always ordered.
int64_t monotonicNs();
// Milliseconds of the tick (the tick count); from the installed clock.
uint32_t tickCountMs();
// Milliseconds of the tick as a 64-bit count that never wraps.
int64_t tickMs64();
// Waits at least `ms` milliseconds on the installed clock; 0 yields.
void sleepMs(unsigned ms);

// The clock behind the tick and every wait of the library. The default is the
// monotonic clock with a real sleep. Tests install a ManualClock, whose sleep
// advances its time at once, so that nothing waits for real. Process wide;
// `monotonicNs` (time stamps) is not affected.
class ClockSource {
 public:
  virtual ~ClockSource() = default;
  virtual int64_t nowMs() = 0;
  virtual void sleepMs(unsigned ms) = 0;
};

// Installs a clock (nullptr restores the default); returns the old one, or
// nullptr when the default was in use. The caller keeps ownership.
ClockSource* setClockSource(ClockSource* clock);

// A clock that moves only when told to or when somebody sleeps on it.
class ManualClock : public ClockSource {
 public:
  explicit ManualClock(int64_t startMs = 0) : now_(startMs) {}
  int64_t nowMs() override { return now_.load(); }
  void sleepMs(unsigned ms) override;
  void advance(int64_t ms) { now_ += ms; }
  void set(int64_t ms) { now_ = ms; }
  // Sum of all sleeps asked for, and their number.
  int64_t sleptMs() const { return slept_.load(); }
  int64_t sleeps() const { return sleeps_.load(); }

 private:
  std::atomic<int64_t> now_;
  std::atomic<int64_t> slept_{0};
  std::atomic<int64_t> sleeps_{0};
};

// Installs a clock for the lifetime of the guard and restores the old one.
class ScopedClock {
 public:
  explicit ScopedClock(ClockSource* clock) : old_(setClockSource(clock)) {}
  ~ScopedClock() { setClockSource(old_); }
  ScopedClock(const ScopedClock&) = delete;
  ScopedClock& operator=(const ScopedClock&) = delete;

 private:
  ClockSource* old_;
};

// MulDiv: a * b / c computed in 64 bits and rounded to nearest, halves away
// from zero. c == 0 or a result beyond the 32-bit range gives -1.
int32_t MulDiv(int32_t a, int32_t b, int32_t c);

}  // namespace kx::platform
