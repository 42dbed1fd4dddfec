// Every named error code of the module against the number it must have: a
// wrong number in the header fails here, not only in the callers' tests,
// which compare with the names.
#include <gtest/gtest.h>

#include "kxutils/KxUtilsErrors.h"

TEST(ErrorCodes, kxutilsNamesHaveTheirNumbers) {
  const struct {
    const char* name;
    unsigned long named, literal;
  } codes[] = {
      {"ulBadHandle", kxutils::ulBadHandle, 0xe5140001UL},  // our own
      {"ulBadArgument", kxutils::ulBadArgument, 0xe5140002UL},  // our own
      {"ulWrongType", kxutils::ulWrongType, 0xe5140003UL},  // our own
      {"ulNoImage", kxutils::ulNoImage, 0xe5140004UL},  // our own
      {"ulOutside", kxutils::ulOutside, 0xe7440005UL},  // our own
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
