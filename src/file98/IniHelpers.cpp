#include "file98/IniHelpers.h"

#include <charconv>
#include <cstdio>

void ReadIniString(TKxIniFile& ini, const char* section, const char* key, std::string& value) {
  if (ini.bValueExists(section, key)) value = ini.sReadString(section, key, value.c_str());
}

void WriteIniString(TKxIniFile& ini, const char* section, const char* key, const std::string& value) {
  ini.vWriteString(section, key, value.c_str());
}

void ReadIniInteger(TKxIniFile& ini, const char* section, const char* key, int& value) {
  if (ini.bValueExists(section, key)) value = ini.iReadInteger(section, key, value);
}

void WriteIniInteger(TKxIniFile& ini, const char* section, const char* key, int value) {
  ini.vWriteInteger(section, key, value);
}

void ReadIniDouble(TKxIniFile& ini, const char* section, const char* key, double& value) {
  if (ini.bValueExists(section, key)) value = ini.dReadFloat(section, key, value);
}

void WriteIniDouble(TKxIniFile& ini, const char* section, const char* key, double value) {
  ini.vWriteFloat(section, key, value);
}

void ReadIniBool(TKxIniFile& ini, const char* section, const char* key, bool& value) {
  if (ini.bValueExists(section, key)) value = ini.bReadBool(section, key, value);
}

void WriteIniBool(TKxIniFile& ini, const char* section, const char* key, bool value) {
  ini.vWriteBool(section, key, value);
}

void ReadIniRect(TKxIniFile& ini, const char* section, const char* key, CRectangle& value) {
  if (!ini.bValueExists(section, key)) return;
  const std::string text = ini.sReadString(section, key, "");
  int v[4];
  const char* p = text.c_str();
  const char* end = p + text.size();
  for (int i = 0; i < 4; ++i) {
    while (p < end && (*p == ' ' || *p == '\t')) ++p;
    if (i > 0) {
      if (p >= end || *p != ',') return;
      ++p;
      while (p < end && (*p == ' ' || *p == '\t')) ++p;
    }
    if (p < end && *p == '+') ++p;
    const auto r = std::from_chars(p, end, v[i]);
    if (r.ec != std::errc()) return;
    p = r.ptr;
  }
  value = CRectangle(v[0], v[1], v[2], v[3]);
}

void WriteIniRect(TKxIniFile& ini, const char* section, const char* key, const CRectangle& value) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%d,%d,%d,%d", value.iFirstLine, value.iLastLine, value.iFirstColumn,
                value.iLastColumn);
  ini.vWriteString(section, key, buf);
}
