// The statistic of one pixel type: a matrix of results, one group per colour
// channel (one for grey planes, three for RGB planes: red, green, blue) and
// one result per class of the classifier. Pixels come in one at a time or
// as runs of a line; each is classified and its value, world position and
// pixel area go to the result of its class in each group.
#pragma once

#include <memory>
#include <type_traits>
#include <vector>

#include "kxexception/TDelivery.h"
#include "rastrix/TPixelKlassifikator.h"
#include "rastrix/TPlane.h"
#include "rastrix/TRGBPixel.h"
#include "statistik/TResultStatistik.h"

class TKxIniFile;

enum EPicStatistikType : unsigned char {
  eStatStandard = 0,
  eStatIntegral = 1,
  eStatSymbol = 3,
  eStatArc = 4,
  eStatFilament = 5,
  eStatFocus = 6,
};

template <class T>
class TPicStatistik {
 public:
  using TPixel = T;
  static constexpr bool bColour =
      std::is_same_v<T, Rastrix::TRGBPixel> || std::is_same_v<T, Rastrix::TRGBFloatPixel>;
  static constexpr unsigned uGroups = bColour ? 3 : 1;

  TPicStatistik();
  virtual ~TPicStatistik();
  TPicStatistik(const TPicStatistik&) = delete;
  TPicStatistik& operator=(const TPicStatistik&) = delete;

  // A pixel without position: its class by value, addValue(value, 1).
  virtual void addPixel(const T& pixel);
  // The class without the plane (integral and symbol classifiers give 0).
  virtual void addPixelLC(const T& pixel, const Rastrix::TPlane<T>* plane, double line, double column);
  // The class with the plane, written to the label plane.
  virtual void addPixelLCLabel(const T& pixel, const Rastrix::TPlane<T>* plane, double line, double column,
                               Rastrix::TPlane<unsigned char>* label);
  // The classifier's size; rebuilds the matrix when it changed.
  virtual unsigned uGetKlassifikatorSize();
  virtual unsigned uGetGroupCount() const { return uGroups; }
  virtual void vLock(bool b) { bLock = b; }
  virtual bool bIsLock() const { return bLock; }
  virtual void vFirstLock(bool b) { bFirstLock = b; }
  virtual bool bIsFirstLock() const { return bFirstLock; }
  // The results of every group and class in "<section>/Group<g>/Class<c>".
  virtual void vWriteIni(TKxIniFile* ini, const char* section) const;
  virtual void vReadIni(TKxIniFile* ini, const char* section);

  // A run of n pixels of a line from `column` on, as addPixelLC (or, with a
  // label plane, addPixelLCLabel) of each, with the sums of a class stretch
  // gathered at once.
  void addRunLC(const Rastrix::TPlane<T>& plane, int line, int column, int n, Rastrix::TPlane<unsigned char>* label);
  // The pixel contributes, class by class, the mean of the circle of
  // `diameter` around it (clipped to the plane).
  void addPixelAveraged(const Rastrix::TPlane<T>& plane, int line, int column, unsigned diameter);

  // Keeps class 0's result of each group as the template of the new matrix.
  void vSetKlassifikator(Rastrix::TPixelKlassifikator* p);
  Rastrix::TPixelKlassifikator* pGetKlassifikator() const;
  // Every class of the group (modulo the group count) gets a clone of r;
  // group 0 rebuilds the matrix to the classifier's size first.
  void vSetResult(unsigned group, const TResultStatistik* r);
  void start();
  void stop();
  void vReset();
  // 0x5100000 for a group or class out of range.
  TResultStatistik* getResult(unsigned group, unsigned cls);
  void setReferenzCursorXY(double x, double y);
  EPicStatistikType eGetPicStatistikType() const { return eType; }
  void setPicStatistikType(EPicStatistikType t) { eType = t; }

  // The channel value of a pixel for a group.
  static double dValue(const T& p, unsigned group);

 private:
  unsigned _class(const T& pixel, int line, int column, const Rastrix::TPlane<T>* plane) const;
  void _checkKlassifikator() const;
  void _world(const Rastrix::TPlane<T>* plane, int line, int column, double& x, double& y, double& area) const;

  EPicStatistikType eType = eStatStandard;
  bool bLock = false;
  Rastrix::TPixelKlassifikator* Klassifikator;
  const Rastrix::TPixelKlassifikatorTyp* KlassifikatorTyp = nullptr;
  std::vector<std::vector<std::unique_ptr<TResultStatistik>>> Results;
  bool bFirstLock = false;
  // Listens to the classifier, so that its deletion is noticed.
  TDelivery watch_;
  std::vector<unsigned> classes_;
  std::vector<double> values_;
};

using TPicStatistik1UC = TPicStatistik<unsigned char>;
using TPicStatistik1US = TPicStatistik<unsigned short>;
using TPicStatistik1I = TPicStatistik<int>;
using TPicStatistik1F = TPicStatistik<float>;
using TPicStatistikRGB = TPicStatistik<Rastrix::TRGBPixel>;
using TPicStatistikRGBFloat = TPicStatistik<Rastrix::TRGBFloatPixel>;

extern template class TPicStatistik<unsigned char>;
extern template class TPicStatistik<unsigned short>;
extern template class TPicStatistik<int>;
extern template class TPicStatistik<float>;
extern template class TPicStatistik<Rastrix::TRGBPixel>;
extern template class TPicStatistik<Rastrix::TRGBFloatPixel>;
