// TH5Space: the extent of a data set or attribute, a simple data space of
// rank 0 (a scalar) to 32.
#pragma once

#include "HDF5/TH5Handle.h"

class TH5Space : public TH5Handle {
 public:
  // A maximum dimension that may grow without limit.
  static constexpr unsigned long long uUnlimited = ~0ULL;

  eH5ObjectTyp _eGetObjectTyp() const override { return eH5Space; }
  // Number of elements.
  unsigned long long uGetVolume() const;
  // Rank: number of dimensions, 0 for a scalar.
  unsigned uGetDim() const;
  // Fills uGetDim() values.
  void vGetDims(unsigned long long* dims) const;
  void vGetMaxDims(unsigned long long* maxDims) const;
  // True when a maximum dimension exceeds its current one.
  bool bIsExtendible() const;
  unsigned long long uGetObjectSize() const override;
  void _vReport(FILE* out, int indent) const override;

 private:
  TH5Space(TH5Handle* parent, hid_t id) : TH5Handle(parent, id, std::string()) {}
  friend class TH5Directory;
  friend class TH5DataBasic;
};
