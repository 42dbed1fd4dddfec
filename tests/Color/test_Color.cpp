// Pictures between colour spaces, colour differences, the vector triples and
// the normal law.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>

#include "Color/TImageColorDiff.h"
#include "Color/TImageColorSpace.h"
#include "Color/Tlnormal.h"
#include "Color/Txyz.h"
#include "kxexception/KxError.h"
#include "../rastrix/RastrixTestUtil.h"

using namespace Rastrix;
using rastrixtest::codeOf;

namespace {
TRGBFloatPixel pix(double a, double b, double c) {
  TRGBFloatPixel p;
  p.set(static_cast<float>(a), static_cast<float>(b), static_cast<float>(c));
  return p;
}

TPlane<TRGBFloatPixel> randomPicture(int lines, int columns) {
  TPlane<TRGBFloatPixel> p(lines, columns, -2, 3, columns + 1);
  std::mt19937 rng(3);
  std::uniform_real_distribution<float> d(1.0f, 200.0f);
  for (int l = -2; l < lines - 2; ++l)
    for (int k = 3; k < columns + 3; ++k) p[l][k] = pix(d(rng), d(rng), d(rng));
  return p;
}

}  // namespace

TEST(ImageColorSpace, EveryPixelAsThePixelColourSpaceHasIt) {
  const auto src = randomPicture(7, 9);
  for (unsigned to : {0x2u, 0x10u, 0x20u, 0x80u, 0x100u, 0x400u, 0x800u, 0x1000u, 0x2000u, 0x4000u, 0x8000u}) {
    TPlane<TRGBFloatPixel> dst;
    TImageColorSpace::vTransform(src, dst, TPixelColorSpace::CIE_RGB, to);
    ASSERT_EQ(dst.getFirstLine(), -2);
    ASSERT_EQ(dst.getFirstColumn(), 3);
    TPixelColorSpace cs;
    cs.vSetFlag(TPixelColorSpace::CIE_RGB, to);
    for (int l = -2; l < 5; ++l)
      for (int k = 3; k < 12; ++k) {
        cs.vSetCIE_RGB(src[l][k]);
        const TRGBFloatPixel want = cs.rGetColor(to), got = dst[l][k];
        EXPECT_NEAR(got.r, want.r, 1e-4 * (1 + std::fabs(want.r))) << to;
        EXPECT_NEAR(got.g, want.g, 1e-4 * (1 + std::fabs(want.g))) << to;
        EXPECT_NEAR(got.b, want.b, 1e-4 * (1 + std::fabs(want.b))) << to;
      }
    EXPECT_EQ(dst.rGetPixelColorSpace().uGetToFlag(), to);
    EXPECT_EQ(dst.rStrGetValuePic(0), TPixelColorSpace::cpGetIndexName(to, 0));
  }
}

TEST(ImageColorSpace, ChainsThroughCieRgbAndBack) {
  const auto src = randomPicture(5, 6);
  TPlane<TRGBFloatPixel> lxy, lab, back;
  TImageColorSpace::vTransform(src, lxy, TPixelColorSpace::CIE_RGB, TPixelColorSpace::LXY);
  TImageColorSpace::vTransform(lxy, lab, TPixelColorSpace::LXY, TPixelColorSpace::LSASBS);
  TImageColorSpace::vTransform(lxy, back, TPixelColorSpace::LXY, TPixelColorSpace::CIE_RGB);
  TPixelColorSpace cs;
  cs.vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LSASBS);
  cs.vSetCIE_RGB(src[0][3]);
  EXPECT_NEAR(lab[0][3].r, cs.rGetLsasbs().r, 1e-3);
  EXPECT_NEAR(back[1][4].r, src[1][4].r, 1e-2);
  EXPECT_NEAR(back[1][4].b, src[1][4].b, 1e-2);
  // A scale doubles the light of an RGB source: L of Lxy doubles.
  TPlane<TRGBFloatPixel> twice;
  TImageColorSpace::vTransform(src, twice, TPixelColorSpace::CIE_RGB, TPixelColorSpace::LXY, 2.0);
  EXPECT_NEAR(twice[0][3].r, 2 * lxy[0][3].r, 1e-3 * lxy[0][3].r);
  EXPECT_NEAR(twice[0][3].g, lxy[0][3].g, 1e-6);
  EXPECT_TRUE(TImageColorSpace::bProof_CIE_RGB_Image(src));
  auto bad = src;
  bad[0][3] = pix(-100, 100, 0);  // X below 0 with Y above
  EXPECT_FALSE(TImageColorSpace::bProof_CIE_RGB_Image(bad));
  EXPECT_EQ(codeOf([] {
              TPlane<TRGBFloatPixel> a(2, 2), b;
              TImageColorSpace::vTransform(a, b, TPixelColorSpace::LSASBS, TPixelColorSpace::CIE_RGB);
            }),
            0xe072108eUL);
  EXPECT_EQ(codeOf([] {
              TPlane<TRGBFloatPixel> a(2, 2), b;
              TImageColorSpace::vTransform(a, b, 0x3, TPixelColorSpace::CIE_RGB);
            }),
            0xe0721084UL);
}

TEST(ColorDiff, TableFormulasAndMinimum) {
  EXPECT_STREQ(TPixelColorDiff::rGetCOLDIF_INFO(TPixelColorDiff::eLu_v_AB).name, "dE(Lu'v',A,B)");
  EXPECT_EQ(TPixelColorDiff::rGetCOLDIF_INFO("dE(L*a*b*,A,B,C)").paramCount, 3);
  EXPECT_EQ(codeOf([] { TPixelColorDiff::rGetCOLDIF_INFO(TPixelColorDiff::eEnd); }), 0xe0721094UL);
  EXPECT_EQ(codeOf([] { TPixelColorDiff::rGetCOLDIF_INFO("nothing"); }), 0xe0721094UL);
  const TRGBFloatPixel white = pix(255, 255, 255), a = pix(100, 60, 20), b = pix(90, 70, 25);
  // Each difference against the colours of the pixel colour space.
  TPixelColorSpace ca, cb;
  ca.vSetReference(white, 1);
  cb.vSetReference(white, 1);
  for (auto d : {TPixelColorDiff::eLuvStar, TPixelColorDiff::eLabStar, TPixelColorDiff::eLabStarABC,
                 TPixelColorDiff::eLu_v_AB, TPixelColorDiff::eL2Lxy, TPixelColorDiff::eLooLxy,
                 TPixelColorDiff::eCIE_RGB}) {
    TPixelColorDiff diff;
    diff.vSetColorSpace(1, d);
    diff.vSetReferenzColor(white, white, 1);
    diff.vSetParam(2, 3, 4);
    const unsigned space = TPixelColorDiff::rGetCOLDIF_INFO(d).space;
    ca.vSetFlag(1, space);
    cb.vSetFlag(1, space);
    ca.vSetCIE_RGB(a);
    cb.vSetCIE_RGB(b);
    const TRGBFloatPixel p = ca.rGetColor(space), q = cb.rGetColor(space);
    const double d0 = p.r - q.r, d1 = p.g - q.g, d2 = p.b - q.b;
    double want = std::sqrt(d0 * d0 + d1 * d1 + d2 * d2);
    if (d == TPixelColorDiff::eLabStarABC) want = std::sqrt(2 * d0 * d0 + 3 * d1 * d1 + 4 * d2 * d2);
    if (d == TPixelColorDiff::eLu_v_AB) want = std::sqrt(2 * (d1 * d1 + d2 * d2) + 3 * std::pow(d0 / q.r, 2));
    if (d == TPixelColorDiff::eL2Lxy) want = std::hypot(d1, d2);
    if (d == TPixelColorDiff::eLooLxy) want = std::fmax(std::fabs(d1), std::fabs(d2));
    EXPECT_NEAR(diff.fGetColorDiff2(a, b), want, 1e-4 * (1 + want)) << d;
  }
  // A dark first colour, and a second colour of L = 0 in Lu'v', give 0.
  TPixelColorDiff diff;
  diff.vSetColorSpace(1, TPixelColorDiff::eLu_v_AB);
  diff.vSetSecondColor(pix(0, 0, 0));
  EXPECT_EQ(diff.fGetColorDiff1(a), 0.0f);
  diff.vSetSecondColor(b);
  diff.vSetMinimumLuminance(1e6);
  EXPECT_EQ(diff.fGetColorDiff1(a), 0.0f);
}

TEST(ColorDiff, PictureAgainstAColourAndAPicture) {
  const auto p1 = randomPicture(4, 5);
  auto p2 = p1;
  p2[0][4] = pix(10, 10, 10);
  TPlane<float> r;
  TImageColorDiff::vCalculate(p1, p2, pix(255, 255, 255), 0, 1, 1, 1, TPixelColorDiff::eCIE_RGB, r);
  EXPECT_EQ(r.rStrGetUnitPic(0), "dE(CIE_RGB)");
  EXPECT_EQ(r[-2][3], 0.0f);
  const TRGBFloatPixel o = p1[0][4];
  EXPECT_NEAR(r[0][4], std::sqrt(std::pow(o.r - 10, 2) + std::pow(o.g - 10, 2) + std::pow(o.b - 10, 2)), 1e-3);
  TImageColorDiff::vCalculate(p1, pix(255, 255, 255), p1[1][5], 0, 1, 1, 1, TPixelColorDiff::eLabStar, r);
  EXPECT_EQ(r[1][5], 0.0f);
  EXPECT_GT(r[1][6], 0.0f);
  EXPECT_EQ(codeOf([] {
              TPlane<TRGBFloatPixel> a(2, 2), b(2, 3);
              TPlane<float> out;
              TImageColorDiff::vCalculate(a, b, pix(1, 1, 1), 0, 1, 1, 1, TPixelColorDiff::eLabStar, out);
            }),
            0xe0721095UL);
}

TEST(VectorTriples, ConversionsAndRotation) {
  const kx::Txyz v(1, 2, 2);
  const kx::Trtp s(v);
  EXPECT_DOUBLE_EQ(s.r, 3.0);
  EXPECT_NEAR(s.t, std::acos(2.0 / 3), 1e-15);
  EXPECT_NEAR(s.p, std::atan2(2.0, 1.0), 1e-15);
  const kx::Txyz back(s);
  EXPECT_NEAR(back.x, 1, 1e-12);
  EXPECT_NEAR(back.z, 2, 1e-12);
  kx::Txyz w(0, 0, 5);
  w.rotate(M_PI / 2, 0);  // from the z axis down to the x axis
  EXPECT_NEAR(w.x, 5, 1e-12);
  EXPECT_NEAR(w.z, 0, 1e-12);
  kx::Trtp a(1, M_PI / 2, 0), b(1, M_PI / 2, M_PI / 2);
  a += b;  // (1, 0, 0) + (0, 1, 0)
  EXPECT_NEAR(a.r, std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(a.p, M_PI / 4, 1e-12);
  EXPECT_EQ(kx::Txyz(0, 0, 0).string(), "(0, 0, 0)");
  EXPECT_EQ(kx::Trtp(kx::Txyz(0, 0, 0)).t, 0.0);
}

TEST(NormalLaw, AgainstPythonsNormalDist) {
  const Tlnormal n(10, 2);
  FILE* p = ::popen("/usr/bin/python3 -c \"from statistics import NormalDist as N; n=N(10,2); "
                    "print(n.pdf(11.5), n.cdf(7), n.inv_cdf(0.975), n.inv_cdf(1e-9))\"",
                    "r");
  ASSERT_NE(p, nullptr);
  double pdf, cdf, q975, qTail;
  ASSERT_EQ(std::fscanf(p, "%lf %lf %lf %lf", &pdf, &cdf, &q975, &qTail), 4);
  ::pclose(p);
  EXPECT_NEAR(n.density(11.5), pdf, 1e-15);
  EXPECT_NEAR(n.distribution(7), cdf, 1e-15);
  EXPECT_NEAR(n.quantile(0.975), q975, 1e-12);
  EXPECT_NEAR(n.quantile(1e-9), qTail, 1e-9);
  EXPECT_TRUE(std::isnan(n.quantile(1.0)));
}
