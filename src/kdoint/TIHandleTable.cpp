#include "kdoint/TIHandleTable.h"

#include <map>
#include <mutex>
#include <vector>

#include "kdoint/KdoIntErrors.h"
#include "kxexception/KxError.h"

namespace kdoint {
namespace {

enum eKind : uint32_t { eRoutine = 1, eHelp = 2, eStatus = 3 };
constexpr uint32_t uIndexMask = 0x0fffffffu;

struct TTable {
  std::mutex mutex;
  std::vector<const void*> entries[4];
  std::map<const void*, uint32_t> handles[4];
};
TTable& table() {
  static TTable t;
  return t;
}

uint32_t handleOf(eKind kind, const void* address) {
  if (!address) return 0;
  TTable& t = table();
  const std::lock_guard<std::mutex> lock(t.mutex);
  const auto it = t.handles[kind].find(address);
  if (it != t.handles[kind].end()) return it->second;
  auto& entries = t.entries[kind];
  if (entries.size() >= uIndexMask) KX_THROW(ulUnknownHandle, "Handle table full");
  entries.push_back(address);
  const uint32_t handle = (static_cast<uint32_t>(kind) << 28) | static_cast<uint32_t>(entries.size());
  t.handles[kind].emplace(address, handle);
  return handle;
}

const void* addressOf(eKind kind, uint32_t handle, bool zeroAllowed) {
  if (handle == 0 && zeroAllowed) return nullptr;
  TTable& t = table();
  const std::lock_guard<std::mutex> lock(t.mutex);
  const uint32_t index = handle & uIndexMask;
  if ((handle >> 28) != kind || index == 0 || index > t.entries[kind].size())
    KX_THROW(ulUnknownHandle, "Unbekannter Handle 0x%08x / unknown handle 0x%08x", handle, handle);
  return t.entries[kind][index - 1];
}

}  // namespace

// Routines and status functions are stored as data pointers: on this
// platform a function pointer converts to void* and back unchanged.
uint32_t uRoutineHandle(TIRoutine routine) { return handleOf(eRoutine, reinterpret_cast<const void*>(routine)); }
uint32_t uHelpHandle(const char* help) { return handleOf(eHelp, help); }
uint32_t uStatusHandle(TIStatusFunction status) { return handleOf(eStatus, reinterpret_cast<const void*>(status)); }

TIRoutine pRoutineOfHandle(uint32_t handle) {
  return reinterpret_cast<TIRoutine>(const_cast<void*>(addressOf(eRoutine, handle, false)));
}
const char* pHelpOfHandle(uint32_t handle) { return static_cast<const char*>(addressOf(eHelp, handle, true)); }
TIStatusFunction pStatusOfHandle(uint32_t handle) {
  return reinterpret_cast<TIStatusFunction>(const_cast<void*>(addressOf(eStatus, handle, true)));
}

}  // namespace kdoint
