#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "File98TestUtil.h"
#include "file98/TIniFile2Registry.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "platform/Registry.h"

namespace {

using namespace kxtest;

TEST(IniFile2Registry, AppliesOnceWithReplacements) {
  TempDir t;
  const std::string file = t / "registry.ini";
  writeFile(file,
            "[Registry]\r\nDone=0\r\n"
            "[HKEY_CLASSES_ROOT]\r\nCount=2\r\nKey1=.mac\r\nKey2=KxMacro\r\n"
            "[.mac]\r\nStandard=KxMacro\r\n"
            "[KxMacro]\r\nStandard=Macro file\r\nDefaultIcon=%Exe%,0\r\nOpen=\"%Exe%\" \"%1\" -u=%Ini%\r\nOverwrite=0\r\n"
            "[HKEY_LOCAL_MACHINE]\r\nCount=99999999\r\nKey1=Software\\Kx\\Basics\r\n"
            "[Software\\Kx\\Basics]\r\nPath=%Ini%\r\nVersion=0.1\r\nInstall=1\r\n");
  std::vector<kx::platform::RegistryValue> seen;
  auto old = kx::platform::setRegistryObserver([&](const kx::platform::RegistryValue& v) { seen.push_back(v); });
  TIniFile2Registry reg;
  reg.vReplace("%Ini%", "/opt/kx/KdoIntUse.ini");
  reg.vReplace("%Exe%", "/opt/kx/kxdemo");
  EXPECT_TRUE(reg.bExecIni(TIniFilename(file.c_str()), "Registry", false));
  auto shown = [&] {
    std::vector<std::string> v;
    for (const auto& r : seen) v.push_back(r.hive + "|" + r.key + "|" + r.name + "|" + r.value + (r.overwrite ? "|o" : "|-"));
    return v;
  };
  const std::vector<std::string> want{
      "HKEY_CLASSES_ROOT|.mac||KxMacro|o",
      "HKEY_CLASSES_ROOT|KxMacro||Macro file|-",
      "HKEY_CLASSES_ROOT|KxMacro\\DefaultIcon||/opt/kx/kxdemo,0|-",
      "HKEY_CLASSES_ROOT|KxMacro\\shell\\open\\command||\"/opt/kx/kxdemo\" \"%1\" -u=/opt/kx/KdoIntUse.ini|-",
      "HKEY_LOCAL_MACHINE|Software\\Kx\\Basics|Path|/opt/kx/KdoIntUse.ini|o",
      "HKEY_LOCAL_MACHINE|Software\\Kx\\Basics|Version|0.1|o",
      "HKEY_LOCAL_MACHINE|Software\\Kx\\Basics|Install|1|o"};
  EXPECT_EQ(shown(), want);
  TKxMemIniFile after(file.c_str());
  EXPECT_EQ(after.sReadString("Registry", "Done", ""), "1");

  seen.clear();
  EXPECT_FALSE(reg.bExecIni(TIniFilename(file.c_str()), "Registry", false));  // applied once
  EXPECT_TRUE(seen.empty());
  EXPECT_TRUE(reg.bExecIni(TIniFilename(file.c_str()), "Registry", true));  // forced
  EXPECT_EQ(shown(), want);
  kx::platform::setRegistryObserver(std::move(old));
  EXPECT_FALSE(kx::platform::registryValueExists("HKEY_CLASSES_ROOT", ".mac", ""));
  EXPECT_EQ(reg.sReplaced("%Ini%%Ini%"), "/opt/kx/KdoIntUse.ini/opt/kx/KdoIntUse.ini");
}

}  // namespace
