// PICTURE: a float picture (a plane of floats, luminance in cd/m²).
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include "HDF5/TH5Database.h"
#include "HDF5/TH5General.h"
#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxhost/KxHost.h"
#include "kxhost/THostObjects.h"
#include "rastrix/TFloatPicture.h"
#include "rastrix/TImageConverter.h"

using Picture = Rastrix::TFloatPicture;

namespace {

constexpr unsigned long ulNoPicture = 0xe7a500c1UL;  // a picture without content

Picture& pic(TIVariable* v) { return kxhost::object<Picture>(v); }
Picture& filled(TIVariable* v) {
  Picture& p = pic(v);
  if (p.getLines() <= 0 || p.getColumns() <= 0) KX_THROW(ulNoPicture, "PICTURE %s: keine Pixel / no pixels", v->getName());
  return p;
}

void create(TIVariable** c) { kxhost::makeObject<Picture>(c[0]); }
void destroy(TIVariable** c) { kxhost::freeObject<Picture>(c[0]); }
void alloc(TIVariable** c) {
  const int lines = c[2]->getLong(), columns = c[3]->getLong();
  pic(c[0]).alloc(lines, columns);
  pic(c[0]).clear();
}
void width(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(pic(c[0]).getColumns())); }
void height(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(pic(c[0]).getLines())); }
void fill(TIVariable** c) { filled(c[0]).setRectangle(static_cast<float>(c[2]->getDouble())); }
void ramp(TIVariable** c) {
  Picture& p = filled(c[0]);
  const double start = c[2]->getDouble(), step = c[3]->getDouble();
  for (int l = 0; l < p.getLines(); ++l)
    for (int k = 0; k < p.getColumns(); ++k)
      p[p.getFirstLine() + l][p.getFirstColumn() + k] = static_cast<float>(start + step * (l + k));
}
float& at(TIVariable** c) {
  Picture& p = filled(c[0]);
  const int line = c[2]->getLong(), column = c[3]->getLong();
  if (line < 0 || column < 0 || line >= p.getLines() || column >= p.getColumns())
    KX_THROW(ulNoPicture, "PICTURE %s: Pixel (%d,%d) außerhalb / outside %dx%d", c[0]->getName(), line, column,
             p.getLines(), p.getColumns());
  return p[p.getFirstLine() + line][p.getFirstColumn() + column];
}
void setPixel(TIVariable** c) { at(c) = static_cast<float>(c[4]->getDouble()); }
void getPixel(TIVariable** c) { c[1]->setContent(static_cast<double>(at(c))); }

template <int What>
void statistic(TIVariable** c) {
  const Picture& p = filled(c[0]);
  double sum = 0, lo = std::numeric_limits<double>::infinity(), hi = -lo;
  for (int l = 0; l < p.getLines(); ++l) {
    const float* row = p[p.getFirstLine() + l] + p.getFirstColumn();
    for (int k = 0; k < p.getColumns(); ++k) {
      sum += row[k];
      lo = std::fmin(lo, row[k]);
      hi = std::fmax(hi, row[k]);
    }
  }
  const double n = static_cast<double>(p.getLines()) * p.getColumns();
  c[1]->setContent(What == 0 ? sum / n : What == 1 ? lo : hi);
}
void scale(TIVariable** c) { filled(c[0]) *= static_cast<float>(c[2]->getDouble()); }
void copy(TIVariable** c) { pic(c[0]) = pic(c[2]); }

// The data base for one save or load, closed again whatever happens.
struct TFileOfCall {
  TH5Database* db = TH5Database::pOpenHDF5();
  TH5File* file = nullptr;
  ~TFileOfCall() {
    try {
      if (file) db->vCloseFile("kxhost");
    } catch (unsigned long) {
      kx::deleteError();
    }
    TH5Database::vCloseHDF5(&db);
  }
};

std::string dataPath(const TIVariable* v) { return v->getString() && *v->getString() ? v->getString() : "/Picture"; }

// HDF5: the picture as a 2-D float data set `path` in `file`.
void saveHDF5(TIVariable** c) {
  const Picture& p = filled(c[0]);
  TFileOfCall h5;
  h5.file = TH5Database::bExistFile(c[2]->getString() ? c[2]->getString() : "")
                ? h5.db->pOpenFile(c[2]->getString(), "kxhost", false, false)
                : h5.db->pCreateFile(c[2]->getString() ? c[2]->getString() : "", "kxhost");
  TH5General g(h5.file, false);
  const std::string path = dataPath(c[3]);
  const auto slash = path.find_last_of("/\\");
  if (slash != std::string::npos && slash > 0 && !g.bExistDir(path.substr(0, slash)))
    g.vCreateDirectory(path.substr(0, slash));
  g.vCreate2(static_cast<unsigned>(p.getLines()), static_cast<unsigned>(p.getColumns()), TH5Type::eFloat, path, true);
  Picture dense(p.getLines(), p.getColumns(), 0, 0, p.getColumns());
  dense.insert(p);
  g.vWrite(dense.getMemory(), path);
}

void loadHDF5(TIVariable** c) {
  TFileOfCall h5;
  h5.file = h5.db->pOpenFile(c[2]->getString() ? c[2]->getString() : "", "kxhost", false, true);
  TH5General g(h5.file, true);
  const std::string path = dataPath(c[3]);
  if (g.uGetDimensions(path) != 2 || g.uGetDataTypSize(path) != sizeof(float))
    KX_THROW(ulNoPicture, "%s: kein Float-Bild / no float picture", path.c_str());
  const auto lines = g.uGetDimSize(path, 0), columns = g.uGetDimSize(path, 1);
  if (lines == 0 || columns == 0 || lines > (1u << 20) || columns > (1u << 20) || lines * columns > (1ull << 28))
    KX_THROW(ulNoPicture, "%s: %llux%llu", path.c_str(), lines, columns);
  Picture p(static_cast<int>(lines), static_cast<int>(columns), 0, 0, static_cast<int>(columns));
  g.vRead(path, p.getMemory());
  pic(c[0]) = p;
}

// The plane files: raw (".pf") or, for a name holding ".txt", the text form.
void save(TIVariable** c) {
  const char* name = c[2]->getString() ? c[2]->getString() : "";
  if (std::string(name).find(".txt") != std::string::npos)
    filled(c[0]).vPic2AsciiFile(name, true, false);
  else
    filled(c[0]).writeFile(name, true);
}
void load(TIVariable** c) { pic(c[0]).readFile(c[2]->getString() ? c[2]->getString() : "", true); }

void box(TIVariable** c) { filled(c[0]).vBox(c[2]->getLong(), c[3]->getLong()); }
void gauss(TIVariable** c) { filled(c[0]).vGauss(static_cast<unsigned>(std::max(0, static_cast<int>(c[2]->getLong())))); }
void positive(TIVariable** c) { filled(c[0]).greaterNull(); }
void testPicture(TIVariable** c) { filled(c[0]).vMakeTestbild(c[2]->getLong()); }

void status(const TIVariable* v, char* buffer, int size) {
  const auto* p = static_cast<const Picture*>(v->getPointer());
  if (buffer && size > 0)
    std::snprintf(buffer, static_cast<std::size_t>(size), "%d x %d float", p ? p->getLines() : 0,
                  p ? p->getColumns() : 0);
}

}  // namespace

std::unique_ptr<TIUserBasic> kxhost::pPictureClass() {
  const char* L = "LITERAL";
  const char* N = "INT";
  const char* D = "FLOAT";
  const char* P = "PICTURE";
  return std::make_unique<TITableClass>(
      "PICTURE",
      "Ein Float-Bild (Leuchtdichte in cd/m²).\r\nA float picture (luminance in cd/m²).", status,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, create},
          {"destroy", nullptr, {}, destroy},
          {"alloc", nullptr, {N, N}, alloc, "alloc(Zeilen,Spalten) / alloc(lines,columns): mit 0 gefüllt / filled with 0"},
          {"width", N, {}, width},
          {"height", N, {}, height},
          {"fill", nullptr, {D}, fill, "fill(Wert) / fill(value)"},
          {"ramp", nullptr, {D, D}, ramp, "ramp(Start,Schritt): Wert = Start + Schritt*(Zeile+Spalte)"},
          {"setPixel", nullptr, {N, N, D}, setPixel, "setPixel(Zeile,Spalte,Wert) / setPixel(line,column,value)"},
          {"getPixel", D, {N, N}, getPixel, "Wert=getPixel(Zeile,Spalte) / value=getPixel(line,column)"},
          {"mean", D, {}, statistic<0>, "Mittelwert aller Pixel / mean of all pixels"},
          {"min", D, {}, statistic<1>, "Minimum aller Pixel / minimum of all pixels"},
          {"max", D, {}, statistic<2>, "Maximum aller Pixel / maximum of all pixels"},
          {"scale", nullptr, {D}, scale, "scale(Faktor) / scale(factor)"},
          {"operator=", nullptr, {P}, copy},
          {"saveHDF5", nullptr, {L, L}, saveHDF5, "saveHDF5(Datei,Pfad) / saveHDF5(file,path)"},
          {"loadHDF5", nullptr, {L, L}, loadHDF5, "loadHDF5(Datei,Pfad) / loadHDF5(file,path)"},
          {"save", nullptr, {L}, save, "save(Datei): Ebenendatei (.pf) oder Text (.txt) / plane file or text"},
          {"load", nullptr, {L}, load, "load(Datei): Ebenendatei oder Text / plane file or text"},
          {"box", nullptr, {N, N}, box, "box(Breite,Hoehe): Mittelwertfilter / box filter"},
          {"gauss", nullptr, {N}, gauss, "gauss(Ordnung): Gaussfilter / Gaussian filter"},
          {"greaterNull", nullptr, {}, positive, "negative Pixel werden 0 / negative pixels become 0"},
          {"testPicture", nullptr, {N}, testPicture, "testPicture(1..10): Testbild / test picture"}});
}
