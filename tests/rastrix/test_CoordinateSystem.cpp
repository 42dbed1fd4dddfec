// The coordinate-system classes: mappings, measures, setters, vCalculate,
// comparison, copying and the fixed axes of the 3-D classes.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "CoordinateSystemTestUtil.h"
#include "RastrixTestUtil.h"
#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TCoordinateSystemKugel.h"
#include "rastrix/TCoordinateSystemLvk.h"
#include "rastrix/TCoordinateSystemProjektionswand.h"
#include "rastrix/TLinearCoordinateSystem.h"
#include "rastrix/TSizeShiftCoordinateSystem.h"

using namespace Rastrix;
using rastrixtest::codeOf;

namespace {

void setScale(TSizeShiftCoordinateSystem& cs, double a11, double a13, double a22, double a23) {
  cs.vSetdA11(a11);
  cs.vSetdA13(a13);
  cs.vSetdA22(a22);
  cs.vSetdA23(a23);
}

}  // namespace

TEST(CoordinateSystem, SizeShiftMapsBothWays) {
  TSizeShiftCoordinateSystem cs;
  cs.vSetdA11(0.5);
  cs.vSetdA13(10);
  cs.vSetdA22(-1);
  cs.vSetdA23(100);
  double x = 0, y = 0;
  cs.vGetWorldXY(&x, &y, 4, 10);
  EXPECT_EQ(x, 12.0);
  EXPECT_EQ(y, 90.0);
  int c = 0, l = 0;
  cs.vGetOrgXY(&c, &l, 12, 90);
  EXPECT_TRUE(c == 4 && l == 10);
  // Truncation toward zero, not flooring; the double form keeps the fraction.
  cs.vGetOrgXY(&c, &l, 9.2, 100.5);
  EXPECT_TRUE(c == -1 && l == 0);  // -1.6, -0.5
  double cd = 0, ld = 0;
  cs.vGetOrgXY2(&cd, &ld, 9.2, 100.5);
  EXPECT_NEAR(cd, -1.6, 1e-12);
  EXPECT_DOUBLE_EQ(ld, -0.5);
  cs.vGetWorldXY2(&x, &y, 0.5, 0.25);
  EXPECT_DOUBLE_EQ(x, 10.25);
  EXPECT_DOUBLE_EQ(y, 99.75);
  // Null pointers are skipped in the mappings.
  cs.vGetWorldXY(nullptr, &y, 0, 3);
  EXPECT_EQ(y, 97.0);
  cs.vGetOrgXY(&c, nullptr, 10, 0);
  EXPECT_EQ(c, 0);
  // The pixel's area carries the scale (and its sign: Y runs upward here).
  cs.vSetChangeable(true);
  cs.setFactorA(2.0);
  EXPECT_EQ(cs.dGetFactorAUnit(), 2.0);
  EXPECT_EQ(cs.dGetFactorA(), -1.0);
  double a = 0;
  cs.vGetWorldA(&a, 3, 3);
  EXPECT_EQ(a, -1.0);
  // A zero scale gives no crash, only a useless answer.
  TSizeShiftCoordinateSystem flat;
  setScale(flat, 0, 0, 0, 0);
  flat.vGetOrgXY(&c, &l, 1, 1);
  EXPECT_TRUE(c == 0 && l == 0);
}

TEST(CoordinateSystem, LinearMapsWithTheMatrixAndHasNoWayBack) {
  TLinearCoordinateSystem cs;
  cs.vSetdA11(2);
  cs.vSetdA12(0.5);
  cs.vSetdA13(1);
  cs.vSetdA21(-1);
  cs.vSetdA22(3);
  cs.vSetdA23(-4);
  cs.vSetdA31(100);  // stored, no part in the mapping
  cs.vSetdA32(200);
  double x = 0, y = 0;
  cs.vGetWorldXY(&x, &y, 3, 4);
  EXPECT_EQ(x, 9.0);
  EXPECT_EQ(y, 5.0);
  cs.vGetWorldXY2(&x, &y, 0.5, -1);
  EXPECT_DOUBLE_EQ(x, 1.5);
  EXPECT_DOUBLE_EQ(y, -7.5);
  int c = 0, l = 0;
  EXPECT_EQ(codeOf([&] { cs.vGetOrgXY(&c, &l, 1, 1); }), Err::ulCoordinateSystemNoWayBack);
  double cd = 0, ld = 0;
  EXPECT_EQ(codeOf([&] { cs.vGetOrgXY2(&cd, &ld, 1, 1); }), Err::ulCoordinateSystemNoWayBack);
}

TEST(CoordinateSystem, MeasuresOfLinesAndCircles) {
  const TCoordinateSystem identity;
  EXPECT_DOUBLE_EQ(identity.dGetLineLength(0, 0, 3, 4), 5.0);
  EXPECT_EQ(identity.dGetLineLength(7, -2, 7, -2), 0.0);
  // The trapezoid under the line, with its sign: reversed, it changes sign.
  EXPECT_DOUBLE_EQ(identity.dGetLineArea(0, 2, 4, 6), 4 * (2 + 6) * 0.5);
  EXPECT_DOUBLE_EQ(identity.dGetLineArea(4, 6, 0, 2), -16.0);
  EXPECT_DOUBLE_EQ(identity.dGetCircleLength(0, 0, 3, 4), 10 * std::numbers::pi);
  EXPECT_DOUBLE_EQ(identity.dGetCircleArea(0, 0, 3, 4), 25 * std::numbers::pi);

  // Summed along a closed contour the trapezoids give the enclosed area.
  const int c[] = {0, 10, 10, 0, 0}, l[] = {0, 0, 5, 5, 0};
  double sum = 0;
  for (int i = 0; i < 4; ++i) sum += identity.dGetLineArea(c[i], l[i], c[i + 1], l[i + 1]);
  EXPECT_DOUBLE_EQ(std::fabs(sum), 50.0);

  // In world units, with the unit factor (the scale is in the coordinates).
  TSizeShiftCoordinateSystem mm;
  setScale(mm, 0.5, 100, 0.25, -7);
  mm.vSetChangeable(true);
  mm.setFactorA(1e-6);  // mm² to m²
  EXPECT_DOUBLE_EQ(mm.dGetLineLength(0, 0, 6, 16), 5.0);
  sum = 0;
  for (int i = 0; i < 4; ++i) sum += mm.dGetLineArea(c[i], l[i], c[i + 1], l[i + 1]);
  EXPECT_NEAR(std::fabs(sum), 50 * 0.5 * 0.25 * 1e-6, 1e-18);
  EXPECT_NEAR(mm.dGetCircleArea(0, 0, 6, 16), 1e-6 * std::numbers::pi * 25, 1e-18);
}

TEST(CoordinateSystem, SettersOfTheSizeShiftClassChangeOnlyWhatDiffers) {
  TSizeShiftCoordinateSystem cs;
  EXPECT_FALSE(cs.bIsChanged());
  const TSignatur before = cs.rGetSignatur();
  cs.vSetdA11(1.0);  // the value it has
  cs.vSetdA23(0.0);
  EXPECT_FALSE(cs.bIsChanged());
  EXPECT_EQ(cs.rGetSignatur(), before);
  const Process::TTimeStamp t = cs.getTimeStamp();
  cs.vSetdA13(5.0);  // not changeable, and still stored: these ignore the flag
  EXPECT_EQ(cs.dGetA13(), 5.0);
  EXPECT_TRUE(cs.bIsChanged());
  EXPECT_NE(cs.rGetSignatur(), before);
  EXPECT_GT(cs.getTimeStamp(), t);
  // Unit X is repaired from UTF-8, unit Y is taken as given.
  cs.vSetChangeable(true);
  cs.setNameUnitX("Phi", "\xC2\xB0");
  cs.setNameUnitY("Theta", "\xC2\xB0");
  EXPECT_EQ(cs.rStrGetUnitX(), "\xB0");
  EXPECT_EQ(cs.rStrGetUnitY(), "\xC2\xB0");
  // Possibilities are 32 bits, as in the files.
  cs.vSetPossibilities(0x1'0000'0016UL);
  EXPECT_EQ(cs.ulGetPossibilities(), 0x16UL);
}

TEST(CoordinateSystem, CalculateFromARectangleOfPoints) {
  TSizeShiftCoordinateSystem cs;
  cs.vSetRect(true);
  cs.vSetLine(true);  // the rectangle wins
  // Columns 100 and 500 are 0 m and 2 m; lines 50 and 250 are 10 m and 0 m.
  cs.vSetPoint(0, 0.0, 10.0, 100, 50);
  cs.vSetPoint(1, 2.0, 10.0, 500, 50);
  cs.vSetPoint(2, 2.0, 0.0, 500, 250);
  TKxReportLastError(false);
  cs.vCalculate();
  EXPECT_EQ(TKxGetLastError(), 0);
  EXPECT_DOUBLE_EQ(cs.dGetA11(), 2.0 / 400);
  EXPECT_DOUBLE_EQ(cs.dGetA22(), -10.0 / 200);
  double x = 0, y = 0;
  for (int i = 0; i < 3; ++i) {
    const auto& p = cs.rGetPoint(i);
    cs.vGetWorldXY(&x, &y, p.iX, p.iY);
    EXPECT_NEAR(x, p.dX, 1e-12) << i;
    EXPECT_NEAR(y, p.dY, 1e-12) << i;
  }
  EXPECT_TRUE(cs.bIsChanged());

  // Neither flag: nothing happens.
  TSizeShiftCoordinateSystem idle;
  idle.vSetPoint(1, 5, 5, 9, 9);
  idle.vCalculate();
  EXPECT_EQ(idle.dGetA11(), 1.0);
  EXPECT_FALSE(idle.bIsChanged());
}

TEST(CoordinateSystem, CalculateFromALineScalesBothAxesYUpward) {
  TSizeShiftCoordinateSystem cs;
  cs.vSetLine(true);
  // 3-4-5: 50 pixels are 10 world units.
  cs.vSetPoint(0, 1.0, 2.0, 10, 20);
  cs.vSetPoint(1, 7.0, 10.0, 40, 60);
  TKxReportLastError(false);
  cs.vCalculate();
  EXPECT_EQ(TKxGetLastError(), 0);
  EXPECT_DOUBLE_EQ(cs.dGetA11(), 0.2);
  EXPECT_DOUBLE_EQ(cs.dGetA22(), -0.2);
  double x = 0, y = 0;
  cs.vGetWorldXY(&x, &y, 10, 20);
  EXPECT_NEAR(x, 1.0, 1e-12);
  EXPECT_NEAR(y, 2.0, 1e-12);
}

TEST(CoordinateSystem, CalculateReportsZeroDistancesAndGoesOn) {
  const struct {
    double x1, y2;
    int c1, l2;
  } cases[] = {{0.0, 5.0, 10, 10}, {3.0, 5.0, 0, 10}, {3.0, 0.0, 10, 10}, {3.0, 5.0, 10, 0}};
  for (const auto& k : cases) {
    TSizeShiftCoordinateSystem cs;
    cs.vSetRect(true);
    cs.vSetPoint(0, 0, 0, 0, 0);
    cs.vSetPoint(1, k.x1, 0, k.c1, 0);
    cs.vSetPoint(2, k.x1, k.y2, k.c1, k.l2);
    TKxReportLastError(false);
    cs.vCalculate();  // no throw
    EXPECT_EQ(TKxGetLastError(), static_cast<long>(Err::ulCoordinateSystemCalculate));
    EXPECT_FALSE(std::isfinite(cs.dGetA11()) && std::isfinite(cs.dGetA22()) && cs.dGetA11() != 0 &&
                 cs.dGetA22() != 0);
  }
  TSizeShiftCoordinateSystem line;
  line.vSetLine(true);  // both points at one pixel
  line.vSetPoint(1, 1, 1, 0, 0);
  TKxReportLastError(false);
  line.vCalculate();
  EXPECT_EQ(TKxGetLastError(), static_cast<long>(Err::ulCoordinateSystemCalculate));
  TKxReportLastError(false);
}

TEST(CoordinateSystem, PointIndexOutsideIsReportedAndWritesNothing) {
  TSizeShiftCoordinateSystem cs;
  for (int bad : {4, -1}) {
    TKxReportLastError(false);
    cs.vSetPoint(bad, 1, 2, 3, 4);
    EXPECT_EQ(TKxGetLastError(), static_cast<long>(Err::ulCoordinateSystemCalculate)) << bad;
  }
  TKxReportLastError(false);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(cs.rGetPoint(i), TSizeShiftCoordinateSystem::TPoint{}) << i;
  cs.vSetPoint(3, 1.5, 2.5, 3, 4);
  double x = 0, y = 0;
  int c = 0, l = 0;
  cs.vGetPoint(3, &x, &y, &c, &l);
  EXPECT_TRUE(x == 1.5 && y == 2.5 && c == 3 && l == 4);
  EXPECT_EQ(TKxGetLastError(), 0);
  cs.vGetPoint(9, &x, nullptr, nullptr, nullptr);
  EXPECT_EQ(TKxGetLastError(), static_cast<long>(Err::ulCoordinateSystemCalculate));
  EXPECT_EQ(x, 1.5);
  TKxReportLastError(false);
}

TEST(CoordinateSystem, EqualParamComparesParametersNotTheName) {
  auto sample = cstest::makeSample(eKSSizeShift, "A");
  const auto* a = static_cast<const TSizeShiftCoordinateSystem*>(sample.get());
  TSizeShiftCoordinateSystem b;
  b.vCopy(a);
  EXPECT_TRUE(a->bEqualParam(&b));
  b.vSetChangeable(true);
  b.setNameKS("B");  // a change: new signature
  EXPECT_FALSE(a->bEqualParam(&b));
  b.vSetSignatur(a->rGetSignatur().get());
  EXPECT_TRUE(a->bEqualParam(&b)) << "the name is not compared";
  EXPECT_FALSE(a->bEqualParam(nullptr));

  // Value Z within 0.0001 absolute, the pixel area within 0.0001 relative.
  auto withSig = [&](auto&& change) {
    TSizeShiftCoordinateSystem c;
    c.vCopy(a);
    change(c);
    c.vSetSignatur(a->rGetSignatur().get());
    return a->bEqualParam(&c);
  };
  EXPECT_TRUE(withSig([&](auto& c) { c.vSetValueZ(a->dGetValueZ() + 0.00009); }));
  EXPECT_FALSE(withSig([&](auto& c) { c.vSetValueZ(a->dGetValueZ() + 0.00011); }));
  EXPECT_TRUE(withSig([&](auto& c) { c.vSetdA11(a->dGetA11() * 1.0001); }));
  EXPECT_FALSE(withSig([&](auto& c) { c.vSetdA11(a->dGetA11() * 1.001); }));
  EXPECT_TRUE(withSig([&](auto& c) { c.vSetdA13(a->dGetA13() + 1000); })) << "offsets are not compared";
  EXPECT_FALSE(withSig([&](auto& c) { c.vSetUnitZ("km"); }));
  EXPECT_FALSE(withSig([&](auto& c) { c.vSetPossibilities(0); }));
  EXPECT_FALSE(withSig([&](auto& c) { c.vSetChangeable(false); }));

  // Factors of 0 on both sides are equal, not 0 / 0.
  TCoordinateSystem z1, z2;
  z1.vSetChangeable(true);
  z1.setFactorA(0);
  z2.vCopy(&z1);
  EXPECT_TRUE(z1.bEqualParam(&z2));

  // The linear class adds its four values within 1e-06, and wants its class.
  auto l1 = cstest::makeSample(eKSLinear, "L");
  TLinearCoordinateSystem l2;
  l2.vCopy(l1.get());
  EXPECT_TRUE(l1->bEqualParam(&l2));
  l2.vSetdA32(l2.dGetA32() + 5e-7);
  l2.vSetSignatur(l1->rGetSignatur().get());
  EXPECT_TRUE(l1->bEqualParam(&l2));
  l2.vSetdA31(l2.dGetA31() + 2e-6);
  l2.vSetSignatur(l1->rGetSignatur().get());
  EXPECT_FALSE(l1->bEqualParam(&l2));
  TSizeShiftCoordinateSystem notLinear;
  notLinear.vCopy(l1.get());
  EXPECT_FALSE(l1->bEqualParam(&notLinear));
}

TEST(CoordinateSystem, CopyTakesWhatTheClassHas) {
  auto linear = cstest::makeSample(eKSLinear, "Lin");
  const auto& lin = static_cast<const TLinearCoordinateSystem&>(*linear);
  TLinearCoordinateSystem all;
  all.vIncreaseUser();
  all.vCopy(static_cast<const TCoordinateSystem*>(linear.get()));
  EXPECT_EQ(all.sWrite2String(), linear->sWrite2String());
  EXPECT_EQ(all.iGetUser(), 1) << "users are not copied";
  all.vDecreaseUser();
  EXPECT_EQ(all.dGetA12(), lin.dGetA12());

  TSizeShiftCoordinateSystem part;
  part.vCopy(linear.get());
  EXPECT_EQ(part.eGetTypOfKS(), eKSSizeShift);
  EXPECT_EQ(part.dGetA11(), lin.dGetA11());
  EXPECT_EQ(part.rGetPoint(2), lin.rGetPoint(2));
  EXPECT_EQ(part.rStrGetNameKS(), "Lin");

  TCoordinateSystem base;
  base.vCopy(linear.get());
  EXPECT_EQ(base.rGetSignatur(), linear->rGetSignatur());
  EXPECT_EQ(base.rStrGetUnitA(), "mm\xB2");
  EXPECT_EQ(base.eGetTypOfKS(), eKSDefault);

  // From a base system the size-shift part stays.
  TLinearCoordinateSystem keep;
  keep.vSetdA12(3);
  keep.vCopy(&base);
  EXPECT_EQ(keep.dGetA12(), 3);
  EXPECT_EQ(keep.rStrGetNameKS(), "Lin");
}

TEST(CoordinateSystem, TheThreeDClassesHaveTheirOwnAxes) {
  auto axes = [](const TCoordinateSystem& c) {
    return c.rStrGetNameX() + "|" + c.rStrGetUnitX() + "|" + c.rStrGetNameY() + "|" + c.rStrGetUnitY() + "|" +
           c.rStrGetNameZ() + "|" + c.rStrGetUnitZ() + "|" + c.rStrGetUnitA() + "|" +
           std::to_string(c.ulGetPossibilities());
  };
  TCoordinateSystemProjektionswand wall;
  TCoordinateSystemKugel sphere;
  TCoordinateSystemLvk lvk;
  EXPECT_EQ(axes(wall), "X|m|Z|m|Y|m|m\xB2|6");
  EXPECT_EQ(wall.rStrGetUnitL(), "m");
  EXPECT_EQ(wall.dGetValueZ(), 0.0);
  EXPECT_EQ(axes(sphere), "Phi|\xB0|Theta|\xB0|R|m|m\xB2|22");
  EXPECT_EQ(lvk.rStrGetUnitZ() + lvk.rStrGetUnitL() + lvk.rStrGetUnitA(), "\xB0\xB0");
  EXPECT_EQ(lvk.dGetValueZ(), 1.0);
  EXPECT_EQ(lvk.dGetFactorA(), 1.0);
  EXPECT_EQ(lvk.ulGetPossibilities(), 0x16UL);
  EXPECT_FALSE(wall.bIsChanged() || sphere.bIsChanged() || lvk.bIsChanged()) << "a fresh system has nothing to save";
}

TEST(CoordinateSystem, InitOwnAfterReadingForcesTheAxesAndKeepsAnEqualSignature) {
  // Written by the class itself: read back unchanged, the signature kept.
  TCoordinateSystemKugel sphere;
  sphere.vSetdA11(0.1);
  TKxMemIniFile ini;
  sphere.vWriteIni(&ini, "S");
  TCoordinateSystemKugel back;
  back.vReadIni(&ini, "S");
  EXPECT_FALSE(back.bIsChanged());
  EXPECT_EQ(back.rGetSignatur(), sphere.rGetSignatur());
  EXPECT_TRUE(back.bEqualParam(&sphere));

  // Edited by hand: the axes come back, and that is a change.
  ini.vWriteString("S", "UnitX", "rad");
  ini.vWriteString("S", "ValueZ", "7");
  ini.vWriteString("S", "NameKS", "Kuppel");
  TCoordinateSystemKugel edited;
  edited.vReadIni(&ini, "S");
  EXPECT_EQ(edited.rStrGetUnitX(), "\xB0");
  EXPECT_EQ(edited.dGetValueZ(), 7.0) << "value Z is not forced for the sphere";
  EXPECT_EQ(edited.rStrGetNameKS(), "Kuppel");
  EXPECT_TRUE(edited.bIsChanged());
  EXPECT_NE(edited.rGetSignatur(), sphere.rGetSignatur());

  TCoordinateSystemLvk lvk;
  lvk.vReadIni(&ini, "S");
  EXPECT_EQ(lvk.dGetValueZ(), 1.0) << "the Lvk forces value Z";
  EXPECT_EQ(lvk.rStrGetUnitZ(), "\xB0");
}

TEST(CoordinateSystem, CreateMakesTheClassOfTheNumber) {
  for (int t = 0; t <= 5; ++t) {
    std::unique_ptr<TCoordinateSystem> cs(TCoordinateSystemVector::pCreate(t));
    EXPECT_EQ(cs->eGetTypOfKS(), t);
  }
  std::unique_ptr<TCoordinateSystem> other(TCoordinateSystemVector::pCreate(17));
  EXPECT_EQ(other->eGetTypOfKS(), eKSDefault);
  TLanguage::setEnglisch();
  EXPECT_STREQ(TCoordinateSystemKugel().cpGetTypName(), "Sphere coordinate system");
  TLanguage::setDeutsch();
  EXPECT_STREQ(TCoordinateSystemKugel().cpGetTypName(), "Kugelkoordinatensystem");
}
