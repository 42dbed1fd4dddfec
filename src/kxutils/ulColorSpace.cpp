#include "kxutils/ulColorSpace.h"

#include <memory>
#include <new>

#include "kxutils/HandleTable.h"
#include "kxutils/KxUtilsErrors.h"

using namespace kxutils;
using namespace kxutils::detail;

namespace {
THandleTable<TColorSpaceInfo, eKind::eColorSpace>& table() {
  static THandleTable<TColorSpaceInfo, eKind::eColorSpace> t;
  return t;
}
}  // namespace

unsigned long ulColorSpace_CreateHandle(void** handle) {
  return createHandle(table(), handle, [] { return std::make_unique<TColorSpaceInfo>(); });
}

unsigned long ulColorSpace_DeleteHandle(void** handle) { return deleteHandle(table(), handle); }

unsigned long ulColorSpace_SetDestination(void* handle, unsigned long toFlag, float refR, float refG, float refB) {
  // A destination is one colour-space flag.
  if (toFlag == 0 || (toFlag & (toFlag - 1)) != 0 || toFlag > 0x10000) return ulBadArgument;
  std::lock_guard<std::mutex> lock(tableMutex());
  TColorSpaceInfo* e = table().find(handle);
  if (!e) return ulBadHandle;
  e->destination = toFlag;
  e->refR = refR;
  e->refG = refG;
  e->refB = refB;
  return ulOk;
}

unsigned long ulColorSpace_GetInfo(void* handle, TColorSpaceInfo* info) {
  if (!info) return ulBadArgument;
  std::lock_guard<std::mutex> lock(tableMutex());
  const TColorSpaceInfo* e = table().find(handle);
  if (!e) return ulBadHandle;
  *info = *e;
  return ulOk;
}
