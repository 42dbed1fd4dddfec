// Every named error code of the module against the number it must have: a
// wrong number in the header fails here, not only in the callers' tests,
// which compare with the names.
#include <gtest/gtest.h>

#include "rastrix/RastrixErrors.h"

TEST(ErrorCodes, rastrixNamesHaveTheirNumbers) {
  const struct {
    const char* name;
    unsigned long named, literal;
  } codes[] = {
      {"ulUnknownPixelTyp", Rastrix::Err::ulUnknownPixelTyp, 0x07000000UL},
      {"ulPixelTokenUnreadable", Rastrix::Err::ulPixelTokenUnreadable, 0x03300000UL},
      {"ulPlaneNotValid", Rastrix::Err::ulPlaneNotValid, 0xe7021004UL},
      {"ulLineDistanceTooSmall", Rastrix::Err::ulLineDistanceTooSmall, 0xe7121003UL},
      {"ulPlaneBeyondIntRange", Rastrix::Err::ulPlaneBeyondIntRange, 0xe71210c8UL},  // our own
      {"ulInterlacedTooFewLines", Rastrix::Err::ulInterlacedTooFewLines, 0xe7121005UL},
      {"ulLineOutside", Rastrix::Err::ulLineOutside, 0xe742101bUL},
      {"ulAreaFirstLine", Rastrix::Err::ulAreaFirstLine, 0xe712101cUL},
      {"ulAreaLastLine", Rastrix::Err::ulAreaLastLine, 0xe722101dUL},
      {"ulAreaLinesReversed", Rastrix::Err::ulAreaLinesReversed, 0xe752101eUL},
      {"ulAreaFirstColumn", Rastrix::Err::ulAreaFirstColumn, 0xe712101fUL},
      {"ulAreaLastColumn", Rastrix::Err::ulAreaLastColumn, 0xe7221020UL},
      {"ulAreaColumnsReversed", Rastrix::Err::ulAreaColumnsReversed, 0xe7521021UL},
      {"ulSubPictureArea", Rastrix::Err::ulSubPictureArea, 0xe5121023UL},
      {"ulValueRange", Rastrix::Err::ulValueRange, 0xe5121096UL},
      {"ulPixelTypNotIdentifiable", Rastrix::Err::ulPixelTypNotIdentifiable, 0xe7021097UL},
      {"ulNoFileOnBasicPlane", Rastrix::Err::ulNoFileOnBasicPlane, 0xe0721098UL},
      {"ulInsertIntoItself", Rastrix::Err::ulInsertIntoItself, 0xe7721022UL},
      {"ulScaleDownBlockLines", Rastrix::Err::ulScaleDownBlockLines, 0xe7521071UL},
      {"ulScaleDownBlockColumns", Rastrix::Err::ulScaleDownBlockColumns, 0xe7521072UL},
      {"ulScaleDownBlockTooHigh", Rastrix::Err::ulScaleDownBlockTooHigh, 0xe7521073UL},
      {"ulScaleDownBlockTooWide", Rastrix::Err::ulScaleDownBlockTooWide, 0xe7521074UL},
      {"ulScaleDownTargetLines", Rastrix::Err::ulScaleDownTargetLines, 0xe7521075UL},
      {"ulScaleDownTargetColumns", Rastrix::Err::ulScaleDownTargetColumns, 0xe7521076UL},
      {"ulCoordinateSystemCalculate", Rastrix::Err::ulCoordinateSystemCalculate, 0xe5121099UL},
      {"ulCoordinateSystemIndex", Rastrix::Err::ulCoordinateSystemIndex, 0xe74210c5UL},  // our own
      {"ulCoordinateSystemInUse", Rastrix::Err::ulCoordinateSystemInUse, 0xe53210c6UL},  // our own
      {"ulCoordinateSystemNoWayBack", Rastrix::Err::ulCoordinateSystemNoWayBack, 0xe76210c7UL},  // our own
      {"ulColorSpaceIndex", Rastrix::Err::ulColorSpaceIndex, 0xe0721084UL},
      {"ulColorSpaceNoWayBack", Rastrix::Err::ulColorSpaceNoWayBack, 0xe072108eUL},
      {"ulKlassifikatorIndex", Rastrix::Err::ulKlassifikatorIndex, 0x5100000UL},
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
