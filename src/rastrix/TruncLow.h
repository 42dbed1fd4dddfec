// Floating point to integer pixel values, the one way the system does it:
// truncate toward zero, then keep the low bits of the result. Nothing clips,
// so 300.7 becomes 44 in a byte and -1.5 becomes 255.
//
// Never write a bare (unsigned char)x for a double x: out of range it is
// undefined behaviour, and the optimiser folds it into anything.
#pragma once

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <type_traits>

namespace kx {

// The low bits of trunc(x) for every finite x (exact, also beyond 2^63);
// NaN and the infinities give 0, as the processor's own conversion does.
template <class T>
inline T truncLow(double x) noexcept {
  static_assert(std::is_integral_v<T>, "truncLow converts to an integer type");
  constexpr double two63 = 9223372036854775808.0;
  constexpr double two64 = 18446744073709551616.0;
  int64_t v = 0;
  if (x > -two63 && x < two63) {
    v = static_cast<int64_t>(x);
  } else if (std::isfinite(x)) {
    double r = std::fmod(x, two64);  // exact; an integer because |x| >= 2^63
    if (r >= two63) r -= two64;
    else if (r < -two63) r += two64;
    v = static_cast<int64_t>(r);
  }
  return static_cast<T>(static_cast<uint64_t>(v));
}

// A double rounded to float as the hardware does it, overflow giving an
// infinity, without the undefined out-of-range conversion.
inline float toFloat(double x) noexcept {
  constexpr double limit = 0x1.ffffffp+127;  // FLT_MAX + half an ulp: from here on infinity
  if (x >= limit) return HUGE_VALF;
  if (x <= -limit) return -HUGE_VALF;
  if (x > FLT_MAX) return FLT_MAX;
  if (x < -FLT_MAX) return -FLT_MAX;
  return static_cast<float>(x);
}

}  // namespace kx
