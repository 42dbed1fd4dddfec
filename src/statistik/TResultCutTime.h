// Series over runs: each run's result becomes one entry of the profile, with
// the time since the first run, the run's index or an outside reference
// (a motor position) as its place on the axis. TResultCutTimeShort keeps a
// sliding window over the last span of runs, whose statistics replace the
// run's own. Times come from the platform clock's millisecond tick.
#pragma once

#include <cstdint>

#include "statistik/TResultCut.h"

class TResultCutTime : public TResultCut {
 public:
  TResultCutTime* pVirtualClone() const override { return new TResultCutTime(*this); }

  // The pixel goes to this run's result only, not to a profile entry.
  void addValue(double value, double area) override;
  void addValueLC(double value, double y, double x, double area, int line, int column) override;
  void addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                   int column) override {
    _vAddRunLC(values, n, y, x, dx, area, line, column);
  }
  // Ends the run and appends it to the series (after a pending reset: only
  // the reset).
  void stop() override;
  // The base, then the reference axis: "Referenz", "Index" or "Zeit" ("s").
  void setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel) override;
  // The base; the series emptied.
  void vReset() override;
  void vMerge(const TResultBasic& o) override;

  void vSetUseIndex(bool b) { bUseIndex = b; }
  bool bGetUseIndex() const { return bUseIndex; }
  void vSetUseReferenz(bool b) { bUseReferenz = b; }
  bool bGetUseReferenz() const { return bUseReferenz; }
  // The double read as reference at each stop (not owned; null: none).
  void vSetReferenzPointer(const double* p) { pdReferenz = p; }
  // The next stop only resets.
  void vSetResetPending() { bResetPending = true; }
  bool bGetResetPending() const { return bResetPending; }

  // "UseIndex", "UseReference".
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;

 protected:
  // The reference of this run, then a copy of it appended to the series.
  void _vAppendRun();
  // A copy of this run's result appended to the series.
  void _vAppendCopy();
  // A pending reset is done instead of the stop (true).
  bool _bResetIfPending();

  bool bUseIndex = false;
  bool bUseReferenz = false;
  const double* pdReferenz = nullptr;
  int64_t lStartTick = 0;
  bool bResetPending = false;
};

// The series over a motor's positions: the reference is the position behind
// the pointer, if one is set.
class TResultCutMotor : public TResultCutTime {
 public:
  TResultCutMotor* pVirtualClone() const override { return new TResultCutMotor(*this); }
  void stop() override;
  void vSetMotorNumber(int n) { iMotorNumber = n; }
  int iGetMotorNumber() const { return iMotorNumber; }
  // "Motor als Refeferenz" / "Motor as Reference".
  static const char* strGetStatistikName();
  // "MotorNumber" besides the keys of the series.
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;

 protected:
  int iMotorNumber = 0;
};

// The focus curve: stop ends the run only; stopVerlauf appends it, so that
// the caller decides which runs enter the curve.
class TResultCutFocus : public TResultCutTime {
 public:
  TResultCutFocus* pVirtualClone() const override { return new TResultCutFocus(*this); }
  void stop() override;
  virtual void stopVerlauf();
};

class TResultCutTimeShort : public TResultCut {
 public:
  static constexpr unsigned uRing = 100;

  TResultCutTimeShort* pVirtualClone() const override { return new TResultCutTimeShort(*this); }

  void addValue(double value, double area) override;
  void addValueLC(double value, double y, double x, double area, int line, int column) override;
  void addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                   int column) override {
    _vAddRunLC(values, n, y, x, dx, area, line, column);
  }
  // Ends the run; its mean enters the window, whose count, mean, sigma, min
  // and max become the run's numbers; then the run is appended.
  void stop() override;
  void setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel) override;
  // Ring emptied, the base reset, the series emptied.
  void vReset() override;
  void vMerge(const TResultBasic& o) override;

  // Moves the axis so that the newest entry is at 0 (older ones negative).
  virtual void vCorrectReferenzOffset();
  // The tick of the first run, as the 32-bit tick count.
  virtual int32_t lGetTimeStart() const { return static_cast<int32_t>(lStartTick); }

  // The span: seconds, or runs with the index.
  void vSetSpan(double s) { dSpan = s; }
  double dGetSpan() const { return dSpan; }
  void vSetUseIndex(bool b) { bUseIndex = b; }
  bool bGetUseIndex() const { return bUseIndex; }
  void vSetUseTimeReference(bool b) { bUseTimeReference = b; }
  bool bGetUseTimeReference() const { return bUseTimeReference; }
  // The result of the last run, window statistics included.
  const TResultBasic& rGetShortResult() const { return ShortResult; }
  unsigned uGetRead() const { return uRead; }
  unsigned uGetWrite() const { return uWrite; }

  // "ShortIndex", "UseTimeReference", and "Span".
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;

 protected:
  void _vCorrectResult();

  double dSpan = 15.0;
  bool bUseIndex = false;
  bool bUseTimeReference = true;
  int64_t aTimes[uRing] = {};
  double aMeans[uRing] = {};
  unsigned uRead = 0, uWrite = 0;
  int64_t lStartTick = 0;
  TResultBasic ShortResult;
};
