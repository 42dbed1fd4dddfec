#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

#include "kxutils/KxUtilsErrors.h"
#include "kxutils/ulColorSpace.h"
#include "kxutils/ulCoordinatesystem.h"
#include "kxutils/ulImage.h"

using namespace kxutils;

namespace {

unsigned long liveImages() {
  unsigned long n = 0;
  EXPECT_EQ(ulImage_CountHandles(&n), ulOk);
  return n;
}

TEST(ulImage, LooksOntoGivenMemoryFromItsFirstPixel) {
  const unsigned long before = liveImages();
  std::vector<uint16_t> mem(6 * 10);
  for (std::size_t i = 0; i < mem.size(); ++i) mem[i] = static_cast<uint16_t>(i);
  void* h = nullptr;
  ASSERT_EQ(ulImage_CreateHandle(1, &h), ulOk);
  ASSERT_NE(h, nullptr);
  // 6 lines of 10 from line 100, column -3: the address is pixel (100, -3).
  ASSERT_EQ(ulImage_Alloc2(h, 6, 10, 100, -3, mem.data()), ulOk);
  TImageInfo info;
  ASSERT_EQ(ulImage_GetInfo(h, &info), ulOk);
  EXPECT_EQ(info.type, 1u);
  EXPECT_EQ(info.columns, 10);
  EXPECT_FALSE(info.ownsMemory);
  double v[3];
  int n = 0;
  ASSERT_EQ(ulImage_GetPixel(h, 102, 0, v, &n), ulOk);
  EXPECT_EQ(n, 1);
  EXPECT_EQ(v[0], 2 * 10 + 3);
  void* a = nullptr;
  ASSERT_EQ(ulImage_GetPixelAddress(h, 100, -3, &a), ulOk);
  EXPECT_EQ(a, mem.data());
  EXPECT_EQ(ulImage_GetPixel(h, 99, 0, v, &n), ulOutside);
  EXPECT_EQ(ulImage_GetPixel(h, 100, 7, v, &n), ulOutside);
  EXPECT_EQ(liveImages(), before + 1);
  ASSERT_EQ(ulImage_DeleteHandle(&h), ulOk);
  EXPECT_EQ(h, nullptr);
  EXPECT_EQ(liveImages(), before);
}

TEST(ulImage, ConnectNarrowsAnAreaAndKeepsOwnMemoryAlive) {
  void* big = nullptr;
  ASSERT_EQ(ulImage_CreateHandle(4, &big), ulOk);
  ASSERT_EQ(ulImage_Alloc2(big, 4, 5, 0, 0, nullptr), ulOk);  // owns zeroed memory
  void* p = nullptr;
  ASSERT_EQ(ulImage_GetPixelAddress(big, 2, 3, &p), ulOk);
  const float colour[3] = {1.f, 2.f, 3.f};
  std::memcpy(p, colour, sizeof colour);
  void* part = nullptr;
  ASSERT_EQ(ulImage_CreateHandle(4, &part), ulOk);
  EXPECT_EQ(ulImage_ConnectImage(part, 2, 2, 3, 4, big), ulOutside);  // line 4 is outside
  EXPECT_EQ(ulImage_ConnectImage(part, 0, 2, 1, 1, big), ulBadArgument);
  ASSERT_EQ(ulImage_ConnectImage(part, 2, 2, 2, 3, big), ulOk);
  ASSERT_EQ(ulImage_DeleteHandle(&big), ulOk);  // the connected image keeps the memory
  double v[3];
  int n = 0;
  ASSERT_EQ(ulImage_GetPixel(part, 2, 3, v, &n), ulOk);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(v[0], 1.0);  // memory order
  EXPECT_EQ(v[2], 3.0);
  ASSERT_EQ(ulImage_GetPixel(part, 3, 4, v, &n), ulOk);
  EXPECT_EQ(v[1], 0.0);
  EXPECT_EQ(ulImage_GetPixel(part, 2, 5, v, &n), ulOutside);
  TImageInfo info;
  ASSERT_EQ(ulImage_GetInfo(part, &info), ulOk);
  EXPECT_EQ(info.lineDistance, 5);
  EXPECT_EQ(info.columns, 2);
  EXPECT_TRUE(info.ownsMemory);
  ASSERT_EQ(ulImage_DeleteHandle(&part), ulOk);
}

TEST(ulImage, BadHandlesAndArgumentsAreRefused) {
  void* h = nullptr;
  EXPECT_EQ(ulImage_CreateHandle(6, &h), ulWrongType);
  EXPECT_EQ(ulImage_CreateHandle(0, nullptr), ulBadArgument);
  ASSERT_EQ(ulImage_CreateHandle(0, &h), ulOk);
  double v[3];
  int n;
  EXPECT_EQ(ulImage_GetPixel(h, 0, 0, v, &n), ulNoImage);
  EXPECT_EQ(ulImage_Alloc2(h, 0, 5, 0, 0, nullptr), ulBadArgument);
  void* other = nullptr;
  ASSERT_EQ(ulImage_CreateHandle(2, &other), ulOk);
  ASSERT_EQ(ulImage_Alloc2(other, 2, 2, 0, 0, nullptr), ulOk);
  void* huge = nullptr;
  ASSERT_EQ(ulImage_CreateHandle(4, &huge), ulOk);
  EXPECT_EQ(ulImage_Alloc2(huge, INT32_MAX, INT32_MAX, 0, 0, nullptr), ulBadArgument);  // beyond any memory
  EXPECT_EQ(ulImage_DeleteHandle(&huge), ulOk);
  EXPECT_EQ(ulImage_ConnectImage(h, 1, 1, 0, 0, other), ulWrongType);
  void* stale = h;
  ASSERT_EQ(ulImage_DeleteHandle(&h), ulOk);
  EXPECT_EQ(ulImage_DeleteHandle(&stale), ulBadHandle);  // deleted twice
  EXPECT_EQ(ulImage_GetInfo(stale, nullptr), ulBadArgument);
  TImageInfo info;
  EXPECT_EQ(ulImage_GetInfo(stale, &info), ulBadHandle);
  EXPECT_EQ(ulImage_GetInfo(reinterpret_cast<void*>(0x12345), &info), ulBadHandle);  // made up
  EXPECT_EQ(ulImage_GetInfo(nullptr, &info), ulBadHandle);
  void* cs = nullptr;
  ASSERT_EQ(ulCoordinatesystem_CreateHandle(&cs), ulOk);
  EXPECT_EQ(ulImage_GetInfo(cs, &info), ulBadHandle);  // a handle of another kind
  EXPECT_EQ(ulColorSpace_DeleteHandle(&cs), ulBadHandle);
  EXPECT_EQ(ulCoordinatesystem_DeleteHandle(&cs), ulOk);
  EXPECT_EQ(ulImage_DeleteHandle(&other), ulOk);
  EXPECT_EQ(ulImage_DeleteHandle(nullptr), ulBadArgument);
}

TEST(ulImage, HandlesFromManyThreads) {
  const unsigned long before = liveImages();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([] {
      for (int i = 0; i < 200; ++i) {
        void* h = nullptr;
        ASSERT_EQ(ulImage_CreateHandle(5, &h), ulOk);
        ASSERT_EQ(ulImage_Alloc2(h, 2, 2, i, i, nullptr), ulOk);
        double v[3];
        int n;
        ASSERT_EQ(ulImage_GetPixel(h, i + 1, i + 1, v, &n), ulOk);
        ASSERT_EQ(ulImage_DeleteHandle(&h), ulOk);
      }
    });
  for (auto& t : threads) t.join();
  EXPECT_EQ(liveImages(), before);
}

TEST(ulCoordinatesystem, CarriesWhatItIsGiven) {
  void* h = nullptr;
  ASSERT_EQ(ulCoordinatesystem_CreateHandle(&h), ulOk);
  ASSERT_EQ(ulCoordinatesystem_SetName(h, "Wall"), ulOk);
  ASSERT_EQ(ulCoordinatesystem_SetValueUnit(h, "L", "cd/m\xB2", nullptr, nullptr, "", ""), ulOk);
  ASSERT_EQ(ulCoordinatesystem_SetXYAxis(h, "X", "m", "Y", "m", "m\xB2"), ulOk);
  ASSERT_EQ(ulCoordinatesystem_SetZAxis(h, "Z", "m", 2.5), ulOk);
  ASSERT_EQ(ulCoordinatesystem_SetScalingParam(h, 10, 0.5, 100, -1), ulOk);
  TCoordinatesystemInfo info;
  ASSERT_EQ(ulCoordinatesystem_GetInfo(h, &info), ulOk);
  EXPECT_EQ(info.name, "Wall");
  EXPECT_EQ(info.valueUnit[0], "cd/m\xB2");
  EXPECT_EQ(info.valueName[1], "");
  EXPECT_EQ(info.unitA, "m\xB2");
  EXPECT_EQ(info.valueZ, 2.5);
  EXPECT_EQ(info.scaleY, -1.0);
  EXPECT_EQ(info.offsetX, 10.0);
  ASSERT_EQ(ulCoordinatesystem_DeleteHandle(&h), ulOk);
  EXPECT_EQ(ulCoordinatesystem_SetName(h, "x"), ulBadHandle);
}

TEST(ulColorSpace, DestinationIsOneFlag) {
  void* h = nullptr;
  ASSERT_EQ(ulColorSpace_CreateHandle(&h), ulOk);
  TColorSpaceInfo info;
  ASSERT_EQ(ulColorSpace_GetInfo(h, &info), ulOk);
  EXPECT_EQ(info.destination, 1u);
  EXPECT_EQ(ulColorSpace_SetDestination(h, 0x30, 1, 1, 1), ulBadArgument);
  EXPECT_EQ(ulColorSpace_SetDestination(h, 0, 1, 1, 1), ulBadArgument);
  ASSERT_EQ(ulColorSpace_SetDestination(h, 0x10, 200, 210, 220), ulOk);
  ASSERT_EQ(ulColorSpace_GetInfo(h, &info), ulOk);
  EXPECT_EQ(info.destination, 0x10u);
  EXPECT_EQ(info.refG, 210.f);
  ASSERT_EQ(ulColorSpace_DeleteHandle(&h), ulOk);
}

}  // namespace
