#include "Camera98/TCameraRegister.h"

#include <cmath>
#include <cstdio>
#include <sstream>

#include "Camera98/TCamera.h"
#include "file98/IniHelpers.h"
#include "kxexception/KxError.h"

using TTyp = TCameraRegister::TTyp;

const char* TCameraRegister::cpGetStringFromType(TTyp t) {
  static const char* const low[] = {"Lines",    "Columns",  "Gain",     "Offset",   "Top",
                                    "Bottom",   "Substrat", "VBinning", "HBinning", "StdTime",
                                    "Aperture", "Focus",    "Zoom",     "Filter",   "CFilter"};
  static const char* const high[] = {"SerialNumber", "SoftwareRevision", "HardwareRevision", "FirmwareRevision", "SOC"};
  if (t <= 14) return low[t];
  if (t >= 30 && t <= 34) return high[t - 30];
  return "Unknown";
}

std::string TCameraRegister::prefix() const {
  const std::string s = cpGetStringFromType(tTyp);
  return s == "Unknown" ? "TCameraRegister" : s;
}

void TCameraRegister::vWriteIni(TKxIniFile* ini, const char* section, bool full) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    const std::string p = prefix();
    WriteIniDouble(*ini, section, p.c_str(), dContent);
    if (!full) return;
    WriteIniString(*ini, section, (p + "Name").c_str(), strName);
    WriteIniString(*ini, section, (p + "Unit").c_str(), strUnit);
    WriteIniDouble(*ini, section, (p + "Min").c_str(), dMin);
    WriteIniDouble(*ini, section, (p + "Max").c_str(), dMax);
    WriteIniInteger(*ini, section, (p + "Steps").c_str(), iSteps);
    WriteIniBool(*ini, section, (p + "Changeable").c_str(), bChangeable);
  }
  KX_CATCH
}

void TCameraRegister::vReadIni(TKxIniFile* ini, const char* section, bool full) {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    const std::string p = prefix();
    ReadIniDouble(*ini, section, p.c_str(), dContent);
    if (!full) return;
    ReadIniString(*ini, section, (p + "Name").c_str(), strName);
    ReadIniString(*ini, section, (p + "Unit").c_str(), strUnit);
    ReadIniDouble(*ini, section, (p + "Min").c_str(), dMin);
    ReadIniDouble(*ini, section, (p + "Max").c_str(), dMax);
    ReadIniInteger(*ini, section, (p + "Steps").c_str(), iSteps);
    ReadIniBool(*ini, section, (p + "Changeable").c_str(), bChangeable);
  }
  KX_CATCH
}

void TCameraRegister::vWriteIniWeight(TKxIniFile* ini, const char* section) const {
  WriteIniDouble(*ini, section, (prefix() + "Weight").c_str(), dWeight);
}

void TCameraRegister::vReadIniWeight(TKxIniFile* ini, const char* section) {
  ReadIniDouble(*ini, section, (prefix() + "Weight").c_str(), dWeight);
  if (!std::isfinite(dWeight)) dWeight = 0;
}

// ---------------------------------------------------------------- vector

int TCameraRegisterVector::_findRegister(TTyp t) const {
  for (std::size_t i = 0; i < Registers.size(); ++i)
    if (Registers[i].tGetRegisterTyp() == t) return static_cast<int>(i);
  return -1;
}

void TCameraRegisterVector::vSetRegister(const TCameraRegister& r) {
  const int i = _findRegister(r.tGetRegisterTyp());
  if (i >= 0)
    Registers[static_cast<std::size_t>(i)] = r;
  else
    Registers.push_back(r);
}

void TCameraRegisterVector::vSetRegister(TTyp t, double v) {
  if (TCameraRegister* r = pGetRegister(t))
    r->vSetContent(v);
  else
    Registers.emplace_back(t, v);
}

TCameraRegister* TCameraRegisterVector::pGetRegister(unsigned i) { return i < size() ? &Registers[i] : nullptr; }
const TCameraRegister* TCameraRegisterVector::pGetRegister(unsigned i) const {
  return i < size() ? &Registers[i] : nullptr;
}
TCameraRegister* TCameraRegisterVector::pGetRegister(TTyp t) {
  const int i = _findRegister(t);
  return i < 0 ? nullptr : &Registers[static_cast<std::size_t>(i)];
}
const TCameraRegister* TCameraRegisterVector::pGetRegister(TTyp t) const {
  const int i = _findRegister(t);
  return i < 0 ? nullptr : &Registers[static_cast<std::size_t>(i)];
}

double TCameraRegisterVector::dGetContent(TTyp t) const {
  const TCameraRegister* r = pGetRegister(t);
  return r ? r->dGetContent() : 0.0;
}

void TCameraRegisterVector::vWriteIni(TKxIniFile* ini, const char* section, bool full) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    std::string types;
    for (const TCameraRegister& r : Registers) {
      if (!types.empty()) types += ",";
      types += std::to_string(r.tGetRegisterTyp());
      r.vWriteIni(ini, section, full);
    }
    WriteIniString(*ini, section, "Registers", types);
  }
  KX_CATCH
}

void TCameraRegisterVector::vReadIni(TKxIniFile* ini, const char* section, bool full) {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    if (ini->bValueExists(section, "Registers")) {
      std::vector<TCameraRegister> read;
      std::istringstream in(ini->sReadString(section, "Registers", ""));
      for (std::string item; std::getline(in, item, ',');) {
        char* end = nullptr;
        const long t = std::strtol(item.c_str(), &end, 10);
        if (item.empty() || *end || t < 0 || t > 255)
          KX_THROW(0xe3023007UL, "Error in: [%s]:Registers \"%s\"", section, item.c_str());
        TCameraRegister r(static_cast<TTyp>(t), 0);
        if (const TCameraRegister* old = pGetRegister(static_cast<TTyp>(t))) r = *old;
        r.vReadIni(ini, section, full);
        read.push_back(r);
      }
      Registers = std::move(read);
      return;
    }
    for (TCameraRegister& r : Registers) r.vReadIni(ini, section, full);
  }
  KX_CATCH
}

void TCameraRegisterVector::vWriteIniWeights(TKxIniFile* ini, const char* section) const {
  for (const TCameraRegister& r : Registers) r.vWriteIniWeight(ini, section);
}

void TCameraRegisterVector::vReadIniWeights(TKxIniFile* ini, const char* section) {
  for (TCameraRegister& r : Registers) r.vReadIniWeight(ini, section);
}

void TCameraRegisterVector::vTakeWeightsForm(const TCameraRegisterVector& other) {
  for (TCameraRegister& r : Registers)
    if (const TCameraRegister* o = other.pGetRegister(r.tGetRegisterTyp())) r.vSetWeight(o->dGetWeight());
}

double TCameraRegisterVector::dGetDistance(const TCameraRegisterVector& other) const {
  if (size() != other.size()) return 0;
  double d = 0;
  for (unsigned i = 0; i < size(); ++i)
    d += other.Registers[i].dGetWeight() * std::fabs(Registers[i].dGetContent() - other.Registers[i].dGetContent());
  return d;
}

double TCameraRegisterVector::dGetDistanceInterpol(const TCameraRegisterVector& other) const {
  if (size() != other.size()) return 0;
  double d = 0;
  for (unsigned i = 0; i < size(); ++i)
    d += other.Registers[i].dGetWeight() * (Registers[i].dGetContent() - other.Registers[i].dGetContent());
  return d;
}

bool TCameraRegisterVector::operator==(const TCameraRegisterVector&) const {
  KX_TRY { KX_THROW(0x700000UL, "TCameraRegisterVector::operator== nicht vorhanden / not provided"); }
  KX_CATCH
}

// ---------------------------------------------------------------- list

const TCameraRegisterVector& TCameraRegisterVectorList::rGetEntry(unsigned i) const {
  KX_TRY {
    if (i >= uiGetSize()) KX_THROW(0x5100000UL, "Index=%u >= Size=%u", i, uiGetSize());
    return Entries[i];
  }
  KX_CATCH
}

void TCameraRegisterVectorList::vGetFromIndex(unsigned i, TCameraRegisterVector* out) const {
  KX_TRY {
    if (!out) KX_THROW(0x5100000UL, "vector null");
    *out = rGetEntry(i);
  }
  KX_CATCH
}

int TCameraRegisterVectorList::iGetIndex(const TCameraRegisterVector* v, bool forceFirst) const {
  if (!v || forceFirst) return 0;
  if (Entries.empty()) return -2;
  int best = 0;
  // The weights are the entries' (taken from the defaults).
  double dBest = v->dGetDistance(Entries[0]);
  for (unsigned i = 1; i < uiGetSize(); ++i) {
    const double d = v->dGetDistance(Entries[i]);
    if (d < dBest) dBest = d, best = static_cast<int>(i);
  }
  return best;
}

int TCameraRegisterVectorList::iGetIndex2(const TCameraRegisterVector* v, unsigned first) const {
  if (!v || Entries.empty()) return -1;
  const double dFirst = first < uiGetSize() ? v->dGetDistance(Entries[first]) : -1.0;
  int best = -2;
  double limit = 1e200;
  for (unsigned i = 0; i < uiGetSize(); ++i) {
    if (i == first) continue;
    const double d = v->dGetDistance(Entries[i]);
    if (d == dFirst) continue;
    if (d < limit) limit = d, best = static_cast<int>(i);
  }
  return best;
}

int TCameraRegisterVectorList::iSet(const TCameraRegisterVector* v, bool forceFirst) {
  KX_TRY {
    if (!v) KX_THROW(0x5100000UL, "vector null");
    int i = iGetIndex(v, forceFirst);
    if (i >= 0 && (forceFirst || v->dGetDistance(Entries[static_cast<std::size_t>(i)]) == 0)) {
      Entries[static_cast<std::size_t>(i)] = *v;
    } else {
      Entries.push_back(*v);
      i = static_cast<int>(Entries.size()) - 1;
    }
    Entries[static_cast<std::size_t>(i)].vTakeWeightsForm(Defaults);
    if (i == 0) {
      const TCameraRegisterVector weights = Defaults;
      Defaults = Entries[0];
      Defaults.vTakeWeightsForm(weights);
    }
    stamp_.set();
    return i;
  }
  KX_CATCH
}

void TCameraRegisterVectorList::vDelete(unsigned i) {
  KX_TRY {
    if (i >= uiGetSize()) KX_THROW(0x5100000UL, "Index=%u >= Size=%u", i, uiGetSize());
    Entries.erase(Entries.begin() + i);
    if (iLastIndex == static_cast<int>(i)) iLastIndex = -1;
    if (iLastIndex > static_cast<int>(i)) --iLastIndex;
    stamp_.set();
  }
  KX_CATCH
}

void TCameraRegisterVectorList::vInit() {
  Entries.clear();
  iLastIndex = -1;
  LastUseData = TCameraRegisterVector();
  stamp_.set();
}

void TCameraRegisterVectorList::vSetLastUseData() {
  if (pCamera && iLastIndex >= 0 && iLastIndex < static_cast<int>(uiGetSize()))
    LastUseData = Entries[static_cast<std::size_t>(iLastIndex)];
}

bool TCameraRegisterVectorList::bChangeData() const {
  if (!pCamera || !pCamera->pGetConnector()) return false;
  return pCamera->pGetConnector()->rGetRegisterVector().dGetDistance(LastUseData) != 0;
}

void TCameraRegisterVectorList::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    int n = 0;
    ReadIniInteger(*ini, section, "Number", n);
    if (n < 0 || n > 100000) KX_THROW(0xe3023007UL, "Error in: [%s]:Number %d", section, n);
    std::vector<TCameraRegisterVector> read(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
      const std::string s = std::string(section) + "\\DataList" + std::to_string(i);
      read[static_cast<std::size_t>(i)] = Defaults;
      read[static_cast<std::size_t>(i)].vReadIni(ini, s.c_str(), false);
      read[static_cast<std::size_t>(i)].vTakeWeightsForm(Defaults);
    }
    Entries = std::move(read);
    stamp_.set();
  }
  KX_CATCH
}

void TCameraRegisterVectorList::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    WriteIniInteger(*ini, section, "Number", static_cast<int>(uiGetSize()));
    for (unsigned i = 0; i < uiGetSize(); ++i) {
      const std::string s = std::string(section) + "\\DataList" + std::to_string(i);
      Entries[i].vWriteIni(ini, s.c_str(), false);
    }
  }
  KX_CATCH
}

void TCameraRegisterVectorList::vReadIniDefault(TKxIniFile* ini, const char* section) {
  KX_TRY {
    Defaults.vReadIni(ini, section, true);
    Defaults.vReadIniWeights(ini, section);
  }
  KX_CATCH
}

void TCameraRegisterVectorList::vWriteIniDefault(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    Defaults.vWriteIni(ini, section, true);
    Defaults.vWriteIniWeights(ini, section);
  }
  KX_CATCH
}
