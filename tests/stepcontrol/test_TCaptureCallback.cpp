// The operator's side: progress, cancel and wait, the up-down element, the
// automatic exposure of the live dialogue, the capture settings, and the
// hooks for questions and pending messages.
#include <gtest/gtest.h>

#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "platform/Notice.h"
#include "stepcontrol/TCaptureCallback.h"

namespace {
TStepControl table() {
  TStepControl s;
  TKxMemIniFile ini;
  ini.vReadFromString("[T]\nNumber=2\nMin0=0.001\nMax0=0.01\nStep0=0.001\nMin1=0.02\nMax1=0.1\nStep1=0.01\nCurrent=0.005\n");
  s.readIni(&ini, "T");
  return s;
}
}  // namespace

TEST(CaptureCallback, ProgressCancelWaitAndHooks) {
  int pumped = 0;
  auto oldPump = kx::platform::setMessagePump([&] { ++pumped; });
  TCaptureCallback cb;
  cb.vFirstIntegrationTime(0.04);
  EXPECT_EQ(cb.rGetCountText(), "0");
  cb.vSetCountPicAll(3);
  EXPECT_FALSE(cb.NewCamPic(0.04));
  EXPECT_FALSE(cb.NewCamPic(0.02, 1.5, "a.pf"));
  EXPECT_EQ(cb.iGetCount(), 2);
  EXPECT_NE(cb.rGetCountText().find("2"), std::string::npos);
  EXPECT_NE(cb.rGetCountText().find("3"), std::string::npos);
  EXPECT_EQ(cb.rGetFileText(), "a.pf");
  EXPECT_NE(cb.rGetInfoText().find("s k="), std::string::npos);
  EXPECT_EQ(pumped, 2);
  cb.vToggleWait();
  bool cancel = true;
  EXPECT_TRUE(cb.bIsWait(cancel));
  EXPECT_FALSE(cancel);
  TCaptureCallback::vResetCancelAll();
  cb.vCancel();
  EXPECT_FALSE(cb.bIsWait(cancel));
  EXPECT_TRUE(cancel);
  EXPECT_TRUE(cb.NewCamPic(0.01));
  EXPECT_TRUE(TCaptureCallback::bGetCancelAll());
  TCaptureCallback::vResetCancelAll();
  kx::platform::setMessagePump(oldPump);

  std::string asked;
  auto oldSink = kx::platform::setNoticeSink([&](kx::platform::eNoticeKind, const std::string&, const std::string& t) { asked = t; });
  EXPECT_FALSE(kx::platform::askYesNo("Frage", "Daten trotzdem übernehmen?"));  // default: No
  EXPECT_NE(asked.find("übernehmen"), std::string::npos);
  auto oldQ = kx::platform::setQuestionHandler([](const std::string&, const std::string&) { return true; });
  EXPECT_TRUE(kx::platform::askYesNo("Frage", "?"));
  kx::platform::setQuestionHandler(oldQ);
  kx::platform::setNoticeSink(oldSink);
}

TEST(CaptureCallback, DialogueModels) {
  TIntegrationTimeDlgElement e;
  e.init(table());
  EXPECT_EQ(e.getValue(), 0.005);
  e.vUpDown(3);
  EXPECT_NEAR(e.getValue(), 0.006, 1e-12);
  EXPECT_EQ(e.iGetUpDown(), 2);
  e.vUpDown(1);
  e.vUpDown(1);
  EXPECT_NEAR(e.getValue(), 0.004, 1e-12);

  TIntTimeDlg d;
  d.init(table());
  d.vSetBand(0.6, 0.9, 255);
  EXPECT_FALSE(d.vGetPictureParam(255));  // automatic exposure off
  d.vSetAutoScan(true);
  EXPECT_TRUE(d.vGetPictureParam(255));  // overdriven: shorter
  EXPECT_NEAR(d.getValue(), 0.004, 1e-12);
  EXPECT_TRUE(d.vGetPictureParam(10));  // dark: longer
  EXPECT_NEAR(d.getValue(), 0.005, 1e-12);
  EXPECT_FALSE(d.vGetPictureParam(200));  // in the band
  d.setValue(0.1);
  d.vHeller();
  EXPECT_EQ(d.getValue(), 0.1);  // the end of the table

  TCaptureDialog c;
  TStepControl s;
  TKxMemIniFile ini;
  ini.vReadFromString(
      "[Messung]\nHighDyn=1\nSinglePic=0\nScanTimeMulti=2.5\nNumber=1\nMin0=0.001\nMax0=0.01\nStep0=0.001\n");
  c.readIni(&ini, &s, "Messung");
  EXPECT_TRUE(c.bHighDyn);
  EXPECT_FALSE(c.bSinglePic);
  EXPECT_EQ(c.dScanTimeMulti, 2.5);
  EXPECT_EQ(s.getLastValue(), 0.01);
  try {
    c.readIni(&ini, &s, "Fehlt");
    ADD_FAILURE();
  } catch (unsigned long code) {
    EXPECT_NE(kx::formatErrorChain().find("[Fehlt]"), std::string::npos);
    kx::deleteError();
    EXPECT_EQ(code, 0xe5123001UL);
  }
}
