// Error codes raised by the planes, pixel types, coordinate systems, colour
// space and pixel classifier of rastrix. The numbers are part of the system's
// contract (error files, scripts compare them): never renumber.
#pragma once

namespace Rastrix::Err {

// Pixel types
inline constexpr unsigned long ulUnknownPixelTyp = 0x07000000UL;     // "Datentyp/Pixeltyp %d unbekannt."
inline constexpr unsigned long ulPixelTokenUnreadable = 0x03300000UL;  // no text

// Planes
inline constexpr unsigned long ulPlaneNotValid = 0xe7021004UL;
inline constexpr unsigned long ulLineDistanceTooSmall = 0xe7121003UL;  // "_LineDistance=%d < _Columns=%d"
// The last line or column of a plane would lie beyond the int range.
inline constexpr unsigned long ulPlaneBeyondIntRange = 0xe71210c8UL;  // "FirstLine=%d Lines=%d"
inline constexpr unsigned long ulInterlacedTooFewLines = 0xe7121005UL;
inline constexpr unsigned long ulLineOutside = 0xe742101bUL;  // "Line=%d FirstLine=%d LastLine=%d"
inline constexpr unsigned long ulAreaFirstLine = 0xe712101cUL;
inline constexpr unsigned long ulAreaLastLine = 0xe722101dUL;
inline constexpr unsigned long ulAreaLinesReversed = 0xe752101eUL;
inline constexpr unsigned long ulAreaFirstColumn = 0xe712101fUL;
inline constexpr unsigned long ulAreaLastColumn = 0xe7221020UL;
inline constexpr unsigned long ulAreaColumnsReversed = 0xe7521021UL;
inline constexpr unsigned long ulSubPictureArea = 0xe5121023UL;
inline constexpr unsigned long ulValueRange = 0xe5121096UL;
inline constexpr unsigned long ulPixelTypNotIdentifiable = 0xe7021097UL;  // also the image handle failures
inline constexpr unsigned long ulNoFileOnBasicPlane = 0xe0721098UL;

// Plane operations
inline constexpr unsigned long ulInsertIntoItself = 0xe7721022UL;
inline constexpr unsigned long ulScaleDownBlockLines = 0xe7521071UL;     // "_iY=%d <= 0"
inline constexpr unsigned long ulScaleDownBlockColumns = 0xe7521072UL;   // "_iX=%d <= 0"
inline constexpr unsigned long ulScaleDownBlockTooHigh = 0xe7521073UL;   // "_iY=%d > Lines=%d"
inline constexpr unsigned long ulScaleDownBlockTooWide = 0xe7521074UL;   // "_iX=%d > Columns=%d"
inline constexpr unsigned long ulScaleDownTargetLines = 0xe7521075UL;    // "iLines=%d > Lines=%d"
inline constexpr unsigned long ulScaleDownTargetColumns = 0xe7521076UL;  // "iColumns=%d > Columns=%d"

// Coordinate systems
inline constexpr unsigned long ulCoordinateSystemCalculate = 0xe5121099UL;  // vCalculate, vSetPoint: set, not thrown
inline constexpr unsigned long ulCoordinateSystemIndex = 0xe74210c5UL;      // "Index=%d Size=%d"
inline constexpr unsigned long ulCoordinateSystemInUse = 0xe53210c6UL;      // vDelete of a system with users
inline constexpr unsigned long ulCoordinateSystemNoWayBack = 0xe76210c7UL;  // vGetOrgXY of the linear system

// Pixel colour space
inline constexpr unsigned long ulColorSpaceIndex = 0xe0721084UL;  // "Index=%d"
inline constexpr unsigned long ulColorSpaceNoWayBack = 0xe072108eUL;

// Pixel classifier
inline constexpr unsigned long ulKlassifikatorIndex = 0x5100000UL;


// --- plane files
inline constexpr unsigned long ulFileExists = 0xe3721006UL;          // name
inline constexpr unsigned long ulFileDeleteFailed = 0xe3a21007UL;    // name
inline constexpr unsigned long ulFileOpenWrite = 0xe3521008UL;       // name
inline constexpr unsigned long ulFileWriteFailed = 0xe3621009UL;     // name
inline constexpr unsigned long ulFileOpenRead = 0xe322100aUL;        // name
inline constexpr unsigned long ulFileNoTyp = 0xe052100bUL;           // name
inline constexpr unsigned long ulFileTypValue = 0xe052100cUL;        // name
inline constexpr unsigned long ulFileNoLines = 0xe052100eUL;
inline constexpr unsigned long ulFileLinesUnreadable = 0xe052100fUL;
inline constexpr unsigned long ulFileNoColumns = 0xe0521010UL;
inline constexpr unsigned long ulFileColumnsUnreadable = 0xe0521011UL;
inline constexpr unsigned long ulFileNoFirstLine = 0xe0521012UL;
inline constexpr unsigned long ulFileFirstLineUnreadable = 0xe0521013UL;
inline constexpr unsigned long ulFileNoFirstColumn = 0xe0521014UL;
inline constexpr unsigned long ulFileFirstColumnUnreadable = 0xe0521015UL;
inline constexpr unsigned long ulFileLinesDiffer = 0xe7521016UL;     // "Lines=%d != _Lines=%d"
inline constexpr unsigned long ulFileColumnsDiffer = 0xe7521017UL;
inline constexpr unsigned long ulFileFirstLineDiffers = 0xe7521018UL;
inline constexpr unsigned long ulFileFirstColumnDiffers = 0xe7521019UL;
inline constexpr unsigned long ulFileReadFailed = 0xe332101aUL;      // name
inline constexpr unsigned long ulTextFileExists = 0xe3521095UL;      // name
inline constexpr unsigned long ulClipboardBlock = 0xe752108bUL;

// --- typed pictures and conversion
inline constexpr unsigned long ulConvertEmptyArea = 0xe752104cUL;
inline constexpr unsigned long ulConvertMaxBelowMin = 0xe752104dUL;
inline constexpr unsigned long ulConverterNull = 0xe5121088UL;       // "null pointer assignment"
inline constexpr unsigned long ulConverterWrongType = 0xe5121089UL;  // "wrong image type"
inline constexpr unsigned long ulConverterSame = 0xe512108aUL;       // "src and dst are equal"
inline constexpr unsigned long ulConverterWrongSize = 0xe512108cUL;  // "wrong image size"
}  // namespace Rastrix::Err
