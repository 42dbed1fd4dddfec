// HDF5 data bases: a file with its bootblock under an alias, groups, a 2-D
// float data set, a compound record set, an attribute; reopened read-only
// and listed.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "Demo.h"
#include "HDF5/H5Errors.h"
#include "HDF5/TH5Database.h"
#include "HDF5/TH5General.h"
#include "kxexception/KxError.h"

namespace {
#pragma pack(push, 1)
struct TPoint {
  int32_t x;
  int32_t y;
  char name[16];
};
#pragma pack(pop)

kxdemo::Step step(70, "HDF5 data base: bootblock, groups, data sets, attributes", [](kxdemo::Context& c) {
  const std::string name = c.workDir + "/demo.h5";
  TH5Database* db = TH5Database::pOpenHDF5();
  try {
    TH5File* file = db->pCreateFile(name.c_str(), "Demo");
    kxdemo::say("created %s under the alias \"%s\"", file->cpGetFileName(), file->cpGetAlias());
    TH5General g(file, false);
    g.vCreateDirectory("/Plane/Leuchte.pf");

    const unsigned lines = 120, columns = 160;
    std::vector<float> picture(lines * columns);
    for (unsigned l = 0; l < lines; ++l)
      for (unsigned k = 0; k < columns; ++k) picture[l * columns + k] = 100.0f + 0.5f * static_cast<float>(l + k);
    g.vCreate2(lines, columns, TH5Type::eFloat, "\\Plane\\Leuchte.pf\\Content", false);
    g.vWrite(picture.data(), "/plane/leuchte.pf/content");  // either separator, any case
    const float unitScale = 1.0f;
    g.vWriteAttribute("/Plane/Leuchte.pf/Content", "Scale", TH5Type::eFloat, 1, &unitScale);

    TH5General::TCompound point;
    point.vAdd(TH5Type::eSignedLong, "x");
    point.vAdd(TH5Type::eSignedLong, "y");
    point.vAdd(TH5Type::eSignedChar, "Name", 0, 1, 16);
    point.vCalculateOffsets();
    std::vector<TPoint> points = {{10, 20, "Mitte"}, {0, 0, "Ursprung"}, {159, 119, "Ecke"}};
    g.vCreate1(points.size(), point, "/Objektlisten/Punkte", false);
    g.vWrite(points.data(), "/Objektlisten/Punkte");
    kxdemo::say("wrote a %ux%u float picture, %zu point records of %u bytes and an attribute", lines, columns,
                points.size(), point.uElementSize);

    // Creating the same data set again keeps it; a write through a
    // read-only facade is refused.
    g.vCreate2(lines, columns, TH5Type::eFloat, "/Plane/Leuchte.pf/Content", false);
    try {
      TH5General(file, true).vDeleteObject("/Plane");
    } catch (unsigned long code) {
      kxdemo::say("read-only facade refused the delete: 0x%08lx", code);
      kx::deleteError();
    }
    db->vCloseFile("Demo");

    char head[16] = {};
    if (FILE* f = std::fopen(name.c_str(), "rb")) {
      (void)!std::fread(head, 1, 12, f);
      std::fclose(f);
    }
    kxdemo::say("the file begins with \"%s\" and a null byte", head);

    file = db->pOpenFile(name.c_str(), "Lesen", true, true);
    TH5General r(file, true);
    std::vector<float> back(lines * columns);
    r.vRead("/Plane/Leuchte.pf/Content", back.data());
    TPoint p{};
    r.vRead1(1, 2, 0, "/Objektlisten/Punkte", &p);
    float scale = 0;
    r.vReadAttribute("/Plane/Leuchte.pf/Content", "scale", TH5Type::eFloat, 1, &scale);
    kxdemo::say("read back read-only: pixel (119,159) = %.1f, third point %s at (%d,%d), Scale = %.1f",
                back.back(), p.name, p.x, p.y, scale);
    kxdemo::say("bootblock: created %s by %s", file->pGetBootblock()->cpGetDateCreated(),
                file->pGetBootblock()->cpGetLastWorker());
    kxdemo::say("the open data base:");
    db->vReport(stdout);
    db->vCloseFile("Lesen");
  } catch (...) {
    TH5Database::vCloseHDF5(&db);
    throw;
  }
  TH5Database::vCloseHDF5(&db);
});
}  // namespace
