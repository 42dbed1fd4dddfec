// Coordinate-system handles of the utility library: what a plane's world
// coordinate system tells about its pixels. The handle carries the name, the
// value names and units of up to three channels, the X and Y axes (names,
// units, area unit), the Z axis (name, unit, value) and the scaling: world
// X = offsetX + scaleX * column, Y = offsetY + scaleY * line. As the systems
// of the planes learn more, the handle carries more.
//
// Texts are copied. Every function returns 0 or a code of KxUtilsErrors.h; a
// null text counts as empty. Thread safe.
#pragma once

#include <string>

namespace kxutils {

struct TCoordinatesystemInfo {
  std::string name;
  std::string valueName[3];
  std::string valueUnit[3];
  std::string nameX, unitX, nameY, unitY, unitA;
  std::string nameZ, unitZ;
  double valueZ = 0.0;
  double offsetX = 0.0, scaleX = 1.0, offsetY = 0.0, scaleY = 1.0;
};

}  // namespace kxutils

unsigned long ulCoordinatesystem_CreateHandle(void** handle);
unsigned long ulCoordinatesystem_DeleteHandle(void** handle);
unsigned long ulCoordinatesystem_SetName(void* handle, const char* name);
// Value name and unit of channels 0, 1, 2 (a grey plane leaves 1 and 2 empty).
unsigned long ulCoordinatesystem_SetValueUnit(void* handle, const char* value0, const char* unit0,
                                              const char* value1, const char* unit1, const char* value2,
                                              const char* unit2);
unsigned long ulCoordinatesystem_SetXYAxis(void* handle, const char* nameX, const char* unitX, const char* nameY,
                                           const char* unitY, const char* unitA);
unsigned long ulCoordinatesystem_SetZAxis(void* handle, const char* nameZ, const char* unitZ, double valueZ);
// World values of pixel (0, 0) as offsets, the world difference between pixel
// (1, 1) and (0, 0) as scales.
unsigned long ulCoordinatesystem_SetScalingParam(void* handle, double offsetX, double scaleX, double offsetY,
                                                 double scaleY);
unsigned long ulCoordinatesystem_GetInfo(void* handle, kxutils::TCoordinatesystemInfo* info);
