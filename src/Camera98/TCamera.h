// A camera model (TCamera) and the link to its registers (TCameraConnector).
// Real ones are derived in plug-ins; these bases hold what every camera
// shares: the table of integration times and the modulation rule that keeps
// times at whole periods of a light source on alternating current, the
// time until the next integration ends, and the registers of binning, gain,
// offset and the input table. The base connector keeps register values in
// memory.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Camera98/TCameraRegister.h"
#include "stepcontrol/TStepControl.h"

class TKxIniFile;
class TFramegrabber;

class TCameraConnector {
 public:
  explicit TCameraConnector(TFramegrabber* grabber = nullptr) : pGrabber(grabber) {}
  virtual ~TCameraConnector() = default;

  virtual void init(TKxIniFile* ini) = 0;
  // The base stores the value in the register vector; a hardware connector
  // also sends it.
  virtual void vWriteRegister(const TCameraRegister& r);
  virtual void vWriteRegister(TCameraRegister::TTyp t, double v);
  virtual void vReadRegister(TCameraRegister& r);
  virtual double dReadRegister(TCameraRegister::TTyp t);
  virtual void vWriteRegisterDirect(int reg, int value, bool hardware);
  virtual int iReadRegisterDirectSoftware(int reg);
  virtual int iReadRegisterDirectHardware(int reg);
  virtual void vRegisterInit() {}
  // The time the camera really uses for t (its own quantisation).
  virtual double dValidateScanTime(double t) = 0;
  virtual double dGetStdScanTime();
  // The register vector, and the direct registers as "DirectRegister%X".
  virtual void vWriteIni(TKxIniFile* ini, const char* section);
  virtual void vReadIni(TKxIniFile* ini, const char* section);
  virtual void vCameraLive() {}
  virtual void vCameraGrab(int) {}
  virtual void vCameraFreeze(int) {}
  virtual bool bUseFilterWheel() { return false; }
  virtual double dGetTemperature(int) { return 0.0; }
  virtual void vSetRestartReset(int, double) {}
  virtual int iGetRestartReset() { return 0; }
  virtual void _init(TKxIniFile* ini, const char* section) { vReadIni(ini, section); }

  TFramegrabber* pGetGrabber() const { return pGrabber; }
  const std::string& strGetName() const { return strName; }
  void vSetName(const std::string& n) { strName = n; }
  TCameraRegisterVector& rGetRegisterVector() { return Registers; }
  const TCameraRegisterVector& rGetRegisterVector() const { return Registers; }

 protected:
  TFramegrabber* pGrabber;
  std::string strName;
  TCameraRegisterVector Registers;
  std::map<int, int> DirectRegisters;
};

class TCamera {
 public:
  explicit TCamera(TCameraConnector* connector = nullptr) : pConnector(connector) {}
  virtual ~TCamera() = default;

  // "CameraClass" (required: 0xe3023006 "Nicht gefunden [%s] %s"), the name,
  // the table of integration times (modulated when on), then vReadIni.
  void init(TKxIniFile* ini, const TStepControl* steps, const char* section = "TCamera");
  // "CameraClass", "Typ", "Number", "Matrix", "UseModulation",
  // "ModulationFrequency". vReadIni takes a file ini only ("wrong type of
  // inifile", 0xe3023008).
  virtual void vWriteIni(TKxIniFile* ini, const char* section);
  virtual void vReadIni(TKxIniFile* ini, const char* section);
  // Registers 7 and 8; 1 for a missing one.
  virtual void getCurrentBinning(int* v, int* h);
  // The camera model's name.
  virtual const char* cpGetCameraModel() const = 0;
  // The valid time for t becomes the integration time (register StdTime).
  virtual void setIntegrationTime(double t, bool nearest);
  // The connector's standard time becomes the integration time.
  virtual double dSetStdIntegrationTime();
  virtual void setBinning(int v, int h);
  virtual void setOffset(double v);
  virtual void setGain(double v);
  // Registers 5 ("Bottom") and 4 ("Top") when the camera has them.
  virtual void setInLut(double top, double bottom);
  virtual void vSetUseModulation(bool b);
  virtual void vSetModulationFrequency(double f);
  // Through the modulation rule, with `nearest` through dNearestScanTime,
  // then validated by the connector.
  virtual double dGetValidScanTime(double t, bool nearest);
  // The moment of the last reset of the sensor.
  virtual void vTimeReset();
  // Seconds until the running integration ends: t·ceil(e/t) − e.
  virtual double dTimeToGrab();
  // Waits (1 ms steps, messages handled) until at most `limit` seconds are
  // left; false when `stop` ended it.
  virtual bool bWaitUntilValid(bool& stop, double limit);
  // A camera model must supply it: the base raises 0xe0723030.
  virtual double dNearestScanTime(double t);
  virtual bool bGetUseModulation() const { return bUseModulation; }
  virtual double dGetModulationFrequency() const { return dModulationFrequency; }

  int getLines();
  int getColumns();
  double dGetIntegrationTime() const { return dIntegrationTime; }
  TCameraConnector* pGetConnector() const { return pConnector; }
  const TStepControl& rGetStepControl() const { return Steps; }
  const std::string& strGetName() const { return strName; }
  const std::string& strGetTyp() const { return strTyp; }

 protected:
  // p · floor(t · f + 0.5) with p = 1/f, when modulation is on, |f| >= 1e-10,
  // p is not below the table's first value and t >= 1e-15; else t.
  double _dGetModulationTime(double t) const;
  // The table of whole periods while the modulation rule holds, else the
  // table as it was given.
  void _vChangeStepControlModulation();
  bool _bModulates() const;
  void _vWrite(TCameraRegister::TTyp t, double v, bool onlyPresent);

  TCameraConnector* pConnector;
  std::string strName;
  TStepControl Steps;       // in use
  TStepControl GivenSteps;  // as given, without modulation
  bool bUseModulation = false;
  double dModulationFrequency = 50.0;
  std::string strTyp, strNumber, strMatrix;
  double dIntegrationTime = 0;
  int64_t lResetMs = 0;
};
