// The start ini of the front end and its command line.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "KdoFrontEnd/TCommandLineOption.h"
#include "KdoFrontEnd/TStartParameter.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace fs = std::filesystem;

namespace {
struct IniDir {
  fs::path dir = fs::temp_directory_path() / ("kx_start_" + std::to_string(::getpid()));
  IniDir() {
    fs::remove_all(dir);
    fs::create_directories(dir / "App");
  }
  ~IniDir() { fs::remove_all(dir); }
  std::string write(const std::string& text) {
    std::ofstream(dir / "Use.ini") << text;
    return (dir / "Use.ini").string();
  }
};

unsigned long codeOf(TStartParameter& p, const std::string& file) {
  try {
    p.vRead(file.c_str());
  } catch (unsigned long c) {
    kx::deleteError();
    return c;
  }
  return 0;
}

const char* const sGood =
    "[Application]\nSize=2\nDefault=2\n[Application/Entry1]\nName=Eins\nNameE=One\nPath=App\n"
    "[Application/Entry2]\nName=Zwei\nNameE=Two\nPath=/abs\nPath1=more/a\nPath2=more/b\n"
    "[Calibration]\nSize=1\nDefault=1\n[Calibration/Entry1]\nName=K\nNameE=C\nPath=App\n"
    "[Startmacro]\nSize=1\nDefault=1\n[Startmacro/Entry1]\nName=Start\nNameE=Begin\n"
    "[Work]\nSize=1\nDefault=1\n[Work/Entry1]\nPath=App\n";
}  // namespace

TEST(StartParameter, ListsDefaultsAndPaths) {
  IniDir d;
  TStartParameter p;
  TLanguage::setEnglisch();
  ASSERT_EQ(codeOf(p, d.write(sGood)), 0u);
  TLanguage::setDeutsch();
  EXPECT_EQ(p.uGetNumberApplication(), 2u);
  EXPECT_EQ(p.uGetDefaultApplication(), 1u);
  EXPECT_STREQ(p.cpGetApplicationName(0), "One");
  EXPECT_EQ(std::string(p.cpGetApplicationPath(0)), (d.dir / "App").string());
  EXPECT_STREQ(p.cpGetApplicationPath(1), "/abs");
  EXPECT_EQ(p.iSizeApplicationPath2(1), 2);
  EXPECT_STREQ(p.cpGetApplicationPath2(1, 1), "more/b");
  EXPECT_STREQ(p.cpGetStartmacroName(0), "Begin");
  EXPECT_EQ(std::string(p.cpGetInstallationPath()), d.dir.string() + "/");
  p.vSetDefaultApplication(5);  // out of the list: ignored
  EXPECT_EQ(p.uGetDefaultApplication(), 1u);
}

TEST(StartParameter, MalformedIniFiles) {
  IniDir d;
  TStartParameter p;
  const std::string good = sGood;
  auto with = [&](const std::string& from, const std::string& to) {
    std::string s = good;
    s.replace(s.find(from), from.size(), to);
    return d.write(s);
  };
  EXPECT_EQ(codeOf(p, with("[Work]\nSize=1", "[Work]\nSize=0")), 0xe7034004UL);
  EXPECT_EQ(codeOf(p, with("[Application]\nSize=2\nDefault=2", "[Application]\nSize=2\nDefault=3")), 0xe7034004UL);
  EXPECT_EQ(codeOf(p, with("[Calibration]\n", "[Other]\n")), 0xe7034004UL);
  EXPECT_EQ(codeOf(p, with("Name=K\n", "")), 0xe7834001UL);
  EXPECT_EQ(codeOf(p, with("[Work/Entry1]\nPath=App", "[Work/Entry1]\nX=App")), 0xe7834002UL);
  EXPECT_EQ(codeOf(p, d.write("\x01\x02garbage[[[\n=\n")), 0xe7034004UL);
}

TEST(CommandLineOption, NamesAndValues) {
  const char* argv[] = {"kdoint", "-u=a.ini", "-i2", "-i=3", "-", "plain", "-e"};
  const TCommandLineOption o(7, argv);
  ASSERT_EQ(o.size(), 4u);
  EXPECT_EQ(o.value("u"), "a.ini");
  EXPECT_EQ(o.option(1), "i2");
  EXPECT_EQ(o.value(2), "3");
  EXPECT_TRUE(o.isOption("e"));
  EXPECT_FALSE(o.isOption("plain"));
}
