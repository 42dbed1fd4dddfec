#include "platform/Registry.h"

#include <mutex>
#include <utility>

namespace kx::platform {
namespace {
std::mutex& observerMutex() {
  static std::mutex m;
  return m;
}
RegistryObserver& observer() {
  static RegistryObserver o;
  return o;
}
}  // namespace

RegistryObserver setRegistryObserver(RegistryObserver o) {
  std::lock_guard lock(observerMutex());
  return std::exchange(observer(), std::move(o));
}

bool registrySetString(const RegistryValue& value) {
  std::lock_guard lock(observerMutex());
  if (observer()) observer()(value);
  return true;
}

bool registryValueExists(const std::string&, const std::string&, const std::string&) { return false; }

}  // namespace kx::platform
