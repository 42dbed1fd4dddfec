#include "kxexception/TFormatNumber.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "kxexception/TLanguage.h"

namespace {
bool isDigit(char c) { return c >= '0' && c <= '9'; }

void swapSeparator(char* s, char from, char to) {
  if (!s) return;
  const size_t n = std::strlen(s);
  if (n < 3) return;
  for (size_t i = 1; i + 1 < n; ++i)
    if (s[i] == from && isDigit(s[i - 1]) && isDigit(s[i + 1])) s[i] = to;
}
}  // namespace

std::string TFormatNumber::format(double d, int digits) const {
  if (digits < 0) digits = 0;
  if (digits > 17) digits = 17;
  char buf[400];
  std::snprintf(buf, sizeof buf, praefix_ ? "%+.*f" : "%.*f", digits, d);
  if (TLanguage::isDeutsch()) punkt2komma(buf);
  return buf;
}

double TFormatNumber::dGetNumber(const char* text) const {
  if (!text) return 0.0;
  std::string s(text);
  for (auto& c : s)
    if (c == ',') c = '.';
  char* end = nullptr;
  double d = std::strtod(s.c_str(), &end);
  return end == s.c_str() ? 0.0 : d;
}

void komma2punkt(char* s) { swapSeparator(s, ',', '.'); }
void punkt2komma(char* s) { swapSeparator(s, '.', ','); }

char* modKomma(char* s) {
  komma2punkt(s);
  return s;
}

char* modPunkt(char* s) {
  if (TLanguage::isDeutsch())
    punkt2komma(s);
  else
    komma2punkt(s);
  return s;
}

void formatBinaer(char* out, unsigned long value, int width) {
  if (!out || width < 1 || width > 32) return;
  for (int i = 0; i < width; ++i) out[i] = ((value >> (width - 1 - i)) & 1UL) ? '1' : '0';
  out[width] = '\0';
}
