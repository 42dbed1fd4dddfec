#include "platform/AtomicFile.h"
#include "file98/TKxMemIniFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include "file98/File98Errors.h"
#include "file98/KxPath.h"
#include "file98/TIniFilename.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"

namespace {

const char* lineEnd(const char* p) {
  const char* e = std::strchr(p, '\n');
  return e ? e : p + std::strlen(p);
}

bool isBlankLine(const char* b, const char* e) {
  for (; b < e; ++b)
    if (*b != ' ' && *b != '\t' && *b != '\r') return false;
  return true;
}

// A stored name against an asked one; line breaks in the asked name count as
// the blanks they became when it was stored.
bool sameName(const std::string& stored, const char* asked) {
  size_t i = 0;
  for (; asked[i] != '\0'; ++i) {
    if (i >= stored.size()) return false;
    const char c = (asked[i] == '\r' || asked[i] == '\n') ? ' ' : asked[i];
    if (stored[i] != c) return false;
  }
  return i == stored.size();
}

}  // namespace

const char* TKxMemIniFile::TSection::cpReadFromString(const char* text) {
  if (!text) return text;
  const char* p = text;
  while (*p) {
    const char* e = lineEnd(p);
    const char* next = *e ? e + 1 : e;
    if (!isBlankLine(p, e)) {
      const char* eq = static_cast<const char*>(std::memchr(p, '=', static_cast<size_t>(e - p)));
      if (!eq || eq == p) return p;  // "=x" and every other shape end the section
      entries.push_back({std::string(p, eq), std::string(eq + 1, e)});
    }
    p = next;
  }
  return p;
}

TKxMemIniFile::TKxMemIniFile(const char* fileName) { vReadFromIniFile(fileName); }

TKxMemIniFile::TKxMemIniFile(const TIniFilename& fileName) { vReadFromIniFile(fileName.c_str()); }

TKxMemIniFile::~TKxMemIniFile() = default;

void TKxMemIniFile::_vParse(std::string text) {
  sections_.clear();
  std::erase_if(text, [](char c) { return c == '\r' || c == '\0'; });
  const char* p = text.c_str();
  while (*p) {
    const char* e = lineEnd(p);
    const char* next = *e ? e + 1 : e;
    const char* open = static_cast<const char*>(std::memchr(p, '[', static_cast<size_t>(e - p)));
    const char* close =
        open ? static_cast<const char*>(std::memchr(open + 1, ']', static_cast<size_t>(e - open - 1))) : nullptr;
    if (close) {
      sections_.emplace_back();
      sections_.back().name.assign(open + 1, close);
      // The line that ends the section comes back here as a head candidate.
      p = sections_.back().cpReadFromString(next);
    } else {
      p = next;
    }
  }
  changed_ = false;
}

void TKxMemIniFile::vReadFromString(const char* text) { _vParse(text ? text : ""); }

void TKxMemIniFile::vReadFromIniFile(const char* fileName) {
  fileName_ = kx::sToSlash(fileName);
  std::string text;
  struct stat st{};
  // Only plain files: a FIFO or a device would block or never end.
  if (!fileName_.empty() && ::stat(fileName_.c_str(), &st) == 0 && S_ISREG(st.st_mode)) {
    std::ifstream in(fileName_, std::ios::binary);
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  _vParse(std::move(text));
}

void TKxMemIniFile::vSetFileName(const char* fileName) { fileName_ = kx::sToSlash(fileName); }

void TKxMemIniFile::vOverwriteFile(const char* fileName) {
  KX_TRY {
    const std::string target = fileName ? kx::sToSlash(fileName) : fileName_;
    if (target.empty()) KX_THROW(kx::file98::ulIniWrite, "Ini file without a name");
    const std::string text = sWriteToString();
    // Saved beside and renamed over: a failed save leaves the old file whole,
    // and the unsaved settings stay here, still marked as changed.
    std::string why;
    if (!kx::platform::writeFileAtomic(target, text, &why)) KX_THROW(kx::file98::ulIniWrite, "%s", why.c_str());
    if (target == fileName_) changed_ = false;
  }
  KX_CATCH
}

std::string TKxMemIniFile::sWriteToString() const {
  std::string out;
  out.reserve(_uTextSize());
  for (const auto& s : sections_) {
    out += '[';
    out += s.name;
    out += "]\r\n";
    for (const auto& e : s.entries) {
      out += e.name;
      out += '=';
      out += e.value;
      out += "\r\n";
    }
    out += "\r\n";
  }
  return out;
}

std::size_t TKxMemIniFile::uGetStringSize() { return _uTextSize(); }

std::size_t TKxMemIniFile::_uTextSize() const {
  std::size_t n = 1;
  for (const auto& s : sections_) {
    n += s.name.size() + 4 + 2;
    for (const auto& e : s.entries) n += e.name.size() + e.value.size() + 3;
  }
  return n;
}

void TKxMemIniFile::vWriteToString(char* text) {
  if (!text) return;
  const std::string s = sWriteToString();
  std::memcpy(text, s.c_str(), s.size() + 1);
}

void TKxMemIniFile::vClear() {
  if (!sections_.empty()) changed_ = true;
  sections_.clear();
}

int TKxMemIniFile::iGetSectionIndex(const char* name) const {
  if (!name) return -1;
  for (size_t i = 0; i < sections_.size(); ++i)
    if (sameName(sections_[i].name, name)) return static_cast<int>(i);
  return -1;
}

unsigned TKxMemIniFile::uGetSection(const char* name) {
  const int i = iGetSectionIndex(name ? name : "");
  if (i >= 0) return static_cast<unsigned>(i);
  sections_.emplace_back();
  sections_.back().name = kx::ini::sOneLine(name);
  changed_ = true;
  return static_cast<unsigned>(sections_.size() - 1);
}

unsigned TKxMemIniFile::uGetEntryCount(unsigned section) const {
  return section < sections_.size() ? static_cast<unsigned>(sections_[section].entries.size()) : 0;
}

const char* TKxMemIniFile::cpGetSectionName(unsigned section) const {
  return section < sections_.size() ? sections_[section].name.c_str() : "";
}

const char* TKxMemIniFile::cpGetEntryName(unsigned section, unsigned entry) const {
  if (section >= sections_.size() || entry >= sections_[section].entries.size()) return "";
  return sections_[section].entries[entry].name.c_str();
}

std::string TKxMemIniFile::sReadString(int section, int entry, const char* def) const {
  const auto si = static_cast<size_t>(section), ei = static_cast<size_t>(entry);
  if (section >= 0 && entry >= 0 && si < sections_.size() && ei < sections_[si].entries.size()) {
    const std::string& v = sections_[si].entries[ei].value;
    if (!v.empty()) return v;
  }
  return def ? def : "";
}

void TKxMemIniFile::vAppendString(unsigned section, const char* key, const char* value) {
  if (section >= sections_.size()) return;
  std::string k = kx::ini::sOneLine(key);
  if (k.empty()) return;
  sections_[section].entries.push_back({std::move(k), kx::ini::sOneLine(value)});
  changed_ = true;
}

TKxMemIniFile::TSection* TKxMemIniFile::_pFind(const char* name) {
  const int i = iGetSectionIndex(name);
  return i < 0 ? nullptr : &sections_[static_cast<size_t>(i)];
}

const TKxMemIniFile::TSection* TKxMemIniFile::pGetSection(const char* name) const {
  const int i = iGetSectionIndex(name);
  return i < 0 ? nullptr : &sections_[static_cast<size_t>(i)];
}

const TKxMemIniFile::TSection::TEntry* TKxMemIniFile::_pFindEntry(const char* section, const char* key) const {
  const TSection* s = pGetSection(section);
  if (!s || !key) return nullptr;
  for (const auto& e : s->entries)
    if (sameName(e.name, key)) return &e;
  return nullptr;
}

void TKxMemIniFile::vReadSections(std::vector<std::string>& sections) {
  sections.clear();
  for (const auto& s : sections_) sections.push_back(s.name);
}

bool TKxMemIniFile::bSectionExists(const char* section) { return pGetSection(section) != nullptr; }

void TKxMemIniFile::vReadSection(const char* section, std::vector<std::string>& keys) {
  keys.clear();
  if (const TSection* s = pGetSection(section))
    for (const auto& e : s->entries) keys.push_back(e.name);
}

void TKxMemIniFile::vCopySection(TKxIniFile* source, const char* section) {
  if (!source || !section || source == this) return;
  TSection copy;
  if (auto* mem = dynamic_cast<TKxMemIniFile*>(source)) {
    const TSection* s = mem->pGetSection(section);
    if (!s) return;
    copy = *s;
  } else if (auto* disk = dynamic_cast<TKxStdIniFile*>(source)) {
    const TKxMemIniFile content = disk->mGetContent();
    const TSection* s = content.pGetSection(section);
    if (!s) return;
    copy = *s;
  } else {
    if (!source->bSectionExists(section)) return;
    copy.name = kx::ini::sOneLine(section);
    std::vector<std::string> keys;
    source->vReadSection(section, keys);
    for (auto& k : keys) {
      std::string v = source->sReadString(section, k.c_str(), "");
      copy.entries.push_back({std::move(k), std::move(v)});
    }
  }
  const int i = iGetSectionIndex(section);
  if (i < 0) {
    sections_.push_back(std::move(copy));
    changed_ = true;
    return;
  }
  const size_t at = static_cast<size_t>(i);
  if (!(sections_[at] == copy)) {
    sections_[at] = std::move(copy);
    changed_ = true;
  }
  // Later sections of the name would hide nothing but still be written.
  for (size_t j = sections_.size(); j-- > at + 1;)
    if (sections_[j].name == sections_[at].name) {
      sections_.erase(sections_.begin() + static_cast<std::ptrdiff_t>(j));
      changed_ = true;
    }
}

void TKxMemIniFile::vDeleteSection(const char* section) {
  if (!section) return;
  if (std::erase_if(sections_, [&](const TSection& s) { return sameName(s.name, section); }) > 0) changed_ = true;
}

void TKxMemIniFile::vRenameSection(const char* from, const char* to) {
  if (!from || !to) return;
  int f = iGetSectionIndex(from);
  if (f < 0) return;
  const std::string name = kx::ini::sOneLine(to);
  if (sections_[static_cast<size_t>(f)].name == name) return;
  for (size_t j = sections_.size(); j-- > 0;)
    if (sections_[j].name == name) {
      sections_.erase(sections_.begin() + static_cast<std::ptrdiff_t>(j));
      if (static_cast<int>(j) < f) --f;
    }
  sections_[static_cast<size_t>(f)].name = name;
  changed_ = true;
}

bool TKxMemIniFile::bValueExists(const char* section, const char* key) { return _pFindEntry(section, key) != nullptr; }

void TKxMemIniFile::vDeleteEntry(const char* section, const char* key) {
  TSection* s = _pFind(section);
  if (!s || !key) return;
  if (std::erase_if(s->entries, [&](const TSection::TEntry& e) { return sameName(e.name, key); }) > 0)
    changed_ = true;
}

std::string TKxMemIniFile::sReadString(const char* section, const char* key, const char* def) {
  const TSection::TEntry* e = _pFindEntry(section, key);
  if (e && !e->value.empty()) return e->value;
  return def ? def : "";
}

void TKxMemIniFile::vWriteString(const char* section, const char* key, const char* value) {
  if (!section || !key) return;
  std::string k = kx::ini::sOneLine(key);
  if (k.empty()) return;
  std::string v = kx::ini::sOneLine(value);
  TSection& s = sections_[uGetSection(section)];
  for (auto& e : s.entries)
    if (e.name == k) {
      if (e.value != v) {
        e.value = std::move(v);
        changed_ = true;
      }
      return;
    }
  s.entries.push_back({std::move(k), std::move(v)});
  changed_ = true;
}
