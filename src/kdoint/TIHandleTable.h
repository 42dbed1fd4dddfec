// Handles for the addresses in class and method lines.
//
// A class line "class NAME 0xHHHHHHHH 0xHHHHHHHH" and a method line
// "RESULT name(ARGS) 0xHHHHHHHH 0xHHHHHHHH" carry a routine, a help text and
// a status function of the running process. Hexadecimal tokens of the
// language are 32 bits, pointers 64: the lines carry handles from this table
// instead, and the class parser turns them back into the addresses. A handle
// that was never given out, or one of the wrong kind, raises 0xe75200c2
// instead of calling into nowhere. Handle 0 is "none" for help and status.
//
// Handles are process wide and stay valid to the end of the process; the
// same address always gets the same handle.
#pragma once

#include <cstdint>

#include "kdoint/TIClass.h"

namespace kdoint {
uint32_t uRoutineHandle(TIRoutine routine);
uint32_t uHelpHandle(const char* help);
uint32_t uStatusHandle(TIStatusFunction status);

TIRoutine pRoutineOfHandle(uint32_t handle);
const char* pHelpOfHandle(uint32_t handle);
TIStatusFunction pStatusOfHandle(uint32_t handle);
}  // namespace kdoint
