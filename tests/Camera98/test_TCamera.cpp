// Camera registers and register lists, the modulation rule, the time until
// the next frame, and the camera's ini, on a camera kept in memory.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <functional>

#include "Camera98/TCamera.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"
#include "platform/Clock.h"

namespace {

unsigned long codeOf(const std::function<void()>& f) {
  try {
    f();
  } catch (unsigned long c) {
    kx::deleteError();
    return c;
  }
  return 0;
}

class TMemConnector : public TCameraConnector {
 public:
  void init(TKxIniFile*) override {}
  // A line time of 10 us.
  double dValidateScanTime(double t) override { return std::round(t / 1e-5) * 1e-5; }
};

class TMemCamera : public TCamera {
 public:
  using TCamera::TCamera;
  const char* cpGetCameraModel() const override { return "memory"; }
};

TCameraRegisterVector state(double gain, double offset, double aperture) {
  TCameraRegisterVector v;
  v.vSetRegister(TCameraRegister::eGain, gain);
  v.vSetRegister(TCameraRegister::eOffset, offset);
  v.vSetRegister(TCameraRegister::eAperture, aperture);
  return v;
}

}  // namespace

TEST(CameraRegister, VectorsAndLists) {
  EXPECT_STREQ(TCameraRegister::cpGetStringFromType(9), "StdTime");
  EXPECT_STREQ(TCameraRegister::cpGetStringFromType(33), "FirmwareRevision");
  EXPECT_STREQ(TCameraRegister::cpGetStringFromType(20), "Unknown");
  TCameraRegister plain;
  EXPECT_EQ(plain.strGetName(), "Name");
  EXPECT_EQ(plain.dGetMax(), 255.0);

  TCameraRegisterVectorList list;
  TCameraRegisterVector& weights = list.rGetDefaults();
  weights = state(0, 0, 0);
  weights.pGetRegister(TCameraRegister::eGain)->vSetWeight(1);
  weights.pGetRegister(TCameraRegister::eAperture)->vSetWeight(10);
  const TCameraRegisterVector a = state(1, 0, 1), b = state(2, 0, 1), c = state(1, 0, 4);
  EXPECT_EQ(list.iGetIndex(&a, false), -2);
  EXPECT_EQ(list.iSet(&a, false), 0);
  EXPECT_EQ(list.iSet(&b, false), 1);
  EXPECT_EQ(list.iSet(&c, false), 2);
  EXPECT_EQ(list.iSet(&b, false), 1);  // distance 0: replaced
  EXPECT_EQ(list.uiGetSize(), 3u);
  const TCameraRegisterVector q = state(1.8, 0, 1.2);  // 0.8 + 2 from a, 0.2 + 2 from b, 30.8 from c
  EXPECT_EQ(list.iGetIndex(&q, false), 1);
  EXPECT_EQ(list.iGetIndex2(&q, 1), 0);
  EXPECT_EQ(list.iGetIndex(&q, true), 0);
  const TCameraRegisterVector mid = state(1.5, 0, 1);  // equally far from a and b: the first wins
  EXPECT_EQ(list.iGetIndex(&mid, false), 0);
  EXPECT_EQ(list.iGetIndex2(&mid, 0), 2);  // b is as far as a: left out
  TCameraRegisterVector shorter;
  shorter.vSetRegister(TCameraRegister::eGain, 7);
  EXPECT_EQ(shorter.dGetDistance(a), 0);  // other sizes: distance 0, the first entry
  EXPECT_EQ(list.iGetIndex(&shorter, false), 0);
  EXPECT_EQ(codeOf([&] { list.iSet(nullptr, false); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { (void)(a == b); }), 0x700000UL);
  EXPECT_EQ(list.rGetEntry(2).pGetRegister(TCameraRegister::eAperture)->dGetWeight(), 10);

  TCameraRegisterVectorList zero;  // all weights 0: every entry at distance 0
  zero.rGetDefaults() = state(0, 0, 0);
  zero.iSet(&a, false);
  EXPECT_EQ(zero.iSet(&c, false), 0);
  EXPECT_EQ(zero.uiGetSize(), 1u);

  TKxMemIniFile ini;
  list.vWriteIni(&ini, "Cal");
  list.vWriteIniDefault(&ini, "Cal");
  TCameraRegisterVectorList back;
  back.vReadIniDefault(&ini, "Cal");
  back.vReadIni(&ini, "Cal");
  ASSERT_EQ(back.uiGetSize(), 3u);
  EXPECT_EQ(back.rGetEntry(2).dGetContent(TCameraRegister::eAperture), 4);
  EXPECT_EQ(back.iGetIndex(&q, false), 1);
  TKxMemIniFile bad;
  bad.vReadFromString("[R]\nRegisters=2,x\n");
  TCameraRegisterVector v;
  EXPECT_EQ(codeOf([&] { v.vReadIni(&bad, "R"); }), 0xe3023007UL);
  bad.vReadFromString("[R]\nNumber=-1\n");
  EXPECT_EQ(codeOf([&] { back.vReadIni(&bad, "R"); }), 0xe3023007UL);
  EXPECT_EQ(back.uiGetSize(), 3u);
}

TEST(Camera, ModulationTimesAndIni) {
  TStepControl steps;
  steps.vSetFromStepTo(0.001, 0.001, 0.2);
  TMemConnector con;
  TMemCamera cam(&con);
  const std::string file =
      (std::filesystem::temp_directory_path() / ("kx_cam_" + std::to_string(::getpid()) + ".ini")).string();
  {
    TKxStdIniFile ini{TIniFilename(file)};
    ini.vWriteString("TCamera", "CameraClass", "TMemCamera");
    ini.vWriteString("TCamera", "UseModulation", "1");
    ini.vWriteString("TCamera", "ModulationFrequency", "50");
    cam.init(&ini, &steps);
  }
  EXPECT_EQ(cam.strGetName(), "TMemCamera");
  // 50 Hz: the table becomes whole periods of 20 ms.
  EXPECT_NEAR(cam.rGetStepControl().getFirstValue(), 0.02, 1e-12);
  EXPECT_NEAR(cam.rGetStepControl().getLastValue(), 0.2, 1e-12);
  EXPECT_NEAR(cam.dGetValidScanTime(0.05, false), 0.06, 1e-12);
  EXPECT_EQ(cam.dGetValidScanTime(0.0, false), 0.0);
  cam.vSetUseModulation(false);
  EXPECT_NEAR(cam.rGetStepControl().getFirstValue(), 0.001, 1e-12);
  EXPECT_NEAR(cam.dGetValidScanTime(0.012345, false), 0.01235, 1e-12);  // the connector's line time
  cam.vSetUseModulation(true);
  cam.vSetModulationFrequency(5000);  // a period below the first table value: left alone
  EXPECT_NEAR(cam.dGetValidScanTime(0.0123, false), 0.0123, 1e-12);
  EXPECT_EQ(codeOf([&] { cam.dGetValidScanTime(0.01, true); }), 0xe0723030UL);

  // The time to the next frame, on a clock that never sleeps for real.
  kx::platform::ManualClock clock(1000);
  kx::platform::ScopedClock scoped(&clock);
  cam.vSetUseModulation(false);
  cam.setIntegrationTime(0.1, false);
  EXPECT_EQ(con.dReadRegister(TCameraRegister::eStdTime), 0.1);
  cam.vTimeReset();
  clock.advance(250);
  EXPECT_NEAR(cam.dTimeToGrab(), 0.05, 1e-9);
  bool stop = false;
  EXPECT_TRUE(cam.bWaitUntilValid(stop, 0.02));
  EXPECT_NEAR(cam.dTimeToGrab(), 0.02, 1e-3);
  EXPECT_LE(clock.sleptMs(), 31);

  con.rGetRegisterVector().vSetRegister(TCameraRegister::eVBinning, 1);
  con.rGetRegisterVector().vSetRegister(TCameraRegister::eHBinning, 1);
  cam.setBinning(2, 4);
  int v = 0, h = 0;
  cam.getCurrentBinning(&v, &h);
  EXPECT_EQ(v, 2);
  EXPECT_EQ(h, 4);
  cam.setInLut(200, 10);  // no Top or Bottom register: nothing written
  EXPECT_FALSE(con.rGetRegisterVector().bIsRegister(TCameraRegister::eTop));

  TKxMemIniFile mem;
  mem.vWriteString("TCamera", "CameraClass", "X");
  EXPECT_EQ(codeOf([&] { cam.init(&mem, &steps); }), 0xe3023008UL);  // wrong type of inifile
  TKxMemIniFile none;
  EXPECT_EQ(codeOf([&] { cam.init(&none, &steps); }), 0xe3023006UL);
  con.vWriteRegisterDirect(0x1f, 7, true);
  con.vWriteIni(&mem, "Con");
  TMemConnector other;
  other.vReadIni(&mem, "Con");
  EXPECT_EQ(other.iReadRegisterDirectSoftware(0x1f), 7);
  EXPECT_EQ(other.dReadRegister(TCameraRegister::eHBinning), 4);
  std::filesystem::remove(file);
}
