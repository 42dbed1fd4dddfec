// Coordinate systems: a plane measured in millimetres through a size-shift
// system calibrated from reference points; its world coordinates, lengths and
// areas; the system stored in Calibration/KoordSystem.ini and read back; the
// string form of a file header read twice and with a changed value; a zoom.
#include <string>

#include "Demo.h"
#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TCopyCoordinates.h"
#include "rastrix/TPlane.h"
#include "rastrix/TSizeShiftCoordinateSystem.h"

using namespace Rastrix;

namespace {

// The system's Latin-1 texts ("mm\xB2") for a UTF-8 terminal.
std::string utf8(const std::string& latin1) {
  std::string out;
  for (char ch : latin1) {
    const auto u = static_cast<unsigned char>(ch);
    if (u < 0x80) {
      out += ch;
    } else {
      out += static_cast<char>(0xC0 | (u >> 6));
      out += static_cast<char>(0x80 | (u & 0x3F));
    }
  }
  return out;
}

// The first lines of a text, CRs dropped, each line indented.
std::string shown(const std::string& text, std::size_t maxLines) {
  std::string out;
  std::size_t lines = 0;
  for (char ch : text) {
    if (ch == '\r') continue;
    if (ch == '\n') {
      if (++lines == maxLines) return utf8(out) + "\n      ...";
      out += "\n      ";
      continue;
    }
    out += ch;
  }
  return utf8(out);
}

kxdemo::Step step(45, "coordinate systems: world coordinates, the store, file headers", [](kxdemo::Context& c) {
  TCoordinateSystemVector& systems = *pGetDefaultCoordinateSystemVector();
  // The store goes beside the "program": here the demo's work directory.
  systems.vSetProgramDir(c.workDir.c_str());

  // A camera sees a wall: column 40 is x = 0 mm, column 440 is x = 200 mm;
  // line 30 is y = 150 mm, line 330 is y = 0 mm (y runs upward).
  auto* calibrated = new TSizeShiftCoordinateSystem;
  calibrated->vSetChangeable(true);
  calibrated->setNameKS("Wand");
  calibrated->setNameUnitX("x", "mm");
  calibrated->setNameUnitY("y", "mm");
  calibrated->setUnitL("mm");
  calibrated->setUnitA("mm\xB2");
  calibrated->vSetRect(true);
  calibrated->vSetValues(false);
  calibrated->vSetPoint(0, 0.0, 150.0, 40, 30);
  calibrated->vSetPoint(1, 200.0, 150.0, 440, 30);
  calibrated->vSetPoint(2, 200.0, 0.0, 440, 330);
  calibrated->vCalculate();
  auto* cs = static_cast<TSizeShiftCoordinateSystem*>(systems.pAppendNew(calibrated));
  const std::string unitA = utf8(cs->rStrGetUnitA());
  kxdemo::say("vCalculate from three points: A11=%g A13=%g A22=%g A23=%g; a pixel is %g %s (y runs upward)",
              cs->dGetA11(), cs->dGetA13(), cs->dGetA22(), cs->dGetA23(), cs->dGetFactorA(), unitA.c_str());

  TPlane<float> plane(CRectangle(30, 330, 40, 440));
  plane.SetCoordinateSystem(cs);
  kxdemo::say("plane lines %d..%d, columns %d..%d in \"%s\" (users %d)", plane.getFirstLine(),
              plane.getLastLine(), plane.getFirstColumn(), plane.getLastColumn(),
              plane.pGetCoordinateSystem()->rStrGetNameKS().c_str(), cs->iGetUser());
  const int corner[][2] = {{40, 30}, {440, 30}, {240, 180}, {440, 330}};
  for (const auto& p : corner) {
    double x = 0, y = 0;
    cs->vGetWorldXY(&x, &y, p[0], p[1]);
    int col = 0, line = 0;
    cs->vGetOrgXY(&col, &line, x, y);
    kxdemo::say("  pixel (column %3d, line %3d) -> x = %6.1f mm, y = %6.1f mm -> back (%d, %d)", p[0], p[1], x, y,
                col, line);
  }
  // The frame of the plane as a contour: the trapezoids sum to its area.
  const int c0 = plane.getFirstColumn(), c1 = plane.getLastColumn() + 1;
  const int l0 = plane.getFirstLine(), l1 = plane.getLastLine() + 1;
  const double area = cs->dGetLineArea(c0, l0, c1, l0) + cs->dGetLineArea(c1, l0, c1, l1) +
                      cs->dGetLineArea(c1, l1, c0, l1) + cs->dGetLineArea(c0, l1, c0, l0);
  kxdemo::say("diagonal %.2f %s; the frame's trapezoids sum to %.2f %s = %.2f mm x %.2f mm; circle of the "
              "diagonal's radius %.1f %s",
              cs->dGetLineLength(c0, l0, c1, l1), cs->rStrGetUnitL().c_str(), area, unitA.c_str(),
              (c1 - c0) * cs->dGetA11(), (l1 - l0) * -cs->dGetA22(), cs->dGetCircleArea(c0, l0, c1, l1),
              unitA.c_str());

  // The store next to the program, read back into a fresh vector.
  systems.bWriteIni();
  const std::string file = systems.sGetIniFileName();
  const TKxMemIniFile stored(file.c_str());
  kxdemo::say("bWriteIni -> %s:\n      %s", file.c_str(), shown(stored.sWriteToString(), 14).c_str());
  TCoordinateSystemVector fresh;
  fresh.vSetProgramDir(c.workDir.c_str());
  fresh.bReadIni();
  const int at = fresh.iIndexOf(fresh.pFindNameSignatur(cs));
  kxdemo::say("read back: %d system(s); \"%s\" found by signature at %d, equal parameters: %s", fresh.size(),
              fresh[at]->rStrGetNameKS().c_str(), at, fresh[at]->bEqualParam(cs) ? "yes" : "no");

  // A file header carries the system's string form: read twice, one system;
  // the same name with another value Z becomes "Wand~1".
  const std::string header = "Typ=float\r\nLines=301\r\n" + cs->sWrite2String();
  const int first = systems.iCreateFromString(header.c_str());
  const int again = systems.iCreateFromString(header.c_str());
  TSizeShiftCoordinateSystem elsewhere;
  elsewhere.vCopy(cs);
  elsewhere.vSetValueZ(1200);  // the wall moved back: another system
  const int moved = systems.iCreateFromString(elsewhere.sWrite2String().c_str());
  kxdemo::say("header read twice -> index %d and %d; with ValueZ=1200 -> index %d named \"%s\"", first, again,
              moved, systems[moved]->rStrGetNameKS().c_str());
  kxdemo::say("a header of KoordTyp=0 -> %d, the default system \"%s\"",
              systems.iCreateFromString("KoordTyp=0\r\n"), systems[-1]->rStrGetNameKS().c_str());
  kxdemo::say("string form (first lines):\n      %s", shown(cs->sWrite2String(), 6).c_str());

  // Showing the plane zoomed: 2 screen pixels per picture pixel.
  TCopyCoordinates zoom(2);
  zoom.setSrc(CRectangle(plane.getFirstLine(), plane.getLastLine(), plane.getFirstColumn(), plane.getLastColumn()));
  const CRectangle& d = zoom.rGetDst();
  kxdemo::say("zoom 2: screen lines %d..%d, columns %d..%d; screen (11, 7) is pixel (%d, %d)", d.iFirstLine,
              d.iLastLine, d.iFirstColumn, d.iLastColumn, zoom.getXSrc(11), zoom.getYSrc(7));

  plane.SetCoordinateSystem(nullptr);
  const int before = systems.size();
  systems.vCompress();
  kxdemo::say("after the plane let go: vCompress removed %d unused system(s)", before - systems.size());
  systems.vSetProgramDir(nullptr);
});

}  // namespace
