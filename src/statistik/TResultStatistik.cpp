#include "statistik/TResultStatistik.h"

#include <cmath>
#include <cstdio>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPlaneBasic.h"

TResultStatistik& TResultStatistik::operator=(const TResultStatistik& o) {
  if (this == &o) return *this;
  TResultBSchwerpunkt::operator=(o);
  dReferenzCursorX = o.dReferenzCursorX;
  dReferenzCursorY = o.dReferenzCursorY;
  sValue = o.sValue;
  sUnit = o.sUnit;
  sValueRef = o.sValueRef;
  sUnitRef = o.sUnitRef;
  return *this;
}

void TResultStatistik::setValueUnit(const std::string& value, const std::string& unit) {
  sValue = value;
  sUnit = unit;
}

void TResultStatistik::setValueUnitRef(const std::string& value, const std::string& unit) {
  sValueRef = value;
  sUnitRef = unit;
}

void TResultStatistik::setPictureProperties(const Rastrix::TPlaneBasic* plane, int channel) {
  KX_TRY {
    if (!plane) KX_THROW(0x5100000UL, "plane null");
    sValue = plane->rStrGetValuePic(channel);
    sUnit = plane->rStrGetUnitPic(channel);
    if (const Rastrix::TCoordinateSystem* cs = plane->pGetCoordinateSystem()) {
      if (!cs->rStrGetUnitL().empty()) {
        sUnitRef = cs->rStrGetUnitL();
      } else {
        sUnitRef = cs->rStrGetUnitX();
        sValueRef = cs->rStrGetNameX();
      }
    }
  }
  KX_CATCH
}

void TResultStatistik::setReferenzCursorXY(double x, double y) {
  dReferenzCursorX = x;
  dReferenzCursorY = y;
}

void TResultStatistik::getReferenzCursorXY(double& x, double& y) const {
  x = dReferenzCursorX;
  y = dReferenzCursorY;
}

double TResultStatistik::dGetNewReferenzD(double x, double y) const {
  if (dReferenzCursorX == 0 && dReferenzCursorY == 0) return dReferenz;
  const double d = std::hypot(x - dReferenzCursorX, y - dReferenzCursorY);
  const bool before = x < dReferenzCursorX || (x == dReferenzCursorX && y < dReferenzCursorY);
  return before ? -d : d;
}

std::string TResultStatistik::strFormat(int type, int digits) const {
  const char* unit = "";
  if (type >= eMittel && type <= eMax)
    unit = sUnit.c_str();
  else if (type >= eReferenz && type <= eYMax)
    unit = sUnitRef.c_str();
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*g", digits < 1 ? 1 : digits > 17 ? 17 : digits, dGetNumber(type));
  std::string out = std::string(TResultBasicData::cppStrGetName(type)) + " = " + buf;
  if (*unit) out += std::string(" ") + unit;
  return out;
}

void TResultStatistik::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    ini->vWriteString(section, "Value", sValue.c_str());
    ini->vWriteString(section, "Unit", sUnit.c_str());
    ini->vWriteString(section, "ValueRef", sValueRef.c_str());
    ini->vWriteString(section, "UnitRef", sUnitRef.c_str());
  }
  KX_CATCH
}

void TResultStatistik::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    sValue = ini->sReadString(section, "Value", sValue.c_str());
    sUnit = ini->sReadString(section, "Unit", sUnit.c_str());
    sValueRef = ini->sReadString(section, "ValueRef", sValueRef.c_str());
    sUnitRef = ini->sReadString(section, "UnitRef", sUnitRef.c_str());
  }
  KX_CATCH
}
