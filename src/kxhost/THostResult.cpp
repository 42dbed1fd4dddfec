// RESULT: a result of a statistic over a float picture, whole or inside a
// region: the plain result, a histogram, a bit histogram, a projection, a
// line profile, a series over runs or a short-time window.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "file98/TIniFilename.h"
#include "file98/TKxStdIniFile.h"
#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxhost/KxHost.h"
#include "kxhost/THostObjects.h"
#include "object98/TRLCArray.h"
#include "rastrix/TFloatPicture.h"
#include "statistik/TResultCutTime.h"
#include "statistik/TResultHist.h"
#include "statistik/TResultProjection.h"

using namespace Rastrix;
using Picture = TFloatPicture;

namespace {

constexpr unsigned long ulNoPicture = 0xe7a500c1UL;

struct TKind {
  const char* name;
  TResultStatistik* (*make)();
};
const TKind aKinds[] = {
    {"standard", [] { return new TResultStatistik; }},
    {"cut", [] { return static_cast<TResultStatistik*>(new TResultCut); }},
    {"hist", [] { return static_cast<TResultStatistik*>(new TResultHist); }},
    {"bithist", [] { return static_cast<TResultStatistik*>(new TResultBitHist); }},
    {"projection", [] { return static_cast<TResultStatistik*>(new TResultProjection); }},
    {"line", [] { return static_cast<TResultStatistik*>(new TResultCutXY); }},
    {"time", [] { return static_cast<TResultStatistik*>(new TResultCutTime); }},
    {"short", [] { return static_cast<TResultStatistik*>(new TResultCutTimeShort); }},
};

// A plain result until another kind is chosen.
struct THostResult {
  std::unique_ptr<TResultStatistik> r = std::make_unique<TResultStatistik>();
  const char* kind = "standard";
};

THostResult& res(TIVariable* v) { return kxhost::object<THostResult>(v); }
std::string text(TIVariable* v) { return v->getString() ? v->getString() : ""; }
const Picture& picture(TIVariable* v) {
  const auto* p = static_cast<const Picture*>(v->getPointer());
  if (!p || p->getLines() <= 0) KX_THROW(ulNoPicture, "PICTURE %s: keine Pixel / no pixels", v->getName());
  return *p;
}
template <class T>
T& as(TIVariable* v, const char* what) {
  auto* p = dynamic_cast<T*>(res(v).r.get());
  if (!p) KX_THROW(0x5100000UL, "RESULT %s: kein %s / not a %s", v->getName(), what, what);
  return *p;
}

void create(TIVariable** c) { kxhost::makeObject<THostResult>(c[0]); }
void destroy(TIVariable** c) { kxhost::freeObject<THostResult>(c[0]); }
void kind(TIVariable** c) {
  const std::string k = text(c[2]);
  for (const TKind& t : aKinds)
    if (k == t.name) {
      res(c[0]).r.reset(t.make());
      res(c[0]).kind = t.name;
      return;
    }
  KX_THROW(0x5100000UL, "RESULT: Art \"%s\" unbekannt / kind \"%s\" not known", k.c_str(), k.c_str());
}

// The pixels of one line from column `from` to `to` (cut to the picture), as
// one run.
void addRun(TResultStatistik& r, const Picture& p, int line, int from, int to, std::vector<double>& buf) {
  from = std::max(from, p.getFirstColumn());
  to = std::min(to, p.getFirstColumn() + p.getColumns() - 1);
  if (to < from) return;
  const float* row = p[line];
  buf.assign(row + from, row + to + 1);
  r.addValuesLC(buf.data(), to - from + 1, line, from, 1.0, 1.0, line, from);
}
void add(TIVariable** c) {
  const Picture& p = picture(c[2]);
  std::vector<double> buf;
  for (int l = p.getFirstLine(); l < p.getFirstLine() + p.getLines(); ++l)
    addRun(*res(c[0]).r, p, l, p.getFirstColumn(), p.getFirstColumn() + p.getColumns() - 1, buf);
}
void addRegion(TIVariable** c) {
  const Picture& p = picture(c[2]);
  const auto* region = static_cast<const TRLCArray*>(c[3]->getPointer());
  if (!region || region->size() <= 0) return;
  std::vector<double> buf;
  const int first = std::max(region->getFirstLine(), p.getFirstLine());
  const int last = std::min(region->getLastLine(), p.getFirstLine() + p.getLines() - 1);
  for (int l = first; l <= last; ++l)
    for (const TRLC& run : (*region)[l]) addRun(*res(c[0]).r, p, l, run.FirstColumn, run.LastColumn, buf);
}
void addValue(TIVariable** c) { res(c[0]).r->addValue(c[2]->getDouble(), 1.0); }
void stop(TIVariable** c) { res(c[0]).r->stop(); }
void reset(TIVariable** c) { res(c[0]).r->vReset(); }
int type(TIVariable* v) {
  const int32_t t = v->getLong();
  if (t < 0 || t > eYMax) KX_THROW(0x5100000UL, "RESULT: Zahl %d nicht in 0...14 / number %d not in 0...14", t, t);
  return t;
}
void get(TIVariable** c) { c[1]->setContent(res(c[0]).r->dGetNumber(type(c[2]))); }
void getT(TIVariable** c) {
  const int t = type(c[2]);
  c[1]->setContent(t <= eFlaeche ? res(c[0]).r->rRGetTResult().dpGetErg()[t] : 0.0);
}
void format(TIVariable** c) { c[1]->setContent(res(c[0]).r->strFormat(type(c[2])).c_str()); }
void setUnit(TIVariable** c) { res(c[0]).r->setValueUnit(text(c[2]), text(c[3])); }
std::vector<double> profile(TIVariable* v, int t) { return as<TResultCut>(v, "Profil / profile").vdGetCutX(t); }
void size(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(profile(c[0], eMittel).size())); }
void entry(TIVariable** c) {
  const std::vector<double> p = profile(c[0], c[3]->getLong() == eReferenz ? eReferenz : type(c[3]));
  const int32_t i = c[2]->getLong();
  if (i < 0 || static_cast<std::size_t>(i) >= p.size())
    KX_THROW(0x5100000UL, "RESULT: Eintrag %d nicht in 0...%d / entry %d not in 0...%d", i,
             static_cast<int>(p.size()) - 1, i, static_cast<int>(p.size()) - 1);
  c[1]->setContent(p[static_cast<std::size_t>(i)]);
}
void hist(TIVariable** c) {
  as<TResultHist>(c[0], "Histogramm / histogram")
      .setHistStartStepStop(c[2]->getDouble(), c[3]->getDouble(), c[4]->getDouble(), true);
}
void integral(TIVariable** c) { as<TResultHist>(c[0], "Histogramm / histogram").vSetIntegral(c[2]->getLong() != 0); }
void projection(TIVariable** c) {
  as<TResultProjection>(c[0], "Projektion / projection")
      .vSetProjectionAngleStepRegion(c[2]->getDouble(), c[3]->getDouble(),
                                     CRectangle(c[4]->getLong(), c[5]->getLong(), c[6]->getLong(), c[7]->getLong()));
}
void span(TIVariable** c) { as<TResultCutTimeShort>(c[0], "Zeitfenster / window").vSetSpan(c[2]->getDouble()); }
void useIndex(TIVariable** c) {
  if (auto* t = dynamic_cast<TResultCutTime*>(res(c[0]).r.get()))
    t->vSetUseIndex(c[2]->getLong() != 0);
  else
    as<TResultCutTimeShort>(c[0], "Zeitreihe / series").vSetUseIndex(c[2]->getLong() != 0);
}
void save(TIVariable** c) {
  TKxStdIniFile ini{TIniFilename(text(c[2]))};
  res(c[0]).r->vWriteIni(&ini, text(c[3]).c_str());
  ini.vFlush();
}
void load(TIVariable** c) {
  TKxStdIniFile ini{TIniFilename(text(c[2]))};
  res(c[0]).r->vReadIni(&ini, text(c[3]).c_str());
}
void merge(TIVariable** c) {
  const auto* o = static_cast<const THostResult*>(c[2]->getPointer());
  if (!o) KX_THROW(0x5100000UL, "RESULT %s: nicht angelegt / not created", c[2]->getName());
  res(c[0]).r->vMerge(*o->r);
}
void status(const TIVariable* v, char* buffer, int size) {
  const auto* h = static_cast<const THostResult*>(v->getPointer());
  if (buffer && size > 0)
    std::snprintf(buffer, static_cast<std::size_t>(size), "%s, %g values", h ? h->kind : "-",
                  h ? h->r->rRGetXResult().dGetCount() : 0.0);
}

}  // namespace

std::unique_ptr<TIUserBasic> kxhost::pResultClass() {
  const char* L = "LITERAL";
  const char* N = "INT";
  const char* D = "FLOAT";
  const char* P = "PICTURE";
  return std::make_unique<TITableClass>(
      "RESULT", "Ein Ergebnis einer Statistik.\r\nA result of a statistic.", status,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, create},
          {"destroy", nullptr, {}, destroy},
          {"kind", nullptr, {L}, kind,
           "kind(Art): standard, cut, hist, bithist, projection, line, time, short / kind(name)"},
          {"add", nullptr, {P}, add, "add(Bild): alle Pixel / add(picture): every pixel"},
          {"addRegion", nullptr, {P, "REGION"}, addRegion, "addRegion(Bild,Region) / addRegion(picture,region)"},
          {"addValue", nullptr, {D}, addValue, "addValue(Wert) / addValue(value)"},
          {"stop", nullptr, {}, stop, "beendet den Lauf / ends the run"},
          {"reset", nullptr, {}, reset},
          {"get", D, {N}, get, "Zahl 0...14 des Laufs / number 0...14 of the run"},
          {"getT", D, {N}, getT, "Zahl 0...5 über die Läufe / number 0...5 across runs"},
          {"text", L, {N}, format, "Name = Wert Einheit / name = value unit"},
          {"setUnit", nullptr, {L, L}, setUnit, "setUnit(Größe,Einheit) / setUnit(value,unit)"},
          {"size", N, {}, size, "Einträge des Profils / entries of the profile"},
          {"entry", D, {N, N}, entry, "entry(Index,Zahl) / entry(index,number)"},
          {"hist", nullptr, {D, D, D}, hist, "hist(Start,Schritt,Stop) / hist(start,step,stop)"},
          {"integral", nullptr, {N}, integral, "integral(0|1): Summenhistogramm / cumulative"},
          {"projection", nullptr, {D, D, N, N, N, N}, projection,
           "projection(Winkel,Schritt,Zeile1,Zeile2,Spalte1,Spalte2) / (angle,step,line1,line2,column1,column2)"},
          {"span", nullptr, {D}, span, "span(Sekunden) / span(seconds)"},
          {"useIndex", nullptr, {N}, useIndex, "useIndex(0|1)"},
          {"merge", nullptr, {"RESULT"}, merge, "merge(Ergebnis): Pixel eines anderen Teils / another part's pixels"},
          {"save", nullptr, {L, L}, save, "save(Ini-Datei,Sektion) / save(ini file,section)"},
          {"load", nullptr, {L, L}, load, "load(Ini-Datei,Sektion) / load(ini file,section)"}});
}
