#include "rastrix/TCoordinateSystem.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "rastrix/TruncLow.h"

namespace Rastrix {

namespace {
const TLanguage::TLanguageString sTypDefault("Default", "Default");

// Possibilities are a long of the files: 32 bits.
unsigned long low32(unsigned long long v) { return static_cast<unsigned long>(v & 0xffffffffULL); }

// The UTF-8 degree sign at the start of a unit becomes the Latin-1 byte.
std::string sRepairDegree(const std::string& unit) {
  if (unit.size() >= 2 && static_cast<unsigned char>(unit[0]) == 0xC2 && static_cast<unsigned char>(unit[1]) == 0xB0)
    return "\xB0" + unit.substr(2);
  return unit;
}

bool bLineStart(const char* text, const char* p) { return p == text || p[-1] == '\n' || p[-1] == '\r'; }

// Where "key=" stands in the text: the first one at the start of a line, else
// the first one anywhere (a header glued to the text before it); null if none.
const char* cpFindKey(const char* text, const char* key) {
  const std::string pattern = std::string(key) + '=';
  const char* first = nullptr;
  for (const char* p = std::strstr(text, pattern.c_str()); p; p = std::strstr(p + 1, pattern.c_str())) {
    if (bLineStart(text, p)) return p;
    if (!first) first = p;
  }
  return first;
}

// The word after the '=' as "%s" reads it: blanks skipped, then everything up
// to the next white space; `empty` when the line ends before a word (where
// "%s" would run on into the next line).
void vReadWord(const char* p, std::string& word, bool& empty) {
  auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f'; };
  while (blank(*p)) ++p;
  const char* end = p;
  while (*end && !blank(*end) && *end != '\r' && *end != '\n') ++end;
  word.assign(p, end);
  empty = word.empty();
}
}  // namespace

TCoordinateSystem::TCoordinateSystem() = default;
TCoordinateSystem::TCoordinateSystem(ETypOfKS typ) : eTyp(typ) {}
TCoordinateSystem::~TCoordinateSystem() = default;

const char* TCoordinateSystem::cpGetTypName() const { return sTypDefault(); }

// ---------------------------------------------------------------------------
// Transformations and measures

void TCoordinateSystem::vGetWorldXY(double* x, double* y, int column, int line) const {
  if (x) *x = column;
  if (y) *y = line;
}

void TCoordinateSystem::vGetWorldXY2(double* x, double* y, double column, double line) const {
  if (x) *x = column;
  if (y) *y = line;
}

void TCoordinateSystem::vGetWorldA(double* a, int, int) const {
  if (a) *a = dGetFactorA();
}

void TCoordinateSystem::vGetOrgXY(int* column, int* line, double x, double y) const {
  if (column) *column = kx::truncLow<int>(x);
  if (line) *line = kx::truncLow<int>(y);
}

void TCoordinateSystem::vGetOrgXY2(double* column, double* line, double x, double y) const {
  if (column) *column = x;
  if (line) *line = y;
}

double TCoordinateSystem::dGetLineLength(int c1, int l1, int c2, int l2) const {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  vGetWorldXY(&x1, &y1, c1, l1);
  vGetWorldXY(&x2, &y2, c2, l2);
  return std::hypot(x2 - x1, y2 - y1);
}

double TCoordinateSystem::dGetLineArea(int c1, int l1, int c2, int l2) const {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  vGetWorldXY(&x1, &y1, c1, l1);
  vGetWorldXY(&x2, &y2, c2, l2);
  return dGetFactorAUnit() * (x2 - x1) * (y1 + y2) * 0.5;
}

double TCoordinateSystem::dGetCircleLength(int c1, int l1, int c2, int l2) const {
  return 2.0 * std::numbers::pi * dGetLineLength(c1, l1, c2, l2);
}

double TCoordinateSystem::dGetCircleArea(int c1, int l1, int c2, int l2) const {
  const double r = dGetLineLength(c1, l1, c2, l2);
  return dGetFactorAUnit() * std::numbers::pi * r * r;
}

bool TCoordinateSystem::bEqualParam(const TCoordinateSystem* o) const {
  if (!o) return false;
  if (sNameX != o->sNameX || sUnitX != o->sUnitX || sNameY != o->sNameY || sUnitY != o->sUnitY ||
      sUnitL != o->sUnitL || sUnitA != o->sUnitA || sNameZ != o->sNameZ || sUnitZ != o->sUnitZ)
    return false;
  if (!(signatur == o->signatur) || bChangeable != o->bChangeable || ulPossibilities != o->ulPossibilities)
    return false;
  if (!(std::fabs(dValueZ - o->dValueZ) < 0.0001)) return false;
  const double a = dGetFactorA(), b = o->dGetFactorA();
  // Equal factors are equal also where the relative difference is 0 / 0.
  return a == b || std::fabs((a - b) / (a + b)) < 0.0001;
}

// ---------------------------------------------------------------------------
// Changes

void TCoordinateSystem::vSetChanged() {
  bChanged = true;
  signatur.vCreate();
  timeStamp.set();
}

void TCoordinateSystem::setNameKS(const std::string& name) {
  if (!bChangeable || name == sName) return;
  sName = name;
  vSetChanged();
}

void TCoordinateSystem::setNameUnitX(const std::string& name, const std::string& unit) {
  const std::string u = sRepairDegree(unit);
  if (!bChangeable || (name == sNameX && u == sUnitX)) return;
  sNameX = name;
  sUnitX = u;
  vSetChanged();
}

void TCoordinateSystem::setNameUnitY(const std::string& name, const std::string& unit) {
  if (!bChangeable || (name == sNameY && unit == sUnitY)) return;
  sNameY = name;
  sUnitY = unit;
  vSetChanged();
}

void TCoordinateSystem::setUnitL(const std::string& unit) {
  if (!bChangeable || unit == sUnitL) return;
  sUnitL = unit;
  vSetChanged();
}

void TCoordinateSystem::setUnitA(const std::string& unit) {
  if (!bChangeable || unit == sUnitA) return;
  sUnitA = unit;
  vSetChanged();
}

void TCoordinateSystem::setFactorA(double factor) {
  if (!bChangeable || factor == dFactorA) return;
  dFactorA = factor;
  vSetChanged();
}

void TCoordinateSystem::vSetNameZ(const std::string& name) {
  sNameZ = name;
  vSetChanged();
}

void TCoordinateSystem::vSetUnitZ(const std::string& unit) {
  sUnitZ = unit;
  vSetChanged();
}

void TCoordinateSystem::vSetValueZ(double value) {
  dValueZ = value;
  vSetChanged();
}

void TCoordinateSystem::vSetPossibilities(unsigned long bits) {
  ulPossibilities = low32(bits);
  vSetChanged();
}

void TCoordinateSystem::_vInitOwn(const TOwnValues& v) {
  bool changed = false;
  auto force = [&](std::string& field, const char* value) {
    if (!value || field == value) return;
    field = value;
    changed = true;
  };
  force(sNameX, v.nameX);
  force(sUnitX, v.unitX);
  force(sNameY, v.nameY);
  force(sUnitY, v.unitY);
  force(sNameZ, v.nameZ);
  force(sUnitZ, v.unitZ);
  force(sUnitL, v.unitL);
  force(sUnitA, v.unitA);
  if (dFactorA != v.factorA) {
    dFactorA = v.factorA;
    changed = true;
  }
  if (v.bValueZ && dValueZ != v.valueZ) {
    dValueZ = v.valueZ;
    changed = true;
  }
  if (ulPossibilities != v.possibilities) {
    ulPossibilities = v.possibilities;
    changed = true;
  }
  if (changed) vSetChanged();
}

void TCoordinateSystem::vCopy(const TCoordinateSystem* o) {
  if (!o || o == this) return;
  sName = o->sName;
  sNameX = o->sNameX;
  sUnitX = o->sUnitX;
  sNameY = o->sNameY;
  sUnitY = o->sUnitY;
  sUnitL = o->sUnitL;
  sUnitA = o->sUnitA;
  bChangeable = o->bChangeable;
  dFactorA = o->dFactorA;
  sNameZ = o->sNameZ;
  sUnitZ = o->sUnitZ;
  dValueZ = o->dValueZ;
  ulPossibilities = o->ulPossibilities;
  bChanged = o->bChanged;
  signatur = o->signatur;
  timeStamp.set();
}

// ---------------------------------------------------------------------------
// The string form

void TCoordinateSystem::_vAppendLine(std::string& text, const char* key, const std::string& value) {
  text += key;
  text += '=';
  text += kx::ini::sOneLine(value.c_str());  // one line per key, whatever the value holds
  text += "\r\n";
}

void TCoordinateSystem::_vAppendLine(std::string& text, const char* key, unsigned long value) {
  _vAppendLine(text, key, std::to_string(value));
}

void TCoordinateSystem::_vAppendLine(std::string& text, const char* key, long value) {
  _vAppendLine(text, key, std::to_string(value));
}

void TCoordinateSystem::_vAppendLine(std::string& text, const char* key, double value) {
  _vAppendLine(text, key, kx::ini::sFormatFloat(value));
}

bool TCoordinateSystem::_bReadWord(const char* text, const char* key, std::string& word, bool& empty) {
  const char* p = cpFindKey(text, key);
  if (!p) return false;
  p += std::strlen(key) + 1;
  vReadWord(p, word, empty);
  return true;
}

bool TCoordinateSystem::_bReadValue(const char* text, const char* key, std::string& value) {
  std::string word;
  bool empty = false;
  if (!_bReadWord(text, key, word, empty)) return false;
  value = word;
  return true;
}

bool TCoordinateSystem::_bReadValue(const char* text, const char* key, double& value) {
  std::string word;
  bool empty = false;
  if (!_bReadWord(text, key, word, empty)) return false;
  double v = 0;
  if (!empty && kx::ini::bParseFloat(word, v)) value = v;
  return true;
}

bool TCoordinateSystem::_bReadValue(const char* text, const char* key, int& value) {
  std::string word;
  bool empty = false;
  if (!_bReadWord(text, key, word, empty)) return false;
  int v = 0;
  if (!empty && kx::ini::bParseInteger(word, v)) value = v;
  return true;
}

bool TCoordinateSystem::_bReadValue(const char* text, const char* key, bool& value) {
  std::string word;
  bool empty = false;
  if (!_bReadWord(text, key, word, empty)) return false;
  long long v = 0;
  if (!empty && kx::ini::bParseLongLong(word, v)) value = v != 0;
  return true;
}

void TCoordinateSystem::_vAppendKeys(std::string& text) const {
  _vAppendLine(text, "KoordTyp", static_cast<unsigned long>(eTyp));
  _vAppendLine(text, "Signatur", std::string(signatur.get()));
  _vAppendLine(text, "NameKS", sName);
  _vAppendLine(text, "NameX", sNameX);
  _vAppendLine(text, "UnitX", sUnitX);
  _vAppendLine(text, "NameY", sNameY);
  _vAppendLine(text, "UnitY", sUnitY);
  _vAppendLine(text, "UnitL", sUnitL);
  _vAppendLine(text, "UnitA", sUnitA);
  _vAppendLine(text, "Changeable", static_cast<unsigned long>(bChangeable));
  _vAppendLine(text, "FactorA", dFactorA);
  _vAppendLine(text, "NameZ", sNameZ);
  _vAppendLine(text, "UnitZ", sUnitZ);
  _vAppendLine(text, "ValueZ", dValueZ);
  _vAppendLine(text, "Possiblities", ulPossibilities);  // spelled so in every file
}

bool TCoordinateSystem::_bReadKeys(const char* text) {
  std::string word;
  bool empty = false;
  if (!_bReadWord(text, "Signatur", word, empty)) return false;
  if (empty)
    signatur.vCreate();
  else
    signatur.set(word.c_str());
  auto unit = [&](const char* key, std::string& field) {
    if (!_bReadValue(text, key, field)) return false;
    field = sRepairDegree(field);
    return true;
  };
  if (!_bReadValue(text, "NameKS", sName) || !_bReadValue(text, "NameX", sNameX) || !unit("UnitX", sUnitX) ||
      !_bReadValue(text, "NameY", sNameY) || !unit("UnitY", sUnitY) || !unit("UnitL", sUnitL) ||
      !unit("UnitA", sUnitA) || !_bReadValue(text, "Changeable", bChangeable) ||
      !_bReadValue(text, "FactorA", dFactorA) || !_bReadValue(text, "NameZ", sNameZ) || !unit("UnitZ", sUnitZ) ||
      !_bReadValue(text, "ValueZ", dValueZ))
    return false;
  if (!_bReadWord(text, "Possiblities", word, empty)) return false;
  long long bits = 0;
  if (!empty && kx::ini::bParseLongLong(word, bits)) ulPossibilities = low32(static_cast<unsigned long long>(bits));
  return true;
}

std::string TCoordinateSystem::sWrite2String() const {
  std::string s;
  _vAppendKeys(s);
  return s;
}

void TCoordinateSystem::vWrite2String(char* text) const {
  if (!text) return;
  const std::string s = sWrite2String();
  std::memcpy(text + std::strlen(text), s.c_str(), s.size() + 1);
}

void TCoordinateSystem::vReadFromString(const char* text) {
  KX_TRY {
    if (!text) return;
    _bReadKeys(text);
    timeStamp.set();
  }
  KX_CATCH
}

// ---------------------------------------------------------------------------
// The ini form

void TCoordinateSystem::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) return;
    auto str = [&](const char* key, std::string& field) { field = ini->sReadString(section, key, field.c_str()); };
    auto unit = [&](const char* key, std::string& field) {
      str(key, field);
      field = sRepairDegree(field);
    };
    std::string sig = signatur.get();
    str("Signatur", sig);
    signatur.set(sig.c_str());
    str("NameKS", sName);
    str("NameX", sNameX);
    unit("UnitX", sUnitX);
    str("NameY", sNameY);
    unit("UnitY", sUnitY);
    unit("UnitL", sUnitL);
    unit("UnitA", sUnitA);
    bChangeable = ini->bReadBool(section, "Changeable", bChangeable);
    dFactorA = ini->dReadFloat(section, "FactorA", dFactorA);
    str("NameZ", sNameZ);
    unit("UnitZ", sUnitZ);
    dValueZ = ini->dReadFloat(section, "ValueZ", dValueZ);
    ulPossibilities = low32(static_cast<unsigned long long>(
        ini->iReadLongLong(section, "Possiblities", static_cast<long long>(ulPossibilities))));
    timeStamp.set();
  }
  KX_CATCH
}

void TCoordinateSystem::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) return;
    ini->vWriteString(section, "Signatur", signatur.get());
    ini->vWriteString(section, "NameKS", sName.c_str());
    ini->vWriteString(section, "NameX", sNameX.c_str());
    ini->vWriteString(section, "UnitX", sUnitX.c_str());
    ini->vWriteString(section, "NameY", sNameY.c_str());
    ini->vWriteString(section, "UnitY", sUnitY.c_str());
    ini->vWriteString(section, "UnitL", sUnitL.c_str());
    ini->vWriteString(section, "UnitA", sUnitA.c_str());
    ini->vWriteBool(section, "Changeable", bChangeable);
    ini->vWriteFloat(section, "FactorA", dFactorA);
    ini->vWriteString(section, "NameZ", sNameZ.c_str());
    ini->vWriteString(section, "UnitZ", sUnitZ.c_str());
    ini->vWriteFloat(section, "ValueZ", dValueZ);
    ini->vWriteLongLong(section, "Possiblities", static_cast<long long>(ulPossibilities));
    bChanged = false;
  }
  KX_CATCH
}

}  // namespace Rastrix
