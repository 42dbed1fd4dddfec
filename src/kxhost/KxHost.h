// The host classes of the library for macros: each class is a table of
// methods registered with the interpreter when the library is loaded.
#pragma once

#include <memory>

#include "kdoint/TIUserBasic.h"

namespace kxhost {
std::unique_ptr<TIUserBasic> pPictureClass();
std::unique_ptr<TIUserBasic> pRegionClass();
std::unique_ptr<TIUserBasic> pColorPictureClass();
std::unique_ptr<TIUserBasic> pClassifierClass();
std::unique_ptr<TIUserBasic> pClassListClass();
std::unique_ptr<TIUserBasic> pResultClass();
std::unique_ptr<TIUserBasic> pObjectListClass();
std::unique_ptr<TIUserBasic> pStatisticClass();
std::unique_ptr<TIUserBasic> pIntTimeClass();
}  // namespace kxhost
