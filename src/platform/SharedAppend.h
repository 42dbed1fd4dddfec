// Writing to a file that other parties write to as well.
#pragma once

#include <cstddef>

namespace kx::platform {

// Writes all `size` bytes to `fd`. With `append`, the range the text adds is
// locked (fcntl, from the end) and the text goes to the end of the file, so
// that appends of several parties stay whole. Returns the number of bytes
// written; `error` receives errno of a failed write (0 when none failed).
std::size_t writeAll(int fd, const char* text, std::size_t size, bool append, int& error);

}  // namespace kx::platform
