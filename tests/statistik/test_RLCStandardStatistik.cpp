// The plain calculators: numbers and moments of a region against numpy,
// the eroded region against scipy's binary erosion with a square.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <random>
#include <sstream>

#include "../rastrix/RastrixTestUtil.h"
#include "statistik/TRLCStandardStatistik.h"

using namespace Rastrix;

TEST(RLCStandardStatistik, AgainstNumpyAndScipy) {
  TPlane<float> p(30, 36);
  std::mt19937 rng(12);
  std::ostringstream px;
  px.precision(9);
  for (int l = 0; l < 30; ++l)
    for (int c = 0; c < 36; ++c) px << (p[l][c] = static_cast<float>(rng() % 50)) << ",";
  TRLCArray region(TOPointList<int>(eCircle, {{14, 13}, {23, 13}}));
  region |= TRLCArray(TOPointList<int>(eRectangle, {{20, 2}, {33, 2}, {33, 8}, {20, 8}}));
  TRLCStandardStatistik s(1, true, true, true, true);
  s.vCalculate(&p, region, 0, 0);
  TRLCArray reduced;
  TRLCStandardStatistik::vCalcReducedRLC(region, 2, reduced);
  rastrixtest::TempDir dir("kx_rlcstat_");
  const std::string a = dir / "a.rlc", b = dir / "b.rlc";
  region.write(a.c_str());
  reduced.write(b.c_str());
  const std::string script =
      "import numpy as np\n"
      "from scipy import ndimage\n"
      "x=np.array([" + px.str() + "]).reshape(30,36)\n"
      "def mask(f):\n"
      " v=[int(t) for t in open(f).read().split()]; m=np.zeros((30,36),bool); p=4\n"
      " for l in range(v[0],v[1]+1):\n"
      "  n=v[p]; p+=1\n"
      "  for k in range(n): m[l,v[p]:v[p+1]+1]=True; p+=2\n"
      " return m\n"
      "m=mask('" + a + "'); r=mask('" + b + "')\n"
      "e=ndimage.binary_erosion(m,structure=np.ones((5,5)),border_value=0)\n"
      "w=x[m]; ys,xs=np.nonzero(m); i0=int(np.argmin(np.where(m,x,np.inf))); i1=int(np.argmax(np.where(m,x,-np.inf)))\n"
      "o=[int((e!=r).sum()),w.size,w.mean(),w.var(ddof=1),w.min(),i0%36,i0//36,w.max(),i1%36,i1//36,\n"
      "   xs.mean(),ys.mean(),xs.var(ddof=1),ys.var(ddof=1),np.cov(xs,ys)[0,1],(xs*w).sum()/w.size/w.mean()]\n"
      "print(*[repr(float(z)) for z in o])\n";
  std::istringstream in(rastrixtest::run("/usr/bin/python3 -c \"" + script + "\""));
  std::vector<double> ref;
  for (double v; in >> v;) ref.push_back(v);
  ASSERT_EQ(ref.size(), 16u);
  EXPECT_EQ(ref[0], 0) << "eroded region differs from scipy in " << ref[0] << " pixels";
  EXPECT_GT(reduced.pixel(), 0);
  const double got[] = {static_cast<double>(s.lGetNumber()), s.dGetMean(0), s.dGetVarianz(0), s.dGetMinV(0),
                        static_cast<double>(s.iGetMinX(0)), static_cast<double>(s.iGetMinY(0)), s.dGetMaxV(0),
                        static_cast<double>(s.iGetMaxX(0)), static_cast<double>(s.iGetMaxY(0)), s.dGetGeometricX(0),
                        s.dGetGeometricY(0), s.dGetGeometricVx(0), s.dGetGeometricVy(0), s.dGetGeometricVxy(0),
                        s.dGetPhotometricX(0)};
  for (int i = 0; i < 15; ++i) EXPECT_NEAR(got[i], ref[static_cast<std::size_t>(i + 1)], 1e-9 * (1 + std::fabs(ref[static_cast<std::size_t>(i + 1)]))) << i;

  // Smoothed over the eroded region: a constant picture stays constant.
  TPlane<float> flat(30, 36);
  flat.setRectangle(7.0f);
  TRLCStandardStatistik f(1);
  f.vCalculate(&flat, region, 1, 1);
  EXPECT_EQ(f.lGetNumber(), reduced.pixel());
  EXPECT_DOUBLE_EQ(f.dGetMean(0), 7);
  TRLCStandardStatistik empty(1);
  EXPECT_EQ(empty.dGetMinV(0), static_cast<double>(FLT_MAX));

  TStandardStatistik1 one(&p);
  one.calculate(CRectangle(0, 1, 0, 1));
  EXPECT_EQ(one.getData(0), 4);
  EXPECT_DOUBLE_EQ(one.getData(1), (p[0][0] + p[0][1] + p[1][0] + p[1][1]) / 4.0);
}
