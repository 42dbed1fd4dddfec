#include "rastrix/TPixelColorSpace.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "kxexception/KxError.h"
#include "platform/CLocale.h"
#include "rastrix/CieTables.h"
#include "rastrix/ColorMath.h"
#include "rastrix/RastrixErrors.h"

namespace Rastrix {

namespace {

// The user matrices, process wide; they start as the CIE RGB ones.
float gUserToXyz[9] = {2.7689f, 1.7518f, 1.1302f, 1.0f, 4.5907f, 0.0601f, 0.0f, 0.0565f, 5.5943f};
float gXyzToUser[9] = {0.418455786f, -0.158662225f, -0.082834873f, -0.09116499f, 0.252426742f,
                       0.015705955f, 0.000920727f, -0.0025494f,  0.178594751f};

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

void checkIndex(int index) {
  if (index < 0 || index > 2) KX_THROW(Err::ulColorSpaceIndex, "Index=%d", index);
}

constexpr double dPi = 3.14159265358979323846;
constexpr double dDeg = 180.0 / dPi;

// CIE RGB to HSV and back.
void rgbToHsv(const double rgb[3], double out[3]) {
  const double R = rgb[0], G = rgb[1], B = rgb[2];
  const bool rg = R >= G, rb = R >= B, gb = G >= B;
  double mx, mid, mn, offset, sign;
  if (rg && rb) {
    mx = R;
    mid = gb ? G : B;
    mn = gb ? B : G;
    offset = gb ? 1 : 5;
    sign = gb ? -1 : 1;
  } else if (rg) {  // B > R >= G
    mx = B, mid = R, mn = G, offset = 5, sign = -1;
  } else if (gb) {  // G > R, G >= B
    mx = G;
    mid = rb ? R : B;
    mn = rb ? B : R;
    offset = rb ? 1 : 3;
    sign = rb ? 1 : -1;
  } else {  // B > G > R
    mx = B, mid = G, mn = R, offset = 3, sign = 1;
  }
  if (mx <= 0) {
    out[0] = out[1] = out[2] = 0.0;
    return;
  }
  const double S = (mx - mn) / mx;
  double H = 0.0;
  if (S > 0) {
    H = 60.0 * (offset + sign * (mx - mid) / (mx - mn));
    if (H >= 360.0) H -= 360.0;
  }
  out[0] = H;
  out[1] = S;
  out[2] = mx;
}

void hsvToRgb(const double hsv[3], double rgb[3]) {
  const double H = hsv[0], S = hsv[1], V = hsv[2];
  if (V <= 0) {
    rgb[0] = rgb[1] = rgb[2] = 0.0;
    return;
  }
  const double m = (1.0 - S) * V, h = H / 60.0, d = V - m;
  if (d <= 0) {
    rgb[0] = rgb[1] = rgb[2] = V;
    return;
  }
  double R, G, B;
  if (h < 1) R = V, G = V - (1 - h) * d, B = m;
  else if (h < 2) R = V - (h - 1) * d, G = V, B = m;
  else if (h < 3) R = m, G = V, B = V - (3 - h) * d;
  else if (h < 4) R = m, G = V - (h - 3) * d, B = V;
  else if (h < 5) R = V - (5 - h) * d, G = m, B = V;
  else R = V, G = m, B = V - (h - 5) * d;
  rgb[0] = R;
  rgb[1] = G;
  rgb[2] = B;
}

// CIE RGB to HSI and back.
void rgbToHsi(const double rgb[3], double out[3]) {
  const double R = rgb[0], G = rgb[1], B = rgb[2], t = R + G + B;
  if (t <= 0) {
    out[0] = out[1] = out[2] = 0.0;
    return;
  }
  const double I = t / 3.0, S = 1.0 - 3.0 * std::fmin(R, std::fmin(G, B)) / t;
  double H = 0.0;
  if (S > 1e-5) {
    const double a = R - G, b = R - B, c = G - B;
    const double x = 0.5 * (a + b) / std::sqrt(a * a + b * c);
    H = x <= -1 ? 180.0 : x >= 1 ? 0.0 : std::acos(x) * dDeg;
    if (c < 0) H = 360.0 - H;
  }
  out[0] = H;
  out[1] = S;
  out[2] = I;
}

void hsiToRgb(const double hsi[3], double rgb[3]) {
  double H = hsi[0];
  const double S = hsi[1], I = hsi[2];
  if (!(H >= 0 && H <= 360)) H = 0;
  if (S <= 1e-5) {
    rgb[0] = rgb[1] = rgb[2] = I;
    return;
  }
  const int sector = H < 120 ? 0 : H < 240 ? 1 : 2;
  const double h = (H - 120.0 * sector) / dDeg;
  const double first = I * (1 + S * std::cos(h) / std::cos(dPi / 3 - h));
  const double last = I * (1 - S);
  const double third = 3 * I - first - last;
  // Sector 0: first R, last B; 120: first G, last R; 240: first B, last G.
  static const int firstOf[3] = {0, 1, 2}, lastOf[3] = {2, 0, 1}, thirdOf[3] = {1, 2, 0};
  rgb[firstOf[sector]] = first;
  rgb[lastOf[sector]] = last;
  rgb[thirdOf[sector]] = third;
}

// The 65 points of the spectrum locus, 360 nm to 680 nm: x, y.
struct TLocus {
  double x[TPixelColorSpace::iLocusPoints], y[TPixelColorSpace::iLocusPoints];
};
const TLocus& locus() {
  static const TLocus l = [] {
    TLocus t{};
    for (int i = 0; i < TPixelColorSpace::iLocusPoints; ++i) {
      const cie::TCmfRow& r = cie::aCmf1931[i];
      const double s = r.x + r.y + r.z;
      t.x[i] = r.x / s;
      t.y[i] = r.y / s;
    }
    return t;
  }();
  return l;
}

}  // namespace

double TPixelColorSpace::dRobertson(double x, double y, double z) {
  if (std::fabs(x) < 1e-20 && std::fabs(y) < 1e-20 && std::fabs(z) < 1e-20) return 0.0;
  const double den = x + 15.0 * y + 3.0 * z;
  if (den == 0) return 0.0;
  const double u = 4.0 * x / den, v = 6.0 * y / den;
  double before = 0.0;
  for (int i = 0; i < cie::iRobertsonRows; ++i) {
    const cie::TRobertsonRow& r = cie::aRobertson[i];
    const double d = ((v - r.v) - r.t * (u - r.u)) / std::sqrt(1.0 + r.t * r.t);
    if (i > 0 && (d == 0 || (before < 0) != (d < 0))) {
      const cie::TRobertsonRow& p = cie::aRobertson[i - 1];
      const double mired = p.mired + (r.mired - p.mired) * before / (before - d);
      return mired > 0 ? 1e6 / mired : 0.0;
    }
    before = d;
  }
  return 0.0;
}

void TPixelColorSpace::vCreateWSTVectors() {
  const double X = refXYZ.r, Y = refXYZ.g, Z = refXYZ.b;
  if (!(Y > 0 && X + Y + Z > 0)) return;
  const TLocus& l = locus();
  const double xn = refLxy.g, yn = refLxy.b;
  bool leading = true;
  for (int i = 0; i < iLocusPoints; ++i) {
    const double dx = l.x[i] - xn, dy = l.y[i] - yn;
    double a = std::atan2(dy, dx);
    if (i == 0) dStartAngle = a;
    if (leading && a < 0)
      a += 2 * dPi;
    else
      leading = false;
    adLocusAngle[i] = a;
    adLocusDistance[i] = std::sqrt(dx * dx + dy * dy);
  }
}

void TPixelColorSpace::vLxy_WST(const double lxy[3], double out[3]) const {
  const double dx = lxy[1] - refLxy.g, dy = lxy[2] - refLxy.b;
  double sign = 1.0;
  if (std::fabs(dx) <= 1e-6 && std::fabs(dy) <= 1e-6) {
    out[0] = 360.0;
    out[1] = 0.0;
    out[2] = 0.0;
    return;
  }
  const TLocus& l = locus();
  const double last = std::atan2(l.y[iLocusPoints - 1] - refLxy.b, l.x[iLocusPoints - 1] - refLxy.g);
  double a = std::atan2(dy, dx);
  if (a < dStartAngle) {
    a += 2 * dPi;
  } else if (a < last) {
    a += dPi;
    sign = -1.0;
  }
  int i = 0, j = iLocusPoints - 1;
  while (j - i >= 2) {
    const int m = (i + j) / 2;
    if (a >= adLocusAngle[m])
      j = m;
    else
      i = m;
  }
  const double span = adLocusAngle[j] - adLocusAngle[i];
  const double f = span != 0 ? (a - adLocusAngle[i]) / span : 0.0;
  out[0] = (360.0 + 5.0 * i + 5.0 * f) * sign;
  // The weights stand opposite to those of the wavelength: kept as it is.
  const double r = f * adLocusDistance[i] + (1.0 - f) * adLocusDistance[j];
  double satu = r > 0 ? 100.0 * sign * std::sqrt(dx * dx + dy * dy) / r : 0.0;
  out[1] = std::fmax(-100.0, std::fmin(100.0, satu));
  // Black has x = y = 0, and z = 0 with them.
  const double x = lxy[1], y = lxy[2];
  out[2] = dRobertson(x, y, x == 0 && y == 0 ? 0.0 : 1.0 - x - y);
}

namespace {
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
    case CIE_RGB: colormath::mul(colormath::mCieToXyz, c, xyz); break;
    case S_RGB: colormath::mul(colormath::mSrgbToXyz, c, xyz); break;
    case EBU_RGB: colormath::mul(colormath::mEbuToXyz, c, xyz); break;
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
    case LUV: colormath::luvToXyz(c[0], c[1], c[2], xyz); break;
    case LU_V_: colormath::luvToXyz(c[0], c[1], c[2] * (2.0 / 3.0), xyz); break;
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
    case HSV:
    case HSI: {
      double rgb[3];
      if (flag == HSV)
        hsvToRgb(c, rgb);
      else
        hsiToRgb(c, rgb);
      colormath::mul(colormath::mCieToXyz, rgb, xyz);
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
  unpack(colors[4], xyz);
  auto put = [&](unsigned flag, const double v[3]) {
    colors[_iIndexOf(flag)] = pack(v);
  };
  if (uWork & CIE_RGB) {
    colormath::mul(colormath::mXyzToCie, xyz, c);
    put(CIE_RGB, c);
  }
  if (uWork & S_RGB) {
    colormath::mul(colormath::mXyzToSrgb, xyz, c);
    put(S_RGB, c);
  }
  if (uWork & EBU_RGB) {
    colormath::mul(colormath::mXyzToEbu, xyz, c);
    put(EBU_RGB, c);
  }
  if (uWork & USER_RGB) {
    mulUser(gXyzToUser, xyz, c);
    put(USER_RGB, c);
  }
  double lxy[3] = {0, 0, 0}, lu_v_[3] = {0, 0, 0}, lsusvs[3] = {0, 0, 0}, lab[3] = {0, 0, 0};
  // A space that is the source is not written over, but what depends on it
  // is computed all the same.
  if (uWork & (LXY | WST | LWS)) colormath::xyzToLxy(xyz, lxy);
  if (uWork & LXY) put(LXY, lxy);
  if (uWork & LUV) {
    colormath::xyzToLuv(xyz, 3.0, c);
    put(LUV, c);
  }
  if (uWork & (LU_V_ | LSUSVS | CSHSSS_UV)) colormath::xyzToLuv(xyz, 4.5, lu_v_);
  if (uWork & LU_V_) put(LU_V_, lu_v_);
  if (uWork & LSUSVS) {
    const double L = lu_v_[0], Ln = refLu_v_.r;
    if (bRefSet && L > 0 && Ln > 0) {
      const double q = L / Ln;
      lsusvs[0] = q > 0.008856 ? 116.0 * std::cbrt(q) - 16.0 : 903.3 * q;
      lsusvs[1] = 13.0 * lsusvs[0] * (lu_v_[1] - refLu_v_.g);
      lsusvs[2] = 13.0 * lsusvs[0] * (lu_v_[2] - refLu_v_.b);
    }
    put(LSUSVS, lsusvs);
  }
  if (uWork & CSHSSS_UV) {
    c[0] = c[1] = c[2] = 0.0;
    if (lsusvs[0] > 0) {
      const double c2 = lsusvs[1] * lsusvs[1] + lsusvs[2] * lsusvs[2];
      if (c2 > 0) {
        c[0] = std::sqrt(c2);
        c[1] = std::atan2(lsusvs[2], lsusvs[1]) * dDeg;
        if (lsusvs[2] < 0) c[1] += 360.0;
      }
      c[2] = c[0] / lsusvs[0];
    }
    put(CSHSSS_UV, c);
  }
  if (uWork & LSASBS) {
    if (bRefSet) {
      const double ref[3] = {refXYZ.r, refXYZ.g, refXYZ.b};
      colormath::xyzToLab(xyz, ref, lab);
    }
    put(LSASBS, lab);
  }
  if (uWork & CSHS_AB) {
    c[0] = c[1] = c[2] = 0.0;
    const double c2 = lab[1] * lab[1] + lab[2] * lab[2];
    if (c2 > 0) {
      c[0] = std::sqrt(c2);
      c[1] = std::atan2(lab[2], lab[1]) * dDeg;
      if (lab[2] < 0) c[1] += 360.0;
    }
    put(CSHS_AB, c);
  }
  if (uWork & (HSV | HSI)) {
    double rgb[3];
    unpack(colors[0], rgb);
    if (uWork & HSV) {
      rgbToHsv(rgb, c);
      put(HSV, c);
    }
    if (uWork & HSI) {
      rgbToHsi(rgb, c);
      put(HSI, c);
    }
  }
  double wst[3] = {0, 0, 0};
  if (uWork & WST) {
    if (bRefSet) vLxy_WST(lxy, wst);
    put(WST, wst);
  }
  if (uWork & LRG) {
    double rgb[3];
    colormath::mul(colormath::mXyzToCie, xyz, rgb);
    const double t = rgb[0] + rgb[1] + rgb[2];
    if (xyz[1] > 0 && std::fabs(t) > 1e-6) {
      c[0] = xyz[1];
      c[1] = rgb[0] / t;
      c[2] = rgb[1] / t;
    } else {
      c[0] = c[1] = c[2] = 0.0;
    }
    put(LRG, c);
  }
  if (uWork & LWS) {
    c[0] = lxy[0];
    c[1] = wst[0];
    c[2] = wst[1];
    put(LWS, c);
  }
}

const TRGBFloatPixel& TPixelColorSpace::rGetColor(unsigned flag) const { return colors[_iIndexOf(flag)]; }

double TPixelColorSpace::dGetLuminance() const {
  if (uWork & XYZ) return rGetXYZ().g;
  if (uWork & LXY) return rGetLxy().r;
  if (uWork & LUV) return rGetLuv().r;
  if (uWork & LU_V_) return rGetLu_v_().r;
  if (uWork & CIE_RGB) {
    const TRGBFloatPixel& p = rGetCIE_RGB();
    return colormath::mCieToXyz[1][0] * p.r + colormath::mCieToXyz[1][1] * p.g + colormath::mCieToXyz[1][2] * p.b;
  }
  KX_THROW(Err::ulColorSpaceIndex, "Index=%d", static_cast<int>(uWork));
}

bool TPixelColorSpace::bProofXYZ(const TRGBFloatPixel& p) {
  const double X = p.r, Y = p.g, Z = p.b;
  if (Y > -1e-6) return X >= -1e-6 && Z >= -1e-6;
  return X < 1e-6 && Y < 1e-6 && Z < 1e-6;  // a wholly negative colour passes: kept as it is
}

bool TPixelColorSpace::bProofHSV(const TRGBFloatPixel& p) {
  return p.r >= 0 && p.r < 360 && p.g >= 0 && p.g <= 1 && p.b >= 0;
}

bool TPixelColorSpace::bProofHSI(const TRGBFloatPixel& p) { return bProofHSV(p); }

bool TPixelColorSpace::bProofLrg(const TRGBFloatPixel& p) {
  double c[3], xyz[3];
  unpack(p, c);
  TPixelColorSpace s;
  s._vToXYZ(p, LRG, xyz);
  return c[0] >= 0 && bProofXYZ(pack(xyz));
}

const TRGBFloatPixel& TPixelColorSpace::rGetStaticRefInCIE_RGB() {
  static const TRGBFloatPixel white = [] {
    TRGBFloatPixel w;
    w = 255.0f;
    return w;
  }();
  return white;
}

namespace {
std::string& userRGBName() {
  static std::string name = "User-RGB";
  return name;
}
}  // namespace

void TPixelColorSpace::vSetNameUserRGB(const char* name) { userRGBName() = name ? name : ""; }
const char* TPixelColorSpace::cpGetUserRGBName() { return userRGBName().c_str(); }

bool TPixelColorSpace::bProofRGB(const TRGBFloatPixel& p) {
  double c[3], xyz[3];
  unpack(p, c);
  colormath::mul(colormath::mCieToXyz, c, xyz);
  return bProofXYZ(pack(xyz));
}

void TPixelColorSpace::vSetReference(const TRGBFloatPixel& p, unsigned flag) {
  KX_TRY {
    double xyz[3];
    _vToXYZ(p, flag, xyz);
    const bool valid = flag == HSV ? bProofHSV(p) : flag == HSI ? bProofHSI(p) : bProofXYZ(pack(xyz));
    if (!valid) KX_THROW(Err::ulColorSpaceIndex, "reference colour not valid in %s", cpGetColorSpaceName(flag));
    refXYZ = pack(xyz);
    double c[3];
    if (flag == CIE_RGB) {
      refCIE_RGB = p;
    } else {
      colormath::mul(colormath::mXyzToCie, xyz, c);
      refCIE_RGB = pack(c);
    }
    colormath::xyzToLxy(xyz, c);
    refLxy = pack(c);
    colormath::xyzToLuv(xyz, 4.5, c);
    refLu_v_ = pack(c);
    bRefSet = true;
    vCreateWSTVectors();
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
