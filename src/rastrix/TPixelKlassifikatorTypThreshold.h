// The threshold classifiers, instantiated for the pixel types.
//
// Plain threshold: class i holds the pixels with threshold[i-1] <= pixel <
// threshold[i]; the thresholds are taken in their order (nothing sorts
// them), the first one above the pixel decides, and the last stored
// threshold is never compared. The comparison is made in double; a NaN
// falls through to the top class; colour pixels compare by their luminance
// (TRGBPixel: r + 4.5907 g + 0.0601 b).
//
// Contrast (float): three classes, the middle one rejected, decided as the
// plain threshold. Integral (float, TRGBFloatPixel): a local-contrast test of
// the pixel against the maximum or minimum of its window; needs the plane
// (class 0 without). Symbol: the integral classifier with the diameter and
// border distance that the symbol statistic uses.
#pragma once

#include <type_traits>
#include <vector>

#include "rastrix/TPixelKlassifikator.h"

namespace Rastrix {

template <class T>
class TPixelKlassifikatorTypThreshold : public TPixelKlassifikatorTypThresholdB {
 public:
  // One class with threshold 0.
  TPixelKlassifikatorTypThreshold();
  TPixelKlassifikatorTypThreshold(const TPixelKlassifikatorTypThreshold&) = default;
  TPixelKlassifikatorTypThreshold& operator=(const TPixelKlassifikatorTypThreshold& o);
  TPixelKlassifikatorTypThreshold* pVirtualClone() const override;

  // 2 * size() columns: the name, the classes, the thresholds but the last.
  unsigned uiGetTableColumns() const override { return 2 * size(); }
  void vCreateTable(TKxTable* table) const override;
  void vAppendTable(TKxTable* table) const override;
  // The thresholds follow: from index old size - 1 upward a new entry copies
  // the one before it when the old size was above 1; else new entries are 0.
  void resize(unsigned n) override;
  // True if this is the threshold classifier of that pixel type (never for
  // int, which has none).
  bool bIsPixelTyp(eComparePixelTyp e) const override { return e == ePixel; }
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;
  void vClassifyPlane(const TPlaneBasic& src, TPlaneBasic& classes, bool withPlane = true) const override;

  using TPixelKlassifikatorTyp::getTyp;
  unsigned getTyp(const T& pixel) const override;
  // Position and plane play no part: the plain form through the virtual table.
  unsigned getTyp(const T& pixel, int, int, const TPlane<T>*) const override { return getTyp(pixel); }

  virtual eComparePixelTyp eGetPixelTyp() const { return ePixel; }
  // An index at or above size() raises 0x5100000.
  void vSetThreshold(unsigned i, const double& value);
  double dGetThreshold(unsigned i) const;
  const std::vector<double>& rGetThresholds() const { return thresholds; }

  static constexpr eComparePixelTyp ePixel = std::is_same_v<T, unsigned char>    ? eUC
                                             : std::is_same_v<T, unsigned short> ? eUS
                                             : std::is_same_v<T, TRGBPixel>      ? eRGB
                                             : std::is_same_v<T, TRGBFloatPixel> ? eRGBF
                                                                                 : eF;

 protected:
  // The columns up to the thresholds; `thresholdColumns` of them.
  void _vCreateColumns(TKxTable* table, unsigned thresholdColumns) const;
  void _vAppendValues(TKxTable* table, unsigned thresholdColumns) const;

  std::vector<double> thresholds;
};

// Lower and upper threshold, the class between them rejected.
template <class T>
class TPixelKlassifikatorTypThresholdContrast : public TPixelKlassifikatorTypThreshold<T> {
 public:
  TPixelKlassifikatorTypThresholdContrast() { this->eTyp = TPixelKlassifikator::eLuminance; }
  TPixelKlassifikatorTypThresholdContrast* pVirtualClone() const override;
  // Always three classes, class 1 rejected, whatever `n`.
  void resize(unsigned n) override;
  bool bIsResizeable() const override { return false; }
  // Sets the type to 4, nothing else.
  void vSetDefault() override { this->eTyp = TPixelKlassifikator::eLuminance; }
};

template <class T>
class TPixelKlassifikatorTypThresholdIntegral : public TPixelKlassifikatorTypThreshold<T> {
 public:
  TPixelKlassifikatorTypThresholdIntegral() { this->eTyp = TPixelKlassifikator::eIntegral; }
  TPixelKlassifikatorTypThresholdIntegral& operator=(const TPixelKlassifikatorTypThresholdIntegral& o);
  TPixelKlassifikatorTypThresholdIntegral(const TPixelKlassifikatorTypThresholdIntegral&) = default;
  TPixelKlassifikatorTypThresholdIntegral* pVirtualClone() const override;

  // size() + 6 columns: name, classes, threshold 0, "Breite", "Höhe",
  // "Faktor", "NC".
  unsigned uiGetTableColumns() const override { return this->size() + 6; }
  void vCreateTable(TKxTable* table) const override;
  void vAppendTable(TKxTable* table) const override;
  // Always three classes: 0 fails the absolute threshold, 1 background,
  // 2 foreground.
  void resize(unsigned n) override;
  bool bIsResizeable() const override { return false; }
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;
  void vClassifyPlane(const TPlaneBasic& src, TPlaneBasic& classes, bool withPlane = true) const override;

  using TPixelKlassifikatorTypThreshold<T>::getTyp;
  // The window: uiWidth counts along the lines, uiHeight along the columns;
  // it starts at line - uiWidth / 2 (not before the first line) and ends
  // before L0 + uiWidth (not after the last line, which no window holds);
  // columns alike. M and m start as the pixel.
  unsigned getTyp(const T& pixel, int line, int column, const TPlane<T>* plane) const override;

  virtual void vSetIntegralData(unsigned width, unsigned height, double factor, bool negativeContrast);
  virtual void vGetIntegralData(unsigned* width, unsigned* height, double* factor, bool* negativeContrast) const;

 protected:
  unsigned uiWidth = 5;
  unsigned uiHeight = 5;
  double dFactor = 0.5;
  bool bNegativeContrast = false;
};

template <class T>
class TPixelKlassifikatorTypThresholdSymbol : public TPixelKlassifikatorTypThresholdIntegral<T> {
 public:
  TPixelKlassifikatorTypThresholdSymbol() { this->eTyp = TPixelKlassifikator::eSymbol; }
  TPixelKlassifikatorTypThresholdSymbol& operator=(const TPixelKlassifikatorTypThresholdSymbol& o);
  TPixelKlassifikatorTypThresholdSymbol(const TPixelKlassifikatorTypThresholdSymbol&) = default;
  TPixelKlassifikatorTypThresholdSymbol* pVirtualClone() const override;

  // size() + 8 columns: the integral's, "Durchmesser", "Randabstand".
  unsigned uiGetTableColumns() const override { return this->size() + 8; }
  void vCreateTable(TKxTable* table) const override;
  void vAppendTable(TKxTable* table) const override;
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  void vReadIni(TKxIniFile* ini, const char* section) override;

  // The diameter is made odd: (d & ~1) + 1.
  virtual void vSetSymbolData(unsigned diameter, unsigned borderDistance);
  virtual void vGetSymbolData(unsigned* diameter, unsigned* borderDistance) const;

 protected:
  unsigned uiDiameter = 3;
  unsigned uiBorderDistance = 0;
};

extern template class TPixelKlassifikatorTypThreshold<unsigned char>;
extern template class TPixelKlassifikatorTypThreshold<unsigned short>;
extern template class TPixelKlassifikatorTypThreshold<float>;
extern template class TPixelKlassifikatorTypThreshold<TRGBPixel>;
extern template class TPixelKlassifikatorTypThreshold<TRGBFloatPixel>;
extern template class TPixelKlassifikatorTypThresholdContrast<float>;
extern template class TPixelKlassifikatorTypThresholdIntegral<float>;
extern template class TPixelKlassifikatorTypThresholdIntegral<TRGBFloatPixel>;
extern template class TPixelKlassifikatorTypThresholdSymbol<float>;
extern template class TPixelKlassifikatorTypThresholdSymbol<TRGBFloatPixel>;

}  // namespace Rastrix
