// Every named error code of the module against the number it must have: a
// wrong number in the header fails here, not only in the callers' tests,
// which compare with the names.
#include <gtest/gtest.h>

#include "file98/File98Errors.h"

TEST(ErrorCodes, file98NamesHaveTheirNumbers) {
  const struct {
    const char* name;
    unsigned long named, literal;
  } codes[] = {
      {"ulMakeDirCreate", kx::file98::ulMakeDirCreate, 0xe3013015UL},
      {"ulMakeDirNotDir", kx::file98::ulMakeDirNotDir, 0xe3c13016UL},
      {"ulMakeDirStat", kx::file98::ulMakeDirStat, 0xe3013017UL},
      {"ulMakeDirMissing", kx::file98::ulMakeDirMissing, 0xe3c13018UL},
      {"ulChangeDir", kx::file98::ulChangeDir, 0xe3c13019UL},
      {"ulSearchPathIndex", kx::file98::ulSearchPathIndex, 0xe741301aUL},  // our own
      {"ulIniWrite", kx::file98::ulIniWrite, 0xe301301bUL},  // our own
      {"ulFileRead", kx::file98::ulFileRead, 0xe331301cUL},  // our own
      {"ulRectIniSection", kx::file98::ulRectIniSection, 0xe331705cUL},
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
