// Procedures and user classes declared by script text.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "KdoSession.h"
#include "kdoint/TIHandleTable.h"
#include "kdoint/TIVariable.h"

using kdotest::Session;

TEST(Procedures, RecursionByReference) {
  Session s;
  EXPECT_EQ(s.run("procedure fact(INT n, INT r)\n{\n  if(n<2)\n  {\n    r=1\n  }\n  else\n  {\n    INT m\n"
                  "    m=n-1\n    fact(m, r)\n    r*=n\n  }\n}\nINT x(6)\nINT res\nfact(x, res)\necho(res)\n"),
            "720");
  EXPECT_EQ(s.lastError(), 0u);
  EXPECT_EQ(s.interp().iGetPlayDepth(), 0);
  EXPECT_EQ(s.interp().getLineParser().getChild(), nullptr);
}

TEST(Procedures, OverloadsRedefinitionAndArguments) {
  Session s;
  EXPECT_EQ(s.run("procedure show(INT a)\n{\necho(\"old\")\n}\nprocedure show(INT a)\n{\necho(a)\n}\n"
                  "procedure show(FLOAT a)\n{\necho(\"float\")\n}\nprocedure p()\n{\necho(\"p\")\n}\n"
                  "INT i(4)\nFLOAT f\nINT v[2]\nv[1]=8\nshow(i)\nshow(f)\np()\nshow(v[1])\n"),
            "4floatp8");
  EXPECT_EQ(s.interp().getProcedureList().size(), 3u);
  EXPECT_EQ(s.interp().getProcedureList()[1].getDeclaration(), "show(FLOAT a)");
  // A constant selects the overload, then its reference line fails: the
  // body runs without its parameter.
  // (`a` is then an unknown word, which a built-in takes as its text.)
  EXPECT_EQ(s.run("procedure q(INT a)\n{\necho(\"q\")\necho(a)\n}\nq(5)\n"), "qa");
  EXPECT_EQ(s.lastError(), 0xe09200b4UL);
  s.run("show(-1)\n");
  EXPECT_EQ(s.lastError(), 0xe09200a4UL);
  s.run("show(i f)\n");
  EXPECT_EQ(s.lastError(), 0xe09200a4UL);
  s.run("show(\"x\")\n");
  EXPECT_EQ(s.lastError(), 0xe09200a0UL);
  s.run("show(nothing)\n");
  EXPECT_EQ(s.lastError(), 0xe78200aaUL);
  s.run("show(v[7])\n");
  EXPECT_EQ(s.lastError(), 0xe78200aaUL);
  s.run("procedure r(INT a[2])\n");
  EXPECT_EQ(s.lastError(), 0xe08200afUL);
  s.run("procedure r(NOCLASS a)\n");
  EXPECT_EQ(s.lastError(), 0xe7520035UL);
  s.run("procedure (INT a)\n");
  EXPECT_EQ(s.lastError(), 0xe09200acUL);
}

TEST(Procedures, DeepRecursionEndsInAnErrorNotACrash) {
  Session s;
  const std::string out = s.run("procedure down(INT n)\n{\nn-=1\nif(n>0)\n{\ndown(n)\n}\n}\nINT k(10000)\ndown(k)\n"
                                "echo(\"alive\")\n",
                                5000000);
  EXPECT_NE(out.find("alive"), std::string::npos);
  EXPECT_EQ(s.run("echo(k)\n"), "0");
}

namespace {
void fooCreate(TIVariable** c) { c[0]->setContent(static_cast<void*>(new int(7))); }
void fooDestroy(TIVariable** c) {
  delete static_cast<int*>(c[0]->getPointer());
  c[0]->setContent(static_cast<void*>(nullptr));
}
void fooGet(TIVariable** c) { c[1]->setContent(static_cast<int32_t>(*static_cast<int*>(c[0]->getPointer()))); }
void fooAdd(TIVariable** c) { *static_cast<int*>(c[0]->getPointer()) += c[2]->getLong(); }
void fooTwice(TIVariable** c) { *static_cast<int*>(c[0]->getPointer()) *= 2; }

std::string hex(uint32_t h) {
  char b[16];
  std::snprintf(b, sizeof b, "0x%08x", h);
  return b;
}
}  // namespace

TEST(Classes, DeclaredSupplementedAndUsed) {
  Session s;
  static const char help[] = "A test class";
  const std::string r = [] { return std::string(); }();
  const std::string script = "class FOO " + hex(kdoint::uHelpHandle(help)) + " 0\n{\n" +
                             "    VOID create() " + hex(kdoint::uRoutineHandle(fooCreate)) + " 0x0\n" +
                             "    VOID destroy(VOID) " + hex(kdoint::uRoutineHandle(fooDestroy)) + " 0x0\n" +
                             "    INT get() " + hex(kdoint::uRoutineHandle(fooGet)) + " 0x0\n" +
                             "    VOID add(INT amount) " + hex(kdoint::uRoutineHandle(fooAdd)) + " 0x0\n}\n" +
                             "FOO f\nf.add(5)\nINT r\nr=f.get()\necho(r)\n";
  EXPECT_EQ(s.run(script), "12");
  EXPECT_EQ(s.lastError(), 0u);
  TIClass* foo = s.interp().getClassList().addressOf("FOO");
  EXPECT_STREQ(foo->getHelp(), help);
  EXPECT_EQ(foo->getFunctionList()[3]->getFormat(), "VOID add(INT)");
  EXPECT_EQ(s.run("supplement FOO\n{\n    VOID twice() " + hex(kdoint::uRoutineHandle(fooTwice)) +
                  " 0x0\n}\nf.twice()\nr=f.get()\necho(r)\nFOO g[2]\nr=g[1].get()\necho(r)\n"),
            "247");
  // r=f.add(1): add has no result, so nothing matches.
  s.run("r=f.add(1)\n");
  EXPECT_EQ(s.lastError(), 0xe7520056UL);
  // A second declaration of the same method removes the half-made class.
  s.run("class BAR 0x0 0\n{\n    VOID create() " + hex(kdoint::uRoutineHandle(fooCreate)) +
        " 0x0\n    VOID create() " + hex(kdoint::uRoutineHandle(fooCreate)) + " 0x0\n}\n");
  EXPECT_EQ(s.lastError(), 0xe77200b6UL);
  EXPECT_EQ(s.interp().getClassList().find("BAR"), -1);
  s.run("class BAR 0x0 0\n{\n    VOID create() 0x12345678 0x0\n}\n");
  EXPECT_EQ(s.lastError(), 0xe75200c2UL);
  s.run("class BAR 10 0x0\n");
  EXPECT_EQ(s.lastError(), 0xe7320020UL);
  s.run("class FOO 0x0 0x0\n");
  EXPECT_EQ(s.lastError(), 0xe7720021UL);
  s.run("supplement NONE\n");
  EXPECT_EQ(s.lastError(), 0xe7720021UL);
  s.run("class BAR 0x0 0x0\n{\n    VOID f(INT, NONE) 0x0 0x0\n}\n");
  EXPECT_EQ(s.lastError(), 0xe752002aUL);
  s.run("class BAR 0x0 0x0\n{\n    VOID f(INT) 0x0 zz\n}\n");
  EXPECT_EQ(s.lastError(), 0xe7520029UL);
}
