#include "kdoint/TICastManager.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIBuiltInClasses.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "platform/CLocale.h"

using namespace kdoint;

namespace {
const char* nameOf(const TIVariable* v) { return v && v->getClass() ? v->getClass()->getName().c_str() : "VOID"; }
}  // namespace

void TICastManager::vAppendCast(const char* from, const char* to, TCast cast, bool bReplace) {
  KX_TRY {
    const std::string f = from ? from : "", t = to ? to : "";
    for (auto& e : casts_)
      if (e.from == f && e.to == t) {
        if (!bReplace) KX_THROW(ulCastExists, "Cast %s -> %s exists", f.c_str(), t.c_str());
        e.cast = cast;
        return;
      }
    casts_.push_back({f, t, cast});
  }
  KX_CATCH
}

bool TICastManager::bCanCast(const char* from, std::vector<std::string>& targets) const {
  targets.clear();
  for (const auto& e : casts_)
    if (from && e.from == from) targets.push_back(e.to);
  return !targets.empty();
}

void TICastManager::vExecCast(const TIVariable* from, TIVariable* to) const {
  KX_TRY {
    const std::string f = nameOf(from), t = nameOf(to);
    for (const auto& e : casts_)
      if (e.from == f && e.to == t) {
        e.cast(from, to);
        return;
      }
    KX_THROW(ulCastMissing, "Cast %s -> %s not found", f.c_str(), t.c_str());
  }
  KX_CATCH
}

namespace {
void intToFloat(const TIVariable* from, TIVariable* to) { to->setContent(static_cast<double>(from->getLong())); }
void floatToInt(const TIVariable* from, TIVariable* to) {
  const double d = from->getDouble();
  int32_t v = 0;
  if (d >= 2147483647.0)
    v = INT32_MAX;
  else if (d <= -2147483648.0)
    v = INT32_MIN;
  else if (!std::isnan(d))
    v = static_cast<int32_t>(d);
  to->setContent(v);
}
void intToLiteral(const TIVariable* from, TIVariable* to) { to->setContent(std::to_string(from->getLong()).c_str()); }
void floatToLiteral(const TIVariable* from, TIVariable* to) {
  const kx::platform::CNumericScope cLocale;
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.17g", from->getDouble());
  to->setContent(buffer);
}
void literalToInt(const TIVariable* from, TIVariable* to) { to->setContent(iParseIntText(from->getString())); }
void literalToFloat(const TIVariable* from, TIVariable* to) { to->setContent(dParseFloatText(from->getString())); }
}  // namespace

void TIEmbeddedCast::vAppendCasts(TICastManager& manager) {
  manager.vAppendCast("INT", "FLOAT", intToFloat, true);
  manager.vAppendCast("INT", "LITERAL", intToLiteral, true);
  manager.vAppendCast("FLOAT", "INT", floatToInt, true);
  manager.vAppendCast("FLOAT", "LITERAL", floatToLiteral, true);
  manager.vAppendCast("LITERAL", "INT", literalToInt, true);
  manager.vAppendCast("LITERAL", "FLOAT", literalToFloat, true);
}
