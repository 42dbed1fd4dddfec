#include "rastrix/RastrixTexts.h"

namespace Rastrix {

#define KX_PAIR(name, de, en)                                \
  const TLanguage::TLanguageString& name() {                 \
    static constexpr TLanguage::TLanguageString s(de, en);   \
    return s;                                                \
  }

KX_PAIR(STR_PLANE_GREYPIC1, "Grauwertbild (1 Byte)", "Grey picture (1 byte)")
KX_PAIR(STR_PLANE_GREYPIC2, "GW", "GV")
KX_PAIR(STR_PLANE_SHORTPIC1, "Grauwertbild (2 byte)", "Grey picture (2 byte)")
KX_PAIR(STR_PLANE_FLOATPIC1, "Grauwertbild (Gleitkomma)", "Grey picture (floating point)")
KX_PAIR(STR_PLANE_INTPIC1, "Grauwertbild (Integer)", "Grey picture (integer)")
KX_PAIR(STR_PLANE_KORR, "korr", "corr")
KX_PAIR(STR_PLANE_RGBPIC1, "RGB-Bild (3 x 1 Byte)", "RGB picture (3 x 1 byte)")
KX_PAIR(STR_PLANE_RGBFLOATPIC1, "RGB-Bild (3 x Gleitkomma)", "RGB picture (3 x floating point)")
KX_PAIR(STR_PLANE_RGBPIC_R, "GW-R", "GV-R")
KX_PAIR(STR_PLANE_RGBPIC_G, "GW-G", "GV-G")
KX_PAIR(STR_PLANE_RGBPIC_B, "GW-B", "GV-B")
KX_PAIR(STR_PLANE_SOLL, "Soll=%s Ist=%s", "Current=%s Expected=%s")

#undef KX_PAIR

}  // namespace Rastrix
