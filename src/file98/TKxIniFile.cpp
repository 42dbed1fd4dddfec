#include "file98/TKxIniFile.h"

#include <charconv>
#include <cstdint>
#include <cstring>

#include "kxexception/TFormatNumber.h"

namespace kx::ini {
namespace {
bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

// Where a number starts as scanf sees it: blanks skipped, a '+' dropped when a
// digit, point, or letter of "inf"/"nan" follows.
const char* numberStart(const std::string& text) {
  const char* p = text.c_str();
  while (isSpace(*p)) ++p;
  if (*p == '+' && p[1] != '-' && p[1] != '+') ++p;
  return p;
}
}  // namespace

std::string sFormatBool(bool v) { return v ? "1" : "0"; }
std::string sFormatInteger(int v) { return std::to_string(v); }
std::string sFormatLongLong(long long v) { return std::to_string(v); }

std::string sFormatFloat(double v) {
  // "%le" of the C library, but never with a locale's decimal comma.
  char buf[64];
  const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific, 6);
  return std::string(buf, r.ptr);
}

bool bParseLongLong(const std::string& text, long long& out) {
  const char* p = numberStart(text);
  const char* end = text.c_str() + text.size();
  long long v = 0;
  const auto r = std::from_chars(p, end, v, 10);
  if (r.ec != std::errc() || r.ptr == p) return false;
  out = v;
  return true;
}

bool bParseInteger(const std::string& text, int& out) {
  long long v = 0;
  if (!bParseLongLong(text, v) || v < INT32_MIN || v > INT32_MAX) return false;
  out = static_cast<int>(v);
  return true;
}

bool bParseFloat(std::string text, double& out) {
  modKomma(text.data());
  const char* p = numberStart(text);
  const char* end = text.c_str() + text.size();
  double v = 0;
  const auto r = std::from_chars(p, end, v, std::chars_format::general);
  if (r.ec != std::errc() || r.ptr == p) return false;
  out = v;
  return true;
}

std::string sOneLine(const char* text) {
  std::string s = text ? text : "";
  for (auto& c : s)
    if (c == '\r' || c == '\n') c = ' ';
  return s;
}

}  // namespace kx::ini

TKxIniFile::~TKxIniFile() = default;

bool TKxIniFile::bReadBool(const char* section, const char* key, bool def) {
  int v = 0;
  return kx::ini::bParseInteger(sReadString(section, key, ""), v) ? v != 0 : def;
}

double TKxIniFile::dReadFloat(const char* section, const char* key, double def) {
  double v = 0;
  return kx::ini::bParseFloat(sReadString(section, key, ""), v) ? v : def;
}

int TKxIniFile::iReadInteger(const char* section, const char* key, int def) {
  int v = 0;
  return kx::ini::bParseInteger(sReadString(section, key, ""), v) ? v : def;
}

long long TKxIniFile::iReadLongLong(const char* section, const char* key, long long def) {
  long long v = 0;
  return kx::ini::bParseLongLong(sReadString(section, key, ""), v) ? v : def;
}

void TKxIniFile::vWriteBool(const char* section, const char* key, bool value) {
  vWriteString(section, key, kx::ini::sFormatBool(value).c_str());
}

void TKxIniFile::vWriteFloat(const char* section, const char* key, double value) {
  // Six digits after the point, as "%le" writes: the form every reader of
  // these files knows, kept although it rounds.
  vWriteString(section, key, kx::ini::sFormatFloat(value).c_str());
}

void TKxIniFile::vWriteInteger(const char* section, const char* key, int value) {
  vWriteString(section, key, kx::ini::sFormatInteger(value).c_str());
}

void TKxIniFile::vWriteLongLong(const char* section, const char* key, long long value) {
  vWriteString(section, key, kx::ini::sFormatLongLong(value).c_str());
}

void TKxIniFile::vDeleteSubsections(const char* prefix) {
  if (!prefix) return;
  const size_t n = std::strlen(prefix);
  std::vector<std::string> names;
  vReadSections(names);
  for (const auto& s : names)
    if (s.compare(0, n, prefix) == 0 && bSectionExists(s.c_str())) vDeleteSection(s.c_str());
}
