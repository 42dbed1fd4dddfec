#include "rastrix/PixelTraits.h"

#include <cctype>
#include <cstdio>
#include <string>

#include "kxexception/KxError.h"
#include "platform/CLocale.h"
#include "rastrix/RastrixErrors.h"

namespace Rastrix {

const char* cpReadPixelWord(const char* text, double* value) {
  const char* p = text;
  while (*p && std::isspace(static_cast<unsigned char>(*p))) ++p;
  const char* end = p;
  while (*end && !std::isspace(static_cast<unsigned char>(*end))) ++end;
  if (end == p) KX_THROW0(Err::ulPixelTokenUnreadable);
  std::string word(p, end);
  const std::size_t comma = word.find(',');
  if (comma != std::string::npos) word[comma] = '.';
  const kx::platform::CNumericScope cLocale;
  if (std::sscanf(word.c_str(), "%le", value) != 1) KX_THROW0(Err::ulPixelTokenUnreadable);
  return end;
}

namespace {
template <class T>
const char* readInteger(const char* text, T* p) {
  double d = 0.0;
  text = cpReadPixelWord(text, &d);
  *p = kx::truncLow<T>(d);
  return text;
}
}  // namespace

void TPixelTraits<unsigned char>::pixel2Str(const unsigned char& p, char* out) {
  std::snprintf(out, iPixelStrSize, "%u", static_cast<unsigned>(p));
}
void TPixelTraits<unsigned short>::pixel2Str(const unsigned short& p, char* out) {
  std::snprintf(out, iPixelStrSize, "%u", static_cast<unsigned>(p));
}
void TPixelTraits<int>::pixel2Str(const int& p, char* out) { std::snprintf(out, iPixelStrSize, "%d", p); }
void TPixelTraits<float>::pixel2Str(const float& p, char* out) {
  const kx::platform::CNumericScope cLocale;
  std::snprintf(out, iPixelStrSize, "%e", static_cast<double>(p));
}
void TPixelTraits<TRGBPixel>::pixel2Str(const TRGBPixel& p, char* out) {
  std::snprintf(out, iPixelStrSize, "%u\t%u\t%u", static_cast<unsigned>(p.b), static_cast<unsigned>(p.g),
                static_cast<unsigned>(p.r));
}
void TPixelTraits<TRGBFloatPixel>::pixel2Str(const TRGBFloatPixel& p, char* out) {
  const kx::platform::CNumericScope cLocale;
  std::snprintf(out, iPixelStrSize, "%f\t%f\t%f", static_cast<double>(p.b), static_cast<double>(p.g),
                static_cast<double>(p.r));
}

const char* TPixelTraits<unsigned char>::str2Pixel(const char* text, unsigned char* p) { return readInteger(text, p); }
const char* TPixelTraits<unsigned short>::str2Pixel(const char* text, unsigned short* p) {
  return readInteger(text, p);
}
const char* TPixelTraits<int>::str2Pixel(const char* text, int* p) { return readInteger(text, p); }
const char* TPixelTraits<float>::str2Pixel(const char* text, float* p) {
  double d = 0.0;
  text = cpReadPixelWord(text, &d);
  *p = kx::toFloat(d);
  return text;
}
const char* TPixelTraits<TRGBPixel>::str2Pixel(const char* text, TRGBPixel* p) {
  double d[3];
  for (double& v : d) text = cpReadPixelWord(text, &v);
  p->b = kx::truncLow<unsigned char>(d[0]);
  p->g = kx::truncLow<unsigned char>(d[1]);
  p->r = kx::truncLow<unsigned char>(d[2]);
  p->swapRB();  // the writer emits memory order: kept as it is, the typed picture swaps back
  return text;
}
const char* TPixelTraits<TRGBFloatPixel>::str2Pixel(const char* text, TRGBFloatPixel* p) {
  double d[3];
  for (double& v : d) text = cpReadPixelWord(text, &v);
  p->b = kx::toFloat(d[0]);
  p->g = kx::toFloat(d[1]);
  p->r = kx::toFloat(d[2]);
  return text;
}

}  // namespace Rastrix
