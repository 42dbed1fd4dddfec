// Date and time as one double: whole days since 30 December 1899, the time of
// day as the fraction (0.5 is noon). Local time, as the pictures are dated by
// the clock of the measuring computer.
#pragma once

class TDateTime {
 public:
  TDateTime() = default;
  explicit TDateTime(double days) : val(days) {}

  // The present local date and time, to the millisecond.
  static TDateTime now();
  // From a calendar date and a time of day (month 1..12, day 1..31); fields
  // out of their range roll over into the next ones.
  static TDateTime encode(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                          int millisecond = 0);
  // Into calendar fields, the millisecond rounded; any pointer may be null.
  void decode(int* year, int* month, int* day, int* hour = nullptr, int* minute = nullptr, int* second = nullptr,
              int* millisecond = nullptr) const;

  operator double() const { return val; }
  bool operator==(const TDateTime& o) const { return val == o.val; }

  double val = 0.0;
};
