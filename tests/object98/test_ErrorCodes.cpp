// Every named error code of the module against the number it must have: a
// wrong number in the header fails here, not only in the callers' tests,
// which compare with the names.
#include <gtest/gtest.h>

#include "object98/Object98Errors.h"

TEST(ErrorCodes, object98NamesHaveTheirNumbers) {
  const struct {
    const char* name;
    unsigned long named, literal;
  } codes[] = {
      {"ulVectorErase", object98::ulVectorErase, 0xe7422030UL},
      {"ulVectorIndex", object98::ulVectorIndex, 0xe7422031UL},
      {"ulRLCLineIndex", object98::ulRLCLineIndex, 0xe742203aUL},
      {"ulRLCLineIndexConst", object98::ulRLCLineIndexConst, 0xe742203bUL},
      {"ulRLCTypeNotImplemented", object98::ulRLCTypeNotImplemented, 0xe072203cUL},
      {"ulRLCPointCount", object98::ulRLCPointCount, 0xe072203dUL},
      {"ulRLCWrite", object98::ulRLCWrite, 0xe352203eUL},
      {"ulRLCRead", object98::ulRLCRead, 0xe322203fUL},
      {"ulRLCRunIndex", object98::ulRLCRunIndex, 0xe7422060UL},  // our own
      {"ulRLCEmptyLine", object98::ulRLCEmptyLine, 0xe7422061UL},  // our own
      {"ulRLCPolygonCheck", object98::ulRLCPolygonCheck, 0xe7422062UL},  // our own
      {"ulRLCFileFormat", object98::ulRLCFileFormat, 0xe3222064UL},  // our own
      {"ulRLCTooFewPoints", object98::ulRLCTooFewPoints, 0xe7522066UL},  // our own
      {"ulRLCCoordinateRange", object98::ulRLCCoordinateRange, 0xe7522067UL},  // our own
      {"ulRLCValueText", object98::ulRLCValueText, 0xe7522068UL},  // our own
      {"ulRLCValueRange", object98::ulRLCValueRange, 0xe7422069UL},  // our own
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
