// The error facility: error codes, the chain of links, the guard.
//
// A failure is a bare `unsigned long` code 0xECCMMSSS (class CC, module MM,
// serial SSS) thrown by value. The text travels beside it in the *chain* of the
// current error: the first link is written by kx::error() where the failure is
// raised, every guarded function on the way up adds one link with kx::trace().
// A top-level handler shows the chain (kx::ErrorMessageBox) and ends it
// (kx::deleteError).
//
// Threads: the chain is per thread (thread_local); the capture thread raises
// and reports its own errors. The error file and the language are process wide.
//
// A new kx::error() while a chain is open: the open chain is written to the
// error file (when one is open) marked as superseded, and the new error starts
// a fresh chain. So nothing raised is lost from the file, and the chain that
// reaches the top is always the one of the failure that is on its way up.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kx {

// The code of failures that have no code of their own (foreign exceptions,
// free texts).
inline constexpr unsigned long ulForeignError = 0xe0000000UL;

struct TErrorLink {
  std::string file;  // short source name, "kdoint\TILineParser"
  int line = 0;
  std::string text;  // may be empty
};

unsigned long error(unsigned long code, const char* file, int line, const char* format, ...)
    __attribute__((format(printf, 4, 5)));
unsigned long trace(const char* file, int line, const char* format = nullptr, ...)
    __attribute__((format(printf, 3, 4)));
unsigned long getErrorCode();
void ErrorMessageBox();
void deleteError();
void openErrorFile(const char* path);

// The links of the current chain, oldest (the raising site) first.
std::vector<TErrorLink> getErrorChain();
// The chain as it is shown: the code in hex, then one line per link.
std::string formatErrorChain();
// Closes the error file opened by openErrorFile (tests, shutdown).
void closeErrorFile();

// Short source name of a path: the last directory and the file name without
// extension, joined by '\': ".../src/kdoint/TILineParser.cpp" -> "kdoint\TILineParser".
struct TShortName {
  char s[96]{};
};
consteval TShortName shortSourceName(const char* path) {
  std::size_t n = 0;
  while (path[n] != '\0') ++n;
  std::size_t end = n, slash1 = n, slash2 = n;
  for (std::size_t i = n; i > 0; --i) {
    const char c = path[i - 1];
    if (c == '.' && end == n && slash1 == n) end = i - 1;
    if (c == '/' || c == '\\') {
      if (slash1 == n) {
        slash1 = i - 1;
      } else {
        slash2 = i - 1;
        break;
      }
    }
  }
  std::size_t begin = (slash2 == n) ? (slash1 == n ? 0 : slash1 + 1) : slash2 + 1;
  TShortName r{};
  std::size_t k = 0;
  for (std::size_t i = begin; i < end && k + 1 < sizeof r.s; ++i)
    r.s[k++] = (path[i] == '/') ? '\\' : path[i];
  r.s[k] = '\0';
  return r;
}

namespace detail {
// The three catch clauses, written once. Called from inside a catch block:
// rethrows the code through kx::trace, turns a std::exception into
// kx::error(0xe0000000, what()), anything else into "Unknown exception catched".
// Thread cancellation unwinding passes through untouched.
[[noreturn]] void rethrowGuarded(const char* file, int line);
// The top-level form: gives the chain a last link (or starts one for a foreign
// exception), shows it and deletes it. Returns the code that was reported.
unsigned long reportTopLevel(const char* file, int line);
}  // namespace detail

}  // namespace kx

// The short name of the source this expands in, computed at compile time.
#define KX_FILE                                                          \
  ([]() -> const char* {                                                 \
    static constexpr ::kx::TShortName kxShort = ::kx::shortSourceName(__FILE__); \
    return kxShort.s;                                                    \
  }())

// throw KX_ERROR(0xe5215001, "Plane %s", name);
#define KX_ERROR(code, ...) ::kx::error((code), KX_FILE, __LINE__ __VA_OPT__(, ) __VA_ARGS__)
#define KX_ERROR0(code) ::kx::error((code), KX_FILE, __LINE__, nullptr)
#define KX_THROW(code, ...) throw KX_ERROR(code __VA_OPT__(, ) __VA_ARGS__)
#define KX_THROW0(code) throw KX_ERROR0(code)

// A guarded function body:
//   void f() { KX_TRY { ... } KX_CATCH }
#define KX_TRY try
#define KX_CATCH \
  catch (...) { ::kx::detail::rethrowGuarded(KX_FILE, __LINE__); }
// A top-level handler body (timer tick, command, main): shows and ends the chain.
#define KX_CATCH_TOP \
  catch (...) { ::kx::detail::reportTopLevel(KX_FILE, __LINE__); }

// Records an error without raising it (functions that report by return value).
long _TKxSetLastErrorL(long code, const char* file, int line);
long _TKxSetLastErrorLS(long code, const char* file, int line, const char* text);
// The spelling the TIFF container layer uses.
inline long _KxSetLastErrorL(long code, const char* file, int line) {
  return _TKxSetLastErrorL(code, file, line);
}
// true: writes the recorded error to the error file and standard error;
// false: drops it. Either way the record is cleared.
void TKxReportLastError(bool bReport);
// The recorded error's code, 0 if none (tests and callers that poll).
long TKxGetLastError();
