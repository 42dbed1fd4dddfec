// Pixel classifiers decide for each pixel of a region to which class it
// belongs (0 .. size() - 1). TPixelKlassifikator is the root of the family: it
// holds what all classifiers share and decides by position only, and the base
// itself knows a single class, so getTyp is always 0.
//
// A classifier is shared by pointer (statistics, planes) and never owned by a
// plane. Every change sets its time stamp, which tells the users to
// recalculate. pGetDefaultPixelKlassifikator() is the library-wide default:
// a base classifier with one class, to which every plane and new statistic is
// bound until another is set. Not thread safe.
#pragma once

#include <string>
#include <vector>

#include "kxexception/TDelivery.h"
#include "kxexception/TSignatur.h"
#include "rastrix/epixeltyp.h"

class TKxTable;
class TKxIniFile;

namespace Rastrix {

class TPlaneBasic;
template <class T>
class TPlane;
class TRGBPixel;
class TRGBFloatPixel;

class TPixelKlassifikator : public TDelivery {
 public:
  enum eKlassifikatorTyp : unsigned char {
    eDefault = 0,          // TPixelKlassifikator
    eDefaultTyp = 1,       // TPixelKlassifikatorTyp
    eThreshold = 2,        // TPixelKlassifikatorTypThreshold<T>
    eIntegral = 3,         // TPixelKlassifikatorTypThresholdIntegral<T>
    eLuminance = 4,        // TPixelKlassifikatorTypThresholdContrast<T>
    eColorFilter = 5,      // TPlaceKlassifikator
    eSymbol = 6,           // TPixelKlassifikatorTypThresholdSymbol<T>
    eArc = 7,              // TArcKlassifikator
    eFilament = 8,         // TFilamentKlassifikator
    eAll = 9               // the wildcard of bIsKlassifikatorTyp, no class
  };

  // One class named "C0", the name "Default", a fresh signature.
  TPixelKlassifikator();
  // Copies everything, the signature included.
  TPixelKlassifikator(const TPixelKlassifikator& o);
  // resize to the source's size, then names, rejection flags, type and flags;
  // not the signature. Sets the time stamp.
  TPixelKlassifikator& operator=(const TPixelKlassifikator& o);
  ~TPixelKlassifikator() override;

  // A new object of the dynamic type, assigned from this one.
  virtual TPixelKlassifikator* pVirtualClone() const;
  // Type 0, both flags clear, the name "Default", one class.
  virtual void vSetDefault();
  virtual unsigned uiGetTableColumns() const { return 0; }
  // The columns of this kind of classifier in a list view (none for the
  // base); a null table raises 0x5100000. vAppendTable adds a line with this
  // classifier's values.
  virtual void vCreateTable(TKxTable* table) const;
  virtual void vAppendTable(TKxTable* table) const;
  // Sets the number of classes: a new class gets the name "C<index>" and is not
  // rejected; existing entries stay. Sets the time stamp.
  virtual void resize(unsigned n);
  virtual bool bIsResizeable() const { return true; }
  // The class of the pixel at (line, column): the base has one class only.
  virtual unsigned getTyp(int line, int column) const;
  // Class names and rejection flags: an index at or above size() raises
  // 0x5100000.
  virtual const std::string& rStrGetClassName(unsigned index) const;
  virtual void vSetClassName(unsigned index, const std::string& name);
  virtual const std::string& rStrGetKlassifikatorName() const { return sName; }
  virtual void vSetKlassifikatorName(const std::string& name);
  virtual bool bRejection(unsigned index) const;
  virtual void vSetRejection(unsigned index, bool rejected);
  virtual bool bIsPixelTyp(eComparePixelTyp) const { return true; }
  // The settings in the ini section: "Type", "Signature", "NoDelete", "Size",
  // "Name" and per class "<section>/Class<i>" with "ClassName" and
  // "Rejection". Reading takes the present values as defaults; another
  // "Type" raises 0x7000000, a "Size" below 0 or above uMaxClasses 0x5100000.
  virtual void vWriteIni(TKxIniFile* ini, const char* section) const;
  virtual void vReadIni(TKxIniFile* ini, const char* section);

  // Classifies every pixel of the intersection of `src` and `classes` into
  // `classes` (an 8-bit or 16-bit plane): the class getTyp gives the pixel,
  // with the plane passed to the positional form when `withPlane` is true
  // (the label form of a statistics run), null otherwise. The kinds of
  // classifier bring a typed kernel; the base asks getTyp per pixel. An 8-bit
  // class plane needs size() <= 256 (0x5100000 otherwise).
  virtual void vClassifyPlane(const TPlaneBasic& src, TPlaneBasic& classes, bool withPlane = true) const;

  static constexpr unsigned uMaxClasses = 65536;

  // The name of a classifier type in the current language.
  static const char* strGetTypString(eKlassifikatorTyp t);
  // True if `t` is this classifier's type, or eAll.
  bool bIsKlassifikatorTyp(eKlassifikatorTyp t) const { return t == eTyp || t == eAll; }
  eKlassifikatorTyp eGetKlassifikatorTyp() const { return eTyp; }
  const Process::TTimeStamp& getTimeStamp() const { return rGetTimeStamp(); }
  void setTimeStamp() { vSetTimeStamp(); }
  unsigned size() const { return uSize; }
  const TSignatur& rGetSignatur() const { return signatur; }
  bool bIsNoDelete() const { return bNoDelete; }
  void vSetNoDelete(bool b) { bNoDelete = b; }
  bool bIsErase() const { return bErase; }
  void vSetErase(bool b) { bErase = b; }

 protected:
  void _vAllocName();
  void _vAllocRejection();
  void _vCheckIndex(unsigned index) const;

  eKlassifikatorTyp eTyp = eDefault;
  TSignatur signatur;
  bool bNoDelete = false;
  bool bErase = false;
  unsigned uSize = 0;
  std::string sName;
  std::vector<std::string> classNames;
  std::vector<bool> rejection;
};

TPixelKlassifikator* pGetDefaultPixelKlassifikator();

// The ini section of class i: "<section>/Class<i>".
std::string sClassSection(const char* section, unsigned i);

// Decides by pixel value: every getTyp of a pixel gives 0, one class only.
// The typed forms exist for every pixel type, so that a statistic calls its
// own overload whatever the classifier; one that does not deal with the type
// answers 0.
class TPixelKlassifikatorTyp : public TPixelKlassifikator {
 public:
  TPixelKlassifikatorTyp() { eTyp = eDefaultTyp; }
  TPixelKlassifikatorTyp* pVirtualClone() const override;

  using TPixelKlassifikator::getTyp;
  virtual unsigned getTyp(const unsigned char&) const { return 0; }
  virtual unsigned getTyp(const unsigned short&) const { return 0; }
  virtual unsigned getTyp(const int&) const { return 0; }
  virtual unsigned getTyp(const float&) const { return 0; }
  virtual unsigned getTyp(const TRGBPixel&) const { return 0; }
  virtual unsigned getTyp(const TRGBFloatPixel&) const { return 0; }
  virtual unsigned getTyp(const unsigned char&, int, int, const TPlane<unsigned char>*) const { return 0; }
  virtual unsigned getTyp(const unsigned short&, int, int, const TPlane<unsigned short>*) const { return 0; }
  virtual unsigned getTyp(const int&, int, int, const TPlane<int>*) const { return 0; }
  virtual unsigned getTyp(const float&, int, int, const TPlane<float>*) const { return 0; }
  virtual unsigned getTyp(const TRGBPixel&, int, int, const TPlane<TRGBPixel>*) const { return 0; }
  virtual unsigned getTyp(const TRGBFloatPixel&, int, int, const TPlane<TRGBFloatPixel>*) const { return 0; }

  // Per pixel through the typed positional getTyp.
  void vClassifyPlane(const TPlaneBasic& src, TPlaneBasic& classes, bool withPlane = true) const override;
};

// The untyped base of the threshold classifiers.
class TPixelKlassifikatorTypThresholdB : public TPixelKlassifikatorTyp {
 public:
  TPixelKlassifikatorTypThresholdB() { eTyp = eThreshold; }
};

}  // namespace Rastrix
