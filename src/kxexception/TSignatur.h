// A text of up to 23 characters that identifies one object across saving and
// loading: coordinate systems and pixel classifiers carry one. A fresh
// signature is unique in the process: "%s%03u%06u" over the local date and
// time ("YYYYMMDDhhmmss"), the milliseconds and the monotonic counter modulo
// 1000000 (the counter is strictly increasing, so two signatures made in the
// same millisecond still differ).
#pragma once

#include <cstddef>

class TSignatur {
 public:
  static constexpr std::size_t uSize = 24;  // bytes, terminating null included

  TSignatur() { vCreate(); }
  // A fresh unique text.
  void vCreate();
  const char* get() const { return ca_; }
  // Takes at most 23 characters of `text`; null gives the empty text.
  void set(const char* text);

  bool operator==(const TSignatur& o) const;
  bool operator!=(const TSignatur& o) const { return !(*this == o); }
  bool operator>(const TSignatur& o) const;

 private:
  char ca_[uSize]{};
};
