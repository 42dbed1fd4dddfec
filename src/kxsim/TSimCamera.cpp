#include "kxsim/TSimCamera.h"

#include <algorithm>
#include <cmath>

#include "file98/IniHelpers.h"
#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"

namespace {
using R = TCameraRegister;
}

TSimConnector::TSimConnector(TFramegrabber* grabber) : TCameraConnector(grabber) {
  vSetName("TSimConnector");
  // The register map; weights 1 for the registers that change a picture's
  // calibration, 0 for the rest.
  const struct {
    R::TTyp t;
    double v, weight;
  } map[] = {{R::eLines, 120, 0},   {R::eColumns, 160, 0}, {R::eGain, 1.0, 1},   {R::eOffset, 0, 1},
             {R::eTop, 4095, 0},    {R::eBottom, 0, 0},    {R::eVBinning, 1, 0}, {R::eHBinning, 1, 0},
             {R::eStdTime, 0.01, 0}, {R::eAperture, 1.0, 1}, {R::eFocus, 0, 1},  {R::eZoom, 0, 1},
             {R::eFilter, 0, 1},    {R::eSerialNumber, 1, 0}};
  for (const auto& m : map) {
    TCameraRegister r(m.t, m.v);
    r.vSetWeight(m.weight);
    Registers.vSetRegister(r);
  }
}

void TSimConnector::init(TKxIniFile* ini) {
  KX_TRY {
    if (!ini) KX_THROW(0x5100000UL, "ini file null");
    int lines = static_cast<int>(Registers.dGetContent(R::eLines));
    int columns = static_cast<int>(Registers.dGetContent(R::eColumns));
    ReadIniInteger(*ini, "TSimScene", "Lines", lines);
    ReadIniInteger(*ini, "TSimScene", "Columns", columns);
    if (lines < 1 || columns < 1 || lines > 16384 || columns > 16384)
      KX_THROW(0xe3023007UL, "Error in: [TSimScene]: sensor %d x %d", lines, columns);
    Registers.vSetRegister(R::eLines, lines);
    Registers.vSetRegister(R::eColumns, columns);
    if (ini->bSectionExists("TSimConnector")) vReadIni(ini, "TSimConnector");
  }
  KX_CATCH
}

double TSimConnector::dValidateScanTime(double t) {
  if (!(t > 0)) return 0;
  if (t >= dMaxTime) return dMaxTime;
  return std::min(dMaxTime, std::round(t / dLineTime) * dLineTime);
}

double TSimCamera::dNearestScanTime(double t) {
  return pConnector ? pConnector->dValidateScanTime(t) : std::round(t / TSimConnector::dLineTime) * TSimConnector::dLineTime;
}

extern "C" {

__attribute__((visibility("default"))) TCameraConnector* _initConnector(TKxIniFile* ini, TFramegrabber* grabber) {
  try {
    auto* c = new TSimConnector(grabber);
    try {
      c->init(ini);
    } catch (...) {
      delete c;
      throw;
    }
    return c;
  } catch (unsigned long) {
    return nullptr;  // the error stays pending for the caller
  }
}

__attribute__((visibility("default"))) TCamera* _initCamera(TKxIniFile* ini, TStepControl* steps,
                                                             TCameraConnector* connector) {
  try {
    if (ini && ini->bValueExists("TSimScene", "FailInit") &&
        ini->sReadString("TSimScene", "FailInit", "") == "camera")
      return nullptr;
    auto* cam = new TSimCamera(connector);
    try {
      if (ini && ini->bValueExists("TCamera", "CameraClass")) cam->init(ini, steps);
    } catch (...) {
      delete cam;
      throw;
    }
    return cam;
  } catch (unsigned long) {
    return nullptr;
  }
}
}
