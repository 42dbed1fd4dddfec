// A profile: a result that also keeps a sequence of sub-results, one per
// position (cut), bin (histogram), time or angle. Entry i holds a
// TResultBasic with its own reference on the profile's axis. Each run
// writes the profile from its start; across runs each entry gathers the
// statistics of its position.
#pragma once

#include <vector>

#include "statistik/TResultStatistik.h"

class TResultCut : public TResultStatistik {
 public:
  TResultCut* pVirtualClone() const override { return new TResultCut(*this); }

  void vReset() override;
  void start() override;
  void startX() override;
  // Advances the profile by one: addValueLC(value, 0, 0, 1, 0, 0).
  void addValue(double value, double area) override;
  // The value goes to this result and to the entry at the write position,
  // which then moves on; the profile grows by 100 entries at a time.
  void addValueLC(double value, double y, double x, double area, int line, int column) override;
  // Value by value: each advances the profile.
  void addValuesLC(const double* values, int n, double y, double x, double dx, double area, int line,
                   int column) override {
    TResultBasic::addValuesLC(values, n, y, x, dx, area, line, column);
  }
  // Ends the run of this result and of every entry; the next value starts
  // the profile anew.
  void stop() override;
  void vSetTimeValue(ResultStatistikType t) override;
  // The other profile's entries of this run follow the entries written here.
  void vMerge(const TResultBasic& o) override;

  // Entries, size and position of another profile of the same type.
  virtual void vTakeOverData(const TResultStatistik& o);
  // The means of the entries, if there are as many values as entries.
  virtual void vTakeOverCut(const std::vector<double>& means);
  virtual std::vector<double> vdGetCutX(int type) const { return vdGetCut(0, type, false); }
  virtual std::vector<double> vdGetCutT(int type) const { return vdGetCut(1, type, false); }
  virtual unsigned uiGetSize() const { return uSize; }
  virtual unsigned uiGetAktPos() const { return uPos; }
  // Number `type` of each entry (6: its reference), from ResultX for
  // channel 0, else from ResultT; `noEmpty` skips entries without values.
  virtual std::vector<double> vdGetCut(int channel, int type, bool noEmpty) const;

  const TResultBasic& rGetEntry(unsigned i) const;

 protected:
  // The entry at the write position, the profile grown by 100 if needed.
  TResultBasic& _rNextEntry();

  std::vector<TResultBasic> vEntries;
  bool bCutFirst = true;
  unsigned uSize = 0;
  unsigned uPos = 0;
};
