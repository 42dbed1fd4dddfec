#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "File98TestUtil.h"
#include "file98/TIniFile2Registry.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "platform/Registry.h"

namespace {

using kxtest::TempDir;
using kxtest::writeFile;

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
  ASSERT_EQ(seen.size(), 7u);
  EXPECT_EQ(seen[0].hive, "HKEY_CLASSES_ROOT");
  EXPECT_EQ(seen[0].key, ".mac");
  EXPECT_EQ(seen[0].name, "");
  EXPECT_EQ(seen[0].value, "KxMacro");
  EXPECT_TRUE(seen[0].overwrite);
  EXPECT_EQ(seen[2].key, "KxMacro\\DefaultIcon");
  EXPECT_EQ(seen[2].value, "/opt/kx/kxdemo,0");
  EXPECT_EQ(seen[3].key, "KxMacro\\shell\\open\\command");
  EXPECT_EQ(seen[3].value, "\"/opt/kx/kxdemo\" \"%1\" -u=/opt/kx/KdoIntUse.ini");
  EXPECT_FALSE(seen[3].overwrite);
  EXPECT_EQ(seen[4].hive, "HKEY_LOCAL_MACHINE");
  EXPECT_EQ(seen[4].name, "Path");
  EXPECT_EQ(seen[4].value, "/opt/kx/KdoIntUse.ini");
  EXPECT_EQ(seen[6].name, "Install");
  TKxMemIniFile after(file.c_str());
  EXPECT_EQ(after.sReadString("Registry", "Done", ""), "1");

  seen.clear();
  EXPECT_FALSE(reg.bExecIni(TIniFilename(file.c_str()), "Registry", false));  // applied once
  EXPECT_TRUE(seen.empty());
  EXPECT_TRUE(reg.bExecIni(TIniFilename(file.c_str()), "Registry", true));
  EXPECT_EQ(seen.size(), 7u);
  kx::platform::setRegistryObserver(std::move(old));
  EXPECT_FALSE(kx::platform::registryValueExists("HKEY_CLASSES_ROOT", ".mac", ""));
  EXPECT_EQ(reg.sReplaced("%Ini%%Ini%"), "/opt/kx/KdoIntUse.ini/opt/kx/KdoIntUse.ini");
}

}  // namespace
