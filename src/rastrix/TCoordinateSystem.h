// World coordinate systems of planes: how a line and column number become X
// and Y in some unit, what an area is, and what the third coordinate means.
//
// Systems are shared objects, referred to by the descriptions (commons) of
// planes, each of which counts as one user (vIncreaseUser/vDecreaseUser). The
// process-wide TCoordinateSystemVector is the owner of all of them and is
// itself the default system: reach it by pGetDefaultCoordinateSystem(). It is
// created on first use and never destroyed, so it outlives every plane.
//
// Texts are Latin-1 ("Pixel\xB2"). Nothing here is locked: use one thread.
#pragma once

#include <string>

#include "kxexception/TTimeStamp.h"
#include "rastrix/TSignatur.h"

namespace Rastrix {

// The class of a system; the number is what ini files and file headers store
// under "KoordTyp".
enum ETypOfKS : unsigned char {
  eKSDefault = 0,          // TCoordinateSystem
  eKSSizeShift = 1,        // TSizeShiftCoordinateSystem
  eKSLinear = 2,           // TLinearCoordinateSystem
  eKSProjektionswand = 3,  // TCoordinateSystemProjektionswand
  eKSKugel = 4,            // TCoordinateSystemKugel
  eKSLvk = 5               // TCoordinateSystemLvk
};

// The base system: the identity. Column and line are X and Y in pixels.
class TCoordinateSystem {
 public:
  TCoordinateSystem();
  // Systems are shared by pointer and counted: they are not copied as objects.
  TCoordinateSystem(const TCoordinateSystem&) = delete;
  TCoordinateSystem& operator=(const TCoordinateSystem&) = delete;
  virtual ~TCoordinateSystem();

  // Area of one pixel in the area unit.
  virtual double dGetFactorA() const { return dFactorA; }
  // The name of the class in the current language.
  virtual const char* cpGetTypName() const;
  // World X and Y of pixel (column, line); null pointers are skipped.
  virtual void vGetWorldXY(double* x, double* y, int column, int line) const;
  virtual void vGetWorldXY2(double* x, double* y, double column, double line) const;
  // World area of the pixel (column, line).
  virtual void vGetWorldA(double* a, int column, int line) const;
  // Pixel of world (x, y), truncated; null pointers are skipped.
  virtual void vGetOrgXY(int* column, int* line, double x, double y) const;
  virtual void vGetOrgXY2(double* column, double* line, double x, double y) const;

  // Users: the plane descriptions that refer to this system.
  void vIncreaseUser() { ++iUser; }
  void vDecreaseUser() { --iUser; }
  int iGetUser() const { return iUser; }
  bool bIsUser() const { return iUser > 0; }

  ETypOfKS eGetTypOfKS() const { return eTyp; }
  const TSignatur& rGetSignatur() const { return signatur; }
  const Process::TTimeStamp& getTimeStamp() const { return timeStamp; }
  bool bIsChanged() const { return bChanged; }
  bool bIsChangeable() const { return bChangeable; }
  void vSetChangeable(bool b) { bChangeable = b; }
  // The changed flag alone.
  void vSetChanged(bool b) { bChanged = b; }
  // A change: the changed flag, a fresh signature and the time stamp.
  void vSetChanged();

  const std::string& rStrGetNameKS() const { return sName; }
  const std::string& rStrGetNameX() const { return sNameX; }
  const std::string& rStrGetUnitX() const { return sUnitX; }
  const std::string& rStrGetNameY() const { return sNameY; }
  const std::string& rStrGetUnitY() const { return sUnitY; }
  const std::string& rStrGetUnitL() const { return sUnitL; }
  const std::string& rStrGetUnitA() const { return sUnitA; }
  const std::string& rStrGetNameZ() const { return sNameZ; }
  const std::string& rStrGetUnitZ() const { return sUnitZ; }
  double dGetValueZ() const { return dValueZ; }
  unsigned long ulGetPossibilities() const { return ulPossibilities; }

  // Each does nothing unless the system is changeable and the value differs;
  // then it stores and calls vSetChanged(). A unit X given as the UTF-8 degree
  // sign is stored as the Latin-1 byte.
  void setNameKS(const std::string& name);
  void setNameUnitX(const std::string& name, const std::string& unit);
  void setNameUnitY(const std::string& name, const std::string& unit);
  void setUnitL(const std::string& unit);
  void setUnitA(const std::string& unit);
  void setFactorA(double factor);
  // These go through whether changeable or not.
  void vSetNameZ(const std::string& name);
  void vSetUnitZ(const std::string& unit);
  void vSetValueZ(double value);
  void vSetPossibilities(unsigned long bits);

 protected:
  ETypOfKS eTyp = eKSDefault;
  int iUser = 0;
  std::string sName = "Default";
  std::string sNameX = "X";
  std::string sUnitX = "Pixel";
  std::string sNameY = "Y";
  std::string sUnitY = "Pixel";
  std::string sUnitL = "Pixel";
  std::string sUnitA = "Pixel\xB2";
  bool bChangeable = false;
  double dFactorA = 1.0;
  std::string sNameZ;
  std::string sUnitZ;
  double dValueZ = 0.0;
  unsigned long ulPossibilities = 0;
  bool bChanged = false;
  TSignatur signatur;
  Process::TTimeStamp timeStamp;
};

// The owner of every coordinate system of the process, and itself the default
// system (index -1 in its loops).
class TCoordinateSystemVector : public TCoordinateSystem {
 public:
  TCoordinateSystemVector() = default;
};

TCoordinateSystemVector* pGetDefaultCoordinateSystemVector();
// The default system: the vector itself.
TCoordinateSystem* pGetDefaultCoordinateSystem();

}  // namespace Rastrix
