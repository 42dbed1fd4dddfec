// Tokens of one script line.
//
// A token is a code (what the characters are, not that the language has a
// use for them) and a piece of the token line's working copy: it is valid
// until the next nextLine. Codes: see the enumeration; keywords and
// operators take their codes from their tables.
#pragma once

#include <cstdint>
#include <string>

namespace kdoint {
enum eTokenCode : int {
  eWORD = 10, eUNKNOWN = 11, eCLASSNAME = 12, eFUNCTION = 13, eVARIABLE = 14, eIF = 15, eELSE = 16,
  eWHILE = 17, eVOID = 18, eCLASS = 19, eSUPPLEMENT = 20, eRETURN = 21, eOPERATORDEF = 22, ePROCEDURE = 23,
  eLITERAL = 25, eCHAR = 26, eNUMBER = 30, eINTEGER = 31, eHEXADECIMAL = 32, eFLOAT = 33, eOPERATOR = 40,
  eBLOCKBEGIN = 41, eBLOCKEND = 42, eLISTBEGIN = 43, eLISTEND = 44, eINDEXBEGIN = 45, eINDEXEND = 46,
  eOROR = 47, eOREQUAL = 48, eOR = 49, eNOTNOT = 50, eNOTEQUAL = 51, eNOT = 52, eANDAND = 53, eANDEQUAL = 54,
  eAND = 55, eMINUSMINUS = 56, eMINUSEQUAL = 57, eMINUS = 58, ePLUSPLUS = 59, ePLUSEQUAL = 60, ePLUS = 61,
  eLEFTSHIFT = 62, eSMALLEREQUAL = 63, eSMALLER = 64, eRIGHTSHIFT = 65, eGREATEREQUAL = 66, eGREATER = 67,
  eMULTEQUAL = 68, eMULT = 69, eMETHOD = 70, eLABEL = 71, eEQUALEQUAL = 72, eEQUAL = 73, eKOMMA = 74,
  eSEMIKOLON = 75, ePOINT = 76, eQUESTION = 77, eTILDE = 78, eBEGINCOMMENT = 79, eDIVEQUAL = 80,
  eENDCOMMENT = 81, eDIVISION = 82, eCONTLINE = 83, eMOUNTAIN = 84, ePERCENTEQUAL = 85, ePERCENT = 86,
  ePOINTER = 87, ePARAMLIST = 101, eBOOLAUSDRUCK = 102, eERROR = -1
};
// The name of a code for traces ("WORD"); "" for a code without one.
const char* cpTokenCodeName(int code);
// The operator code of a text ("+=" -> 60), 0 if it is no operator.
int iOperatorCode(const char* text, unsigned length);
}  // namespace kdoint

class TIToken {
 public:
  int getMeaning() const { return meaning_; }
  void setMeaning(int m) { meaning_ = m; }
  char* getStart() const { return start_; }
  unsigned getLength() const { return length_; }
  void setLength(unsigned n) { length_ = n; }
  void setStart(char* p) { start_ = p; }
  // Copies the text and terminates it; a VOID token always gives "VOID".
  void getString(char* out) const;
  std::string sGetString() const;
  bool is(const char* text) const;
  // Integer (code 31, "%d") or hexadecimal (code 32, "%x") as a 32-bit value.
  // Other codes: 0xe7020033 (307); unreadable: 0xe7320031 (308), 0xe7320032
  // (309).
  int32_t toInteger_() const;
  // A float (code 33 only, "%le"): else 0xe702002f (305); unreadable
  // 0xe7320030 (306).
  double toFloat_() const;
  const char* getMeaningAsString() const { return kdoint::cpTokenCodeName(meaning_); }

 private:
  int meaning_ = kdoint::eERROR;
  char* start_ = nullptr;
  unsigned length_ = 0;
};

class TITokenLine {
 public:
  static constexpr unsigned MaxSize = 100;

  TITokenLine() = default;
  TITokenLine(const TITokenLine&) = delete;
  TITokenLine& operator=(const TITokenLine&) = delete;

  // Tokenises a cleaned line. In block mode (the body of a block is being
  // collected) the line becomes one token: 42 if it holds a '}' anywhere
  // (strings included), else 41 if it holds a '{', else 10. A line of more
  // than 100 tokens raises 0xe742002b; a number with a second 'x' or '.'
  // 0xe602000f / 0xe6020010; a literal without its end 0xe7520013.
  void nextLine(const char* line, bool bBlockMode);
  unsigned getSize() const { return count_; }
  // Index beyond the tokens: 0xe742002b (411).
  TIToken& operator[](unsigned i);
  // Removes token i (the text stays): beyond the end 0xe742000e (100b).
  void deleteToken(unsigned i);
  // Replaces the text of token i in the working copy, moving what follows:
  // beyond the end (or beyond the working copy's room) 0xe7420076 (100b).
  void changeToken(unsigned i, const char* text);
  const char* cpGetLine() const { return line_; }

 private:
  void _vAdd(int code, char* start, unsigned length);

  char line_[1024]{};
  unsigned count_ = 0;
  TIToken tokens_[MaxSize];
};
