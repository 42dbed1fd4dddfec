#include "kxexception/TSignatur.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "platform/Clock.h"

void TSignatur::vCreate() {
  using namespace std::chrono;
  const auto t = system_clock::now();
  const std::time_t secs = system_clock::to_time_t(t);
  std::tm local{};
  localtime_r(&secs, &local);
  char when[16];
  std::strftime(when, sizeof when, "%Y%m%d%H%M%S", &local);
  const auto ms = static_cast<unsigned>(duration_cast<milliseconds>(t.time_since_epoch()).count() % 1000);
  const auto counter = static_cast<unsigned>(kx::platform::monotonicNs() % 1000000);
  std::snprintf(ca_, uSize, "%.14s%03u%06u", when, ms % 1000, counter % 1000000);
}

void TSignatur::set(const char* text) {
  std::memset(ca_, 0, uSize);
  if (text) std::strncpy(ca_, text, uSize - 1);
}

bool TSignatur::operator==(const TSignatur& o) const { return std::strncmp(ca_, o.ca_, uSize) == 0; }
bool TSignatur::operator>(const TSignatur& o) const { return std::strncmp(ca_, o.ca_, uSize) > 0; }
