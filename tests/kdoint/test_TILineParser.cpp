// Whole scripts through the interpreter: statement forms, blocks, if/else,
// while, and what a failing line leaves behind.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "KdoSession.h"
#include "kdoint/TILineParser.h"
#include "kxexception/TLanguage.h"

using kdotest::Session;

TEST(LineParser, StatementForms) {
  Session s;
  EXPECT_EQ(s.run("INT a(6)\nINT b\nb=a*7\necho(b)\n"
                  "b-=2\necho(b)\nb=-3\necho(b)\nb=a-1\necho(b)\n"
                  "FLOAT f\nf=2\nf=f/4.0\necho(f)\n"
                  "LITERAL t=\"x\"\nt+=\"y\"\necho(t)\n"
                  "INT n\nn.strlen(t)\necho(n)\nn=t.toString(\"%d\")\n"
                  "LITERAL u\nu=b.toString(\"<%d>\")\necho(u)\n"
                  "INT v[3]\nv[2]=9\nn=v[2]+1\necho(n)\n"),
            "4240-355.000000e-01xy2<5>10");
  EXPECT_EQ(s.lastError(), 0xe7520056UL);  // n=t.toString(..) into an INT
  // Commas are dropped wherever they stand: "b c" is two arguments, ",b" one.
  EXPECT_EQ(s.run("LITERAL p=\"ab\"\nLITERAL q=\"b\"\nn.strstr(p q)\necho(n)\nn.strlen(,p)\necho(n)\n"), "12");
  EXPECT_EQ(s.lastError(), 0u);
}

TEST(LineParser, IfElseAndTheLineAfter) {
  Session s;
  EXPECT_EQ(s.run("INT a(1)\nif(a<2)\n{\necho(\"then\")\n}\nelse\n{\necho(\"else\")\n}\necho(\".\")\n"),
            "then.");
  EXPECT_EQ(s.run("if(a>=2)\n{\necho(\"then\")\n}\n// a comment line keeps the else open\nelse\n{\n"
                  "echo(\"else\")\n}\n"),
            "else");
  // No else: the next line runs normally.
  EXPECT_EQ(s.run("if(a==1)\n{\necho(\"A\")\n}\necho(\"B\")\n"), "AB");
  // Nested blocks and a brace inside a string.
  EXPECT_EQ(s.run("{\nINT inner(3)\n{\necho(inner)\necho(\"{\")\n}\n}\n}\nINT e\ne=exist(inner)\necho(e)\n"),
            "3{0");
}

TEST(LineParser, ElseAfterAMacroThatEndsWithTheIfBlock) {
  Session s;
  { std::ofstream(s.path("m.mac")) << "INT a(5)\nglobal(\"a\")\nif(a<1)\n{\necho(\"then\")\n}\n"; }
  s.interp().getEAManager().openInput(s.path("m.mac").c_str(), false, true);
  s.interp().vIncPlayDepth();
  EXPECT_EQ(s.run("else\n{\necho(\"else\")\n}\n"), "else");
  EXPECT_EQ(s.interp().iGetPlayDepth(), 0);
}

TEST(LineParser, WhileLoopsNestedAndRepeated) {
  Session s;
  EXPECT_EQ(s.run("INT i(0)\nwhile(i<3)\n{\ni+=1\nINT j(0)\nwhile(j<i)\n{\nj+=1\necho(j)\n}\necho(\";\")\n}\n"),
            "1;2;3;");
  // INT j directly in the body exists at the second pass: that line fails,
  // the rest goes on with j as the first pass left it.
  EXPECT_EQ(s.lastError(), 0xe772003fUL);
  EXPECT_EQ(s.run("while(i<2)\n{\necho(\"never\")\n}\necho(i)\n"), "3");
  EXPECT_EQ(s.interp().iGetPlayDepth(), 0);
  EXPECT_EQ(s.interp().getLineParser().getChild(), nullptr);
}

TEST(LineParser, FailingLinesAndTheirMessages) {
  Session s;
  TLanguage::setDeutsch();
  s.run("}\n");
  EXPECT_EQ(s.lastError(), 0xe6120022UL);
  s.run("INT a\nif(a)\n");
  EXPECT_EQ(s.lastError(), 0xe752005cUL);
  s.run("if(a<1)\nINT b\n");
  EXPECT_EQ(s.lastError(), 0xe7520036UL);
  s.run("if(a<)\n");
  EXPECT_EQ(s.lastError(), 0xe752005cUL);
  s.run("if(a<a a)\n");
  EXPECT_EQ(s.lastError(), 0xe752005cUL);
  s.run("procedure nobody()\necho(1)\n");
  EXPECT_EQ(s.lastError(), 0xe7520036UL);
  s.run("FLOAT f\nif(f>1.0)\n");
  EXPECT_EQ(s.lastError(), 0xe7520062UL);
  s.run("if(f<1)\n");
  EXPECT_EQ(s.lastError(), 0xe7520062UL);
  s.run("if(a<\"x\")\n");
  EXPECT_EQ(s.lastError(), 0xe7520060UL);
  s.run("nothing here\n");
  const auto chain = kx::getErrorChain();
  ASSERT_FALSE(chain.empty());
  EXPECT_EQ(chain.front().text, "Syntax nicht erfasst: nothing here");
  EXPECT_EQ(s.lastError(), 0xe75200c6UL);
  s.run("a!=1\n");
  EXPECT_EQ(s.lastError(), 0xe7520056UL);
  s.run("a=1+a\n");
  EXPECT_EQ(s.lastError(), 0xe7520059UL);
  s.run("f+=1\n");
  EXPECT_EQ(s.lastError(), 0xe7520056UL);
  s.run("a/=0\n");
  EXPECT_EQ(s.lastError(), 0xe0000000UL);
  // A failing if line leaves status 0: its block runs unconditionally.
  EXPECT_EQ(s.run("if(a)\n{\necho(\"ran\")\n}\n"), "ran");
  EXPECT_EQ(s.lastError(), 0xe752005cUL);
}

TEST(LineParser, ShowErrorWritesTheChainAndEndsIt) {
  Session s;
  TLanguage::setEnglisch();
  { std::ofstream(s.path("bad.mac")) << "INT a\nunknown()\n"; }
  s.run("showError(1)\n");
  s.interp().getEAManager().openInput(s.path("bad.mac").c_str(), false, true);
  s.interp().vIncPlayDepth();
  EXPECT_EQ(s.run("echo(\"after\")\n"), "after");
  EXPECT_EQ(s.lastError(), 0u);
  const std::string errors = Session::slurp(s.path("e.txt"));
  EXPECT_NE(errors.find("Unknown syntax: unknown()"), std::string::npos) << errors;
  EXPECT_NE(errors.find("Macro: \"bad.mac\""), std::string::npos) << errors;
  EXPECT_NE(errors.find("Line: \"unknown()\""), std::string::npos) << errors;
  TLanguage::setDeutsch();
}
