// The registers of a camera: one value with its limits and a weight
// (TCameraRegister), one camera state (TCameraRegisterVector, registers in
// the order they were added, one per type), and a list of states each
// standing for a calibrated set-up, searched by a weighted distance
// (TCameraRegisterVectorList).
//
// Ini form of a register: its content under the type's text ("Gain"), and
// with `full` "<type>Name", "<type>Unit", "<type>Min", "<type>Max",
// "<type>Steps", "<type>Changeable"; the weight "<type>Weight". A register
// of a type without text uses the prefix "TCameraRegister". A vector lists
// its types under "Registers" (numbers, comma separated).
#pragma once

#include <string>
#include <vector>

#include "kxexception/TTimeStamp.h"

class TKxIniFile;
class TCamera;

class TCameraRegister {
 public:
  using TTyp = unsigned char;
  enum : TTyp {
    eLines = 0, eColumns = 1, eGain = 2, eOffset = 3, eTop = 4, eBottom = 5, eSubstrat = 6, eVBinning = 7,
    eHBinning = 8, eStdTime = 9, eAperture = 10, eFocus = 11, eZoom = 12, eFilter = 13, eCFilter = 14,
    eSerialNumber = 30, eSoftwareRevision = 31, eHardwareRevision = 32, eFirmwareRevision = 33, eSOC = 34
  };
  // The type's text; "Unknown" for a free or unknown value.
  static const char* cpGetStringFromType(TTyp t);

  TCameraRegister() = default;
  TCameraRegister(TTyp t, double content) : tTyp(t), dContent(content), strName(cpGetStringFromType(t)) {}
  virtual ~TCameraRegister() = default;
  TCameraRegister(const TCameraRegister&) = default;
  TCameraRegister& operator=(const TCameraRegister&) = default;

  virtual void vWriteIni(TKxIniFile* ini, const char* section, bool full = true) const;
  virtual void vReadIni(TKxIniFile* ini, const char* section, bool full = true);
  void vWriteIniWeight(TKxIniFile* ini, const char* section) const;
  void vReadIniWeight(TKxIniFile* ini, const char* section);

  TTyp tGetRegisterTyp() const { return tTyp; }
  double dGetContent() const { return dContent; }
  void vSetContent(double v) { dContent = v; }
  void vSetTyp(TTyp t) { tTyp = t; }
  void vSetRegister(TTyp t, double v) { tTyp = t, dContent = v; }
  double dGetMin() const { return dMin; }
  double dGetMax() const { return dMax; }
  int iGetSteps() const { return iSteps; }
  bool bGetChangeable() const { return bChangeable; }
  const std::string& strGetName() const { return strName; }
  const std::string& strGetUnit() const { return strUnit; }
  double dGetWeight() const { return dWeight; }
  void vSetWeight(double w) { dWeight = w; }
  void vSetLimits(double min, double max, int steps) { dMin = min, dMax = max, iSteps = steps; }
  void vSetNameUnit(const std::string& name, const std::string& unit) { strName = name, strUnit = unit; }
  void vSetChangeable(bool b) { bChangeable = b; }

 private:
  std::string prefix() const;

  TTyp tTyp = 0;
  double dContent = 0;
  std::string strName = "Name";
  std::string strUnit = "Unit";
  double dMin = 0, dMax = 255.0;
  int iSteps = 255;
  bool bChangeable = true;
  double dWeight = 0;
};

class TCameraRegisterVector {
 public:
  unsigned size() const { return static_cast<unsigned>(Registers.size()); }
  // Replaces the register of the same type, else appends.
  void vSetRegister(const TCameraRegister& r);
  void vSetRegister(TCameraRegister::TTyp t, double v);
  // Null for an index or type not held.
  TCameraRegister* pGetRegister(unsigned i);
  const TCameraRegister* pGetRegister(unsigned i) const;
  TCameraRegister* pGetRegister(TCameraRegister::TTyp t);
  const TCameraRegister* pGetRegister(TCameraRegister::TTyp t) const;
  bool bIsRegister(TCameraRegister::TTyp t) const { return _findRegister(t) >= 0; }
  // 0 for a type not held.
  double dGetContent(TCameraRegister::TTyp t) const;
  void vWriteIni(TKxIniFile* ini, const char* section, bool full = true) const;
  void vReadIni(TKxIniFile* ini, const char* section, bool full = true);
  void vWriteIniWeights(TKxIniFile* ini, const char* section) const;
  void vReadIniWeights(TKxIniFile* ini, const char* section);
  // The weights of the registers of the same type in `other`.
  void vTakeWeightsForm(const TCameraRegisterVector& other);
  // Sum of other's weight · |content − other's content|, register by
  // register; 0 for vectors of other sizes.
  double dGetDistance(const TCameraRegisterVector& other) const;
  // The same with signs, for interpolation along one axis.
  double dGetDistanceInterpol(const TCameraRegisterVector& other) const;
  // Not provided: raises 0x700000.
  bool operator==(const TCameraRegisterVector& other) const;

 private:
  int _findRegister(TCameraRegister::TTyp t) const;
  std::vector<TCameraRegister> Registers;
};

class TCameraRegisterVectorList {
 public:
  TCameraRegisterVectorList() = default;
  virtual ~TCameraRegisterVectorList() = default;

  unsigned uiGetSize() const { return static_cast<unsigned>(Entries.size()); }
  // 0x5100000 for an index beyond the list.
  void vGetFromIndex(unsigned i, TCameraRegisterVector* out) const;
  // The nearest entry (the earlier one on a tie); 0 for null or forceFirst,
  // -2 for an empty list.
  int iGetIndex(const TCameraRegisterVector* v, bool forceFirst) const;
  // The second neighbour: the nearest entry other than `first` whose
  // distance differs from first's; -1 for null or an empty list, -2 for none.
  int iGetIndex2(const TCameraRegisterVector* v, unsigned first) const;
  // Replaces the nearest entry when it is at distance 0 (or with
  // forceFirst), else appends; the entry takes the defaults' weights, and
  // entry 0 becomes the defaults. Null raises 0x5100000.
  virtual int iSet(const TCameraRegisterVector* v, bool forceFirst);
  virtual void vDelete(unsigned i);
  virtual void vInit();
  void vSetCamera(TCamera* c) { pCamera = c; }
  TCamera* pGetCamera() const { return pCamera; }
  void vSetLastUseData();
  void vSetLastIndex(unsigned i) { iLastIndex = static_cast<int>(i); }
  int iGetLastIndex() const { return iLastIndex; }
  // The camera's state differs from the last use data.
  bool bChangeData() const;
  void vSetTimeStamp() { stamp_.set(); }
  const Process::TTimeStamp& tGetTimeStamp() const { return stamp_; }
  TCameraRegisterVector& rGetDefaults() { return Defaults; }
  const TCameraRegisterVector& rGetLastUseData() const { return LastUseData; }
  const TCameraRegisterVector& rGetEntry(unsigned i) const;

  // "Number", and entry i in "<section>\DataList<i>".
  virtual void vReadIni(TKxIniFile* ini, const char* section);
  virtual void vWriteIni(TKxIniFile* ini, const char* section) const;
  // The defaults with their weights, in the section itself.
  void vReadIniDefault(TKxIniFile* ini, const char* section);
  void vWriteIniDefault(TKxIniFile* ini, const char* section) const;

 protected:
  TCamera* pCamera = nullptr;
  TCameraRegisterVector LastUseData;
  TCameraRegisterVector Defaults;
  int iLastIndex = -1;
  Process::TTimeStamp stamp_{0};
  std::vector<TCameraRegisterVector> Entries;
};
