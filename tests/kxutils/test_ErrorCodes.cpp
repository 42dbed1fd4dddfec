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
      {"ulErrHandle", kxutils::ulErrHandle, 0xe5140001UL},  // our own
      {"ulErrArgument", kxutils::ulErrArgument, 0xe5140002UL},  // our own
      {"ulErrType", kxutils::ulErrType, 0xe5140003UL},  // our own
      {"ulErrNoImage", kxutils::ulErrNoImage, 0xe5140004UL},  // our own
      {"ulErrOutside", kxutils::ulErrOutside, 0xe7440005UL},  // our own
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
