// Colour handles of the utility library: the colour space a colour plane is
// shown in (a flag of the pixel colour space: 0x1 CIE RGB, 0x10 XYZ, ...) and
// its reference white in CIE RGB. As the colour spaces of the planes learn
// more, the handle carries more.
//
// Every function returns 0 or a code of KxUtilsErrors.h. Thread safe.
#pragma once

namespace kxutils {

struct TColorSpaceInfo {
  unsigned long destination = 0x1;
  float refR = 255.0f, refG = 255.0f, refB = 255.0f;
};

}  // namespace kxutils

unsigned long ulColorSpace_CreateHandle(void** handle);
unsigned long ulColorSpace_DeleteHandle(void** handle);
unsigned long ulColorSpace_SetDestination(void* handle, unsigned long toFlag, float refR, float refG, float refB);
unsigned long ulColorSpace_GetInfo(void* handle, kxutils::TColorSpaceInfo* info);
