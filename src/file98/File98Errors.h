// Error codes raised by file98: paths, directories, ini files, rectangles.
#pragma once

namespace kx::file98 {

// makeDir: a directory of the path could not be created (text: path, reason).
inline constexpr unsigned long ulMakeDirCreate = 0xe3013015UL;
// makeDir: a part of the path exists but is no directory.
inline constexpr unsigned long ulMakeDirNotDir = 0xe3c13016UL;
// makeDir: the state of a part of the path could not be read (permission,
// name too long, loop of links).
inline constexpr unsigned long ulMakeDirStat = 0xe3013017UL;
// makeDir: no path given, or the directory is not there after creation.
inline constexpr unsigned long ulMakeDirMissing = 0xe3c13018UL;
// changeDir: no path given, or the directory cannot be made current.
inline constexpr unsigned long ulChangeDir = 0xe3c13019UL;
// TSearchPath: index out of range.
inline constexpr unsigned long ulSearchPathIndex = 0xe741301aUL;
// An ini file or a file written from ini text could not be written.
inline constexpr unsigned long ulIniWrite = 0xe301301bUL;
// A text file to be rewritten could not be read.
inline constexpr unsigned long ulFileRead = 0xe331301cUL;
// CRectangle::readIni / writeIni: the section does not exist.
inline constexpr unsigned long ulRectIniSection = 0xe331705cUL;

}  // namespace kx::file98
