#include "kdoint/TISearchPath.h"

#include <cstdio>
#include <string>

#include "file98/TSearchPath.h"
#include "kdoint/TIUserBasic.h"
#include "kdoint/TIVariable.h"

namespace {

TSearchPath* object(TIVariable** c) { return static_cast<TSearchPath*>(c[0]->getPointer()); }
void setObject(TIVariable** c, TSearchPath* p) { c[0]->setContent(static_cast<void*>(p)); }
const char* text(const TIVariable* v) { return v && v->getString() ? v->getString() : ""; }
void setInt(TIVariable* v, bool b) { v->setContent(static_cast<int32_t>(b ? 1 : 0)); }

void spCreate(TIVariable** c) {
  delete object(c);
  setObject(c, nullptr);
  setObject(c, new TSearchPath);
}
void spDestroy(TIVariable** c) {
  delete object(c);
  setObject(c, nullptr);
}
TSearchPath& sp(TIVariable** c) {
  if (!object(c)) setObject(c, new TSearchPath);
  return *object(c);
}
void spInsert(TIVariable** c) { setInt(c[1], sp(c).bInsert(text(c[2]), c[3]->getLong())); }
void spSize(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(sp(c).size())); }
void spElement(TIVariable** c) { c[1]->setContent(sp(c)[c[2]->getLong()].c_str()); }
void spAll(TIVariable** c) { c[1]->setContent(sp(c).sGetSearchPaths().c_str()); }
void spGetDir(TIVariable** c) {
  const std::string dir = sp(c).sGetDir(text(c[2]));
  c[3]->setContent(dir.c_str());
  setInt(c[1], !dir.empty());
}
void spGetPreviousDir(TIVariable** c) {
  const std::string dir = sp(c).sGetPreviousDir(text(c[2]), text(c[3]));
  c[4]->setContent(dir.c_str());
  setInt(c[1], !dir.empty());
}
void spGetPath(TIVariable** c) {
  const std::string path = sp(c).sGetPath(text(c[2]));
  c[3]->setContent(path.c_str());
  setInt(c[1], !path.empty());
}
void spStatus(const TIVariable* v, char* buffer, int size) {
  if (!buffer || size <= 0) return;
  const auto* p = static_cast<const TSearchPath*>(v->getPointer());
  std::snprintf(buffer, static_cast<std::size_t>(size), "%s", p ? p->sGetSearchPaths().c_str() : "");
}

constexpr const char* sHelp =
    "Suchpfad: eine geordnete Liste von Verzeichnissen, in denen Makros und Ini-Dateien gesucht werden.\r\n"
    "Search path: an ordered list of directories in which macros and ini files are looked for.";

}  // namespace

TSearchPath* pGetSearchPath(const TIVariable* v) {
  return v && v->getClass() && v->getClass()->getName() == "SEARCHPATH" ? static_cast<TSearchPath*>(v->getPointer())
                                                                          : nullptr;
}

std::unique_ptr<TIUserBasic> pSearchPathClassProvider() {
  const char* L = "LITERAL";
  const char* N = "INT";
  return std::make_unique<TITableClass>(
      "SEARCHPATH", sHelp, spStatus,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, spCreate},
          {"destroy", nullptr, {}, spDestroy},
          {"insert", N, {L, N}, spInsert,
           "Ret=insert(Dir,Count): Dir und mit Count>1 die Verzeichnisse darüber, die längsten zuerst"},
          {"size", N, {}, spSize},
          {"element", L, {N}, spElement},
          {"getAllPaths", L, {}, spAll},
          {"getDir", N, {L, L}, spGetDir, "Ret=getDir(File,Dir): Verzeichnis der Datei, leer wenn nicht gefunden"},
          {"getPreviousDir", N, {L, L, L}, spGetPreviousDir,
           "Ret=getPreviousDir(File,After,Dir): sucht hinter dem Verzeichnis After"},
          {"getPath", N, {L, L}, spGetPath, "Ret=getPath(File,Path): ganzer Pfad der Datei"}});
}
