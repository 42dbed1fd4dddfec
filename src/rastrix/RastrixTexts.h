// The German/English text pairs of the planes. Each function returns a static
// pair; call it with no argument for the current language.
#pragma once

#include "kxexception/TLanguage.h"

namespace Rastrix {

const TLanguage::TLanguageString& STR_PLANE_GREYPIC1();      // name of a fresh unsigned 8-bit plane
const TLanguage::TLanguageString& STR_PLANE_GREYPIC2();      // value name of a grey plane: "GW" / "GV"
const TLanguage::TLanguageString& STR_PLANE_SHORTPIC1();     // name of a fresh unsigned 16-bit plane
const TLanguage::TLanguageString& STR_PLANE_FLOATPIC1();     // name of a fresh float plane
const TLanguage::TLanguageString& STR_PLANE_INTPIC1();       // name of a fresh int plane
const TLanguage::TLanguageString& STR_PLANE_KORR();          // unit of a fresh float plane
const TLanguage::TLanguageString& STR_PLANE_RGBPIC1();       // name of a fresh byte colour plane
const TLanguage::TLanguageString& STR_PLANE_RGBFLOATPIC1();  // name of a fresh float colour plane
const TLanguage::TLanguageString& STR_PLANE_RGBPIC_R();
const TLanguage::TLanguageString& STR_PLANE_RGBPIC_G();
const TLanguage::TLanguageString& STR_PLANE_RGBPIC_B();
const TLanguage::TLanguageString& STR_PLANE_SOLL();  // printf format: two %s, current and expected

// The unit of a fresh integer grey plane (the same in both languages).
inline constexpr const char* cpUnitLSB = "LSB";

}  // namespace Rastrix
