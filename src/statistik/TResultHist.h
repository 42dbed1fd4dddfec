// Histograms: a profile whose entries are bins. TResultHist counts values
// into bins of equal width between Start and Stop, with one outer bin below
// Start and one above Stop; a bin's count is the Mean of its ResultX (the
// entries count by incValue) and its ResultT holds the count's statistics
// across runs. TResultBitHist gives one entry per bit of an integer value,
// whose mean is the share of values with that bit set.
#pragma once

#include <vector>

#include "statistik/TResultCut.h"

class TResultHist : public TResultCut {
 public:
  // More bins than this are refused (0x5100000): a histogram is a profile
  // held in memory, and a bad ini or argument must not allocate gigabytes.
  static constexpr unsigned uMaxClassCount = 1u << 24;

  TResultHist* pVirtualClone() const override { return new TResultHist(*this); }

  // On the first value after a change the bins are laid out anew; then the
  // value's bin counts one.
  void addValueLC(double value, double y, double x, double area, int line, int column) override;
  void addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                   int column) override;
  // Bins of the requested number with the empty and outer bins at both ends
  // cut away (the last kept index itself excluded); the running sum with
  // Integral and type 1. Empty with two or fewer bins.
  std::vector<double> vdGetCut(int channel, int type, bool noEmpty) const override;
  // Same bins required (else 0x5100000); counts add bin by bin.
  void vMerge(const TResultBasic& o) override;

  // stop above start and step above 0, else 0x5100000.
  virtual void setHistStartStepStop(double start, double step, double stop, bool fixed);
  // stop above start and count not 0; step (stop - start) / count.
  virtual void setHistStartCountStop(double start, unsigned count, double stop, bool fixed);
  virtual void getHistStartStepStop(double& start, double& step, double& stop) const;
  virtual void getHistStartCountStop(double& start, unsigned& count, double& stop) const;
  // 0 below start, count - 1 above stop, 1 for step 0, else
  // trunc((value - start) / step + 1). NaN counts below.
  virtual unsigned uGetClass(double value) const;
  // trunc(|(stop - start) / step| + 3); 3 for step 0.
  virtual unsigned uGetClassCount() const;
  // The base, then reference name and unit from the picture's value, the
  // value "Anzahl", unit "1"; and, unless the bins are fixed, automatic bins
  // over min .. max (step 1 for 8- and 16-bit, RGB and int planes).
  virtual void setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel, double min, double max);
  // min and max of the scalar plane, then the form above.
  void setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel) override;

  bool bGetFixed() const { return bFixed; }
  void vSetFixed(bool b) { bFixed = b; }
  bool bGetIntegral() const { return bIntegral; }
  void vSetIntegral(bool b) { bIntegral = b; }

  // "Integral", "Fixed", "Start", "Step", "Stop".
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;

 protected:
  // Resizes the profile to the bin count, starts every bin and sets the
  // references: start - step, the bins' centres, stop + step.
  virtual void _vHistCalcReferenz();
  // uGetClass with the bin count given.
  unsigned _uClass(double value, unsigned n) const {
    if (!(value >= dStart)) return 0;
    if (value > dStop) return n - 1;
    if (dStep == 0) return 1;
    const double k = (value - dStart) / dStep + 1.0;
    return k < n - 1 ? static_cast<unsigned>(k) : n - 1;
  }
  // Another histogram of the same bins: bin by bin as counters, or (bit
  // histograms) as streams.
  void _vMergeBins(const TResultBasic& o, bool counters);
  // 0x5100000 unless the bounds give a usable histogram.
  static void _vCheckBounds(double start, double step, double stop);

  double dStart = 0, dStep = 1, dStop = 256;
  bool bFixed = false;
  bool bIntegral = false;
  bool bRecalc = true;
};

class TResultBitHist : public TResultHist {
 public:
  TResultBitHist* pVirtualClone() const override { return new TResultBitHist(*this); }
  void addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                   int column) override {
    TResultBasic::addValuesLC(values, n, y, x, dx, area, line, column);
  }

  // The base start; the profile resized to the count; references -1, then
  // 0, 1, ... and count - 1 for the last entry.
  void start() override;
  // Entry b + 1 takes 1 if bit b of the truncated value is set, else 0, for
  // b from 0 to count - 3.
  void addValueLC(double value, double y, double x, double area, int line, int column) override;
  void vMerge(const TResultBasic& o) override;

 protected:
  void _vHistCalcReferenz() override;
};
