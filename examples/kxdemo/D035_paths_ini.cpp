// Paths and ini files: a macro search path as the interpreter builds it, the
// path helpers on names written for another platform.
#include <fstream>
#include <string>

#include "Demo.h"
#include "file98/KxPath.h"
#include "file98/TSearchPath.h"

namespace {

void touch(const std::string& path, const char* text) { std::ofstream(path, std::ios::binary) << text; }

void paths(kxdemo::Context& c) {
  // An installation: program directory, an application's macros below it,
  // a start macro in both places (the application's one overrides).
  const std::string exe = c.workDir + "/paths/Install";
  const std::string macros = exe + "/Application/Demo/Macros";
  kx::makeDir((macros + "\\Sub").c_str());
  touch(exe + "/Start.mac", "MessageBox(\"installation\",\"Start\")\r\n");
  touch(macros + "/Start.mac", "play(\"Start\")\r\n");
  touch(exe + "/Beenden.mac", "exit()\r\n");

  TSearchPath macroPaths;
  macroPaths.vSetProgramDir(exe.c_str());
  const bool ok = macroPaths.bInsert(macros.c_str(), 99);
  kxdemo::say("MacroPaths.insert(MacroDir,99) = %d, %d directories, the longest first:", ok, macroPaths.size());
  for (int i = 0; i < macroPaths.size(); ++i) kxdemo::say("  [%d] %s", i, macroPaths[i].c_str());
  macroPaths.bInsert((macros + "/Sub").c_str(), 1);
  kxdemo::say("after insert(\".../Sub\",1) the first is %s", macroPaths[0].c_str());

  const std::string first = macroPaths.sGetDir("Start.mac");
  kxdemo::say("Start.mac is found in   %s", first.c_str());
  kxdemo::say("the one it overrides in %s", macroPaths.sGetPreviousDir("Start.mac", first.c_str()).c_str());
  kxdemo::say("Beenden.mac: %s", macroPaths.sGetPath("Beenden.mac").c_str());

  std::string found;
  kx::bFindPathForFile("Beenden.mac", (macros + "\\Sub\\").c_str(), found);
  kxdemo::say("bFindPathForFile(\"Beenden.mac\", <macros>\\Sub\\) answers in the caller's form: %s", found.c_str());

  std::string s;
  kx::splitFileName("c:\\Messung\\Serie1\\Bild.TIF", s, kx::eFileExt);
  kxdemo::say("splitFileName(\"c:\\Messung\\Serie1\\Bild.TIF\", 8) = \"%s\"", s.c_str());
  kx::vCombineFileName("c:/Messung/Serie1/Bild.tif", "../Serie2/", s, 15, 15);
  kxdemo::say("vCombineFileName(\"c:/Messung/Serie1/Bild.tif\", \"../Serie2/\") = \"%s\"", s.c_str());
  kx::vRelativePathName("c:/Messung/Serie1/", "c:/Kalibrierung/dark.pf", s);
  kxdemo::say("vRelativePathName(\"c:/Messung/Serie1/\", \"c:/Kalibrierung/dark.pf\") = \"%s\"", s.c_str());
  char dir[] = "c:\\Messung\\Serie1\\Bild.tif";
  vReduceDir(dir);
  kxdemo::say("vReduceDir(\"c:\\Messung\\Serie1\\Bild.tif\") = \"%s\"", dir);
}

kxdemo::Step step(35, "paths and ini files", [](kxdemo::Context& c) { paths(c); });

}  // namespace
