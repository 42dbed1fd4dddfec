#include "kdoint/TIToken.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIMessage.h"
#include "kxexception/KxError.h"
#include "platform/CLocale.h"

using namespace kdoint;

namespace {

struct TCodeName {
  int code;
  const char* name;
};
// Ended by the code -2; for traces only.
constexpr TCodeName codeNames[] = {
    {10, "WORD"}, {11, "UNKNOWN"}, {12, "CLASSNAME"}, {13, "FUNCTION"}, {14, "VARIABLE"}, {15, "IF"},
    {16, "ELSE"}, {17, "WHILE"}, {18, "VOID"}, {22, "OPERATORDEF"}, {23, "PROCEDURE"}, {25, "LITERAL"},
    {26, "CHAR"}, {30, "NUMBER"}, {31, "INTEGER"}, {32, "HEXADECIMAL"}, {33, "FLOAT"}, {40, "OPERATOR"},
    {41, "BLOCKBEGIN"}, {42, "BLOCKEND"}, {43, "LISTBEGIN"}, {44, "LISTEND"}, {47, "OROR"}, {48, "OREQUAL"},
    {49, "OR"}, {50, "NOTNOT"}, {51, "NOTEQUAL"}, {52, "NOT"}, {53, "ANDAND"}, {54, "ANDEQUAL"}, {55, "AND"},
    {56, "MINUSMINUS"}, {57, "MINUSEQUAL"}, {58, "MINUS"}, {59, "PLUSPLUS"}, {60, "PLUSEQUAL"}, {61, "PLUS"},
    {62, "LEFTSHIFT"}, {63, "SMALLEREQUAL"}, {64, "SMALLER"}, {65, "RIGHTSHIFT"}, {66, "GREATEREQUAL"},
    {67, "GREATER"}, {68, "MULTEQUAL"}, {69, "MULT"}, {70, "METHOD"}, {71, "LABEL"}, {72, "EQUALEQUAL"},
    {73, "EQUAL"}, {45, "INDEXBEGIN"}, {46, "INDEXEND"}, {74, "KOMMA"}, {75, "SEMIKOLON"}, {76, "POINT"},
    {77, "QUESTION"}, {78, "TILDE"}, {79, "BEGINCOMMENT"}, {80, "DIVEQUAL"}, {81, "ENDCOMMENT"},
    {82, "DIVISION"}, {83, "CONTLINE"}, {84, "MOUNTAIN"}, {85, "PERCENTEQUAL"}, {86, "PERCENT"},
    {87, "POINTER"}, {19, "CLASS"}, {21, "RETURN"}, {101, "PARAMLIST"}, {102, "BOOLAUSDRUCK"}, {-1, "ERROR"},
    {-2, ""}};

struct TTextCode {
  std::string_view text;
  int code;
};
constexpr TTextCode keywords[] = {{"if", 15},     {"else", 16},    {"while", 17}, {"class", 19},     {"supplement", 20},
                                  {"return", 21}, {"operator", 22}, {"VOID", 18}, {"procedure", 23}};
// In table order.
constexpr TTextCode operators[] = {
    {"||", 47}, {"|=", 48}, {"|", 49},  {"!!", 50}, {"!=", 51}, {"!", 52},  {"&&", 53}, {"&=", 54}, {"&", 55},
    {"--", 56}, {"-=", 57}, {"-", 58},  {"->", 87}, {"++", 59}, {"+=", 60}, {"+", 61},  {"<<", 62}, {"<=", 63},
    {"<", 64},  {">>", 65}, {">=", 66}, {">", 67},  {"*=", 68}, {"*/", 81}, {"*", 69},  {"::", 70}, {":", 71},
    {"==", 72}, {"=", 73},  {"{", 41},  {"}", 42},  {"(", 43},  {")", 44},  {"[", 45},  {"]", 46},  {",", 74},
    {";", 75},  {".", 76},  {"?", 77},  {"~", 78},  {"/*", 79}, {"/=", 80}, {"/", 82},  {"\\", 83}, {"^", 84},
    {"%=", 85}, {"%", 86}};

int lookup(const TTextCode* table, std::size_t n, const char* text, unsigned length) {
  const std::string_view t(text, length);
  for (std::size_t i = 0; i < n; ++i)
    if (table[i].text == t) return table[i].code;
  return 0;
}

// Letters and digits as the C library sees a signed char in the C locale:
// bytes from 128 on are neither.
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }
// The characters that end a number, and the end of the text.
struct TNumberEnds {
  bool end[256]{};
  constexpr TNumberEnds() {
    for (const char* p = "+-*/()[]{}? \r\n\t;,<>=:"; *p; ++p) end[static_cast<unsigned char>(*p)] = true;
    end[0] = true;
  }
};
constexpr TNumberEnds numberEnds;
bool isNumberEnd(char c) { return numberEnds.end[static_cast<unsigned char>(c)]; }

// The second character that forms one operator token with the first.
bool pairs(char a, char b) {
  switch (a) {
    case '|': return b == '|' || b == '=';
    case '!': return b == '!' || b == '=';
    case '&': return b == '&' || b == '=';
    case '-': return b == '-' || b == '=' || b == '>';
    case '+': return b == '+' || b == '=';
    case '<': return b == '<' ? false : b == '=';  // "<<" is in the table, never formed
    case '>': return b == '>' ? false : b == '=';
    case '*': return b == '=' || b == '/';
    case ':': return b == ':';
    case '=': return b == '=';
    case '/': return b == '*' || b == '=';
    case '%': return b == '=';
    default: return false;
  }
}

}  // namespace

const char* kdoint::cpTokenCodeName(int code) {
  const TCodeName* c = codeNames;
  for (; c->code != -2; ++c)
    if (c->code == code) return c->name;
  return c->name;
}

namespace {
// The one-character operators by their character, for the tokeniser's loop.
struct TSingleOperators {
  int code[256]{};
  constexpr TSingleOperators() {
    for (const auto& o : operators)
      if (o.text.size() == 1) code[static_cast<unsigned char>(o.text[0])] = o.code;
  }
};
constexpr TSingleOperators singleOperators;

// Keywords start with one of these letters.
bool mayBeKeyword(const char* text, unsigned length) {
  if (length < 2 || length > 10) return false;
  switch (text[0]) {
    case 'i': case 'e': case 'w': case 'c': case 's': case 'r': case 'o': case 'V': case 'p': return true;
    default: return false;
  }
}
}  // namespace

int kdoint::iOperatorCode(const char* text, unsigned length) {
  if (length == 1) return singleOperators.code[static_cast<unsigned char>(text[0])];
  return lookup(operators, std::size(operators), text, length);
}

// ---------------------------------------------------------------- TIToken

void TIToken::getString(char* out) const {
  if (meaning_ == eVOID) {
    std::strcpy(out, "VOID");
    return;
  }
  if (start_ && length_) std::memcpy(out, start_, length_);
  out[start_ ? length_ : 0] = '\0';
}

std::string TIToken::sGetString() const {
  if (meaning_ == eVOID) return "VOID";
  return start_ ? std::string(start_, length_) : std::string();
}

bool TIToken::is(const char* text) const {
  const std::size_t n = std::strlen(text);
  return start_ && n == length_ && std::memcmp(start_, text, n) == 0;
}

namespace {
// Reads what "%d" (decimal) or "%x" (hexadecimal, "0x" allowed) reads from
// the front of the text: blanks, a sign, digits; 32 bits with wrap-around.
bool parseInteger(const char* p, const char* end, bool hex, uint32_t& out) {
  while (p < end && (*p == ' ' || *p == '\t' || *p == '\r' || *p == '\n')) ++p;
  bool negative = false;
  if (p < end && (*p == '-' || *p == '+')) negative = *p++ == '-';
  if (hex && end - p >= 2 && p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) p += 2;
  uint32_t v = 0;
  const char* first = p;
  for (; p < end; ++p) {
    unsigned d;
    if (*p >= '0' && *p <= '9')
      d = static_cast<unsigned>(*p - '0');
    else if (hex && *p >= 'a' && *p <= 'f')
      d = static_cast<unsigned>(*p - 'a' + 10);
    else if (hex && *p >= 'A' && *p <= 'F')
      d = static_cast<unsigned>(*p - 'A' + 10);
    else
      break;
    v = v * (hex ? 16u : 10u) + d;
  }
  if (p == first) return false;
  out = negative ? 0u - v : v;
  return true;
}
}  // namespace

int32_t TIToken::toInteger_() const {
  KX_TRY {
    const char* begin = start_ ? start_ : "";
    const char* end = begin + (start_ ? length_ : 0);
    if (meaning_ == eINTEGER || meaning_ == eHEXADECIMAL) {
      const bool hex = meaning_ == eHEXADECIMAL;
      uint32_t v = 0;
      if (!parseInteger(begin, end, hex, v)) {
        const std::string text(begin, end);
        KX_THROW(hex ? ulHexUnreadable : ulIntegerUnreadable, "%s",
                 TIMessage::getString(hex ? 0x309 : 0x308, text.c_str()));
      }
      return static_cast<int32_t>(v);
    }
    KX_THROW(ulNotAnInteger, "%s", TIMessage::getString(0x307));
  }
  KX_CATCH
}

double TIToken::toFloat_() const {
  KX_TRY {
    if (meaning_ != eFLOAT) KX_THROW(ulNotAFloat, "%s", TIMessage::getString(0x305));
    const std::string text(start_ ? start_ : "", start_ ? length_ : 0);
    double v = 0;
    const kx::platform::CNumericScope cLocale;
    if (std::sscanf(text.c_str(), "%le", &v) != 1)
      KX_THROW(ulFloatUnreadable, "%s", TIMessage::getString(0x306, text.c_str()));
    return v;
  }
  KX_CATCH
}

// ---------------------------------------------------------------- TITokenLine

void TITokenLine::_vAdd(int code, char* start, unsigned length) {
  if (count_ >= MaxSize) KX_THROW(ulTokenIndex, "%s", TIMessage::getString(0x411, count_, MaxSize));
  tokens_[count_].setMeaning(code);
  tokens_[count_].setStart(start);
  tokens_[count_].setLength(length);
  ++count_;
}

void TITokenLine::nextLine(const char* line, bool bBlockMode) {
  KX_TRY {
    count_ = 0;
    const char* in = line ? line : "";
    if (bBlockMode) {
      std::strncpy(line_, in, sizeof line_ - 1);
      line_[sizeof line_ - 1] = '\0';
      const int code = std::strchr(line_, '}') ? eBLOCKEND : std::strchr(line_, '{') ? eBLOCKBEGIN : eWORD;
      _vAdd(code, line_, static_cast<unsigned>(std::strlen(line_)));
      return;
    }
    // The working copy, without blanks at either end.
    while (*in && isBlank(*in)) ++in;
    std::size_t n = std::strlen(in);
    while (n > 0 && isBlank(in[n - 1])) --n;
    if (n > sizeof line_ - 1) n = sizeof line_ - 1;
    std::memcpy(line_, in, n);
    line_[n] = '\0';

    char* p = line_;
    while (*p) {
      char* start = p;
      const char c = *p;
      if (isLetter(c) || c == '_') {
        while (isLetter(*p) || isDigit(*p) || *p == '_' || *p == '$') ++p;
        _vAdd(eWORD, start, static_cast<unsigned>(p - start));
      } else if (isDigit(c)) {
        int code = eNUMBER;
        while (!isNumberEnd(*p) || (*p == '-' && p > start && (p[-1] == 'e' || p[-1] == 'E'))) {
          if (*p == '-') {
            code = eFLOAT;
          } else if (*p == 'x' || *p == 'X') {
            if (code != eNUMBER) KX_THROW(ulNumberSecondX, "%s", line_);
            code = eHEXADECIMAL;
          } else if (*p == '.') {
            if (code != eNUMBER) KX_THROW(ulNumberSecondPoint, "%s", line_);
            code = eFLOAT;
          }
          ++p;
        }
        _vAdd(code == eNUMBER ? eINTEGER : code, start, static_cast<unsigned>(p - start));
      } else if (c == '"' || c == '\'') {
        // The text between the quotes; a backslash takes the next character
        // along unseen.
        ++p;
        char* text = p;
        while (*p && *p != c) {
          if (*p == '\\' && p[1]) ++p;
          ++p;
        }
        if (*p != c) KX_THROW0(ulLiteralOpen);
        _vAdd(c == '"' ? eLITERAL : eCHAR, text, static_cast<unsigned>(p - text));
        ++p;
      } else {
        unsigned len = 1;
        if (c == '.' && p[1] == '.' && p[2] == '.')
          len = 3;
        else if (p[1] && pairs(c, p[1]))
          len = 2;
        p += len;
        _vAdd(eOPERATOR, start, len);
      }
      while (*p && isBlank(*p)) ++p;
    }
    for (unsigned i = 0; i < count_; ++i) {
      TIToken& t = tokens_[i];
      if (t.getMeaning() == eOPERATOR) {
        if (const int code = iOperatorCode(t.getStart(), t.getLength())) t.setMeaning(code);
      } else if (t.getMeaning() == eWORD && mayBeKeyword(t.getStart(), t.getLength())) {
        if (const int code = lookup(keywords, std::size(keywords), t.getStart(), t.getLength())) t.setMeaning(code);
      }
    }
    // "operator" and an operator behind it become one word; the length is a
    // plain sum, so a blank between the two ends up inside the word.
    for (unsigned i = 0; i + 1 < count_; ++i) {
      TIToken& t = tokens_[i];
      const TIToken& next = tokens_[i + 1];
      if (t.getMeaning() == eOPERATORDEF && iOperatorCode(next.getStart(), next.getLength()) != 0) {
        t.setMeaning(eWORD);
        t.setLength(t.getLength() + next.getLength());
        deleteToken(i + 1);
      }
    }
  }
  KX_CATCH
}

TIToken& TITokenLine::operator[](unsigned i) {
  if (i >= count_) KX_THROW(ulTokenIndex, "%s", TIMessage::getString(0x411, i, count_));
  return tokens_[i];
}

void TITokenLine::deleteToken(unsigned i) {
  if (i >= count_) KX_THROW(ulDeleteTokenIndex, "%s", TIMessage::getString(0x100b, MaxSize, i));
  for (unsigned k = i + 1; k < count_; ++k) tokens_[k - 1] = tokens_[k];
  --count_;
}

void TITokenLine::changeToken(unsigned i, const char* text) {
  if (i >= count_) KX_THROW(ulChangeTokenIndex, "%s", TIMessage::getString(0x100b, MaxSize, i));
  const char* t = text ? text : "";
  const std::size_t newLen = std::strlen(t);
  TIToken& tok = tokens_[i];
  char* start = tok.getStart();
  const std::size_t oldLen = tok.getLength();
  const std::size_t used = std::strlen(line_);
  if (used - oldLen + newLen > sizeof line_ - 1)
    KX_THROW(ulChangeTokenIndex, "%s", TIMessage::getString(0x100b, MaxSize, i));
  char* behind = start + oldLen;
  std::memmove(start + newLen, behind, static_cast<std::size_t>(line_ + used + 1 - behind));
  std::memcpy(start, t, newLen);
  const long diff = static_cast<long>(newLen) - static_cast<long>(oldLen);
  for (unsigned k = 0; k < count_; ++k)
    if (tokens_[k].getStart() > start) tokens_[k].setStart(tokens_[k].getStart() + diff);
  tok.setLength(static_cast<unsigned>(newLen));
}
