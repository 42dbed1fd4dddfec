#include "platform/CLocale.h"

#include <locale.h>

namespace kx::platform {

namespace {
locale_t cLocale() {
  static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return c;
}
}  // namespace

CNumericScope::CNumericScope() : old_(uselocale(cLocale())) {}

CNumericScope::~CNumericScope() { uselocale(static_cast<locale_t>(old_)); }

}  // namespace kx::platform
