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
      {"ulErrVectorErase", object98::ulErrVectorErase, 0xe7422030UL},
      {"ulErrVectorIndex", object98::ulErrVectorIndex, 0xe7422031UL},
      {"ulErrRLCLineIndex", object98::ulErrRLCLineIndex, 0xe742203aUL},
      {"ulErrRLCLineIndexConst", object98::ulErrRLCLineIndexConst, 0xe742203bUL},
      {"ulErrRLCTypeNotImplemented", object98::ulErrRLCTypeNotImplemented, 0xe072203cUL},
      {"ulErrRLCPointCount", object98::ulErrRLCPointCount, 0xe072203dUL},
      {"ulErrRLCWrite", object98::ulErrRLCWrite, 0xe352203eUL},
      {"ulErrRLCRead", object98::ulErrRLCRead, 0xe322203fUL},
      {"ulErrRLCRunIndex", object98::ulErrRLCRunIndex, 0xe7422060UL},  // our own
      {"ulErrRLCEmptyLine", object98::ulErrRLCEmptyLine, 0xe7422061UL},  // our own
      {"ulErrRLCPolygonCheck", object98::ulErrRLCPolygonCheck, 0xe7422062UL},  // our own
      {"ulErrRLCFileFormat", object98::ulErrRLCFileFormat, 0xe3222064UL},  // our own
      {"ulErrRLCTooFewPoints", object98::ulErrRLCTooFewPoints, 0xe7522066UL},  // our own
      {"ulErrRLCCoordinateRange", object98::ulErrRLCCoordinateRange, 0xe7522067UL},  // our own
      {"ulErrRLCValueText", object98::ulErrRLCValueText, 0xe7522068UL},  // our own
      {"ulErrRLCValueRange", object98::ulErrRLCValueRange, 0xe7422069UL},  // our own
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
