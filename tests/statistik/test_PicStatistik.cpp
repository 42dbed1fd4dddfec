// The statistics engine over a scene of objects: numbers per object and
// class against numpy over masks read from the run-length files, label
// planes against the class map, the update cycle, averaging, and bad input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>
#include <sstream>

#include "../rastrix/RastrixTestUtil.h"
#include "object98/TObjectList98.h"
#include "object98/TPicture2RLC.h"
#include "rastrix/TPixelKlassifikatorTypThreshold.h"
#include "statistik/TPicStatistikPlaneBasic.h"
#include "rastrix/TLinearCoordinateSystem.h"
#include "statistik/TResultHist.h"

using namespace Rastrix;
using rastrixtest::codeOf;

namespace {

struct Scene {
  TPlane<float> pic{40, 50};
  TObjectList98 list;
  TPixelKlassifikatorTypThreshold<float> k;
  Scene() {
    std::mt19937 rng(4);
    std::uniform_real_distribution<float> d(0, 100);
    for (int l = 0; l < 40; ++l)
      for (int c = 0; c < 50; ++c) pic[l][c] = (rng() % 9 == 0) ? 50.0f : d(rng);
    list.append(TOPointList<int>(eRectangle, {{2, 3}, {20, 3}, {20, 15}, {2, 15}}));
    list.append(TOPointList<int>(eCircle, {{35, 25}, {43, 25}}));
    list.append(TOPointList<int>(ePolygon, {{5, 20}, {25, 22}, {12, 38}}));
    list.append(TOPointList<int>(eRectangle, {{15, 10}, {30, 10}, {30, 18}, {15, 18}}));
    list.rGetFlagList().selectObject(0);
    list.rGetFlagList().selectObject(3);
    list.vCreateGroup(eOrGroup);  // object 4
    k.resize(3);
    k.vSetThreshold(0, 30);
    k.vSetThreshold(1, 70);
  }
};

std::unique_ptr<TPicStatistikPlaneBasic> statOf(Scene& s, int i) {
  TResultStatistik r;
  auto st = std::make_unique<TPicStatistikPlaneBasic>(i, &s.pic, &r);
  st->setObject(i, &s.list, false);
  st->vSetKlassifikator(&s.k);
  return st;
}

}  // namespace

TEST(PicStatistik, ObjectsAgainstNumpy) {
  Scene s;
  rastrixtest::TempDir dir("kx_stat_");
  const std::string oa = dir / "scene.oa";  // the scene as the user saved it
  s.list.write(oa.c_str());
  s.list.read(oa.c_str(), false);
  ASSERT_EQ(s.list.size(), 5);
  std::ostringstream pixels;
  pixels.precision(9);
  for (int l = 0; l < 40; ++l)
    for (int c = 0; c < 50; ++c) pixels << s.pic[l][c] << ",";
  std::vector<double> got;
  std::string files;
  for (int i = 0; i < s.list.size(); ++i) {
    auto st = statOf(s, i);
    ASSERT_TRUE(st->bConditionalUpdate(true));
    const std::string f = dir / ("r" + std::to_string(i) + ".rlc").c_str();
    s.list.rGetRegion(i).write(f.c_str());
    files += "'" + f + "',";
    for (unsigned c = 0; c < 3; ++c) {
      const TResultStatistik* r = st->getResult(0, c);
      const double* e = r->rRGetXResult().dpGetErg();
      got.insert(got.end(), {e[0], e[1], e[2], e[3], e[4], r->rGetIMinPosition().x, r->rGetIMinPosition().y,
                             r->rGetIMaxPosition().x, r->rGetIMaxPosition().y, r->rGetISchwerpunkt().x,
                             r->rGetISchwerpunkt().y});
    }
  }
  const std::string script =
      "import numpy as np\n"
      "from scipy import ndimage\n"
      "x=np.array([" + pixels.str() + "],dtype=np.float32).astype(float).reshape(40,50)\n"
      "cls=np.digitize(x,[30,70])\n"
      "out=[]\n"
      "for f in [" + files + "]:\n"
      " v=[int(t) for t in open(f).read().split()]\n"
      " l0,l1,c0,c1=v[:4]; p=4; m=np.zeros((40,50),bool)\n"
      " for l in range(l0,l1+1):\n"
      "  n=v[p]; p+=1\n"
      "  for k in range(n):\n"
      "   a,b=v[p],v[p+1]; p+=2\n"
      "   if 0<=l<40: m[l,max(a,0):min(b,49)+1]=True\n"
      " for c in range(3):\n"
      "  mc=m&(cls==c); w=x[mc]\n"
      "  if w.size==0: out+=[0]*11; continue\n"
      "  s=w.std(ddof=1) if w.size>1 else 0.0\n"
      "  flat=np.where(mc.ravel(),x.ravel(),np.inf); i0=int(np.argmin(flat))\n"
      "  flat=np.where(mc.ravel(),x.ravel(),-np.inf); i1=int(np.argmax(flat))\n"
      "  cy,cx=ndimage.center_of_mass(np.where(mc,x,0))\n"
      "  out+=[w.size,w.mean(),s,w.min(),w.max(),i0%50,i0//50,i1%50,i1//50,cx,cy]\n"
      "print(*[repr(float(z)) for z in out])\n";
  std::istringstream in(rastrixtest::run("/usr/bin/python3 -c \"" + script + "\""));
  std::vector<double> ref;
  for (double v; in >> v;) ref.push_back(v);
  ASSERT_EQ(ref.size(), got.size());
  for (std::size_t i = 0; i < got.size(); ++i)
    EXPECT_NEAR(got[i], ref[i], 1e-6 * (1 + std::fabs(ref[i]))) << "object " << i / 33 << " class " << i / 11 % 3
                                                                 << " number " << i % 11;
}

TEST(PicStatistik, LabelPlaneIsTheClassMap) {
  Scene s;
  auto st = statOf(s, 1);
  st->bConditionalUpdate(true);
  const TPlane<unsigned char>& label = s.list.rGetLabelPic(&s.pic, 1, false, false);
  const TRLCArray& region = s.list.rGetRegion(1);
  int inside = 0;
  for (int l = label.getFirstLine(); l <= label.getLastLine(); ++l)
    for (int c = label.getFirstColumn(); c <= label.getLastColumn(); ++c) {
      bool in = false;
      for (const TRLC& r : region[l]) in = in || (c >= r.FirstColumn && c <= r.LastColumn);
      inside += in;
      EXPECT_EQ(label[l][c], in ? s.k.getTyp(s.pic[l][c], l, c, &s.pic) : 255u) << l << "," << c;
    }
  EXPECT_EQ(inside, region.pixel());
}

TEST(PicStatistik, UpdateCycle) {
  Scene s;
  auto st = statOf(s, 0);
  bool newCalc = false;
  EXPECT_TRUE(st->bNeedUpdate(newCalc));
  st->bConditionalUpdate(true);
  newCalc = false;
  EXPECT_FALSE(st->bNeedUpdate(newCalc));
  s.pic[5][5] = 1;
  s.pic.setTimeStamp();  // only the picture: update, accumulating
  newCalc = false;
  EXPECT_TRUE(st->bNeedUpdate(newCalc));
  EXPECT_FALSE(newCalc);
  st->bConditionalUpdate(false);
  EXPECT_EQ(st->getResult(0, 1)->rRGetTResult().dGetCount(), 2);
  s.list.move(0, 1, 0);  // the object: cleared and computed again
  newCalc = false;
  EXPECT_TRUE(st->bNeedUpdate(newCalc));
  EXPECT_TRUE(newCalc);
  st->bConditionalUpdate(false);
  EXPECT_EQ(st->getResult(0, 1)->rRGetTResult().dGetCount(), 1);
  int total = 0;
  for (unsigned c = 0; c < 3; ++c) total += static_cast<int>(st->getResult(0, c)->rRGetXResult().dGetCount());
  EXPECT_EQ(total, 19 * 13);
  s.k.vSetThreshold(0, 31);  // the classifier
  newCalc = false;
  EXPECT_TRUE(st->bNeedUpdate(newCalc));
  EXPECT_TRUE(newCalc);

  // 2 classes to 4: the matrix follows, class 0's template kept.
  TResultHist hist;
  hist.setHistStartStepStop(0, 10, 100, true);
  TPicStatistikPlaneBasic h(0, &s.pic, &hist);
  TPixelKlassifikatorTypThreshold<float> two;
  two.resize(2);
  h.vSetKlassifikator(&two);
  two.resize(4);
  EXPECT_EQ(h.uGetKlassifikatorSize(), 4u);
  EXPECT_NE(dynamic_cast<TResultHist*>(h.getResult(0, 3)), nullptr);
  EXPECT_EQ(codeOf([&] { h.getResult(0, 4); }), 0x5100000UL);
  {
    TPixelKlassifikatorTypThreshold<float> gone;
    h.vSetKlassifikator(&gone);
  }
  EXPECT_EQ(codeOf([&] { h.uGetKlassifikatorSize(); }), 0x7000000UL);  // deleted under the statistic

  TStatistikBasicVector v;
  for (int i = 0; i < 3; ++i) v.append(statOf(s, i));
  EXPECT_TRUE(v.bUpdateObjects(false, true, eStatTypStandard));
  EXPECT_FALSE(v.bUpdateObjects(true, false, eStatTypStandard));  // nothing stale
  s.list.erase(2, false);
  EXPECT_TRUE(v.bUpdateObjects(true, false, eStatTypStandard));
  EXPECT_EQ(v.size(), 2);
}

TEST(PicStatistik, AveragingPathsAndBadInput) {
  TPlane<float> p(20, 20);
  for (int l = 0; l < 20; ++l)
    for (int c = 0; c < 20; ++c) p[l][c] = static_cast<float>(l * 20 + c);
  TRLCArray square(TOPointList<int>(eRectangle, {{5, 5}, {11, 5}, {11, 11}, {5, 11}}));  // 7 x 7
  TResultStatistik r;
  for (unsigned d : {1u, 2u, 5u}) {
    TPicStatistikPlaneBasic st(0, &p, &r);
    st.setRLC(square);
    st.vSetDiameter(d);
    st.bConditionalUpdate(true);
    const TResultBasicData& x = st.getResult(0, 0)->rRGetXResult();
    if (d < 3) {
      EXPECT_EQ(x.dGetCount(), 49);  // 2 is no averaging
      EXPECT_EQ(x.dGetMean(), 8 * 20 + 8);
    } else {
      EXPECT_EQ(x.dGetCount(), 9);  // only the 3 x 3 pixels whose circle of radius 2 fits
      EXPECT_DOUBLE_EQ(x.dGetMean(), 8 * 20 + 8);
    }
  }
  // An integral classifier without label: class 0 everywhere.
  TPixelKlassifikatorTypThresholdIntegral<float> integral;
  integral.resize(0);
  integral.vSetThreshold(0, 5);
  TPicStatistikPlaneBasic in(0, &p, &r);
  in.setRLC(square);
  in.vSetKlassifikator(&integral);
  in.bConditionalUpdate(true);
  EXPECT_EQ(in.getResult(0, 0)->rRGetXResult().dGetCount(), 49);

  // A colour picture: three groups, red, green, blue.
  TPlane<TRGBPixel> rgb(4, 4);
  for (int l = 0; l < 4; ++l)
    for (int c = 0; c < 4; ++c) rgb[l][c].r = 10, rgb[l][c].g = static_cast<unsigned char>(20 + c), rgb[l][c].b = 30;
  TPicStatistikPlaneBasic colour(0, &rgb, &r);
  colour.setRLC(TRLCArray(TOPointList<int>(eRectangle, {{0, 0}, {3, 0}, {3, 3}, {0, 3}})));
  colour.bConditionalUpdate(true);
  ASSERT_EQ(colour.uGetGroupCount(), 3u);
  EXPECT_EQ(colour.getResult(0, 0)->rRGetXResult().dGetMean(), 10);
  EXPECT_EQ(colour.getResult(1, 0)->rRGetXResult().dGetMean(), 21.5);
  EXPECT_EQ(colour.getResult(2, 0)->rRGetXResult().dGetMean(), 30);

  // Outside the picture, a 1 x 1 picture, NaN pixels.
  TPicStatistikPlaneBasic out(0, &p, &r);
  out.setRLC(TRLCArray(TOPointList<int>(eCircle, {{100, 100}, {5, 100}})));
  out.bConditionalUpdate(true);
  EXPECT_EQ(out.getResult(0, 0)->rRGetXResult().dGetCount(), 0);
  TPlane<float> one(1, 1);
  one[0][0] = NAN;
  TPicStatistikPlaneBasic tiny(0, &one, &r);
  tiny.setRLC(square);
  tiny.bConditionalUpdate(true);
  tiny.setRLC(TRLCArray(TOPointList<int>(eRectangle, {{0, 0}, {3, 0}, {3, 3}, {0, 3}})));
  tiny.bConditionalUpdate(true);
  EXPECT_EQ(tiny.getResult(0, 0)->rRGetXResult().dGetCount(), 1);
  EXPECT_EQ(codeOf([&] { TPicStatistikPlaneBasic bad(0, nullptr, &r); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { delete TStatistikBasic::pGetStatPtr(14); }), 0x5100000UL);
  std::unique_ptr<TResultStatistik> hist(TStatistikBasic::pGetStatPtr(eStatTypHistogramm));
  EXPECT_NE(dynamic_cast<TResultHist*>(hist.get()), nullptr);
  EXPECT_STREQ(strGetStatistikName(13), "Motor als Refeferenz");
}

// World units: a size-shift system keeps the runs, a system turning y with
// the column goes pixel by pixel; both must give the per-pixel numbers.
TEST(PicStatistik, WorldCoordinates) {
  TLinearCoordinateSystem cs;  // outlives the plane that uses it
  TPlane<float> p(30, 30);
  for (int l = 0; l < 30; ++l)
    for (int c = 0; c < 30; ++c) p[l][c] = static_cast<float>((l * 7 + c * 3) % 11);
  const TRLCArray disc(TOPointList<int>(eCircle, {{15, 14}, {24, 14}}));
  cs.vSetdA11(0.5);
  cs.vSetdA13(-3);
  cs.vSetdA22(0.25);
  cs.vSetdA23(7);
  cs.setFactorA(0.125);
  for (double a21 : {0.0, 0.3}) {
    cs.vSetdA21(a21);
    p.SetCoordinateSystem(&cs);
    TResultStatistik r;
    TPicStatistikPlaneBasic st(0, &p, &r);
    st.setRLC(disc);
    st.bConditionalUpdate(true);
    const TResultStatistik* got = st.getResult(0, 0);
    TResultStatistik ref;
    for (int l = disc.getFirstLine(); l <= disc.getLastLine(); ++l)
      for (const TRLC& run : disc[l])
        for (int c = run.FirstColumn; c <= run.LastColumn; ++c) {
          double x, y, a;
          cs.vGetWorldXY(&x, &y, c, l);
          cs.vGetWorldA(&a, c, l);
          ref.addValueLC(p[l][c], y, x, a, l, c);
        }
    ref.stop();
    for (int t = 0; t <= eYMax; ++t) EXPECT_NEAR(got->dGetNumber(t), ref.dGetNumber(t), 1e-9) << a21 << " " << t;
    EXPECT_NEAR(got->rRGetXResult().dGetArea(), disc.pixel() * 0.125, 1e-9);
  }
}

#include "statistik/TPicStatistikFocus.h"
#include "statistik/TResultCutTime.h"

// Bars with linear edges of width w: the 20-80 % width is 0.6 w.
TEST(PicStatistik, FocusEdgeOfKnownWidth) {
  for (int w : {5, 10, 20}) {
    TPlane<unsigned char> p(20, 200);
    for (int l = 0; l < 20; ++l)
      for (int c = 0; c < 200; ++c) {
        const double up = std::clamp((c - 40.0) / w, 0.0, 1.0), down = std::clamp((140.0 - c) / w, 0.0, 1.0);
        p[l][c] = static_cast<unsigned char>(std::lround(20 + 230 * std::min(up, down)));
      }
    double width = 999;
    const int edges = iCalculateFocusEdge(&p, CRectangle(0, 19, 0, 199), 0, 1000, width);
    EXPECT_EQ(edges, 40) << w;  // a rising and a falling edge per line
    EXPECT_NEAR(width, 0.6 * w, 0.15) << w;
    double none = 999;
    EXPECT_EQ(iCalculateFocusEdge(&p, CRectangle(0, 19, 0, 199), 1, 1000, none), 0);  // columns are flat
    EXPECT_EQ(none, 999);
  }
  TPlane<float> f(4, 4);
  double v = 0;
  EXPECT_EQ(codeOf([&] { iCalculateFocusEdge(&f, CRectangle(0, 3, 0, 3), 0, 1000, v); }), 0x5100000UL);

  TPlane<unsigned char> p(30, 120);
  for (int l = 0; l < 30; ++l)
    for (int c = 0; c < 120; ++c) p[l][c] = c < 50 ? 20 : c < 60 ? static_cast<unsigned char>(20 + 23 * (c - 50)) : 250;
  std::unique_ptr<TResultStatistik> curve(TStatistikBasic::pGetStatPtr(eStatTypFocus));
  TPicStatistikFocus st(0, &p, curve.get());
  st.setRLC(TRLCArray(TOPointList<int>(eRectangle, {{0, 0}, {119, 0}, {119, 29}, {0, 29}})));
  st.bConditionalUpdate(true);
  auto* focus = dynamic_cast<TResultCutFocus*>(st.getResult(0, 0));
  ASSERT_NE(focus, nullptr);
  ASSERT_EQ(focus->uiGetSize(), 1u);
  EXPECT_NEAR(focus->vdGetCutX(eMittel)[0], 6, 0.15);
}

#include "statistik/TRLCStandardStatistik.h"

// The integral statistic with its automatic threshold, and the symbol
// statistic's class 2 measured again over the eroded, smoothed symbol.
TEST(PicStatistik, IntegralAutomaticThresholdAndSymbol) {
  TPlane<float> p(40, 40);
  for (int l = 0; l < 40; ++l)
    for (int c = 0; c < 40; ++c) p[l][c] = (l >= 15 && l < 25 && c >= 12 && c < 28) ? 100.0f + (l + c) % 5 : 10.0f + c % 3;
  TObjectList98 list;
  list.append(TOPointList<int>(eRectangle, {{5, 5}, {34, 5}, {34, 34}, {5, 34}}));
  TPixelKlassifikatorTypThresholdIntegral<float> k;
  k.resize(0);
  k.vSetIntegralData(5, 5, 0.5, false);
  TResultStatistik r;
  TPicStatistikIntegral in(0, &p, &r);
  in.setObject(0, &list, false);
  in.vSetKlassifikator(&k);
  in.bConditionalUpdate(true);
  EXPECT_EQ(k.dGetThreshold(0), 0.0);  // set back after the run
  // The same run with the threshold set by hand: min 10, max 104.
  TPixelKlassifikatorTypThresholdIntegral<float> fixed;
  fixed.resize(0);
  fixed.vSetIntegralData(5, 5, 0.5, false);
  fixed.vSetThreshold(0, 10 + 0.1 * 94);
  fixed.vSetThreshold(1, 10 + 0.1 * 94);
  TObjectList98 list2(list);
  TPicStatistikPlaneBasic plain(0, &p, &r);
  plain.setObject(0, &list2, false);
  plain.vSetKlassifikator(&fixed);
  plain.bConditionalUpdate(true);
  const TResultBasicData& c1 = plain.getResult(0, 1)->rRGetXResult();
  const TResultBasicData& c2 = plain.getResult(0, 2)->rRGetXResult();
  ASSERT_GT(c2.dGetCount(), 0);
  EXPECT_EQ(in.getResult(0, 2)->rRGetXResult().dGetCount(), c2.dGetCount());
  const double moved = c1.dGetArea() > 0 ? (c2.dGetMean() * c2.dGetCount() + c1.dGetMean() * c1.dGetCount()) / c2.dGetCount()
                                          : c2.dGetMean();
  EXPECT_NEAR(in.getResult(0, 2)->rRGetXResult().dGetMean(), moved, 1e-9);
  if (c1.dGetArea() > 0) EXPECT_EQ(in.getResult(0, 1)->rRGetXResult().dGetMean(), 0);

  TPixelKlassifikatorTypThresholdSymbol<float> sym;
  sym.resize(0);
  sym.vSetIntegralData(5, 5, 0.5, false);
  sym.vSetThreshold(0, 50);
  sym.vSetThreshold(1, 50);
  sym.vSetSymbolData(3, 1);
  TPicStatistikSymbol st(0, &p, &r);
  st.setObject(0, &list, false);
  st.vSetKlassifikator(&sym);
  st.bConditionalUpdate(true);
  const TPlane<unsigned char>& label = list.rGetLabelPic(&p, 0, false, false);
  std::vector<TRLCArray> byClass;
  TPicture2RLC::vTransform256(label, byClass, 2, 2);
  ASSERT_GT(byClass.size(), 2u);
  TRLCStandardStatistik direct(1, true, true, false, true);
  direct.vCalculate(&p, byClass[2], 1, 1);
  ASSERT_GT(direct.lGetNumber(), 0);
  EXPECT_EQ(st.getResult(0, 2)->rRGetXResult().dGetMax(), direct.dGetMaxV(0));
  EXPECT_EQ(st.getResult(0, 2)->rGetIMaxPosition().x, direct.iGetMaxX(0));
  EXPECT_LE(direct.dGetMaxV(0), 104);
}

#include "rastrix/TPixelColorSpace.h"
#include "statistik/TResultProjection.h"

TEST(PicStatistik, AutomaticThresholdOfColourPictures) {
  TPlane<TRGBFloatPixel> p(30, 30);
  double lo = 1e300, hi = -1e300;
  TPixelColorSpace cs;
  for (int l = 0; l < 30; ++l)
    for (int c = 0; c < 30; ++c) {
      const float v = (l >= 10 && l < 20 && c >= 10 && c < 20) ? 200.0f : 20.0f + c % 4;
      p[l][c].r = v, p[l][c].g = v * 0.8f, p[l][c].b = v * 0.5f;
      cs.vSetColor(p[l][c], TPixelColorSpace::CIE_RGB);
      lo = std::min<double>(lo, cs.rGetColor(TPixelColorSpace::XYZ).g);
      hi = std::max<double>(hi, cs.rGetColor(TPixelColorSpace::XYZ).g);
    }
  TObjectList98 list;
  list.append(TOPointList<int>(eRectangle, {{0, 0}, {29, 0}, {29, 29}, {0, 29}}));
  auto run = [&](double threshold) {
    TPixelKlassifikatorTypThresholdIntegral<TRGBFloatPixel> k;
    k.resize(0);
    k.vSetIntegralData(5, 5, 0.5, false);
    k.vSetThreshold(0, threshold);
    k.vSetThreshold(1, threshold);
    TResultStatistik r;
    TPicStatistikIntegral st(0, &p, &r);
    st.setObject(0, &list, false);
    st.vSetKlassifikator(&k);
    st.bConditionalUpdate(true);
    EXPECT_EQ(k.dGetThreshold(0), threshold);
    return st.getResult(1, 2)->rRGetXResult().dGetCount();
  };
  const double automatic = run(0.0);
  EXPECT_GT(automatic, 0);
  EXPECT_EQ(automatic, run(lo + 0.1 * (hi - lo)));
}

// Border statistics, locked items, values from no picture, colour triples.
TEST(PicStatistik, BorderLockDoubleAndColour) {
  TPlane<float> p(40, 40);
  for (int l = 0; l < 40; ++l)
    for (int c = 0; c < 40; ++c) p[l][c] = static_cast<float>(c);
  TObjectList98 list;
  list.append(TOPointList<int>(eCircle, {{20, 20}, {30, 20}}));
  list.append(TOPointList<int>(eLine, {{5, 5}, {15, 5}}));
  std::unique_ptr<TResultStatistik> cut(TStatistikBasic::pGetStatPtr(eStatTypSchnitt));
  TPicStatistikPlaneBasic circle(0, &p, cut.get());
  circle.setObject(0, &list, true);
  circle.bConditionalUpdate(true);
  const auto* xy = dynamic_cast<TResultCutXY*>(circle.getResult(0, 0));
  ASSERT_NE(xy, nullptr);
  const std::vector<double> ref = xy->vdGetCutX(eReferenz);
  ASSERT_EQ(ref.size(), TBorderLine(list[0]).size());
  EXPECT_EQ(ref[0], 0);
  EXPECT_NEAR(ref.back(), 360.0 * (ref.size() - 1) / ref.size(), 1e-9);  // degrees
  EXPECT_EQ(xy->vdGetCutX(eMittel)[0], 20);  // the top point first
  TPicStatistikPlaneBasic line(1, &p, cut.get());
  line.setObject(1, &list, true);
  line.bConditionalUpdate(true);
  EXPECT_EQ(dynamic_cast<TResultCutXY*>(line.getResult(0, 0))->vdGetCutX(eReferenz).back(), 10);

  // A locked item runs only when first-locked: then once, and holds.
  TStatistikBasicVector v;
  TResultStatistik r;
  auto held = std::make_unique<TPicStatistikPlaneBasic>(0, &p, &r);
  held->setObject(0, &list, false);
  TStatistikBasic* h = held.get();
  v.append(std::move(held));
  h->vFirstLock(true);
  v.bUpdateObjects(false, true, eStatTypStandard);
  EXPECT_TRUE(h->bIsLock());
  EXPECT_FALSE(h->bIsFirstLock());
  const double count = h->getResult(0, 0)->rRGetTResult().dGetCount();
  EXPECT_EQ(count, 1);
  p.setTimeStamp();
  EXPECT_FALSE(v.bUpdateObjects(true, false, eStatTypStandard));
  EXPECT_EQ(h->getResult(0, 0)->rRGetTResult().dGetCount(), count);

  TDoubleStatistikBasic d(&r);
  d.vSetVector({1, 2, 3}, {10, 20, 60});
  d.getResult(0, 0)->stop();
  EXPECT_EQ(d.getResult(0, 0)->rRGetXResult().dGetMean(), 30);
  bool newCalc = false;
  EXPECT_FALSE(d.bNeedUpdate(newCalc));

  // Colour triples: into the display space; L x y keeps its first channel only.
  TPlane<TRGBFloatPixel> rgb(4, 4);
  for (int l = 0; l < 4; ++l)
    for (int c = 0; c < 4; ++c) rgb[l][c].r = 100.0f + c, rgb[l][c].g = 50, rgb[l][c].b = 20;
  const TRLCArray all(TOPointList<int>(eRectangle, {{0, 0}, {3, 0}, {3, 3}, {0, 3}}));
  rgb.rGetPixelColorSpace().vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::CIE_RGB);
  TRLCStandardStatistik back(3);
  back.vCalculate(&rgb, all, 0, 0);
  EXPECT_NEAR(back.dGetMean(0), 101.5, 1e-3);  // XYZ and back to CIE RGB
  EXPECT_NEAR(back.dGetMean(2), 20, 1e-3);
  EXPECT_EQ(back.iGetMaxX(0), 0);  // positions of the luminance only
  rgb.rGetPixelColorSpace().vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::LXY);
  TRLCStandardStatistik lxy(3);
  lxy.vCalculate(&rgb, all, 0, 0);
  EXPECT_GT(lxy.dGetMean(0), 0);
  EXPECT_EQ(lxy.dGetMean(1), 0);
  EXPECT_EQ(lxy.dGetMean(2), 0);
}
