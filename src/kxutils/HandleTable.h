// The handle table behind the ul* functions (internal to kxutils).
//
// A handle is an opaque number, never a pointer: the table maps it to its
// object. Numbers are never reused and carry their kind, so a deleted, made-up
// or wrong-kind handle is refused with ulBadHandle instead of being followed.
// One mutex guards all tables; every ul* call holds it for its whole length.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>

#include "kxutils/KxUtilsErrors.h"

namespace kxutils::detail {

enum class eKind : uintptr_t { eImage = 1, eCoordinateSystem = 2, eColorSpace = 3 };

std::mutex& tableMutex();
// The next free number of any kind (under the mutex).
uintptr_t nextSerial();

template <class TEntry, eKind kind>
class THandleTable {
 public:
  // Caller holds tableMutex().
  void* add(std::unique_ptr<TEntry> e) {
    const uintptr_t key = (nextSerial() << 4) | static_cast<uintptr_t>(kind);
    entries_.emplace(key, std::move(e));
    return reinterpret_cast<void*>(key);
  }
  TEntry* find(const void* h) const {
    const auto key = reinterpret_cast<uintptr_t>(h);
    if ((key & 0xF) != static_cast<uintptr_t>(kind)) return nullptr;
    auto it = entries_.find(key);
    return it == entries_.end() ? nullptr : it->second.get();
  }
  bool remove(const void* h) { return find(h) && entries_.erase(reinterpret_cast<uintptr_t>(h)) == 1; }
  std::size_t size() const { return entries_.size(); }

 private:
  std::unordered_map<uintptr_t, std::unique_ptr<TEntry>> entries_;
};

// The body of every ul*_CreateHandle: `make()` builds the entry, which gets a
// new handle in *handle. Takes the mutex itself; running out of memory is
// ulNoImage.
template <class TTable, class F>
unsigned long createHandle(TTable& table, void** handle, F&& make) {
  if (!handle) return ulBadArgument;
  std::lock_guard<std::mutex> lock(tableMutex());
  try {
    *handle = table.add(make());
  } catch (const std::bad_alloc&) {
    return ulNoImage;
  }
  return ulOk;
}

// The body of every ul*_DeleteHandle: removes the entry and nulls *handle.
template <class TTable>
unsigned long deleteHandle(TTable& table, void** handle) {
  if (!handle) return ulBadArgument;
  std::lock_guard<std::mutex> lock(tableMutex());
  if (!table.remove(*handle)) return ulBadHandle;
  *handle = nullptr;
  return ulOk;
}

}  // namespace kxutils::detail
