// Path names and directories.
//
// Two separator forms meet here: scripts and ini files write '/', because '\'
// is special in a script text; older texts carry '\'. Every function accepts
// both, and none hands a '\' to the system. A drive "X:" at the start of a
// path is recognised in the text, so that names written on another platform
// split, combine and search as they read; to the system "c:" is nothing but
// the first directory of a relative path.
//
// Functions named b... answer false instead of failing; makeDir and changeDir
// raise the codes of file98/File98Errors.h. All functions are thread safe
// except changeDir, which changes the process's current directory.
#pragma once

#include <cstdint>
#include <string>

#include "kxexception/KxDir.h"  // kx::existDir

namespace kx {

// Part masks of splitFileName and vCombineFileName.
enum eFilePart { eFileDrive = 1, eFileDir = 2, eFileName = 4, eFileExt = 8, eFileAll = 15 };

// Splits a path: drive "X:" (a letter and a colon at the start), directory up
// to and including the last separator, name, extension from the last '.' of
// the name on, with the point. A name made only of points ("..") and a name
// whose only point is its first character (".profile") have no extension.
// Separators stay as they stand. Null gives four empty parts.
void fnsplit(const char* path, std::string& drive, std::string& dir, std::string& name, std::string& ext);
// Joins the parts: a '/' is put between a directory and a name when the
// directory does not end in a separator, a '.' before an extension that lacks
// it. Null parts count as empty.
std::string fnmerge(const char* drive, const char* dir, const char* name, const char* ext);

// Creates the directory and every missing parent. An existing directory is no
// error. Raises ulMakeDirCreate, ulMakeDirNotDir, ulMakeDirStat or
// ulMakeDirMissing, with the path.
void makeDir(const char* path);
// Makes the directory current; a trailing separator is cut. Raises
// ulChangeDir with the path. (There are no drives to change here.)
void changeDir(const char* path);
// Removes the directory with everything in it. False if the path is no
// directory, is the root, or anything could not be removed.
bool bRemoveDirectory(const char* path);
// Whether a file can be created in the directory (tried with a probe file
// that is deleted at once).
bool bDirWriteable(const char* path);
// Whether the file can be written: an existing file is opened for writing
// without changing it; for a file that does not exist, whether its directory
// is writeable.
bool bFileWriteable(const char* path);

// Looks through the program's arguments (after the program name; options
// starting with '-' are skipped) for the first file whose extension is
// `extension` ("mac" or ".mac", compared without regard to case). On success
// `file` takes it with '/' as separator; otherwise it is left alone.
bool bFileInCommandline(const char* extension, std::string& file);
// The arguments bFileInCommandline looks through. Until the host sets them,
// the process's own command line is used.
void vSetCommandLine(int argc, const char* const* argv);

// Looks for `file` in `startPath` and then in each directory above it. On
// success `foundPath` is the directory where it is, written as `startPath`
// was: with '\' if that held one, with a trailing separator if that had one.
// On failure `foundPath` is empty.
//   bFindPathForFile("x.ini", "c:/a/b/", p)  -> p == "c:/a/" if c:/a/x.ini exists
bool bFindPathForFile(const char* file, const char* startPath, std::string& foundPath);

// The parts of `path` selected by the mask (eFilePart), joined, into `buffer`.
//   splitFileName("c:/a/b.tif", s, eFileExt) -> ".tif"
void splitFileName(const char* path, std::string& buffer, int parts);
// Combines the selected parts of two paths: each part is taken from `b` when
// `b` has it, else from `a`. A directory of `b` that is relative (no drive, no
// leading separator) is taken relative to the directory of `a`. "." and ".."
// are resolved in the text; the result is written with '/'.
//   vCombineFileName("c:/m/x.mac", "../ini/y.ini", s, 15, 15) -> "c:/ini/y.ini"
void vCombineFileName(const char* a, const char* b, std::string& buffer, int partsA, int partsB);
// `path` relative to the directory `base` ("../ini/y.ini"), written with '/'.
// Relative inputs are first taken relative to the current directory. A path
// on another drive stays absolute. A path naming `base` itself gives ".".
void vRelativePathName(const char* base, const char* path, std::string& buffer);

// Milliseconds of a monotonic clock; wraps after 49 days.
uint32_t timeGetTime();

// The directory of the running program, '/' form, with a trailing '/'.
std::string sGetProgramDir();
// Every '\' turned into '/'.
std::string sToSlash(const char* path);

}  // namespace kx

// In place: keeps drive and directory of the path, turns '\' into '/' and cuts
// the last directory, keeping the '/' before it. A path with no further '/'
// stays: "c:/a/b/x.ini" -> "c:/a/", "c:/" -> "c:/", "a/" -> "a/".
void vReduceDir(char* path);
