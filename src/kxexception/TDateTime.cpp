#include "kxexception/TDateTime.h"

#include <chrono>
#include <cmath>
#include <ctime>

namespace {
using namespace std::chrono;

constexpr sys_days epoch() { return sys_days{year{1899} / December / 30}; }
constexpr double msPerDay = 86400000.0;
}  // namespace

TDateTime TDateTime::now() {
  const auto t = system_clock::now();
  const std::time_t secs = system_clock::to_time_t(t);
  std::tm local{};
  localtime_r(&secs, &local);
  const auto ms = duration_cast<milliseconds>(t.time_since_epoch()).count() % 1000;
  return encode(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec,
                static_cast<int>(ms < 0 ? ms + 1000 : ms));
}

TDateTime TDateTime::encode(int y, int mo, int d, int h, int mi, int s, int ms) {
  // Month overflow into years, then the day counted from the first of the month.
  const int m0 = mo - 1;
  const int yy = y + (m0 >= 0 ? m0 / 12 : (m0 - 11) / 12);
  const int mm = ((m0 % 12) + 12) % 12 + 1;
  const sys_days first = sys_days{year{yy} / month{static_cast<unsigned>(mm)} / 1};
  const double days = static_cast<double>((first - epoch()).count()) + (d - 1);
  const double frac = ((h * 60.0 + mi) * 60.0 + s) * 1000.0 + ms;
  return TDateTime(days + frac / msPerDay);
}

void TDateTime::decode(int* y, int* mo, int* d, int* h, int* mi, int* s, int* ms) const {
  const double v = std::isfinite(val) ? val : 0.0;
  long long totalMs = std::llround(v * msPerDay);
  long long dayCount = totalMs / 86400000LL;
  long long rest = totalMs % 86400000LL;
  if (rest < 0) {
    rest += 86400000LL;
    --dayCount;
  }
  const year_month_day ymd{epoch() + days{dayCount}};
  if (y) *y = static_cast<int>(ymd.year());
  if (mo) *mo = static_cast<int>(static_cast<unsigned>(ymd.month()));
  if (d) *d = static_cast<int>(static_cast<unsigned>(ymd.day()));
  if (h) *h = static_cast<int>(rest / 3600000);
  if (mi) *mi = static_cast<int>(rest / 60000 % 60);
  if (s) *s = static_cast<int>(rest / 1000 % 60);
  if (ms) *ms = static_cast<int>(rest % 1000);
}
