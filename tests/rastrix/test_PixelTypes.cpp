#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

#include "RastrixTestUtil.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/PixelTraits.h"
#include "rastrix/TPixelColorSpace.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TRGBPixel.h"
#include "rastrix/TruncLow.h"
#include "rastrix/epixeltyp.h"

using Rastrix::TRGBFloatPixel;
using Rastrix::TRGBPixel;
using rastrixtest::codeOf;
using rastrixtest::rgb;
using rastrixtest::rgbf;

namespace {

TEST(TruncLow, TruncatesThenKeepsLowBits) {
  EXPECT_EQ(kx::truncLow<unsigned char>(300.7), 44);
  EXPECT_EQ(kx::truncLow<unsigned char>(-1.5), 255);
  EXPECT_EQ(kx::truncLow<unsigned char>(-0.9), 0);
  EXPECT_EQ(kx::truncLow<unsigned short>(65536.0 + 7.9), 7);
  EXPECT_EQ(kx::truncLow<unsigned short>(-1.0), 65535);
  EXPECT_EQ(kx::truncLow<int>(4294967296.0 + 5.0), 5);
  EXPECT_EQ(kx::truncLow<int>(2147483648.0), std::numeric_limits<int>::min());
  // Beyond 2^63 the low bits are still exact: 2^70 + 2^20 keeps 2^20.
  EXPECT_EQ(kx::truncLow<int>(std::ldexp(1.0, 70) + 1048576.0), 1048576);
  EXPECT_EQ(kx::truncLow<int>(-std::ldexp(1.0, 70) - 1048576.0), -1048576);
  EXPECT_EQ(kx::truncLow<unsigned char>(std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_EQ(kx::truncLow<int>(std::numeric_limits<double>::infinity()), 0);
  EXPECT_EQ(kx::toFloat(1e300), std::numeric_limits<float>::infinity());
  EXPECT_EQ(kx::toFloat(-1e300), -std::numeric_limits<float>::infinity());
  EXPECT_EQ(kx::toFloat(3.4028235e38), std::numeric_limits<float>::max());
  EXPECT_EQ(kx::toFloat(0.1), 0.1f);
}

TEST(RGBPixel, LayoutIsBlueGreenRed) {
  TRGBPixel p = rgb(1, 2, 3);
  unsigned char bytes[3];
  std::memcpy(bytes, &p, 3);
  EXPECT_EQ(bytes[0], 3);  // blue first
  EXPECT_EQ(bytes[1], 2);
  EXPECT_EQ(bytes[2], 1);  // red third
  TRGBFloatPixel f = rgbf(1.f, 2.f, 3.f);
  float floats[3];
  std::memcpy(floats, &f, 12);
  EXPECT_EQ(floats[0], 3.f);
  EXPECT_EQ(floats[2], 1.f);
  // set() cuts each component to eight bits.
  EXPECT_EQ(rgb(256 + 9, -1, 511), rgb(9, 255, 255));
}

TEST(RGBPixel, AssignmentWrapsInsteadOfClipping) {
  TRGBPixel p;
  p = 300.7;
  EXPECT_EQ(p, rgb(44, 44, 44));
  p = -1.5;
  EXPECT_EQ(p, rgb(255, 255, 255));
  p = static_cast<unsigned char>(7);
  EXPECT_EQ(p, rgb(7, 7, 7));
  p = 258;  // int: its low eight bits
  EXPECT_EQ(p, rgb(2, 2, 2));
}

TEST(RGBPixel, ArithmeticTruncatesAndWraps) {
  // 1 - 1.5 = -0.5 -> 0; 0 - 1.5 -> -1 -> 255; 400 wraps to 144; no test for
  // zero: infinities and NaN truncate to 0.
  const struct {
    TRGBPixel in;
    char op;
    float v;
    TRGBPixel out;
  } rows[] = {{rgb(3, 5, 255), '*', 0.5f, rgb(1, 2, 127)}, {rgb(1, 10, 0), '-', 1.5f, rgb(0, 8, 255)},
              {rgb(9, 100, 255), '/', 2.0f, rgb(4, 50, 127)}, {rgb(200, 100, 1), '*', 2.0f, rgb(144, 200, 2)},
              {rgb(1, 0, 3), '/', 0.0f, rgb(0, 0, 0)}};
  for (const auto& r : rows) {
    TRGBPixel p = r.in;
    if (r.op == '*') p *= r.v;
    if (r.op == '/') p /= r.v;
    if (r.op == '-') p -= r.v;
    EXPECT_EQ(p, r.out) << r.op << r.v;
  }
  TRGBPixel p = rgb(200, 100, 255);
  p += rgb(100, 0, 1);
  EXPECT_EQ(p, rgb(44, 100, 0));
  p.swapRB();
  EXPECT_EQ(p, rgb(0, 100, 44));
}

TEST(RGBPixel, LuminanceIsUnnormalised) {
  EXPECT_NEAR(static_cast<double>(rgb(0, 0, 255)), 15.3255, 1e-9);
  EXPECT_NEAR(static_cast<double>(rgb(255, 255, 255)), 1440.954, 1e-9);
  EXPECT_NEAR(rgb(255, 0, 0).dGetLuminance(), 255.0, 1e-12);
  EXPECT_NEAR(rgbf(1.f, 1.f, 1.f).dGetLuminance(), 5.6508, 1e-12);
  EXPECT_NEAR(static_cast<double>(rgbf(0.f, 2.f, 0.f)), 9.1814, 1e-12);
}

TEST(RGBFloatPixel, GreaterEqualIsAnyComponent) {
  const TRGBFloatPixel a = rgbf(1.f, 5.f, 1.f), b = rgbf(2.f, 2.f, 2.f);
  EXPECT_TRUE(a >= b);
  EXPECT_TRUE(b >= a);
  EXPECT_FALSE(rgbf(1.f, 1.f, 1.f) >= rgbf(2.f, 2.f, 2.f));
  EXPECT_TRUE(rgbf(0.f, 0.f, 2.f) >= rgbf(1.f, 1.f, 2.f));  // blue alone decides
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(rgbf(nan, nan, nan) >= rgbf(0.f, 0.f, 0.f));
}

TEST(RGBFloatPixel, PlainFloatArithmetic) {
  TRGBFloatPixel p;
  p = rgb(10, 20, 30);
  EXPECT_EQ(p, rgbf(10.f, 20.f, 30.f));
  p += rgb(1, 1, 1);
  p -= rgbf(1.f, 2.f, 3.f);
  EXPECT_EQ(p, rgbf(10.f, 19.f, 28.f));
  p += 0.5;
  p -= 0.25f;
  EXPECT_EQ(p, rgbf(10.25f, 19.25f, 28.25f));
  p *= rgbf(2.f, 1.f, 0.f);
  EXPECT_EQ(p, rgbf(20.5f, 19.25f, 0.f));
  p *= 2.0;
  p /= 4.0f;
  EXPECT_EQ(p, rgbf(10.25f, 9.625f, 0.f));
  p = 300.7;
  EXPECT_FLOAT_EQ(p.r, 300.7f);  // no truncation for float pixels
  p = -3.0f;
  EXPECT_EQ(p, rgbf(-3.f, -3.f, -3.f));
  p /= 0.0;
  EXPECT_TRUE(std::isinf(p.r) && std::isinf(p.b));
  p = 0;
  p /= 0.0f;
  EXPECT_TRUE(std::isnan(p.g));
  p = rgbf(1.f, 2.f, 3.f);
  p.swapRB();
  EXPECT_EQ(p, rgbf(3.f, 2.f, 1.f));
}

TEST(DefaultValueRange, PerTypeAndNullPointersSkipped) {
  struct Row {
    eComparePixelTyp e;
    double min, step, max;
  } rows[] = {{eUC, 0, 1, 255},
              {eRGB, 0, 1, 255},
              {eUS, 0, 655.35, 65535},
              {eI, 0, 655.35, 65535},
              {eF, -3.4028234663852886e+38, 6.805646932770577e+36, 3.4028234663852886e+38},
              {eRGBF, -3.4028234663852886e+38, 6.805646932770577e+36, 3.4028234663852886e+38}};
  for (const Row& r : rows) {
    double mi = 1, st = 1, ma = 1;
    vGetDefaultValueRangeMSM(r.e, &mi, &st, &ma);
    EXPECT_EQ(mi, r.min) << int(r.e);
    EXPECT_EQ(st, r.step) << int(r.e);
    EXPECT_EQ(ma, r.max) << int(r.e);
  }
  double ma = 0;
  vGetDefaultValueRangeMSM(eF, nullptr, nullptr, &ma);
  EXPECT_EQ(ma, 3.4028234663852886e+38);
  vGetDefaultValueRangeMSM(eUS, nullptr, nullptr, nullptr);
}

TEST(DefaultValueRange, UnknownTypeRaisesWithLanguageText) {
  TLanguage::setEnglisch();
  EXPECT_EQ(codeOf([] { vGetDefaultValueRangeMSM(static_cast<eComparePixelTyp>(6), nullptr, nullptr, nullptr); }),
            0x07000000UL);
  try {
    vGetDefaultValueRangeMSM(static_cast<eComparePixelTyp>(200), nullptr, nullptr, nullptr);
    FAIL();
  } catch (unsigned long) {
    EXPECT_EQ(kx::getErrorChain().front().text, "Unknow data/picture type (200)");
    kx::deleteError();
  }
  TLanguage::setDeutsch();
  try {
    Rastrix::dispatchPixelTyp(static_cast<eComparePixelTyp>(9), [](auto) { return 0; });
    FAIL();
  } catch (unsigned long c) {
    EXPECT_EQ(c, 0x07000000UL);
    EXPECT_EQ(kx::getErrorChain().front().text, "Datentyp/Pixeltyp 9 unbekannt.");
    kx::deleteError();
  }
}

TEST(PixelTraits, OneListInTheOrderOfTheNumbers) {
  int n = 0;
  eComparePixelTyp order[6];
#define KX_COLLECT(T) order[n++] = Rastrix::TPixelTraits<T>::ePixelTyp;
  KX_FOR_EACH_PIXEL_TYPE(KX_COLLECT)
#undef KX_COLLECT
  ASSERT_EQ(n, 6);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(order[i], i);
    const int size = Rastrix::dispatchPixelTyp(static_cast<eComparePixelTyp>(i), [](auto t) {
      using T = typename decltype(t)::type;
      return static_cast<int>(sizeof(T)) * 100 + Rastrix::TPixelTraits<T>::iValuesPerPixel;
    });
    const int expected[] = {101, 201, 401, 303, 1203, 401};
    EXPECT_EQ(size, expected[i]);
  }
}

template <class T>
std::string str(const T& p) {
  char buf[Rastrix::iPixelStrSize];
  Rastrix::TPixelTraits<T>::pixel2Str(p, buf);
  return buf;
}

TEST(PixelText, WriteFormats) {
  EXPECT_EQ(str<unsigned char>(255), "255");
  EXPECT_EQ(str<unsigned short>(65535), "65535");
  EXPECT_EQ(str<int>(-7), "-7");
  EXPECT_EQ(str<float>(1.5f), "1.500000e+00");
  EXPECT_EQ(str(rgb(1, 2, 3)), "3\t2\t1");  // memory order
  EXPECT_EQ(str(rgbf(1.f, 2.f, 3.5f)), "3.500000\t2.000000\t1.000000");
  const float big = -std::numeric_limits<float>::max();
  EXPECT_EQ(str(rgbf(big, big, big)).size(), 3 * 47u + 2u);  // the longest text fits
}

template <class T>
T read(const char* text, const char** rest = nullptr) {
  T p{};
  const char* r = Rastrix::TPixelTraits<T>::str2Pixel(text, &p);
  if (rest) *rest = r;
  return p;
}

TEST(PixelText, ReadTruncatesAndReplacesFirstComma) {
  EXPECT_EQ(read<unsigned char>("1,5"), 1);
  EXPECT_EQ(read<unsigned char>("  300.7 "), 44);
  EXPECT_EQ(read<unsigned char>("-1"), 255);
  EXPECT_EQ(read<unsigned short>("70000"), 70000 - 65536);
  EXPECT_EQ(read<int>("-2,9e1"), -29);
  EXPECT_FLOAT_EQ(read<float>("1,25"), 1.25f);
  EXPECT_EQ(read<float>("1e300"), std::numeric_limits<float>::infinity());
  EXPECT_EQ(read<float>("2,5,7"), 2.5f);  // only the first comma; the scan stops at the second
  const char* rest = nullptr;
  EXPECT_EQ(read<int>("12\t34", &rest), 12);
  EXPECT_EQ(read<int>(rest), 34);
}

TEST(PixelText, ColourRoundTripSwapsOnlyBytePixels) {
  const TRGBPixel p = rgb(10, 20, 30);
  EXPECT_EQ(read<TRGBPixel>(str(p).c_str()), rgb(30, 20, 10));  // red and blue exchanged
  const TRGBFloatPixel f = rgbf(1.5f, -2.f, 1e6f);
  EXPECT_EQ(read<TRGBFloatPixel>(str(f).c_str()), f);
  EXPECT_EQ(read<TRGBPixel>("1 2 3"), rgb(1, 2, 3));  // positions 1, 2, 3 then the swap
}

TEST(PixelText, MalformedInputRaisesWithoutText) {
  const char* bad[] = {"", "   ", "abc", "\x01\x02", ",", "-", "+e5", "\xff\xfe"};
  for (const char* b : bad) {
    EXPECT_EQ(codeOf([&] { read<float>(b); }), Rastrix::Err::ulPixelTokenUnreadable) << b;
  }
  EXPECT_EQ(codeOf([] { read<TRGBPixel>("1 2"); }), Rastrix::Err::ulPixelTokenUnreadable);  // truncated pixel
  try {
    read<int>("x");
  } catch (unsigned long) {
    EXPECT_TRUE(kx::getErrorChain().front().text.empty());
    kx::deleteError();
  }
  std::string huge(1 << 20, '7');
  EXPECT_EQ(read<float>(huge.c_str()), std::numeric_limits<float>::infinity());
  std::string junk;
  for (int i = 1; i < 256; ++i) junk += static_cast<char>(i);
  unsigned long c = codeOf([&] { read<TRGBFloatPixel>(junk.c_str()); });
  EXPECT_TRUE(c == 0 || c == Rastrix::Err::ulPixelTokenUnreadable);
}

}  // namespace

// A host that sets a German locale still gets points in pixel texts and in
// the colour space's text, and reads them back.
TEST(PixelText, IndependentOfTheHostsLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  if (!std::setlocale(LC_ALL, "de_DE.UTF-8")) GTEST_SKIP() << "no German locale on this machine";
  char probe[16];
  std::snprintf(probe, sizeof probe, "%.1f", 1.5);
  EXPECT_STREQ(probe, "1,5");  // the locale is in force
  char out[Rastrix::iPixelStrSize];
  Rastrix::TPixelTraits<float>::pixel2Str(1.5f, out);
  EXPECT_STREQ(out, "1.500000e+00");
  TRGBFloatPixel colour;
  colour.set(0.25f, 0.5f, 2.0f);
  Rastrix::TPixelTraits<TRGBFloatPixel>::pixel2Str(colour, out);
  EXPECT_EQ(std::string(out).find(','), std::string::npos) << out;
  float f = 0;
  Rastrix::TPixelTraits<float>::str2Pixel("2.75", &f);
  EXPECT_EQ(f, 2.75f);
  Rastrix::TPixelColorSpace cs;
  char text[256] = {};
  cs.vWriteToString(text);
  Rastrix::TPixelColorSpace back;
  back.vReadFromString(text);
  char again[256] = {};
  back.vWriteToString(again);
  std::setlocale(LC_ALL, before.c_str());
  // The same texts under the C locale.
  char cText[256] = {}, cAgain[256] = {};
  cs.vWriteToString(cText);
  Rastrix::TPixelColorSpace cBack;
  cBack.vReadFromString(cText);
  cBack.vWriteToString(cAgain);
  EXPECT_STREQ(text, cText);
  EXPECT_STREQ(again, cAgain);
}
