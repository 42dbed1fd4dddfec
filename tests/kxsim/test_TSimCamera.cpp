// The simulated camera loaded as a plug-in: its entries, the register map,
// the line-time quantisation, and the recorded live, grab and freeze calls.
#include <gtest/gtest.h>

#include <filesystem>

#include "Camera98/TCamera.h"
#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"
#include "kxsim/TSimCamera.h"
#include "platform/SharedLibrary.h"

namespace {
using InitConnector = TCameraConnector* (*)(TKxIniFile*, TFramegrabber*);
using InitCamera = TCamera* (*)(TKxIniFile*, TStepControl*, TCameraConnector*);
}  // namespace

TEST(SimCamera, PluginEntriesRegistersAndTimes) {
  kx::platform::SharedLibrary lib;
  // A ".dll" name finds "lib<stem>.so" beside it.
  const std::string dir = std::filesystem::path(KXSIM_LIBRARY).parent_path().string();
  ASSERT_TRUE(lib.open(dir + "/kxsim.dll")) << lib.lastError();
  auto initConnector = reinterpret_cast<InitConnector>(lib.symbol("_initConnector"));
  auto initCamera = reinterpret_cast<InitCamera>(lib.symbol("_initCamera"));
  ASSERT_NE(initConnector, nullptr);
  ASSERT_NE(initCamera, nullptr);

  TKxMemIniFile ini;
  ini.vReadFromString("[TSimScene]\nLines=48\nColumns=64\n");
  std::unique_ptr<TCameraConnector> con(initConnector(&ini, nullptr));
  ASSERT_NE(con, nullptr);
  std::unique_ptr<TCamera> cam(initCamera(&ini, nullptr, con.get()));
  ASSERT_NE(cam, nullptr);
  EXPECT_STREQ(cam->cpGetCameraModel(), "kxsim");
  EXPECT_EQ(cam->getLines(), 48);
  EXPECT_EQ(cam->getColumns(), 64);
  const TCameraRegisterVector& r = con->rGetRegisterVector();
  EXPECT_EQ(r.dGetContent(TCameraRegister::eGain), 1.0);
  EXPECT_EQ(r.dGetContent(TCameraRegister::eAperture), 1.0);
  EXPECT_EQ(r.pGetRegister(TCameraRegister::eFilter)->dGetWeight(), 1);
  EXPECT_EQ(r.pGetRegister(TCameraRegister::eLines)->dGetWeight(), 0);

  // Times: the nearest multiple of the 10 us line time, from 0 to 100 s.
  EXPECT_NEAR(cam->dGetValidScanTime(0.0123456, true), 0.01235, 1e-12);
  EXPECT_EQ(cam->dGetValidScanTime(0, true), 0);
  EXPECT_EQ(cam->dGetValidScanTime(500, true), 100);
  cam->setIntegrationTime(0.0000149, true);
  EXPECT_NEAR(cam->dGetIntegrationTime(), 0.00001, 1e-15);
  cam->setBinning(2, 2);
  int v = 0, h = 0;
  cam->getCurrentBinning(&v, &h);
  EXPECT_EQ(v + h, 4);

  con->vCameraLive();
  con->vCameraGrab(1);
  con->vCameraFreeze(0);
  auto* sim = dynamic_cast<TSimConnector*>(con.get());
  ASSERT_NE(sim, nullptr);
  EXPECT_EQ(sim->rGetCalls(), (std::vector<std::string>{"live", "grab 1", "freeze 0"}));

  ini.vReadFromString("[TSimScene]\nLines=0\n");
  EXPECT_EQ(initConnector(&ini, nullptr), nullptr);  // a sensor of no lines: no connector
  kx::deleteError();
  ini.vReadFromString("[TSimScene]\nFailInit=camera\n");
  EXPECT_EQ(initCamera(&ini, nullptr, con.get()), nullptr);
}
