// Regions: a polygon, a circle and a line rasterised into run-length form,
// combined with OR, XOR and AND; the text file written and read back; a
// region found again in a float picture and drawn into it.
#include <string>

#include "Demo.h"
#include "object98/TPicture2RLC.h"
#include "object98/TRLC2Picture.h"
#include "object98/TRLCArray.h"
#include "rastrix/TPlane.h"

namespace {

void show(const char* what, const TRLCArray& a) {
  kxdemo::say("%-22s %7ld pixels in lines %d..%d, columns %d..%d", what, a.pixel(), a.getFirstLine(), a.getLastLine(),
              a.getFirstColumn(), a.getLastColumn());
}

kxdemo::Step step(60, "regions: rasterise, combine, store, find in a picture", [](kxdemo::Context& c) {
  const TRLCArray polygon(TOPointList<int>(ePolygon, {{20, 10}, {180, 30}, {150, 140}, {60, 120}, {10, 70}}));
  const TRLCArray circle(TOPointList<int>(eCircle, {{120, 80}, {170, 80}}));  // radius 50
  const TRLCArray line(TOPointList<int>(eLine, {{0, 0}, {199, 149}}));
  show("polygon", polygon);
  show("circle (r = 50)", circle);
  show("line", line);

  TRLCArray orAll = polygon;
  orAll |= circle;
  orAll |= line;
  show("polygon | circle | line", orAll);
  TRLCArray both = polygon;
  both &= circle;
  show("polygon & circle", both);
  TRLCArray either = polygon;
  either ^= circle;
  show("polygon ^ circle", either);
  TRLCArray crossing = line;
  crossing &= polygon;
  show("line & polygon", crossing);
  kxdemo::say("check: |P| + |C| = %ld, |P|C| + |P&C| = %ld", polygon.pixel() + circle.pixel(),
              [&] {
                TRLCArray u = polygon;
                u |= circle;
                return u.pixel() + both.pixel();
              }());

  const std::string file = c.workDir + "/polygon_or_circle.rlc";
  TRLCArray u = polygon;
  u |= circle;
  u.write(file.c_str());
  TRLCArray back;
  back.read(file.c_str());
  kxdemo::say("written to %s and read back: %ld pixels, %d lines", file.c_str(), back.pixel(), back.size());

  Rastrix::TPlane<float> picture(160, 210);
  TPicture2RLC::vRLC2FloatPicture(back, picture, 100.0f, 0.0f);
  TRLC2Picture(&picture).vSet("250", both);
  TRLCArray bright, lit;
  TPicture2RLC::vFloatPicture2RLC(picture, bright, 200.0f, 300.0f);
  TPicture2RLC::vFloatPicture2RLC(picture, lit, 50.0f, 300.0f);
  show("picture >= 200", bright);
  show("picture >= 50", lit);
  kxdemo::say("found again: %s", bright.pixel() == both.pixel() && lit.pixel() == u.pixel() ? "yes" : "NO");
});

}  // namespace
