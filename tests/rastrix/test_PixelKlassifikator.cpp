#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <set>
#include <sstream>

#include "file98/TKxMemIniFile.h"
#include "kxexception/TKxTable.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TPixelKlassifikatorTypThreshold.h"
#include "rastrix/TPlane.h"
#include "RastrixTestUtil.h"

using namespace Rastrix;
using rastrixtest::codeOf;

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInf = std::numeric_limits<float>::infinity();

// A plane with first line and column away from 0 and a line distance above
// the columns, filled by f(line, column).
template <class T, class F>
TPlane<T> plane(int lines, int columns, F f) {
  TPlane<T> p(lines, columns, -2, 3, columns + 3);
  for (int l = -2; l < lines - 2; ++l)
    for (int c = 3; c < columns + 3; ++c) p[l][c] = f(l, c);
  return p;
}

// The class plane against getTyp of every pixel (positional form).
template <class T>
void expectKernelMatchesGetTyp(const TPixelKlassifikatorTyp& k, const TPlane<T>& src, bool withPlane) {
  TPlane<unsigned char> cls(src.getLines(), src.getColumns(), src.getFirstLine(), src.getFirstColumn(),
                            src.getColumns());
  TPlane<unsigned short> cls16(src.getLines(), src.getColumns(), src.getFirstLine(), src.getFirstColumn(),
                               src.getColumns());
  k.vClassifyPlane(src, cls, withPlane);
  k.vClassifyPlane(src, cls16, withPlane);
  for (int l = src.getFirstLine(); l <= src.getLastLine(); ++l)
    for (int c = src.getFirstColumn(); c <= src.getLastColumn(); ++c) {
      const unsigned want = k.getTyp(src[l][c], l, c, withPlane ? &src : nullptr);
      ASSERT_EQ(cls[l][c], want) << "line " << l << " column " << c;
      ASSERT_EQ(cls16[l][c], want) << "line " << l << " column " << c;
    }
}

}  // namespace

TEST(PixelKlassifikator, ThresholdRules) {
  TPixelKlassifikatorTypThreshold<float> k;
  EXPECT_EQ(k.size(), 1u);
  EXPECT_EQ(k.getTyp(1e30f), 0u);  // one class: no comparison
  k.resize(2);
  k.vSetThreshold(0, 100);
  EXPECT_EQ(k.getTyp(99.999f), 0u);
  EXPECT_EQ(k.getTyp(100.0f), 1u);  // equal goes up
  EXPECT_EQ(k.getTyp(kNaN), 1u);    // NaN falls through to the top
  k.resize(3);
  k.vSetThreshold(0, 10);
  k.vSetThreshold(1, 5);  // out of order, not sorted: the first above the pixel decides
  EXPECT_EQ(k.getTyp(7.0f), 0u);
  EXPECT_EQ(k.getTyp(5.0f), 0u);
  EXPECT_EQ(k.getTyp(3.0f), 0u);
  EXPECT_EQ(k.getTyp(12.0f), 2u);
  k.vSetThreshold(2, -1e9);  // the last threshold is never compared
  EXPECT_EQ(k.getTyp(12.0f), 2u);
  // The comparison is in double: a threshold between two floats.
  k.vSetThreshold(0, 0.1);
  k.vSetThreshold(1, 1e9);
  EXPECT_EQ(k.getTyp(0.1f), 0.1f < 0.1 ? 0u : 1u);
  // Other pixel types of a float classifier: class 0.
  EXPECT_EQ(k.getTyp(static_cast<unsigned char>(200)), 0u);
  EXPECT_TRUE(k.bIsPixelTyp(eF));
  EXPECT_FALSE(k.bIsPixelTyp(eUC));
  EXPECT_FALSE(k.bIsPixelTyp(eI));
  EXPECT_FALSE(k.bIsPixelTyp(static_cast<eComparePixelTyp>(17)));
  EXPECT_EQ(k.eGetPixelTyp(), eF);

  // Colour pixels by their unnormalised luminance.
  TPixelKlassifikatorTypThreshold<TRGBPixel> rgb;
  rgb.resize(2);
  rgb.vSetThreshold(0, 10 + 4.5907 * 20 + 0.0601 * 30);
  TRGBPixel p;
  p.r = 10, p.g = 20, p.b = 30;
  EXPECT_EQ(rgb.getTyp(p), 1u);
  p.b = 29;
  EXPECT_EQ(rgb.getTyp(p), 0u);
  EXPECT_EQ(rgb.eGetPixelTyp(), eRGB);
}

TEST(PixelKlassifikator, ResizeCopiesThresholdsAndIndexErrors) {
  TPixelKlassifikatorTypThreshold<unsigned short> k;
  k.resize(2);
  k.vSetThreshold(0, 7);
  k.vSetThreshold(1, 99);
  k.resize(4);
  for (unsigned i = 0; i < 4; ++i) EXPECT_EQ(k.dGetThreshold(i), 7.0) << i;  // the old last is overwritten
  EXPECT_EQ(k.rStrGetClassName(3), "C3");
  EXPECT_FALSE(k.bRejection(3));
  EXPECT_EQ(codeOf([&] { k.vSetClassName(4, "x"); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { k.vSetClassName(3, "x"); }), 0UL);
  EXPECT_EQ(codeOf([&] { k.vSetThreshold(4, 1); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { k.dGetThreshold(4); }), 0x5100000UL);
  k.resize(1);
  k.resize(3);  // from one class: new entries are 0
  EXPECT_EQ(k.dGetThreshold(0), 7.0);
  EXPECT_EQ(k.dGetThreshold(2), 0.0);
}

TEST(PixelKlassifikator, KindsSignaturesAndCopies) {
  TPixelKlassifikatorTypThresholdContrast<float> contrast;
  EXPECT_EQ(contrast.size(), 1u);
  contrast.resize(7);
  EXPECT_EQ(contrast.size(), 3u);
  EXPECT_TRUE(contrast.bRejection(1));
  EXPECT_FALSE(contrast.bIsResizeable());
  EXPECT_EQ(contrast.eGetKlassifikatorTyp(), TPixelKlassifikator::eLuminance);
  EXPECT_TRUE(contrast.bIsKlassifikatorTyp(TPixelKlassifikator::eAll));
  EXPECT_FALSE(contrast.bIsKlassifikatorTyp(TPixelKlassifikator::eThreshold));

  TPixelKlassifikatorTypThresholdSymbol<float> sym;
  unsigned d = 0, b = 9;
  sym.vSetSymbolData(4, 2);
  sym.vGetSymbolData(&d, &b);
  EXPECT_EQ(d, 5u);
  EXPECT_EQ(b, 2u);
  sym.vSetSymbolData(0, 0);
  sym.vGetSymbolData(&d, nullptr);
  EXPECT_EQ(d, 1u);
  sym.vSetSymbolData(3, 0);
  sym.vGetSymbolData(&d, nullptr);
  EXPECT_EQ(d, 3u);

  // The copy constructor keeps the signature, assignment and clone do not.
  sym.vSetIntegralData(3, 4, 0.25, true);
  TPixelKlassifikatorTypThresholdSymbol<float> copy(sym);
  EXPECT_TRUE(copy.rGetSignatur() == sym.rGetSignatur());
  TPixelKlassifikatorTypThresholdSymbol<float> assigned;
  assigned = sym;
  EXPECT_TRUE(assigned.rGetSignatur() != sym.rGetSignatur());
  std::unique_ptr<TPixelKlassifikator> clone(sym.pVirtualClone());
  auto* c = dynamic_cast<TPixelKlassifikatorTypThresholdSymbol<float>*>(clone.get());
  ASSERT_NE(c, nullptr);
  EXPECT_TRUE(c->rGetSignatur() != sym.rGetSignatur());
  unsigned w, h;
  double f;
  bool neg;
  c->vGetIntegralData(&w, &h, &f, &neg);
  EXPECT_EQ(w, 3u);
  EXPECT_EQ(h, 4u);
  EXPECT_EQ(f, 0.25);
  EXPECT_TRUE(neg);
  c->vGetSymbolData(&d, &b);
  EXPECT_EQ(d, 3u);

  // Hundreds made at once all differ.
  std::set<std::string> sigs;
  for (int i = 0; i < 500; ++i) sigs.insert(TPixelKlassifikatorTypThreshold<float>().rGetSignatur().get());
  EXPECT_EQ(sigs.size(), 500u);
  EXPECT_STREQ(TPixelKlassifikator::strGetTypString(static_cast<TPixelKlassifikator::eKlassifikatorTyp>(42)),
               "unbekannt");
}

TEST(PixelKlassifikator, IntegralWindow) {
  TPixelKlassifikatorTypThresholdIntegral<float> k;
  k.resize(0);
  ASSERT_EQ(k.size(), 3u);
  // Defaults, T = 0: a pixel 6 under a window maximum 10 is foreground.
  auto p = plane<float>(9, 9, [](int, int) { return 1.0f; });
  p[2][7] = 10;
  p[2][6] = 6;
  EXPECT_EQ(k.getTyp(p[2][6], 2, 6, &p), 2u);
  p[2][6] = 5;
  EXPECT_EQ(k.getTyp(p[2][6], 2, 6, &p), 1u);
  EXPECT_EQ(k.getTyp(p[2][6], 2, 6, nullptr), 0u);  // no plane, class 0
  k.vSetThreshold(0, 5.5);
  EXPECT_EQ(k.getTyp(p[2][6], 2, 6, &p), 0u);  // fails the absolute threshold
  // 1 x 1: the window is the pixel itself; on the last line it is empty.
  k.vSetThreshold(0, 0);
  k.vSetIntegralData(1, 1, 0.5, false);
  EXPECT_EQ(k.getTyp(p[2][6], 2, 6, &p), 2u);
  p[6][3] = 3;
  EXPECT_EQ(k.getTyp(p[6][3], 6, 3, &p), 2u);
  // Negative contrast: m / factor >= pixel gives 2.
  k.vSetIntegralData(3, 3, 0.5, true);
  k.vSetThreshold(0, 100);
  p[0][5] = 1;
  EXPECT_EQ(k.getTyp(p[0][5], 0, 5, &p), 2u);
  p[0][5] = 2.5f;
  EXPECT_EQ(k.getTyp(p[0][5], 0, 5, &p), 1u);
  EXPECT_EQ(k.getTyp(200.0f, 0, 5, &p), 0u);
}

// The typed kernels give what getTyp gives, for every kind of value and
// window, on planes away from the origin.
TEST(PixelKlassifikator, PlaneKernelsEqualGetTyp) {
  std::mt19937 rng(5);
  std::uniform_real_distribution<float> d(-20, 120);
  auto value = [&](int, int) {
    const unsigned k = rng() % 20;
    return k == 0 ? kNaN : k == 1 ? kInf : k == 2 ? -kInf : k == 3 ? 50.0f : d(rng);
  };
  const auto f = plane<float>(23, 37, value);
  TPixelKlassifikatorTypThreshold<float> thr;
  thr.resize(5);
  for (const auto& ts : {std::vector<double>{0, 25, 50, 75.000001}, {90, 10, 50, -5}, {0.1, 0.1, kInf, -kInf}}) {
    for (unsigned i = 0; i < 4; ++i) thr.vSetThreshold(i, ts[i]);
    expectKernelMatchesGetTyp(thr, f, false);
  }
  thr.resize(300);  // beyond 8 bits: only a 16-bit class plane
  TPlane<unsigned char> small(f.getLines(), f.getColumns(), f.getFirstLine(), f.getFirstColumn(), f.getColumns());
  EXPECT_EQ(codeOf([&] { thr.vClassifyPlane(f, small); }), 0x5100000UL);
  TPlane<float> wrongDst(2, 2);
  EXPECT_EQ(codeOf([&] { thr.vClassifyPlane(f, wrongDst); }), 0x5100000UL);
  thr.resize(5);

  TPixelKlassifikatorTypThresholdIntegral<float> integral;
  integral.resize(0);
  integral.vSetThreshold(0, 10);
  for (auto [w, h] : {std::pair{5u, 5u}, {1u, 1u}, {0u, 4u}, {4u, 0u}, {2u, 7u}, {6u, 3u}, {40u, 60u}, {22u, 36u}})
    for (bool neg : {false, true}) {
      integral.vSetIntegralData(w, h, neg ? 0.8 : 0.5, neg);
      expectKernelMatchesGetTyp(integral, f, true);
    }
  expectKernelMatchesGetTyp(integral, f, false);  // no plane: class 0

  // Integer and colour pixels.
  const auto u = plane<unsigned short>(7, 19, [&](int, int) { return static_cast<unsigned short>(rng() % 70); });
  TPixelKlassifikatorTypThreshold<unsigned short> tus;
  tus.resize(3);
  tus.vSetThreshold(0, 20.5);
  tus.vSetThreshold(1, 40);
  expectKernelMatchesGetTyp(tus, u, false);
  expectKernelMatchesGetTyp(thr, u, false);  // a float classifier on 16 bits: all 0
  const auto rgbf = plane<TRGBFloatPixel>(11, 13, [&](int, int) {
    TRGBFloatPixel p;
    p.r = d(rng), p.g = d(rng), p.b = d(rng);
    return p;
  });
  TPixelKlassifikatorTypThresholdIntegral<TRGBFloatPixel> ci;
  ci.resize(0);
  ci.vSetIntegralData(3, 4, 0.9, false);
  expectKernelMatchesGetTyp(ci, rgbf, true);
  TPixelKlassifikatorTypThreshold<TRGBFloatPixel> ct;
  ct.resize(3);
  ct.vSetThreshold(0, 50);
  ct.vSetThreshold(1, 300);
  expectKernelMatchesGetTyp(ct, rgbf, false);
}

// The class plane against numpy: digitize for ascending thresholds, and an
// explicit loop over the integral window.
TEST(PixelKlassifikator, ClassPlaneAgainstNumpy) {
  const int L = 12, C = 17;
  std::mt19937 rng(9);
  std::uniform_real_distribution<float> d(0, 100);
  TPlane<float> f(L, C);
  std::ostringstream values;
  values.precision(9);
  for (int l = 0; l < L; ++l)
    for (int c = 0; c < C; ++c) values << (f[l][c] = (rng() % 7 == 0) ? 25.0f : d(rng)) << ",";
  TPixelKlassifikatorTypThreshold<float> thr;
  thr.resize(4);
  thr.vSetThreshold(0, 25);
  thr.vSetThreshold(1, 50);
  thr.vSetThreshold(2, 75);
  TPixelKlassifikatorTypThresholdIntegral<float> integral;
  integral.resize(0);
  integral.vSetThreshold(0, 20);
  integral.vSetIntegralData(4, 3, 0.7, false);
  TPlane<unsigned char> a(L, C), b(L, C);
  thr.vClassifyPlane(f, a, false);
  integral.vClassifyPlane(f, b, true);
  const std::string script =
      "import numpy as np\n"
      "L,C=" + std::to_string(L) + "," + std::to_string(C) + "\n"
      "x=np.array([" + values.str() + "],dtype=np.float32).reshape(L,C)\n"
      "a=np.digitize(x,[25,50,75],right=False)\n"
      "b=np.zeros((L,C),dtype=int)\n"
      "w,h,fac,T=4,3,0.7,20\n"
      "for l in range(L):\n"
      " for c in range(C):\n"
      "  p=float(x[l,c])\n"
      "  if T>p: continue\n"
      "  l0=max(l-w//2,0); l1=min(l0+w,L-1); c0=max(c-h//2,0); c1=min(c0+h,C-1)\n"
      "  M=p\n"
      "  if l1>l0 and c1>c0: M=max(M,float(x[l0:l1,c0:c1].max()))\n"
      "  b[l,c]=1 if fac*M>=p else 2\n"
      "print(*a.ravel(),*b.ravel())\n";
  const std::string out = rastrixtest::run("/usr/bin/python3 -c '" + script + "'");
  std::istringstream in(out);
  std::vector<int> ref;
  for (int v; in >> v;) ref.push_back(v);
  ASSERT_EQ(ref.size(), static_cast<std::size_t>(2 * L * C)) << out;
  for (int l = 0; l < L; ++l)
    for (int c = 0; c < C; ++c) {
      EXPECT_EQ(a[l][c], ref[static_cast<std::size_t>(l * C + c)]) << l << "," << c;
      EXPECT_EQ(b[l][c], ref[static_cast<std::size_t>(L * C + l * C + c)]) << l << "," << c;
    }
}

TEST(PixelKlassifikator, IniRoundTripsAndMalformed) {
  TKxMemIniFile ini;
  TPixelKlassifikatorTypThresholdSymbol<TRGBFloatPixel> s;
  s.resize(0);
  s.vSetThreshold(0, 3.25);
  s.vSetThreshold(2, -7);  // the unused last one is stored too
  s.vSetClassName(2, "H");
  s.vSetRejection(0, true);
  s.vSetKlassifikatorName("mine");
  s.vSetNoDelete(true);
  s.vSetIntegralData(7, 9, 0.125, true);
  s.vSetSymbolData(6, 2);
  s.vWriteIni(&ini, "K");
  TPixelKlassifikatorTypThresholdSymbol<TRGBFloatPixel> r;
  r.vReadIni(&ini, "K");
  EXPECT_STREQ(r.rGetSignatur().get(), s.rGetSignatur().get());
  EXPECT_EQ(r.size(), 3u);
  EXPECT_EQ(r.dGetThreshold(0), 3.25);
  EXPECT_EQ(r.dGetThreshold(2), -7.0);
  EXPECT_EQ(r.rStrGetClassName(2), "H");
  EXPECT_TRUE(r.bRejection(0));
  EXPECT_TRUE(r.bIsNoDelete());
  EXPECT_EQ(r.rStrGetKlassifikatorName(), "mine");
  unsigned w, h, d, b;
  double f;
  bool neg;
  r.vGetIntegralData(&w, &h, &f, &neg);
  r.vGetSymbolData(&d, &b);
  EXPECT_EQ(w, 7u);
  EXPECT_EQ(h, 9u);
  EXPECT_EQ(f, 0.125);
  EXPECT_TRUE(neg);
  EXPECT_EQ(d, 7u);
  EXPECT_EQ(b, 2u);
  EXPECT_EQ(ini.iReadInteger("K", "PixelType", -1), eRGBF);
  EXPECT_EQ(ini.iReadInteger("K", "Type", -1), TPixelKlassifikator::eSymbol);

  // Wrong type, wrong pixel type, bad sizes.
  TPixelKlassifikatorTypThresholdIntegral<TRGBFloatPixel> other;
  EXPECT_EQ(codeOf([&] { other.vReadIni(&ini, "K"); }), 0x7000000UL);
  TPixelKlassifikatorTypThresholdSymbol<float> otherPixel;
  EXPECT_EQ(codeOf([&] { otherPixel.vReadIni(&ini, "K"); }), 0x7000000UL);
  ini.vWriteInteger("K", "Width", -5);
  EXPECT_EQ(codeOf([&] { r.vReadIni(&ini, "K"); }), 0x5100000UL);
  TKxMemIniFile bad;
  TPixelKlassifikatorTypThreshold<float> t;
  t.vWriteIni(&bad, "T");
  bad.vWriteInteger("T", "Size", -1);
  EXPECT_EQ(codeOf([&] { t.vReadIni(&bad, "T"); }), 0x5100000UL);
  bad.vWriteInteger("T", "Size", 10000);  // many classes read fine, missing keys keep defaults
  EXPECT_EQ(codeOf([&] { t.vReadIni(&bad, "T"); }), 0UL);
  EXPECT_EQ(t.size(), 10000u);
  EXPECT_EQ(t.rStrGetClassName(9999), "C9999");
}

TEST(PixelKlassifikator, TableForms) {
  TKxTable table;
  TPixelKlassifikator base;
  EXPECT_EQ(codeOf([&] { base.vCreateTable(nullptr); }), 0x5100000UL);
  TPixelKlassifikatorTypThreshold<float> t;
  t.resize(3);
  t.vSetThreshold(0, 1.5);
  t.vSetThreshold(1, 2.123456);
  t.vCreateTable(&table);
  EXPECT_EQ(table.columns(), t.uiGetTableColumns());
  EXPECT_EQ(table.columns(), 6u);
  t.vAppendTable(&table);
  EXPECT_EQ(vTable2String(table),
            "Name\tKlasse 0\tKlasse 1\tKlasse 2\tSchwelle 0\tSchwelle 1\r\nDefault\tC0\tC1\tC2\t1.5\t2.1235\r\n");
  TPixelKlassifikatorTypThresholdIntegral<float> i;
  i.resize(0);
  i.vCreateTable(&table);
  EXPECT_EQ(table.columns(), i.uiGetTableColumns());
  TPixelKlassifikatorTypThresholdSymbol<float> s;
  s.resize(0);
  s.vCreateTable(&table);
  s.vAppendTable(&table);
  EXPECT_EQ(table.columns(), s.uiGetTableColumns());
  EXPECT_EQ(table.sFormatCell(0, table.columns() - 2), "3");
}
