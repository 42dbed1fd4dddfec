// The text export of a picture as the export form gathers it: a file name,
// the area with a line and a column step, and whether to write a header
// line, the coordinates, and coordinates of the coordinate system. It runs
// through the utility library's text writers (a list: one line per pixel;
// an array: one line per picture line). A failure is shown to the user as
// its code with "File: %s" and then deleted: it does not go on.
#pragma once

#include <string>

namespace Rastrix {

class TPlaneBasic;

struct TImageTextExport {
  std::string name;
  int firstLine = 0, lastLine = 0, lineStep = 1;
  int firstColumn = 0, lastColumn = 0, columnStep = 1;
  bool header = true;
  bool coordinates = false;
  bool coordinateSystem = false;  // the coordinate system handle is made only then
  bool array = true;              // false: the list form
};

// Returns 0 or the code that was shown.
unsigned long ulExportText(const TPlaneBasic& plane, const TImageTextExport& form);

}  // namespace Rastrix
