// Planes made, viewed, locked and destroyed on four threads at once. Run in
// every pass, and under ThreadSanitizer by the "tsan" label of ./test.sh.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPlane.h"

using namespace Rastrix;

TEST(Threads, PlanesOnFourThreads) {
  const std::size_t before = TPlaneBasic::vpInstances().size();
  const int usersBefore = TPlane<float>().pGetCoordinateSystem()->iGetUser();
  TPlane<float> shared(16, 16);
  std::atomic<int> inside{0}, overlaps{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < 300; ++i) {
        TPlane<unsigned short> p(8 + t, 8 + i % 5);
        TPlane<unsigned short> v;
        v.beSubPicture(p, CRectangle(1, 3, 1, 3));
        p.setRectangle(static_cast<unsigned short>(i), 0, 2, 0, 2);
        EXPECT_TRUE(TPlaneBasic::bIsValid(&v));
        // The shared plane's lock lets one writer in at a time.
        if (i % 50 == 0) {
          shared.setRectangle(static_cast<float>(t));
          shared.lock();
          if (inside.fetch_add(1) != 0) ++overlaps;
          inside.fetch_sub(1);
          shared.unlock();
        }
      }
    });
  for (auto& th : threads) th.join();
  EXPECT_EQ(overlaps.load(), 0);
  EXPECT_EQ(TPlaneBasic::vpInstances().size(), before + 1);
  EXPECT_EQ(TPlane<float>().pGetCoordinateSystem()->iGetUser(), usersBefore + 1);
}
