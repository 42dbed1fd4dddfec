// The language switch and the German/English text pairs.
// The current language is process wide (an atomic); German is the default.
#pragma once

#include <cstddef>

class TLanguage {
 public:
  enum eTLanguage { eDeutsch = 0, eEnglisch = 1, eAktLanguage = 0x7fffffff };

  // A pair of static texts, German first. Holds pointers only: the texts must
  // outlive the pair (they are string literals throughout the system).
  class TLanguageString {
   public:
    constexpr TLanguageString(const char* deutsch, const char* englisch) : texts_{deutsch, englisch} {}
    static constexpr std::size_t size() { return 2; }
    // 1 gives the English text, every other value the German one.
    constexpr const char* operator[](eTLanguage e) const { return e == eEnglisch ? texts_[1] : texts_[0]; }
    // As operator[], but eAktLanguage (the default) means the current language.
    const char* operator()(eTLanguage e = eAktLanguage) const;

   private:
    const char* texts_[2];
  };

  static eTLanguage eGetAktLanguage();
  static void vSetAktLanguage(eTLanguage e);
  static bool isDeutsch();
  static bool isEnglisch();
  static void setDeutsch();
  static void setEnglisch();
};

// The user level of the running program. Callers compare with >= 2.
class TProgramUser {
 public:
  enum eUser { eOperator = 0, eStandard = 1, eService = 2, eDeveloper = 3 };
  static eUser eGetUser();
  // Set by the host at start; the default is eOperator, or the value 0..3 of
  // the environment variable KX_USER_LEVEL when that is set.
  static void vSetUser(eUser e);
};
