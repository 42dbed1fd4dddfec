// Helpers of the coordinate-system tests: a system of each class with every
// field away from its default, and a scratch directory.
#pragma once

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TLinearCoordinateSystem.h"
#include "rastrix/TSizeShiftCoordinateSystem.h"

namespace cstest {

// A system of class `typ` (through TCoordinateSystemVector::pCreate) whose
// fields all differ from the defaults; `seed` varies the numbers.
inline std::unique_ptr<Rastrix::TCoordinateSystem> makeSample(int typ, const char* name, double seed = 1.0) {
  using namespace Rastrix;
  std::unique_ptr<TCoordinateSystem> cs(TCoordinateSystemVector::pCreate(typ));
  cs->vSetChangeable(true);
  cs->setNameKS(name);
  if (typ < eKSProjektionswand) {  // the 3-D classes keep their own axes
    cs->setNameUnitX("Breite", "mm");
    cs->setNameUnitY("H\xF6he", "\xB0");
    cs->setUnitL("mm");
    cs->setUnitA("mm\xB2");
    cs->setFactorA(0.25 * seed);
    cs->vSetNameZ("Tiefe");
    cs->vSetUnitZ("m");
    cs->vSetPossibilities(0x13);
  }
  if (typ != eKSLvk) cs->vSetValueZ(2.5 * seed);  // the Lvk's value Z is fixed
  if (auto* s = dynamic_cast<TSizeShiftCoordinateSystem*>(cs.get())) {
    s->vSetdA11(0.125 * seed);
    s->vSetdA13(-3.75);
    s->vSetdA22(-0.0625);
    s->vSetdA23(1234.5678);
    s->vSetValues(false);
    s->vSetRect(true);
    for (int i = 0; i < 4; ++i) s->vSetPoint(i, 1.5 * i, -2.25 * i, 10 * i, -7 * i);
  }
  if (auto* l = dynamic_cast<TLinearCoordinateSystem*>(cs.get())) {
    l->vSetdA12(0.01 * seed);
    l->vSetdA21(-0.02);
    l->vSetdA31(1e-3);
    l->vSetdA32(7.0);
  }
  return cs;
}

// A fresh directory, removed with everything in it at the end.
class TScratchDir {
 public:
  TScratchDir() {
    std::string t = (std::filesystem::temp_directory_path() / "kxcsXXXXXX").string();
    if (!::mkdtemp(t.data())) std::abort();
    path_ = t;
  }
  ~TScratchDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TScratchDir(const TScratchDir&) = delete;
  TScratchDir& operator=(const TScratchDir&) = delete;
  const std::string& str() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace cstest
