#include "kxexception/TKxClipboard.h"

#include <map>
#include <mutex>

namespace {
struct TStore {
  std::mutex m;
  std::map<std::string, unsigned> names;
  std::map<unsigned, std::vector<char>> data;
};
TStore& store() {
  static TStore s;
  return s;
}
}  // namespace

unsigned TKxClipboard::uRegisterFormat(const char* name) {
  auto& s = store();
  std::lock_guard lock(s.m);
  const std::string key = name ? name : "";
  auto it = s.names.find(key);
  if (it != s.names.end()) return it->second;
  const unsigned id = 0xC000u + static_cast<unsigned>(s.names.size());
  s.names.emplace(key, id);
  return id;
}

void TKxClipboard::vClear() {
  auto& s = store();
  std::lock_guard lock(s.m);
  s.data.clear();
}

void TKxClipboard::vSetData(unsigned format, const void* data, std::size_t size) {
  auto& s = store();
  std::lock_guard lock(s.m);
  const char* p = static_cast<const char*>(data);
  s.data[format].assign(p, p ? p + size : p);
}

bool TKxClipboard::bHasFormat(unsigned format) {
  auto& s = store();
  std::lock_guard lock(s.m);
  return s.data.count(format) != 0;
}

std::vector<char> TKxClipboard::vGetData(unsigned format) {
  auto& s = store();
  std::lock_guard lock(s.m);
  auto it = s.data.find(format);
  return it == s.data.end() ? std::vector<char>() : it->second;
}

std::string TKxClipboard::sGetText() {
  auto v = vGetData(uTextFormat);
  return std::string(v.begin(), v.end());
}
