// Error codes of the regions and objects module (0xECCMMSSS, module 22).
// Each code is raised with KX_THROW together with the text given beside it.
#pragma once

namespace object98 {

// TVector98: erase with an index at or beyond the size. "Index=%d >= Size=%d"
inline constexpr unsigned long ulVectorErase = 0xe7422030UL;
// TVector98: operator[] with an index at or beyond the size. "Index=%d >= Size=%d"
inline constexpr unsigned long ulVectorIndex = 0xe7422031UL;

// TRLCArray::operator[] (non-const), empty array or line out of range.
// "Line=%d FirstLine=%d LastLine=%d"
inline constexpr unsigned long ulRLCLineIndex = 0xe742203aUL;
// TRLCArray::operator[] const, the same.
inline constexpr unsigned long ulRLCLineIndexConst = 0xe742203bUL;
// calcRLC on a type without rasteriser (ellipse, groups on a bare list).
inline constexpr unsigned long ulRLCTypeNotImplemented = 0xe072203cUL;
// calcRLCPoint on a list whose point count is not 1.
inline constexpr unsigned long ulRLCPointCount = 0xe072203dUL;
// TRLCArray::write cannot open the file. "Datei %s nicht schreibbar"
inline constexpr unsigned long ulRLCWrite = 0xe352203eUL;
// TRLCArray::read cannot open the file. "Datei %s nicht lesbar"
inline constexpr unsigned long ulRLCRead = 0xe322203fUL;

// The checks of the run code that have no number of their own: a failed
// consistency check raises one of these instead of stopping the host.
// TRLCLine::operator[] with an index outside 0..Size-1 ("Index>=0", "Index<Size").
inline constexpr unsigned long ulRLCRunIndex = 0xe7422060UL;
// TRLCLine::getFirstColumn / getLastColumn on an empty line ("Size>0").
inline constexpr unsigned long ulRLCEmptyLine = 0xe7422061UL;
// The polygon rasteriser's own checks ("Size<=MaxSize", "y>=FirstLine", ...).
inline constexpr unsigned long ulRLCPolygonCheck = 0xe7422062UL;
// A run file whose content is not a run-length region (truncated, not a
// number, counts that do not fit the file).
inline constexpr unsigned long ulRLCFileFormat = 0xe3222064UL;
// A point list with fewer points than its type needs.
inline constexpr unsigned long ulRLCTooFewPoints = 0xe7522066UL;
// A point list with a coordinate outside +-2^30, where the rasterisers'
// differences would overflow.
inline constexpr unsigned long ulRLCCoordinateRange = 0xe7522067UL;

// TRLC2Picture: a value text that does not parse, or a value out of range.
inline constexpr unsigned long ulRLCValueText = 0xe7522068UL;
inline constexpr unsigned long ulRLCValueRange = 0xe7422069UL;
// (A plane of no known pixel type raises Rastrix::Err::ulUnknownPixelTyp.)

}  // namespace object98
