// Process::TTimeStamp: one signed 64-bit count of the monotonic clock
// (nanoseconds). Stamps are strictly increasing across the process, so two
// stamps taken one after the other are ordered and never equal. Compared high
// word first as signed, low word as unsigned: the order of the 64-bit value.
//
// Threads: a stamp may be set on one thread while another reads it (the
// capture thread stamps a plane the main thread compares); the count is read
// and written as one atomic word, so no half-written stamp is ever seen.
#pragma once

#include <atomic>
#include <cstdint>

namespace Process {

class TTimeStamp {
 public:
  TTimeStamp() { set(); }
  explicit TTimeStamp(int64_t count) : count_(count) {}
  TTimeStamp(const TTimeStamp& o) : count_(o.i64GetCount()) {}
  TTimeStamp& operator=(const TTimeStamp& o) {
    store(o.i64GetCount());
    return *this;
  }
  void set();
  int64_t i64GetCount() const {
    return std::atomic_ref<int64_t>(const_cast<int64_t&>(count_)).load(std::memory_order_relaxed);
  }
  int32_t lGetHigh() const { return static_cast<int32_t>(i64GetCount() >> 32); }
  uint32_t ulGetLow() const { return static_cast<uint32_t>(i64GetCount()); }

  bool operator==(const TTimeStamp& o) const { return i64GetCount() == o.i64GetCount(); }
  bool operator!=(const TTimeStamp& o) const { return i64GetCount() != o.i64GetCount(); }
  bool operator<(const TTimeStamp& o) const { return i64GetCount() < o.i64GetCount(); }
  bool operator>(const TTimeStamp& o) const { return i64GetCount() > o.i64GetCount(); }
  bool operator<=(const TTimeStamp& o) const { return i64GetCount() <= o.i64GetCount(); }
  bool operator>=(const TTimeStamp& o) const { return i64GetCount() >= o.i64GetCount(); }

 private:
  void store(int64_t v) { std::atomic_ref<int64_t>(count_).store(v, std::memory_order_relaxed); }

  alignas(8) int64_t count_ = 0;  // little-endian: the low word first in memory
};

}  // namespace Process
