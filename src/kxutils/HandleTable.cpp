#include "kxutils/HandleTable.h"

namespace kxutils::detail {

std::mutex& tableMutex() {
  static std::mutex m;
  return m;
}

uintptr_t nextSerial() {
  static uintptr_t serial = 0;
  return ++serial;
}

}  // namespace kxutils::detail
