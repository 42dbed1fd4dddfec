// STATISTIC: the statistic of an object of an object list on a float
// picture, with a classifier: per class count, mean, sigma, minimum,
// maximum and the rest, updated when picture, object or classifier change.
#include <cstdio>
#include <memory>
#include <string>

#include "file98/TIniFilename.h"
#include "file98/TKxStdIniFile.h"
#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxhost/KxHost.h"
#include "kxhost/THostObjects.h"
#include "rastrix/TFloatPicture.h"
#include "statistik/TPicStatistikPlaneBasic.h"

namespace {

constexpr unsigned long ulNotBound = 0x5100000UL;

struct THostStatistic {
  int kind = 0;
  Rastrix::TPixelKlassifikator* k = nullptr;
  std::unique_ptr<TPicStatistikPlaneBasic> s;
};

THostStatistic& stat(TIVariable* v) { return kxhost::object<THostStatistic>(v); }
TPicStatistikPlaneBasic& bound(TIVariable* v) {
  THostStatistic& h = stat(v);
  if (!h.s) KX_THROW(ulNotBound, "STATISTIC %s: nicht gebunden (bind) / not bound (bind)", v->getName());
  return *h.s;
}
std::string text(TIVariable* v) { return v->getString() ? v->getString() : ""; }

void create(TIVariable** c) { kxhost::makeObject<THostStatistic>(c[0]); }
void destroy(TIVariable** c) { kxhost::freeObject<THostStatistic>(c[0]); }
void kind(TIVariable** c) {
  std::unique_ptr<TResultStatistik> probe(TStatistikBasic::pGetStatPtr(c[2]->getLong()));  // checks the kind
  stat(c[0]).kind = c[2]->getLong();
}
void classifier(TIVariable** c) {
  auto* h = static_cast<kxhost::THostClassifier*>(c[2]->getPointer());
  if (!h) KX_THROW(ulNotBound, "CLASSIFIER %s: nicht angelegt / not created", c[2]->getName());
  THostStatistic& s = stat(c[0]);
  s.k = h->k.get();
  if (s.s) s.s->vSetKlassifikator(s.k);
}
void bind(TIVariable** c) {
  auto* pic = static_cast<Rastrix::TFloatPicture*>(c[2]->getPointer());
  auto* list = static_cast<TObjectList98*>(c[3]->getPointer());
  if (!pic || pic->getLines() <= 0) KX_THROW(0xe7a500c1UL, "PICTURE %s: keine Pixel / no pixels", c[2]->getName());
  if (!list) KX_THROW(ulNotBound, "OBJLIST %s: nicht angelegt / not created", c[3]->getName());
  THostStatistic& h = stat(c[0]);
  std::unique_ptr<TResultStatistik> result(TStatistikBasic::pGetStatPtr(h.kind));
  auto s = std::make_unique<TPicStatistikPlaneBasic>(c[4]->getLong(), pic, result.get());
  s->setObject(c[4]->getLong(), list, false);
  if (h.k) s->vSetKlassifikator(h.k);
  s->setPictureProperties(pic);
  h.s = std::move(s);
}
void update(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(bound(c[0]).bConditionalUpdate(false))); }
void classes(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(bound(c[0]).uGetKlassifikatorSize())); }
int number(TIVariable* v) {
  const int t = v->getLong();
  if (t < 0 || t > eYMax) KX_THROW(0x5100000UL, "Zahl %d nicht in 0...14 / number %d not in 0...14", t, t);
  return t;
}
void get(TIVariable** c) {
  const unsigned cls = static_cast<unsigned>(c[2]->getLong());
  c[1]->setContent(bound(c[0]).getResult(0, cls)->dGetNumber(number(c[3])));
}
// One line per class: object, class, count, mean, sigma, min, max, tab
// separated.
void table(TIVariable** c) {
  TPicStatistikPlaneBasic& s = bound(c[0]);
  std::string out;
  char line[256];
  for (unsigned k = 0; k < s.uGetKlassifikatorSize(); ++k) {
    const double* e = s.getResult(0, k)->rRGetXResult().dpGetErg();
    std::snprintf(line, sizeof line, "%s\t%u\t%.0f\t%.6g\t%.6g\t%.6g\t%.6g\r\n", s.strGetObjectName().c_str(), k, e[0],
                  e[1], e[2], e[3], e[4]);
    out += line;
  }
  c[1]->setContent(out.c_str());
}
void head(TIVariable** c) { c[1]->setContent("Objekt\tKlasse\tAnz\tMittel\tSigma\tMin\tMax\r\n"); }
void save(TIVariable** c) {
  TKxStdIniFile ini{TIniFilename(text(c[2]))};
  bound(c[0]).vWriteIni(&ini, text(c[3]).c_str());
  ini.vFlush();
}
void status(const TIVariable* v, char* buffer, int size) {
  const auto* h = static_cast<const THostStatistic*>(v->getPointer());
  if (buffer && size > 0)
    std::snprintf(buffer, static_cast<std::size_t>(size), "%s, %s", h ? strGetStatistikName(h->kind) : "-",
                  h && h->s ? "bound" : "not bound");
}

}  // namespace

std::unique_ptr<TIUserBasic> kxhost::pStatisticClass() {
  const char* L = "LITERAL";
  const char* N = "INT";
  const char* D = "FLOAT";
  return std::make_unique<TITableClass>(
      "STATISTIC", "Eine Statistik eines Objekts.\r\nA statistic of an object.", status,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, create},
          {"destroy", nullptr, {}, destroy},
          {"kind", nullptr, {N}, kind, "kind(Typ 0...16) / kind(type 0...16)"},
          {"classifier", nullptr, {"CLASSIFIER"}, classifier, "classifier(Klassifikator) / classifier(classifier)"},
          {"bind", nullptr, {"PICTURE", "OBJLIST", N}, bind, "bind(Bild,Objektliste,Index) / bind(picture,list,index)"},
          {"update", N, {}, update, "1 wenn neu gerechnet / 1 when computed"},
          {"classes", N, {}, classes},
          {"get", D, {N, N}, get, "get(Klasse,Zahl 0...14) / get(class,number 0...14)"},
          {"head", L, {}, head, "Kopfzeile der Tabelle / head line of the table"},
          {"table", L, {}, table, "Objekt, Klasse, Anz, Mittel, Sigma, Min, Max je Klasse / per class"},
          {"save", nullptr, {L, L}, save, "save(Ini-Datei,Sektion) / save(ini file,section)"}});
}
