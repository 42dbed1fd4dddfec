// Monotonic clock and sleeping, in place of the performance counter,
// GetTickCount and Sleep.
#pragma once

#include <cstdint>

namespace kx::platform {

// Nanoseconds of a monotonic clock; strictly increasing across the process:
// two calls never return the same value, so time stamps taken one after the
// other are always ordered.
int64_t monotonicNs();
// Milliseconds of the monotonic clock (the tick count).
uint32_t tickCountMs();
// Blocks the calling thread for at least `ms` milliseconds; 0 yields.
void sleepMs(unsigned ms);

// MulDiv: a * b / c computed in 64 bits and rounded to nearest, halves away
// from zero. c == 0 or a result beyond the 32-bit range gives -1.
int32_t MulDiv(int32_t a, int32_t b, int32_t c);

}  // namespace kx::platform
