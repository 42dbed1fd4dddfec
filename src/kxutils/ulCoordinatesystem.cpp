#include "kxutils/ulCoordinatesystem.h"

#include <memory>
#include <new>

#include "kxutils/HandleTable.h"
#include "kxutils/KxUtilsErrors.h"

using namespace kxutils;
using namespace kxutils::detail;

namespace {

THandleTable<TCoordinatesystemInfo, eKind::eCoordinateSystem>& table() {
  static THandleTable<TCoordinatesystemInfo, eKind::eCoordinateSystem> t;
  return t;
}

std::string text(const char* s) { return s ? std::string(s) : std::string(); }

// Runs `f` on the entry of `handle` under the table's mutex.
template <class F>
unsigned long with(void* handle, F&& f) {
  std::lock_guard<std::mutex> lock(tableMutex());
  TCoordinatesystemInfo* e = table().find(handle);
  if (!e) return ulBadHandle;
  try {
    f(*e);
  } catch (const std::bad_alloc&) {
    return ulNoImage;
  }
  return ulOk;
}

}  // namespace

unsigned long ulCoordinatesystem_CreateHandle(void** handle) {
  return createHandle(table(), handle, [] { return std::make_unique<TCoordinatesystemInfo>(); });
}

unsigned long ulCoordinatesystem_DeleteHandle(void** handle) { return deleteHandle(table(), handle); }

unsigned long ulCoordinatesystem_SetName(void* handle, const char* name) {
  return with(handle, [&](TCoordinatesystemInfo& e) { e.name = text(name); });
}

unsigned long ulCoordinatesystem_SetValueUnit(void* handle, const char* v0, const char* u0, const char* v1,
                                              const char* u1, const char* v2, const char* u2) {
  return with(handle, [&](TCoordinatesystemInfo& e) {
    e.valueName[0] = text(v0);
    e.valueUnit[0] = text(u0);
    e.valueName[1] = text(v1);
    e.valueUnit[1] = text(u1);
    e.valueName[2] = text(v2);
    e.valueUnit[2] = text(u2);
  });
}

unsigned long ulCoordinatesystem_SetXYAxis(void* handle, const char* nameX, const char* unitX, const char* nameY,
                                           const char* unitY, const char* unitA) {
  return with(handle, [&](TCoordinatesystemInfo& e) {
    e.nameX = text(nameX);
    e.unitX = text(unitX);
    e.nameY = text(nameY);
    e.unitY = text(unitY);
    e.unitA = text(unitA);
  });
}

unsigned long ulCoordinatesystem_SetZAxis(void* handle, const char* nameZ, const char* unitZ, double valueZ) {
  return with(handle, [&](TCoordinatesystemInfo& e) {
    e.nameZ = text(nameZ);
    e.unitZ = text(unitZ);
    e.valueZ = valueZ;
  });
}

unsigned long ulCoordinatesystem_SetScalingParam(void* handle, double offsetX, double scaleX, double offsetY,
                                                 double scaleY) {
  return with(handle, [&](TCoordinatesystemInfo& e) {
    e.offsetX = offsetX;
    e.scaleX = scaleX;
    e.offsetY = offsetY;
    e.scaleY = scaleY;
  });
}

unsigned long ulCoordinatesystem_GetInfo(void* handle, TCoordinatesystemInfo* info) {
  if (!info) return ulBadArgument;
  return with(handle, [&](TCoordinatesystemInfo& e) { *info = e; });
}
