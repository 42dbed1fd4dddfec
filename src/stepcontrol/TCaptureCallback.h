// The operator's side of integration times and captures, without forms:
// the progress and cancel object a capture calls, the up-down element and
// the live dialogue over a table of integration times, and the settings of
// a measurement. A host draws them from their state; the buttons are calls.
#pragma once

#include <string>

#include "kxexception/TFormatNumber.h"
#include "stepcontrol/TStepControl.h"

class TKxIniFile;

class TCaptureCallback {
 public:
  TCaptureCallback() : Format(3) {}
  virtual ~TCaptureCallback() = default;

  // Shows t, the counter at 0.
  virtual void vFirstIntegrationTime(double t);
  // A frame: counts, shows t and "n" or "n of m", handles pending
  // messages; answers the cancel flag.
  virtual bool NewCamPic(double t);
  // The same with the text "<t>s k=<k>" and the file name.
  virtual bool NewCamPic(double t, double k, const char* file);
  // m frames in all (0: only the count is shown).
  void vSetCountPicAll(int m) { iCountAll = m < 0 ? 0 : m; }
  // True while waiting is on and cancel is not; copies the cancel flag.
  bool bIsWait(bool& cancel) const;

  // The buttons: cancel (also for other callers, through the static flag)
  // and wait (toggles).
  void vCancel();
  void vToggleWait() { bWait = !bWait; }
  bool bIsCancel() const { return bCancel; }
  static bool bGetCancelAll();
  static void vResetCancelAll();

  int iGetCount() const { return iCount; }
  const std::string& rGetTimeText() const { return sTime; }
  const std::string& rGetCountText() const { return sCount; }
  const std::string& rGetInfoText() const { return sInfo; }
  const std::string& rGetFileText() const { return sFile; }

 private:
  void _vShow(double t);
  TFormatNumber Format;
  int iCount = 0, iCountAll = 0;
  bool bCancel = false, bWait = false;
  std::string sTime, sCount, sInfo, sFile;
};

// An edit field with an up-down button over a copy of a table: the up-down
// runs from 0 to 4 and rests at 2; a click moves one table step and puts it
// back to 2.
class TIntegrationTimeDlgElement {
 public:
  void init(const TStepControl& steps);
  void setValue(double t);
  double getValue() const { return Steps.getCurrentValue(); }
  // The up-down moved to `position`: above 2 one value up, below 2 one
  // down; then back to 2.
  void vUpDown(int position);
  int iGetUpDown() const { return iUpDown; }
  const std::string& rGetText() const { return sText; }

 private:
  TStepControl Steps;
  int iUpDown = 2;
  std::string sText;
};

// The dialogue over the live picture: the integration time from the table,
// "Heller" and "Dunkler" (one value up or down), and the automatic exposure
// that changes the time until the picture's maximum lies in the band.
class TIntTimeDlg {
 public:
  void init(const TStepControl& steps);
  void setValue(double t) { dTime = Steps.getCurrentValue(t); }
  double getValue() const { return dTime; }
  void vSetIntegrationTime(double t) { setValue(t); }
  double dGetIntegrationTime() const { return dTime; }
  void vSetLiveMode(bool b) { bLive = b; }
  bool bIsLiveMode() const { return bLive; }
  void vHeller();
  void vDunkler();
  void vSetAutoScan(bool b) { bAuto = b; }
  // The band of the maximum, as shares of the full scale.
  void vSetBand(double low, double high, double fullScale);
  // The timer: the picture's maximum of this frame; with the automatic
  // exposure on, one step towards the band. True when the time changed.
  bool vGetPictureParam(double maximum);

 private:
  TStepControl Steps;
  double dTime = 0;
  bool bLive = true, bAuto = false;
  double dLow = 0.6 * 255, dHigh = 0.9 * 255;
};

// The settings of a measurement: single, multiple or HighDyn pictures, and
// the options of the multiple series.
struct TCaptureDialog {
  bool bSinglePic = true, bMultiPic = false, bHighDyn = false;
  double dScanTimeMulti = 0;
  bool bAutomaticMulti = false, bSmearMulti = false;
  // The section named, and in it the table of integration times; a missing
  // section raises "Not found: [%s]" (0xe5123001).
  void readIni(TKxIniFile* ini, TStepControl* steps, const char* section);
  void writeIni(TKxIniFile* ini, const TStepControl* steps, const char* section) const;
};
