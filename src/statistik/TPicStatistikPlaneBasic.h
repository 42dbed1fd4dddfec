// A statistic bound to a picture and to an object of an object list: it
// runs the pixel loop over the object's region (or along its border), keeps
// its copy of the object to notice changes, and decides by time stamps
// whether it must run again. TStatistikBasicVector keeps many of them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kxexception/TSignatur.h"
#include "object98/TBorderLine.h"
#include "object98/TObjectList98.h"
#include "object98/TRLCArray.h"
#include "rastrix/TPlaneBasic.h"
#include "statistik/TStatistikBasic.h"

class TPicStatistikPlaneBasic : public TStatistikBasic {
 public:
  // Picture and result must be set (else 0x5100000); the pixel type is the
  // picture's.
  TPicStatistikPlaneBasic(int index, Rastrix::TPlaneBasic* picture, const TResultStatistik* result);

  void setPicture(Rastrix::TPlaneBasic* plane);
  // Binds the statistic to object `index` of the list: its points, name,
  // signature, and its region (or, with asBorder, its border line).
  void setObject(int index, TObjectList98* list, bool asBorder);
  // A region or border of the caller's, used instead of the object's.
  void setRLC(const TRLCArray& rlc);
  void setBorder(const TBorderLine& line);
  const TOPointList<int>& getObject() const { return Object; }
  TObjectList98* pGetObjectList() const { return TObjectList98::bIsValid(ObjectList) ? ObjectList : nullptr; }
  Rastrix::TPlaneBasic* pGetPicture() const { return Picture; }
  unsigned uiGetFirstIndex() const { return uiFirstIndex; }
  void vSetDiameter(unsigned d) { uiDiameter = d; }
  unsigned uiGetDiameter() const { return uiDiameter; }

  // loopBorder or loopRLC; circles end with their references in degrees,
  // border statistics measured from their first point.
  void loopLC() override;
  virtual void loopLC(Rastrix::TPlaneBasic* plane);
  // Null arguments: the own picture and region. The label path is taken
  // when the region is the object's, the classifier has more than one class,
  // the list is valid and the object's area is drawn.
  virtual void loopRLC(Rastrix::TPlaneBasic* plane, const TRLCArray* rlc);
  virtual void loopBorder(Rastrix::TPlaneBasic* plane, const TBorderLine* line);

  // A newer picture: update, accumulating. A newer object, another point
  // list or name, a newer coordinate system: update with newCalc.
  bool bNeedUpdate(bool& newCalc) override;
  bool bUpdateObject() override;
  bool bExistObject() override { return _iGetObjectIndex() >= 0; }
  // The properties of every result from the picture; histograms get their
  // bins from the picture's range (per channel for colour planes).
  void setPictureProperties(Rastrix::TPlaneBasic* plane);
  void correctReferenzOffset(bool circle);
  void correctReferenzOffset(double x, double y);
  // Object, source and unit names of the results from picture and object.
  void vUpdateNames();

  // "<section>/PicStatistik": "Diameter", "PicName", "Signatur",
  // "bDirectBorder", "bDirectRLC", "bIsCircle"; then the base's keys.
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;

 protected:
  // The object's index now (found again by signature after list changes),
  // -1 when it is gone.
  int _iGetObjectIndex();
  void _vFetchObject(int index);

  TOPointList<int> Object;
  TRLCArray DirectRLC, ObjectRLC;
  bool bDirectRLC = false, bDirectBorder = false;
  Rastrix::TPlaneBasic* Picture;
  bool bIsBorderObject = false;
  TBorderLine DirectBorder, ObjectBorder;
  unsigned uiDiameter = 1;
  TObjectList98* ObjectList = nullptr;
  unsigned uiFirstIndex = 0;
  std::string PicName;
  TSignatur Signatur;
  bool bIsCircle = false;
  std::string ObjectName;
  Process::TTimeStamp objectStamp_{0};
};

// The integral statistic: at stop, class 1's light goes into class 2.
class TPicStatistikIntegral : public TPicStatistikPlaneBasic {
 public:
  TPicStatistikIntegral(int index, Rastrix::TPlaneBasic* picture, const TResultStatistik* result)
      : TPicStatistikPlaneBasic(index, picture, result) {
    setPicStatistikType(eStatIntegral);
  }
};

// The symbol statistic: after the integral step, the region of class 2
// (from the label plane) is measured again with the symbol classifier's
// diameter and border distance, and class 2's numbers come from there.
class TPicStatistikSymbol : public TPicStatistikIntegral {
 public:
  TPicStatistikSymbol(int index, Rastrix::TPlaneBasic* picture, const TResultStatistik* result)
      : TPicStatistikIntegral(index, picture, result) {
    setPicStatistikType(eStatSymbol);
  }
  void stop() override;
};

class TStatistikBasicVector {
 public:
  int size() const { return static_cast<int>(Items.size()); }
  TStatistikBasic& operator[](int i);
  void append(std::unique_ptr<TStatistikBasic> s) { Items.push_back(std::move(s)); }
  void erase(int i);
  void clear() { Items.clear(); }
  // Drops the statistics whose object is gone, then runs those that need
  // it: locked ones only when first-locked (then once more, and they hold).
  // Answers whether anything changed.
  bool bUpdateObjects(bool force, bool newCalc, EStatistikType type);
  const Process::TTimeStamp& getTimeStamp() const { return stamp_; }

 private:
  std::vector<std::unique_ptr<TStatistikBasic>> Items;
  Process::TTimeStamp stamp_{0};
};
