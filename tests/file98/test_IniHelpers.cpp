// The typed ini helpers and the rectangle's ini forms.
#include <gtest/gtest.h>

#include <string>

#include "File98TestUtil.h"
#include "file98/CRectangle.h"
#include "file98/File98Errors.h"
#include "file98/IniHelpers.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"

namespace {

using namespace kxtest;

TEST(IniHelpers, ReadChangesOnlyWhatExists) {
  auto ini = parsed("[s]\nstr=text\nemptystr=\nint=12\nbadint=x\ndbl=2,5\nbool=0\nrect=1,2,3,4\nbadrect=1,2,3\n");
  std::string s = "keep";
  int i = 99;
  double d = 0.5;
  bool b = true;
  CRectangle r(10, 20, 30, 40);
  // Missing, empty or unreadable: the value stays.
  ReadIniString(ini, "s", "none", s);
  ReadIniString(ini, "s", "emptystr", s);
  ReadIniInteger(ini, "s", "badint", i);
  ReadIniDouble(ini, "none", "dbl", d);
  ReadIniBool(ini, "s", "none", b);
  ReadIniRect(ini, "s", "badrect", r);
  EXPECT_EQ(s, "keep");
  EXPECT_EQ(i, 99);
  EXPECT_EQ(d, 0.5);
  EXPECT_TRUE(b);
  EXPECT_EQ(r, CRectangle(10, 20, 30, 40));

  ReadIniString(ini, "s", "str", s);
  ReadIniInteger(ini, "s", "int", i);
  ReadIniDouble(ini, "s", "dbl", d);
  ReadIniBool(ini, "s", "bool", b);
  ReadIniRect(ini, "s", "rect", r);
  EXPECT_EQ(s, "text");
  EXPECT_EQ(i, 12);
  EXPECT_EQ(d, 2.5);
  EXPECT_FALSE(b);
  EXPECT_EQ(r, CRectangle(1, 2, 3, 4));
}

TEST(IniHelpers, WriteAndReadBack) {
  TKxMemIniFile ini;
  WriteIniString(ini, "w", "s", "a b");
  WriteIniInteger(ini, "w", "i", -3);
  WriteIniDouble(ini, "w", "d", 0.125);
  WriteIniBool(ini, "w", "b", true);
  WriteIniRect(ini, "w", "r", CRectangle(-5, 7, 0, 1023));
  EXPECT_EQ(ini.sWriteToString(), "[w]\r\ns=a b\r\ni=-3\r\nd=1.250000e-01\r\nb=1\r\nr=-5,7,0,1023\r\n\r\n");
  CRectangle r;
  ini.vWriteString("w", "r", " +1 , -2,3 ,4 trailing");
  ReadIniRect(ini, "w", "r", r);
  EXPECT_EQ(r, CRectangle(1, -2, 3, 4));
}

TEST(RectangleIni, FourKeysInAnExistingSection) {
  TKxMemIniFile ini = parsed("[Area]\nLeft=3\nTop=1\n[Empty]\n");
  CRectangle r(10, 20, 30, 40);
  r.readIni(&ini, "Area");
  EXPECT_EQ(r, CRectangle(1, 20, 3, 40));  // absent keys keep the present values
  EXPECT_NE(expectCode(kx::file98::ulRectIniSection, [&] { r.readIni(&ini, "Nowhere"); }).find("Not found [Nowhere]"),
            std::string::npos);
  expectCode(kx::file98::ulRectIniSection, [&] { r.readIni(nullptr, "Area"); });
  expectCode(kx::file98::ulRectIniSection, [&] { r.writeIni(&ini, "Nowhere"); });
  EXPECT_FALSE(ini.bSectionExists("Nowhere"));
  CRectangle(5, 6, 7, 8).writeIni(&ini, "Empty");
  EXPECT_EQ(ini.sWriteToString(),
            "[Area]\r\nLeft=3\r\nTop=1\r\n\r\n[Empty]\r\nLeft=7\r\nRight=8\r\nTop=5\r\nBottom=6\r\n\r\n");
  // The file forms; the one that should write reads instead.
  TempDir t;
  writeFile(t / "r.ini", "[Rect]\r\nLeft=1\r\nRight=2\r\nTop=3\r\nBottom=4\r\n");
  const TIniFilename name((t / "r.ini").c_str());
  r.readIni(name, "Rect");
  EXPECT_EQ(r, CRectangle(3, 4, 1, 2));
  const std::string before = readFile(t / "r.ini");
  CRectangle other(100, 200, 300, 400);
  other.writeIni(name, "Rect");
  EXPECT_EQ(readFile(t / "r.ini"), before);
  EXPECT_EQ(other, CRectangle(3, 4, 1, 2));
  expectCode(kx::file98::ulRectIniSection, [&] { r.readIni(TIniFilename((t / "none.ini").c_str()), "Rect"); });
}

}  // namespace
