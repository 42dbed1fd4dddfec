// Plane files: the raw and the text format, read back by the library and by
// numpy, malformed and truncated files, the clipboard forms.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "kxexception/KxError.h"
#include "kxexception/TKxClipboard.h"
#include "kxexception/TLanguage.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TImageTextExport.h"
#include "rastrix/TPlane.h"
#include "RastrixTestUtil.h"

using namespace Rastrix;
namespace fs = std::filesystem;

namespace {

using Dir = rastrixtest::TempDir;
using rastrixtest::codeOf;
using rastrixtest::slurp;

std::string python(const std::string& script) { return rastrixtest::run("/usr/bin/python3 -c \'" + script + "\'"); }

template <class T>
void fill(TPlane<T>& p) {
  int n = 0;
  for (int l = p.getFirstLine(); l < p.getFirstLine() + p.getLines(); ++l)
    for (int c = p.getFirstColumn(); c < p.getFirstColumn() + p.getColumns(); ++c, ++n) {
      if constexpr (TPixelTraits<T>::bColor)
        p[l][c].set(static_cast<decltype(p[l][c].r)>(n % 200), static_cast<decltype(p[l][c].r)>(n % 7 + 1),
                    static_cast<decltype(p[l][c].r)>(n % 13 + 2));
      else
        p[l][c] = static_cast<T>(n % 200 + 1);
    }
}

}  // namespace

TEST(PlaneFiles, RawHeaderAndExactPixelBytes) {
  Dir d;
  TPlane<float> p(2, 3);
  fill(p);
  p.writeFile((d / "a.pf").c_str(), false);
  const std::string f = slurp(d / "a.pf");
  EXPECT_EQ(f.rfind("Typ=float\r\nLines=2\r\nColumns=3\r\nFirstLine=0\r\nFirstColumn=0\r\n", 0), 0u);
  EXPECT_NE(f.find("Value0="), std::string::npos);
  EXPECT_NE(f.find("Unit0="), std::string::npos);
  EXPECT_EQ(f.size() - f.find('\0') - 1, 24u);
  EXPECT_EQ(codeOf([&] { p.writeFile((d / "a.pf").c_str(), false); }), Err::ulFileExists);
  p.writeFile((d / "a.pf").c_str(), true);
  TPlane<float> bad;
  EXPECT_EQ(codeOf([&] { bad.writeFile((d / "b.pf").c_str(), true); }), Err::ulPlaneNotValid);
}

// numpy reads what we wrote: all six types, a sub-picture with a line distance
// above its columns, first line and column not 0.
TEST(PlaneFiles, NumpyReadsEveryType) {
  Dir d;
  auto check = [&](auto tag, const char* dtype, const char* file) {
    using T = typename decltype(tag)::type;
    TPlane<T> big(6, 9, -3, 4, 12);
    fill(big);
    TPlane<T> view;
    view.beSubPicture(big, CRectangle(-2, 1, 5, 10));  // lines -2..1, columns 5..10
    view.writeFile((d / file).c_str(), true);
    const std::string script = "import numpy as np\nb=open(\"" + (d / file) + "\",\"rb\").read()\n"
                               "h=b.index(0)\nhead=b[:h].decode(\"latin-1\")\n"
                               "a=np.frombuffer(b[h+1:],dtype=np.dtype(\"" + dtype + "\"))\n"
                               "print(head.split(\"\\r\\n\")[3], a.size, repr(a.reshape(-1)[:6].tolist()))";
    const std::string out = python(script);
    std::string expect = "FirstLine=-2 ";
    expect += std::to_string(4 * 6 * TPixelTraits<T>::iValuesPerPixel) + " [";
    // The first six values in memory order of view pixel (-2, 5), (-2, 6), ...
    std::ostringstream want;
    int count = 0;
    for (int c = 5; count < 6; ++c) {
      if constexpr (TPixelTraits<T>::bColor) {
        for (double v : {double(view[-2][c].b), double(view[-2][c].g), double(view[-2][c].r)})
          if (count++ < 6) want << (count > 1 ? ", " : "") << (std::is_same_v<T, TRGBFloatPixel> ? std::to_string(v).substr(0, std::to_string(v).find('.') + 2) : std::to_string(int(v)));
      } else {
        want << (count++ ? ", " : "") << (std::is_same_v<T, float> ? std::to_string(double(view[-2][c])).substr(0, std::to_string(double(view[-2][c])).find('.') + 2) : std::to_string(int(view[-2][c])));
      }
    }
    EXPECT_EQ(out, expect + want.str() + "]\n") << file;
  };
  check(std::type_identity<unsigned char>{}, "u1", "a.puc");
  check(std::type_identity<unsigned short>{}, "<u2", "a.pus");
  check(std::type_identity<float>{}, "<f4", "a.pf");
  check(std::type_identity<int>{}, "<i4", "a.pi");
  check(std::type_identity<TRGBPixel>{}, "u1", "a.pco");
  check(std::type_identity<TRGBFloatPixel>{}, "<f4", "a.pcf");
}

TEST(PlaneFiles, RawRoundTripAndTheAllocRules) {
  Dir d;
  TPlane<TRGBFloatPixel> p(4, 5, 7, -2, 8);
  fill(p);
  p.setValueUnitPic(1, "Leuchtdichte", "cd/m\xB2");
  p.rGetPixelColorSpace().vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LXY);
  p.writeFile((d / "c.pcf").c_str(), true);
  TPlane<TRGBFloatPixel> q;
  q.readFile((d / "c.pcf").c_str(), true);
  ASSERT_EQ(q.getFirstLine(), 7);
  ASSERT_EQ(q.getFirstColumn(), -2);
  EXPECT_EQ(q.rStrGetValuePic(1), "Leuchtdichte");
  EXPECT_EQ(q.rGetPixelColorSpace().uGetToFlag(), TPixelColorSpace::LXY);
  EXPECT_EQ(std::string(q.cpGetLastFileName()), d / "c.pcf");
  for (int l = 7; l < 11; ++l)
    for (int c = -2; c < 3; ++c) EXPECT_EQ(q[l][c], p[l][c]);
  // A plane of the right size keeps its own numbers.
  TPlane<TRGBFloatPixel> r(4, 5, 0, 0, 5);
  r.readFile((d / "c.pcf").c_str(), true);
  EXPECT_EQ(r.getFirstLine(), 0);
  // alloc false: the plane must match.
  EXPECT_EQ(codeOf([&] { r.readFile((d / "c.pcf").c_str(), false); }), Err::ulFileFirstLineDiffers);
  TPlane<TRGBFloatPixel> small(3, 5, 7, -2, 5);
  EXPECT_EQ(codeOf([&] { small.readFile((d / "c.pcf").c_str(), false); }), Err::ulFileLinesDiffer);
  TPlane<TRGBFloatPixel> invalid;
  EXPECT_EQ(codeOf([&] { invalid.readFile((d / "c.pcf").c_str(), false); }), Err::ulPlaneNotValid);
  // insertFile puts the file at the plane's first line and column.
  TPlane<TRGBFloatPixel> wide(10, 10, 5, -3, 10);
  wide.clear();
  wide.insertFile((d / "c.pcf").c_str());
  EXPECT_EQ(wide[5 + 3][-3 + 4], p[7 + 3][-2 + 4]);
}

TEST(PlaneFiles, ValueAndUnitKeys) {
  Dir d;
  const std::string pixels(4 * sizeof(float), '\0');
  auto file = [&](const std::string& extra) {
    std::ofstream(d / "v.pf", std::ios::binary)
        << "Typ=float\r\nLines=2\r\nColumns=2\r\nFirstLine=0\r\nFirstColumn=0\r\n" << extra << std::string(1, '\0')
        << pixels;
    return d / "v.pf";
  };
  TPlane<float> p(1, 1);
  p.setValueUnitPic(0, "old", "old");
  p.readFile(file("").c_str(), true);
  EXPECT_EQ(p.rStrGetValuePic(0), "");  // no key clears
  p.readFile(file("Value0=Grey value\r\nUnit=cd/m\xB2\r\n").c_str(), true);
  EXPECT_EQ(p.rStrGetValuePic(0), "Grey");
  EXPECT_EQ(p.rStrGetUnitPic(0), "cd/m\xB2");
  p.readFile(file("Value0=\r\nUnit0=lx\r\n").c_str(), true);
  EXPECT_EQ(p.rStrGetValuePic(0), "");
  EXPECT_EQ(p.rStrGetUnitPic(0), "lx");
  TPlane<TRGBPixel> c(1, 1);
  std::ofstream(d / "c.pco", std::ios::binary) << "Typ=Rastrix::TRGBPixel\r\nLines=1\r\nColumns=1\r\nFirstLine=0\r\n"
                                                   "FirstColumn=0\r\nUnit=nm\r\n"
                                                << std::string(1, '\0') << "abc";
  c.readFile((d / "c.pco").c_str(), true);
  EXPECT_EQ(c.rStrGetUnitPic(2), "nm");  // the old key serves every channel
}

TEST(PlaneFiles, MalformedAndTruncatedRawFiles) {
  Dir d;
  auto code = [&](const std::string& content) {
    std::ofstream(d / "m.pf", std::ios::binary) << content;
    TPlane<float> p(2, 2);
    p.setRectangle(5.0f);
    const unsigned long c = codeOf([&] { p.readFile((d / "m.pf").c_str(), true); });
    if (c) EXPECT_EQ(p.getLines(), 2);  // refused before anything changed
    return c;
  };
  const std::string head = "Typ=float\r\nLines=2\r\nColumns=2\r\nFirstLine=0\r\nFirstColumn=0\r\n";
  EXPECT_EQ(code(""), Err::ulFileNoTyp);
  EXPECT_EQ(code("Typ=float"), Err::ulFileTypValue);
  EXPECT_EQ(code("Typ=float\r\nColumns=2\r\n"), Err::ulFileNoLines);
  EXPECT_EQ(code("Typ=float\r\nLines=x\r\n"), Err::ulFileLinesUnreadable);
  EXPECT_EQ(code(head + std::string(1, '\0') + std::string(15, 'x')), Err::ulFileReadFailed);  // one byte short
  EXPECT_EQ(code(head), Err::ulFileReadFailed);                                              // no NUL, no pixels
  EXPECT_EQ(code("Typ=float\r\nLines=2147483647\r\nColumns=2147483647\r\nFirstLine=0\r\nFirstColumn=0\r\n" +
                 std::string(1, '\0')),
            Err::ulFileReadFailed);
  EXPECT_EQ(code("Typ=float\r\nLines=0\r\nColumns=2\r\nFirstLine=0\r\nFirstColumn=0\r\n" + std::string(1, '\0')),
            Err::ulFileLinesUnreadable);
  EXPECT_EQ(codeOf([&] { TPlane<float>().readFile((d / "none.pf").c_str(), true); }), Err::ulFileOpenRead);
  // Fuzz: bytes of a valid file changed and cut anywhere.
  std::mt19937 rng(17);
  const std::string valid = head + "Value0=v\r\nUnit0=u\r\n" + std::string(1, '\0') + std::string(16, 'p');
  for (int i = 0; i < 2000; ++i) {
    std::string f = valid;
    for (int k = 0, n = static_cast<int>(rng() % 4); k < n; ++k) f[rng() % f.size()] = static_cast<char>(rng());
    f.resize(rng() % (f.size() + 1));
    code(f);
  }
}

TEST(PlaneFiles, TextFormatBothWays) {
  Dir d;
  TPlane<unsigned short> p(2, 3, 5, 0, 3);
  fill(p);
  p.vPic2AsciiFile((d / "t.txt").c_str(), false, false);
  const std::string t = slurp(d / "t.txt");
  EXPECT_EQ(t.substr(0, t.find('\n', 7) + 1), "ushort\n5\t6\t0\t2\n");
  EXPECT_EQ(codeOf([&] { p.vPic2AsciiFile((d / "t.txt").c_str(), false, false); }), Err::ulTextFileExists);
  TPlane<unsigned short> q;
  q.readFile((d / "t.txt").c_str(), true);
  EXPECT_EQ(q.getFirstLine(), 5);
  EXPECT_EQ(q[6][2], p[6][2]);
  // numpy reads the pixel lines.
  EXPECT_EQ(python("import numpy as np\nprint(np.loadtxt(\"" + (d / "t.txt") + "\",skiprows=2).sum())"),
            std::to_string(1 + 2 + 3 + 4 + 5 + 6) + ".0\n");
  // An area larger than the plane writes the plane; the string form claims it all.
  p.vRect2AsciiFile((d / "u.txt").c_str(), true, 0, 100, -5, 5, false);
  EXPECT_EQ(slurp(d / "u.txt").substr(7, 8), "5\t6\t0\t2\n");
  std::string s;
  p.vRect2String(s, 0, 100, -5, 5, false);
  EXPECT_EQ(s.substr(7, 11), "0\t100\t-5\t5\n");
  // A raw file called ".txt" is read as text, and fails.
  p.writeFile((d / "raw.txt").c_str(), true);
  EXPECT_EQ(codeOf([&] { q.readFile((d / "raw.txt").c_str(), true); }), Err::ulPixelTokenUnreadable);
  // Text header errors: a type of another size, reversed area, too few values.
  auto text = [&](const char* content) {
    std::ofstream(d / "e.txt") << content;
    TPlane<unsigned short> r;
    return codeOf([&] { r.readFile((d / "e.txt").c_str(), true); });
  };
  EXPECT_EQ(text("float\n0\t0\t0\t0\n1\n"), Err::ulPixelTokenUnreadable);
  EXPECT_EQ(text("ushort\n1\t0\t0\t0\n1\n"), Err::ulPixelTokenUnreadable);
  EXPECT_EQ(text("ushort\n0\t1\t0\t1\n1 2 3\n"), Err::ulPixelTokenUnreadable);
  EXPECT_EQ(text("ushort\n0\t2147483646\t0\t2147483646\n1\n"), Err::ulPixelTokenUnreadable);
  EXPECT_EQ(text("whatever\n0\t0\t0\t0\n7\n"), 0u);  // an unknown type word passes
  // Fuzz: a valid text file changed and cut anywhere.
  std::mt19937 rng(23);
  const std::string valid = "ushort\n0\t1\t0\t2\n1\t2\t3\n4\t5,5\t6\n";
  for (int i = 0; i < 2000; ++i) {
    std::string f = valid;
    for (int k = 0, n = static_cast<int>(rng() % 4); k < n; ++k) f[rng() % f.size()] = "0123456789-\t\n,.ex "[rng() % 19];
    f.resize(rng() % (f.size() + 1));
    std::ofstream(d / "f.txt", std::ios::binary) << f;
    TPlane<unsigned short> r;
    codeOf([&] { r.readFile((d / "f.txt").c_str(), true); });
  }
}

TEST(PlaneFiles, ColourValuesExport) {
  Dir d;
  TPlane<TRGBFloatPixel> p(1, 2);
  p.setRectangle(TRGBFloatPixel{});
  p[0][0].set(10, 20, 30);
  p.rGetPixelColorSpace().vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LSASBS);
  TLanguage::setDeutsch();
  std::string s;
  p.vRect2String(s, 0, 0, 0, 1, true);
  EXPECT_EQ(s.substr(0, s.find('\n') + 1), "\"ColorSpace\"\t\"L*a*b*\"\n");
  const std::string ref = s.substr(s.find('\n') + 1);
  EXPECT_EQ(ref.rfind("\"RefColor\"\t\"XYZ\"\t", 0), 0u);
  EXPECT_EQ(std::count(ref.begin(), ref.begin() + ref.find('\n'), ','), 3);
  TLanguage::setEnglisch();
  p.vRect2String(s, 0, 0, 0, 1, true);
  EXPECT_EQ(std::count(s.begin(), s.end(), ','), 0);
  TLanguage::setDeutsch();
}

TEST(PlaneFiles, ClipboardAndFilters) {
  TPlane<int> p(3, 4, -1, 2, 4);
  fill(p);
  p.vRect2Clipboard(0, 1, 3, 4);
  EXPECT_TRUE(TPlane<int>::bHaveClipboardData());
  TPlane<int> q;
  q.vFromClipboard();
  EXPECT_EQ(q.getFirstLine(), 0);
  EXPECT_EQ(q[1][4], p[1][4]);
  TKxClipboard::vSetData(TKxClipboard::uRegisterFormat("TPlane<int>"), "0123456789abcdefXYZ", 19);
  EXPECT_EQ(codeOf([&] { q.vFromClipboard(); }), Err::ulClipboardBlock);
  char patterns[64];
  p.vGetFileExtension(patterns);
  EXPECT_STREQ(patterns, "*.txt *.pi ");
}

TEST(PlaneFiles, TextExportOfTheForm) {
  Dir d;
  TPlane<float> p(3, 4, 1, 1, 4);
  fill(p);
  TImageTextExport f;
  f.name = d / "x.txt";
  f.firstLine = 1, f.lastLine = 3, f.lineStep = 2;
  f.firstColumn = 1, f.lastColumn = 4, f.columnStep = 3;
  f.header = false;
  EXPECT_EQ(ulExportText(p, f), 0u);
  EXPECT_EQ(slurp(f.name), "1\t4\n9\t12\n");
  f.name = d / "no/such/dir/x.txt";
  EXPECT_NE(ulExportText(p, f), 0u);  // shown and deleted, not thrown
  EXPECT_EQ(kx::getErrorCode(), 0u);
}
