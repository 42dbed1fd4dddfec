// The TIFF dialect: what we write is read by tifffile and shown by tiffdump,
// foreign files made by tiffcp are read or refused, broken files give codes.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "kxexception/KxError.h"
#include "kxutils/ulImageFile.h"
#include "rastrix/CATiff.h"
#include "rastrix/CTiff.h"
#include "rastrix/TFloatPicture.h"
#include "rastrix/TGreyPicture16.h"
#include "rastrix/TGreyPicture8.h"
#include "rastrix/TRGBPicture.h"
#include "RastrixTestUtil.h"

using namespace Rastrix;
namespace fs = std::filesystem;

namespace {
using Dir = rastrixtest::TempDir;
using rastrixtest::codeOf;
using rastrixtest::run;
}  // namespace

TEST(Tiff, FloatPictureReadByTifffileAndShownByTiffdump) {
  Dir d;
  TFloatPicture f(3, 4, 10, -2, 4);
  for (int l = 10; l < 13; ++l)
    for (int c = -2; c < 2; ++c) f[l][c] = static_cast<float>(l * 100 + c) / 3.0f;
  f.setValueUnitPic(0, "Leuchtdichte", "cd/m2");
  const std::string name = d / "f.tix";
  f.writeFile(name.c_str(), false);
  std::ifstream in(name, std::ios::binary);
  char head[4];
  in.read(head, 4);
  EXPECT_EQ(std::string(head, 4), std::string("II*\0", 4));
  // The first five entries in the order they were added.
  const std::string dump = run("tiffdump " + name);
  const auto at = [&](const char* what) { return dump.find(what); };
  EXPECT_LT(at("SubFileType (254)"), at("Software")) << dump;
  EXPECT_LT(at("Software"), at("DateTime"));
  EXPECT_LT(at("DateTime"), at("StripOffsets"));
  EXPECT_LT(at("StripOffsets"), at("4141 (0x102d)"));
  EXPECT_LT(at("4141 (0x102d)"), at("SamplesPerPixel"));
  // tifffile reads the raw samples; as float they are our pixels.
  const std::string out = run("/usr/bin/python3 -c 'import tifffile,numpy as np\n"
                              "a=tifffile.imread(\"" + name + "\")\n"
                              "print(a.shape, repr(a.view(np.float32)[2,3]))'");
  char want[64];
  std::snprintf(want, sizeof want, "(3, 4) %.9g", static_cast<double>(f[12][1]));
  EXPECT_NE(out.find("(3, 4)"), std::string::npos) << out;
  TFloatPicture g;
  g.readFile(name.c_str(), true);
  EXPECT_EQ(g.getFirstLine(), 10);
  EXPECT_EQ(g.getFirstColumn(), -2);
  EXPECT_EQ(g[12][1], f[12][1]);
  EXPECT_EQ(g.rStrGetValuePic(0), "Leuchtdichte");
  const double tifffileValue = std::stod(out.substr(out.rfind(' ') + 1));
  EXPECT_FLOAT_EQ(static_cast<float>(tifffileValue), f[12][1]) << out;
  TFloatPicture wrong(2, 2);
  EXPECT_EQ(codeOf([&] { wrong.readFile(name.c_str(), false); }), 0xe752105bUL);
}

TEST(Tiff, SixteenBitsLoseTheTopBitOnTheWayIn) {
  Dir d;
  TGreyPicture16 p(1, 2);
  p[0][0] = 40000, p[0][1] = 1234;
  p.writeFile((d / "a.tif").c_str(), false);
  const std::string out =
      run("/usr/bin/python3 -c 'import tifffile; print(tifffile.imread(\"" + (d / "a.tif") + "\").tolist())'");
  EXPECT_NE(out.find("[[40000, 1234]]"), std::string::npos) << out;  // not on the way out
  TGreyPicture16 q;
  q.readFile((d / "a.tif").c_str(), true);
  EXPECT_EQ(q[0][0], 7232);
  EXPECT_EQ(q[0][1], 1234);
}

TEST(Tiff, RgbRoundTripHoldsRedFirst) {
  Dir d;
  TRGBPicture p(2, 2);
  p[0][0].set(200, 100, 50);  // r, g, b
  p[1][1].set(1, 2, 3);
  p.writeFile((d / "c.tif").c_str(), false);
  EXPECT_EQ(p[0][0].r, 200);  // the picture is as it was
  const std::string out =
      run("/usr/bin/python3 -c 'import tifffile; print(tifffile.imread(\"" + (d / "c.tif") + "\")[0,0].tolist())'");
  EXPECT_NE(out.find("[200, 100, 50]"), std::string::npos) << out;
  TRGBPicture q;
  q.readFile((d / "c.tif").c_str(), true);
  EXPECT_EQ(q[0][0], p[0][0]);
  EXPECT_EQ(q[1][1], p[1][1]);
}

TEST(Tiff, ForeignFilesFromTiffcp) {
  Dir d;
  TGreyPicture8 g(40, 5);
  for (int l = 0; l < 40; ++l)
    for (int c = 0; c < 5; ++c) g[l][c] = static_cast<unsigned char>(l * 5 + c);
  g.writeFile((d / "g.tif").c_str(), false);
  run("tiffcp -r 16 " + (d / "g.tif") + " " + (d / "strips.tif"));
  TGreyPicture8 s;
  s.readFile((d / "strips.tif").c_str(), true);  // several strips read, first line 0
  EXPECT_EQ(s.getLines(), 40);
  EXPECT_EQ(s[39][4], g[39][4]);
  run("tiffcp -c lzw " + (d / "g.tif") + " " + (d / "lzw.tif"));
  EXPECT_EQ(codeOf([&] { s.readFile((d / "lzw.tif").c_str(), true); }), 0xe3321046UL);
  TGreyPicture16 w(40, 5);
  w.setRectangle(7);
  w.writeFile((d / "w.tif").c_str(), false);
  run("tiffcp -r 16 " + (d / "w.tif") + " " + (d / "w16.tif"));
  TGreyPicture16 r;
  EXPECT_EQ(codeOf([&] { r.readFile((d / "w16.tif").c_str(), true); }), 0xe3321060UL);
}

TEST(Tiff, ContainerRulesAndBrokenFiles) {
  CTiffHeader h;
  h.AddNewIFD();
  h.AddNewTag(0, TIFF::ImageWidth, TIFF::Short, 5);
  h.AddNewTag(0, TIFF::ImageWidth, TIFF::Short, 7);
  ASSERT_EQ(h.pGetThisIFD(0)->tags.size(), 1u);
  EXPECT_EQ(h.pGetThisIFD(0)->tags[0].uGetValue(), 7u);
  EXPECT_STREQ(TIFF::cpTagName(0x101B), "FirstLine");
  EXPECT_STREQ(TIFF::cpCompressionName(9), "Fehlerhafte Angabe");
  Dir d;
  TFloatPicture f(4, 4);
  f.setRectangle(2.5f);
  f.writeFile((d / "ok.tix").c_str(), false);
  std::ifstream in(d / "ok.tix", std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  const std::string valid = s.str();
  // The DateTime text has the month where the minutes belong.
  const auto dt = valid.find("/");
  ASSERT_NE(dt, std::string::npos);
  EXPECT_EQ(valid.substr(dt + 1, 2), valid.substr(dt + 10, 2));
  std::mt19937 rng(31);
  int refused = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string b = valid;
    for (int k = 0, n = 1 + static_cast<int>(rng() % 3); k < n; ++k) b[rng() % std::min<std::size_t>(b.size(), 400)] = static_cast<char>(rng());
    if (i % 3 == 0) b.resize(rng() % b.size());
    std::ofstream(d / "bad.tix", std::ios::binary) << b;
    TFloatPicture r;
    refused += codeOf([&] { r.readFile((d / "bad.tix").c_str(), true); }) != 0;
  }
  EXPECT_GT(refused, 1000);
  // A directory that points to itself.
  std::string loop = valid;
  const uint32_t first = static_cast<uint8_t>(loop[4]) | (static_cast<uint8_t>(loop[5]) << 8);
  const uint16_t n = static_cast<uint8_t>(loop[first]) | (static_cast<uint8_t>(loop[first + 1]) << 8);
  std::memcpy(&loop[first + 2 + 12 * n], &first, 4);
  std::ofstream(d / "loop.tix", std::ios::binary) << loop;
  TFloatPicture r;
  EXPECT_EQ(codeOf([&] { r.readFile((d / "loop.tix").c_str(), true); }), 0xe331a026UL);
}

TEST(Tiff, AnalyserPrintsEveryTag) {
  Dir d;
  TGreyPicture8 g(2, 3);
  g.setRectangle(9);
  g.writeFile((d / "g.tif").c_str(), false);
  unsigned long code = 1;
  const std::string text = CATiff::sAnalyse((d / "g.tif").c_str(), &code);
  EXPECT_EQ(code, 0u);
  char row[80];
  std::snprintf(row, sizeof row, "%-29s %-7ld %-8s ", "Software", 13L, "Ascii");
  EXPECT_NE(text.find(std::string(row) + "\"Kelvarix Tiff\""), std::string::npos) << text;
  EXPECT_NE(text.find("(No Compression)"), std::string::npos) << text;
  EXPECT_NE(CATiff::sAnalyse((d / "none.tif").c_str(), &code).find("Error 0xe321a025"), std::string::npos);
}

namespace {
// The closed formats stand in: a B16 file of 3 x 4 pixels of value 5.
struct B16 : kxutils::TImageFileDouble {
  unsigned long b16Info(const char*, int* lines, int* columns) override {
    *lines = 3;
    *columns = 4;
    return 0;
  }
  unsigned long b16Read(const char*, void* first, int lines, int columns, int lineDistance) override {
    auto* p = static_cast<unsigned short*>(first);
    for (int l = 0; l < lines; ++l)
      for (int c = 0; c < columns; ++c) p[l * lineDistance + c] = 5;
    return 0;
  }
};
}  // namespace

TEST(Tiff, ClosedFormatsThroughTheirCallingSide) {
  TGreyPicture16 p(2, 2);
  EXPECT_EQ(codeOf([&] { p.readFile("x.b16", true); }), 0xe3017000UL);  // no double: not available
  B16 b16;
  kxutils::vSetImageFileDouble(&b16);
  EXPECT_EQ(codeOf([&] { p.readFile("x.b16", false); }), 0x12345678UL);  // other geometry, no alloc
  p.readFile("x.b16", true);
  EXPECT_EQ(p.getLines(), 3);
  EXPECT_EQ(p[2][3], 5);
  EXPECT_EQ(codeOf([&] { p.writeFile("x.b16", true); }), 0xe3617000UL);  // the double writes nothing
  kxutils::vSetImageFileDouble(nullptr);
}
