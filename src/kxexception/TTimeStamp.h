// Process::TTimeStamp: one signed 64-bit count of the monotonic clock
// (nanoseconds). Stamps are strictly increasing across the process, so two
// stamps taken one after the other are ordered and never equal. Compared high
// word first as signed, low word as unsigned: the order of the 64-bit value.
#pragma once

#include <cstdint>

namespace Process {

class TTimeStamp {
 public:
  TTimeStamp() { set(); }
  explicit TTimeStamp(int64_t count) : count_(count) {}
  void set();
  int64_t i64GetCount() const { return count_; }
  int32_t lGetHigh() const { return static_cast<int32_t>(count_ >> 32); }
  uint32_t ulGetLow() const { return static_cast<uint32_t>(count_); }

  bool operator==(const TTimeStamp& o) const { return count_ == o.count_; }
  bool operator!=(const TTimeStamp& o) const { return count_ != o.count_; }
  bool operator<(const TTimeStamp& o) const { return count_ < o.count_; }
  bool operator>(const TTimeStamp& o) const { return count_ > o.count_; }
  bool operator<=(const TTimeStamp& o) const { return count_ <= o.count_; }
  bool operator>=(const TTimeStamp& o) const { return count_ >= o.count_; }

 private:
  int64_t count_ = 0;  // little-endian: the low word first in memory
};

}  // namespace Process
