// A cartesian (x, y, z) and a spherical (r, theta, phi) triple of doubles,
// converted into each other by assignment. Theta is the angle from the z
// axis, phi the angle in the x-y plane from the x axis, both in radians.
#pragma once

#include <string>

namespace kx {

class Trtp;

class Txyz {
 public:
  double x = 0, y = 0, z = 0;
  Txyz() = default;
  Txyz(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
  Txyz(const Trtp& s) { *this = s; }
  Txyz& operator=(const Trtp& s);
  Txyz& operator+=(const Txyz& o);
  Txyz& operator-=(const Txyz& o);
  double length() const;
  // "(x, y, z)" with six significant digits.
  std::string string() const;
  // Turns the vector by dTheta and dPhi (through its spherical form).
  void rotate(double dTheta, double dPhi);
};

class Trtp {
 public:
  double r = 0, t = 0, p = 0;
  Trtp() = default;
  Trtp(double r_, double t_, double p_) : r(r_), t(t_), p(p_) {}
  Trtp(const Txyz& c) { *this = c; }
  // The origin gives r = 0 and both angles 0.
  Trtp& operator=(const Txyz& c);
  // Added and subtracted as vectors.
  Trtp& operator+=(const Trtp& o);
  Trtp& operator-=(const Trtp& o);
  double length() const { return r; }
  // "(r, theta, phi)".
  std::string string() const;
  void rotate(double dTheta, double dPhi);
};

}  // namespace kx
