#include "kdoint/TIMessage.h"

#include <cstdarg>
#include <cstdio>

#include "kxexception/TLanguage.h"

namespace {

struct TMessage {
  unsigned long id;
  const char* deutsch;
  const char* englisch;
};

// Sorted by id; ended by the id 0. Ids 30d to 310 and 409 are empty.
constexpr TMessage messages[] = {
#include "kdoint/TIMessageTable.inc"
    {0, "?", "?"},
};

const TMessage& find(unsigned long id) {
  const TMessage* m = messages;
  for (; m->id != 0; ++m)
    if (m->id == id) return *m;
  return *m;
}

}  // namespace

const char* TIMessage::getText(unsigned long id, int language) {
  const TMessage& m = find(id);
  return language == 1 ? m.englisch : m.deutsch;
}

bool TIMessage::bExists(unsigned long id) { return id != 0 && find(id).id == id; }

const char* TIMessage::getString(unsigned long id, ...) {
  static char buffer[2048];
  const char* format = getText(id, TLanguage::isEnglisch() ? 1 : 0);
  va_list ap;
  va_start(ap, id);
  std::vsnprintf(buffer, sizeof buffer, format, ap);
  va_end(ap);
  return buffer;
}
