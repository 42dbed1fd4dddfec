// Paths and ini files: a macro search path as the interpreter builds it, the
// path helpers on names written for another platform; the start ini read
// through the disk ini, a rectangle and a comma value, the memory ini's text,
// an installation ini applied once.
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Demo.h"
#include "file98/CRectangle.h"
#include "file98/IniHelpers.h"
#include "file98/KxPath.h"
#include "file98/TExistFile.h"
#include "file98/TIniFile2Registry.h"
#include "file98/TKxMemIniFile.h"
#include "file98/TKxStdIniFile.h"
#include "file98/TSearchPath.h"
#include "file98/TTextConverterFromIniFile.h"
#include "platform/Registry.h"

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

void iniFiles(kxdemo::Context& c) {
  namespace fs = std::filesystem;
  const std::string dir = c.workDir + "/ini";
  kx::makeDir(dir.c_str());
  for (const char* f : {"KdoIntUse.ini", "Camera.ini", "registry.ini"})
    fs::copy_file(c.examplesDir + "/ini/" + f, dir + "/" + f, fs::copy_options::overwrite_existing);

  // The start ini, as the front end reads it: "%s/%s%d" sections per entry.
  TKxStdIniFile start(TIniFilename((dir + "/KdoIntUse.ini").c_str()));
  const int n = start.iReadInteger("Application", "Size", 0);
  for (int i = 1; i <= n; ++i) {
    const std::string sec = "Application/Entry" + std::to_string(i);
    kxdemo::say("application %d: \"%s\" / \"%s\" in %s", i, start.sReadString(sec.c_str(), "Name", "").c_str(),
                start.sReadString(sec.c_str(), "NameE", "").c_str(), start.sReadString(sec.c_str(), "Path", "").c_str());
  }

  // A rectangle and a value typed by hand with a decimal comma.
  const TIniFilename camera((dir + "/Camera.ini").c_str());
  CRectangle area;
  area.readIni(camera, "Measure");
  TKxStdIniFile cam(camera);
  double gain = 1.0;
  ReadIniDouble(cam, "Measure", "Gain", gain);
  kxdemo::say("[Measure] area lines %d..%d, columns %d..%d; Gain=2,5 reads as %g", area.iFirstLine, area.iLastLine,
              area.iFirstColumn, area.iLastColumn, gain);
  WriteIniDouble(cam, "Measure", "Gain", gain * 2);
  CRectangle(0, 479, 0, 639).writeIni(&cam, "Measure");
  kxdemo::say("written back at once: Gain=%s, Right=%s", TKxMemIniFile(camera).sReadString("Measure", "Gain", "").c_str(),
              TKxMemIniFile(camera).sReadString("Measure", "Right", "").c_str());
  TExistFile check;
  std::string named;
  const auto e = check.eProof(camera, "Dark", named);
  kxdemo::say("TExistFile [Dark] FileName: %s (%s)", TExistFile::rGetText(e)(TLanguage::eEnglisch), named.c_str());

  // The memory ini: duplicates, positions, the text it writes.
  TKxMemIniFile mem;
  mem.vReadFromString("junk before\n[a]\nk=1\nk=2\n[x]=y\n=ends the section\nlost=1\n[b]\nv=1,5\n");
  mem.vDeleteSubsections("nothing/");
  std::string text;
  for (char ch : mem.sWriteToString()) text += ch == '\r' ? std::string("~") : ch == '\n' ? std::string("\n      ") : std::string(1, ch);
  kxdemo::say("memory ini: k=%s (first of two), entry 1 of [a] is %s, [b] v=%g; written ('~' is CR):\n      %s",
              mem.sReadString("a", "k", "").c_str(), mem.sReadString(0, 1, "").c_str(), mem.dReadFloat("b", "v", 0),
              text.c_str());

  // An installation ini: the registry is a no-op here, its writes are shown.
  auto old = kx::platform::setRegistryObserver([](const kx::platform::RegistryValue& v) {
    kxdemo::say("  registry (not written): %s\\%s [%s] = %s", v.hive.c_str(), v.key.c_str(), v.name.c_str(),
                v.value.c_str());
  });
  std::string found;
  if (kx::bFindPathForFile("registry.ini", (dir + "/").c_str(), found)) {
    TIniFile2Registry reg;
    reg.vReplace("%Ini%", (dir + "/KdoIntUse.ini").c_str());
    reg.vReplace("%Exe%", (kx::sGetProgramDir() + "kxdemo").c_str());
    const TIniFilename r((found + "registry.ini").c_str());
    const bool first = reg.bExecIni(r, "Registry", false);
    const bool second = reg.bExecIni(r, "Registry", false);
    kxdemo::say("registry.ini applied: first run %d, second run %d (\"Done\" is set)", first, second);
  }
  kx::platform::setRegistryObserver(std::move(old));

  TTextConverterFromIniFile conv("Measure", "%", "%", true, "");
  kxdemo::say("%s", conv.sFilter("Area %Left%..%Right% x %Top%..%Bottom%, gain %Gain%, %Unknown% stays", &cam, false).c_str());
}

kxdemo::Step step(35, "paths and ini files", [](kxdemo::Context& c) {
  paths(c);
  iniFiles(c);
});

}  // namespace
