// The classes a plane refers to, in their starting versions: coordinate
// system, pixel colour space, pixel classifier; and the lock.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <ctime>
#include <set>
#include <string>
#include <thread>
#include <tuple>

#include "RastrixTestUtil.h"
#include "kxexception/TLanguage.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPixelColorSpace.h"
#include "rastrix/TPixelKlassifikator.h"
#include "rastrix/TPlane.h"

using namespace Rastrix;
using rastrixtest::codeOf;
using rastrixtest::errorOf;
using rastrixtest::rgbf;

namespace {

TEST(CoordinateSystem, DefaultIsTheIdentity) {
  TCoordinateSystem* def = pGetDefaultCoordinateSystem();
  EXPECT_EQ(def->rStrGetNameKS(), "Default");
  EXPECT_EQ(def->rStrGetUnitA(), "Pixel\xB2");
  double x = 0, y = 0, a = 0;
  def->vGetWorldXY(&x, &y, 5, 7);
  EXPECT_TRUE(x == 5 && y == 7);
  def->vGetWorldXY(nullptr, &y, 1, 2);
  EXPECT_EQ(y, 2);
  int c = 0, l = 0;
  def->vGetOrgXY(&c, &l, 5.9, 7.9);
  EXPECT_TRUE(c == 5 && l == 7);
  def->vGetOrgXY(&c, nullptr, -0.5, 1);
  EXPECT_EQ(c, 0);
  def->vGetWorldA(&a, 3, 3);
  EXPECT_EQ(a, 1.0);
}

TEST(CoordinateSystem, SettersNeedTheChangeableFlagExceptZ) {
  TCoordinateSystem cs;
  const TSignatur sig = cs.rGetSignatur();
  cs.setNameKS("Hall");
  cs.setFactorA(2.0);
  EXPECT_EQ(cs.rStrGetNameKS(), "Default");
  EXPECT_EQ(cs.dGetFactorA(), 1.0);
  EXPECT_FALSE(cs.bIsChanged());
  cs.vSetNameZ("Z");
  EXPECT_EQ(cs.rStrGetNameZ(), "Z");
  EXPECT_TRUE(cs.bIsChanged());
  EXPECT_NE(cs.rGetSignatur(), sig);
  cs.vSetChanged(false);
  cs.vSetChangeable(true);
  const Process::TTimeStamp t = cs.getTimeStamp();
  cs.setNameKS("Hall");
  cs.setNameUnitY("Theta", "\xB0");
  cs.setFactorA(2.0);
  EXPECT_EQ(cs.rStrGetNameKS(), "Hall");
  EXPECT_EQ(cs.rStrGetUnitY(), "\xB0");
  EXPECT_EQ(cs.dGetFactorA(), 2.0);
  EXPECT_TRUE(cs.bIsChanged());
  EXPECT_GT(cs.getTimeStamp(), t);
  cs.vIncreaseUser();
  EXPECT_TRUE(cs.bIsUser());
  cs.vDecreaseUser();
  EXPECT_FALSE(cs.bIsUser());
}

TEST(PixelColorSpace, NamesUnitsAndErrors) {
  EXPECT_STREQ(TPixelColorSpace::cpGetColorSpaceName(0x80), "Lu'v'");
  EXPECT_STREQ(TPixelColorSpace::cpGetIndexName(0x10, 0), "X");
  EXPECT_STREQ(TPixelColorSpace::cpGetIndexUnit(0x20, 0), "cd/m\xB2");
  EXPECT_EQ(TPixelColorSpace::uGetIndexNumber(0x4000), 3u);
  EXPECT_EQ(errorOf([] { TPixelColorSpace::cpGetIndexName(0x10, 3); }), std::make_pair(Err::ulColorSpaceIndex, std::string("Index=3")));
  EXPECT_EQ(codeOf([] { TPixelColorSpace::cpGetIndexUnit(0x3, 0); }), Err::ulColorSpaceIndex);
  EXPECT_EQ(codeOf([] { TPixelColorSpace::cpGetColorSpaceName(0x20000); }), Err::ulColorSpaceIndex);
  EXPECT_TRUE(TPixelColorSpace::bCanSetColorSpace(0x2000));
  EXPECT_FALSE(TPixelColorSpace::bCanSetColorSpace(0x100));
  EXPECT_TRUE(TPixelColorSpace::bNeedReferenzColor(0x10000));
  EXPECT_FALSE(TPixelColorSpace::bNeedReferenzColor(0x20));
  TPixelColorSpace cs;
  const std::tuple<unsigned, unsigned, unsigned long> refused[] = {
      {0x100, 0x1, Err::ulColorSpaceNoWayBack}, {0x4000, 0x1, Err::ulColorSpaceNoWayBack}, {0x1, 0x6, Err::ulColorSpaceIndex}};
  for (const auto& [from, to, code] : refused) EXPECT_EQ(codeOf([&] { cs.vSetFlag(from, to); }), code) << from << ">" << to;
  EXPECT_EQ(cs.uGetToFlag(), 1u);  // a refused choice changes nothing
}

TEST(PixelColorSpace, DefaultStateAndConversions) {
  TPixelColorSpace cs;
  EXPECT_TRUE(cs.bIsReferenceSet());
  EXPECT_EQ(cs.rGetRefInCIE_RGB(), rgbf(255, 255, 255));
  EXPECT_NEAR(cs.rGetRefInXYZ().g, 1440.954, 1e-3);  // Y of the white is the unnormalised luminance
  // White in CIE RGB has X = Y = Z up to the rounding of the matrix: x, y near 1/3.
  EXPECT_NEAR(cs.rGetRefInLxy().g, 1.0 / 3, 1e-3);
  cs.vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LXY);
  EXPECT_EQ(cs.uGetWorkFlags(), 0x1u | 0x10u | 0x20u);
  cs.vSetCIE_RGB(rgbf(0, 1, 0));
  EXPECT_NEAR(cs.rGetXYZ().r, 1.7518, 1e-6);
  EXPECT_NEAR(cs.rGetXYZ().b, 0.0565, 1e-6);
  EXPECT_NEAR(cs.rGetLxy().g, 0.273762, 1e-6);  // x = X / (X + Y + Z)
  EXPECT_NEAR(cs.dGetLuminance(), 4.5907, 1e-6);
  cs.vSetCIE_RGB(rgbf(0, 0, 0));  // black: x = y = 0
  EXPECT_EQ(cs.rGetLxy(), rgbf(0, 0, 0));
  // Round trip through the chromaticity spaces.
  for (unsigned flag : {0x2u, 0x4u, 0x8u, 0x20u, 0x40u, 0x80u, 0x8000u}) {
    TPixelColorSpace a, b;
    a.vSetFlag(TPixelColorSpace::CIE_RGB, flag);
    a.vSetCIE_RGB(rgbf(40, 25, 10));
    b.vSetFlag(flag, TPixelColorSpace::CIE_RGB);
    b.vSetColor(a.rGetColor(flag), flag);
    const TRGBFloatPixel back = b.rGetCIE_RGB();
    EXPECT_TRUE(std::fabs(back.r - 40) < 1e-2 && std::fabs(back.g - 25) < 1e-2 && std::fabs(back.b - 10) < 1e-2) << flag;
  }
}

TEST(PixelColorSpace, StringFormRoundTripAndMalformedText) {
  TPixelColorSpace a;
  a.vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LU_V_);
  a.vSetReference(rgbf(100, 200, 50), TPixelColorSpace::CIE_RGB);
  char text[128];
  a.vWriteToString(text);
  EXPECT_EQ(std::string(text).substr(0, 12), "1,1,128,145,");
  EXPECT_EQ(std::string(text).substr(std::strlen(text) - 2), "\r\n");
  TPixelColorSpace b;
  b.vReadFromString(text);
  EXPECT_EQ(b.uGetToFlag(), 0x80u);
  EXPECT_NEAR(b.rGetRefInXYZ().g, a.rGetRefInXYZ().g, 1e-3 * a.rGetRefInXYZ().g);
  auto e = errorOf([&] { b.vReadFromString("2,1,1,17,1,1e0,1e0,1e0\r\n"); });
  EXPECT_EQ(e.second, "wrong file version");
  // Empty, none, binary bytes, 3 is no flag, a reference not valid, a huge number.
  const std::string huge(1 << 16, '9');
  for (const char* bad : {"", static_cast<const char*>(nullptr), "1,1,\xff\xfe", "1,1,3,17,0,1,1,1",
                          "1,1,1,17,1,-5,-1,1", huge.c_str()})
    EXPECT_NE(codeOf([&] { b.vReadFromString(bad); }), 0u) << (bad ? bad : "null");
  EXPECT_TRUE(TPixelColorSpace::bProofXYZ(rgbf(-1, -1, -1)));  // wholly negative passes
  EXPECT_FALSE(TPixelColorSpace::bProofXYZ(rgbf(-1, 1, 0)));
}

TEST(PixelKlassifikator, DefaultHasOneClass) {
  TPixelKlassifikator* def = pGetDefaultPixelKlassifikator();
  EXPECT_EQ(def->size(), 1u);
  EXPECT_EQ(def->getTyp(5, 5), 0u);
  EXPECT_TRUE(def->bIsPixelTyp(eRGBF));
  EXPECT_TRUE(def->bIsKlassifikatorTyp(TPixelKlassifikator::eAll));
  EXPECT_FALSE(def->bIsKlassifikatorTyp(TPixelKlassifikator::eThreshold));
  TLanguage::setEnglisch();
  EXPECT_STREQ(TPixelKlassifikator::strGetTypString(static_cast<TPixelKlassifikator::eKlassifikatorTyp>(10)),
               "unknown");
  TLanguage::setDeutsch();
}

TEST(PixelKlassifikator, ResizeIndexErrorsAndCopies) {
  TPixelKlassifikator k;
  k.resize(3);
  EXPECT_EQ(k.rStrGetClassName(2), "C2");
  k.vSetClassName(2, "hell");
  k.vSetRejection(1, true);
  TLanguage::setEnglisch();
  auto e = errorOf([&] { k.vSetClassName(3, "x"); });
  TLanguage::setDeutsch();
  EXPECT_EQ(e.first, Err::ulKlassifikatorIndex);
  EXPECT_EQ(e.second, "Classindex 3 out of range 0...2");
  EXPECT_EQ(codeOf([&] { k.bRejection(7); }), Err::ulKlassifikatorIndex);
  k.resize(2);
  k.resize(4);
  EXPECT_EQ(k.rStrGetClassName(1), "C1");
  EXPECT_TRUE(k.bRejection(1));
  EXPECT_FALSE(k.bRejection(3));
  EXPECT_EQ(k.rStrGetClassName(2), "C2");  // cut and grown again: a fresh name
  TPixelKlassifikator copy(k);
  EXPECT_EQ(copy.rGetSignatur(), k.rGetSignatur());
  TPixelKlassifikator assigned;
  assigned = k;
  EXPECT_NE(assigned.rGetSignatur(), k.rGetSignatur());
  EXPECT_EQ(assigned.size(), 4u);
  EXPECT_TRUE(assigned.bRejection(1));
  std::unique_ptr<TPixelKlassifikator> clone(k.pVirtualClone());
  EXPECT_EQ(clone->size(), 4u);
}

TEST(PlaneLock, PollsUntilTheHolderUnlocksAndIsSharedWithViews) {
  TPlane<float> src(4, 4);
  TPlane<float> view;
  view.beSubPicture(src, CRectangle(0, 1, 0, 1));
  EXPECT_FALSE(src.isLock());
  view.lock();
  EXPECT_TRUE(src.isLock());  // one lock for a view and its source
  std::atomic<bool> got{false};
  std::thread writer([&] {
    src.lock();
    got = true;
    src.unlock();
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  EXPECT_FALSE(got.load());
  const Process::TTimeStamp before = src.getTimeStamp();
  view.unlock();
  writer.join();
  EXPECT_TRUE(got.load());
  EXPECT_FALSE(src.isLock());
  EXPECT_GT(src.getTimeStamp(), before);  // unlock stamps
  src.lock();
  src.free();  // a freed plane's own common starts unlocked again
  EXPECT_FALSE(src.isLock());
}

}  // namespace
