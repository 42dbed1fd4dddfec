#include "rastrix/TPixelColorSpace.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "kxexception/KxError.h"
#include "platform/CLocale.h"
#include "rastrix/RastrixErrors.h"

namespace Rastrix {

namespace {

using M3 = double[3][3];

constexpr M3 mCieToXyz = {{2.7689, 1.7518, 1.1302}, {1.0, 4.5907, 0.0601}, {0.0, 0.0565, 5.5943}};
constexpr M3 mXyzToCie = {{0.418455786, -0.158662225, -0.082834873},
                          {-0.09116499, 0.252426742, 0.015705955},
                          {0.000920727, -0.0025494, 0.178594751}};
constexpr M3 mSrgbToXyz = {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}};
constexpr M3 mXyzToSrgb = {{3.240625477, -1.537207972, -0.498628599},
                           {-0.968930715, 1.875756061, 0.041517524},
                           {0.05571012, -0.204021051, 1.056995942}};
constexpr M3 mEbuToXyz = {{0.431, 0.342, 0.178}, {0.222, 0.707, 0.071}, {0.02, 0.13, 0.939}};
constexpr M3 mXyzToEbu = {{3.05958989, -1.39274638, -0.474677324},
                          {-0.967628725, 1.874840829, 0.04166583},
                          {0.068796524, -0.229898168, 1.069304567}};

// The user matrices, process wide; they start as the CIE RGB ones.
float gUserToXyz[9] = {2.7689f, 1.7518f, 1.1302f, 1.0f, 4.5907f, 0.0601f, 0.0f, 0.0565f, 5.5943f};
float gXyzToUser[9] = {0.418455786f, -0.158662225f, -0.082834873f, -0.09116499f, 0.252426742f,
                       0.015705955f, 0.000920727f, -0.0025494f,  0.178594751f};

void mul(const M3& m, const double in[3], double out[3]) {
  for (int i = 0; i < 3; ++i) out[i] = m[i][0] * in[0] + m[i][1] * in[1] + m[i][2] * in[2];
}
void mulUser(const float* m, const double in[3], double out[3]) {
  for (int i = 0; i < 3; ++i) out[i] = m[3 * i] * in[0] + m[3 * i + 1] * in[1] + m[3 * i + 2] * in[2];
}

// Components in the order of their names: the first one is the third float.
void unpack(const TRGBFloatPixel& p, double c[3]) {
  c[0] = p.r;
  c[1] = p.g;
  c[2] = p.b;
}
TRGBFloatPixel pack(const double c[3]) {
  TRGBFloatPixel p;
  p.set(kx::toFloat(c[0]), kx::toFloat(c[1]), kx::toFloat(c[2]));
  return p;
}

struct TSpaceInfo {
  unsigned flag;
  const char* name;
  const char* components[3];
  const char* units[3];
};

#define KX_CDM2 "cd/m\xB2"
#define KX_DEG "\xB0"
// In flag order: index i belongs to flag 1 << i.
const TSpaceInfo gSpaces[TPixelColorSpace::iSpaces] = {
    {0x1, "RGB", {"R", "G", "B"}, {KX_CDM2, KX_CDM2, KX_CDM2}},
    {0x2, "sRGB", {"R", "G", "B"}, {KX_CDM2, KX_CDM2, KX_CDM2}},
    {0x4, "EBU-RGB", {"R", "G", "B"}, {KX_CDM2, KX_CDM2, KX_CDM2}},
    {0x8, "User-RGB", {"R", "G", "B"}, {KX_CDM2, KX_CDM2, KX_CDM2}},
    {0x10, "XYZ", {"X", "Y", "Z"}, {KX_CDM2, KX_CDM2, KX_CDM2}},
    {0x20, "Lxy", {"L", "x", "y"}, {KX_CDM2, "", ""}},
    {0x40, "Luv", {"L", "u", "v"}, {KX_CDM2, "", ""}},
    {0x80, "Lu'v'", {"L", "u'", "v'"}, {KX_CDM2, "", ""}},
    {0x100, "L*u*v*", {"L*", "u*", "v*"}, {"", "", ""}},
    {0x200, "C*h*s*_uv", {"C*", "h*", "s*"}, {"", KX_DEG, ""}},
    {0x400, "L*a*b*", {"L*", "a*", "b*"}, {"", "", ""}},
    {0x800, "C*h*_ab", {"C*", "h*", ""}, {"", KX_DEG, ""}},
    {0x1000, "HSV", {"H", "S", "V"}, {KX_DEG, "", KX_CDM2}},
    {0x2000, "HSI", {"H", "S", "I"}, {KX_DEG, "", KX_CDM2}},
    {0x4000, "WST", {"Lambda", "Satu", "Temp"}, {"nm", "%", "K"}},
    {0x8000, "Lrg", {"L", "r", "g"}, {KX_CDM2, "", ""}},
    {0x10000, "LWS", {"L", "Lambda", "Satu"}, {KX_CDM2, "nm", "%"}},
};
#undef KX_CDM2
#undef KX_DEG

constexpr unsigned uSettable = 0x1 | 0x2 | 0x4 | 0x8 | 0x10 | 0x20 | 0x40 | 0x80 | 0x1000 | 0x2000 | 0x8000;
constexpr unsigned uReference = 0x100 | 0x200 | 0x400 | 0x800 | 0x4000 | 0x10000;
// The spaces whose conversions this unit computes.
constexpr unsigned uComputed = 0x1 | 0x2 | 0x4 | 0x8 | 0x10 | 0x20 | 0x40 | 0x80 | 0x8000;

void checkIndex(int index) {
  if (index < 0 || index > 2) KX_THROW(Err::ulColorSpaceIndex, "Index=%d", index);
}

// X, Y, Z to the chromaticity spaces; guards as the formulas require.
void xyzToLxy(const double xyz[3], double out[3]) {
  const double s = xyz[0] + xyz[1] + xyz[2];
  out[0] = xyz[1];
  if (xyz[1] > 0 && std::fabs(s) > 1e-6) {
    out[1] = xyz[0] / s;
    out[2] = xyz[1] / s;
  } else {
    out[1] = out[2] = 0.0;
  }
}
// Luv with vFactor 3, Lu'v' with vFactor 4.5.
void xyzToLuv(const double xyz[3], double vFactor, double out[3]) {
  const double d = 0.5 * xyz[0] + 7.5 * xyz[1] + 1.5 * xyz[2];
  out[0] = xyz[1];
  if (xyz[1] > 0 && std::fabs(d) > 1e-6) {
    out[1] = 2.0 * xyz[0] / d;
    out[2] = vFactor * xyz[1] / d;
  } else {
    out[1] = out[2] = 0.0;
  }
}
void luvToXyz(double L, double u, double v, double xyz[3]) {
  if (v > 0) {
    xyz[0] = 1.5 * L * u / v;
    xyz[1] = L;
    xyz[2] = 0.5 * L * (4.0 - u - 10.0 * v) / v;
  } else {
    xyz[0] = xyz[1] = xyz[2] = 0.0;
  }
}

}  // namespace

TPixelColorSpace::TPixelColorSpace() {
  TRGBFloatPixel white;
  white = 255.0f;
  vSetReference(white, CIE_RGB);
}

int TPixelColorSpace::_iIndexOf(unsigned flag) {
  if (flag != 0 && (flag & (flag - 1)) == 0) {
    for (int i = 0; i < iSpaces; ++i)
      if (gSpaces[i].flag == flag) return i;
  }
  KX_THROW(Err::ulColorSpaceIndex, "Index=%d", static_cast<int>(flag));
}

const char* TPixelColorSpace::cpGetColorSpaceName(unsigned flag) { return gSpaces[_iIndexOf(flag)].name; }

unsigned TPixelColorSpace::uGetIndexNumber(unsigned flag) {
  _iIndexOf(flag);
  return 3;
}

const char* TPixelColorSpace::cpGetIndexName(unsigned flag, int index) {
  const int i = _iIndexOf(flag);
  checkIndex(index);
  return gSpaces[i].components[index];
}

const char* TPixelColorSpace::cpGetIndexUnit(unsigned flag, int index) {
  const int i = _iIndexOf(flag);
  checkIndex(index);
  return gSpaces[i].units[index];
}

bool TPixelColorSpace::bCanSetColorSpace(unsigned flag) { return (flag & (flag - 1)) == 0 && (flag & uSettable); }
bool TPixelColorSpace::bNeedReferenzColor(unsigned flag) { return (flag & (flag - 1)) == 0 && (flag & uReference); }

unsigned TPixelColorSpace::_uWorkFlags(unsigned from, unsigned to) {
  unsigned w = from | to | XYZ;
  // Each derived space needs its parent: these rules, applied until nothing changes.
  for (unsigned before = 0; before != w;) {
    before = w;
    if (w & CSHSSS_UV) w |= LSUSVS;
    if (w & LSUSVS) w |= LU_V_;
    if (w & CSHS_AB) w |= LSASBS;
    if (w & (HSV | HSI)) w |= CIE_RGB;
    if (w & (WST | LWS)) w |= LXY | WST;
  }
  return w;
}

void TPixelColorSpace::vSetFlag(unsigned from, unsigned to) {
  KX_TRY {
    _iIndexOf(from);
    _iIndexOf(to);
    if (!bCanSetColorSpace(from)) KX_THROW(Err::ulColorSpaceNoWayBack, "%s", cpGetColorSpaceName(from));
    if (!(from & uComputed) || !(to & uComputed))
      KX_THROW(Err::ulColorSpaceNoWayBack, "%s -> %s not available", cpGetColorSpaceName(from), cpGetColorSpaceName(to));
    uFrom = from;
    uTo = to;
    uWork = _uWorkFlags(from, to);
  }
  KX_CATCH
}

void TPixelColorSpace::_vToXYZ(const TRGBFloatPixel& p, unsigned flag, double xyz[3]) const {
  double c[3];
  unpack(p, c);
  switch (flag) {
    case CIE_RGB: mul(mCieToXyz, c, xyz); break;
    case S_RGB: mul(mSrgbToXyz, c, xyz); break;
    case EBU_RGB: mul(mEbuToXyz, c, xyz); break;
    case USER_RGB: mulUser(gUserToXyz, c, xyz); break;
    case XYZ:
      for (int i = 0; i < 3; ++i) xyz[i] = c[i];
      break;
    case LXY:
      if (c[2] <= 0) {
        xyz[0] = xyz[1] = xyz[2] = 0.0;
      } else {
        xyz[0] = c[0] * c[1] / c[2];
        xyz[1] = c[0];
        xyz[2] = (1.0 - c[1] - c[2]) * c[0] / c[2];
      }
      break;
    case LUV: luvToXyz(c[0], c[1], c[2], xyz); break;
    case LU_V_: luvToXyz(c[0], c[1], c[2] * (2.0 / 3.0), xyz); break;
    case LRG: {
      const double L = c[0], r = c[1], g = c[2], b = 1.0 - r - g;
      const double y = 1.0 * r + 4.5907 * g + 0.0601 * b;
      if (L > 0 && y != 0.0) {
        const double f = L / y;
        xyz[0] = (2.7689 * r + 1.7518 * g + 1.1302 * b) * f;
        xyz[1] = y * f;
        xyz[2] = (0.0 * r + 0.0565 * g + 5.5943 * b) * f;
      } else {
        xyz[0] = xyz[1] = xyz[2] = 0.0;
      }
      break;
    }
    default: KX_THROW(Err::ulColorSpaceNoWayBack, "%s", cpGetColorSpaceName(flag));
  }
}

void TPixelColorSpace::vSetColor(const TRGBFloatPixel& p, unsigned flag) {
  KX_TRY {
    const int i = _iIndexOf(flag);
    double xyz[3];
    _vToXYZ(p, flag, xyz);
    colors[i] = p;
    if (flag != XYZ) colors[_iIndexOf(XYZ)] = pack(xyz);
    const unsigned keep = uWork;
    uWork &= ~flag;  // the source stays as given
    _vContinueFromXYZ();
    uWork = keep;
  }
  KX_CATCH
}

void TPixelColorSpace::_vContinueFromXYZ() {
  double xyz[3], c[3];
  unpack(colors[_iIndexOf(XYZ)], xyz);
  if (uWork & CIE_RGB) {
    mul(mXyzToCie, xyz, c);
    colors[0] = pack(c);
  }
  if (uWork & S_RGB) {
    mul(mXyzToSrgb, xyz, c);
    colors[1] = pack(c);
  }
  if (uWork & EBU_RGB) {
    mul(mXyzToEbu, xyz, c);
    colors[2] = pack(c);
  }
  if (uWork & USER_RGB) {
    mulUser(gXyzToUser, xyz, c);
    colors[3] = pack(c);
  }
  if (uWork & LXY) {
    xyzToLxy(xyz, c);
    colors[5] = pack(c);
  }
  if (uWork & LUV) {
    xyzToLuv(xyz, 3.0, c);
    colors[6] = pack(c);
  }
  if (uWork & LU_V_) {
    xyzToLuv(xyz, 4.5, c);
    colors[7] = pack(c);
  }
  if (uWork & LRG) {
    double rgb[3];
    mul(mXyzToCie, xyz, rgb);
    const double t = rgb[0] + rgb[1] + rgb[2];
    if (xyz[1] > 0 && std::fabs(t) > 1e-6) {
      c[0] = xyz[1];
      c[1] = rgb[0] / t;
      c[2] = rgb[1] / t;
    } else {
      c[0] = c[1] = c[2] = 0.0;
    }
    colors[15] = pack(c);
  }
}

const TRGBFloatPixel& TPixelColorSpace::rGetColor(unsigned flag) const { return colors[_iIndexOf(flag)]; }

double TPixelColorSpace::dGetLuminance() const {
  if (uWork & XYZ) return rGetXYZ().g;
  if (uWork & LXY) return rGetLxy().r;
  if (uWork & LUV) return rGetLuv().r;
  if (uWork & LU_V_) return rGetLu_v_().r;
  KX_THROW(Err::ulColorSpaceIndex, "Index=%d", static_cast<int>(uWork));
}

bool TPixelColorSpace::bProofXYZ(const TRGBFloatPixel& p) {
  const double X = p.r, Y = p.g, Z = p.b;
  if (Y > -1e-6) return X >= -1e-6 && Z >= -1e-6;
  return X < 1e-6 && Y < 1e-6 && Z < 1e-6;  // a wholly negative colour passes: kept as it is
}

bool TPixelColorSpace::bProofRGB(const TRGBFloatPixel& p) {
  double c[3], xyz[3];
  unpack(p, c);
  mul(mCieToXyz, c, xyz);
  return bProofXYZ(pack(xyz));
}

void TPixelColorSpace::vSetReference(const TRGBFloatPixel& p, unsigned flag) {
  KX_TRY {
    double xyz[3];
    _vToXYZ(p, flag, xyz);
    if (!bProofXYZ(pack(xyz))) KX_THROW(Err::ulColorSpaceIndex, "reference colour not valid in %s", cpGetColorSpaceName(flag));
    refXYZ = pack(xyz);
    double c[3];
    if (flag == CIE_RGB) {
      refCIE_RGB = p;
    } else {
      mul(mXyzToCie, xyz, c);
      refCIE_RGB = pack(c);
    }
    xyzToLxy(xyz, c);
    refLxy = pack(c);
    xyzToLuv(xyz, 4.5, c);
    refLu_v_ = pack(c);
    bRefSet = true;
  }
  KX_CATCH
}

void TPixelColorSpace::vWriteToString(char* out) const {
  const kx::platform::CNumericScope cLocale;
  std::snprintf(out, 128, "%u,%u,%u,%u,%u,%.4e,%.4e,%.4e\r\n", uVersion, uFrom, uTo, uWork, bRefSet ? 1u : 0u,
                static_cast<double>(refXYZ.r), static_cast<double>(refXYZ.g), static_cast<double>(refXYZ.b));
}

void TPixelColorSpace::vReadFromString(const char* text) {
  KX_TRY {
    unsigned version = 0, from = 0, to = 0, work = 0, refSet = 0;
    float x = 0, y = 0, z = 0;
    const kx::platform::CNumericScope cLocale;
    const int n = text ? std::sscanf(text, "%u,%u,%u,%u,%u,%e,%e,%e", &version, &from, &to, &work, &refSet, &x, &y, &z) : 0;
    if (n >= 1 && version != uVersion) KX_THROW(kx::ulForeignError, "wrong file version");
    if (n != 8) KX_THROW(kx::ulForeignError, "colour space text not readable");
    vSetFlag(from, to);
    if (refSet) {
      TRGBFloatPixel ref;
      ref.set(x, y, z);
      vSetReference(ref, XYZ);
    }
  }
  KX_CATCH
}

void TPixelColorSpace::vSetRGB_XYZ(const float* m) { std::memcpy(gUserToXyz, m, sizeof gUserToXyz); }
void TPixelColorSpace::vSetXYZ_RGB(const float* m) { std::memcpy(gXyzToUser, m, sizeof gXyzToUser); }
void TPixelColorSpace::vGetRGB_XYZ(float* m) { std::memcpy(m, gUserToXyz, sizeof gUserToXyz); }
void TPixelColorSpace::vGetXYZ_RGB(float* m) { std::memcpy(m, gXyzToUser, sizeof gXyzToUser); }

}  // namespace Rastrix
