// Typed helpers over any ini: Read... changes the caller's value only when the
// key exists (bValueExists), so the value passed in is the default; Write...
// writes it in the ini's value form.
//
// A rectangle under one key is "first line,last line,first column,last column"
// ("%d,%d,%d,%d", the order areas are given in everywhere); a text that does
// not hold four integers leaves the rectangle as it was. The four-key form
// "Left"/"Top"/"Right"/"Bottom" of a whole section is CRectangle::readIni.
#pragma once

#include <string>

#include "file98/CRectangle.h"
#include "file98/TKxIniFile.h"

void ReadIniString(TKxIniFile& ini, const char* section, const char* key, std::string& value);
void WriteIniString(TKxIniFile& ini, const char* section, const char* key, const std::string& value);
void ReadIniInteger(TKxIniFile& ini, const char* section, const char* key, int& value);
void WriteIniInteger(TKxIniFile& ini, const char* section, const char* key, int value);
void ReadIniDouble(TKxIniFile& ini, const char* section, const char* key, double& value);
void WriteIniDouble(TKxIniFile& ini, const char* section, const char* key, double value);
void ReadIniBool(TKxIniFile& ini, const char* section, const char* key, bool& value);
void WriteIniBool(TKxIniFile& ini, const char* section, const char* key, bool value);
void ReadIniRect(TKxIniFile& ini, const char* section, const char* key, CRectangle& value);
void WriteIniRect(TKxIniFile& ini, const char* section, const char* key, const CRectangle& value);
