// Error codes of the interpreter's front end.
#pragma once

namespace kdofront {
inline constexpr unsigned long ulStartIniList = 0xe7034004UL;    // "%s: [%s]:%s"
inline constexpr unsigned long ulStartIniName = 0xe7834001UL;    // "Name" missing
inline constexpr unsigned long ulStartIniPath = 0xe7834002UL;    // "Path" missing
inline constexpr unsigned long ulStartDirMissing = 0xe3c34003UL;  // macro, init or work directory
// Our own: the FIFO path exists and is no FIFO, or cannot be made.
inline constexpr unsigned long ulPipeUnusable = 0xe30340c0UL;
// Our own: the start ini file is not there.
inline constexpr unsigned long ulStartIniMissing = 0xe30340c1UL;
}  // namespace kdofront
