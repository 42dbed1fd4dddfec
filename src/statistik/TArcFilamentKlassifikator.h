// The classifiers of the arc and filament measurements. They decide nothing
// per pixel (one class); they carry what the two measurements need: the
// calculation method, the band thresholds as fractions of the peak with
// their labels, the number of maxima averaged and the number of sectional
// views, each with a label.
#pragma once

#include <string>
#include <vector>

#include "rastrix/TPixelKlassifikator.h"

class TArcFilamentKlassifikatorBasic : public Rastrix::TPixelKlassifikator {
 public:
  enum eAFCalcMethod : int { eSectionalView = 0, eProjection = 1 };

  TArcFilamentKlassifikatorBasic();
  TArcFilamentKlassifikatorBasic(const TArcFilamentKlassifikatorBasic&) = default;
  TArcFilamentKlassifikatorBasic& operator=(const TArcFilamentKlassifikatorBasic& o);

  // The base keys and "ArcFilamentCalcMethod", "ArcFilamentThresholdCount",
  // "ArcFilamentThreshold%d", "ArcFilamentThresholdStr%d", "ArcFilamentNMax",
  // "ArcFilamentNMaxStr", "ArcFilamentNSectionalView",
  // "ArcFilamentNSectionalViewStr", all in the classifier's section.
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;

  eAFCalcMethod eGetCalcMethod() const { return eCalcMethod; }
  void vSetCalcMethod(eAFCalcMethod e);
  unsigned uiGetThresholdNumber() const { return static_cast<unsigned>(thresholds.size()); }
  // New thresholds are 0 with the label "s".
  void vSetThresholdNumber(unsigned n);
  // An index at or above uiGetThresholdNumber() raises 0x5100000.
  double dGetThreshold(unsigned i) const;
  void vSetThreshold(unsigned i, double value);
  const std::string& strGetThreshold(unsigned i) const;
  void vSetStrThreshold(unsigned i, const std::string& label);
  unsigned uiGetNMax() const { return uiNMax; }
  void vSetNMax(unsigned n);
  const std::string& strGetMax() const { return sMax; }
  void vSetStrMax(const std::string& s);
  unsigned uiGetNSectionalView() const { return uiNSectionalView; }
  void vSetNSectionalView(unsigned n);
  const std::string& strGetSectionalView() const { return sSectionalView; }
  void vSetStrSectionalView(const std::string& s);

  static constexpr unsigned uMaxThresholds = 1000;

 protected:
  void _vCheck(unsigned i) const;

  eAFCalcMethod eCalcMethod = eSectionalView;
  std::vector<double> thresholds{0.2, 0.0, 0.0};
  std::vector<std::string> labels{"s", "s", "s"};
  unsigned uiNMax = 3;
  std::string sMax = "Max";
  unsigned uiNSectionalView = 3;
  std::string sSectionalView = "Norm";
};

class TArcKlassifikator : public TArcFilamentKlassifikatorBasic {
 public:
  TArcKlassifikator();
  TArcKlassifikator* pVirtualClone() const override;
};

class TFilamentKlassifikator : public TArcFilamentKlassifikatorBasic {
 public:
  TFilamentKlassifikator();
  TFilamentKlassifikator* pVirtualClone() const override;
};
