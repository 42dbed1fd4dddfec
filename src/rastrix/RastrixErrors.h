// Error codes raised by the planes, pixel types, coordinate systems, colour
// space and pixel classifier of rastrix. The numbers are part of the system's
// contract (error files, scripts compare them): never renumber.
#pragma once

namespace Rastrix::Err {

// Pixel types
inline constexpr unsigned long UnknownPixelTyp = 0x07000000UL;     // "Datentyp/Pixeltyp %d unbekannt."
inline constexpr unsigned long PixelTokenUnreadable = 0x03300000UL;  // no text

// Planes
inline constexpr unsigned long PlaneNotValid = 0xe7021004UL;
inline constexpr unsigned long LineDistanceTooSmall = 0xe7121003UL;  // "_LineDistance=%d < _Columns=%d"
// The last line or column of a plane would lie beyond the int range.
inline constexpr unsigned long PlaneBeyondIntRange = 0xe71210c8UL;  // "FirstLine=%d Lines=%d"
inline constexpr unsigned long InterlacedTooFewLines = 0xe7121005UL;
inline constexpr unsigned long LineOutside = 0xe742101bUL;  // "Line=%d FirstLine=%d LastLine=%d"
inline constexpr unsigned long AreaFirstLine = 0xe712101cUL;
inline constexpr unsigned long AreaLastLine = 0xe722101dUL;
inline constexpr unsigned long AreaLinesReversed = 0xe752101eUL;
inline constexpr unsigned long AreaFirstColumn = 0xe712101fUL;
inline constexpr unsigned long AreaLastColumn = 0xe7221020UL;
inline constexpr unsigned long AreaColumnsReversed = 0xe7521021UL;
inline constexpr unsigned long SubPictureArea = 0xe5121023UL;
inline constexpr unsigned long ValueRange = 0xe5121096UL;
inline constexpr unsigned long PixelTypNotIdentifiable = 0xe7021097UL;  // also the image handle failures
inline constexpr unsigned long NoFileOnBasicPlane = 0xe0721098UL;

// Plane operations
inline constexpr unsigned long InsertIntoItself = 0xe7721022UL;
inline constexpr unsigned long ScaleDownBlockLines = 0xe7521071UL;     // "_iY=%d <= 0"
inline constexpr unsigned long ScaleDownBlockColumns = 0xe7521072UL;   // "_iX=%d <= 0"
inline constexpr unsigned long ScaleDownBlockTooHigh = 0xe7521073UL;   // "_iY=%d > Lines=%d"
inline constexpr unsigned long ScaleDownBlockTooWide = 0xe7521074UL;   // "_iX=%d > Columns=%d"
inline constexpr unsigned long ScaleDownTargetLines = 0xe7521075UL;    // "iLines=%d > Lines=%d"
inline constexpr unsigned long ScaleDownTargetColumns = 0xe7521076UL;  // "iColumns=%d > Columns=%d"

// Coordinate systems
inline constexpr unsigned long CoordinateSystemCalculate = 0xe5121099UL;  // vCalculate, vSetPoint: set, not thrown
inline constexpr unsigned long CoordinateSystemIndex = 0xe74210c5UL;      // "Index=%d Size=%d"
inline constexpr unsigned long CoordinateSystemInUse = 0xe53210c6UL;      // vDelete of a system with users
inline constexpr unsigned long CoordinateSystemNoWayBack = 0xe76210c7UL;  // vGetOrgXY of the linear system

// Pixel colour space
inline constexpr unsigned long ColorSpaceIndex = 0xe0721084UL;  // "Index=%d"
inline constexpr unsigned long ColorSpaceNoWayBack = 0xe072108eUL;

// Pixel classifier
inline constexpr unsigned long KlassifikatorIndex = 0x5100000UL;

}  // namespace Rastrix::Err
