// The built-in classes LITERAL, INT, FLOAT and VECTOR: their method tables, routines
// and status texts. Loaded in this order, since a method may only name
// classes already loaded (the conversions from and to LITERAL are methods of
// INT, those among all three methods of FLOAT).
//
// Arithmetic of INT is 32-bit with wrap-around. An integer division or modulo
// by zero, and INT_MIN / -1, raise 0xe0000000 ("Division by zero" /
// "Integer overflow"), never a signal. Texts used as formats (toString,
// writeFile) are checked first: a directive that would read an argument that
// is not there (%s, %n, %p, '*', a second value) raises 0xe75200c1 instead of
// reading it.
#pragma once

#include <cstdint>
#include <string>

#include <memory>
#include <vector>

class TIClassList;
class TIUserBasic;
class TIVariable;

// The providers of the built-in classes in their order of loading: LITERAL,
// INT, FLOAT, VECTOR, SEARCHPATH.
std::vector<std::unique_ptr<TIUserBasic>> vBuiltInClassProviders();
// Declares the built-in classes in `classes` from their class lines, past
// any interpreter.
void vLoadBuiltInClasses(TIClassList& classes);

// Formats one value with a user's format: `value` is "d" (an int32) or "e" (a
// double). Raises 0xe75200c1 for a format that would read anything else.
std::string sFormatValue(const char* format, long long i, double d, bool isFloat);
// The text printed by a user's format with no arguments: "%%" gives '%'; any
// other directive raises 0xe75200c1.
std::string sFormatNoArguments(const char* format);

// A text read as INT ("%li", wrapped to 32 bits) and as FLOAT (',' read as
// '.', "%le"): 0 when unreadable or null.
int32_t iParseIntText(const char* text);
double dParseFloatText(const char* text);
