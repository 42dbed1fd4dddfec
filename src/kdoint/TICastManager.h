// Conversions between classes, offered to hosts: a table from a source class
// name to target class names, each with its conversion routine. The
// interpreter's parsers never use it: the language converts nothing
// implicitly.
#pragma once

#include <string>
#include <vector>

class TIVariable;

class TICastManager {
 public:
  using TCast = void (*)(const TIVariable* from, TIVariable* to);

  // Adds the conversion from -> to. An existing one is replaced when
  // `bReplace` is set, else refused (0xe77200c3).
  void vAppendCast(const char* from, const char* to, TCast cast, bool bReplace);
  // Whether `from` converts to anything; `targets` receives the class names.
  bool bCanCast(const char* from, std::vector<std::string>& targets) const;
  // Converts the value of `from` into `to` by the classes of the two
  // variables: 0xe75200c4 if there is no such conversion.
  void vExecCast(const TIVariable* from, TIVariable* to) const;

 private:
  struct TEntry {
    std::string from, to;
    TCast cast;
  };
  std::vector<TEntry> casts_;
};

// The six conversions among INT, FLOAT and LITERAL:
//   INT -> FLOAT exact; FLOAT -> INT toward zero, saturated at the INT range
//   (NaN gives 0); INT -> LITERAL "%d"; FLOAT -> LITERAL "%.17g" (reads back
//   to the same double); LITERAL -> INT as "operator=(LITERAL)" of INT
//   ("%li", 0 if unreadable); LITERAL -> FLOAT as that of FLOAT (',' read
//   as '.', "%le", 0.0 if unreadable).
class TIEmbeddedCast {
 public:
  static void vAppendCasts(TICastManager& manager);
};
