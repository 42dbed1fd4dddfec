// Planes: one plane of each of the six pixel types with the description it
// starts with; a view onto a part of a float plane that shares its pixels and
// its description; the messages a receiver of the view and one of the source
// saw; a plane over a caller's block sliding when renumbered; and a pixel read
// back through an image handle of the utility library.
#include <string>
#include <vector>

#include "Demo.h"
#include "kxexception/TDelivery.h"
#include "kxutils/ulImage.h"
#include "rastrix/TPlane.h"

namespace {

using namespace Rastrix;

// Texts of planes are Latin-1; the terminal wants UTF-8.
std::string utf8(const std::string& latin1) {
  std::string out;
  for (const char ch : latin1) {
    const auto c = static_cast<unsigned char>(ch);
    if (c < 0x80) {
      out += ch;
    } else {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

const char* meaning(unsigned long code) {
  switch (code) {
    case 1: return "name";
    case 2: return "value name or unit";
    case 3: return "coordinate system";
    case 4: return "value range";
    case 5: return "date";
    case 10: return "pixel classifier";
    case 11: return "moved to another common";
    case 50: return "geometry or memory";
    case 51: return "pixel values";
    default: return "?";
  }
}

class TWatcher : public TDelivery {
 public:
  TWatcher(const char* name, TDelivery* plane) : name_(name) { vConnectSender(plane); }
  bool bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b) override {
    if (!bIsSender(sender)) return false;
    seen_ += (seen_.empty() ? "" : ", ") + std::to_string(a) + " (" + meaning(a) + (a == 2 ? ", channel " + std::to_string(b) : "") + ")";
    return true;
  }
  void report() const { kxdemo::say("  %s saw: %s", name_, seen_.empty() ? "nothing" : seen_.c_str()); }

 private:
  const char* name_;
  std::string seen_;
};

template <class T>
void showFresh(int lines, int columns) {
  TPlane<T> p(lines, columns, -1, 10, columns + 2);
  const CRectangle r = p.getExtension();
  double mi = 0, ma = 0;
  p.getValueRangeMSM(&mi, nullptr, &ma);
  kxdemo::say("%-24s type %d, %d value(s)/pixel, lines %d..%d, columns %d..%d, line distance %d, "
              "\"%s\", %s [%s], range %g..%g",
              TPixelTraits<T>::cpTypeName, p.eGetPicturePT(), p.iGetValuesPerPixel(), r.iFirstLine, r.iLastLine,
              r.iFirstColumn, r.iLastColumn, p.getLineDistance(), p.rStrGetNamePic().c_str(),
              utf8(p.rStrGetValuePic(0)).c_str(), utf8(p.rStrGetUnitPic(0)).c_str(), mi, ma);
}

kxdemo::Step step(20, "planes: six pixel types, a view, messages, extern memory, image handle", [](kxdemo::Context&) {
  TLanguage::setEnglisch();
  kxdemo::say("fresh planes (English), 2 x 3 from line -1, column 10:");
  showFresh<unsigned char>(2, 3);
  showFresh<unsigned short>(2, 3);
  showFresh<float>(2, 3);
  showFresh<TRGBPixel>(2, 3);
  showFresh<TRGBFloatPixel>(2, 3);
  showFresh<int>(2, 3);
  TLanguage::setDeutsch();

  // A view onto lines 2..3, columns 1..2 of a 4 x 4 float plane.
  TPlane<float> source(4, 4);
  for (int l = 0; l < 4; ++l)
    for (int c = 0; c < 4; ++c) source[l][c] = static_cast<float>(10 * l + c);
  TPlane<float> view;
  view.beSubPicture(source, CRectangle(2, 3, 1, 2));
  TWatcher onSource("receiver of the source", &source), onView("receiver of the view  ", &view);
  kxdemo::say("view %d..%d x %d..%d of the source: view[3][2] = %g (the source's pixel (3, 2))",
              view.getFirstLine(), view.getLastLine(), view.getFirstColumn(), view.getLastColumn(), view[3][2]);
  view[2][1] = -1.f;
  view.vSendCommonMessage(51, 0);
  view.setNamePic("Leuchtdichte");
  view.setValueUnitPic(0, "L", "cd/m\xC2\xB2");  // UTF-8 in, Latin-1 stored
  view.moveBy(-2, -1);
  kxdemo::say("after writing through the view, renaming it and moving it to line %d:", view.getFirstLine());
  kxdemo::say("  source[2][1] = %g, source name \"%s\", unit \"%s\" stored in %zu Latin-1 bytes", source[2][1],
              source.rStrGetNamePic().c_str(), utf8(source.rStrGetUnitPic(0)).c_str(), source.rStrGetUnitPic(0).size());
  onSource.report();
  onView.report();

  // A plane over the caller's block: renumbering slides the window.
  std::vector<int> block(8 * 6);
  for (int i = 0; i < 8 * 6; ++i) block[i] = i;
  TPlane<int> window(2, 3, 1, 1, 6, block.data());
  kxdemo::say("extern block 8 x 6 (pixel = index): window at (1, 1) starts with %d", window[1][1]);
  window.moveBy(4, 0);
  kxdemo::say("  after moveBy(4, 0) it shows line 5 of the block: %d", window[5][1]);
  TPlane<int> own(window);
  own.moveBy(4, 0);
  kxdemo::say("  a copy (own memory, line distance %d) keeps its pixels when moved: %d at (9, 1)",
              own.getLineDistance(), own[9][1]);

  // An image handle looks onto the plane's own memory.
  TPlane<TRGBPixel> colour(3, 5, 0, 0, 8);
  colour[1][2].set(200, 100, 50);
  void* h = colour.vpCreateIMAGE_HANDLE();
  double v[3] = {};
  int n = 0;
  ulImage_GetPixel(h, 1, 2, v, &n);
  kxutils::TImageInfo info;
  ulImage_GetInfo(h, &info);
  kxdemo::say("image handle of a 3 x 5 colour plane (line distance 8): %d columns seen, pixel (1, 2) = "
              "%g %g %g (blue, green, red), luminance %.4f",
              info.columns, v[0], v[1], v[2], colour.getDoublePixelLC(1, 2));
  ulImage_DeleteHandle(&h);
  char text[iPixelStrSize];
  colour.vPixel2Str2(&colour[1][2], text);
  kxdemo::say("the same pixel as a colour (CIE RGB, red first): %s", text);
});

}  // namespace
