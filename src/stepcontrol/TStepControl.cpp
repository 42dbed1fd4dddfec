#include "stepcontrol/TStepControl.h"

#include <cmath>
#include <cstdio>

#include "file98/IniHelpers.h"
#include "file98/TIniFilename.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"

namespace {

constexpr unsigned long ulNotFound = 0xe5123001UL;
constexpr unsigned long ulErrorIn = 0xe5123002UL;
constexpr unsigned long ulFactor = 0xe5123003UL;
constexpr unsigned long ulTable = 0xe5123004UL;
constexpr unsigned long ulEmpty = 0xe7023001UL;

// A number of an ini value; false for text that holds none.
bool number(TKxIniFile* ini, const std::string& section, const std::string& key, const char* def, double& out) {
  const std::string text = ini->sReadString(section.c_str(), key.c_str(), def);
  return kx::ini::bParseFloat(text, out) && std::isfinite(out);
}

}  // namespace

void TStepControl::_proofTable(std::vector<TLine>& lines) {
  const int n = static_cast<int>(lines.size());
  for (int i = 0; i < n; ++i) {
    TLine& l = lines[static_cast<std::size_t>(i)];
    if (!(l.dLower < l.dUpper))
      KX_THROW(ulTable, "StepControl table, line=%d: invalid range limits (%lf<=%lf)", i, l.dUpper, l.dLower);
    if (!(l.dStep > 0)) KX_THROW(ulTable, "StepControl table, line=%d: invalid step value %lf (<=0)", i, l.dStep);
    if (i + 1 < n && !(l.dUpper < lines[static_cast<std::size_t>(i + 1)].dLower))
      KX_THROW(ulTable, "StepControl table: invalid range limits (%lf (line=%d) >= %lf (line=%d))", l.dUpper, i,
               lines[static_cast<std::size_t>(i + 1)].dLower, i + 1);
    // The values lower, lower + step, ... and the upper limit as the last.
    const double steps = std::floor((l.dUpper - l.dLower) / l.dStep + 0.5);
    if (!(steps < 1e9)) KX_THROW(ulTable, "StepControl table, line=%d: invalid step value %lf (<=0)", i, l.dStep);
    l.iCount = static_cast<int>(steps) + 1;
    if (l.iCount < 2) l.iCount = 2;  // both limits are values
  }
}

void TStepControl::readIni(const TIniFilename& file, const std::string& section) {
  KX_TRY {
    TKxStdIniFile ini(file);
    readIni(&ini, section);
  }
  KX_CATCH
}

void TStepControl::readIni(TKxIniFile* ini, const std::string& section) {
  KX_TRY {
    if (!ini) KX_THROW(ulNotFound, "Not found: [%s]:%s", section.c_str(), "Number");
    if (!ini->bValueExists(section.c_str(), "Number")) KX_THROW(ulNotFound, "Not found: [%s]:%s", section.c_str(), "Number");
    double count = 0;
    if (!number(ini, section, "Number", "", count) || count < 0 || count > iMaxLines || count != std::floor(count))
      KX_THROW(ulErrorIn, "Error in: [%s]:%s", section.c_str(), "Number");
    std::vector<TLine> lines(static_cast<std::size_t>(count));
    for (int i = 0; i < static_cast<int>(count); ++i) {
      TLine& l = lines[static_cast<std::size_t>(i)];
      const std::string n = std::to_string(i);
      for (auto [key, def, out] : {std::tuple{"Min" + n, "", &l.dLower}, std::tuple{"Max" + n, "", &l.dUpper},
                                   std::tuple{"Step" + n, "0.04", &l.dStep}})
        if (!number(ini, section, key, def, *out)) KX_THROW(ulErrorIn, "Error in: [%s]:%s", section.c_str(), key.c_str());
    }
    _proofTable(lines);
    double current = 0, modeStep = dModeStep;
    if (!number(ini, section, "Current", "0.0", current))
      KX_THROW(ulErrorIn, "Error in: [%s]:%s", section.c_str(), "Current");
    int mode = static_cast<int>(eMode);
    ReadIniInteger(*ini, section.c_str(), "Mode", mode);
    if (mode < eAllValues || mode > eLogarithmic) KX_THROW(ulErrorIn, "Error in: [%s]:%s", section.c_str(), "Mode");
    if (ini->bValueExists(section.c_str(), "ModeStep") && !number(ini, section, "ModeStep", "1", modeStep))
      KX_THROW(ulErrorIn, "Error in: [%s]:%s", section.c_str(), "ModeStep");
    if (mode == eLinear && !(modeStep > 0)) KX_THROW(ulErrorIn, "Error in: [%s]:%s", section.c_str(), "ModeStep");
    if (mode == eLogarithmic && !(modeStep >= 1.0)) KX_THROW(ulFactor, "StepControl: factor %lf < 1", modeStep);
    Lines = std::move(lines);
    eMode = static_cast<EMode>(mode);
    dModeStep = modeStep;
    dCurrent = Lines.empty() ? current : getCurrentValue(current);
  }
  KX_CATCH
}

void TStepControl::writeIni(const TIniFilename& file, const std::string& section) const {
  KX_TRY {
    TKxStdIniFile ini(file);
    writeIni(&ini, section);
    ini.vFlush();
  }
  KX_CATCH
}

void TStepControl::writeIni(TKxIniFile* ini, const std::string& section) const {
  KX_TRY {
    if (!ini) KX_THROW(0x5100000UL, "ini file null");
    const char* s = section.c_str();
    ini->vWriteInteger(s, "Number", iGetLineCount());
    for (int i = 0; i < iGetLineCount(); ++i) {
      const std::string n = std::to_string(i);
      ini->vWriteFloat(s, ("Min" + n).c_str(), Lines[static_cast<std::size_t>(i)].dLower);
      ini->vWriteFloat(s, ("Max" + n).c_str(), Lines[static_cast<std::size_t>(i)].dUpper);
      ini->vWriteFloat(s, ("Step" + n).c_str(), Lines[static_cast<std::size_t>(i)].dStep);
    }
    ini->vWriteInteger(s, "Mode", eMode);
    ini->vWriteFloat(s, "ModeStep", dModeStep);
    ini->vWriteFloat(s, "Current", dCurrent);
  }
  KX_CATCH
}

void TStepControl::vSetFromStepTo(double from, double step, double to) {
  KX_TRY {
    std::vector<TLine> lines(1);
    lines[0].dLower = from, lines[0].dStep = step, lines[0].dUpper = to;
    _proofTable(lines);
    Lines = std::move(lines);
    getCurrentValue(from);
  }
  KX_CATCH
}

void TStepControl::_checkNotEmpty() const {
  if (Lines.empty()) KX_THROW(ulEmpty, "StepControl: Tabelle leer / table empty");
}

double TStepControl::getFirstValue() const {
  KX_TRY {
    _checkNotEmpty();
    return Lines.front().dLower;
  }
  KX_CATCH
}

double TStepControl::getLastValue() const {
  KX_TRY {
    _checkNotEmpty();
    return Lines.back().dUpper;
  }
  KX_CATCH
}

void TStepControl::_getTableIndex(double t, int& line, int& index) const {
  line = 0;
  double best = std::fabs(Lines[0].dLower - t);
  for (int i = 0; i < iGetLineCount(); ++i) {
    const TLine& l = Lines[static_cast<std::size_t>(i)];
    for (double d : {std::fabs(l.dLower - t), std::fabs(l.dUpper - t)})
      if (d < best) best = d, line = i;
  }
  const TLine& l = Lines[static_cast<std::size_t>(line)];
  const double v = (t - l.dLower) / l.dStep + 0.5;
  if (!(v >= 0))
    index = 0;
  else if (v > l.iCount - 1)
    index = l.iCount - 1;
  else
    index = static_cast<int>(v);
}

double TStepControl::_getTableValue(int line, int index) const {
  const TLine& l = Lines[static_cast<std::size_t>(line)];
  return index >= l.iCount - 1 ? l.dUpper : l.dLower + index * l.dStep;
}

bool TStepControl::_increaseTableIndex(int& line, int& index) const {
  if (index + 1 < Lines[static_cast<std::size_t>(line)].iCount) {
    ++index;
    return true;
  }
  if (line + 1 >= iGetLineCount()) return false;
  ++line;
  index = 0;
  return true;
}

bool TStepControl::_reduceTableIndex(int& line, int& index) const {
  if (index > 0) {
    --index;
    return true;
  }
  if (line == 0) return false;
  --line;
  index = Lines[static_cast<std::size_t>(line)].iCount - 1;
  return true;
}

double TStepControl::getCurrentValue(double t) {
  KX_TRY {
    _checkNotEmpty();
    int line, index;
    _getTableIndex(t, line, index);
    dCurrent = _getTableValue(line, index);
    return dCurrent;
  }
  KX_CATCH
}

bool TStepControl::getNextValue(double t, double* out) {
  KX_TRY {
    _checkNotEmpty();
    int line, index;
    _getTableIndex(t, line, index);
    if (eMode == eAllValues) {
      if (!_increaseTableIndex(line, index)) return false;
    } else {
      const double v = _getTableValue(line, index);
      const double want = eMode == eLinear ? v + dModeStep : v * dModeStep;
      int l2, i2;
      _getTableIndex(want, l2, i2);
      if (l2 == line && i2 == index) {
        if (!_increaseTableIndex(line, index)) return false;
      } else {
        if (l2 < line || (l2 == line && i2 < index)) return false;  // the table ends below the wanted value
        line = l2, index = i2;
      }
    }
    dCurrent = _getTableValue(line, index);
    if (out) *out = dCurrent;
    return true;
  }
  KX_CATCH
}

bool TStepControl::getPreviousValue(double t, double* out) {
  KX_TRY {
    _checkNotEmpty();
    int line, index;
    _getTableIndex(t, line, index);
    if (eMode == eAllValues) {
      if (!_reduceTableIndex(line, index)) return false;
    } else {
      const double v = _getTableValue(line, index);
      const double want = eMode == eLinear ? v - dModeStep : v / dModeStep;
      int l2, i2;
      _getTableIndex(want, l2, i2);
      if (l2 == line && i2 == index) {
        if (!_reduceTableIndex(line, index)) return false;
      } else {
        if (l2 > line || (l2 == line && i2 > index)) return false;
        line = l2, index = i2;
      }
    }
    dCurrent = _getTableValue(line, index);
    if (out) *out = dCurrent;
    return true;
  }
  KX_CATCH
}

int TStepControl::getCurrentIndex(double t) const {
  KX_TRY {
    _checkNotEmpty();
    int line, index;
    _getTableIndex(t, line, index);
    for (int i = 0; i < line; ++i) index += Lines[static_cast<std::size_t>(i)].iCount;
    return index;
  }
  KX_CATCH
}

int TStepControl::getValueNumberBetween(double a, double b) const {
  KX_TRY {
    const int ia = getCurrentIndex(a), ib = getCurrentIndex(b);
    return std::abs(ib - ia) + 1;
  }
  KX_CATCH
}

void TStepControl::setModeAllValues() { eMode = eAllValues; }

void TStepControl::setModeLinearValues(double step) {
  KX_TRY {
    if (!(step > 0)) KX_THROW(0x5100000UL, "StepControl: step %lf <= 0", step);
    eMode = eLinear;
    dModeStep = step;
  }
  KX_CATCH
}

void TStepControl::setModeLogarithmicValues(double factor) {
  KX_TRY {
    if (!(factor >= 1.0)) KX_THROW(ulFactor, "StepControl: factor %lf < 1", factor);
    eMode = eLogarithmic;
    dModeStep = factor;
  }
  KX_CATCH
}
