// INTTIME: a table of integration times, read from an ini file and walked
// in its three modes.
#include <cstdio>
#include <string>

#include "file98/TIniFilename.h"
#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxhost/KxHost.h"
#include "kxhost/THostObjects.h"
#include "stepcontrol/TStepControl.h"

namespace {

TStepControl& steps(TIVariable* v) { return kxhost::object<TStepControl>(v); }
std::string text(TIVariable* v) { return v->getString() ? v->getString() : ""; }

void create(TIVariable** c) { kxhost::makeObject<TStepControl>(c[0]); }
void destroy(TIVariable** c) { kxhost::freeObject<TStepControl>(c[0]); }
void load(TIVariable** c) { steps(c[0]).readIni(TIniFilename(text(c[2])), text(c[3])); }
void save(TIVariable** c) { steps(c[0]).writeIni(TIniFilename(text(c[2])), text(c[3])); }
void range(TIVariable** c) { steps(c[0]).vSetFromStepTo(c[2]->getDouble(), c[3]->getDouble(), c[4]->getDouble()); }
void all(TIVariable** c) { steps(c[0]).setModeAllValues(); }
void linear(TIVariable** c) { steps(c[0]).setModeLinearValues(c[2]->getDouble()); }
void logarithmic(TIVariable** c) { steps(c[0]).setModeLogarithmicValues(c[2]->getDouble()); }
void first(TIVariable** c) { c[1]->setContent(steps(c[0]).getFirstValue()); }
void last(TIVariable** c) { c[1]->setContent(steps(c[0]).getLastValue()); }
void nearest(TIVariable** c) { c[1]->setContent(steps(c[0]).getCurrentValue(c[2]->getDouble())); }
void current(TIVariable** c) { c[1]->setContent(steps(c[0]).getCurrentValue()); }
// The next (previous) value after the current one; 0 at the end of the table.
void next(TIVariable** c) {
  double v = 0;
  c[1]->setContent(steps(c[0]).getNextValue(steps(c[0]).getCurrentValue(), &v) ? v : 0.0);
}
void previous(TIVariable** c) {
  double v = 0;
  c[1]->setContent(steps(c[0]).getPreviousValue(steps(c[0]).getCurrentValue(), &v) ? v : 0.0);
}
void count(TIVariable** c) {
  TStepControl& s = steps(c[0]);
  c[1]->setContent(static_cast<int32_t>(s.getValueNumberBetween(s.getFirstValue(), s.getLastValue())));
}
// Every value of the mode from the first to the last, in "%g" form.
void sequence(TIVariable** c) {
  TStepControl& s = steps(c[0]);
  double v = s.getCurrentValue(s.getFirstValue());
  std::string out;
  char buf[32];
  for (bool more = true; more; more = s.getNextValue(v, &v)) {
    std::snprintf(buf, sizeof buf, out.empty() ? "%g" : " %g", v);
    out += buf;
  }
  c[1]->setContent(out.c_str());
}
void status(const TIVariable* v, char* buffer, int size) {
  const auto* s = static_cast<const TStepControl*>(v->getPointer());
  if (buffer && size > 0)
    std::snprintf(buffer, static_cast<std::size_t>(size), "%d lines, current %g", s ? s->iGetLineCount() : 0,
                  s ? s->getCurrentValue() : 0.0);
}

}  // namespace

std::unique_ptr<TIUserBasic> kxhost::pIntTimeClass() {
  const char* L = "LITERAL";
  const char* N = "INT";
  const char* D = "FLOAT";
  return std::make_unique<TITableClass>(
      "INTTIME", "Eine Tabelle von Integrationszeiten.\r\nA table of integration times.", status,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, create},
          {"destroy", nullptr, {}, destroy},
          {"load", nullptr, {L, L}, load, "load(Ini-Datei,Sektion) / load(ini file,section)"},
          {"save", nullptr, {L, L}, save, "save(Ini-Datei,Sektion) / save(ini file,section)"},
          {"range", nullptr, {D, D, D}, range, "range(Von,Schritt,Bis) / range(from,step,to)"},
          {"all", nullptr, {}, all, "jeder Tabellenwert / every table value"},
          {"linear", nullptr, {D}, linear, "linear(Schritt) / linear(step)"},
          {"logarithmic", nullptr, {D}, logarithmic, "logarithmic(Faktor) / logarithmic(factor)"},
          {"first", D, {}, first},
          {"last", D, {}, last},
          {"nearest", D, {D}, nearest, "der nächste Tabellenwert, nun aktuell / the nearest value, now current"},
          {"current", D, {}, current},
          {"next", D, {}, next, "der folgende Wert, 0 am Ende / the next value, 0 at the end"},
          {"previous", D, {}, previous, "der vorige Wert, 0 am Anfang / the previous value, 0 at the start"},
          {"sequence", L, {}, sequence, "alle Werte der Betriebsart / every value of the mode"},
          {"count", N, {}, count, "Zahl der Tabellenwerte / number of table values"}});
}
