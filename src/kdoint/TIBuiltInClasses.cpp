#include "kdoint/TIBuiltInClasses.h"

#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "file98/KxPath.h"
#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIFile.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kdoint/TIUserBasic.h"
#include "kdoint/TISearchPath.h"
#include "kxexception/KxError.h"
#include "platform/CLocale.h"

using namespace kdoint;

namespace {

// ---------------------------------------------------------------- helpers

TIVariable* self(TIVariable** c) { return c[0]; }
TIVariable* result(TIVariable** c) { return c[1]; }
TIVariable* arg(TIVariable** c, int i) { return c[2 + i]; }
const char* text(const TIVariable* v) { return v && v->getString() ? v->getString() : ""; }

int32_t wrap(int64_t v) { return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(v))); }

void setText(TIVariable* v, const std::string& s) { v->setContent(s.c_str()); }

void divisionChecks(int32_t a, int32_t b) {
  if (b == 0) KX_THROW(kx::ulForeignError, "Division by zero");
  if (a == INT32_MIN && b == -1) KX_THROW(kx::ulForeignError, "Integer overflow");
}

// One directive of a printf format at p ('%' seen): its conversion letter, or
// 0 for "%%"; `star` is set when a width or precision is '*'.
char conversionAt(const char*& p, bool& star) {
  ++p;
  if (*p == '%') {
    ++p;
    return 0;
  }
  while (*p && std::strchr("-+ #0", *p)) ++p;
  while (*p && (std::isdigit(static_cast<unsigned char>(*p)) || *p == '*')) star |= *p++ == '*';
  if (*p == '.') {
    ++p;
    while (*p && (std::isdigit(static_cast<unsigned char>(*p)) || *p == '*')) star |= *p++ == '*';
  }
  while (*p && std::strchr("hlLqjzt", *p)) ++p;
  return *p ? *p++ : '?';
}

[[noreturn]] void badFormat(const char* format) {
  KX_THROW(ulFormatUnusable, "Format \"%s\" not usable here", format ? format : "");
}

}  // namespace

std::string sFormatValue(const char* format, long long i, double d, bool isFloat) {
  const char* f = format ? format : "";
  int values = 0;
  for (const char* p = f; *p;) {
    if (*p != '%') {
      ++p;
      continue;
    }
    bool star = false;
    const char c = conversionAt(p, star);
    if (c == 0) continue;
    const bool ok = !star && (isFloat ? std::strchr("eEfFgGaA", c) != nullptr : std::strchr("diouxXc", c) != nullptr);
    if (!ok || ++values > 1) badFormat(f);
  }
  const kx::platform::CNumericScope cLocale;
  const int n = isFloat ? std::snprintf(nullptr, 0, f, d) : std::snprintf(nullptr, 0, f, static_cast<long>(i));
  if (n < 0) badFormat(f);
  std::string out(static_cast<std::size_t>(n) + 1, '\0');
  if (isFloat)
    std::snprintf(out.data(), out.size(), f, d);
  else
    std::snprintf(out.data(), out.size(), f, static_cast<long>(i));
  out.resize(static_cast<std::size_t>(n));
  return out;
}

int32_t iParseIntText(const char* text) {
  long v = 0;
  if (!text || std::sscanf(text, "%li", &v) != 1) v = 0;
  return wrap(v);
}

double dParseFloatText(const char* text) {
  std::string s = text ? text : "";
  for (auto& ch : s)
    if (ch == ',') ch = '.';
  double v = 0;
  const kx::platform::CNumericScope cLocale;
  if (std::sscanf(s.c_str(), "%le", &v) != 1) v = 0;
  return v;
}

std::string sFormatNoArguments(const char* format) {
  std::string out;
  const char* f = format ? format : "";
  for (const char* p = f; *p;) {
    if (*p != '%') {
      out += *p++;
      continue;
    }
    bool star = false;
    if (conversionAt(p, star) != 0) badFormat(f);
    out += '%';
  }
  return out;
}

namespace {

// ---------------------------------------------------------------- LITERAL

void litCreate(TIVariable** c) { self(c)->setContent(static_cast<const char*>(nullptr)); }
void litCreateFrom(TIVariable** c) {
  if (arg(c, 0)->getString()) self(c)->setContent(arg(c, 0)->getString());
}
void litDestroy(TIVariable** c) { self(c)->setContent(static_cast<const char*>(nullptr)); }
void litAssign(TIVariable** c) {
  if (self(c)->getContentObject() == arg(c, 0)->getContentObject()) return;
  litDestroy(c);
  litCreateFrom(c);
}
void litAppend(TIVariable** c) {
  const char* a = self(c)->getString();
  const char* b = arg(c, 0)->getString();
  if ((!a || !*a) && (!b || !*b)) return;
  setText(self(c), std::string(a ? a : "") + (b ? b : ""));
}
void litStrlwr(TIVariable** c) {
  if (char* s = const_cast<char*>(self(c)->getString()))
    for (; *s; ++s) *s = static_cast<char>(std::tolower(static_cast<unsigned char>(*s)));
}
void litReplace(TIVariable** c, char from, char to) {
  if (char* s = const_cast<char*>(self(c)->getString()))
    for (; *s; ++s)
      if (*s == from) *s = to;
}
void litToSlash(TIVariable** c) { litReplace(c, '\\', '/'); }
void litToBackslash(TIVariable** c) { litReplace(c, '/', '\\'); }
void litCombine(TIVariable** c) {
  std::string out;
  kx::vCombineFileName(text(arg(c, 0)), text(arg(c, 1)), out, kx::eFileAll, kx::eFileAll);
  setText(self(c), kx::sToSlash(out.c_str()));
}
void litRelative(TIVariable** c) {
  std::string out;
  kx::vRelativePathName(text(arg(c, 0)), text(arg(c, 1)), out);
  setText(self(c), kx::sToSlash(out.c_str()));
}
void litFnsplit(TIVariable** c) {
  std::string drive, dir, name, ext;
  kx::fnsplit(self(c)->getString(), drive, dir, name, ext);
  setText(arg(c, 0), drive);
  setText(arg(c, 1), dir);
  setText(arg(c, 2), name);
  setText(arg(c, 3), ext);
}
void litFnmerge(TIVariable** c) {
  setText(self(c), kx::fnmerge(text(arg(c, 0)), text(arg(c, 1)), text(arg(c, 2)), text(arg(c, 3))));
}
// The text is the format of what is written: "%%" is a '%', and a directive
// that would read an argument is refused rather than read.
void litWriteFile(TIVariable** c) {
  const std::string out = sFormatNoArguments(self(c)->getString());
  FILE* f = std::fopen(kx::sToSlash(text(arg(c, 0))).c_str(), "w");
  if (!f) return;
  std::fwrite(out.data(), 1, out.size(), f);
  std::fclose(f);
}
void litStatus(const TIVariable* v, char* buffer, int size) {
  if (!buffer || size <= 0) return;
  std::snprintf(buffer, static_cast<std::size_t>(size), "%s", text(v));
}

// ---------------------------------------------------------------- INT

int32_t I(TIVariable* v) { return v->getLong(); }
void intCreate(TIVariable** c) { self(c)->setContent(int32_t{0}); }
void intCreateFrom(TIVariable** c) { self(c)->setContent(I(arg(c, 0))); }
void intAssignText(TIVariable** c) { self(c)->setContent(iParseIntText(arg(c, 0)->getString())); }
template <int Op>
int32_t intOp(int32_t a, int32_t b) {
  switch (Op) {
    case '+': return wrap(int64_t{a} + b);
    case '-': return wrap(int64_t{a} - b);
    case '*': return wrap(int64_t{a} * b);
    case '/': divisionChecks(a, b); return a / b;
    case '%': divisionChecks(a, b); return a % b;
    case '&': return a & b;
    case '|': return a | b;
    case '<': return a < b;
    case 'l': return a <= b;
    case '>': return a > b;
    case 'g': return a >= b;
    case '=': return a == b;
    case '!': return a != b;
  }
  return 0;
}
template <int Op>
void intAssignOp(TIVariable** c) { self(c)->setContent(intOp<Op>(I(self(c)), I(arg(c, 0)))); }
template <int Op>
void intBinary(TIVariable** c) { result(c)->setContent(intOp<Op>(I(self(c)), I(arg(c, 0)))); }
void intShift(TIVariable** c) {
  const int64_t n = I(arg(c, 0));
  const int32_t x = I(self(c));
  const unsigned k = static_cast<unsigned>((n < 0 ? -n : n) % 32);
  result(c)->setContent(n >= 0 ? wrap(static_cast<int64_t>(static_cast<uint32_t>(x) << k)) : static_cast<int32_t>(x >> k));
}
void intAbs(TIVariable** c) { result(c)->setContent(wrap(std::llabs(static_cast<long long>(I(self(c)))))); }
void listTo(const char* file, const std::string& textOut) {
  TIFileWrite w(file);
  w.open(false, true);
  w.write(textOut.c_str());
  w.close(false);
}
void intList(TIVariable** c) {
  char buf[512];
  std::snprintf(buf, sizeof buf, "Name=%s\r\nClass=%s\r\nValue=%d\r\n", self(c)->getName(),
                self(c)->getClass()->getName().c_str(), I(self(c)));
  listTo(text(arg(c, 0)), buf);
}
void intToString(TIVariable** c) { setText(result(c), sFormatValue(text(arg(c, 0)), I(self(c)), 0, false)); }
void intStrcmp(TIVariable** c) {
  const int r = std::strcmp(text(arg(c, 0)), text(arg(c, 1)));
  self(c)->setContent(int32_t{r});
}
void intStrlen(TIVariable** c) { self(c)->setContent(wrap(static_cast<int64_t>(std::strlen(text(arg(c, 0)))))); }
void intStrstr(TIVariable** c) {
  const char* a = arg(c, 0)->getString();
  const char* b = arg(c, 1)->getString();
  const char* hit = a && b ? std::strstr(a, b) : nullptr;
  self(c)->setContent(hit ? wrap(hit - a) : int32_t{-1});
}
// Only the first occurrence counts: "abcabc" does not end in its first "abc".
void intIsStrEnd(TIVariable** c) {
  const char* a = arg(c, 0)->getString();
  const char* b = arg(c, 1)->getString();
  const char* hit = a && b ? std::strstr(a, b) : nullptr;
  self(c)->setContent(int32_t{hit && hit[std::strlen(b)] == '\0' ? 1 : 0});
}
void intStatus(const TIVariable* v, char* buffer, int size) {
  if (!buffer || size <= 0) return;
  std::snprintf(buffer, static_cast<std::size_t>(size), "%ld (0x%08lx)", static_cast<long>(v->getLong()),
                static_cast<unsigned long>(static_cast<uint32_t>(v->getLong())));
}

// ---------------------------------------------------------------- FLOAT

double F(TIVariable* v) { return v->getDouble(); }
void fltCreate(TIVariable** c) { self(c)->setContent(0.0); }
void fltCreateFrom(TIVariable** c) { self(c)->setContent(F(arg(c, 0))); }
void fltCreateFromInt(TIVariable** c) { self(c)->setContent(static_cast<double>(I(arg(c, 0)))); }
void fltAssignText(TIVariable** c) { self(c)->setContent(dParseFloatText(arg(c, 0)->getString())); }
template <int Op>
double fltOp(double a, double b) {
  switch (Op) {
    case '+': return a + b;
    case '-': return a - b;
    case '*': return a * b;
    case '/': return a / b;
  }
  return 0;
}
template <int Op>
void fltAssignOp(TIVariable** c) { self(c)->setContent(fltOp<Op>(F(self(c)), F(arg(c, 0)))); }
template <int Op>
void fltBinary(TIVariable** c) { result(c)->setContent(fltOp<Op>(F(self(c)), F(arg(c, 0)))); }
template <int Op>
void fltCompare(TIVariable** c) {
  const double a = F(self(c)), b = F(arg(c, 0));
  const bool r = Op == '<' ? a < b : Op == '=' ? a == b : Op == '!' ? a != b : a <= b;
  result(c)->setContent(int32_t{r ? 1 : 0});
}
template <double (*Fn)(double)>
void fltUnary(TIVariable** c) { result(c)->setContent(Fn(F(self(c)))); }
void fltFmod(TIVariable** c) { result(c)->setContent(std::fmod(F(self(c)), F(arg(c, 0)))); }
void fltPow(TIVariable** c) { result(c)->setContent(std::pow(F(self(c)), F(arg(c, 0)))); }
int32_t toInt(double x) { return std::isfinite(x) && x > -2147483649.0 && x < 2147483648.0 ? static_cast<int32_t>(x) : INT32_MIN; }
void fltRound(TIVariable** c) { result(c)->setContent(toInt(std::floor(F(self(c)) + 0.5))); }
void fltFloor(TIVariable** c) { result(c)->setContent(toInt(std::floor(F(self(c))))); }
void fltList(TIVariable** c) {
  char buf[512];
  const kx::platform::CNumericScope cLocale;
  std::snprintf(buf, sizeof buf, "Name=%s\r\nClass=%s\r\nValue=%le\r\n", self(c)->getName(),
                self(c)->getClass()->getName().c_str(), F(self(c)));
  listTo(text(arg(c, 0)), buf);
}
void fltToString(TIVariable** c) { setText(result(c), sFormatValue(text(arg(c, 0)), 0, F(self(c)), true)); }
void fltStatus(const TIVariable* v, char* buffer, int size) {
  if (!buffer || size <= 0) return;
  const kx::platform::CNumericScope cLocale;
  std::snprintf(buffer, static_cast<std::size_t>(size), "%le", v->getDouble());
}

// ---------------------------------------------------------------- VECTOR

TIVariableArray& ownerOf(const TIVariable* v) {
  TIVariableArray* a = TIVariableArray::pOwnerOf(v);
  if (!a) KX_THROW(kdoint::ulVectorNotVector, "%s", v->getName());
  return *a;
}
unsigned vecSize(const TIVariable* v) {
  const TIVectorRecord* r = TIVariableArray::pGetVectorRecord(v);
  return r ? r->size : 0;
}
void vecDestroy(TIVariable** c) {
  delete static_cast<TIVectorRecord*>(self(c)->getPointer());
  self(c)->setContent(static_cast<void*>(nullptr));
}
void vecList(TIVariable** c) {
  const TIVectorRecord* r = TIVariableArray::pGetVectorRecord(self(c));
  char buf[768];
  std::snprintf(buf, sizeof buf, "Name=%s\r\nClass=%s\r\nClient=%s\r\nSize=%u\r\n", self(c)->getName(),
                self(c)->getClass()->getName().c_str(), r ? r->className : "", r ? r->size : 0u);
  listTo(text(arg(c, 0)), buf);
}
void vecSizeOf(TIVariable** c) { result(c)->setContent(static_cast<int32_t>(vecSize(self(c)))); }
void vecResize(TIVariable** c) {
  const int32_t n = I(arg(c, 0));
  if (n < 0 || static_cast<unsigned>(n) > TIVariableArray::uMaxVectorSize)
    KX_THROW(kdoint::ulVectorSizeLimit, "resize(%d)", n);
  TIVariableArray& a = ownerOf(self(c));
  a.vResizeVector(a.find(self(c)), static_cast<unsigned>(n));
}
void vecRemove(TIVariable** c) {
  const int32_t i = I(arg(c, 0));
  if (i < 0 || static_cast<unsigned>(i) >= vecSize(self(c))) return;
  TIVariableArray& a = ownerOf(self(c));
  a.vRemoveElement(a.find(self(c)), static_cast<unsigned>(i));
}
void vecSwap(TIVariable** c) {
  TIVariableArray& a = ownerOf(self(c));
  // A negative index is out of range as an unsigned one.
  a.vSwapInVector(a.find(self(c)), static_cast<unsigned>(I(arg(c, 0))), static_cast<unsigned>(I(arg(c, 1))));
}
void vecStatus(const TIVariable* v, char* buffer, int size) {
  if (!buffer || size <= 0) return;
  const TIVectorRecord* r = TIVariableArray::pGetVectorRecord(v);
  std::snprintf(buffer, static_cast<std::size_t>(size), "%s[%u]", r ? r->className : "", r ? r->size : 0u);
}

double dfabs(double x) { return std::fabs(x); }
double dsqrt(double x) { return std::sqrt(x); }
double dexp(double x) { return std::exp(x); }
double dlog(double x) { return std::log(x); }
double dsin(double x) { return std::sin(x); }
double dcos(double x) { return std::cos(x); }
double dtan(double x) { return std::tan(x); }
double dasin(double x) { return std::asin(x); }
double dacos(double x) { return std::acos(x); }
double datan(double x) { return std::atan(x); }

using TMethod = TITableClass::TMethod;
}  // namespace

std::vector<std::unique_ptr<TIUserBasic>> vBuiltInClassProviders() {
  std::vector<std::unique_ptr<TIUserBasic>> out;
  auto addClass = [&](const char* name, TIStatusFunction status, const std::vector<TMethod>& methods) {
    out.push_back(std::make_unique<TITableClass>(name, nullptr, status, methods));
  };
  {
    const char* L = "LITERAL";
    const char* N = "INT";
    const char* D = "FLOAT";
    addClass(L, litStatus,
             {{"create", nullptr, {}, litCreate},
              {"create", nullptr, {L}, litCreateFrom},
              {"destroy", nullptr, {}, litDestroy},
              {"operator=", nullptr, {L}, litAssign},
              {"operator+=", nullptr, {L}, litAppend},
              {"strlwr", nullptr, {}, litStrlwr},
              {"toSlash", nullptr, {}, litToSlash},
              {"toBackslash", nullptr, {}, litToBackslash},
              {"combineFileNames", nullptr, {L, L}, litCombine},
              {"relativeFileNames", nullptr, {L, L}, litRelative},
              {"fnsplit", nullptr, {L, L, L, L}, litFnsplit},
              {"fnmerge", nullptr, {L, L, L, L}, litFnmerge},
              {"writeFile", nullptr, {L}, litWriteFile}});
    addClass(N, intStatus,
             {{"create", nullptr, {}, intCreate},          {"create", nullptr, {N}, intCreateFrom},
              {"destroy", nullptr, {}, intCreate},         {"operator=", nullptr, {N}, intCreateFrom},
              {"operator=", nullptr, {L}, intAssignText},  {"operator+=", nullptr, {N}, intAssignOp<'+'>},
              {"operator-=", nullptr, {N}, intAssignOp<'-'>}, {"operator*=", nullptr, {N}, intAssignOp<'*'>},
              {"operator/=", nullptr, {N}, intAssignOp<'/'>}, {"operator%=", nullptr, {N}, intAssignOp<'%'>},
              {"operator&=", nullptr, {N}, intAssignOp<'&'>}, {"operator|=", nullptr, {N}, intAssignOp<'|'>},
              {"operator+", N, {N}, intBinary<'+'>},        {"operator-", N, {N}, intBinary<'-'>},
              {"operator*", N, {N}, intBinary<'*'>},        {"operator/", N, {N}, intBinary<'/'>},
              {"operator&", N, {N}, intBinary<'&'>},        {"operator|", N, {N}, intBinary<'|'>},
              {"operator%", N, {N}, intBinary<'%'>},        {"operator<", N, {N}, intBinary<'<'>},
              {"operator<=", N, {N}, intBinary<'l'>},       {"operator>", N, {N}, intBinary<'>'>},
              {"operator>=", N, {N}, intBinary<'g'>},       {"operator==", N, {N}, intBinary<'='>},
              {"operator!=", N, {N}, intBinary<'!'>},       {"shift", N, {N}, intShift},
              {"abs", N, {}, intAbs},                      {"list", nullptr, {L}, intList},
              {"toString", L, {L}, intToString},           {"strcmp", nullptr, {L, L}, intStrcmp},
              {"strlen", nullptr, {L}, intStrlen},         {"strstr", nullptr, {L, L}, intStrstr},
              {"IsStrEnd", nullptr, {L, L}, intIsStrEnd}});
    addClass(D, fltStatus,
             {{"create", nullptr, {}, fltCreate},            {"create", nullptr, {D}, fltCreateFrom},
              {"create", nullptr, {N}, fltCreateFromInt},    {"destroy", nullptr, {}, fltCreate},
              {"operator=", nullptr, {D}, fltCreateFrom},    {"operator=", nullptr, {N}, fltCreateFromInt},
              {"operator=", nullptr, {L}, fltAssignText},    {"operator+=", nullptr, {D}, fltAssignOp<'+'>},
              {"operator-=", nullptr, {D}, fltAssignOp<'-'>}, {"operator*=", nullptr, {D}, fltAssignOp<'*'>},
              {"operator/=", nullptr, {D}, fltAssignOp<'/'>}, {"operator+", D, {D}, fltBinary<'+'>},
              {"operator-", D, {D}, fltBinary<'-'>},         {"operator*", D, {D}, fltBinary<'*'>},
              {"operator/", D, {D}, fltBinary<'/'>},         {"operator<", N, {D}, fltCompare<'<'>},
              {"operator==", N, {D}, fltCompare<'='>},       {"operator!=", N, {D}, fltCompare<'!'>},
              {"operator<=", N, {D}, fltCompare<'l'>},       {"list", nullptr, {L}, fltList},
              {"fabs", D, {}, fltUnary<dfabs>},              {"sqrt", D, {}, fltUnary<dsqrt>},
              {"exp", D, {}, fltUnary<dexp>},                {"log", D, {}, fltUnary<dlog>},
              {"sin", D, {}, fltUnary<dsin>},                {"cos", D, {}, fltUnary<dcos>},
              {"tan", D, {}, fltUnary<dtan>},                {"asin", D, {}, fltUnary<dasin>},
              {"acos", D, {}, fltUnary<dacos>},              {"atan", D, {}, fltUnary<datan>},
              {"fmod", D, {D}, fltFmod},                     {"pow", D, {D}, fltPow},
              {"round", N, {}, fltRound},                    {"floor", N, {}, fltFloor},
              {"toString", L, {L}, fltToString}});
    addClass("VECTOR", vecStatus,
             {{"destroy", nullptr, {}, vecDestroy},
              {"list", nullptr, {L}, vecList},
              {"size", N, {}, vecSizeOf},
              {"resize", nullptr, {N}, vecResize},
              {"remove", nullptr, {N}, vecRemove},
              {"swap", nullptr, {N, N}, vecSwap}});
  }
  out.push_back(pSearchPathClassProvider());
  return out;
}

void vLoadBuiltInClasses(TIClassList& classes) {
  KX_TRY {
    for (const auto& provider : vBuiltInClassProviders()) provider->vRegisterInto(classes);
  }
  KX_CATCH
}
