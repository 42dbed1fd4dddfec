#include "kxexception/TLanguage.h"

#include <atomic>
#include <cstdlib>

namespace {
std::atomic<int> gLanguage{TLanguage::eDeutsch};

int initialUser() {
  const char* v = std::getenv("KX_USER_LEVEL");
  if (v && v[0] >= '0' && v[0] <= '3' && v[1] == '\0') return v[0] - '0';
  return TProgramUser::eOperator;
}
std::atomic<int>& userLevel() {
  static std::atomic<int> level{initialUser()};
  return level;
}
}  // namespace

const char* TLanguage::TLanguageString::operator()(eTLanguage e) const {
  return (*this)[e == eAktLanguage ? eGetAktLanguage() : e];
}

TLanguage::eTLanguage TLanguage::eGetAktLanguage() { return static_cast<eTLanguage>(gLanguage.load()); }
void TLanguage::vSetAktLanguage(eTLanguage e) { gLanguage = e == eEnglisch ? eEnglisch : eDeutsch; }
bool TLanguage::isDeutsch() { return eGetAktLanguage() != eEnglisch; }
bool TLanguage::isEnglisch() { return eGetAktLanguage() == eEnglisch; }
void TLanguage::setDeutsch() { vSetAktLanguage(eDeutsch); }
void TLanguage::setEnglisch() { vSetAktLanguage(eEnglisch); }

TProgramUser::eUser TProgramUser::eGetUser() { return static_cast<eUser>(userLevel().load()); }
void TProgramUser::vSetUser(eUser e) { userLevel() = e; }
