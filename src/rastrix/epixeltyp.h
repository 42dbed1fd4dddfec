// The numbering of the six pixel types. The numbers are stored in files and
// compared all over the system (and are the type codes of the image handles):
// never change them.
#pragma once

enum eComparePixelTyp : unsigned char {
  eUC = 0,    // unsigned 8-bit
  eUS = 1,    // unsigned 16-bit
  eF = 2,     // 32-bit IEEE float
  eRGB = 3,   // Rastrix::TRGBPixel, three bytes
  eRGBF = 4,  // Rastrix::TRGBFloatPixel, three floats
  eI = 5      // signed 32-bit, bare TPlane<int>
};

// The default value range of a pixel type: minimum, display/input step and
// maximum. Any of the pointers may be null and is then skipped. A number
// outside 0..5 raises 0x07000000.
void vGetDefaultValueRangeMSM(eComparePixelTyp e, double* pMin, double* pStep, double* pMax);
