// COLORPICTURE: a colour picture (three floats per pixel) in one of the
// colour spaces of the system, CIE RGB at first.
#include <cstdio>
#include <string>

#include "Color/TImageColorSpace.h"
#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxhost/KxHost.h"
#include "kxhost/THostObjects.h"
#include "rastrix/TFloatPicture.h"
#include "rastrix/TImageConverter.h"
#include "rastrix/TRGBFloatPicture.h"

using Rastrix::TImageColorSpace;
using Rastrix::TPixelColorSpace;
using Rastrix::TRGBFloatPixel;
using ColorPicture = Rastrix::TRGBFloatPicture;

namespace {

constexpr unsigned long ulOutside = 0xe7a500c2UL;

ColorPicture& pic(TIVariable* v) { return kxhost::object<ColorPicture>(v); }
unsigned space(TIVariable* v) { return pic(v).rGetPixelColorSpace().uGetToFlag(); }

TRGBFloatPixel& at(TIVariable** c) {
  ColorPicture& p = pic(c[0]);
  const int line = c[2]->getLong(), column = c[3]->getLong();
  if (line < 0 || column < 0 || line >= p.getLines() || column >= p.getColumns())
    KX_THROW(ulOutside, "COLORPICTURE %s: Pixel (%d,%d) außerhalb / outside %dx%d", c[0]->getName(), line, column,
             p.getLines(), p.getColumns());
  return p[p.getFirstLine() + line][p.getFirstColumn() + column];
}

void create(TIVariable** c) { kxhost::makeObject<ColorPicture>(c[0]); }
void destroy(TIVariable** c) { kxhost::freeObject<ColorPicture>(c[0]); }
void alloc(TIVariable** c) {
  ColorPicture& p = pic(c[0]);
  p.alloc(c[2]->getLong(), c[3]->getLong());
  p.clear();
  p.rGetPixelColorSpace().vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::CIE_RGB);
}
// fill(R,G,B): every pixel, in CIE RGB.
void fill(TIVariable** c) {
  TRGBFloatPixel v;
  v.set(static_cast<float>(c[2]->getDouble()), static_cast<float>(c[3]->getDouble()),
        static_cast<float>(c[4]->getDouble()));
  pic(c[0]).setRectangle(v);
}
void setPixel(TIVariable** c) {
  at(c).set(static_cast<float>(c[4]->getDouble()), static_cast<float>(c[5]->getDouble()),
            static_cast<float>(c[6]->getDouble()));
}
// getValue(line,column,index): component `index` (0 the first name) in the
// picture's present space.
void getValue(TIVariable** c) {
  const TRGBFloatPixel& p = at(c);
  const int32_t i = c[4]->getLong();
  if (i < 0 || i > 2) KX_THROW(ulOutside, "Index=%d", i);
  c[1]->setContent(static_cast<double>(i == 0 ? p.r : i == 1 ? p.g : p.b));
}
// convert(space): the picture into another colour space, by its flag.
void convert(TIVariable** c) {
  ColorPicture& p = pic(c[0]);
  const unsigned to = static_cast<unsigned>(c[2]->getLong());
  TImageColorSpace::vTransform(p, p, space(c[0]), to);
}
void spaceName(TIVariable** c) { c[1]->setContent(TPixelColorSpace::cpGetColorSpaceName(space(c[0]))); }
void valueName(TIVariable** c) {
  c[1]->setContent(TPixelColorSpace::cpGetIndexName(space(c[0]), c[2]->getLong()));
}
// dominantWavelength(line,column): of the pixel, against the picture's
// reference white (CIE RGB 255, 255, 255 unless set); negative for purples.
void dominantWavelength(TIVariable** c) {
  const unsigned from = space(c[0]);
  if (!TPixelColorSpace::bCanSetColorSpace(from))
    KX_THROW(0xe072108eUL, "%s", TPixelColorSpace::cpGetColorSpaceName(from));
  TPixelColorSpace cs;
  cs.vSetReference(pic(c[0]).rGetPixelColorSpace().rGetRefInXYZ(), TPixelColorSpace::XYZ);
  cs.vSetFlag(from, TPixelColorSpace::WST);
  cs.vSetColor(at(c), from);
  c[1]->setContent(static_cast<double>(cs.rGetWST().r));
}

// luminance(PICTURE): Y of every pixel (the picture in CIE RGB) into a
// float picture.
void luminance(TIVariable** c) {
  if (space(c[0]) != TPixelColorSpace::CIE_RGB) KX_THROW(0xe072108eUL, "luminance of %s", c[0]->getName());
  auto* target = static_cast<Rastrix::TFloatPicture*>(c[2]->getPointer());
  if (!target) {
    target = new Rastrix::TFloatPicture;
    c[2]->setContent(static_cast<void*>(target));
  }
  TImageConverter::vCopyImage(&pic(c[0]), target);
}

void status(const TIVariable* v, char* buffer, int size) {
  const auto* p = static_cast<const ColorPicture*>(v->getPointer());
  if (buffer && size > 0)
    std::snprintf(buffer, static_cast<std::size_t>(size), "%d x %d %s", p ? p->getLines() : 0,
                  p ? p->getColumns() : 0,
                  p ? TPixelColorSpace::cpGetColorSpaceName(p->rGetPixelColorSpace().uGetToFlag()) : "");
}

}  // namespace

std::unique_ptr<TIUserBasic> kxhost::pColorPictureClass() {
  const char* L = "LITERAL";
  const char* N = "INT";
  const char* D = "FLOAT";
  return std::make_unique<TITableClass>(
      "COLORPICTURE",
      "Ein Farbbild in einem Farbraum des Systems.\r\nA colour picture in one of the colour spaces of the system.",
      status,
      std::vector<TITableClass::TMethod>{
          {"create", nullptr, {}, create},
          {"destroy", nullptr, {}, destroy},
          {"alloc", nullptr, {N, N}, alloc, "alloc(Zeilen,Spalten): CIE-RGB, schwarz / CIE RGB, black"},
          {"fill", nullptr, {D, D, D}, fill, "fill(R,G,B) in CIE-RGB / in CIE RGB"},
          {"setPixel", nullptr, {N, N, D, D, D}, setPixel, "setPixel(Zeile,Spalte,Wert1,Wert2,Wert3)"},
          {"getValue", D, {N, N, N}, getValue, "Wert=getValue(Zeile,Spalte,Index) im Farbraum des Bildes"},
          {"convert", nullptr, {N}, convert,
           "convert(Farbraum): 1 RGB, 16 XYZ, 32 Lxy, 1024 L*a*b* ... / convert(space): the flag of the space"},
          {"spaceName", L, {}, spaceName},
          {"valueName", L, {N}, valueName},
          {"dominantWavelength", D, {N, N}, dominantWavelength,
           "Lambda=dominantWavelength(Zeile,Spalte) in nm, negativ für Purpur / negative for purples"},
          {"luminance", nullptr, {"PICTURE"}, luminance, "luminance(Bild): Leuchtdichte Y in ein Float-Bild / Y into a picture"}});
}
