// Return codes of the utility library layer (ulImage_*, ulCoordinatesystem_*,
// ulColorSpace_*). Every function returns 0 on success, else one of these;
// none of them throws.
#pragma once

namespace kxutils {

inline constexpr unsigned long ulOk = 0;
// Not a living handle of this kind (null, deleted, made up, or a handle of
// another kind).
inline constexpr unsigned long ulBadHandle = 0xe5140001UL;
// A null pointer where a value is needed, or a geometry below 1 or too large.
inline constexpr unsigned long ulBadArgument = 0xe5140002UL;
// A pixel type code outside 0..5, or two images of different types.
inline constexpr unsigned long ulWrongType = 0xe5140003UL;
// The image has no pixels yet, or its memory could not be allocated.
inline constexpr unsigned long ulNoImage = 0xe5140004UL;
// A pixel or an area outside the image.
inline constexpr unsigned long ulOutside = 0xe7440005UL;
// A closed image format this library does not read or write (B16, DNG, the
// colour-space text), unless a test double stands in.
inline constexpr unsigned long ulFormatNotAvailable = 0xe3040006UL;
// A text file could not be written.
inline constexpr unsigned long ulWriteFailed = 0xe3640007UL;

}  // namespace kxutils
