// The colour of one pixel in the colour spaces of the system. A plane's
// description holds one by value: it says what the three values of a colour
// pixel mean and in which space a colour pixel is shown.
//
// Every colour travels as a TRGBFloatPixel, third component first: for RGB
// the memory order is blue, green, red; for XYZ it is Z, Y, X; for L x y it is
// y, x, L. Component index 0 of a space (cpGetIndexName) is the third float.
// The hub of the conversions is CIE XYZ.
//
// The state: the space colours come from (from-flag), the space asked for
// (to-flag), the working flags (every space that must be computed on the way),
// one pixel per space, and the reference white. The initial state is CIE RGB
// to CIE RGB with the reference CIE RGB (255, 255, 255).
//
// Spaces that need the reference white (L*u*v*, C*h*s*, L*a*b*, C*h*, WST,
// LWS) are 0 while none is set. No gamma is applied: every RGB is linear.
#pragma once

#include "rastrix/TRGBPixel.h"

namespace Rastrix {

class TPixelColorSpace {
 public:
  // The colour spaces, as bit flags.
  enum : unsigned {
    CIE_RGB = 0x1,
    S_RGB = 0x2,
    EBU_RGB = 0x4,
    USER_RGB = 0x8,
    XYZ = 0x10,
    LXY = 0x20,
    LUV = 0x40,
    LU_V_ = 0x80,
    LSUSVS = 0x100,     // L*u*v*
    CSHSSS_UV = 0x200,  // C*h*s* uv
    LSASBS = 0x400,     // L*a*b*
    CSHS_AB = 0x800,    // C*h* ab
    HSV = 0x1000,
    HSI = 0x2000,
    WST = 0x4000,
    LRG = 0x8000,
    LWS = 0x10000
  };
  static constexpr int iSpaces = 17;
  static constexpr int iLocusPoints = 65;
  static constexpr unsigned uVersion = 1;

  TPixelColorSpace();

  // Names and units (Latin-1) of a space and its components. An unknown flag
  // or an index outside 0..2 raises 0xe0721084.
  static const char* cpGetColorSpaceName(unsigned flag);
  static unsigned uGetIndexNumber(unsigned flag);
  static const char* cpGetIndexName(unsigned flag, int index);
  static const char* cpGetIndexUnit(unsigned flag, int index);
  // Spaces that can be a source (have a way back to XYZ).
  static bool bCanSetColorSpace(unsigned flag);
  // Spaces that need the reference white.
  static bool bNeedReferenzColor(unsigned flag);

  // Chooses the source and destination space and derives the working flags.
  // An unknown flag: 0xe0721084; a source without a way back, or a
  // destination not computed by this unit: 0xe072108e.
  void vSetFlag(unsigned from, unsigned to);
  unsigned uGetFromFlag() const { return uFrom; }
  unsigned uGetToFlag() const { return uTo; }
  unsigned uGetWorkFlags() const { return uWork; }
  unsigned uGetVersion() const { return uVersion; }

  // Loads a colour given in the space `flag` and computes every space of the
  // working flags.
  void vSetColor(const TRGBFloatPixel& p, unsigned flag);
  void vSetCIE_RGB(const TRGBFloatPixel& p) { vSetColor(p, CIE_RGB); }
  void vSetS_RGB(const TRGBFloatPixel& p) { vSetColor(p, S_RGB); }
  void vSetEBU_RGB(const TRGBFloatPixel& p) { vSetColor(p, EBU_RGB); }
  void vSetUSER_RGB(const TRGBFloatPixel& p) { vSetColor(p, USER_RGB); }
  void vSetXYZ(const TRGBFloatPixel& p) { vSetColor(p, XYZ); }
  void vSetLxy(const TRGBFloatPixel& p) { vSetColor(p, LXY); }
  void vSetLuv(const TRGBFloatPixel& p) { vSetColor(p, LUV); }
  void vSetLu_v_(const TRGBFloatPixel& p) { vSetColor(p, LU_V_); }
  void vSetLrg(const TRGBFloatPixel& p) { vSetColor(p, LRG); }
  void vSetHSV(const TRGBFloatPixel& p) { vSetColor(p, HSV); }
  void vSetHSI(const TRGBFloatPixel& p) { vSetColor(p, HSI); }

  // The colour in one space, as last computed.
  const TRGBFloatPixel& rGetColor(unsigned flag) const;
  const TRGBFloatPixel& rGetCIE_RGB() const { return rGetColor(CIE_RGB); }
  const TRGBFloatPixel& rGetS_RGB() const { return rGetColor(S_RGB); }
  const TRGBFloatPixel& rGetEBU_RGB() const { return rGetColor(EBU_RGB); }
  const TRGBFloatPixel& rGetUSER_RGB() const { return rGetColor(USER_RGB); }
  const TRGBFloatPixel& rGetXYZ() const { return rGetColor(XYZ); }
  const TRGBFloatPixel& rGetLxy() const { return rGetColor(LXY); }
  const TRGBFloatPixel& rGetLuv() const { return rGetColor(LUV); }
  const TRGBFloatPixel& rGetLu_v_() const { return rGetColor(LU_V_); }
  const TRGBFloatPixel& rGetLrg() const { return rGetColor(LRG); }
  const TRGBFloatPixel& rGetLsusvs() const { return rGetColor(LSUSVS); }
  const TRGBFloatPixel& rGetCshsss_uv() const { return rGetColor(CSHSSS_UV); }
  const TRGBFloatPixel& rGetLsasbs() const { return rGetColor(LSASBS); }
  const TRGBFloatPixel& rGetCshs_ab() const { return rGetColor(CSHS_AB); }
  const TRGBFloatPixel& rGetHSV() const { return rGetColor(HSV); }
  const TRGBFloatPixel& rGetHSI() const { return rGetColor(HSI); }
  const TRGBFloatPixel& rGetWST() const { return rGetColor(WST); }
  const TRGBFloatPixel& rGetLWS() const { return rGetColor(LWS); }
  // The correlated colour temperature of the chromaticity (x, y, z) by
  // Robertson's method on his 31 isotemperature lines; 0 when x, y and z
  // are all 0 or there is no crossing in the table.
  static double dRobertson(double x, double y, double z);
  // Y when XYZ is computed, else L of Lxy, Luv, Lu'v', else Y from CIE RGB;
  // otherwise 0xe0721084.
  double dGetLuminance() const;

  // The reference white, given in `flag`'s space; proved before it is taken.
  void vSetReference(const TRGBFloatPixel& p, unsigned flag);
  bool bIsReferenceSet() const { return bRefSet; }
  const TRGBFloatPixel& rGetRefInCIE_RGB() const { return refCIE_RGB; }
  const TRGBFloatPixel& rGetRefInXYZ() const { return refXYZ; }
  const TRGBFloatPixel& rGetRefInLxy() const { return refLxy; }
  const TRGBFloatPixel& rGetRefInLu_v_() const { return refLu_v_; }

  // The state as "%u,%u,%u,%u,%u,%.4e,%.4e,%.4e\r\n": version, from-flag,
  // to-flag, working flags, reference-set flag, reference X, Y, Z. `out` needs
  // 128 bytes. Reading another version, or text that does not scan, raises.
  void vWriteToString(char* out) const;
  void vReadFromString(const char* text);

  // Validity of a colour.
  static bool bProofXYZ(const TRGBFloatPixel& xyz);
  static bool bProofRGB(const TRGBFloatPixel& cieRgb);
  // H in [0, 360), S in [0, 1], V at least 0.
  static bool bProofHSV(const TRGBFloatPixel& hsv);
  // H in [0, 360), S in [0, 1], I at least 0.
  static bool bProofHSI(const TRGBFloatPixel& hsi);
  // L at least 0, r and g chromaticities.
  static bool bProofLrg(const TRGBFloatPixel& lrg);
  // The reference as CIE RGB, shared by default (255, 255, 255).
  static const TRGBFloatPixel& rGetStaticRefInCIE_RGB();
  // The name of the user RGB space.
  static void vSetNameUserRGB(const char* name);
  static const char* cpGetUserRGBName();

  // The user RGB matrices (nine floats, row by row, input R, G, B or X, Y, Z),
  // shared by the process; they start as the CIE RGB matrices.
  static void vSetRGB_XYZ(const float* m);
  static void vSetXYZ_RGB(const float* m);
  static void vGetRGB_XYZ(float* m);
  static void vGetXYZ_RGB(float* m);

 private:
  static int _iIndexOf(unsigned flag);  // 0..16; raises for an unknown flag
  static unsigned _uWorkFlags(unsigned from, unsigned to);
  void _vContinueFromXYZ();
  void _vToXYZ(const TRGBFloatPixel& p, unsigned flag, double xyz[3]) const;
  // The angle and distance of each locus point seen from the reference.
  void vCreateWSTVectors();
  // Dominant wavelength, saturation and colour temperature of an Lxy colour.
  void vLxy_WST(const double lxy[3], double wst[3]) const;

  unsigned uFrom = CIE_RGB;
  unsigned uTo = CIE_RGB;
  unsigned uWork = CIE_RGB;
  TRGBFloatPixel colors[iSpaces]{};
  bool bRefSet = false;
  TRGBFloatPixel refCIE_RGB{};
  TRGBFloatPixel refXYZ{};
  TRGBFloatPixel refLxy{};
  TRGBFloatPixel refLu_v_{};
  double dStartAngle = 0.0;
  double adLocusAngle[iLocusPoints]{};
  double adLocusDistance[iLocusPoints]{};
};

}  // namespace Rastrix
