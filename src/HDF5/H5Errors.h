// Error codes of the HDF5 object layer and the texts raised with them.
//
// Most failures of the layer share the code 0xe002e00a and differ only in the
// text; the other codes are kept for the cases callers test for.
#pragma once

#include "kxexception/TLanguage.h"

namespace kx::h5 {

// A call into the HDF5 library failed; the library's own error stack is in
// the text of the chain.
inline constexpr unsigned long ulH5LibraryError = 0xe002e001UL;
// A handle was used after it was closed.
inline constexpr unsigned long ulH5HandleClosed = 0xe002e002UL;
// The data base as a whole: library, files, aliases, formats.
inline constexpr unsigned long ulH5Database = 0xe002e00aUL;
// A write through a read-only facade or into a file opened read-only.
inline constexpr unsigned long ulH5ReadOnly = 0xe002e00eUL;
// A path that must be absolute is not.
inline constexpr unsigned long ulH5NoAbsolutePath = 0xe002e00fUL;
// A directory (or an object on a path) does not exist.
inline constexpr unsigned long ulH5NotExist = 0xe002e010UL;
// An object stands where a new one is to be created and overwrite is off.
inline constexpr unsigned long ulH5ObjectInTheWay = 0xe002e015UL;
// A bootblock key that is not there.
inline constexpr unsigned long ulH5BootblockKey = 0xe002e025UL;

using TLS = TLanguage::TLanguageString;

inline constexpr TLS sNotInitialized("Bibliothek nicht initialisiert", "Library not initialized");
// Creating over an existing file reports the text of a missing one: kept as it is.
inline constexpr TLS sFileExists("Datei %s existiert nicht", "File %s not exist");
inline constexpr TLS sFileOpened("Datei %s schon geöffnet", "File %s already opened");
inline constexpr TLS sAliasTaken("Alias %s existiert schon", "Alias %s already exist");
inline constexpr TLS sWrongFormat("Datei %s existiert nicht oder hat falsches Format",
                                  "File %s not exist or wrong format");
inline constexpr TLS sAliasUnknown("Alias %s existiert nicht", "Alias %s not exist");
inline constexpr TLS sCannotCreate("Datei %s kann nicht erzeugt werden", "Can not create file %s");
inline constexpr TLS sCannotOpen("Datei %s kann nicht geöffnet werden", "Can not open file %s");
inline constexpr TLS sNoAbsolutePath("Kein absoluter Pfad: %s", "No absolute path: %s");
inline constexpr TLS sDirExists("Verzeichnis existiert bereits: %s", "Directory already exist: %s");
inline constexpr TLS sDirNotExist("Verzeichnis existiert nicht: %s", "Directory not exist: %s");
inline constexpr TLS sObjectNotExist("Objekt existiert nicht: %s", "Object not exist: %s");
inline constexpr TLS sNotADataset("Kein Datensatz: %s", "No dataset: %s");
inline constexpr TLS sNotCompound("Kein zusammengesetzter Datentyp: %s", "No compound data type: %s");
inline constexpr TLS sReadOnly("Nur Lesezugriff: %s", "Read only access: %s");
inline constexpr TLS sObjectInTheWay("Objekt existiert bereits: %s", "Object already exist: %s");
inline constexpr TLS sKeyMissing("Schlüssel %s existiert nicht", "Key %s not exist");
inline constexpr TLS sHandleClosed("Objekt %s ist geschlossen", "Object %s is closed");
inline constexpr TLS sOutOfRange("Bereich außerhalb des Datensatzes %s", "Range outside of dataset %s");
inline constexpr TLS sBadArgument("Ungültiges Argument: %s", "Invalid argument: %s");
inline constexpr TLS sBootblockFull("Bootblock der Datei %s (%d Bytes) zu klein für den Eintrag %s",
                                    "Bootblock of file %s (%d bytes) too small for the entry %s");
inline constexpr TLS sBootblockIo("Bootblock der Datei %s: %s", "Bootblock of file %s: %s");
inline constexpr TLS sCannotDelete("Datei %s kann nicht gelöscht werden", "Can not delete file %s");

}  // namespace kx::h5
