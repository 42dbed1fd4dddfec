// The typed pictures and the converter between all pixel types.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <cstdio>
#include <random>
#include <sstream>
#include <string>

#include "kxexception/KxError.h"
#include "kxexception/TKxClipboard.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TFloatPicture.h"
#include "rastrix/TGreyPicture16.h"
#include "rastrix/TGreyPicture8.h"
#include "rastrix/TImageConverter.h"
#include "rastrix/TRGBFloatPicture.h"
#include "rastrix/TRGBPicture.h"
#include "RastrixTestUtil.h"

using namespace Rastrix;

using rastrixtest::codeOf;

TEST(TypedPictures, BinarizeAndConvertLinear) {
  TGreyPicture8 g(1, 3);
  g[0][0] = 128, g[0][1] = 129, g[0][2] = 3;
  g.binarize(128);
  EXPECT_EQ(g[0][0], 0);
  EXPECT_EQ(g[0][1], 255);
  TFloatPicture f(1, 4);
  f[0][0] = 0.4f, f[0][1] = 0.6f, f[0][2] = 255.0f, f[0][3] = 300.0f;
  g.alloc(1, 4);
  g.convertLinear(f, 0.0f, 255.0f);
  EXPECT_EQ(g[0][0], 0);
  EXPECT_EQ(g[0][1], 1);
  EXPECT_EQ(g[0][2], 255);
  EXPECT_EQ(g[0][3], 0);  // 256 keeps its low byte
  EXPECT_EQ(codeOf([&] { g.convertLinear(f, 2.0f, 1.0f); }), Err::ulConvertMaxBelowMin);
  EXPECT_EQ(codeOf([&] { g.convertLinear(f, CRectangle(5, 6, 0, 1)); }), Err::ulConvertEmptyArea);
}

TEST(TypedPictures, BitsFloatDisplayAndGreaterNull) {
  TGreyPicture16 g(1, 1);
  g.setValueRangeMSM(0, 1, 1023);
  EXPECT_EQ(g.getBits(), 10);
  g.setValueRangeMSM(0, 1, 8191);
  EXPECT_EQ(g.getBits(), 16);
  g.setValueRangeMSM(1, 1, 1023);
  EXPECT_EQ(g.getBits(), 16);
  TFloatPicture f(1, 3);
  f[0][0] = 1, f[0][1] = 2, f[0][2] = 3;
  TPlane<unsigned char> d(1, 3);
  d.setRectangle(7);
  float min = 0, max = 0;
  f.convert(d, min, max, true);
  EXPECT_EQ(min, 1.0f);
  EXPECT_EQ(d[0][0], 0);
  EXPECT_EQ(d[0][1], 128);  // 127.5 + 0.5
  EXPECT_EQ(d[0][2], 255);  // x = max gives 255.5
  f.setRectangle(5.0f);
  d.setRectangle(7);
  f.convert(d, min, max, true);  // a constant plane: untouched
  EXPECT_EQ(d[0][1], 7);
  f[0][0] = 1000, f[0][1] = 10, f[0][2] = 0.5f;
  max = 0;
  f.convert(d, 2.0, max, true);  // two decades below 1000: 10 and less is 0
  EXPECT_EQ(d[0][0], 255);
  EXPECT_EQ(d[0][1], 0);
  EXPECT_EQ(d[0][2], 0);
  f[0][0] = -1, f[0][1] = -2;
  f.greaterNull(CRectangle(0, 0, 1, 5));
  EXPECT_EQ(f[0][0], -1.0f);
  EXPECT_EQ(f[0][1], 0.0f);
  TPlane<int> i(2, 2, -1, 0, 2);
  i.setRectangle(10);
  f += i;  // only the intersection: line 0, columns 0..1
  EXPECT_EQ(f[0][0], 9.0f);
  EXPECT_EQ(f[0][2], 0.5f);
}

TEST(TypedPictures, FiltersAndTestPictures) {
  TFloatPicture f(5, 7);
  f.setRectangle(3.0f);
  f.vBox(3, 3);
  EXPECT_FLOAT_EQ(f[0][0], 3.0f);  // a constant stays constant to its edges
  f.clear();
  f[2][3] = 9.0f;
  f.vBox(3, 3);
  EXPECT_FLOAT_EQ(f[2][3], 1.0f);
  EXPECT_FLOAT_EQ(f[1][2], 1.0f);
  EXPECT_FLOAT_EQ(f[0][0], 0.0f);
  f.clear();
  f[2][3] = 16.0f;
  f.vGauss(2);  // 1 2 1 by 1 2 1, over 16
  EXPECT_FLOAT_EQ(f[2][3], 4.0f);
  EXPECT_FLOAT_EQ(f[1][2], 1.0f);
  f.vMakeTestbild(3);
  EXPECT_EQ(f[4][6], 10.0f);
  f.vMakeTestbild(11);
  EXPECT_EQ(f[4][6], 0.0f);
}

TEST(TypedPictures, ColourOperations) {
  TRGBFloatPicture c(1, 2);
  c[0][0].set(-1, 2, -3);
  c[0][1].set(1, 1, 1);
  c.greaterNull();
  EXPECT_EQ(c[0][0].r, 0.0f);
  EXPECT_EQ(c[0][0].g, 2.0f);
  c *= 2.0f;
  EXPECT_EQ(c[0][1].b, 2.0f);
  // A colour whose XYZ has a negative X comes back with X = 0.
  c[0][0].set(-100, 50, 0);
  c.greaterNullXYZ();
  const double X = 2.7689 * c[0][0].r + 1.7518 * c[0][0].g + 1.1302 * c[0][0].b;
  EXPECT_NEAR(X, 0.0, 1e-3);
  TRGBPicture rgb(1, 1);
  rgb[0][0].set(1, 2, 3);
  rgb._swapRB();
  EXPECT_EQ(rgb[0][0].r, 3);
}

TEST(ImageConverter, TheEdgeCasesOfTheTable) {
  TPlane<float> f(1, 2);
  f[0][0] = 0, f[0][1] = 1;
  TPlane<unsigned short> us;
  TImageConverter::vCopyImage(&f, &us);
  EXPECT_EQ(us[0][1], 1023);
  f[0][0] = -2;
  TPlane<int> i;
  TImageConverter::vCopyImage(&f, &i);
  EXPECT_EQ(i[0][0], -65534);
  EXPECT_EQ(i[0][1], 32768);
  TPlane<TRGBPixel> rgb(1, 1);
  rgb[0][0].set(255, 255, 255);
  TPlane<float> lum;
  TImageConverter::vCopyImage(&rgb, &lum);
  EXPECT_NEAR(lum[0][0], 1440.954, 1e-3);
  f.setRectangle(5.0f);
  TPlane<unsigned char> uc(1, 2);
  uc.setRectangle(9);
  TImageConverter::vCopyImage(&f, &uc);  // constant: all zeros
  EXPECT_EQ(uc[0][0], 0);
  EXPECT_EQ(codeOf([&] { TImageConverter::vCopyImage(&f, &f); }), Err::ulConverterSame);
  EXPECT_EQ(codeOf([&] { TImageConverter::vCopyImage(nullptr, &f); }), Err::ulConverterNull);
  // 16-bit to 8-bit stretches to the full range, whatever the values.
  us[0][0] = 100, us[0][1] = 110;
  TImageConverter::vCopyImage(&us, &uc);
  EXPECT_EQ(uc[0][0], 0);
  EXPECT_EQ(uc[0][1], 255);
}

// Float to 8-bit, 16-bit and int, and float colour to byte colour, against
// numpy computing the formulas in float32.
TEST(ImageConverter, ScalingsAgainstNumpy) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<float> d(-50, 300);
  TPlane<float> f(3, 5, 2, -1, 5);
  std::ostringstream values;
  values.precision(9);
  for (int l = 2; l < 5; ++l)
    for (int c = -1; c < 4; ++c) values << (f[l][c] = d(rng)) << ",";
  TPlane<unsigned char> uc;
  TPlane<unsigned short> us;
  TPlane<int> in;
  TImageConverter::vCopyImage(&f, &uc);
  TImageConverter::vCopyImage(&f, &us);
  TImageConverter::vCopyImage(&f, &in);
  const std::string script =
      "import numpy as np\nx=np.array([" + values.str() + "],dtype=np.float32)\nmn,mx=x.min(),x.max()\n"
      "a=np.trunc((x-mn)*np.float32(255/(mx-mn))+np.float32(0.5)).astype(np.int64)\n"
      "b=np.trunc((x-mn)*np.float32(np.float32(1023)/(mx-mn))+np.float32(0.5)).astype(np.int64)\n"
      "m=max(abs(mn),abs(mx))\nc=np.trunc(x*np.float32(np.float32(65535)/m)+np.float32(0.5)).astype(np.int64)\n"
      "print(*a,*b,*c)";
  FILE* p = ::popen(("/usr/bin/python3 -c '" + script + "'").c_str(), "r");
  ASSERT_NE(p, nullptr);
  long long v;
  std::vector<long long> ref;
  while (std::fscanf(p, "%lld", &v) == 1) ref.push_back(v);
  ::pclose(p);
  ASSERT_EQ(ref.size(), 45u);
  int k = 0;
  for (int l = 2; l < 5; ++l)
    for (int c = -1; c < 4; ++c, ++k) {
      EXPECT_EQ(uc[l][c], ref[static_cast<std::size_t>(k)]);
      EXPECT_EQ(us[l][c], ref[static_cast<std::size_t>(15 + k)]);
      EXPECT_EQ(in[l][c], ref[static_cast<std::size_t>(30 + k)]);
    }
}

TEST(ImageConverter, SplitMergeAndClipboard) {
  TPlane<TRGBFloatPixel> c(2, 2);
  c[0][0].set(10, 20, 30);
  c[1][1].set(1, 2, 3);
  c.setValueUnitPic(0, "R", "cd");
  TPlane<float> a, b;
  TPlane<unsigned char> third;
  TImageConverter::vSplitRGB(&c, &a, &b, nullptr);
  EXPECT_EQ(a[0][0], 10.0f);
  EXPECT_EQ(b[1][1], 2.0f);
  EXPECT_EQ(a.rStrGetValuePic(0), "R");
  TPlane<TRGBFloatPixel> back;
  TImageConverter::vMergeRGB(&a, &b, nullptr, &back);
  EXPECT_EQ(back[0][0].r, 10.0f);
  EXPECT_EQ(back[0][0].b, 0.0f);  // an omitted plane leaves its channel at 0
  TPlane<float> other(3, 3);
  EXPECT_EQ(codeOf([&] { TImageConverter::vMergeRGB(&a, &other, nullptr, &back); }), Err::ulConverterWrongSize);
  EXPECT_EQ(codeOf([&] { TImageConverter::vSplitRGB(&a, &b, nullptr, nullptr); }), Err::ulConverterWrongType);
  TKxClipboard::vClear();
  EXPECT_EQ(TImageConverter::eHaveClipboardData(), -1);
  TImageConverter::vToClipboard(&a, true, true, true);
  EXPECT_EQ(TImageConverter::eHaveClipboardData(), static_cast<int>(eF));
  CRectangle r;
  ASSERT_TRUE(TImageConverter::bGetImageSize(&r));
  EXPECT_EQ(r.iLastLine, 1);
  TPlane<int> got;
  ASSERT_TRUE(TImageConverter::bFromClipboard(&got));
  EXPECT_EQ(got[0][0], 65535);  // float to int scales to its largest value
  EXPECT_NE(TKxClipboard::sGetText().find("float"), std::string::npos);
}

// The mapping of convertLinear is the count of table entries below each
// pixel, for every kind of value: in range, at the entries, outside, NaN,
// infinities; every position of a line (vector body and tail).
TEST(TypedPictures, ConvertLinearCountsTheTableExactly) {
  std::mt19937 rng(41);
  for (const auto& [min, max] : {std::pair{0.0f, 255.0f}, {-3.5f, 1e-3f}, {100.0f, 100.5f}, {-1e6f, 7e6f},
                                 // at the bound of the vector form, beyond it, and degenerate
                                 {1000.0f, 1001.0f}, {-2000.0f, -1998.0f}, {1000.0f, 1000.001f}, {5.0f, 5.0f}}) {
    float table[256];
    for (int i = 0; i < 256; ++i) table[i] = (2.0f * i + 1.0f) * (max - min) / (256.0f * 2 - 2) + min;
    TFloatPicture f(3, 53);  // per line a block of 32, one of 16 and a tail
    std::uniform_real_distribution<float> d(min - (max - min) * 0.1f, max + (max - min) * 0.1f);
    for (int l = 0; l < 3; ++l)
      for (int c = 0; c < 53; ++c) {
        const int kind = static_cast<int>(rng() % 8);
        f[l][c] = kind == 0   ? table[rng() % 256]
                  : kind == 1 ? std::nextafter(table[rng() % 256], max)
                  : kind == 4 ? std::nextafter(table[rng() % 256], min)
                  : kind == 2 ? std::numeric_limits<float>::quiet_NaN()
                  : kind == 3 ? (rng() % 2 ? 1 : -1) * std::numeric_limits<float>::infinity()
                              : d(rng);
      }
    TGreyPicture8 g(3, 53);
    g.convertLinear(f, min, max);
    for (int l = 0; l < 3; ++l)
      for (int c = 0; c < 53; ++c) {
        const float x = f[l][c];
        const int count = std::isnan(x) ? 0 : static_cast<int>(std::lower_bound(table, table + 256, x) - table);
        ASSERT_EQ(g[l][c], count & 0xff) << min << ".." << max << " x=" << x;
      }
  }
}
