#include "platform/AtomicFile.h"
#include "file98/TTextConverterFromIniFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"

namespace {
std::string readWhole(const char* source) {
  const std::string path = kx::sToSlash(source);
  struct stat st{};
  if (path.empty() || ::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
    KX_THROW(kx::file98::ulFileRead, "%s: %s", path.c_str(), path.empty() ? "no name" : "no file");
  std::ifstream in(path, std::ios::binary);
  if (!in) KX_THROW(kx::file98::ulFileRead, "%s: %s", path.c_str(), std::strerror(errno));
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void writeAll(std::FILE* f, const std::string& text, const char* name) {
  if (std::fwrite(text.data(), 1, text.size(), f) != text.size())
    KX_THROW(kx::file98::ulIniWrite, "%s: %s", name, std::strerror(errno));
}
}  // namespace

TTextConverterFromIniFile::TTextConverterFromIniFile(const char* section, const char* begin, const char* end,
                                                     bool keepUnknown, const char* unknownText)
    : section_(section ? section : ""),
      begin_(begin && *begin ? begin : "%"),
      end_(end && *end ? end : "%"),
      keepUnknown_(keepUnknown),
      unknownText_(unknownText ? unknownText : "") {}

bool TTextConverterFromIniFile::bIsEmptyString(const char* text) {
  if (!text) return true;
  for (; *text; ++text)
    if (*text != ' ' && *text != '\t') return false;
  return true;
}

std::string TTextConverterFromIniFile::_sLine(const std::string& line, TKxIniFile* ini, bool& replaced) const {
  std::string out;
  size_t pos = 0;
  for (;;) {
    const size_t b = line.find(begin_, pos);
    if (b == std::string::npos) break;
    const size_t nameAt = b + begin_.size();
    const size_t e = line.find(end_, nameAt);
    if (e == std::string::npos) break;
    out.append(line, pos, b - pos);
    const std::string name = line.substr(nameAt, e - nameAt);
    const bool known = !name.empty() && ini && ini->bValueExists(section_.c_str(), name.c_str());
    if (known) {
      out += ini->sReadString(section_.c_str(), name.c_str(), "");
      replaced = true;
      pos = e + end_.size();
    } else if (!name.empty() && !keepUnknown_) {
      out += unknownText_;
      replaced = true;
      pos = e + end_.size();
    } else {
      // Not ours: the begin mark stays and the search goes on behind it, so
      // its end mark may still open a placeholder ("100% of %Value%").
      out += begin_;
      pos = nameAt;
    }
  }
  out.append(line, pos, std::string::npos);
  return out;
}

std::string TTextConverterFromIniFile::sFilter(const std::string& text, TKxIniFile* ini, bool dropEmptyLines) const {
  std::string out;
  out.reserve(text.size());
  size_t pos = 0;
  while (pos < text.size()) {
    size_t nl = text.find('\n', pos);
    const size_t next = nl == std::string::npos ? text.size() : nl + 1;
    size_t bodyEnd = nl == std::string::npos ? text.size() : nl;
    if (bodyEnd > pos && text[bodyEnd - 1] == '\r') --bodyEnd;
    bool replaced = false;
    const std::string body = _sLine(text.substr(pos, bodyEnd - pos), ini, replaced);
    if (!(dropEmptyLines && replaced && bIsEmptyString(body.c_str()))) {
      out += body;
      out.append(text, bodyEnd, next - bodyEnd);
    }
    pos = next;
  }
  return out;
}

void TTextConverterFromIniFile::vFilter(const char* source, const char* target, TKxIniFile* ini,
                                        bool dropEmptyLines) {
  KX_TRY {
    const std::string result = sFilter(readWhole(source), ini, dropEmptyLines);
    const std::string path = kx::sToSlash(target);
    if (path.empty()) KX_THROW(kx::file98::ulIniWrite, "%s: %s", path.c_str(), "no name");
    std::string why;
    if (!kx::platform::writeFileAtomic(path, result, &why)) KX_THROW(kx::file98::ulIniWrite, "%s", why.c_str());
  }
  KX_CATCH
}

void TTextConverterFromIniFile::vFilter(std::FILE* target, const char* source, TKxIniFile* ini) {
  KX_TRY {
    if (!target) KX_THROW(kx::file98::ulIniWrite, "no stream to write to");
    writeAll(target, sFilter(readWhole(source), ini, false), "stream");
  }
  KX_CATCH
}
