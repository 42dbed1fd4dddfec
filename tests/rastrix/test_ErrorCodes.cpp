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
      {"UnknownPixelTyp", Rastrix::Err::UnknownPixelTyp, 0x07000000UL},
      {"PixelTokenUnreadable", Rastrix::Err::PixelTokenUnreadable, 0x03300000UL},
      {"PlaneNotValid", Rastrix::Err::PlaneNotValid, 0xe7021004UL},
      {"LineDistanceTooSmall", Rastrix::Err::LineDistanceTooSmall, 0xe7121003UL},
      {"PlaneBeyondIntRange", Rastrix::Err::PlaneBeyondIntRange, 0xe71210c8UL},  // our own
      {"InterlacedTooFewLines", Rastrix::Err::InterlacedTooFewLines, 0xe7121005UL},
      {"LineOutside", Rastrix::Err::LineOutside, 0xe742101bUL},
      {"AreaFirstLine", Rastrix::Err::AreaFirstLine, 0xe712101cUL},
      {"AreaLastLine", Rastrix::Err::AreaLastLine, 0xe722101dUL},
      {"AreaLinesReversed", Rastrix::Err::AreaLinesReversed, 0xe752101eUL},
      {"AreaFirstColumn", Rastrix::Err::AreaFirstColumn, 0xe712101fUL},
      {"AreaLastColumn", Rastrix::Err::AreaLastColumn, 0xe7221020UL},
      {"AreaColumnsReversed", Rastrix::Err::AreaColumnsReversed, 0xe7521021UL},
      {"SubPictureArea", Rastrix::Err::SubPictureArea, 0xe5121023UL},
      {"ValueRange", Rastrix::Err::ValueRange, 0xe5121096UL},
      {"PixelTypNotIdentifiable", Rastrix::Err::PixelTypNotIdentifiable, 0xe7021097UL},
      {"NoFileOnBasicPlane", Rastrix::Err::NoFileOnBasicPlane, 0xe0721098UL},
      {"InsertIntoItself", Rastrix::Err::InsertIntoItself, 0xe7721022UL},
      {"ScaleDownBlockLines", Rastrix::Err::ScaleDownBlockLines, 0xe7521071UL},
      {"ScaleDownBlockColumns", Rastrix::Err::ScaleDownBlockColumns, 0xe7521072UL},
      {"ScaleDownBlockTooHigh", Rastrix::Err::ScaleDownBlockTooHigh, 0xe7521073UL},
      {"ScaleDownBlockTooWide", Rastrix::Err::ScaleDownBlockTooWide, 0xe7521074UL},
      {"ScaleDownTargetLines", Rastrix::Err::ScaleDownTargetLines, 0xe7521075UL},
      {"ScaleDownTargetColumns", Rastrix::Err::ScaleDownTargetColumns, 0xe7521076UL},
      {"CoordinateSystemCalculate", Rastrix::Err::CoordinateSystemCalculate, 0xe5121099UL},
      {"CoordinateSystemIndex", Rastrix::Err::CoordinateSystemIndex, 0xe74210c5UL},  // our own
      {"CoordinateSystemInUse", Rastrix::Err::CoordinateSystemInUse, 0xe53210c6UL},  // our own
      {"CoordinateSystemNoWayBack", Rastrix::Err::CoordinateSystemNoWayBack, 0xe76210c7UL},  // our own
      {"ColorSpaceIndex", Rastrix::Err::ColorSpaceIndex, 0xe0721084UL},
      {"ColorSpaceNoWayBack", Rastrix::Err::ColorSpaceNoWayBack, 0xe072108eUL},
      {"KlassifikatorIndex", Rastrix::Err::KlassifikatorIndex, 0x5100000UL},
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
