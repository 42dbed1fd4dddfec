// CLASSIFIER: a pixel classifier for float pictures (threshold, luminance
// contrast or integral), and CLASSLIST: the catalogue of classifiers.
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
#include "rastrix/TPixelKlassifikatorTypThreshold.h"
#include "statistik/TKlassifikatorArray.h"

using namespace Rastrix;
using Picture = TFloatPicture;

using kxhost::THostClassifier;

namespace {

constexpr unsigned long ulNoPicture = 0xe7a500c1UL;


THostClassifier& cls(TIVariable* v) { return kxhost::object<THostClassifier>(v); }
const Picture& picture(TIVariable* v) {
  const auto* p = static_cast<const Picture*>(v->getPointer());
  if (!p || p->getLines() <= 0) KX_THROW(ulNoPicture, "PICTURE %s: keine Pixel / no pixels", v->getName());
  return *p;
}
int32_t I(TIVariable* v) { return v->getLong(); }
unsigned U(TIVariable* v, const char* what) {
  if (v->getLong() < 0) KX_THROW(0x5100000UL, "%s %d < 0", what, static_cast<int>(v->getLong()));
  return static_cast<unsigned>(v->getLong());
}

void create(TIVariable** c) { kxhost::makeObject<THostClassifier>(c[0]); }
void destroy(TIVariable** c) { kxhost::freeObject<THostClassifier>(c[0]); }
void threshold(TIVariable** c) {
  const unsigned n = U(c[2], "classes");
  if (n < 1 || n > 256) KX_THROW(0x5100000UL, "classes %u not in 1...256", n);
  cls(c[0]).k = THostClassifier::make(n);
}
void luminance(TIVariable** c) {
  auto p = std::make_unique<TPixelKlassifikatorTypThresholdContrast<float>>();
  p->resize(0);
  p->vSetThreshold(0, c[2]->getDouble());
  p->vSetThreshold(1, c[3]->getDouble());
  cls(c[0]).k = std::move(p);
}
void integral(TIVariable** c) {
  auto p = std::make_unique<TPixelKlassifikatorTypThresholdIntegral<float>>();
  p->resize(0);
  p->vSetIntegralData(U(c[2], "width"), U(c[3], "height"), c[4]->getDouble(), I(c[5]) != 0);
  p->vSetThreshold(0, c[6]->getDouble());
  cls(c[0]).k = std::move(p);
}
void setThreshold(TIVariable** c) { cls(c[0]).k->vSetThreshold(U(c[2], "index"), c[3]->getDouble()); }
void getThreshold(TIVariable** c) { c[1]->setContent(cls(c[0]).k->dGetThreshold(U(c[2], "index"))); }
void size(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(cls(c[0]).k->size())); }
void classOf(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(cls(c[0]).k->getTyp(static_cast<float>(c[2]->getDouble())))); }

// The class plane of a picture into a picture of class numbers.
void classify(TIVariable** c) {
  const Picture& src = picture(c[2]);
  auto* dst = static_cast<Picture*>(c[3]->getPointer());
  if (!dst) KX_THROW(ulNoPicture, "PICTURE %s: nicht angelegt / not created", c[3]->getName());
  TPlane<unsigned short> classes(src.getLines(), src.getColumns(), src.getFirstLine(), src.getFirstColumn(),
                                 src.getColumns());
  cls(c[0]).k->vClassifyPlane(src, classes, true);
  dst->alloc(src.getLines(), src.getColumns());
  for (int l = 0; l < src.getLines(); ++l)
    for (int k = 0; k < src.getColumns(); ++k)
      (*dst)[dst->getFirstLine() + l][dst->getFirstColumn() + k] =
          classes[src.getFirstLine() + l][src.getFirstColumn() + k];
}
// The number of pixels of a class.
void count(TIVariable** c) {
  const Picture& src = picture(c[2]);
  const unsigned which = U(c[3], "class");
  TPlane<unsigned short> classes(src.getLines(), src.getColumns(), src.getFirstLine(), src.getFirstColumn(),
                                 src.getColumns());
  cls(c[0]).k->vClassifyPlane(src, classes, true);
  int32_t n = 0;
  for (int l = src.getFirstLine(); l <= src.getLastLine(); ++l)
    for (int k = src.getFirstColumn(); k <= src.getLastColumn(); ++k) n += classes[l][k] == which;
  c[1]->setContent(n);
}
std::string text(TIVariable* v) { return v->getString() ? v->getString() : ""; }
void save(TIVariable** c) {
  TKxStdIniFile ini{TIniFilename(text(c[2]))};
  cls(c[0]).k->vWriteIni(&ini, text(c[3]).c_str());
  ini.vFlush();
}
void load(TIVariable** c) {
  TKxStdIniFile ini{TIniFilename(text(c[2]))};
  cls(c[0]).k->vReadIni(&ini, text(c[3]).c_str());
}

void status(const TIVariable* v, char* buffer, int size) {
  const auto* h = static_cast<const THostClassifier*>(v->getPointer());
  if (buffer && size > 0)
    std::snprintf(buffer, static_cast<std::size_t>(size), "%s, %u classes",
                  h ? TPixelKlassifikator::strGetTypString(h->k->eGetKlassifikatorTyp()) : "-", h ? h->k->size() : 0u);
}

// CLASSLIST
TKlassifikatorArray& list(TIVariable* v) { return kxhost::object<TKlassifikatorArray>(v); }
void listCreate(TIVariable** c) { kxhost::makeObject<TKlassifikatorArray>(c[0]); }
void listDestroy(TIVariable** c) { kxhost::freeObject<TKlassifikatorArray>(c[0]); }
void defaults(TIVariable** c) { list(c[0]).vAddDefaults(); }
void listSize(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(list(c[0]).size())); }
void addLuminance(TIVariable** c) {
  TKlassifikatorArray& a = list(c[0]);
  c[1]->setContent(static_cast<int32_t>(a.iGetIndex(a.pAddLuminanceType(c[2]->getDouble(), c[3]->getDouble()))));
}
void remove(TIVariable** c) { list(c[0]).vDelete(U(c[2], "index")); }
void listSave(TIVariable** c) {
  TKxStdIniFile ini{TIniFilename(text(c[2]))};
  list(c[0]).vWriteIni(&ini, text(c[3]).c_str());
  ini.vFlush();
}
void listLoad(TIVariable** c) {
  TKxStdIniFile ini{TIniFilename(text(c[2]))};
  list(c[0]).vReadIni(&ini, text(c[3]).c_str());
}
void exportText(TIVariable** c) { list(c[0]).vExport(text(c[2]).c_str()); }
void listStatus(const TIVariable* v, char* buffer, int size) {
  const auto* a = static_cast<const TKlassifikatorArray*>(v->getPointer());
  if (buffer && size > 0) std::snprintf(buffer, static_cast<std::size_t>(size), "%u classifiers", a ? a->size() : 0u);
}

}  // namespace

std::unique_ptr<TIUserBasic> kxhost::pClassifierClass() {
  const char* L = "LITERAL";
  const char* N = "INT";
  const char* D = "FLOAT";
  const char* P = "PICTURE";
  return std::make_unique<TITableClass>(
      "CLASSIFIER", "Ein Pixelklassifikator für Float-Bilder.\r\nA pixel classifier for float pictures.", status,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, create},
          {"destroy", nullptr, {}, destroy},
          {"threshold", nullptr, {N}, threshold, "threshold(Klassen): Schwellen / thresholds (classes)"},
          {"luminance", nullptr, {D, D}, luminance, "luminance(Unten,Oben): 3 Klassen / 3 classes"},
          {"integral", nullptr, {N, N, D, N, D}, integral,
           "integral(Breite,Hoehe,Faktor,Negativ,Schwelle) / integral(width,height,factor,negative,threshold)"},
          {"setThreshold", nullptr, {N, D}, setThreshold, "setThreshold(Index,Wert) / setThreshold(index,value)"},
          {"getThreshold", D, {N}, getThreshold},
          {"size", N, {}, size, "Zahl der Klassen / number of classes"},
          {"classOf", N, {D}, classOf, "Klasse eines Wertes / class of a value"},
          {"classify", nullptr, {P, P}, classify, "classify(Bild,Klassenbild) / classify(picture,class picture)"},
          {"count", N, {P, N}, count, "count(Bild,Klasse): Pixel der Klasse / pixels of the class"},
          {"save", nullptr, {L, L}, save, "save(Ini-Datei,Sektion) / save(ini file,section)"},
          {"load", nullptr, {L, L}, load, "load(Ini-Datei,Sektion) / load(ini file,section)"}});
}

std::unique_ptr<TIUserBasic> kxhost::pClassListClass() {
  const char* L = "LITERAL";
  const char* N = "INT";
  const char* D = "FLOAT";
  return std::make_unique<TITableClass>(
      "CLASSLIST", "Der Katalog der Klassifikatoren.\r\nThe catalogue of classifiers.", listStatus,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, listCreate},
          {"destroy", nullptr, {}, listDestroy},
          {"defaults", nullptr, {}, defaults, "die Standardklassifikatoren / the default classifiers"},
          {"size", N, {}, listSize},
          {"addLuminance", N, {D, D}, addLuminance, "Index=addLuminance(Unten,Oben) / index=addLuminance(lower,upper)"},
          {"remove", nullptr, {N}, remove, "remove(Index) / remove(index)"},
          {"save", nullptr, {L, L}, listSave, "save(Ini-Datei,Sektion) / save(ini file,section)"},
          {"load", nullptr, {L, L}, listLoad, "load(Ini-Datei,Sektion) / load(ini file,section)"},
          {"export", nullptr, {L}, exportText, "export(Datei): Tabellen als Text / tables as text"}});
}
