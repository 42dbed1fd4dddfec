// The two colour pixels: three bytes or three floats, in memory order blue,
// green, red, with no padding. That order is part of every raw plane file and
// of every block shared with a frame grabber or the image library.
//
// A colour plane's colour space may give the three positions another meaning
// (X, Y, Z stored as Z, Y, X): the positions stay, the meaning is the colour
// space's. Neither structure initialises itself: `TRGBPixel p;` holds whatever
// was in memory, `TRGBPixel p{};` is zero.
//
// TRGBPixel arithmetic never clips: a floating result is truncated toward zero
// and only its low eight bits are stored, so 300.7 becomes 44 and -1.5 becomes
// 255. Division by zero is not tested in either structure.
#pragma once

#include "rastrix/TruncLow.h"

namespace Rastrix {

// Relative luminance weights of the CIE RGB primaries; deliberately not
// normalised, so white (255, 255, 255) has the luminance 1440.954.
inline constexpr long double ldLumR = 1.0L;
inline constexpr long double ldLumG = 4.5907L;
inline constexpr long double ldLumB = 0.0601L;

struct TRGBPixel {
  unsigned char b;  // first byte
  unsigned char g;  // second byte
  unsigned char r;  // third byte

  TRGBPixel() = default;

  TRGBPixel& operator=(const TRGBPixel&) = default;
  TRGBPixel& operator=(unsigned char v) {
    b = g = r = v;
    return *this;
  }
  // An int literal would be ambiguous between the two forms: its low eight bits.
  TRGBPixel& operator=(int v) { return *this = static_cast<unsigned char>(v); }
  TRGBPixel& operator=(double v) { return *this = kx::truncLow<unsigned char>(v); }

  TRGBPixel& operator+=(const TRGBPixel& o) {
    b = static_cast<unsigned char>(b + o.b);
    g = static_cast<unsigned char>(g + o.g);
    r = static_cast<unsigned char>(r + o.r);
    return *this;
  }
  TRGBPixel& operator-=(float f) {
    b = kx::truncLow<unsigned char>(b - f);
    g = kx::truncLow<unsigned char>(g - f);
    r = kx::truncLow<unsigned char>(r - f);
    return *this;
  }
  TRGBPixel& operator*=(float f) {
    b = kx::truncLow<unsigned char>(b * f);
    g = kx::truncLow<unsigned char>(g * f);
    r = kx::truncLow<unsigned char>(r * f);
    return *this;
  }
  TRGBPixel& operator/=(float f) {
    b = kx::truncLow<unsigned char>(b / f);
    g = kx::truncLow<unsigned char>(g / f);
    r = kx::truncLow<unsigned char>(r / f);
    return *this;
  }

  // Third byte r, second g, first b, each cut to its low eight bits.
  void set(int red, int green, int blue) {
    r = static_cast<unsigned char>(red);
    g = static_cast<unsigned char>(green);
    b = static_cast<unsigned char>(blue);
  }
  void swapRB() {
    const unsigned char t = b;
    b = r;
    r = t;
  }

  double dGetLuminance() const { return static_cast<double>(ldLumR * r + ldLumG * g + ldLumB * b); }
  // The luminance: what a colour pixel is wherever one number is asked for.
  operator double() const { return dGetLuminance(); }

  // Component equality (without it, == would compare luminances).
  bool operator==(const TRGBPixel& o) const { return b == o.b && g == o.g && r == o.r; }
};

struct TRGBFloatPixel {
  float b;  // first float
  float g;  // second float
  float r;  // third float

  TRGBFloatPixel() = default;

  TRGBFloatPixel& operator=(const TRGBFloatPixel&) = default;
  TRGBFloatPixel& operator=(const TRGBPixel& o) {
    b = o.b;
    g = o.g;
    r = o.r;
    return *this;
  }
  TRGBFloatPixel& operator=(float v) {
    b = g = r = v;
    return *this;
  }
  TRGBFloatPixel& operator=(double v) { return *this = kx::toFloat(v); }
  // An int literal would be ambiguous between float and double.
  TRGBFloatPixel& operator=(int v) { return *this = static_cast<float>(v); }

  TRGBFloatPixel& operator+=(const TRGBFloatPixel& o) {
    b += o.b;
    g += o.g;
    r += o.r;
    return *this;
  }
  TRGBFloatPixel& operator+=(const TRGBPixel& o) {
    b += o.b;
    g += o.g;
    r += o.r;
    return *this;
  }
  TRGBFloatPixel& operator+=(float v) {
    b += v;
    g += v;
    r += v;
    return *this;
  }
  TRGBFloatPixel& operator+=(double v) { return *this += kx::toFloat(v); }
  TRGBFloatPixel& operator-=(const TRGBFloatPixel& o) {
    b -= o.b;
    g -= o.g;
    r -= o.r;
    return *this;
  }
  TRGBFloatPixel& operator-=(const TRGBPixel& o) {
    b -= o.b;
    g -= o.g;
    r -= o.r;
    return *this;
  }
  TRGBFloatPixel& operator-=(float v) {
    b -= v;
    g -= v;
    r -= v;
    return *this;
  }
  TRGBFloatPixel& operator*=(const TRGBFloatPixel& o) {
    b *= o.b;
    g *= o.g;
    r *= o.r;
    return *this;
  }
  TRGBFloatPixel& operator*=(float v) {
    b *= v;
    g *= v;
    r *= v;
    return *this;
  }
  TRGBFloatPixel& operator*=(double v) { return *this *= kx::toFloat(v); }
  TRGBFloatPixel& operator/=(float v) {
    b /= v;
    g /= v;
    r /= v;
    return *this;
  }
  TRGBFloatPixel& operator/=(double v) { return *this /= kx::toFloat(v); }

  // Deliberately an any-component test, red, green, blue in turn: true as soon
  // as one component is >= the same one of `o`. Not an order; kept as it is.
  bool operator>=(const TRGBFloatPixel& o) const { return r >= o.r || g >= o.g || b >= o.b; }

  void set(float red, float green, float blue) {
    r = red;
    g = green;
    b = blue;
  }
  void swapRB() {
    const float t = b;
    b = r;
    r = t;
  }

  double dGetLuminance() const { return static_cast<double>(ldLumR * r + ldLumG * g + ldLumB * b); }
  operator double() const { return dGetLuminance(); }

  bool operator==(const TRGBFloatPixel& o) const { return b == o.b && g == o.g && r == o.r; }
};

static_assert(sizeof(TRGBPixel) == 3, "TRGBPixel must be exactly three bytes");
static_assert(sizeof(TRGBFloatPixel) == 12, "TRGBFloatPixel must be exactly twelve bytes");
static_assert(alignof(TRGBPixel) == 1);
static_assert(__builtin_offsetof(TRGBPixel, b) == 0 && __builtin_offsetof(TRGBPixel, r) == 2);
static_assert(__builtin_offsetof(TRGBFloatPixel, b) == 0 && __builtin_offsetof(TRGBFloatPixel, r) == 8);

}  // namespace Rastrix
