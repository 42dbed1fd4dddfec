// Colour differences: between a colour and a fixed second colour, or between
// two colours, in the space each difference is defined in.
//
//   0 "dE(L*u*v*)"         Euclidean in L*u*v*
//   1 "dE(L*a*b*)"         Euclidean in L*a*b*
//   2 "dE(L*a*b*,A,B,C)"   sqrt(A dL*^2 + B da*^2 + C db*^2)
//   3 "dE(Lu'v',A,B)"      sqrt(A (du'^2 + dv'^2) + B ((L1 - L2) / L2)^2)
//   4 "L2(Lxy)"            sqrt(dx^2 + dy^2)
//   5 "Loo(Lxy)"           max(|dx|, |dy|)
//   7 "dE(CIE_RGB)"        Euclidean in CIE RGB
// A negative sum under a root gives 0, and so does L2 at or below 0 in 3.
// An unknown difference raises 0xe0721094.
#pragma once

#include "rastrix/TPixelColorSpace.h"

namespace Rastrix {

class TPixelColorDiff {
 public:
  enum COLDIF {
    eLuvStar = 0,
    eLabStar = 1,
    eLabStarABC = 2,
    eLu_v_AB = 3,
    eL2Lxy = 4,
    eLooLxy = 5,
    eEnd = 6,
    eCIE_RGB = 7
  };
  struct COLDIF_INFO {
    COLDIF value;
    unsigned space;
    const char* name;
    int paramCount;
    const char* params[3];
  };
  // The row of a difference, by value or by name.
  static const COLDIF_INFO& rGetCOLDIF_INFO(COLDIF value);
  static const COLDIF_INFO& rGetCOLDIF_INFO(const char* name);

  // Colours are given in `from`; the difference is `d`.
  void vSetColorSpace(unsigned from, COLDIF d);
  // The reference white of the first and of the second colour, in `flag`.
  void vSetReferenzColor(const TRGBFloatPixel& first, const TRGBFloatPixel& second, unsigned flag);
  // First colours darker than this give 0.
  void vSetMinimumLuminance(double d) { dMinimum = d; }
  void vSetParam(double a, double b, double c) {
    dA = a;
    dB = b;
    dC = c;
  }
  void vSetSecondColor(const TRGBFloatPixel& p);
  // The difference of `p` to the second colour.
  float fGetColorDiff1(const TRGBFloatPixel& p);
  // The difference of two colours.
  float fGetColorDiff2(const TRGBFloatPixel& a, const TRGBFloatPixel& b);
  COLDIF eGetColDif() const { return eDiff; }

 private:
  float _fDiff() const;

  TPixelColorSpace first, second;
  COLDIF eDiff = eLabStar;
  unsigned uFrom = TPixelColorSpace::CIE_RGB;
  double dMinimum = 0.0;
  double dA = 1.0, dB = 1.0, dC = 1.0;
};

}  // namespace Rastrix
