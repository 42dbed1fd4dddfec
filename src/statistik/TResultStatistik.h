// The result of a statistic: TResultBSchwerpunkt with the names and units
// of the measured value and of a profile's reference axis, and the
// reference cursor from which positions on a profile are measured.
#pragma once

#include <string>

#include "statistik/TResultBasic.h"

class TKxIniFile;
namespace Rastrix {
class TPlaneBasic;
}

class TResultStatistik : public TResultBSchwerpunkt {
 public:
  TResultStatistik* pVirtualClone() const override { return new TResultStatistik(*this); }
  virtual TResultStatistik& operator=(const TResultStatistik& o);
  TResultStatistik() = default;
  TResultStatistik(const TResultStatistik&) = default;

  virtual void setValueUnit(const std::string& value, const std::string& unit);
  virtual const std::string& rStrGetValue() const { return sValue; }
  virtual const std::string& rStrGetUnit() const { return sUnit; }
  virtual void setValueUnitRef(const std::string& value, const std::string& unit);
  virtual const std::string& rStrGetValueRef() const { return sValueRef; }
  virtual const std::string& rStrGetUnitRef() const { return sUnitRef; }
  // Value name and unit of the plane's channel; the reference unit from the
  // plane's coordinate system (its length unit if one is set, else the unit
  // and name of x).
  virtual void setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel);
  virtual void setReferenzCursorXY(double x, double y);
  virtual void getReferenzCursorXY(double& x, double& y) const;
  // The stored reference while the cursor is (0, 0); else the distance of
  // (x, y) to the cursor, negative left of it (or level with it and below).
  virtual double dGetNewReferenzD(double x, double y) const;
  // Number `type` (0 .. 14) as "<name> = <value> <unit>", the name in the
  // current language: no unit for the count, the value's unit for 1 to 4,
  // the reference unit for the reference, the centres and the positions.
  // `digits` significant digits.
  virtual std::string strFormat(int type, int digits = 6) const;
  // "Value", "Unit", "ValueRef", "UnitRef".
  virtual void vWriteIni(TKxIniFile* ini, const char* section) const;
  virtual void vReadIni(TKxIniFile* ini, const char* section);

 protected:
  double dReferenzCursorX = 0, dReferenzCursorY = 0;
  std::string sValue = "Value", sUnit = "Unit", sValueRef = "ValueRef", sUnitRef = "UnitRef";
};

// The results of the integral and symbol statistics: their numbers are
// items of the list.
class TResultIntegral : public TResultStatistik {
 public:
  TResultIntegral* pVirtualClone() const override { return new TResultIntegral(*this); }
};

class TResultSymbol : public TResultStatistik {
 public:
  TResultSymbol* pVirtualClone() const override { return new TResultSymbol(*this); }
};
