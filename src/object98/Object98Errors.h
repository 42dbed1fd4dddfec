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

// TRelationList: the first or second index out of range. "Index=%d Size=%d"
inline constexpr unsigned long ulRelIndex1 = 0xe7422023UL;
inline constexpr unsigned long ulRelIndex2 = 0xe7422024UL;
// TRelationList: the two indices are equal, an ancestor, a descendant or a
// brother of each other.
inline constexpr unsigned long ulRelEqual = 0xe752202bUL;
inline constexpr unsigned long ulRelAncestor = 0xe7522003UL;
inline constexpr unsigned long ulRelDescendant = 0xe7522004UL;
inline constexpr unsigned long ulRelBrother = 0xe7522005UL;
// TRelationList: "%d hat bereits Vater", "%d und %d haben beide keinen Vater",
// "%d und %d haben unterschiedliche Väter", "%d ist kein Sohn von %d",
// "%d hat keinen Vater".
inline constexpr unsigned long ulRelHasVather = 0xe7522006UL;
inline constexpr unsigned long ulRelBothNone = 0xe7522007UL;
inline constexpr unsigned long ulRelDifferent = 0xe7522008UL;
inline constexpr unsigned long ulRelNoSon = 0xe7522009UL;
inline constexpr unsigned long ulRelNoVather = 0xe752200aUL;

// TObjectList98: an index at or beyond size().
inline constexpr unsigned long ulObjectIndex = 0xe7422040UL;
// A type the object's points cannot have. "Typ %d kann nicht gesetzt werden"
inline constexpr unsigned long ulObjectSetTyp = 0xe7522042UL;
// getArea of an object that is no area. "getArea() nur auf Flaechen anwendbar"
inline constexpr unsigned long ulObjectNoArea = 0xe7522044UL;
// The distance to an ellipse: an intended stop (305419896).
inline constexpr unsigned long ulObjectEllipse = 305419896UL;
// vSetDrawLines, vSetDrawCorners and their get forms: not implemented.
inline constexpr unsigned long ulFlagNotImplemented = 0xe0722051UL;
// ".oa" and ".prt": a wrong file type (first line, extension).
// "Falscher Dateityp:"
inline constexpr unsigned long ulObjectFileType = 0xe7522039UL;
// An ".oa" file that cannot be opened / written.
inline constexpr unsigned long ulObjectFileRead = 0xe3222038UL;
inline constexpr unsigned long ulObjectFileWrite = 0xe3522037UL;
// An ".oa" file whose content is broken (truncated, not a number, counts
// that do not fit, a tree that is no tree).
inline constexpr unsigned long ulObjectFileFormat = 0xe3222065UL;
// TBorderLine of an ellipse, a group on a bare point list or an unknown type.
inline constexpr unsigned long ulBorderType = 0xe0422041UL;
// TKlassifikator2Color: an index outside 0..255.
inline constexpr unsigned long ulColorIndex = 0xe7422043UL;
// TLabelPicAssigner: no item for the picture, a region beyond the count.
inline constexpr unsigned long ulLabelPicture = 0xe7822045UL;
inline constexpr unsigned long ulLabelRegion = 0xe7822046UL;
// Old protocol files: a format the reader does not know or a broken text.
inline constexpr unsigned long ulOldProtocol = 0xe332204eUL;

}  // namespace object98
