// The system registry, which has no counterpart here.
//
// A documented no-op: writes are accepted and dropped, and nothing is ever
// found. Before a write is dropped it is handed to the observer, if one is
// installed, so that a host can log what an installation ini would have
// registered and tests can see it. Process wide; the observer is called under
// a mutex.
#pragma once

#include <functional>
#include <string>

namespace kx::platform {

struct RegistryValue {
  std::string hive;   // "HKEY_CLASSES_ROOT", "HKEY_LOCAL_MACHINE"
  std::string key;    // '\' separated, as the registry writes it
  std::string name;   // "" is the key's default value
  std::string value;
  bool overwrite = true;  // false: only where no value exists yet
};

using RegistryObserver = std::function<void(const RegistryValue&)>;

// Installs an observer (an empty function removes it); returns the old one.
RegistryObserver setRegistryObserver(RegistryObserver observer);
// Always true: there is nothing to fail.
bool registrySetString(const RegistryValue& value);
// Always false: the registry is empty.
bool registryValueExists(const std::string& hive, const std::string& key, const std::string& name);

}  // namespace kx::platform
