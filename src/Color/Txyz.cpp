#include "Color/Txyz.h"

#include <cmath>
#include <cstdio>

#include "platform/CLocale.h"

namespace kx {

namespace {
std::string triple(double a, double b, double c) {
  const platform::CNumericScope cLocale;
  char buffer[96];
  std::snprintf(buffer, sizeof buffer, "(%g, %g, %g)", a, b, c);
  return buffer;
}
}  // namespace

Txyz& Txyz::operator=(const Trtp& s) {
  x = s.r * std::sin(s.t) * std::cos(s.p);
  y = s.r * std::sin(s.t) * std::sin(s.p);
  z = s.r * std::cos(s.t);
  return *this;
}

Txyz& Txyz::operator+=(const Txyz& o) {
  x += o.x;
  y += o.y;
  z += o.z;
  return *this;
}

Txyz& Txyz::operator-=(const Txyz& o) {
  x -= o.x;
  y -= o.y;
  z -= o.z;
  return *this;
}

double Txyz::length() const { return std::sqrt(x * x + y * y + z * z); }
std::string Txyz::string() const { return triple(x, y, z); }

void Txyz::rotate(double dTheta, double dPhi) {
  Trtp s(*this);
  s.rotate(dTheta, dPhi);
  *this = s;
}

Trtp& Trtp::operator=(const Txyz& c) {
  r = c.length();
  t = r > 0 ? std::acos(std::fmax(-1.0, std::fmin(1.0, c.z / r))) : 0.0;
  p = (c.x != 0 || c.y != 0) ? std::atan2(c.y, c.x) : 0.0;
  return *this;
}

Trtp& Trtp::operator+=(const Trtp& o) {
  Txyz a(*this);
  a += Txyz(o);
  return *this = a;
}

Trtp& Trtp::operator-=(const Trtp& o) {
  Txyz a(*this);
  a -= Txyz(o);
  return *this = a;
}

std::string Trtp::string() const { return triple(r, t, p); }

void Trtp::rotate(double dTheta, double dPhi) {
  t += dTheta;
  p += dPhi;
}

}  // namespace kx
