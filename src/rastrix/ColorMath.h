// The formulas of the colour spaces for one colour, inline: the pixel
// colour space and the picture kernels compute with the same code.
// Components in the order of their names (X, Y, Z; L, x, y; ...).
#pragma once

#include <cmath>

namespace Rastrix::colormath {

using M3 = double[3][3];

inline constexpr M3 mCieToXyz = {{2.7689, 1.7518, 1.1302}, {1.0, 4.5907, 0.0601}, {0.0, 0.0565, 5.5943}};
inline constexpr M3 mXyzToCie = {{0.418455786, -0.158662225, -0.082834873},
                          {-0.09116499, 0.252426742, 0.015705955},
                          {0.000920727, -0.0025494, 0.178594751}};
inline constexpr M3 mSrgbToXyz = {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}};
inline constexpr M3 mXyzToSrgb = {{3.240625477, -1.537207972, -0.498628599},
                           {-0.968930715, 1.875756061, 0.041517524},
                           {0.05571012, -0.204021051, 1.056995942}};
inline constexpr M3 mEbuToXyz = {{0.431, 0.342, 0.178}, {0.222, 0.707, 0.071}, {0.02, 0.13, 0.939}};
inline constexpr M3 mXyzToEbu = {{3.05958989, -1.39274638, -0.474677324},
                          {-0.967628725, 1.874840829, 0.04166583},
                          {0.068796524, -0.229898168, 1.069304567}};


inline void mul(const M3& m, const double in[3], double out[3]) {
  for (int i = 0; i < 3; ++i) out[i] = m[i][0] * in[0] + m[i][1] * in[1] + m[i][2] * in[2];
}

// X, Y, Z to the chromaticity spaces; guards as the formulas require.
inline void xyzToLxy(const double xyz[3], double out[3]) {
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
inline void xyzToLuv(const double xyz[3], double vFactor, double out[3]) {
  const double d = 0.5 * xyz[0] + 7.5 * xyz[1] + 1.5 * xyz[2];
  out[0] = xyz[1];
  if (xyz[1] > 0 && std::fabs(d) > 1e-6) {
    out[1] = 2.0 * xyz[0] / d;
    out[2] = vFactor * xyz[1] / d;
  } else {
    out[1] = out[2] = 0.0;
  }
}
inline void luvToXyz(double L, double u, double v, double xyz[3]) {
  if (v > 0) {
    xyz[0] = 1.5 * L * u / v;
    xyz[1] = L;
    xyz[2] = 0.5 * L * (4.0 - u - 10.0 * v) / v;
  } else {
    xyz[0] = xyz[1] = xyz[2] = 0.0;
  }
}



// CIELAB against the reference white in XYZ (all above 0), 0 for Y at or
// below 0. Y turns to the linear branch at 0.008856, X and Z at 0.00856: kept
// as it is.
inline void xyzToLab(const double xyz[3], const double ref[3], double lab[3]) {
  lab[0] = lab[1] = lab[2] = 0.0;
  if (!(xyz[1] > 0 && ref[0] > 0 && ref[1] > 0 && ref[2] > 0)) return;
  double fx = xyz[0] / ref[0], fy = xyz[1] / ref[1], fz = xyz[2] / ref[2];
  if (fy <= 0.008856) {
    lab[0] = 903.3 * fy;
    fy = 7.787 * fy + 16.0 / 116.0;
  } else {
    fy = std::cbrt(fy);
    lab[0] = 116.0 * fy - 16.0;
  }
  fx = fx <= 0.00856 ? 7.787 * fx + 16.0 / 116.0 : std::cbrt(fx);
  fz = fz <= 0.00856 ? 7.787 * fz + 16.0 / 116.0 : std::cbrt(fz);
  lab[1] = 500.0 * (fx - fy);
  lab[2] = 200.0 * (fy - fz);
}

}  // namespace Rastrix::colormath
