// The object list: the tree of groups with its checks, names, erasing,
// groups and transformations, the region cache, the ".oa" file (golden text,
// malformed and fuzzed input), the clipboard, border lines and label planes.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "RLCTestUtil.h"
#include "object98/Object98Errors.h"
#include "object98/TBorderLine.h"
#include "object98/TObjectList98.h"

using rlctest::codeOf;
using namespace object98;

namespace {

TOPointList<int> rect(int x0, int y0, int x1, int y1) {
  return TOPointList<int>(eRectangle, {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

// Two rectangles and a circle grouped into an OR group, then a line.
void build(TObjectList98& l) {
  l.append(rect(0, 0, 9, 4));
  l.append(rect(5, 2, 14, 8));
  l.append(TOPointList<int>(eCircle, {{30, 30}, {33, 30}}));
  l.rGetFlagList().selectObject(0);
  l.rGetFlagList().selectObject(1);
  l.vCreateGroup(eOrGroup);  // index 3
  l.append(TOPointList<int>(eLine, {{0, 20}, {10, 25}}));
  for (int i = 0; i < l.size(); ++i) l.rGetSignatur(i).set(("S" + std::to_string(i)).c_str());
}

struct Recorder : TDelivery {
  std::vector<std::pair<unsigned long, unsigned long>> got;
  bool bReceiveMessage(const TDelivery*, unsigned long a, unsigned long b) override {
    got.push_back({a, b});
    return true;
  }
};

std::string tmp(const char* name) {
  return (std::filesystem::temp_directory_path() / (std::string("kx_ol_") + std::to_string(::getpid()) + name)).string();
}

}  // namespace

TEST(RelationList, ChecksLeaveTheTreeUnchanged) {
  TRelationList r;
  for (int i = 0; i < 6; ++i) r.append(-1);
  r.setVather(1, 0);
  r.setVather(2, 0);
  r.setVather(3, 1);
  const auto before = r.rGetRecords();
  const std::pair<std::function<void()>, unsigned long> cases[] = {
      {[&] { r.setVather(3, 3); }, ulRelEqual},       {[&] { r.setVather(0, 3); }, ulRelAncestor},
      {[&] { r.setVather(3, 0); }, ulRelDescendant},  {[&] { r.setVather(1, 2); }, ulRelBrother},
      {[&] { r.setSon(4, 1); }, ulRelHasVather},      {[&] { r.setBrother(4, 5); }, ulRelBothNone},
      {[&] { r.setBrother(3, 2); }, ulRelDifferent},  {[&] { r.deleteSon(0, 3); }, ulRelNoSon},
      {[&] { r.deleteVather(4); }, ulRelNoVather},    {[&] { r.setVather(9, 0); }, ulRelIndex1},
      {[&] { r.setVather(0, 9); }, ulRelIndex2}};
  for (const auto& [f, code] : cases) {
    EXPECT_EQ(codeOf(f), code);
    EXPECT_TRUE(r.rGetRecords() == before) << std::hex << code;
  }
  // Records as a file gives them: a cycle of fathers, a chain that misses a son.
  EXPECT_EQ(codeOf([&] { r.vSetRecords({{1, -1, 1}, {0, -1, 0}}, 2); }), ulObjectFileFormat);
  EXPECT_EQ(codeOf([&] { r.vSetRecords({{-1, -1, -1}, {0, -1, -1}}, 2); }), ulObjectFileFormat);
  EXPECT_TRUE(r.rGetRecords() == before);
  r.setBrother(4, 2);  // 4 joins 2's father
  EXPECT_EQ(r.vGetSons(0), (std::vector<int>{1, 2, 4}));
  r.erase(1);  // its son 3 (now 2) loses its father; indices shift
  EXPECT_EQ(r.getVather(2), -1);
  EXPECT_EQ(r.vGetSons(0), (std::vector<int>{1, 3}));
  r.vReduceIndexFromTo(3, 0);
  EXPECT_EQ(r.vGetSons(1), (std::vector<int>{2, 0}));
}

bool operator==(const TRelationList::TRelation& a, const TRelationList::TRelation& b) {
  return a.Vather == b.Vather && a.Brother == b.Brother && a.Son == b.Son;
}

TEST(ObjectList, NamesGroupsAndErasing) {
  TObjectList98 l;
  build(l);
  ASSERT_EQ(l.size(), 5);
  EXPECT_TRUE(l.bIsGroup(3));
  EXPECT_EQ(l.sGetFullObjectName(1), "2.2");  // the second son of the second top-level object
  EXPECT_EQ(l.sGetFullObjectName(4), "3");
  l.vSetObjectName(3, "G");
  EXPECT_EQ(l.sGetFullObjectName(0), "G.1");
  int x0, x1, y0, y1;
  l[3].Extent(x0, x1, y0, y1);
  EXPECT_EQ(x1, 14);
  EXPECT_EQ(y1, 8);
  EXPECT_TRUE(l.rGetFlagList().isSelected(3));

  const std::string info = l.cpGetObjectInfo(0, nullptr);
  EXPECT_NE(info.find(std::string("=") + cpGetTOPL_TypName(eRectangle) + "  "), std::string::npos) << info;
  for (const char* n : {"=9,0000", "=4,0000", "=36,0000", "=26,0000"}) EXPECT_NE(info.find(n), std::string::npos) << info;
  const std::string moved = l.cpGetObjectInfo2(rect(2, 1, 11, 5), l[0], nullptr);
  EXPECT_NE(moved.find("=36,0000"), std::string::npos) << moved;
  EXPECT_NE(moved.find("  dx=2,0000  dy=1,0000"), std::string::npos) << moved;
  double d, area, circ;
  l.vCalculateCircle(2, nullptr, d, area, circ);
  EXPECT_DOUBLE_EQ(d, 6);

  Recorder rec;
  l.vConnectReceiver(&rec);
  l.erase(1, false);  // the last but one son: the group's border follows, its index corrected
  l[2].Extent(x0, x1, y0, y1);
  EXPECT_EQ(x1, 9);
  EXPECT_EQ(rec.got.front(), (std::pair<unsigned long, unsigned long>{5, 1}));
  l.move(0, 2, 3);  // a son moves: the group's border too
  l[2].Extent(x0, x1, y0, y1);
  EXPECT_EQ(x0, 2);
  EXPECT_EQ(y1, 7);
  l.erase(2, false);  // a group without descendants: the son stays, fatherless
  EXPECT_EQ(l.rGetRelationList().getVather(0), -1);
  EXPECT_EQ(codeOf([&] { l.erase(7, false); }), ulObjectIndex);
  rec.got.clear();
  TObjectList98 empty;
  empty.vConnectReceiver(&rec);
  empty.clear();
  EXPECT_TRUE(rec.got.empty());  // clear on an empty list says nothing

  TObjectList98 t;
  build(t);
  t.erase(3, true);  // with descendants
  EXPECT_EQ(t.size(), 2);
  EXPECT_EQ(t[0].eGetTyp(), eCircle);
  const int n = t.copy(0, 5, 0);
  EXPECT_EQ(t[n][0].x, 35);
  t.rotate(t.append(rect(0, 0, 4, 2)), 0, 0, 30);
  EXPECT_EQ(t[t.size() - 1].eGetTyp(), ePolygon);
  t.rotate(t.size() - 1, 0, 0, -30);
  t.rotate(t.append(rect(0, 0, 4, 2)), 0, 0, 90);
  EXPECT_EQ(t[t.size() - 1].eGetTyp(), eRectangle);
  t[t.size() - 1].Extent(x0, x1, y0, y1);
  EXPECT_EQ(x0, 0);
  EXPECT_EQ(x1, 2);
  EXPECT_EQ(y0, -4);
}

TEST(ObjectList, RegionCacheAndGroups) {
  TObjectList98 l;
  build(l);
  const TRLCArray& g = l.rGetRegion(3);
  TRLCArray manual(l[0]);
  manual |= TRLCArray(l[1]);
  EXPECT_EQ(rlctest::linesOf(g), rlctest::linesOf(manual));
  EXPECT_EQ(g.pixel(), 50 + 70 - 5 * 3);
  const int64_t stamp = l.rGetRLCArray(3).rGetTimeStamp().i64GetCount();
  l.rGetRegion(3);
  EXPECT_EQ(l.rGetRLCArray(3).rGetTimeStamp().i64GetCount(), stamp);  // untouched: reused
  l.move(1, 100, 0);
  l.rGetRegion(3);
  EXPECT_GT(l.rGetRLCArray(3).rGetTimeStamp().i64GetCount(), stamp);  // a son moved: computed again
  EXPECT_EQ(l.rGetRegion(3).pixel(), 50 + 70);
  l[3].vSetTyp(eAndGroup);
  l.setTimeStamp(3);
  EXPECT_EQ(l.rGetRegion(3).pixel(), 0);
  l.move(1, -100, 0);
  l[3].vSetTyp(eXorGroup);
  l.rGetFlagList().vSetInGroup(1, false);  // takes no part in the group
  l.setTimeStamp(3);
  EXPECT_EQ(TRLCArray(&l, 3).pixel(), 50);
  l.rGetFlagList().selectAll();
  TRLCArray sel;
  l.vGetSelectedRLC(sel);
  EXPECT_EQ(sel.pixel(), 50 + 70 - 15 + l.rGetRegion(2).pixel() + l.rGetRegion(4).pixel());  // disjoint
}

TEST(ObjectList, OAFileAndClipboard) {
  TObjectList98 l;
  build(l);
  l.vSetObjectName(4, "Kante");
  l.rGetFlagList().unselectAll();
  const std::string golden =
      "TObjectList\n5\n10\n"
      "2\n4\n10\n0\n0\n9\n0\n9\n4\n0\n4\n"
      "2\n4\n10\n5\n2\n14\n2\n14\n8\n5\n8\n"
      "7\n2\n10\n30\n30\n33\n30\n"
      "11\n4\n10\n0\n0\n14\n0\n14\n8\n0\n8\n"
      "9\n2\n10\n0\n20\n10\n25\n"
      "5\n10\n3\n1\n-1\n3\n-1\n-1\n-1\n-1\n-1\n-1\n-1\n0\n-1\n-1\n-1\n"
      "5\n10\n0\n0\n0\n0\n4\n"
      "S0\nS1\nS2\nS3\nS4\n0\n\n\n\n\nKante\n";
  EXPECT_EQ(l.sWriteOA(), golden);
  const std::string file = tmp("a.OA");
  l.write(file.c_str());
  TObjectList98 back;
  back.read(file.c_str(), false);
  EXPECT_EQ(back.sWriteOA(), golden);
  EXPECT_EQ(back.sGetFullObjectName(1), "2.2");
  back.read(file.c_str(), true);
  EXPECT_EQ(back.size(), 10);
  EXPECT_EQ(back.rGetRelationList().getVather(5), 8);

  // Only special objects: the file holds an empty list.
  TObjectList98 special;
  special.append(rect(0, 0, 1, 1));
  special.rGetFlagList().vSetSpecial(0, true);
  special.write(file.c_str());
  TObjectList98 none;
  none.read(file.c_str(), false);
  EXPECT_EQ(none.size(), 0);

  l.rGetFlagList().selectObject(3);
  l.vCopySelected2Clipboard();
  ASSERT_TRUE(TObjectList98::bHaveClipboardData());
  TObjectList98 pasted;
  pasted.vCopyAllFromClipboard();
  EXPECT_EQ(pasted.size(), 3);  // the group with its two sons
  EXPECT_EQ(pasted.rGetRelationList().numberOfSon(2), 2);
  EXPECT_NE(l.vContent2Table().find("5\t\"Kante\"\t"), std::string::npos);
  std::filesystem::remove(file);
}

// Broken ".oa" texts: the code of the case and the list as it was.
TEST(ObjectList, MalformedAndFuzzedOA) {
  TObjectList98 l;
  build(l);
  const std::string good = l.sWriteOA();
  const std::string longLine = "TObjectList\n1\n" + std::string(200, '1') + "\n";
  const std::pair<std::string, unsigned long> cases[] = {
      {"TObjectLis\n0\n", ulObjectFileType},
      {good.substr(0, good.size() / 2), ulObjectFileFormat},
      {longLine, ulObjectFileFormat},
      {"TObjectList\n-1\n10\n", ulObjectFileFormat},
      {"TObjectList\n2147483648\n10\n", ulObjectFileFormat},
      {"TObjectList\n1\n10\n0\n1\n10\n5\n5\n1\n10\n0\n-1\n-1\n1\n10\n0\nS\n0\n\n", ulObjectFileFormat},  // own father
      {"TObjectList\n2\n10\n0\n1\n10\n1\n1\n0\n1\n10\n1\n1\n2\n10\n1\n-1\n-1\n0\n-1\n-1\n2\n10\n0\n0\nA\nB\n0\n\n\n",
       ulObjectFileFormat},  // a cycle of fathers
      {"TObjectList\n1\n10\n14\n0\n10\n", ulObjectFileFormat},  // no type 14
  };
  for (const auto& [text, code] : cases) {
    TObjectList98 t;
    build(t);
    EXPECT_EQ(codeOf([&] { t.vReadOAText(text, false); }), code) << text.substr(0, 60);
    EXPECT_EQ(t.sWriteOA(), good);
  }
  EXPECT_EQ(codeOf([&] { l.read("/nonexistent/x.oa", false); }), ulObjectFileRead);
  EXPECT_EQ(codeOf([&] { l.read("x.txt", false); }), ulObjectFileType);
  EXPECT_EQ(codeOf([&] { l.write("/nonexistent/x.oa"); }), ulObjectFileWrite);

  std::mt19937 rng(17);
  for (int round = 0; round < 3000; ++round) {
    std::string text = good;
    for (int k = 0, n = 1 + static_cast<int>(rng() % 4); k < n; ++k) {
      const std::size_t at = rng() % text.size();
      switch (rng() % 4) {
        case 0: text[at] = "0123456789-\n x"[rng() % 14]; break;
        case 1: text.erase(at, 1 + rng() % 8); break;
        case 2: text.insert(at, std::to_string(static_cast<int>(rng()))); break;
        default: text.resize(at); break;
      }
      if (text.empty()) text = "T";
    }
    TObjectList98 t;
    const unsigned long code = codeOf([&] { t.vReadOAText(text, false); });
    EXPECT_TRUE(code == 0 || code == ulObjectFileFormat || code == ulObjectFileType) << std::hex << code;
    if (code == 0)
      for (int i = 0; i < t.size(); ++i) t.sGetFullObjectName(i);  // the tree is walkable
  }
}

TEST(ObjectList, BorderLinesAndLabels) {
  TBorderLine square(TOPointList<int>(eSquare, {{0, 0}, {2, 0}, {2, 2}, {0, 2}}));
  ASSERT_EQ(square.size(), 8u);
  for (unsigned i = 0; i < 8; ++i)
    for (unsigned k = i + 1; k < 8; ++k) EXPECT_FALSE(square[i] == square[k]);
  for (int r : {1, 2, 7}) {
    TBorderLine c(TOPointList<int>(eCircle, {{10, 10}, {10 + r, 10}}));
    ASSERT_GT(c.size(), 3u);
    for (unsigned i = 0; i < c.size(); ++i) {
      EXPECT_FALSE(c[i] == c[(i + 1) % c.size()]) << r;
      EXPECT_NEAR(std::hypot(c[i].x - 10, c[i].y - 10), r, 0.8) << r;
    }
    EXPECT_EQ(c[0].x, 10);
    EXPECT_EQ(c[0].y, 10 - r);  // clockwise from the top
  }
  TBorderLine line(TOPointList<int>(ePolyline, {{0, 0}, {4, 2}, {4, 5}}));
  EXPECT_EQ(line.size(), 5u + 3u);
  EXPECT_EQ(line[1].y, 1);  // MulDiv rounds 0.5 away from zero
  EXPECT_EQ(codeOf([&] { TBorderLine e(TOPointList<int>(eEllipse, {{0, 0}, {1, 1}})); }), ulBorderType);
  TObjectList98 l;
  build(l);
  TBorderLine g;
  g.assign(&l, 3);
  EXPECT_EQ(g.size(), TBorderLine(l[0]).size() + TBorderLine(l[1]).size());

  Rastrix::TPlane<float> pic(40, 40);
  auto& label = l.rGetLabelPic(&pic, 1, true, true);
  EXPECT_EQ(label.getColumns(), 10);
  EXPECT_EQ(label.getFirstLine(), 2);
  EXPECT_EQ(label[5][7], 255);
  EXPECT_EQ(l.rGetClassColor(&pic, 1)[0], 204);
  EXPECT_EQ(codeOf([&] { l.rGetLabelPicAssigner().rGetLabelPic(12345, 0); }), ulLabelPicture);
  EXPECT_EQ(codeOf([&] { l.rGetLabelPicAssigner().rGetLabelPic(reinterpret_cast<unsigned long>(&pic), 9); }),
            ulLabelRegion);
  TKlassifikator2Color k;
  EXPECT_EQ(k[8], 255);
  EXPECT_EQ(codeOf([&] { k.vSetColor(256, 1); }), ulColorIndex);
}
