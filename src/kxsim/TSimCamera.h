// The simulated camera's connector and camera: the register map of the
// simulated sensor, times quantised to its line time of 10 us (0 to 100 s),
// and the recorded sequence of live, grab and freeze calls. The plug-in
// exports "_initConnector" and "_initCamera" with C linkage.
#pragma once

#include <string>
#include <vector>

#include "Camera98/TCamera.h"

class TSimConnector : public TCameraConnector {
 public:
  static constexpr double dLineTime = 1e-5;
  static constexpr double dMaxTime = 100.0;

  explicit TSimConnector(TFramegrabber* grabber = nullptr);
  // Sensor size from "[TSimScene]" ("Lines", "Columns"; 120 x 160), then the
  // registers and direct registers of the connector's section.
  void init(TKxIniFile* ini) override;
  // 0 .. 100 s, rounded to the nearest multiple of the line time.
  double dValidateScanTime(double t) override;
  void vCameraLive() override { Calls.push_back("live"); }
  void vCameraGrab(int n) override { Calls.push_back("grab " + std::to_string(n)); }
  void vCameraFreeze(int n) override { Calls.push_back("freeze " + std::to_string(n)); }
  // The calls so far, in order ("live", "grab <n>", "freeze <n>").
  const std::vector<std::string>& rGetCalls() const { return Calls; }
  void vClearCalls() { Calls.clear(); }

 private:
  std::vector<std::string> Calls;
};

class TSimCamera : public TCamera {
 public:
  explicit TSimCamera(TCameraConnector* c) : TCamera(c) {}
  const char* cpGetCameraModel() const override { return "kxsim"; }
  // The nearest time the simulated sensor can integrate.
  double dNearestScanTime(double t) override;
};

extern "C" {
TCameraConnector* _initConnector(TKxIniFile* ini, TFramegrabber* grabber);
TCamera* _initCamera(TKxIniFile* ini, TStepControl* steps, TCameraConnector* connector);
}
