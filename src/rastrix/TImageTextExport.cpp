#include "rastrix/TImageTextExport.h"

#include <algorithm>
#include <cstdio>

#include "kxexception/KxError.h"
#include "kxutils/ulColorSpace.h"
#include "kxutils/ulCoordinatesystem.h"
#include "kxutils/ulImage.h"
#include "kxutils/ulImageFile.h"
#include "platform/Notice.h"
#include "rastrix/TPlaneBasic.h"

namespace Rastrix {

unsigned long ulExportText(const TPlaneBasic& plane, const TImageTextExport& f) {
  void* image = nullptr;
  void* colour = nullptr;
  void* ks = nullptr;
  unsigned long code = 0;
  try {
    image = plane.vpCreateIMAGE_HANDLE();
    colour = plane.vpCreateCOLOR_HANDLE();
    if (f.coordinateSystem) ks = plane.vpCreateCOORDINATESYSTEM_HANDLE();
    const int lineStep = std::max(1, f.lineStep), columnStep = std::max(1, f.columnStep);
    const int lines = std::max(1, (f.lastLine - f.firstLine) / lineStep + 1);
    const int columns = std::max(1, (f.lastColumn - f.firstColumn) / columnStep + 1);
    const double bottom = f.firstLine + static_cast<double>(lines - 1) * lineStep;
    const double right = f.firstColumn + static_cast<double>(columns - 1) * columnStep;
    const unsigned flags = (f.header ? kxutils::eTextHeader : 0u) | (f.coordinates ? kxutils::eTextCoordinates : 0u) |
                           (f.coordinateSystem ? kxutils::eTextWorld : 0u);
    code = f.array ? ulImage_WriteTextArrayW(image, colour, ks, f.firstLine, bottom, lines, f.firstColumn, right,
                                             columns, f.name.c_str(), flags)
                   : ulImage_WriteTextListW(image, colour, ks, f.firstLine, bottom, lines, f.firstColumn, right,
                                            columns, f.name.c_str(), flags);
  } catch (unsigned long c) {
    code = c;
  }
  if (image) ulImage_DeleteHandle(&image);
  if (colour) ulColorSpace_DeleteHandle(&colour);
  if (ks) ulCoordinatesystem_DeleteHandle(&ks);
  if (code) {
    char text[600];
    std::snprintf(text, sizeof text, "0x%08lx\nFile: %s", code, f.name.c_str());
    kx::platform::notice(kx::platform::eNoticeKind::eError, "Export", text);
    kx::deleteError();
  }
  return code;
}

}  // namespace Rastrix
