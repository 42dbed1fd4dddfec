// Every named error code of the module against the number it must have: a
// wrong number in the header fails here, not only in the callers' tests,
// which compare with the names.
#include <gtest/gtest.h>

#include "HDF5/H5Errors.h"

TEST(ErrorCodes, HDF5NamesHaveTheirNumbers) {
  const struct {
    const char* name;
    unsigned long named, literal;
  } codes[] = {
      {"ulH5LibraryError", kx::h5::ulH5LibraryError, 0xe002e001UL},  // our own
      {"ulH5HandleClosed", kx::h5::ulH5HandleClosed, 0xe002e002UL},
      {"ulH5Database", kx::h5::ulH5Database, 0xe002e00aUL},
      {"ulH5ReadOnly", kx::h5::ulH5ReadOnly, 0xe002e00eUL},
      {"ulH5NoAbsolutePath", kx::h5::ulH5NoAbsolutePath, 0xe002e00fUL},
      {"ulH5NotExist", kx::h5::ulH5NotExist, 0xe002e010UL},
      {"ulH5ObjectInTheWay", kx::h5::ulH5ObjectInTheWay, 0xe002e015UL},
      {"ulH5BootblockKey", kx::h5::ulH5BootblockKey, 0xe002e025UL},
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
