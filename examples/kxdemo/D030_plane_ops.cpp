// Plane operations on a 12 MP luminance picture: a raw frame is built line by
// line, a dark border is cleared, a reference patch from a plane numbered
// elsewhere is inserted, the frame is flat-field corrected by division (with
// dead pixels of the flat giving zero) and calibrated by a factor; minimum
// and maximum over the picture, a rectangle and a disc; 2 x 2 and 8 x 8
// shrinking; a colour picture shrunk to grey; bad arguments and their codes.
#include <chrono>
#include <cmath>
#include <vector>

#include "Demo.h"
#include "kxexception/KxError.h"
#include "kxexception/TDelivery.h"
#include "rastrix/TPlane.h"

namespace {

using Rastrix::TPlane;
using Rastrix::TRGBPixel;

constexpr int iLines = 3000;
constexpr int iColumns = 4000;

// Counts pixel-change messages (51) of one plane.
class TPixelWatch : public TDelivery {
 public:
  bool bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long) override {
    if (!bIsSender(sender)) return false;
    if (a == 51) ++count;
    return true;
  }
  int count = 0;
};

class TStopWatch {
 public:
  double ms() {
    const auto now = std::chrono::steady_clock::now();
    const double d = std::chrono::duration<double, std::milli>(now - last).count();
    last = now;
    return d;
  }

 private:
  std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();
};

unsigned long codeOf(void (*f)()) {
  try {
    f();
  } catch (unsigned long code) {
    kx::deleteError();
    return code;
  }
  return 0;
}

kxdemo::Step step(30, "plane operations: a 12 MP frame through a correction chain", [](kxdemo::Context&) {
  TStopWatch t;
  TPlane<float> frame(iLines, iColumns);
  frame.setNamePic("Frame");
  TPixelWatch watch;
  watch.vConnectSender(&frame);

  // A raw frame: a smooth illumination with a bright lamp at (line 1200,
  // column 2600), written line by line.
  std::vector<float> line(iColumns);
  for (int l = 0; l < iLines; ++l) {
    for (int c = 0; c < iColumns; ++c) {
      const double dl = l - 1200.0, dc = c - 2600.0;
      line[c] = static_cast<float>(100.0 + 0.01 * c + 5000.0 * std::exp(-(dl * dl + dc * dc) / (2 * 40.0 * 40.0)));
    }
    frame.putLine(line.data(), l);
  }
  kxdemo::say("%dx%d float frame written by putLine: %d messages 51, %.1f ms", frame.getLines(),
              frame.getColumns(), watch.count, t.ms());

  // The sensor's masked border (16 lines on top, 8 columns left) carries no light.
  frame.setRectangle(0.0f, 0, 15, 0, iColumns - 1);
  frame.setRectangle(0.0f, CRectangle(16, iLines - 1, 0, 7));
  // A reference patch measured on its own, numbered as it sat on the sensor
  // (from line 100, column 3000), goes to the same place here by area ...
  TPlane<float> patch(64, 64, 100, 3000, 64);
  patch.setRectangle(250.0f);
  frame.insert(patch, patch.getExtension());
  // ... and a copy of the top-left 64 x 64 of it into a plane of its own,
  // which only cares for its size.
  TPlane<float> corner(64, 64);
  corner.insert(patch);
  float cmin = 0, cmax = 0;
  corner.calcMinMax(cmin, cmax);
  kxdemo::say("border cleared, reference patch inserted at line %d column %d (its own plane holds %.0f..%.0f), "
              "%.1f ms", patch.getFirstLine(), patch.getFirstColumn(), cmin, cmax, t.ms());

  // Flat field: 1 with a slight vignetting, zero at two dead pixels.
  TPlane<float> flat(iLines, iColumns);
  flat.setRectangle(1.0f);
  for (int c = 0; c < iColumns; ++c) line[c] = static_cast<float>(1.0 - 0.05 * std::abs(c - 2000) / 2000.0);
  for (int l = 0; l < iLines; ++l) flat.putLine(line.data(), l);
  flat[500][500] = 0.0f;
  flat[2999][3999] = -0.0f;
  t.ms();
  frame /= flat;
  const double tDiv = t.ms();
  frame *= 0.0123f;  // calibration factor, cd/m^2 per digit
  kxdemo::say("divided by the flat field in %.1f ms (dead pixel: %g), calibrated by 0.0123 in %.1f ms",
              tDiv, frame[500][500], t.ms());

  float mn = 0, mx = 0;
  frame.calcMinMax(mn, mx);
  const double tMinMax = t.ms();
  float rmn = 0, rmx = 0;
  frame.calcMinMax(rmn, rmx, CRectangle(100, 163, 3000, 3063));
  float dmn = 0, dmx = 0;
  frame.calcMinMax(dmn, dmx, 2600L, 1200L, 10UL);
  float omn = -1, omx = -1;
  frame.calcMinMax(omn, omx, CRectangle(5000, 6000, 0, 10));  // outside: untouched
  kxdemo::say("luminance %.4f..%.4f cd/m^2 (%.1f ms); patch %.4f..%.4f; lamp disc r=10 %.4f..%.4f; "
              "outside the frame still %g..%g", mn, mx, tMinMax, rmn, rmx, dmn, dmx, omn, omx);

  TPlane<float> half, preview;
  half.scaleDown(frame, 2, 2, true);
  const double tHalf = t.ms();
  preview.scaleDown(frame, 8, 8, true);
  float hmn = 0, hmx = 0;
  half.calcMinMax(hmn, hmx);
  kxdemo::say("2x2 mean: %dx%d in %.1f ms, peak %.4f; 8x8 preview %dx%d, lamp block %.4f", half.getLines(),
              half.getColumns(), tHalf, hmx, preview.getLines(), preview.getColumns(), preview[150][325]);

  // A colour picture shrinks to grey: the byte of the mean luminance.
  TPlane<TRGBPixel> rgb(4, 4);
  TRGBPixel white;
  white.set(255, 255, 255);
  rgb.setRectangle(white);
  TRGBPixel teal;
  teal.set(10, 20, 30);
  rgb.setRectangle(teal, 0, 1, 2, 3);
  TPlane<TRGBPixel> grey;
  grey.scaleDown(rgb, 2, 2, true);
  kxdemo::say("colour 4x4 shrunk 2x2: white block -> (%u, %u, %u), (10, 20, 30) block -> (%u, %u, %u)",
              grey[0][0].r, grey[0][0].g, grey[0][0].b, grey[0][1].r, grey[0][1].g, grey[0][1].b);

  kxdemo::say("bad arguments: scaleDown by 0 lines 0x%08lx, insert into itself 0x%08lx, "
              "setLine past the last line 0x%08lx; frame changed %d times in all",
              codeOf([] {
                TPlane<float> a(4, 4), b;
                b.scaleDown(a, 0, 2, true);
              }),
              codeOf([] {
                TPlane<float> a(4, 4);
                a.insert(a);
              }),
              codeOf([] {
                TPlane<float> a(4, 4);
                a.setLine(1.0f, 4);
              }),
              watch.count);
});

}  // namespace
