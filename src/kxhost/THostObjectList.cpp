// OBJLIST: an object list of measuring regions: shapes, groups, names,
// transformations, regions for statistics, ".oa" files and old protocols.
#include <cstdio>
#include <string>

#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxhost/KxHost.h"
#include "kxhost/THostObjects.h"
#include "object98/TObjectList98.h"

namespace {

TObjectList98& list(TIVariable* v) { return kxhost::object<TObjectList98>(v); }
std::string text(TIVariable* v) { return v->getString() ? v->getString() : ""; }
int I(TIVariable* v) { return v->getLong(); }

void create(TIVariable** c) { kxhost::makeObject<TObjectList98>(c[0]); }
void destroy(TIVariable** c) { kxhost::freeObject<TObjectList98>(c[0]); }
void add(TIVariable** c, const TOPointList<int>& p) { c[1]->setContent(static_cast<int32_t>(list(c[0]).append(p))); }
void rect(TIVariable** c) {
  const int x0 = I(c[2]), y0 = I(c[3]), x1 = I(c[4]), y1 = I(c[5]);
  add(c, TOPointList<int>(eRectangle, {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}));
}
void circle(TIVariable** c) {
  add(c, TOPointList<int>(eCircle, {{I(c[2]), I(c[3])}, {I(c[2]) + I(c[4]), I(c[3])}}));
}
void line(TIVariable** c) { add(c, TOPointList<int>(eLine, {{I(c[2]), I(c[3])}, {I(c[4]), I(c[5])}})); }
void point(TIVariable** c) { add(c, TOPointList<int>(ePoint, {{I(c[2]), I(c[3])}})); }
void triangle(TIVariable** c) {
  add(c, TOPointList<int>(ePolygon, {{I(c[2]), I(c[3])}, {I(c[4]), I(c[5])}, {I(c[6]), I(c[7])}}));
}
void select(TIVariable** c) {
  list(c[0])[I(c[2])];  // the index check
  c[1]->setContent(static_cast<int32_t>(list(c[0]).rGetFlagList().selectObject(I(c[2]))));
}
void unselectAll(TIVariable** c) { list(c[0]).rGetFlagList().unselectAll(); }
void group(TIVariable** c) {
  const std::string k = text(c[2]);
  const TOPL_Typ t = k == "or" ? eOrGroup : k == "xor" ? eXorGroup : k == "and" ? eAndGroup : ePoint;
  if (t == ePoint) KX_THROW(0x5100000UL, "OBJLIST: Gruppe \"%s\" unbekannt (or, xor, and) / group not known", k.c_str());
  TObjectList98& l = list(c[0]);
  const int before = l.size();
  l.vCreateGroup(t);
  c[1]->setContent(static_cast<int32_t>(l.size() > before ? l.size() - 1 : -1));
}
void size(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(list(c[0]).size())); }
void name(TIVariable** c) { c[1]->setContent(list(c[0]).sGetFullObjectName(I(c[2])).c_str()); }
void setName(TIVariable** c) { list(c[0]).vSetObjectName(I(c[2]), text(c[3]).c_str()); }
void move(TIVariable** c) { list(c[0]).move(I(c[2]), I(c[3]), I(c[4])); }
void rotate(TIVariable** c) { list(c[0]).rotate(I(c[2]), I(c[3]), I(c[4]), c[5]->getDouble()); }
void erase(TIVariable** c) { list(c[0]).erase(I(c[2]), I(c[3]) != 0); }
void father(TIVariable** c) {
  list(c[0])[I(c[2])];
  c[1]->setContent(static_cast<int32_t>(list(c[0]).rGetRelationList().getVather(I(c[2]))));
}
void region(TIVariable** c) {
  auto* r = static_cast<TRLCArray*>(c[3]->getPointer());
  if (!r) KX_THROW(0x5100000UL, "REGION %s: nicht angelegt / not created", c[3]->getName());
  *r = list(c[0]).rGetRegion(I(c[2]));
}
void pixels(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(list(c[0]).rGetRegion(I(c[2])).pixel())); }
void info(TIVariable** c) { c[1]->setContent(list(c[0]).cpGetObjectInfo(I(c[2]), nullptr)); }
void save(TIVariable** c) { list(c[0]).write(text(c[2]).c_str()); }
void load(TIVariable** c) { list(c[0]).read(text(c[2]).c_str(), false); }
void append(TIVariable** c) { list(c[0]).read(text(c[2]).c_str(), true); }
void exportTable(TIVariable** c) { list(c[0]).vExport(text(c[2]).c_str()); }
void status(const TIVariable* v, char* buffer, int size) {
  const auto* l = static_cast<const TObjectList98*>(v->getPointer());
  if (buffer && size > 0) std::snprintf(buffer, static_cast<std::size_t>(size), "%d objects", l ? l->size() : 0);
}

}  // namespace

std::unique_ptr<TIUserBasic> kxhost::pObjectListClass() {
  const char* L = "LITERAL";
  const char* N = "INT";
  const char* D = "FLOAT";
  return std::make_unique<TITableClass>(
      "OBJLIST", "Eine Liste von Messobjekten.\r\nA list of measuring objects.", status,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, create},
          {"destroy", nullptr, {}, destroy},
          {"rect", N, {N, N, N, N}, rect, "Index=rect(x0,y0,x1,y1) / index=rect(x0,y0,x1,y1)"},
          {"circle", N, {N, N, N}, circle, "Index=circle(x,y,Radius) / index=circle(x,y,radius)"},
          {"line", N, {N, N, N, N}, line, "Index=line(x0,y0,x1,y1)"},
          {"point", N, {N, N}, point, "Index=point(x,y)"},
          {"triangle", N, {N, N, N, N, N, N}, triangle, "Index=triangle(x0,y0,x1,y1,x2,y2)"},
          {"select", N, {N}, select, "select(Index): 1 wenn gewählt / 1 when selected"},
          {"unselectAll", nullptr, {}, unselectAll},
          {"group", N, {L}, group, "Index=group(\"or\"|\"xor\"|\"and\"): die gewählten / the selected"},
          {"size", N, {}, size},
          {"name", L, {N}, name, "voller Name (\"1.2\") / full name"},
          {"setName", nullptr, {N, L}, setName},
          {"father", N, {N}, father, "Vater oder -1 / father or -1"},
          {"move", nullptr, {N, N, N}, move, "move(Index,dx,dy)"},
          {"rotate", nullptr, {N, N, N, D}, rotate, "rotate(Index,x,y,Grad) / rotate(index,x,y,degrees)"},
          {"erase", nullptr, {N, N}, erase, "erase(Index,mit Nachfahren) / erase(index,with descendants)"},
          {"region", nullptr, {N, "REGION"}, region, "region(Index,Region): das Gebiet / the region"},
          {"pixels", N, {N}, pixels, "Pixel des Gebiets / pixels of the region"},
          {"info", L, {N}, info, "Text für die Statuszeile / status line text"},
          {"save", nullptr, {L}, save, "save(Datei.oa) / save(file.oa)"},
          {"load", nullptr, {L}, load, "load(Datei .oa oder .prt) / load(file .oa or .prt)"},
          {"append", nullptr, {L}, append, "append(Datei) / append(file)"},
          {"export", nullptr, {L}, exportTable, "export(Datei): Tabelle / table"}});
}
