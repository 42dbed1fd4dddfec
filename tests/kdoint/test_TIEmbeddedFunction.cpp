// The built-in functions and the global variables of a fresh interpreter.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "KdoSession.h"
#include "kxexception/TLanguage.h"

using kdotest::Session;

TEST(BuiltIns, GlobalVariablesOfAFreshInterpreter) {
  Session s;
  EXPECT_EQ(s.run("echo(MacroDir)\necho(\";\")\necho(True)\necho(False)\necho(M_PI)\nINT n\nLITERAL first\n"
                  "first=MacroPaths.element(0)\necho(first)\nn=exist(Ret)\necho(n)\n"),
            s.path("") + ";103.141593e+00" + s.path("").substr(0, s.path("").size() - 1) + "0");
  EXPECT_EQ(s.lastError(), 0u);
}

TEST(BuiltIns, ExistDestroyGlobalAndEcho) {
  Session s;
  EXPECT_EQ(s.run("INT r\nINT x(4)\nr=exist(nothing)\necho(r)\nr=exist(x)\necho(r)\nr=exist(\"INT\")\necho(r)\n"
                  "LITERAL name=\"x\"\nr=exist(name)\necho(r)\necho(1)\necho(1.5)\necho(\"a\")\n"),
            "011111.500000e+00a");
  s.run("destroy(x)\n");
  EXPECT_EQ(s.lastError(), 0xe7520050UL);
  EXPECT_EQ(s.run("destroy(name)\nr=exist(x)\necho(r)\ndestroy(\"nothing\")\n"), "0");
  EXPECT_EQ(s.lastError(), 0xe7520081UL);
  EXPECT_EQ(s.run("{\nINT inner(2)\nglobal(\"inner\")\nINT lost(3)\n}\nr=exist(inner)\necho(r)\nr=exist(lost)\necho(r)\n"
                  "global(r)\nglobal(\"zz\")\n"),
            "10");
  EXPECT_EQ(s.lastError(), 0xe7820099UL);
}

TEST(BuiltIns, PlayRecordAndEnd) {
  Session s;
  { std::ofstream(s.path("a.mac")) << "echo(\"played\")\n"; }
  EXPECT_EQ(s.run("play(\"a\")\necho(\".\")\n"), "played.");
  EXPECT_EQ(s.run("play(\"missing\")\necho(\".\")\n"), ".");
  EXPECT_EQ(s.lastError(), 0xe312009cUL);
  EXPECT_EQ(s.interp().getEAManager().uGetInputDepth(), 1u);
  // Recording takes the lines of the input file only, without "record" and "end".
  EXPECT_EQ(s.run("record(\"m\")\nINT rec(8)   // a comment\necho(rec)\nplay(\"a\")\nend()\n"), "8played");
  EXPECT_EQ(Session::slurp(s.path("m.mac")), "INT rec(8)   \necho(rec)\nplay(\"a\")\n");
  s.run("record(\"m\")\n");
  EXPECT_EQ(s.lastError(), 0xe3320002UL);  // 109: the file exists
  { std::ofstream(s.path("r.mac")) << "record(\"n\")\n"; }
  s.run("play(\"r\")\n");
  EXPECT_EQ(s.lastError(), 0xe762008cUL);  // 110: not from the input file
  EXPECT_EQ(s.run("destroy(\"rec\")\nplay(\"m\")\n"), "8played");
}

TEST(BuiltIns, FilesDirectoriesAndNames) {
  Session s;
  const std::string d = s.path("sub");
  EXPECT_EQ(s.run("INT r\nmakeDir(\"" + d + "/x\")\nr=existDir(\"" + d + "/x\")\necho(r)\n" +
                  "r=writeableDir(\"" + d + "\")\necho(r)\ncopyFile(\"" + s.path("i.txt") + "\",\"" + d +
                  "/c.txt\")\nr=existFile(\"" + d + "/c.txt\")\necho(r)\ndeleteFile(\"" + d +
                  "/c.txt\")\nr=existFile(\"" + d + "/c.txt\")\necho(r)\ndeleteDir(\"" + d +
                  "\")\nr=existDir(\"" + d + "\")\necho(r)\n" +
                  "LITERAL a\nLITERAL b\nLITERAL c\nLITERAL e\nsplitFileName(\"/p/q/name.ext\",a,b,c,e)\n"
                  "echo(b)\necho(c)\necho(e)\nmergeFileName(a,\"\",\"/r/\",\"n\",\".x\")\necho(a)\n"
                  "r=MessageBox(\"text\",\"caption\",4)\necho(r)\nr=InputBox(\"c\",\"p\",a)\necho(r)\n"
                  "setLanguage(1)\nr=getLanguage()\necho(r)\nsetLanguage(0)\n"),
            "11100/p/q/name.ext/r/n.x611");
  TLanguage::setDeutsch();
}
