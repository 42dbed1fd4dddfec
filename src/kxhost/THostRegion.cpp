// REGION: a run-length region (the pixels of an evaluation area).
#include <algorithm>
#include <cstdio>
#include <string>

#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxhost/KxHost.h"
#include "kxhost/THostObjects.h"
#include "object98/TOPointList.h"
#include "object98/TPicture2RLC.h"
#include "object98/TRLCArray.h"
#include "rastrix/TFloatPicture.h"

using Picture = Rastrix::TFloatPicture;

namespace {

TRLCArray& region(TIVariable* v) { return kxhost::object<TRLCArray>(v); }
int32_t I(TIVariable* v) { return v->getLong(); }

void create(TIVariable** c) { kxhost::makeObject<TRLCArray>(c[0]); }
void destroy(TIVariable** c) { kxhost::freeObject<TRLCArray>(c[0]); }
void rect(TIVariable** c) {
  const int x1 = I(c[2]), y1 = I(c[3]), x2 = I(c[4]), y2 = I(c[5]);
  region(c[0]).calcRLC(TOPointList<int>(eRectangle, {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}}));
}
void circle(TIVariable** c) {
  const int x = I(c[2]), y = I(c[3]), r = I(c[4]);
  region(c[0]).calcRLC(TOPointList<int>(eCircle, {{x, y}, {x + r, y}}));
}
void threshold(TIVariable** c) {
  const auto* p = static_cast<const Picture*>(c[2]->getPointer());
  if (!p) KX_THROW(0xe7a500c1UL, "PICTURE %s: keine Pixel / no pixels", c[2]->getName());
  TPicture2RLC::vFloatPicture2RLC(*p, region(c[0]), static_cast<float>(c[3]->getDouble()),
                                  static_cast<float>(c[4]->getDouble()));
}
void unite(TIVariable** c) { region(c[0]) |= region(c[2]); }
void intersect(TIVariable** c) { region(c[0]) &= region(c[2]); }
void exclusive(TIVariable** c) { region(c[0]) ^= region(c[2]); }
void copy(TIVariable** c) { region(c[0]) = region(c[2]); }
void count(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(region(c[0]).pixel())); }

// The mean of the picture's pixels inside the region (those inside the
// picture); 0 when none is.
void mean(TIVariable** c) {
  const TRLCArray& r = region(c[0]);
  const auto* p = static_cast<const Picture*>(c[2]->getPointer());
  double sum = 0;
  long n = 0;
  if (p && r.size() > 0)
    for (int line = r.getFirstLine(); line <= r.getLastLine(); ++line) {
      if (line < p->getFirstLine() || line >= p->getFirstLine() + p->getLines()) continue;
      const float* row = (*p)[line];
      for (const TRLC& run : r[line]) {
        const int from = std::max(run.FirstColumn, p->getFirstColumn());
        const int to = std::min(run.LastColumn, p->getFirstColumn() + p->getColumns() - 1);
        for (int k = from; k <= to; ++k, ++n) sum += row[k];
      }
    }
  c[1]->setContent(n ? sum / static_cast<double>(n) : 0.0);
}

void status(const TIVariable* v, char* buffer, int size) {
  const auto* r = static_cast<const TRLCArray*>(v->getPointer());
  if (buffer && size > 0) std::snprintf(buffer, static_cast<std::size_t>(size), "%ld Pixel", r ? r->pixel() : 0L);
}

}  // namespace

std::unique_ptr<TIUserBasic> kxhost::pRegionClass() {
  const char* N = "INT";
  const char* D = "FLOAT";
  const char* P = "PICTURE";
  const char* R = "REGION";
  return std::make_unique<TITableClass>(
      "REGION", "Ein Gebiet in Lauflängenform.\r\nA region in run-length form.", status,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, create},
          {"destroy", nullptr, {}, destroy},
          {"rect", nullptr, {N, N, N, N}, rect, "rect(x1,y1,x2,y2): Rechteck / rectangle"},
          {"circle", nullptr, {N, N, N}, circle, "circle(x,y,Radius) / circle(x,y,radius)"},
          {"threshold", nullptr, {P, D, D}, threshold,
           "threshold(Bild,Unten,Oben): Pixel mit Unten <= Wert <= Oben / pixels with lower <= value <= upper"},
          {"unite", nullptr, {R}, unite, "Vereinigung / union"},
          {"intersect", nullptr, {R}, intersect, "Schnitt / intersection"},
          {"exclusive", nullptr, {R}, exclusive, "Exklusiv-Oder / exclusive or"},
          {"operator=", nullptr, {R}, copy},
          {"count", N, {}, count, "Zahl der Pixel / number of pixels"},
          {"mean", D, {P}, mean, "Mittelwert des Bildes im Gebiet / mean of the picture in the region"}});
}
