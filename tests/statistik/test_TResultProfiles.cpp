// Histograms, projections, line profiles and series: the Part's edge cases,
// seeded runs against numpy, merging and ini round trips.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "../rastrix/RastrixTestUtil.h"
#include "file98/TKxMemIniFile.h"
#include "platform/Clock.h"
#include "rastrix/TPlane.h"
#include "statistik/TResultCutTime.h"
#include "statistik/TResultHist.h"
#include "statistik/TResultProjection.h"

using kx::platform::ManualClock;
using kx::platform::ScopedClock;
using rastrixtest::codeOf;

namespace {

std::vector<double> numbers(const std::string& text) {
  std::istringstream in(text);
  std::vector<double> v;
  for (double d; in >> d;) v.push_back(d);
  return v;
}

std::string list(const std::vector<double>& v) {
  std::ostringstream o;
  o.precision(17);
  for (double d : v) o << d << ",";
  return o.str();
}

void expectNear(const std::vector<double>& got, const std::vector<double>& ref, std::size_t at, const char* what) {
  ASSERT_LE(at + got.size(), ref.size()) << what;
  for (std::size_t i = 0; i < got.size(); ++i)
    EXPECT_NEAR(got[i], ref[at + i], 1e-9 * (1 + std::fabs(ref[at + i]))) << what << " " << i;
}

}  // namespace

TEST(ResultProfiles, HistogramBins) {
  TResultHist h;
  h.setHistStartStepStop(0, 1, 10, true);
  EXPECT_EQ(h.uGetClassCount(), 13u);
  const std::pair<double, unsigned> cases[] = {{-1, 0}, {0, 1}, {9.99, 10}, {10, 11}, {10.5, 12}, {NAN, 0}};
  for (auto [v, k] : cases) EXPECT_EQ(h.uGetClass(v), k) << v;
  h.addValue(0.2, 1);
  EXPECT_EQ(h.rGetEntry(1).dGetReferenzD(), 0.5);
  EXPECT_EQ(h.rGetEntry(0).dGetReferenzD(), -1);
  EXPECT_EQ(h.rGetEntry(12).dGetReferenzD(), 11);
  h.setHistStartCountStop(2, 4, 4, false);
  double start, step, stop;
  h.getHistStartStepStop(start, step, stop);
  EXPECT_EQ(step, 0.5);

  TResultHist flat;  // step 0 through the ini: three bins, everything inside in bin 1
  TKxMemIniFile ini;
  ini.vWriteFloat("H", "Step", 0);
  EXPECT_EQ(codeOf([&] { flat.vReadIni(&ini, "H"); }), 0x5100000UL);
  const std::pair<const char*, double> bad[] = {{"Step", -1}, {"Stop", -5}, {"Step", 1e-12}, {"Start", INFINITY}};
  for (auto [key, v] : bad) {
    TKxMemIniFile b;
    b.vWriteFloat("H", key, v);
    EXPECT_EQ(codeOf([&] { flat.vReadIni(&b, "H"); }), 0x5100000UL) << key;
  }
  EXPECT_EQ(codeOf([&] { flat.setHistStartStepStop(0, 0, 1, true); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { flat.setHistStartCountStop(1, 0, 2, true); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { flat.setHistStartCountStop(3, 5, 2, true); }), 0x5100000UL);
  flat.getHistStartStepStop(start, step, stop);
  EXPECT_EQ(step, 1);  // nothing taken over from the refused calls

  // Automatic bins: integer planes step 1, float planes (max - min) / n.
  Rastrix::TPlane<unsigned char> uc(4, 5);
  uc[0][0] = 3;
  uc[3][4] = 40;
  TResultHist a;
  a.setPictureProperties(&uc, 0);
  a.getHistStartStepStop(start, step, stop);
  EXPECT_EQ(start, 0);
  EXPECT_EQ(step, 1);
  EXPECT_EQ(stop, 40);
  EXPECT_EQ(a.rStrGetUnit(), "1");
  Rastrix::TPlane<float> f(100, 100);
  f.setRectangle(2.5f);
  TResultHist b;
  b.setPictureProperties(&f, 0);  // a flat picture: min - 1 .. max + 1 in 100 bins
  b.getHistStartStepStop(start, step, stop);
  EXPECT_DOUBLE_EQ(step, 0.02);
  Rastrix::TPlane<float> small(5, 5);  // 25 pixels: at least 10 bins
  TResultHist c;
  c.setPictureProperties(&small, 0);
  c.getHistStartStepStop(start, step, stop);
  EXPECT_DOUBLE_EQ(step, 0.2);
  b.vSetFixed(true);
  b.setPictureProperties(&small, 0, 0, 1000);
  b.getHistStartStepStop(start, step, stop);
  EXPECT_DOUBLE_EQ(step, 0.02);  // fixed bins stay
}

// Three seeded runs of 1000 values into the standard result, the histogram,
// the bit histogram and the short-time window; numpy computes each number
// its own way (argmin for the first position, digitize-like floors for the
// bins, absolute run numbers for the ring).
TEST(ResultProfiles, SeededRunsAgainstNumpy) {
  std::mt19937 rng(77);
  const int L = 20, C = 50;
  std::vector<double> vals;
  TResultStatistik st;
  TResultHist h;
  h.setHistStartStepStop(10, 7, 90, true);
  h.vSetIntegral(true);
  TResultBitHist bits;
  bits.setHistStartStepStop(0, 1, 8, true);
  for (int run = 0; run < 3; ++run) {
    for (int l = 0; l < L; ++l)
      for (int c = 0; c < C; ++c) {
        const double v = (rng() % 5 == 0) ? 42.0 : static_cast<double>(rng() % 110);
        vals.push_back(v);
        st.addValueLC(v, 0.5 * l, 2.0 * c, 1, l, c);
        h.addValueLC(v, 0, 0, 1, l, c);
        bits.addValueLC(v, 0, 0, 1, l, c);
      }
    st.stop();
    h.stop();
    bits.stop();
  }
  ManualClock clock(1000);
  ScopedClock scoped(&clock);
  TResultCutTimeShort win;
  win.vSetSpan(2.0);
  TResultCutTimeShort wide;  // nothing expires: the ring wraps over its read index
  wide.vSetSpan(1e9);
  std::vector<double> winRes, wideRes, times, means;
  for (int k = 0; k < 230; ++k) {
    clock.advance(k % 25 == 1 ? 900 : 25);  // run 100, at ring index 0, expires alone
    const double m = vals[static_cast<std::size_t>(k)];
    times.push_back(static_cast<double>(clock.nowMs()));
    means.push_back(m);
    for (TResultCutTimeShort* w : {&win, &wide}) {
      w->addValue(m, 1);
      w->stop();
    }
    for (int t : {1, 2, 3, 4}) winRes.push_back(win.rRGetXResult().dpGetErg()[t]);
    for (int t : {1, 2, 3, 4}) wideRes.push_back(wide.rRGetXResult().dpGetErg()[t]);
  }
  const std::string script =
      "import numpy as np\n"
      "v=np.array([" + list(vals) + "]).reshape(3,20,50)\n"
      "o=[]\n"
      "x=v[2].ravel()\n"
      "o+=[x.size,x.mean(),x.std(ddof=1),x.min(),x.max(),np.argmin(x)%50,np.argmin(x)//50,np.argmax(x)%50]\n"
      "cl=lambda a: np.where(a<10,0,np.where(a>90,13,np.floor((a-10)/7+1))).astype(int)\n"
      "cnt=[np.bincount(cl(v[r].ravel()),minlength=14) for r in range(3)]\n"
      "ref=np.array([3.]+[(i-0.5)*7+10 for i in range(1,13)]+[97.])\n"
      "c=cnt[2]; f=0; b=13\n"
      "while f<b and (ref[f]<10 or c[f]==0): f+=1\n"
      "while b>f and (ref[b]>90 or c[b]==0): b-=1\n"
      "o+=[f,b]+list(np.cumsum(c[f:b]))+list(np.mean(cnt,axis=0))\n"
      "xi=v[2].ravel().astype(int)\n"
      "o+=[((xi>>k)&1).mean() for k in range(9)]\n"
      "t=np.array([" + list(times) + "]); m=np.array([" + list(means) + "])\n"
      "for span in (2.0,1e9):\n"
      " r=0\n"
      " for k in range(len(m)):\n"
      "  js=list(range(k-(k-r)%100,k)); w=m[js+[k]]\n"
      "  s=w.std(ddof=1) if w.size>1 else 0.0\n"
      "  o+=[w.mean(),s,w.min(),w.max()]\n"
      "  ex=[j for j in js if 0.001*(t[k]-t[j])>span]\n"
      "  if ex and ex[-1]%100>0: r=ex[-1]\n"
      "print(*[repr(float(z)) for z in o])\n";
  const std::vector<double> ref = numbers(rastrixtest::run("/usr/bin/python3 -c '" + script + "'"));
  ASSERT_GT(ref.size(), 10u);
  ASSERT_EQ(ref.size(), 8 + 2 + static_cast<std::size_t>(ref[9] - ref[8]) + 14 + 9 + 2 * 4 * 230u);
  const double* e = st.rRGetXResult().dpGetErg();
  expectNear({e[0], e[1], e[2], e[3], e[4]}, ref, 0, "standard");
  EXPECT_EQ(st.rGetIMinPosition().x, ref[5]);
  EXPECT_EQ(st.rGetIMinPosition().y, ref[6]);
  EXPECT_EQ(st.rGetIMaxPosition().x, ref[7]);
  EXPECT_EQ(st.rGetDMinPosition().x, 2 * ref[5]);
  const std::size_t front = static_cast<std::size_t>(ref[8]), back = static_cast<std::size_t>(ref[9]);
  const std::vector<double> cum = h.vdGetCut(0, eMittel, false);
  ASSERT_EQ(cum.size(), back - front);
  expectNear(cum, ref, 10, "cumulative histogram");
  const std::vector<double> overRuns = h.TResultCut::vdGetCut(1, eMittel, false);  // every bin
  expectNear(overRuns, ref, 10 + cum.size(), "bin means over runs");
  std::vector<double> shares;
  for (unsigned b = 1; b <= 9; ++b) shares.push_back(bits.rGetEntry(b).rRGetXResult().dGetMean());
  const std::size_t at = 10 + cum.size() + 14;
  expectNear(shares, ref, at, "bit shares");
  expectNear(winRes, ref, at + 9, "window");
  expectNear(wideRes, ref, at + 9 + winRes.size(), "wrapped window");
  EXPECT_EQ(wide.uiGetSize(), 230u);
  EXPECT_EQ(wide.rGetShortResult().rRGetXResult().dGetMean(), wideRes[wideRes.size() - 4]);
}

// Splitting the pixels in two and merging gives what one pass gives; so does
// feeding each line as one run.
TEST(ResultProfiles, MergeEqualsOnePass) {
  std::mt19937 rng(5);
  auto make = [](int kind) -> std::unique_ptr<TResultBasic> {
    switch (kind) {
      case 0: return std::make_unique<TResultStatistik>();
      case 1: {
        auto h = std::make_unique<TResultHist>();
        h->setHistStartStepStop(0, 3, 60, true);
        return h;
      }
      case 2: {
        auto p = std::make_unique<TResultProjection>();
        p->vSetProjectionAngleStepRegion(0, 2, CRectangle(0, 9, 0, 9));
        return p;
      }
      case 3: return std::make_unique<TResultCutXY>();
      default: {
        auto b = std::make_unique<TResultBitHist>();
        b->setHistStartStepStop(0, 1, 6, true);
        return b;
      }
    }
  };
  for (int kind = 0; kind < 5; ++kind) {
    auto whole = make(kind), a = make(kind), b = make(kind), runs = make(kind);
    for (int l = 0; l < 10; ++l) {
      double line[10];
      for (int c = 0; c < 10; ++c) {
        const double v = line[c] = static_cast<double>(rng() % 64);
        whole->addValueLC(v, l * 0.5, c * 1.5, 1, l, c);
        (l < 4 ? a : b)->addValueLC(v, l * 0.5, c * 1.5, 1, l, c);
      }
      runs->addValuesLC(line, 4, l * 0.5, 0, 1.5, -1, l, 0);
      runs->addValuesLC(line + 4, 6, l * 0.5, 6, 1.5, 1, l, 4);
    }
    a->vMerge(*b);
    for (auto* r : {whole.get(), a.get(), runs.get()}) r->stop();
    const auto* w = dynamic_cast<TResultBSchwerpunkt*>(whole.get());
    for (auto* r : {a.get(), runs.get()}) {
      const auto* m = dynamic_cast<TResultBSchwerpunkt*>(r);
      for (int t = 0; t <= eYMax; ++t) EXPECT_NEAR(m->dGetNumber(t), w->dGetNumber(t), 1e-9) << kind << " " << t;
      if (auto* wc = dynamic_cast<TResultCut*>(whole.get())) {
        auto* mc = dynamic_cast<TResultCut*>(r);
        EXPECT_EQ(mc->vdGetCutX(eMittel), wc->vdGetCutX(eMittel)) << kind;
        EXPECT_EQ(mc->vdGetCutX(eReferenz), wc->vdGetCutX(eReferenz)) << kind;
      }
    }
  }
  TResultHist h;
  TResultCut cut;
  EXPECT_EQ(codeOf([&] { cut.vMerge(h); }), 0x5100000UL);
  TResultHist other;
  other.setHistStartStepStop(0, 2, 10, true);
  EXPECT_EQ(codeOf([&] { h.vMerge(other); }), 0x5100000UL);
}

TEST(ResultProfiles, ProjectionAndLineProfile) {
  TResultProjection p;
  // Angle 0: distance from the region's left edge, in bins of 2 columns.
  p.vSetProjectionAngleStepRegion(0, 2, CRectangle(10, 14, 20, 26));
  EXPECT_EQ(p.uGetBins(), 4u);
  EXPECT_EQ(p.uGetClass(14, 25), 2u);
  EXPECT_EQ(p.uGetClass(12, 99), 3u);
  p.vSetProjectionAngleStepRegion(30, 1, CRectangle(10, 14, 20, 26));  // any other angle: from the top edge
  EXPECT_EQ(p.uGetBins(), 5u);
  for (int l = 10; l <= 14; ++l)
    for (int c = 20; c <= 26; ++c) p.addValueLC(l * 10 + c, l, c, 1, l, c);
  p.stop();
  EXPECT_EQ(p.vdGetCutX(eMittel), (std::vector<double>{123, 133, 143, 153, 163}));
  EXPECT_EQ(p.vdGetCutX(eAnz), std::vector<double>(5, 7));
  EXPECT_EQ(codeOf([&] { p.vSetProjectionAngleStepRegion(0, 0, CRectangle(0, 1, 0, 1)); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { p.vSetProjectionAngleStepRegion(0, 1e-9, CRectangle(0, 1, 0, 100000)); }), 0x5100000UL);
  EXPECT_EQ(p.uGetBins(), 5u);

  TResultCutXY xy;
  const int pts[][2] = {{0, 0}, {3, 4}, {3, 5}, {6, 9}};
  for (auto& q : pts) xy.addValueLC(1, q[1], q[0], 1, q[1], q[0]);
  xy.stop();
  EXPECT_EQ(xy.vdGetCutX(eReferenz), (std::vector<double>{0, 5, 6, 11}));
  xy.setReferenzCursorXY(0, 2);
  xy.vCorrectReferenzOffset();
  EXPECT_EQ(xy.vdGetCutX(eReferenz), (std::vector<double>{-2, 3, 4, 9}));
  xy.vCorrectReferenzOffset(3, 4);  // no longer kept: nothing moves
  EXPECT_EQ(xy.vdGetCutX(eReferenz)[0], -2);
  xy.vCorrectReferenzToCircle();
  EXPECT_EQ(xy.vdGetCutX(eReferenz), (std::vector<double>{0, 90, 180, 270}));
  EXPECT_EQ(xy.rStrGetUnitRef(), "°");
}

TEST(ResultProfiles, TimeSeries) {
  ManualClock clock(5000);
  ScopedClock scoped(&clock);
  TResultCutTime t;
  for (int run = 0; run < 3; ++run) {
    t.addValueLC(run + 1, 0, 0, 1, 0, 0);
    t.addValueLC(run + 3, 0, 0, 1, 0, 1);
    t.stop();
    clock.advance(250);
  }
  EXPECT_EQ(t.vdGetCutX(eReferenz), (std::vector<double>{0, 0.25, 0.5}));
  EXPECT_EQ(t.vdGetCutX(eMittel), (std::vector<double>{2, 3, 4}));
  t.vSetResetPending();
  t.addValue(9, 1);
  t.stop();  // only the reset
  EXPECT_EQ(t.uiGetSize(), 0u);
  EXPECT_FALSE(t.bGetResetPending());

  TResultCutMotor m;
  double pos = 7.5;
  m.vSetReferenzPointer(&pos);
  m.addValue(1, 1);
  m.stop();
  pos = -2;
  m.addValue(2, 1);
  m.stop();
  EXPECT_EQ(m.vdGetCutX(eReferenz), (std::vector<double>{7.5, -2}));

  TResultCutFocus f;
  f.vSetUseIndex(true);
  for (int run = 0; run < 4; ++run) {
    f.addValue(run, 1);
    f.stop();
    if (run % 2) f.stopVerlauf();  // the caller chooses the runs of the curve
  }
  EXPECT_EQ(f.vdGetCutX(eMittel), (std::vector<double>{1, 3}));
  EXPECT_EQ(f.vdGetCutX(eReferenz), (std::vector<double>{0, 1}));

  TResultCutTimeShort s;  // index mode: a window of 3 runs
  s.vSetUseIndex(true);
  s.vSetSpan(3);
  std::vector<double> windowMeans;
  for (double v : {1.0, 2.0, 3.0, 4.0, 5.0}) {
    s.addValue(v, 1);
    s.stop();
    windowMeans.push_back(s.rRGetXResult().dGetMean());
  }
  EXPECT_EQ(windowMeans, (std::vector<double>{1, 1.5, 2, 3, 4}));
  s.vCorrectReferenzOffset();
  EXPECT_EQ(s.vdGetCutX(eReferenz), (std::vector<double>{-4, -3, -2, -1, 0}));
}

TEST(ResultProfiles, IniRoundTrips) {
  std::vector<std::unique_ptr<TResultStatistik>> all;
  auto h = std::make_unique<TResultHist>();
  h->setHistStartStepStop(-3, 0.25, 9, true);
  h->vSetIntegral(true);
  all.push_back(std::move(h));
  auto b = std::make_unique<TResultBitHist>();
  b->setHistStartStepStop(0, 1, 12, false);
  all.push_back(std::move(b));
  auto p = std::make_unique<TResultProjection>();
  p->vSetProjectionAngleStepRegion(15, 0.5, CRectangle(2, 40, 3, 60));
  all.push_back(std::move(p));
  all.push_back(std::make_unique<TResultCutXY>());
  auto t = std::make_unique<TResultCutTime>();
  t->vSetUseIndex(true);
  all.push_back(std::move(t));
  auto m = std::make_unique<TResultCutMotor>();
  m->vSetMotorNumber(3);
  m->vSetUseReferenz(true);
  all.push_back(std::move(m));
  auto s = std::make_unique<TResultCutTimeShort>();
  s->vSetSpan(1e9);  // a huge span allocates nothing: the ring is fixed
  s->vSetUseTimeReference(false);
  all.push_back(std::move(s));
  for (auto& r : all) {
    r->setValueUnit("L", "cd/m²");
    TKxMemIniFile a, c;
    r->vWriteIni(&a, "R");
    std::unique_ptr<TResultStatistik> blank(r->pVirtualClone());
    blank->vReset();
    blank->vReadIni(&a, "R");
    blank->vWriteIni(&c, "R");
    EXPECT_EQ(a.sWriteToString(), c.sWriteToString());
    EXPECT_NE(a.sWriteToString().find("cd/m²"), std::string::npos);
  }
  TKxMemIniFile odd;
  odd.vWriteString("R", "Start", "abc");  // not a number: the value stays
  odd.vWriteString("R", "Span", "nan");
  TResultHist hist;
  hist.vReadIni(&odd, "R");
  double start, step, stop;
  hist.getHistStartStepStop(start, step, stop);
  EXPECT_EQ(start, 0);
  TResultCutTimeShort win;
  EXPECT_EQ(codeOf([&] { win.vReadIni(&odd, "R"); }), 0x5100000UL);
  EXPECT_EQ(win.dGetSpan(), 15);
  TResultStatistik r;
  r.setValueUnit("L", "cd/m²");
  r.addValue(2.5, 1);
  r.stop();
  EXPECT_EQ(r.strFormat(eMittel), "Mittel = 2.5 cd/m²");
}
