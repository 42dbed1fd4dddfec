#include <cstring>
#include <numeric>
#include <set>

#include "H5TestUtil.h"
#include "HDF5/H5Errors.h"
#include "HDF5/TH5General.h"

using namespace h5test;
using namespace kx::h5;
using TC = TH5General::TCompound;

class General : public H5Test {
 protected:
  void SetUp() override {
    H5Test::SetUp();
    file = db->pCreateFile(path("g.h5").c_str(), "G");
  }
  TH5File* file = nullptr;
};

TEST_F(General, ItemSizesAndPackedOffsets) {
  // Sizes by type code: 1,1,2,2,4,4,4,8, 0 for unknown, times each dimension.
  const unsigned expected[] = {0, 1, 1, 2, 2, 4, 4, 4, 8};
  for (int t = 0; t <= 8; ++t) EXPECT_EQ(TC::TItem(static_cast<TH5Type::TDataTyp>(t), "x").uGetSize(), expected[t]);
  EXPECT_EQ(TC::TItem(TH5Type::eSignedChar, "Name", 0, 1, 128).uGetSize(), 128u);
  EXPECT_EQ(TC::TItem(TH5Type::eFloat, "M", 0, 2, 3, 4).uGetSize(), 48u);
  EXPECT_EQ(TC::TItem(TH5Type::eDouble, "Q", 0, 4, 2, 2, 2, 2).uGetSize(), 128u);
  TC::TItem fresh;
  EXPECT_EQ(fresh.eTyp, TH5Type::eUnknownTyp);
  EXPECT_EQ(fresh.uOffset, 0u);
  EXPECT_EQ(fresh.uDimCount, 0u);
  EXPECT_TRUE(fresh.sName.empty());

  // The column record of a table: 772 bytes without gaps.
  TC col;
  for (const char* n : {"Name", "Caption", "Einheit", "Format"}) col.vAdd(TH5Type::eSignedChar, n, 0, 1, 128);
  col.vAdd(TH5Type::eSignedLong, "Adjust");
  col.vAdd(TH5Type::eSignedChar, "Minimum", 0, 1, 128);
  col.vAdd(TH5Type::eSignedChar, "Maximum", 0, 1, 128);
  col.vCalculateOffsets();
  EXPECT_EQ(col.uElementSize, 772u);
  const unsigned offsets[] = {0, 128, 256, 384, 512, 516, 644};
  for (size_t i = 0; i < col.vItems.size(); ++i) EXPECT_EQ(col.vItems[i].uOffset, offsets[i]) << i;

  TC other = col;
  EXPECT_EQ(other, col);
  other.vItems[5].uDims[0] = 127;
  EXPECT_FALSE(other == col);
}

TEST_F(General, PathsTakeEitherSeparatorAndIgnoreCase) {
  TH5General g(file, false);
  g.vCreateDirectory("\\Plane\\Sub/");
  EXPECT_TRUE(g.bExistDir("/plane/SUB"));
  EXPECT_TRUE(g.bExistObject("\\PLANE"));
  EXPECT_FALSE(g.bExistObject("/Plane/Sub/none"));
  EXPECT_FALSE(g.bExistObject("/None/Sub"));
  EXPECT_EQ(g.eGetObjectTyp("/"), TH5Handle::eH5Directory);
  EXPECT_EQ(g.eGetObjectTyp("/nothing"), TH5Handle::eH5NoObject);

  g.vChangeDirectory("/plane");
  EXPECT_EQ(g.sGetCurrentDirectory(), "/plane");
  g.vCreate1(3, TH5Type::eUnsignedChar, "sub\\data", false);  // relative
  EXPECT_EQ(g.eGetObjectTyp("/Plane/Sub/Data"), TH5Handle::eH5Data);
  EXPECT_EQ(g.sGetAbsolutePath("Sub/./x/../y/"), "/plane/Sub/y");
  g.vChangeDirectory("..");
  EXPECT_EQ(g.sGetCurrentDirectory(), "/");
  expectError(ulH5NotExist, "Directory not exist: /Plane/Sub/data", [&] { g.vChangeDirectory("/Plane/Sub/data"); });
  expectError(ulH5NotExist, "Directory not exist: /Nope", [&] { g.vChangeDirectory("Nope"); });
  expectError(ulH5NoAbsolutePath, "No absolute path: Plane/New", [&] { g.vCreateDirectory("Plane/New"); });
  expectError(ulH5Database, "Directory already exist: /plane/sub", [&] { g.vCreateDirectory("/plane/sub"); });
  TLanguage::setDeutsch();
  expectError(ulH5NoAbsolutePath, "Kein absoluter Pfad: x", [&] { g.vCreateDirectory("x"); });
  expectError(ulH5NotExist, "Verzeichnis existiert nicht: /x", [&] { g.vChangeDirectory("/x"); });
  TLanguage::setEnglisch();

  // A copy has its own current directory.
  TH5General copy = g;
  copy.vChangeDirectory("/Plane/Sub");
  EXPECT_EQ(g.sGetCurrentDirectory(), "/");
  EXPECT_EQ(copy.uGetObjectNumber("."), 1u);
}

TEST_F(General, ListsMembersInNameOrder) {
  TH5General g(file, false);
  for (const char* n : {"/T/b", "/T/C", "/T/a"}) g.vCreate1(1, TH5Type::eDouble, n, false);
  g.vCreateDirectory("/T/Dir");
  EXPECT_EQ(g.uGetObjectNumber("/t"), 4u);
  std::vector<std::string> names{"stale"};
  g.vGetDirectoryContent("/T", false, names);
  EXPECT_EQ(names, (std::vector<std::string>{"C", "Dir", "a", "b"}));
  g.vGetDirectoryContent("t/", true, names);
  EXPECT_EQ(names.front(), "/t/C");
  g.vGetDirectoryContent("/", true, names);
  EXPECT_EQ(names, (std::vector<std::string>{"/T"}));
  EXPECT_EQ(g.sGetObjectName("/T", 3), "b");
  expectError(ulH5NotExist, "", [&] { g.sGetObjectName("/T", 4); });
  expectError(ulH5NotExist, "Directory not exist: /Tabellen", [&] { g.vGetDirectoryContent("/Tabellen", false, names); });
  expectError(ulH5NotExist, "", [&] { g.uGetObjectNumber("/T/a"); });
}

TEST_F(General, CreateKeepsTheSameDatasetAndReplacesOthers) {
  TH5General g(file, false);
  std::vector<int32_t> v(6);
  std::iota(v.begin(), v.end(), -3);
  g.vCreate2(2, 3, TH5Type::eSignedLong, "/A/B/C/d", false);  // every missing group is made
  g.vWrite(v.data(), "/A/B/C/d");
  // Same type, same extent: left in place with its contents, overwrite or not.
  g.vCreate2(2, 3, TH5Type::eSignedLong, "/a/b/c/D", false);
  g.vCreate2(2, 3, TH5Type::eSignedLong, "/A/B/C/d", true);
  std::vector<int32_t> back(6);
  g.vRead("/A/B/C/d", back.data());
  EXPECT_EQ(back, v);
  EXPECT_EQ(file->pGetBootblock()->sGetEntry("DeletedObjects"), "0");

  // Another extent or type: refused without overwrite, replaced with it.
  expectError(ulH5ObjectInTheWay, "Object already exist: /A/B/C/d",
              [&] { g.vCreate2(3, 2, TH5Type::eSignedLong, "/A/B/C/d", false); });
  expectError(ulH5ObjectInTheWay, "", [&] { g.vCreate2(2, 3, TH5Type::eUnsignedLong, "/A/B/C/d", false); });
  expectError(ulH5ObjectInTheWay, "", [&] { g.vCreate1(6, TH5Type::eSignedLong, "/A/B/C", false); });
  g.vCreate2(3, 2, TH5Type::eFloat, "/A/B/C/d", true);
  EXPECT_EQ(g.eGetSimpleDataTyp("/A/B/C/d"), TH5Type::eFloat);
  EXPECT_EQ(g.uGetDimSize("/A/B/C/d", 0), 3u);
  EXPECT_EQ(file->pGetBootblock()->sGetEntry("DeletedObjects"), "1");
  EXPECT_EQ(file->pGetBootblock()->sGetEntry("DeletedSize"), "24");
  // A group in the way of a data set goes too, with overwrite.
  g.vCreate1(4, TH5Type::eDouble, "/A/B", true);
  EXPECT_EQ(g.eGetObjectTyp("/A/B"), TH5Handle::eH5Data);
  EXPECT_FALSE(g.bExistObject("/A/B/C/d"));
  // A data set in the way of a group cannot be passed.
  expectError(ulH5ObjectInTheWay, "/A/B", [&] { g.vCreate1(1, TH5Type::eDouble, "/A/B/x", true); });

  // Deleting something that is not there is quietly nothing.
  g.vDeleteObject("/A/none");
  g.vDeleteObject("/none/none");
  g.vDeleteObject("/a/b");
  EXPECT_FALSE(g.bExistObject("/A/B"));
}

TEST_F(General, WholeAndBlockReadsAndWrites) {
  TH5General g(file, false);
  const unsigned L = 5, C = 7;
  std::vector<float> pic(L * C);
  for (unsigned i = 0; i < L * C; ++i) pic[i] = static_cast<float>(i) * 0.5f;
  g.vCreate2(L, C, TH5Type::eFloat, "/p", false);
  g.vWrite(pic.data(), "/p");
  EXPECT_EQ(g.uGetDimensions("/p"), 2u);
  EXPECT_EQ(g.uGetDimSize("/p", 1), C);
  EXPECT_TRUE(g.bIsSimpleDataTyp("/p"));
  EXPECT_EQ(g.uGetDataTypSize("/p"), 4u);
  expectError(ulH5Database, "", [&] { g.uGetDimSize("/p", 2); });

  // A 2 x 3 block from (1, 2) of the file into a 4 x 5 buffer at (2, 2).
  std::vector<float> buf(4 * 5, -1.0f);
  g.vRead2(2, 3, 1, 2, 2, 2, "/p", buf.data());
  for (unsigned l = 0; l < 4; ++l)
    for (unsigned c = 0; c < 5; ++c) {
      const bool inside = l >= 2 && c >= 2;
      const float want = inside ? pic[(1 + l - 2) * C + (2 + c - 2)] : -1.0f;
      EXPECT_EQ(buf[l * 5 + c], want) << l << "," << c;
    }
  // Writing the other way: a 1 x 2 block from (0, 1) of a 1 x 3 buffer to (4, 5).
  const float two[3] = {0.f, 100.f, 200.f};
  g.vWrite2(1, 2, 4, 5, 0, 1, two, "/p");
  std::vector<float> all(L * C);
  g.vRead("/p", all.data());
  EXPECT_EQ(all[4 * C + 5], 100.f);
  EXPECT_EQ(all[4 * C + 6], 200.f);
  EXPECT_EQ(all[4 * C + 4], pic[4 * C + 4]);
  // Out of the extent: refused, nothing read or written.
  expectError(ulH5Database, "Range outside of dataset /p", [&] { g.vRead2(2, 3, 4, 0, 0, 0, "/p", buf.data()); });
  expectError(ulH5Database, "", [&] { g.vWrite2(1, 8, 0, 0, 0, 0, pic.data(), "/p"); });
  expectError(ulH5Database, "", [&] { g.vRead1(1, 0, 0, "/p", buf.data()); });  // rank 2

  std::vector<uint16_t> line(10);
  std::iota(line.begin(), line.end(), 1000);
  g.vCreate1(10, TH5Type::eUnsignedShort, "/l", false);
  g.vWrite(line.data(), "/l");
  uint16_t part[6] = {0, 0, 0, 0, 0, 0};
  g.vRead1(4, 6, 2, "/l", part);
  EXPECT_EQ(part[1], 0);
  EXPECT_EQ(part[2], 1006);
  EXPECT_EQ(part[5], 1009);
  const uint16_t in[3] = {0, 7, 8};
  g.vWrite1(2, 0, 1, in, "/l");
  g.vRead1(3, 0, 0, "/l", part);
  EXPECT_EQ(part[0], 7);
  EXPECT_EQ(part[1], 8);
  EXPECT_EQ(part[2], 1002);
  expectError(ulH5Database, "", [&] { g.vRead1(5, 6, 0, "/l", part); });
  g.vRead1(0, 10, 0, "/l", part);  // empty block at the end: nothing, no error

  expectError(ulH5NotExist, "Object not exist: /missing", [&] { g.vRead("/missing", buf.data()); });
  g.vCreateDirectory("/grp");
  expectError(ulH5Database, "No dataset: /grp", [&] { g.vRead("/grp", buf.data()); });
}

#pragma pack(push, 1)
struct TRecord {
  uint32_t valid;
  int32_t lines;
  char name[20];
  uint32_t hole;  // belongs to no member
  double min;
};
#pragma pack(pop)

TEST_F(General, CompoundsWithHolesKeepTheirLayout) {
  TH5General g(file, false);
  TC c(sizeof(TRecord));
  c.vAdd(TH5Type::eUnsignedLong, "Valid", offsetof(TRecord, valid));
  c.vAdd(TH5Type::eSignedLong, "Lines", offsetof(TRecord, lines));
  c.vAdd(TH5Type::eSignedChar, "Name", offsetof(TRecord, name), 1, 20);
  c.vAdd(TH5Type::eDouble, "Min", offsetof(TRecord, min));
  g.vCreate0(c, "/Plane/x/Basic", false);
  TRecord r{};
  r.valid = 1;
  r.lines = -5;
  std::strcpy(r.name, "Leuchte");
  r.hole = 0xdeadbeef;
  r.min = -0.25;
  g.vWrite(&r, "/Plane/x/Basic");
  EXPECT_EQ(g.uGetDimensions("/Plane/x/Basic"), 0u);
  EXPECT_FALSE(g.bIsSimpleDataTyp("/Plane/x/Basic"));
  EXPECT_EQ(g.uGetDataTypSize("/Plane/x/Basic"), sizeof(TRecord));
  EXPECT_EQ(g.eGetSimpleDataTyp("/Plane/x/Basic"), TH5Type::eUnknownTyp);
  EXPECT_EQ(g.eGetCompoundDataTyp("/Plane/x/Basic"), c);
  expectError(ulH5Database, "No compound data type", [&] {
    g.vCreate1(1, TH5Type::eFloat, "/f", false);
    g.eGetCompoundDataTyp("/f");
  });

  TRecord back{};
  g.vRead("/Plane/x/Basic", &back);
  EXPECT_EQ(back.valid, 1u);
  EXPECT_EQ(back.lines, -5);
  EXPECT_STREQ(back.name, "Leuchte");
  EXPECT_EQ(back.min, -0.25);
  EXPECT_EQ(back.hole, 0xdeadbeefu) << "records go byte for byte, hole included";

  // A reader that knows only some members gets those, matched by name
  // exactly; a member the file does not have stays as it was.
  struct TPart {
    double min;
    int32_t lines;
  } part{99.0, 0};
  TC pc(sizeof(TPart));
  pc.vAdd(TH5Type::eDouble, "MIN", offsetof(TPart, min));
  pc.vAdd(TH5Type::eSignedLong, "Lines", offsetof(TPart, lines));
  g.vRead("/Plane/x/Basic", &part, pc);
  EXPECT_EQ(part.min, 99.0);
  EXPECT_EQ(part.lines, -5);
  pc.vItems[0].sName = "Min";
  g.vRead("/Plane/x/Basic", &part, pc);
  EXPECT_EQ(part.min, -0.25);

  // The same compound again keeps the data; 1-D arrays of records work alike.
  g.vCreate0(c, "/Plane/x/Basic", false);
  g.vRead("/Plane/x/Basic", &back);
  EXPECT_EQ(back.lines, -5);
  std::vector<TRecord> rs(3, r);
  rs[2].lines = 42;
  g.vCreate1(3, c, "/Recs", false);
  g.vWrite(rs.data(), "/Recs");
  TRecord one{};
  g.vRead1(1, 2, 0, "/Recs", &one);
  EXPECT_EQ(one.lines, 42);
}

TEST_F(General, ReadOnlyFacadeRefusesEveryWrite) {
  TH5General w(file, false);
  w.vCreate1(2, TH5Type::eDouble, "/d", false);
  for (TH5General g : {TH5General(file, true)}) {
    const double v[2] = {1, 2};
    double r[2];
    const auto refused = [&](auto&& f) { expectError(ulH5ReadOnly, "", f); };
    refused([&] { g.vCreateDirectory("/New"); });
    refused([&] { g.vCreate1(2, TH5Type::eDouble, "/e", false); });
    refused([&] { g.vCreate1(2, TH5Type::eDouble, "/d", false); });  // even where nothing would change
    refused([&] { g.vCreate2(1, 2, TH5Type::eDouble, "/e", true); });
    refused([&] { g.vCreate0(TC(8), "/e", true); });
    refused([&] { g.vWrite(v, "/d"); });
    refused([&] { g.vWrite1(1, 0, 0, v, "/d"); });
    refused([&] { g.vWrite2(1, 1, 0, 0, 0, 0, v, "/d"); });
    refused([&] { g.vDeleteObject("/d"); });
    refused([&] { g.vDeleteObject("/none"); });
    refused([&] { g.vWriteAttribute("/d", "a", TH5Type::eDouble, 1, v); });
    g.vRead("/d", r);  // reading is fine
    EXPECT_TRUE(g.bExistObject("/d"));
  }
  // A file opened read-only makes every facade on it read-only.
  db->vCloseFile("G");
  TH5File* ro = db->pOpenFile(path("g.h5").c_str(), "RO", false, true);
  TH5General g(ro, false);
  expectError(ulH5ReadOnly, "", [&] { g.vCreate1(1, TH5Type::eFloat, "/x", false); });
  expectError(ulH5ReadOnly, "", [&] { ro->pCreateDir("x"); });
  EXPECT_EQ(g.uGetDimSize("/d", 0), 2u);
}

TEST_F(General, AttributesByPath) {
  TH5General g(file, false);
  g.vCreate1(1, TH5Type::eFloat, "/D", false);
  const float xyz[3] = {0.5f, 1.5f, 2.5f};
  g.vWriteAttribute("/d", "Ref", TH5Type::eFloat, 3, xyz);
  EXPECT_TRUE(g.bExistAttribute("/D", "ref"));
  EXPECT_FALSE(g.bExistAttribute("/D", "other"));
  EXPECT_FALSE(g.bExistAttribute("/none", "ref"));
  double back[3];
  g.vReadAttribute("/D", "REF", TH5Type::eDouble, 3, back);  // converted
  EXPECT_EQ(back[2], 2.5);
  expectError(ulH5Database, "", [&] { g.vReadAttribute("/D", "Ref", TH5Type::eDouble, 2, back); });
  expectError(ulH5NotExist, "", [&] { g.vReadAttribute("/D", "None", TH5Type::eDouble, 1, back); });
  const int32_t one = -9;
  g.vWriteAttribute("/D", "ref", TH5Type::eSignedLong, 1, &one);  // replaces
  int32_t r = 0;
  g.vReadAttribute("/D", "Ref", TH5Type::eSignedLong, 1, &r);
  EXPECT_EQ(r, -9);
}

TEST_F(General, UniqueNamesFillMarksFromTheStart) {
  std::string name = "/Plane/#######################.pf";
  TH5General::vCreateUniqueName(name);
  EXPECT_EQ(name.find('#'), std::string::npos) << name;
  const std::string sig = name.substr(7, 23);
  for (char c : sig) EXPECT_TRUE(std::isdigit(static_cast<unsigned char>(c))) << sig;

  std::string few = "a#b##";
  TH5General::vCreateUniqueName(few);
  EXPECT_EQ(few[0], 'a');
  EXPECT_EQ(few[2], 'b');
  EXPECT_EQ(few[1], '2') << "the first character of the signature (a year 2xxx)";
  std::string many(30, '#');
  TH5General::vCreateUniqueName(many);
  EXPECT_EQ(many.substr(23), std::string(7, '#')) << "marks left over stay";

  std::set<std::string> seen;
  for (int i = 0; i < 200; ++i) {
    std::string s(23, '#');
    TH5General::vCreateUniqueName(s);
    seen.insert(s);
  }
  EXPECT_EQ(seen.size(), 200u);
}

TEST_F(General, H5pyReadsWhatWeWrote) {
  if (access(KX_PYTHON3, X_OK) != 0) GTEST_SKIP() << "no python3";
  if (run(std::string(KX_PYTHON3) + " -c 'import h5py, numpy'").size() != 0) GTEST_SKIP() << "no h5py";
  TH5General g(file, false);
  std::vector<int16_t> v(12);
  for (int i = 0; i < 12; ++i) v[i] = static_cast<int16_t>(i * 1000 - 6000);
  g.vCreate2(3, 4, TH5Type::eSignedShort, "/Plane/s.pi/Content", false);
  g.vWrite(v.data(), "/Plane/s.pi/Content");
  const uint8_t rgb[6] = {1, 2, 3, 250, 251, 252};
  TC c(3);
  c.vAdd(TH5Type::eUnsignedChar, "r", 0);
  c.vAdd(TH5Type::eUnsignedChar, "g", 1);
  c.vAdd(TH5Type::eUnsignedChar, "b", 2);
  g.vCreate2(1, 2, c, "/Plane/c.rgb/Content", false);
  g.vWrite(rgb, "/Plane/c.rgb/Content");
  db->vCloseFile("G");
  const std::string script =
      "import h5py, numpy as np\n"
      "f = h5py.File('" + path("g.h5") + "', 'r')\n"
      "a = f['Plane/s.pi/Content'][()]\n"
      "assert a.dtype == np.int16 and a.shape == (3, 4), (a.dtype, a.shape)\n"
      "assert list(a.ravel()) == [i * 1000 - 6000 for i in range(12)]\n"
      "c = f['Plane/c.rgb/Content'][()]\n"
      "assert c.dtype.names == ('r', 'g', 'b') and c.dtype.itemsize == 3\n"
      "assert c['r'][0, 0] == 1 and c['b'][0, 1] == 252\n"
      "f.close()\n"
      "print('ok')\n";
  writeBytes(path("check.py"), script);
  int status = -1;
  const std::string out = run(std::string(KX_PYTHON3) + " " + path("check.py"), &status);
  EXPECT_EQ(status, 0) << out;
  EXPECT_EQ(out, "ok\n");
}
