#include <gtest/gtest.h>

#include <vector>

#include "RastrixTestUtil.h"
#include "kxutils/KxUtilsErrors.h"
#include "kxutils/ulColorSpace.h"
#include "kxutils/ulCoordinatesystem.h"
#include "kxutils/ulImage.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPlane.h"

using namespace Rastrix;
using rastrixtest::codeOf;

namespace {

unsigned long liveImages() {
  unsigned long n = 0;
  ulImage_CountHandles(&n);
  return n;
}

TEST(PlaneHandles, ImageHandleReadsThePlanesOwnPixels) {
  const unsigned long before = liveImages();
  TPlane<float> p(4, 5, 10, 20, 5);
  p[11][22] = 3.25f;
  void* h = p.vpCreateIMAGE_HANDLE();
  ASSERT_NE(h, nullptr);
  kxutils::TImageInfo info;
  ASSERT_EQ(ulImage_GetInfo(h, &info), kxutils::ulOk);
  EXPECT_TRUE(info.type == static_cast<unsigned long>(eF) && info.firstLine == 10 && info.firstColumn == 20 && !info.ownsMemory);
  double v[3];
  int n = 0;
  // No copy: a pixel written after the handle is seen through it, and the
  // handle's address is the plane's pixel.
  p[13][24] = -1.f;
  ASSERT_EQ(ulImage_GetPixel(h, 13, 24, v, &n), kxutils::ulOk);
  EXPECT_EQ(v[0], -1.0);
  void* a = nullptr;
  ASSERT_EQ(ulImage_GetPixelAddress(h, 10, 20, &a), kxutils::ulOk);
  EXPECT_EQ(a, &p[10][20]);
  EXPECT_EQ(liveImages(), before + 1);
  ulImage_DeleteHandle(&h);
  EXPECT_EQ(liveImages(), before);
}

TEST(PlaneHandles, WiderLineDistanceIsNarrowedToTheColumns) {
  const unsigned long before = liveImages();
  TPlane<TRGBPixel> p(3, 5, -1, 2, 8);
  p[1][6].set(30, 20, 10);
  void* h = p.vpCreateIMAGE_HANDLE();
  EXPECT_EQ(liveImages(), before + 1);  // the wide first image is gone
  kxutils::TImageInfo info;
  ASSERT_EQ(ulImage_GetInfo(h, &info), kxutils::ulOk);
  EXPECT_TRUE(info.columns == 5 && info.lineDistance == 8 && info.type == static_cast<unsigned long>(eRGB));
  double v[3];
  int n = 0;
  ASSERT_EQ(ulImage_GetPixel(h, 1, 6, v, &n), kxutils::ulOk);
  EXPECT_TRUE(n == 3 && v[0] == 10.0 && v[2] == 30.0);  // memory order: blue first
  EXPECT_EQ(ulImage_GetPixel(h, 1, 7, v, &n), kxutils::ulOutside);  // beyond the true width
  ulImage_DeleteHandle(&h);
}

TEST(PlaneHandles, ViewsExternAndFailures) {
  TPlane<int> src(10, 10);
  src[5][5] = 55;
  TPlane<int> view;
  view.beSubPicture(src, CRectangle(4, 6, 3, 7));
  void* h = view.vpCreateIMAGE_HANDLE();
  double v[3];
  int n = 0;
  ASSERT_EQ(ulImage_GetPixel(h, 5, 5, v, &n), kxutils::ulOk);
  EXPECT_EQ(v[0], 55.0);
  EXPECT_EQ(ulImage_GetPixel(h, 3, 5, v, &n), kxutils::ulOutside);
  ulImage_DeleteHandle(&h);

  std::vector<unsigned short> mem(100, 7);
  TPlane<unsigned short> ext(3, 3, 2, 2, 10, mem.data());
  h = ext.vpCreateIMAGE_HANDLE();
  void* a = nullptr;
  ASSERT_EQ(ulImage_GetPixelAddress(h, 2, 2, &a), kxutils::ulOk);
  EXPECT_EQ(a, mem.data() + 22);  // pixel (2, 2) of the caller's block
  ulImage_DeleteHandle(&h);

  TPlane<unsigned short> fields(4, 10, 0, 0, 10, mem.data(), mem.data() + 50);
  EXPECT_EQ(codeOf([&] { fields.vpCreateIMAGE_HANDLE(); }), Err::ulPixelTypNotIdentifiable);
  EXPECT_EQ(codeOf([] { TPlane<float>().vpCreateIMAGE_HANDLE(); }), Err::ulPlaneNotValid);
  EXPECT_EQ(codeOf([] { TPlaneBasic().vpCreateIMAGE_HANDLE(); }), Err::ulPixelTypNotIdentifiable);
}

TEST(PlaneHandles, CoordinateSystemHandleCarriesTheSystemAndTheUnits) {
  auto infoOf = [](const TPlaneBasic& p) {
    void* h = p.vpCreateCOORDINATESYSTEM_HANDLE();
    kxutils::TCoordinatesystemInfo info;
    EXPECT_EQ(ulCoordinatesystem_GetInfo(h, &info), kxutils::ulOk);
    ulCoordinatesystem_DeleteHandle(&h);
    return info;
  };
  kxutils::TCoordinatesystemInfo info = infoOf(TPlane<unsigned char>(2, 2));
  EXPECT_EQ(info.name + "|" + info.valueName[0] + "|" + info.valueUnit[0] + "|" + info.valueName[1] + "|" + info.unitX +
                "|" + info.unitA,
            "Default|GW|LSB||Pixel|Pixel\xB2");
  EXPECT_TRUE(info.offsetX == 0.0 && info.scaleX == 1.0 && info.scaleY == 1.0);

  TCoordinateSystem cs;
  cs.vSetChangeable(true);
  cs.setNameKS("Hall");
  cs.setNameUnitX("Width", "\xC2\xB0");
  cs.vSetNameZ("Depth");
  cs.vSetValueZ(4.5);
  TPlane<TRGBFloatPixel> colour(1, 1);
  colour.SetCoordinateSystem(&cs);
  info = infoOf(colour);
  EXPECT_EQ(info.name + "|" + info.nameX + "|" + info.unitX + "|" + info.nameZ + "|" + info.valueName[0] + "|" +
                info.valueName[2] + "|" + info.valueUnit[1],
            "Hall|Width|\xB0|Depth|R|B|cd/m\xB2");
  EXPECT_EQ(info.valueZ, 4.5);
  colour.SetCoordinateSystem(nullptr);
}

TEST(PlaneHandles, ColourHandleOnlyForColourPlanes) {
  EXPECT_EQ(TPlane<float>(1, 1).vpCreateCOLOR_HANDLE(), nullptr);
  TPlane<TRGBPixel> p(1, 1);
  void* h = p.vpCreateCOLOR_HANDLE();
  ASSERT_NE(h, nullptr);
  kxutils::TColorSpaceInfo info;
  ASSERT_EQ(ulColorSpace_GetInfo(h, &info), kxutils::ulOk);
  EXPECT_EQ(info.destination, 1u);
  EXPECT_EQ(info.refR, 255.f);
  ulColorSpace_DeleteHandle(&h);
  p.rGetPixelColorSpace().vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LXY);
  h = p.vpCreateCOLOR_HANDLE();
  ASSERT_EQ(ulColorSpace_GetInfo(h, &info), kxutils::ulOk);
  EXPECT_EQ(info.destination, 0x20u);
  ulColorSpace_DeleteHandle(&h);
}

}  // namespace
