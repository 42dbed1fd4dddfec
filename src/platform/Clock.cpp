#include "platform/Clock.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace kx::platform {

int64_t monotonicNs() {
  static std::atomic<int64_t> last{0};
  const int64_t now = std::chrono::duration_cast<std::chrono::nanoseconds>(
                          std::chrono::steady_clock::now().time_since_epoch())
                          .count();
  int64_t prev = last.load(std::memory_order_relaxed);
  int64_t next;
  do {
    next = now > prev ? now : prev + 1;
  } while (!last.compare_exchange_weak(prev, next, std::memory_order_relaxed));
  return next;
}

namespace {

class SystemClock : public ClockSource {
 public:
  int64_t nowMs() override {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
  }
  void sleepMs(unsigned ms) override {
    if (ms == 0)
      std::this_thread::yield();
    else
      std::this_thread::sleep_for(std::chrono::milliseconds(ms));
  }
};

SystemClock gSystemClock;
std::atomic<ClockSource*> gClock{&gSystemClock};

}  // namespace

ClockSource* setClockSource(ClockSource* clock) {
  ClockSource* old = gClock.exchange(clock ? clock : &gSystemClock);
  return old == &gSystemClock ? nullptr : old;
}

int64_t tickMs64() { return gClock.load()->nowMs(); }

uint32_t tickCountMs() { return static_cast<uint32_t>(tickMs64()); }

void sleepMs(unsigned ms) { gClock.load()->sleepMs(ms); }

void ManualClock::sleepMs(unsigned ms) {
  ++sleeps_;
  slept_ += ms;
  now_ += ms;
}

int32_t MulDiv(int32_t a, int32_t b, int32_t c) {
  if (c == 0) return -1;
  int64_t p = static_cast<int64_t>(a) * b;
  const bool neg = (p < 0) != (c < 0);
  uint64_t up = p < 0 ? static_cast<uint64_t>(-p) : static_cast<uint64_t>(p);
  uint64_t uc = c < 0 ? static_cast<uint64_t>(-static_cast<int64_t>(c)) : static_cast<uint64_t>(c);
  uint64_t q = (up + uc / 2) / uc;
  if (q > (neg ? 2147483648ULL : 2147483647ULL)) return -1;
  return neg ? static_cast<int32_t>(-static_cast<int64_t>(q)) : static_cast<int32_t>(q);
}

}  // namespace kx::platform
