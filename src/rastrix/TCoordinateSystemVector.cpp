// TCoordinateSystemVector: the owner of all coordinate systems and the
// default system of the process.
#include <algorithm>
#include <cctype>
#include <string>

#include "file98/KxPath.h"
#include "file98/TIniFilename.h"
#include "file98/TKxIniFile.h"
#include "file98/TKxMemIniFile.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TCoordinateSystemKugel.h"
#include "rastrix/TCoordinateSystemLvk.h"
#include "rastrix/TCoordinateSystemProjektionswand.h"
#include "rastrix/TLinearCoordinateSystem.h"
#include "rastrix/TSizeShiftCoordinateSystem.h"

namespace Rastrix {

namespace {

std::string entrySection(const char* section, int i) { return std::string(section) + "/Entry" + std::to_string(i); }
std::string typKey(int i) { return "Typ" + std::to_string(i); }

// The number n of a name "<prefix><n>" (digits only, no sign), or -1.
long long numberAfter(const std::string& name, const std::string& prefix) {
  if (name.size() <= prefix.size() || name.compare(0, prefix.size(), prefix) != 0) return -1;
  long long n = 0;
  for (std::size_t i = prefix.size(); i < name.size(); ++i) {
    if (!std::isdigit(static_cast<unsigned char>(name[i]))) return -1;
    n = std::min(n * 10 + (name[i] - '0'), 1LL << 40);
  }
  return n;
}

// The file name an ini was read from, if it has one.
std::string fileNameOf(TKxIniFile* ini) {
  if (auto* f = dynamic_cast<TKxStdIniFile*>(ini)) return f->cpGetFileName();
  if (auto* m = dynamic_cast<TKxMemIniFile*>(ini)) return m->cpGetFileName();
  return {};
}

}  // namespace

TCoordinateSystemVector::TCoordinateSystemVector() : TCoordinateSystem(eKSDefault) {}
TCoordinateSystemVector::~TCoordinateSystemVector() = default;

template <class F>
void TCoordinateSystemVector::_forAll(F&& f) const {
  f(const_cast<TCoordinateSystemVector*>(static_cast<const TCoordinateSystemVector*>(this)));
  for (const auto& cs : systems_) f(cs.get());
}

TCoordinateSystem* TCoordinateSystemVector::pCreate(int typ) {
  switch (typ) {
    case eKSSizeShift:
      return new TSizeShiftCoordinateSystem;
    case eKSLinear:
      return new TLinearCoordinateSystem;
    case eKSProjektionswand:
      return new TCoordinateSystemProjektionswand;
    case eKSKugel:
      return new TCoordinateSystemKugel;
    case eKSLvk:
      return new TCoordinateSystemLvk;
    default:
      return new TCoordinateSystem;
  }
}

// ---------------------------------------------------------------------------
// Access

void TCoordinateSystemVector::_vCheckIndex(int index, int first) const {
  if (index < first || index >= size())
    KX_THROW(Err::ulCoordinateSystemIndex, "Index=%d Size=%d", index, size());
}

TCoordinateSystem* TCoordinateSystemVector::operator[](int index) const {
  KX_TRY {
    _vCheckIndex(index, -1);
    if (index < 0) return const_cast<TCoordinateSystemVector*>(this);
    return systems_[static_cast<std::size_t>(index)].get();
  }
  KX_CATCH
}

ETypOfKS TCoordinateSystemVector::eGetTyp(const TCoordinateSystem* system) const {
  return system ? system->eGetTypOfKS() : eKSDefault;
}

int TCoordinateSystemVector::iIndexOf(const TCoordinateSystem* system) const {
  if (system == this) return -1;
  for (int i = 0; i < size(); ++i)
    if (systems_[static_cast<std::size_t>(i)].get() == system) return i;
  return -2;
}

int TCoordinateSystemVector::iCountNotUsed() const {
  return static_cast<int>(std::count_if(systems_.begin(), systems_.end(), [](const auto& cs) { return !cs->bIsUser(); }));
}

// ---------------------------------------------------------------------------
// Entering and leaving

TCoordinateSystem* TCoordinateSystemVector::pAppendNew(TCoordinateSystem* system) {
  KX_TRY {
    if (!system) return this;
    TCoordinateSystem* found = nullptr;
    if (iFindExistingCoordinateSystem(system, &found) == 0) return found;
    std::unique_ptr<TCoordinateSystem> owned(system);
    systems_.push_back(std::move(owned));
    return system;
  }
  KX_CATCH
}

void TCoordinateSystemVector::vDelete(int index) {
  KX_TRY {
    _vCheckIndex(index, 0);
    const TCoordinateSystem& cs = *systems_[static_cast<std::size_t>(index)];
    if (cs.bIsUser())
      KX_THROW(Err::ulCoordinateSystemInUse, "Index=%d Name=%s Users=%d", index, cs.rStrGetNameKS().c_str(),
               cs.iGetUser());
    systems_.erase(systems_.begin() + index);
  }
  KX_CATCH
}

void TCoordinateSystemVector::vCompress() {
  for (int i = size() - 1; i >= 0; --i)
    if (!systems_[static_cast<std::size_t>(i)]->bIsUser()) systems_.erase(systems_.begin() + i);
}

// ---------------------------------------------------------------------------
// Names and comparison

std::string TCoordinateSystemVector::sGetStripName(const char* name) {
  if (!name) return {};
  const std::string s = name;
  const std::size_t pos = s.rfind('~');
  return pos == std::string::npos ? s : s.substr(0, pos);
}

std::string TCoordinateSystemVector::sCreateUniqueName(const char* name) const {
  const std::string strip = sGetStripName(name);
  bool taken = false;
  _forAll([&](TCoordinateSystem* cs) { taken = taken || sGetStripName(cs->sName.c_str()) == strip; });
  if (!taken) return strip;
  // Ends: there are fewer systems than candidates.
  for (int n = 1;; ++n) {
    const std::string candidate = strip + "~" + std::to_string(n);
    bool used = false;
    _forAll([&](TCoordinateSystem* cs) { used = used || cs->sName == candidate; });
    if (!used) return candidate;
  }
}

int TCoordinateSystemVector::iCompareKS12(const TCoordinateSystem* a, const TCoordinateSystem* b) {
  if (!a || !b || a->eGetTypOfKS() != b->eGetTypOfKS()) return 1;
  return a->bEqualParam(b) ? 0 : 2;
}

int TCoordinateSystemVector::iFindExistingCoordinateSystem(TCoordinateSystem* system, TCoordinateSystem** found) {
  KX_TRY {
    if (!system || iIndexOf(system) != -2) {
      if (found) *found = system ? system : this;
      return 0;
    }
    const std::string strip = sGetStripName(system->sName.c_str());
    TCoordinateSystem* equal = nullptr;
    _forAll([&](TCoordinateSystem* cs) {
      if (!equal && sGetStripName(cs->sName.c_str()) == strip && iCompareKS12(cs, system) == 0) equal = cs;
    });
    if (equal) {
      delete system;
      if (found) *found = equal;
      return 0;
    }
    system->_vSetNameOnly(sCreateUniqueName(system->sName.c_str()));  // the signature stays
    system->vSetChanged(false);
    return 1;
  }
  KX_CATCH
}

TCoordinateSystem* TCoordinateSystemVector::pFindNameSignatur(const TCoordinateSystem* system) const {
  TCoordinateSystem* result = nullptr;
  if (system) {
    _forAll([&](TCoordinateSystem* cs) {
      if (!result && cs->rGetSignatur() == system->rGetSignatur()) result = cs;
    });
    _forAll([&](TCoordinateSystem* cs) {
      if (!result && cs->sName == system->sName) result = cs;
    });
  }
  return result ? result : const_cast<TCoordinateSystemVector*>(this);
}

int TCoordinateSystemVector::iCreateFromString(const char* text) {
  KX_TRY {
    if (!text) return -1;
    std::string word;
    bool empty = false;
    if (!_bReadWord(text, "KoordTyp", word, empty)) return -1;
    long long typ = 0;
    if (empty || !kx::ini::bParseLongLong(word, typ) || typ < eKSSizeShift || typ > eKSLvk) return -1;
    std::unique_ptr<TCoordinateSystem> cs(pCreate(static_cast<int>(typ)));
    cs->vReadFromString(text);
    for (int i = 0; i < size(); ++i)
      if (iCompareKS12(systems_[static_cast<std::size_t>(i)].get(), cs.get()) == 0) return i;
    TCoordinateSystem* added = pAppendNew(cs.release());
    for (int i = 0; i < size(); ++i)
      if (iCompareKS12(systems_[static_cast<std::size_t>(i)].get(), added) == 0) return i;
    return -1;
  }
  KX_CATCH
}

// ---------------------------------------------------------------------------
// The store

void TCoordinateSystemVector::_vAdoptRead(std::unique_ptr<TCoordinateSystem> system) {
  for (const auto& cs : systems_)
    if (cs->sName == system->sName && iCompareKS12(cs.get(), system.get()) == 0) return;  // read twice
  bool nameTaken = false;
  _forAll([&](TCoordinateSystem* cs) { nameTaken = nameTaken || cs->sName == system->sName; });
  if (nameTaken) system->_vSetNameOnly(sCreateUniqueName(system->sName.c_str()));
  systems_.push_back(std::move(system));
}

void TCoordinateSystemVector::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) return;
    sIniFile_ = fileNameOf(ini);
    sIniSection_ = section;
    // The entries that are there, in the order of their numbers: a count
    // beyond them is a broken count, not a reason to loop for ever.
    const int n = ini->iReadInteger(section, "Size", 0);
    const std::string prefix = std::string(section) + "/Entry";
    std::vector<std::string> sections;
    ini->vReadSections(sections);
    std::vector<int> numbers;
    for (const auto& s : sections) {
      const long long k = numberAfter(s, prefix);
      if (k >= 1 && k <= n && entrySection(section, static_cast<int>(k)) == s) numbers.push_back(static_cast<int>(k));
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    for (const int i : numbers) {
      const std::string entry = entrySection(section, i);
      std::unique_ptr<TCoordinateSystem> cs(pCreate(ini->iReadInteger(section, typKey(i).c_str(), eKSDefault)));
      cs->vReadIni(ini, entry.c_str());
      _vAdoptRead(std::move(cs));
    }
  }
  KX_CATCH
}

void TCoordinateSystemVector::vReadIni(const TIniFilename& file, const char* section) {
  KX_TRY {
    TKxStdIniFile ini(file);
    vReadIni(&ini, section);
  }
  KX_CATCH
}

void TCoordinateSystemVector::vWriteIni(TKxIniFile* ini, const char* section) const {
  vWriteIni(ini, section, false);
}

void TCoordinateSystemVector::vWriteIni(TKxIniFile* ini, const char* section, bool onlyUsed) const {
  KX_TRY {
    if (!ini || !section) return;
    std::vector<const TCoordinateSystem*> written;
    for (const auto& cs : systems_)
      if (!onlyUsed || cs->bIsUser()) written.push_back(cs.get());
    const int n = static_cast<int>(written.size());
    ini->vWriteInteger(section, "Size", n);
    for (int i = 1; i <= n; ++i) {
      const TCoordinateSystem* cs = written[static_cast<std::size_t>(i - 1)];
      ini->vWriteInteger(section, typKey(i).c_str(), cs->eGetTypOfKS());
      // The entry is built apart and replaces the stored one in place, so no
      // key of a system of another class survives and an unchanged entry is
      // no change of the file.
      const std::string entry = entrySection(section, i);
      TKxMemIniFile one;
      cs->vWriteIni(&one, entry.c_str());
      ini->vCopySection(&one, entry.c_str());
    }
    // What a longer store left behind.
    std::vector<std::string> keys;
    ini->vReadSection(section, keys);
    for (const auto& k : keys)
      if (numberAfter(k, "Typ") > n) ini->vDeleteEntry(section, k.c_str());
    std::vector<std::string> sections;
    ini->vReadSections(sections);
    const std::string prefix = std::string(section) + "/Entry";
    for (const auto& s : sections)
      if (numberAfter(s, prefix) > n) ini->vDeleteSection(s.c_str());
  }
  KX_CATCH
}

void TCoordinateSystemVector::vSetProgramDir(const char* dir) {
  sProgramDir_ = kx::sToSlash(dir ? dir : "");
  if (!sProgramDir_.empty() && sProgramDir_.back() != '/') sProgramDir_ += '/';
}

std::string TCoordinateSystemVector::sGetProgramDir() const {
  return sProgramDir_.empty() ? kx::sGetProgramDir() : sProgramDir_;
}

std::string TCoordinateSystemVector::sGetIniFileName() const {
  return sIniFile_.empty() ? sGetProgramDir() + cpDefaultFile : sIniFile_;
}

bool TCoordinateSystemVector::bWriteIni() {
  KX_TRY {
    const std::string file = sGetIniFileName();
    const std::size_t slash = file.rfind('/');
    if (slash != std::string::npos && slash > 0) kx::makeDir(file.substr(0, slash).c_str());
    TKxStdIniFile ini{TIniFilename(file)};
    vWriteIni(&ini, sIniSection_.empty() ? cpDefaultSection : sIniSection_.c_str(), false);
    return true;
  }
  KX_CATCH
}

bool TCoordinateSystemVector::bReadIni() {
  KX_TRY {
    const TIniFilename file(sGetIniFileName());
    if (!file.bExists()) return false;
    const std::string section = sIniSection_.empty() ? cpDefaultSection : sIniSection_;
    vReadIni(file, section.c_str());
    return true;
  }
  KX_CATCH
}

// ---------------------------------------------------------------------------

TCoordinateSystemVector* pGetDefaultCoordinateSystemVector() {
  // Never destroyed: planes and classifiers hold pointers into it until the
  // very end of the process.
  static TCoordinateSystemVector* const vector = new TCoordinateSystemVector;
  return vector;
}

TCoordinateSystem* pGetDefaultCoordinateSystem() { return pGetDefaultCoordinateSystemVector(); }

}  // namespace Rastrix
