#include "kxexception/KxError.h"

#include <cxxabi.h>

#include <cstdarg>
#include <cstdio>
#include <exception>
#include <fstream>
#include <mutex>

#include "platform/Notice.h"

namespace kx {
namespace {

struct TChain {
  unsigned long code = 0;
  std::vector<TErrorLink> links;
};

thread_local TChain tChain;

// The record of _TKxSetLastErrorL, per thread as the chain.
struct TLastError {
  long code = 0;
  std::string file;
  int line = 0;
  std::string text;
};
thread_local TLastError tLastError;

std::mutex& fileMutex() {
  static std::mutex m;
  return m;
}
std::ofstream& errorFile() {
  static std::ofstream f;
  return f;
}

std::string vformat(const char* format, va_list ap) {
  if (!format) return {};
  va_list ap2;
  va_copy(ap2, ap);
  char buf[512];
  int n = std::vsnprintf(buf, sizeof buf, format, ap);
  std::string s;
  if (n < 0) {
    s = format;
  } else if (static_cast<size_t>(n) < sizeof buf) {
    s.assign(buf, static_cast<size_t>(n));
  } else {
    s.resize(static_cast<size_t>(n) + 1);
    std::vsnprintf(s.data(), s.size(), format, ap2);
    s.resize(static_cast<size_t>(n));
  }
  va_end(ap2);
  return s;
}

std::string formatChain(const TChain& c) {
  char head[32];
  std::snprintf(head, sizeof head, "0x%08lx", c.code & 0xffffffffUL);
  std::string out = head;
  out += '\n';
  for (const auto& l : c.links) {
    out += "  ";
    out += l.file;
    out += '(';
    out += std::to_string(l.line);
    out += ')';
    if (!l.text.empty()) {
      out += ": ";
      out += l.text;
    }
    out += '\n';
  }
  return out;
}

void writeToErrorFile(const std::string& text) {
  std::lock_guard lock(fileMutex());
  auto& f = errorFile();
  if (f.is_open()) {
    f << text;
    f.flush();
  }
}

}  // namespace

unsigned long error(unsigned long code, const char* file, int line, const char* format, ...) {
  if (tChain.code != 0 || !tChain.links.empty())
    writeToErrorFile("superseded: " + formatChain(tChain));
  tChain = TChain{};
  tChain.code = code;
  va_list ap;
  va_start(ap, format);
  tChain.links.push_back({file ? file : "", line, vformat(format, ap)});
  va_end(ap);
  return code;
}

unsigned long trace(const char* file, int line, const char* format, ...) {
  va_list ap;
  va_start(ap, format);
  tChain.links.push_back({file ? file : "", line, vformat(format, ap)});
  va_end(ap);
  return tChain.code;
}

unsigned long getErrorCode() { return tChain.code; }

std::vector<TErrorLink> getErrorChain() { return tChain.links; }

std::string formatErrorChain() { return formatChain(tChain); }

void ErrorMessageBox() {
  const std::string text = formatChain(tChain);
  writeToErrorFile(text);
  platform::notice(platform::eNoticeKind::eError, "Error", text);
}

void deleteError() { tChain = TChain{}; }

void openErrorFile(const char* path) {
  std::lock_guard lock(fileMutex());
  auto& f = errorFile();
  if (f.is_open()) f.close();
  if (path && *path) f.open(path, std::ios::out | std::ios::app | std::ios::binary);
}

void closeErrorFile() {
  std::lock_guard lock(fileMutex());
  if (errorFile().is_open()) errorFile().close();
}

namespace detail {

namespace {
// The chain no longer belongs to the code in flight (it was deleted or
// replaced on the way up): a fresh chain for that code, saying so.
void restartChain(unsigned long code, const char* file, int line) {
  if (tChain.code != 0 || !tChain.links.empty())
    writeToErrorFile("superseded: " + formatChain(tChain));
  tChain = TChain{};
  tChain.code = code;
  tChain.links.push_back({file ? file : "", line, "the chain of this error was lost on its way up"});
}
}  // namespace

void rethrowGuarded(const char* file, int line) {
  try {
    throw;
  } catch (unsigned long code) {
    // The code caught is the code that goes on, whatever happened to the
    // chain meanwhile: an error raised and dropped while unwinding (a
    // destructor calling deleteError) must not change it, not even to 0.
    if (tChain.code != code)
      restartChain(code, file, line);
    else
      kx::trace(file, line, nullptr);
    throw code;
  } catch (abi::__forced_unwind&) {
    throw;
  } catch (const std::exception& e) {
    throw kx::error(ulForeignError, file, line, "%s", e.what());
  } catch (...) {
    throw kx::error(ulForeignError, file, line, "Unknown exception catched");
  }
}

unsigned long reportTopLevel(const char* file, int line) {
  try {
    throw;
  } catch (unsigned long code) {
    if (tChain.code != code)
      restartChain(code, file, line);
    else
      kx::trace(file, line, nullptr);
  } catch (abi::__forced_unwind&) {
    throw;
  } catch (const std::exception& e) {
    if (getErrorCode() == 0)
      kx::error(ulForeignError, file, line, "%s", e.what());
    else
      kx::trace(file, line, "%s", e.what());
  } catch (...) {
    if (getErrorCode() == 0)
      kx::error(ulForeignError, file, line, "Unknown exception catched");
    else
      kx::trace(file, line, nullptr);
  }
  const unsigned long code = getErrorCode();
  ErrorMessageBox();
  deleteError();
  return code;
}

}  // namespace detail
}  // namespace kx

long _TKxSetLastErrorL(long code, const char* file, int line) {
  return _TKxSetLastErrorLS(code, file, line, nullptr);
}

long _TKxSetLastErrorLS(long code, const char* file, int line, const char* text) {
  kx::tLastError = {code, file ? file : "", line, text ? text : ""};
  return code;
}

void TKxReportLastError(bool bReport) {
  auto& e = kx::tLastError;
  if (bReport && e.code != 0) {
    char head[64];
    std::snprintf(head, sizeof head, "0x%08lx\n  ", static_cast<unsigned long>(e.code) & 0xffffffffUL);
    std::string text = head + e.file + "(" + std::to_string(e.line) + ")";
    if (!e.text.empty()) text += ": " + e.text;
    text += '\n';
    kx::writeToErrorFile(text);
    kx::platform::notice(kx::platform::eNoticeKind::eError, "Error", text);
  }
  e = {};
}

long TKxGetLastError() { return kx::tLastError.code; }
