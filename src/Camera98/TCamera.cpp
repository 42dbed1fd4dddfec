#include "Camera98/TCamera.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "file98/IniHelpers.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"
#include "platform/Clock.h"
#include "platform/Notice.h"

using TTyp = TCameraRegister::TTyp;

// ---------------------------------------------------------------- connector

void TCameraConnector::vWriteRegister(const TCameraRegister& r) { Registers.vSetRegister(r); }

void TCameraConnector::vWriteRegister(TTyp t, double v) {
  if (TCameraRegister* r = Registers.pGetRegister(t))
    r->vSetContent(v);
  else
    Registers.vSetRegister(t, v);
}

void TCameraConnector::vReadRegister(TCameraRegister& r) {
  if (const TCameraRegister* have = Registers.pGetRegister(r.tGetRegisterTyp())) r = *have;
}

double TCameraConnector::dReadRegister(TTyp t) { return Registers.dGetContent(t); }

void TCameraConnector::vWriteRegisterDirect(int reg, int value, bool) { DirectRegisters[reg] = value; }

int TCameraConnector::iReadRegisterDirectSoftware(int reg) {
  const auto it = DirectRegisters.find(reg);
  return it == DirectRegisters.end() ? 0 : it->second;
}

int TCameraConnector::iReadRegisterDirectHardware(int reg) { return iReadRegisterDirectSoftware(reg); }

double TCameraConnector::dGetStdScanTime() { return Registers.dGetContent(TCameraRegister::eStdTime); }

void TCameraConnector::vWriteIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    Registers.vWriteIni(ini, section, true);
    char key[32];
    for (const auto& [reg, value] : DirectRegisters) {
      std::snprintf(key, sizeof key, "DirectRegister%X", static_cast<unsigned>(reg));
      ini->vWriteInteger(section, key, value);
    }
  }
  KX_CATCH
}

void TCameraConnector::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    Registers.vReadIni(ini, section, true);
    std::vector<std::string> keys;
    ini->vReadSection(section, keys);
    for (const std::string& k : keys) {
      if (k.rfind("DirectRegister", 0) != 0) continue;
      char* end = nullptr;
      const unsigned long reg = std::strtoul(k.c_str() + 14, &end, 16);
      if (k.size() == 14 || *end || reg > 0x7fffffffUL) continue;
      int value = 0;
      ReadIniInteger(*ini, section, k.c_str(), value);
      vWriteRegisterDirect(static_cast<int>(reg), value, true);
    }
  }
  KX_CATCH
}

// ---------------------------------------------------------------- camera

void TCamera::init(TKxIniFile* ini, const TStepControl* steps, const char* section) {
  KX_TRY {
    if (!ini || !section || !ini->bValueExists(section, "CameraClass"))
      KX_THROW(0xe3023006UL, "Nicht gefunden [%s] %s", section ? section : "", "CameraClass");
    strName = ini->sReadString(section, "CameraClass", "");
    if (steps) GivenSteps = *steps;
    _vChangeStepControlModulation();
    vReadIni(ini, section);
  }
  KX_CATCH
}

void TCamera::vWriteIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    WriteIniString(*ini, section, "CameraClass", strName);
    WriteIniString(*ini, section, "Typ", strTyp);
    WriteIniString(*ini, section, "Number", strNumber);
    WriteIniString(*ini, section, "Matrix", strMatrix);
    WriteIniBool(*ini, section, "UseModulation", bUseModulation);
    WriteIniDouble(*ini, section, "ModulationFrequency", dModulationFrequency);
  }
  KX_CATCH
}

void TCamera::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!dynamic_cast<TKxStdIniFile*>(ini)) KX_THROW(0xe3023008UL, "wrong type of inifile");
    ReadIniString(*ini, section, "Typ", strTyp);
    ReadIniString(*ini, section, "Number", strNumber);
    ReadIniString(*ini, section, "Matrix", strMatrix);
    bool use = bUseModulation;
    double f = dModulationFrequency;
    ReadIniBool(*ini, section, "UseModulation", use);
    ReadIniDouble(*ini, section, "ModulationFrequency", f);
    if (!std::isfinite(f)) KX_THROW(0xe3023007UL, "Error in: [%s]:ModulationFrequency", section);
    bUseModulation = use;
    dModulationFrequency = f;
    _vChangeStepControlModulation();
  }
  KX_CATCH
}

bool TCamera::_bModulates() const {
  if (!bUseModulation || !(std::fabs(dModulationFrequency) >= 1e-10) || GivenSteps.iGetLineCount() == 0) return false;
  return 1.0 / dModulationFrequency >= GivenSteps.getFirstValue();
}

double TCamera::_dGetModulationTime(double t) const {
  if (!_bModulates() || !(t >= 1e-15)) return t;
  const double p = 1.0 / dModulationFrequency;
  return p * std::floor(t * dModulationFrequency + 0.5);
}

void TCamera::_vChangeStepControlModulation() {
  Steps = GivenSteps;
  if (!_bModulates()) return;
  const double p = 1.0 / dModulationFrequency;
  const double last = p * std::max(2.0, std::floor(GivenSteps.getLastValue() / p + 1e-9));
  Steps.vSetFromStepTo(p, p, last);
}

void TCamera::vSetUseModulation(bool b) {
  bUseModulation = b;
  _vChangeStepControlModulation();
}

void TCamera::vSetModulationFrequency(double f) {
  KX_TRY {
    if (!std::isfinite(f)) KX_THROW(0x5100000UL, "modulation frequency %g", f);
    dModulationFrequency = f;
    _vChangeStepControlModulation();
  }
  KX_CATCH
}

double TCamera::dNearestScanTime(double) {
  KX_TRY { KX_THROW(0xe0723030UL, "dNearestScanTime: vom Kameramodell zu liefern / to be supplied by the camera model"); }
  KX_CATCH
}

double TCamera::dGetValidScanTime(double t, bool nearest) {
  KX_TRY {
    t = _dGetModulationTime(t);
    if (nearest) t = dNearestScanTime(t);
    return pConnector ? pConnector->dValidateScanTime(t) : t;
  }
  KX_CATCH
}

void TCamera::_vWrite(TTyp t, double v, bool onlyPresent) {
  if (!pConnector) return;
  if (onlyPresent && !pConnector->rGetRegisterVector().bIsRegister(t)) return;
  pConnector->vWriteRegister(t, v);
}

void TCamera::setIntegrationTime(double t, bool nearest) {
  KX_TRY {
    dIntegrationTime = dGetValidScanTime(t, nearest);
    _vWrite(TCameraRegister::eStdTime, dIntegrationTime, false);
  }
  KX_CATCH
}

double TCamera::dSetStdIntegrationTime() {
  KX_TRY {
    dIntegrationTime = pConnector ? pConnector->dGetStdScanTime() : dIntegrationTime;
    return dIntegrationTime;
  }
  KX_CATCH
}

void TCamera::setBinning(int v, int h) {
  _vWrite(TCameraRegister::eHBinning, h, true);
  _vWrite(TCameraRegister::eVBinning, v, true);
}

void TCamera::getCurrentBinning(int* v, int* h) {
  const TCameraRegisterVector* r = pConnector ? &pConnector->rGetRegisterVector() : nullptr;
  if (v) *v = r && r->bIsRegister(TCameraRegister::eVBinning) ? static_cast<int>(r->dGetContent(TCameraRegister::eVBinning)) : 1;
  if (h) *h = r && r->bIsRegister(TCameraRegister::eHBinning) ? static_cast<int>(r->dGetContent(TCameraRegister::eHBinning)) : 1;
}

void TCamera::setOffset(double v) { _vWrite(TCameraRegister::eOffset, v, false); }
void TCamera::setGain(double v) { _vWrite(TCameraRegister::eGain, v, false); }

void TCamera::setInLut(double top, double bottom) {
  _vWrite(TCameraRegister::eBottom, bottom, true);
  _vWrite(TCameraRegister::eTop, top, true);
}

int TCamera::getLines() { return pConnector ? static_cast<int>(pConnector->dReadRegister(TCameraRegister::eLines)) : 0; }
int TCamera::getColumns() {
  return pConnector ? static_cast<int>(pConnector->dReadRegister(TCameraRegister::eColumns)) : 0;
}

void TCamera::vTimeReset() { lResetMs = kx::platform::tickMs64(); }

double TCamera::dTimeToGrab() {
  const double e = 0.001 * static_cast<double>(kx::platform::tickMs64() - lResetMs);
  const double t = dIntegrationTime;
  if (!(t > 1e-10)) return 0;
  return t * std::ceil(e / t) - e;
}

bool TCamera::bWaitUntilValid(bool& stop, double limit) {
  const double remaining = dTimeToGrab();
  const double elapsed = 0.001 * static_cast<double>(kx::platform::tickMs64() - lResetMs);
  if (remaining <= limit && !(elapsed < limit)) return !stop;
  if (limit * 1000 < 10) return !stop;
  const int64_t until = kx::platform::tickMs64() + static_cast<int64_t>((remaining - limit) * 1000);
  while (!stop && kx::platform::tickMs64() < until) {
    kx::platform::sleepMs(1);
    kx::platform::processMessages();
  }
  return !stop;
}
