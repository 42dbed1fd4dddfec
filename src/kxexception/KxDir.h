#pragma once

namespace kx {
// True if `path` names an existing directory. Null or empty: false. Either
// separator is accepted; a trailing separator does not matter.
bool existDir(const char* path);
}  // namespace kx
