#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "File98TestUtil.h"
#include "file98/File98Errors.h"
#include "file98/TKxMemIniFile.h"
#include "file98/TTextConverterFromIniFile.h"
#include "kxexception/KxError.h"

namespace {

using namespace kxtest;

TEST(TextConverter, ReplacesPlaceholdersLineByLine) {
  auto ini = parsed("[Replace]\nIni=c:/kx/KdoIntUse.ini\nName=Cam 1\nEmpty=\n[Other]\nName=wrong\n");
  TTextConverterFromIniFile keep;
  EXPECT_EQ(keep.sFilter("file=%Ini%\r\nname=%Name% (%Name%)\r\n%Unknown% stays\n100% of %Name%", &ini, false),
            "file=c:/kx/KdoIntUse.ini\r\nname=Cam 1 (Cam 1)\r\n%Unknown% stays\n100% of Cam 1");
  EXPECT_EQ(keep.sFilter("a\n  %Empty%\t\r\nb\n\t\nc", &ini, true), "a\nb\n\t\nc");  // only lines that became blank go
  EXPECT_EQ(keep.sFilter("%%|%Name", &ini, false), "%%|%Name");
  EXPECT_EQ(keep.sFilter("%Name%", nullptr, false), "%Name%");

  TTextConverterFromIniFile other("Other", "${", "}", false, "?");
  EXPECT_EQ(other.sFilter("${Name} ${Ini} $Name ${Name", &ini, false), "wrong ? $Name ${Name");

  TempDir t;
  writeFile(t / "in.txt", "[Registry]\r\nPath=%Ini%\r\n%Empty%\r\n");
  keep.vFilter((t / "in.txt").c_str(), (t / "out.txt").c_str(), &ini, true);
  EXPECT_EQ(readFile(t / "out.txt"), "[Registry]\r\nPath=c:/kx/KdoIntUse.ini\r\n");
  std::FILE* f = std::fopen((t / "stream.txt").c_str(), "wb");
  ASSERT_NE(f, nullptr);
  keep.vFilter(f, (t / "in.txt").c_str(), &ini);
  std::fclose(f);
  EXPECT_EQ(readFile(t / "stream.txt"), "[Registry]\r\nPath=c:/kx/KdoIntUse.ini\r\n\r\n");
  expectCode(kx::file98::ulFileRead, [&] { keep.vFilter((t / "none.txt").c_str(), (t / "o.txt").c_str(), &ini, false); });
  expectCode(kx::file98::ulIniWrite, [&] { keep.vFilter((t / "in.txt").c_str(), (t / "no/o.txt").c_str(), &ini, false); });
  expectCode(kx::file98::ulIniWrite, [&] { keep.vFilter(nullptr, (t / "in.txt").c_str(), &ini); });

  for (const auto& [s, empty] : {std::pair<const char*, bool>{" \t ", true}, {"", true}, {nullptr, true},
                                 {" \r", false}, {"\t.\t", false}})
    EXPECT_EQ(TTextConverterFromIniFile::bIsEmptyString(s), empty) << (s ? s : "null");
}

}  // namespace
