#include "stepcontrol/TCaptureCallback.h"

#include <atomic>
#include <cstdio>

#include "file98/IniHelpers.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "platform/Notice.h"

namespace {
std::atomic<bool> cancelAll{false};
const TLanguage::TLanguageString sOf("%d von %d", "%d of %d");
}  // namespace

void TCaptureCallback::_vShow(double t) { sTime = Format.format(t) + " s"; }

void TCaptureCallback::vFirstIntegrationTime(double t) {
  iCount = 0;
  _vShow(t);
  sCount = "0";
}

bool TCaptureCallback::NewCamPic(double t) {
  ++iCount;
  _vShow(t);
  char buf[64];
  if (iCountAll > 0)
    std::snprintf(buf, sizeof buf, sOf(), iCount, iCountAll);
  else
    std::snprintf(buf, sizeof buf, "%d", iCount);
  sCount = buf;
  kx::platform::processMessages();
  return bCancel;
}

bool TCaptureCallback::NewCamPic(double t, double k, const char* file) {
  const bool cancel = NewCamPic(t);
  sInfo = Format.format(t) + "s k=" + Format.format(k);
  sFile = file ? file : "";
  return cancel;
}

bool TCaptureCallback::bIsWait(bool& cancel) const {
  cancel = bCancel;
  return bWait && !bCancel;
}

void TCaptureCallback::vCancel() {
  bCancel = true;
  cancelAll = true;
}

bool TCaptureCallback::bGetCancelAll() { return cancelAll; }
void TCaptureCallback::vResetCancelAll() { cancelAll = false; }

void TIntegrationTimeDlgElement::init(const TStepControl& steps) {
  Steps = steps;
  iUpDown = 2;
  setValue(Steps.getCurrentValue());
}

void TIntegrationTimeDlgElement::setValue(double t) {
  const double v = Steps.getCurrentValue(t);
  sText = TFormatNumber(3).format(v);
}

void TIntegrationTimeDlgElement::vUpDown(int position) {
  double v = getValue();
  if (position > 2)
    Steps.getNextValue(v, &v);
  else if (position < 2)
    Steps.getPreviousValue(v, &v);
  sText = TFormatNumber(3).format(Steps.getCurrentValue());
  iUpDown = 2;
}

void TIntTimeDlg::init(const TStepControl& steps) {
  Steps = steps;
  Steps.setModeAllValues();
  dTime = Steps.getCurrentValue(steps.getCurrentValue());
}

void TIntTimeDlg::vHeller() {
  double v;
  if (Steps.getNextValue(dTime, &v)) dTime = v;
}

void TIntTimeDlg::vDunkler() {
  double v;
  if (Steps.getPreviousValue(dTime, &v)) dTime = v;
}

void TIntTimeDlg::vSetBand(double low, double high, double fullScale) {
  KX_TRY {
    if (!(low < high) || !(fullScale > 0)) KX_THROW(0x5100000UL, "band %g .. %g of %g", low, high, fullScale);
    dLow = low * fullScale;
    dHigh = high * fullScale;
  }
  KX_CATCH
}

bool TIntTimeDlg::vGetPictureParam(double maximum) {
  if (!bAuto || !bLive) return false;
  const double before = dTime;
  if (maximum > dHigh)
    vDunkler();
  else if (maximum < dLow)
    vHeller();
  return dTime != before;
}

void TCaptureDialog::readIni(TKxIniFile* ini, TStepControl* steps, const char* section) {
  KX_TRY {
    if (!ini || !section || !ini->bSectionExists(section)) KX_THROW(0xe5123001UL, "Not found: [%s]", section ? section : "");
    TCaptureDialog d = *this;
    ReadIniBool(*ini, section, "SinglePic", d.bSinglePic);
    ReadIniBool(*ini, section, "MultiPic", d.bMultiPic);
    ReadIniBool(*ini, section, "HighDyn", d.bHighDyn);
    ReadIniDouble(*ini, section, "ScanTimeMulti", d.dScanTimeMulti);
    ReadIniBool(*ini, section, "AutomaticMulti", d.bAutomaticMulti);
    ReadIniBool(*ini, section, "SmearMulti", d.bSmearMulti);
    if (steps) steps->readIni(ini, section);
    *this = d;
  }
  KX_CATCH
}

void TCaptureDialog::writeIni(TKxIniFile* ini, const TStepControl* steps, const char* section) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    WriteIniBool(*ini, section, "SinglePic", bSinglePic);
    WriteIniBool(*ini, section, "MultiPic", bMultiPic);
    WriteIniBool(*ini, section, "HighDyn", bHighDyn);
    WriteIniDouble(*ini, section, "ScanTimeMulti", dScanTimeMulti);
    WriteIniBool(*ini, section, "AutomaticMulti", bAutomaticMulti);
    WriteIniBool(*ini, section, "SmearMulti", bSmearMulti);
    if (steps) steps->writeIni(ini, section);
  }
  KX_CATCH
}
