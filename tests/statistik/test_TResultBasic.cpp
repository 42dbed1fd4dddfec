#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "kxexception/KxError.h"
#include "statistik/TResultBasic.h"

TEST(ResultBasic, StatisticsOverRuns) {
  TResultBasicData d;
  for (double v : {2.0, 4.0, 4.0, 4.0, 5.0, 5.0, 7.0, 9.0}) d.addValue(v, -0.5, false);
  d.updateErg();
  EXPECT_EQ(d.dGetCount(), 8);
  EXPECT_EQ(d.dGetMean(), 5);
  EXPECT_DOUBLE_EQ(d.dGetSigma(), std::sqrt(32.0 / 7));  // n - 1
  EXPECT_EQ(d.dGetMin(), 2);
  EXPECT_EQ(d.dGetMax(), 9);
  EXPECT_EQ(d.dGetArea(), 4);  // |area| summed
  d.stop(true);
  d.addValue(-3, 1, true);  // the next value starts anew
  EXPECT_EQ(d.dGetCount(), 1);
  EXPECT_EQ(d.dGetMean(), -3);
  EXPECT_EQ(d.dGetSigma(), 0);
  TResultBasicData counter;
  for (int i = 0; i < 5; ++i) counter.incValue(true);
  EXPECT_EQ(counter.dGetMean(), 5);  // a histogram bin's count
  EXPECT_EQ(counter.dGetCount(), 1);
  EXPECT_STREQ(TResultBasicData::cppStrGetName(2), "Sigma");
  EXPECT_STREQ(TResultBasicData::cppStrGetName(15), "");

  // Two runs: the mean of each run becomes a value across runs.
  TResultBasic r;
  r.vSetTimeValue(eReferenz);
  EXPECT_EQ(r.eGetTimeValue(), eMittel);
  for (double run : {10.0, 20.0}) {
    r.addValue(run - 1, 1);
    r.addValue(run + 1, 1);
    r.stop();
  }
  EXPECT_EQ(r.rRGetTResult().dGetCount(), 2);
  EXPECT_EQ(r.rRGetTResult().dGetMean(), 15);
  EXPECT_EQ(r.rRGetXResult().dGetMean(), 20);
}

TEST(ResultBasic, CentresPositionsAndItems) {
  TResultBSchwerpunkt s;
  // Values 1, 3 at columns 0, 2 of line 5; world x = 10 * column.
  s.addValueLC(3, 50, 0, 1, 5, 0);
  s.addValueLC(1, 50, 20, 1, 5, 2);
  s.addValueLC(3, 50, 30, 1, 5, 3);  // equal to the maximum: the first stays
  s.vSetTimeValue(eXS);
  s.stop();
  EXPECT_DOUBLE_EQ(s.rGetISchwerpunkt().x, (0 * 3 + 2 * 1 + 3 * 3) / 7.0);
  EXPECT_DOUBLE_EQ(s.rGetDSchwerpunktGeo().x, 50.0 / 3);
  EXPECT_EQ(s.rGetIMaxPosition().x, 0);
  EXPECT_EQ(s.rGetIMinPosition().x, 2);
  EXPECT_EQ(s.rGetDMinPosition().x, 20);
  EXPECT_DOUBLE_EQ(s.rRGetTResult().dGetMean(), s.rGetDSchwerpunkt().x);
  s.stop();  // a second stop without values clears the centres
  EXPECT_EQ(s.rGetISchwerpunkt().x, 0);
  // All zeros: the weighted centre is the geometric one.
  s.addValueLC(0, 0, 4, 1, 0, 4);
  s.addValueLC(0, 0, 8, 1, 0, 8);
  s.stop();
  EXPECT_EQ(s.rGetDSchwerpunkt().x, 6);

  s.vAddItem2List("r ", "mm");
  s.vSetItemListValue(0, 2.5);
  std::string name, unit;
  s.vGetItemListNameUnit(0, name, unit);
  EXPECT_EQ(name + unit, "r mm");
  try {
    s.vSetItemListValue(1, 0);
    ADD_FAILURE();
  } catch (unsigned long c) {
    kx::deleteError();
    EXPECT_EQ(c, 0x5100000UL);
  }
}

#include "statistik/TResultCut.h"

TEST(ResultBasic, ProfileOverRuns) {
  TResultCut cut;
  for (int run = 0; run < 2; ++run) {
    for (int i = 0; i < 150; ++i) cut.addValue(i + 10.0 * run, 1);  // grows past 100 entries
    cut.stop();
  }
  EXPECT_EQ(cut.uiGetSize(), 150u);
  EXPECT_EQ(cut.uiGetAktPos(), 0u);
  const auto x = cut.vdGetCutX(eMittel), t = cut.vdGetCutT(eMittel), ref = cut.vdGetCutX(eReferenz);
  ASSERT_EQ(x.size(), 150u);
  EXPECT_EQ(x[120], 130);        // the last run
  EXPECT_EQ(t[120], 125);        // the mean over both runs
  EXPECT_EQ(ref[120], 120);      // the reference is the index
  EXPECT_EQ(cut.rRGetTResult().dGetCount(), 2);
  cut.addValue(1, 1);            // a shorter run overwrites from the start
  cut.stop();
  EXPECT_EQ(cut.uiGetSize(), 1u);
  cut.vTakeOverCut({42});
  EXPECT_EQ(cut.vdGetCutX(eMittel), std::vector<double>{42});
  TResultCut other;
  other.vTakeOverData(cut);
  EXPECT_EQ(other.vdGetCutX(eMittel), std::vector<double>{42});
  TResultStatistik s;
  s.setReferenzCursorXY(3, 4);
  EXPECT_DOUBLE_EQ(s.dGetNewReferenzD(0, 0), -5);
  EXPECT_DOUBLE_EQ(s.dGetNewReferenzD(6, 8), 5);
}
