// The colour spaces of a pixel against independent references: Debian's
// colorspacious and colormath, Python's colorsys, Planck radiators computed
// here from the CIE table; and the deliberate constants on their own.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "kxexception/KxError.h"
#include "rastrix/CieTables.h"
#include "rastrix/TPixelColorSpace.h"

using Rastrix::TPixelColorSpace;
using Rastrix::TRGBFloatPixel;

namespace {

TRGBFloatPixel pix(double a, double b, double c) {
  TRGBFloatPixel p;
  p.set(static_cast<float>(a), static_cast<float>(b), static_cast<float>(c));
  return p;
}

// Runs a Python script with Debian's interpreter and reads back its numbers.
std::vector<double> python(const std::string& script) {
  // One file per test process and call: ctest runs tests side by side.
  static int serial = 0;
  const std::string file =
      ::testing::TempDir() + "kx_colour_" + std::to_string(::getpid()) + "_" + std::to_string(serial++) + ".py";
  std::ofstream(file) << script;
  FILE* p = ::popen(("/usr/bin/python3 " + file).c_str(), "r");
  std::vector<double> out;
  double v;
  while (p && std::fscanf(p, "%lf", &v) == 1) out.push_back(v);
  if (p) ::pclose(p);
  std::remove(file.c_str());
  return out;
}

std::vector<std::array<double, 3>> someColours() {
  std::mt19937 rng(9);
  std::uniform_real_distribution<double> d(0.02, 1.0);
  std::vector<std::array<double, 3>> c;
  for (int i = 0; i < 40; ++i) c.push_back({d(rng), d(rng), d(rng)});
  return c;
}

}  // namespace

TEST(ColourSpaces, AgainstColorspacious) {
  const auto colours = someColours();
  std::ostringstream script;
  script.precision(17);
  script << "import colorspacious as cs\nwhite=[95.047,100.0,108.883]\n";
  for (const auto& c : colours) {
    script << "rgb=[" << c[0] << "," << c[1] << "," << c[2] << "]\n"
           << "xyz=[" << 100 * c[0] << "," << 100 * c[1] << "," << 100 * c[2] << "]\n"
           << "print(*cs.cspace_convert(rgb,'sRGB1-linear','XYZ100'), *cs.cspace_convert(xyz,'XYZ100','xyY100'),"
           << "*cs.cspace_convert(xyz,'XYZ100',{'name':'CIELab','XYZ100_w':white}),"
           << "*cs.cspace_convert(xyz,'XYZ100',{'name':'CIELCh','XYZ100_w':white}))\n";
  }
  const auto ref = python(script.str());
  ASSERT_EQ(ref.size(), colours.size() * 12) << "python3-colorspacious";
  TPixelColorSpace srgb, lab, lxy;
  srgb.vSetFlag(TPixelColorSpace::S_RGB, TPixelColorSpace::XYZ);
  lab.vSetReference(pix(95.047, 100.0, 108.883), TPixelColorSpace::XYZ);
  lab.vSetFlag(TPixelColorSpace::XYZ, TPixelColorSpace::CSHS_AB);
  lxy.vSetFlag(TPixelColorSpace::XYZ, TPixelColorSpace::LXY);
  for (std::size_t i = 0; i < colours.size(); ++i) {
    const auto& c = colours[i];
    const double* r = &ref[i * 12];
    // sRGB to XYZ: the system's matrix has four digits, colorspacious the
    // standard's seven: they agree to 2e-4 of the value.
    srgb.vSetS_RGB(pix(100 * c[0], 100 * c[1], 100 * c[2]));
    EXPECT_NEAR(srgb.rGetXYZ().r, r[0], 2e-4 * r[0]);
    EXPECT_NEAR(srgb.rGetXYZ().g, r[1], 2e-4 * r[1]);
    EXPECT_NEAR(srgb.rGetXYZ().b, r[2], 2e-4 * r[2]);
    lab.vSetXYZ(pix(100 * c[0], 100 * c[1], 100 * c[2]));
    lxy.vSetXYZ(pix(100 * c[0], 100 * c[1], 100 * c[2]));
    EXPECT_NEAR(lxy.rGetLxy().g, r[3], 1e-6);
    EXPECT_NEAR(lxy.rGetLxy().b, r[4], 1e-6);
    EXPECT_NEAR(lxy.rGetLxy().r, r[5], 1e-4);
    EXPECT_NEAR(lab.rGetLsasbs().r, r[6], 1e-4);
    EXPECT_NEAR(lab.rGetLsasbs().g, r[7], 1e-4);
    EXPECT_NEAR(lab.rGetLsasbs().b, r[8], 1e-4);
    EXPECT_NEAR(lab.rGetCshs_ab().r, r[10], 1e-4);  // C*
    EXPECT_NEAR(lab.rGetCshs_ab().g, r[11], 1e-4);  // h* in degrees
  }
}

TEST(ColourSpaces, LuvAgainstColormathAndHsvAgainstColorsys) {
  const auto colours = someColours();
  std::ostringstream script;
  script.precision(17);
  script << "import colorsys\nfrom colormath.color_objects import XYZColor, LuvColor\n"
            "from colormath.color_conversions import convert_color\n";
  for (const auto& c : colours) {
    script << "x=XYZColor(" << c[0] << "," << c[1] << "," << c[2] << ",illuminant='d65')\n"
           << "l=convert_color(x,LuvColor)\n"
           << "h=colorsys.rgb_to_hsv(" << c[0] << "," << c[1] << "," << c[2] << ")\n"
           << "print(l.luv_l,l.luv_u,l.luv_v,h[0]*360,h[1],h[2])\n";
  }
  const auto ref = python(script.str());
  ASSERT_EQ(ref.size(), colours.size() * 6) << "python3-colormath";
  TPixelColorSpace luv, hsv;
  luv.vSetReference(pix(0.95047, 1.0, 1.08883), TPixelColorSpace::XYZ);
  luv.vSetFlag(TPixelColorSpace::XYZ, TPixelColorSpace::LSUSVS);
  hsv.vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::HSV);
  for (std::size_t i = 0; i < colours.size(); ++i) {
    const auto& c = colours[i];
    const double* r = &ref[i * 6];
    luv.vSetXYZ(pix(c[0], c[1], c[2]));
    EXPECT_NEAR(luv.rGetLsusvs().r, r[0], 1e-3);
    EXPECT_NEAR(luv.rGetLsusvs().g, r[1], 2e-3);
    EXPECT_NEAR(luv.rGetLsusvs().b, r[2], 2e-3);
    hsv.vSetCIE_RGB(pix(c[0], c[1], c[2]));
    EXPECT_NEAR(hsv.rGetHSV().r, r[3], 1e-3);
    EXPECT_NEAR(hsv.rGetHSV().g, r[4], 1e-5);
    EXPECT_NEAR(hsv.rGetHSV().b, r[5], 1e-6);
  }
}

TEST(ColourSpaces, RoundTripsThroughEverySourceSpace) {
  for (unsigned flag : {0x2u, 0x4u, 0x8u, 0x10u, 0x20u, 0x40u, 0x80u, 0x1000u, 0x2000u, 0x8000u}) {
    for (const auto& c : someColours()) {
      TPixelColorSpace a, b;
      a.vSetFlag(TPixelColorSpace::CIE_RGB, flag);
      a.vSetCIE_RGB(pix(100 * c[0], 100 * c[1], 100 * c[2]));
      b.vSetFlag(flag, TPixelColorSpace::CIE_RGB);
      b.vSetColor(a.rGetColor(flag), flag);
      EXPECT_NEAR(b.rGetCIE_RGB().r, 100 * c[0], 1e-2) << flag;
      EXPECT_NEAR(b.rGetCIE_RGB().g, 100 * c[1], 1e-2) << flag;
      EXPECT_NEAR(b.rGetCIE_RGB().b, 100 * c[2], 1e-2) << flag;
    }
  }
  EXPECT_FALSE(TPixelColorSpace::bProofHSV(pix(360, 0.5, 1)));
  EXPECT_TRUE(TPixelColorSpace::bProofHSV(pix(359.9, 1, 0)));
  EXPECT_TRUE(TPixelColorSpace::bProofXYZ(pix(-1, -1, -1)));  // wholly negative passes
  EXPECT_FALSE(TPixelColorSpace::bProofXYZ(pix(-1, 1, 1)));
}

TEST(ColourSpaces, LabKneesAndBlack) {
  TPixelColorSpace cs;
  cs.vSetReference(pix(100, 100, 100), TPixelColorSpace::XYZ);
  cs.vSetFlag(TPixelColorSpace::XYZ, TPixelColorSpace::LSASBS);
  // Y exactly at the knee: the linear branch, L* = 903.3 * 0.008856.
  cs.vSetXYZ(pix(50, 0.8856, 50));
  EXPECT_NEAR(cs.rGetLsasbs().r, 903.3 * 0.008856, 1e-4);
  // X and Z turn at 0.00856, Y at 0.008856: between the two, Y is still
  // linear while X and Z take the cube root.
  cs.vSetXYZ(pix(0.87, 0.87, 0.87));
  const double fy = 7.787 * 0.0087 + 16.0 / 116;
  EXPECT_NEAR(cs.rGetLsasbs().r, 903.3 * 0.0087, 1e-4);
  EXPECT_NEAR(cs.rGetLsasbs().g, 500 * (std::cbrt(0.0087) - fy), 1e-3);
  cs.vSetXYZ(pix(0.85, 50, 0.85));  // below 0.00856: linear
  EXPECT_NEAR(cs.rGetLsasbs().g, 500 * (7.787 * 0.0085 + 16.0 / 116 - std::cbrt(0.5)), 1e-3);
  // Black: Y = 0, so x = y = 0 and L*, a*, b* are 0.
  cs.vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LSASBS);
  cs.vSetCIE_RGB(pix(0, 0, 0));
  EXPECT_EQ(cs.rGetLsasbs(), pix(0, 0, 0));
  EXPECT_EQ(cs.rGetLxy(), pix(0, 0, 0));
}

namespace {
// The chromaticity of a Planck radiator at T kelvin from the CIE table.
std::pair<double, double> planck(double T) {
  double X = 0, Y = 0, Z = 0;
  for (const auto& r : Rastrix::cie::aCmf1931) {
    const double l = r.nm * 1e-9;
    const double m = 1.0 / (std::pow(l, 5) * (std::exp(1.4388e-2 / (l * T)) - 1.0));
    X += m * r.x;
    Y += m * r.y;
    Z += m * r.z;
  }
  return {X / (X + Y + Z), Y / (X + Y + Z)};
}
}  // namespace

TEST(ColourSpaces, RobertsonGivesBackPlanckTemperatures) {
  // Within 2 K up to 8000 K; from there the interpolation between the
  // isotemperature lines (25 mired apart) costs up to 3.1 K at 9000 K.
  for (double T = 2000; T <= 10000; T += 100) {
    const auto [x, y] = planck(T);
    EXPECT_NEAR(TPixelColorSpace::dRobertson(x, y, 1 - x - y), T, T <= 8000 ? 2.0 : 3.2) << T;
  }
  EXPECT_EQ(TPixelColorSpace::dRobertson(0, 0, 0), 0.0);
}

TEST(ColourSpaces, DominantWavelengthSaturationAndTemperature) {
  TPixelColorSpace cs;
  const auto [xn, yn] = planck(6500);
  cs.vSetReference(pix(100 * xn / yn, 100, 100 * (1 - xn - yn) / yn), TPixelColorSpace::XYZ);
  cs.vSetFlag(TPixelColorSpace::LXY, TPixelColorSpace::WST);
  // The reference itself: 360, 0 and no temperature.
  cs.vSetLxy(pix(50, xn, yn));
  EXPECT_EQ(cs.rGetWST(), pix(360, 0, 0));
  // A point of the spectrum locus: its wavelength.
  auto locus = [&](int k) {
    const auto& r = Rastrix::cie::aCmf1931[k];
    const double s = r.x + r.y + r.z;
    return std::make_pair(r.x / s, r.y / s);
  };
  auto dist = [&](int k) { return std::hypot(locus(k).first - xn, locus(k).second - yn); };
  for (int k : {10, 30, 40, 50, 60}) {
    cs.vSetLxy(pix(50, locus(k).first, locus(k).second));
    EXPECT_NEAR(cs.rGetWST().r, 360 + 5 * k, 0.05) << k;
  }
  // Halfway from white toward the middle of two locus points: the wavelength
  // between them, the saturation against the mean of their distances (where
  // the two weights are equal, their reversal does not show).
  for (int k : {20, 40, 48}) {
    const double mx = (locus(k).first + locus(k + 1).first) / 2, my = (locus(k).second + locus(k + 1).second) / 2;
    cs.vSetLxy(pix(50, (xn + mx) / 2, (yn + my) / 2));
    EXPECT_NEAR(cs.rGetWST().r, 362.5 + 5 * k, 0.3) << k;
    EXPECT_NEAR(cs.rGetWST().g, 100 * std::hypot(mx - xn, my - yn) / 2 / ((dist(k) + dist(k + 1)) / 2), 0.5) << k;
  }
  // A purple (between the ends of the locus): negative Lambda.
  cs.vSetLxy(pix(50, 0.45, 0.15));
  EXPECT_LT(cs.rGetWST().r, 0);
  EXPECT_LT(cs.rGetWST().g, 0);
  // A Planck colour has its temperature.
  const auto [x3, y3] = planck(3000.0);
  cs.vSetLxy(pix(50, x3, y3));
  EXPECT_NEAR(cs.rGetWST().b, 3000, 3);
  cs.vSetFlag(TPixelColorSpace::LXY, TPixelColorSpace::LWS);
  cs.vSetLxy(pix(50, x3, y3));
  EXPECT_EQ(cs.rGetLWS().r, 50.0f);
}

TEST(ColourSpaces, CieTableMatchesItsDataFile) {
  std::ifstream in(KX_CIE_CSV);
  std::string line;
  std::getline(in, line);
  int row = 0;
  while (std::getline(in, line)) {
    int nm;
    double x, y, z;
    ASSERT_EQ(std::sscanf(line.c_str(), "%d,%lf,%lf,%lf", &nm, &x, &y, &z), 4);
    ASSERT_LT(row, Rastrix::cie::iCmfRows);
    const auto& r = Rastrix::cie::aCmf1931[row++];
    EXPECT_EQ(r.nm, nm);
    EXPECT_EQ(r.x, x);
    EXPECT_EQ(r.y, y);
    EXPECT_EQ(r.z, z);
  }
  EXPECT_EQ(row, Rastrix::cie::iCmfRows);
}

TEST(ColourSpaces, StateStringFuzz) {
  std::mt19937 rng(5);
  const std::string alphabet = "0123456789,.e+-\r\n \xff";
  TPixelColorSpace cs;
  cs.vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LXY);
  for (int i = 0; i < 3000; ++i) {
    std::string s = i % 3 ? "1," : "";
    const int n = static_cast<int>(rng() % 60);
    for (int k = 0; k < n; ++k) s += alphabet[rng() % alphabet.size()];
    try {
      cs.vReadFromString(s.c_str());
    } catch (unsigned long) {
      kx::deleteError();
    }
  }
  SUCCEED();
}
