// Old protocol files built with our own TIFF writer: checked by tiffdump,
// imported with their groups; broken and fuzzed region texts.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <random>

#include "../rastrix/RastrixTestUtil.h"
#include "RLCTestUtil.h"
#include "object98/Object98Errors.h"
#include "object98/TObjectList98.h"
#include "object98/TOldProtokoll.h"

using rlctest::codeOf;

namespace {

std::string file(const char* name) {
  return (std::filesystem::temp_directory_path() / (std::string("kx_prt_") + std::to_string(::getpid()) + name)).string();
}

// Directory 0 with the capture type and a data area, 1 with a comment, 2
// with one tag of regions.
void makePrt(const std::string& name, uint16_t tag, const std::string& text) {
  CWTiff w;
  ASSERT_EQ(w.OpenFile(name.c_str(), TIFF::Overwrite), 0u);
  ASSERT_EQ(w.FillHeader(), 0u);
  w.SetLines(48, 0);
  w.SetColumns(64, 0);
  w.AddAsciiTag(TOldProtokoll::tagCaptureTyp, "HighDyn,1.5,3", 0);
  w.AddAsciiTag(TOldProtokoll::tagLevels, "10 100 1000", 0);
  CTiffHeader& h = w.rGetHeader();
  h.AddNewIFD();
  h.AddNewIFD();
  w.AddAsciiTag(TOldProtokoll::tagComment, "Alte Messung", 1);
  CTag t;
  t.tag = tag;
  t.type = 2;
  t.count = static_cast<uint32_t>(text.size());
  t.data.assign(text.begin(), text.end());
  h.pGetThisIFD(2)->AddNewTagOfSameTyp(t);
  ASSERT_EQ(w.Write(), 0u);
  ASSERT_EQ(w.CloseFile(), 0u);
}

std::string pointList(int code, int group, std::initializer_list<int> xy) {
  std::string s = "CPointList\n-\n-\n" + std::to_string(code) + "\n" + std::to_string(group) + "\n0\n" +
                  std::to_string(xy.size() / 2) + "\n";
  for (int v : xy) s += std::to_string(v) + "\n";
  return s + "end\n";
}

}  // namespace

TEST(OldProtokoll, ImportWithGroups) {
  const std::string name = file("a.PRT");
  const std::string text = "Kopf\nCPointArray\n1\n2\n3\n" + pointList(2, 2, {1, 1, 8, 1, 8, 6, 1, 6}) +
                           pointList(6, -1, {20, 20, 30, 20}) + pointList(3, -1, {40, 30, 44, 30});
  makePrt(name, TOldProtokoll::tagPointArray, text);
  const std::string dump = rastrixtest::run("tiffdump " + name);
  EXPECT_NE(dump.find("4126"), std::string::npos) << dump;
  EXPECT_NE(dump.find("Directory 2"), std::string::npos) << dump;

  TObjectList98 l;
  l.append(TOPointList<int>(ePoint, {{0, 0}}));
  l.read(name.c_str(), false);
  ASSERT_EQ(l.size(), 6);  // three regions, three groups for the index 2
  EXPECT_EQ(l[1].eGetTyp(), eLine);  // a polygon of two points
  EXPECT_EQ(l[2].eGetTyp(), eCircle);
  EXPECT_EQ(l.rGetRelationList().getVather(0), 5);
  EXPECT_EQ(l.rGetRelationList().numberOfSon(3), 0);
  EXPECT_EQ(l.rGetRelationList().numberOfSon(4), 0);
  int x0, x1, y0, y1;
  l[5].Extent(x0, x1, y0, y1);  // the group took its son's border
  EXPECT_EQ(x1, 8);
  l.read(name.c_str(), true);
  EXPECT_EQ(l.size(), 12);

  TOldProtokoll prt;
  ASSERT_EQ(prt.OpenFile(name.c_str()), 0u);
  char buf[256];
  prt.vGetCaptureTyp(buf);
  EXPECT_STREQ(buf, "HighDyn -F +D +DL +L +S +GN");
  EXPECT_STREQ(prt.cpGetComment(), "Alte Messung");
  CRectangle r;
  prt.vGetDataSize(r);
  EXPECT_EQ(r, CRectangle(0, 47, 0, 63));
  prt.vReadLuminanceLevel();
  EXPECT_EQ(prt.dGetLevel(2, true), 3);
  EXPECT_TRUE(prt.bIsRegion());
  std::filesystem::remove(name);
}

TEST(OldProtokoll, RectanglesAndBrokenTexts) {
  const std::string name = file("b.prt");
  makePrt(name, TOldProtokoll::tagRectangles, std::string("2 3 10 12 (RECT)") + '\0' + "0 0 5 5");
  TObjectList98 l;
  l.read(name.c_str(), false);
  ASSERT_EQ(l.size(), 2);
  EXPECT_EQ(l[0].eGetTyp(), eRectangle);
  EXPECT_EQ(TRLCArray(l[0]).pixel(), 9 * 10);
  EXPECT_EQ(l[1].eGetTyp(), eLine);

  makePrt(name, TOldProtokoll::tagPointLists, "x");
  EXPECT_EQ(codeOf([&] { l.read(name.c_str(), false); }), object98::ulOldProtocol);
  EXPECT_EQ(l.size(), 2);  // unchanged
  const std::string good = "CPointArray\n1\n2\n1\n" + pointList(2, 1, {1, 1, 8, 1, 8, 6, 1, 6});
  for (const std::string& bad : {std::string("no array here"), std::string("CPointArray\n1\n2\n"),
                                 "CPointArray\n1\n2\n1\n" + pointList(9, -1, {1, 1}),
                                 "CPointArray\n1\n2\n1\n" + pointList(2, -2, {1, 1}),
                                 "CPointArray\n1\n2\n1\n" + pointList(2, 99999, {1, 1}),
                                 good.substr(0, good.size() - 5)}) {
    makePrt(name, TOldProtokoll::tagPointArray, bad);
    EXPECT_EQ(codeOf([&] { l.read(name.c_str(), false); }), object98::ulOldProtocol) << bad;
    EXPECT_EQ(l.size(), 2);
  }
  std::mt19937 rng(5);
  for (int round = 0; round < 300; ++round) {
    std::string text = good;
    const std::size_t at = rng() % text.size();
    if (rng() % 2)
      text[at] = "0123456789-\nC"[rng() % 13];
    else
      text.resize(at);
    makePrt(name, TOldProtokoll::tagPointArray, text);
    const unsigned long code = codeOf([&] { l.read(name.c_str(), false); });
    EXPECT_TRUE(code == 0 || code == object98::ulOldProtocol) << std::hex << code;
  }
  // A file that is no TIFF at all.
  std::FILE* f = std::fopen(name.c_str(), "wb");
  std::fputs("garbage", f);
  std::fclose(f);
  EXPECT_EQ(codeOf([&] { l.read(name.c_str(), false); }), object98::ulObjectFileRead);
  std::filesystem::remove(name);
}
