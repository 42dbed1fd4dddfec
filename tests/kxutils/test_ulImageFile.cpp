// The closed image formats answer "not available" unless a double stands in;
// the text writers of the export.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "kxutils/KxUtilsErrors.h"
#include "kxutils/ulImage.h"
#include "kxutils/ulImageFile.h"

namespace {
struct Double : kxutils::TImageFileDouble {
  unsigned long b16Info(const char*, int* lines, int* columns) override {
    *lines = 3;
    *columns = 4;
    return 0;
  }
};
std::string slurp(const std::string& f) {
  std::ifstream in(f);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}
}  // namespace

TEST(ImageFiles, ClosedFormatsAndTheirDouble) {
  int lines = 0, columns = 0, type = 0, fl = 0, fc = 0;
  EXPECT_EQ(ulB16_InfoW("x.b16", &lines, &columns, nullptr, nullptr), kxutils::ulFormatNotAvailable);
  EXPECT_EQ(ulImage_GetFileInfoW("x.cos", &type, &lines, &columns, &fl, &fc), kxutils::ulFormatNotAvailable);
  Double d;
  kxutils::vSetImageFileDouble(&d);
  EXPECT_EQ(ulB16_InfoW("x.b16", &lines, &columns, nullptr, nullptr), 0u);
  EXPECT_EQ(lines * 10 + columns, 34);
  EXPECT_EQ(ulDNG_ReadGrey16ImageW("x.dng", nullptr, 1, 1, 1), kxutils::ulFormatNotAvailable);
  kxutils::vSetImageFileDouble(nullptr);
}

TEST(ImageFiles, TextListAndArray) {
  const std::string dir = std::filesystem::temp_directory_path() / ("kx_text_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  float pixels[2][3] = {{1, 2, 3}, {4, 5, 6}};
  void* image = nullptr;
  ASSERT_EQ(ulImage_CreateHandle(2, &image), 0u);
  ASSERT_EQ(ulImage_Alloc2(image, 2, 3, 10, 20, pixels), 0u);
  ASSERT_EQ(ulImage_WriteTextArrayW(image, nullptr, nullptr, 10, 11, 2, 20, 22, 2, (dir + "/a.txt").c_str(),
                                    kxutils::eTextCoordinates),
            0u);
  EXPECT_EQ(slurp(dir + "/a.txt"), "\t20\t22\n10\t1\t3\n11\t4\t6\n");
  ASSERT_EQ(ulImage_WriteTextListW(image, nullptr, nullptr, 11, 11, 1, 21, 21, 1, (dir + "/l.txt").c_str(),
                                   kxutils::eTextHeader | kxutils::eTextCoordinates),
            0u);
  EXPECT_EQ(slurp(dir + "/l.txt"), "List\n11\t21\t5\n");
  EXPECT_NE(ulImage_WriteTextListW(image, nullptr, nullptr, 0, 0, 1, 0, 0, 1, (dir + "/o.txt").c_str(), 0), 0u);
  ulImage_DeleteHandle(&image);
  std::filesystem::remove_all(dir);
}
