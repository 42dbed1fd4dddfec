// Number formatting with the decimal comma, and the in-place number text
// helpers.
#pragma once

#include <string>

// Formats with a fixed number of digits after the decimal separator
// ("%.*f"). With `praefix` a positive number gets a leading '+'. The decimal
// separator is ',' while the language is German and '.' in English.
// dGetNumber reads both separators; text that holds no number gives 0.
class TFormatNumber {
 public:
  TFormatNumber(int digits = 2, bool praefix = false) : digits_(digits), praefix_(praefix) {}

  std::string format(double d) const { return format(d, digits_); }
  std::string format(double d, int digits) const;
  double dGetNumber(const char* text) const;

  int getDigits() const { return digits_; }
  void setDigits(int digits) { digits_ = digits; }
  bool getPraefix() const { return praefix_; }
  void setPraefix(bool praefix) { praefix_ = praefix; }

 private:
  int digits_;
  bool praefix_;
};

// In place: a ',' with a digit 0-9 on both sides becomes '.'. Strings shorter
// than 3 characters and null pointers are left alone.
void komma2punkt(char* s);
// The inverse: a '.' with a digit on both sides becomes ','.
void punkt2komma(char* s);
// Prepares a number text that may hold a decimal comma for sscanf/strtod:
// komma2punkt, and the string is returned (null stays null).
char* modKomma(char* s);
// Prepares a number text for display: the decimal separator of the current
// language (punkt2komma in German, komma2punkt in English).
char* modPunkt(char* s);
// Writes `value` as binary digits, most significant first, exactly `width`
// digits (1..32; the low bits are kept); `out` needs width + 1 bytes. A
// width out of range or a null buffer writes nothing.
void formatBinaer(char* out, unsigned long value, int width);
