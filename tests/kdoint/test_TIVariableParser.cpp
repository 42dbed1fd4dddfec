// Variable and vector definitions as script lines, the vector operations,
// call lists, casts and the handles of class lines.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "KdoTestUtil.h"
#include "kdoint/TIBuiltInClasses.h"
#include "kdoint/TICallList.h"
#include "kdoint/TICastManager.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIHandleTable.h"
#include "kdoint/TIToken.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "kdoint/TIVariableParser.h"
#include "kxexception/TLanguage.h"

using kdotest::codeOf;
using kdotest::errorOf;

namespace {

struct Script {
  TIClassList classes;
  TIVariableArray vars;  // declared after the classes: dies first
  TITokenLine tokens;
  Script() {
    vLoadBuiltInClasses(classes);
    vars.openLevel();
  }
  ~Script() {
    while (vars.uGetLevels()) vars.closeLevel(true);
  }
  void define(const char* line) {
    tokens.nextLine(line, false);
    TIVariableParser(classes, vars, tokens).setVariable();
  }
  TIVariable* v(const char* name) { return vars.addressOf(name); }
  // The names of the innermost level's variables from flat index `from` on.
  std::string names(int from = 0) {
    std::string out;
    for (int i = from; i < vars.getSize(); ++i) out += std::string(vars[i]->getName()) + " ";
    return out;
  }
  std::vector<int> ints(const char* vector) {
    std::vector<int> out;
    const TIVariable* vec = v(vector);
    for (unsigned i = 0; i < TIVariableArray::pGetVectorRecord(vec)->size; ++i)
      out.push_back(vars.pGetElement(vec, i)->getLong());
    return out;
  }
  void call(const char* self, const char* method, TIVariable* result, std::vector<TIVariable*> args) {
    TIVariable* s = v(self);
    std::vector<const TIClass*> argClasses;
    for (auto* a : args) argClasses.push_back(a->getClass());
    const int i = s->getClass()->getFunctionList().find(method, result ? result->getClass() : nullptr, argClasses);
    ASSERT_GE(i, 0) << method;
    std::vector<TIVariable*> list{s, result};
    list.insert(list.end(), args.begin(), args.end());
    list.push_back(nullptr);
    s->getClass()->getFunctionList()[static_cast<unsigned>(i)]->getAddress()(list.data());
  }
};

}  // namespace

TEST(VariableParser, DefinitionForms) {
  Script s;
  s.define("INT a");
  s.define("INT b(5)");
  s.define("INT c=b");
  s.define("FLOAT f(b)");
  s.define("FLOAT g=-2.5");
  s.define("INT n=-7");
  s.define("INT h(0x10)");
  s.define("LITERAL t=\"a\\nb\"");
  s.define("LITERAL e");
  EXPECT_EQ(s.v("a")->getLong(), 0);
  EXPECT_EQ(s.v("c")->getLong(), 5);
  EXPECT_DOUBLE_EQ(s.v("f")->getDouble(), 5.0);
  EXPECT_DOUBLE_EQ(s.v("g")->getDouble(), -2.5);
  EXPECT_EQ(s.v("n")->getLong(), -7);
  EXPECT_EQ(s.v("h")->getLong(), 16);
  EXPECT_STREQ(s.v("t")->getString(), "a\r\nb");
  EXPECT_EQ(s.v("e")->getString(), nullptr);
  EXPECT_EQ(s.tokens[1].getMeaning(), kdoint::eVARIABLE);
  // The temporaries of the calls are gone: only the variables remain.
  EXPECT_EQ(s.names(), "a b c f g n h t e ");
  EXPECT_EQ(s.vars.uGetLevels(), 1u);
}

TEST(VariableParser, RefusalsLeaveNothingBehind) {
  Script s;
  s.define("INT a");
  TLanguage::setDeutsch();
  const auto noCreate = errorOf([&] { s.define("INT i(1.5)"); });
  EXPECT_EQ(noCreate.first, 0xe7520048UL);
  EXPECT_EQ(noCreate.second, "Nicht gefunden: VOID create(FLOAT)");
  EXPECT_EQ(errorOf([&] { s.define("FLOAT x(1, 2)"); }).second, "Nicht gefunden: VOID create(INT,INT)");
  EXPECT_EQ(codeOf([&] { s.define("INT a"); }), 0xe772003fUL);
  EXPECT_EQ(codeOf([&] { s.define("INT"); }), 0xe612003eUL);
  EXPECT_EQ(codeOf([&] { s.define("INT d=1+2"); }), 0xe742004bUL);
  EXPECT_EQ(codeOf([&] { s.define("INT d="); }), 0xe742004aUL);
  EXPECT_EQ(codeOf([&] { s.define("INT d(5"); }), 0xe7320041UL);
  EXPECT_EQ(codeOf([&] { s.define("INT d 5"); }), 0xe7320040UL);
  EXPECT_EQ(codeOf([&] { s.define("INT d(nothing)"); }), 0xe7320042UL);
  EXPECT_EQ(codeOf([&] { s.define("INT d(-0x5)"); }), 0xe7320042UL);  // no sign for hexadecimal numbers
  EXPECT_EQ(s.names(), "a ");
  // An outer variable of the same name is no obstacle.
  s.vars.openLevel();
  s.define("INT a(3)");
  EXPECT_EQ(s.vars.iGetLevel("a"), 1);
}

TEST(VariableParser, NegativeSignOnlyWhereNoWordStandsBefore) {
  TITokenLine t;
  t.nextLine("a=b-1", false);
  vFindNegativSign(t, 3);
  EXPECT_EQ(t.getSize(), 5u);
  t.nextLine("a=b*-1.5", false);
  vFindNegativSign(t, 4);
  ASSERT_EQ(t.getSize(), 5u);
  EXPECT_EQ(t[4].getMeaning(), kdoint::eFLOAT);
  EXPECT_DOUBLE_EQ(t[4].toFloat_(), -1.5);
  t.nextLine("a=-0x1", false);
  vFindNegativSign(t, 2);
  EXPECT_EQ(t.getSize(), 4u);
}

TEST(VariableParser, VectorsAndIndexedArguments) {
  Script s;
  TLanguage::setDeutsch();
  s.define("INT k(2)");
  s.define("INT v[k]");
  s.define("FLOAT w[0x2]");
  EXPECT_EQ(s.names(), "k v v[0] v[1] w w[0] w[1] ");
  EXPECT_STREQ(s.v("w")->getClass()->getName().c_str(), "VECTOR");
  s.v("v[1]")->setContent(int32_t{42});
  s.define("INT e=v[1]");
  // v[2] does not exist: the folded word names nothing.
  EXPECT_EQ(errorOf([&] { s.define("INT e2(v[k])"); }).second, "Unerwartetes Token \"v[2]\"");
  EXPECT_EQ(s.v("e")->getLong(), 42);
  s.define("FLOAT fl");
  EXPECT_EQ(codeOf([&] { s.define("INT x[fl]"); }), 0xe7520068UL);
  EXPECT_EQ(codeOf([&] { s.define("INT x[none]"); }), 0xe7520069UL);
  EXPECT_EQ(codeOf([&] { s.define("INT x[\"3\"]"); }), 0xe732006aUL);
  EXPECT_EQ(codeOf([&] { s.define("INT x[3)"); }), 0xe7520067UL);
  EXPECT_EQ(codeOf([&] { s.define("INT x[3]]"); }), 0xe7520066UL);
  EXPECT_EQ(codeOf([&] { s.define("INT x[-1]"); }), 0xe7520066UL);
  EXPECT_EQ(codeOf([&] { s.define("VECTOR x[3]"); }), 0xe072006bUL);
  EXPECT_EQ(codeOf([&] { s.define("INT y=v[fl]"); }), 0xe7520079UL);
  EXPECT_EQ(codeOf([&] { s.define("INT y=v[none]"); }), 0xe752007aUL);
  EXPECT_EQ(codeOf([&] { s.define("INT y=v[1.0]"); }), 0xe732007bUL);
  EXPECT_EQ(codeOf([&] { s.define("INT y=v[1"); }), 0xe7520077UL);
  EXPECT_EQ(codeOf([&] { s.define("INT y(v[1 2)"); }), 0xe7320078UL);
  EXPECT_EQ(s.vars.find("x"), -1);
  EXPECT_EQ(s.vars.find("y"), -1);
}

TEST(VariableParser, VectorOperationsKeepNamesDenseAndMoveValues) {
  Script s;
  s.define("INT v[4]");
  for (int i = 0; i < 4; ++i) s.vars.pGetElement(s.v("v"), static_cast<unsigned>(i))->setContent(int32_t{i * 10});
  s.define("INT after");
  s.vars.vSwapInVector("v", 0, 3);
  EXPECT_EQ(s.ints("v"), (std::vector<int>{30, 10, 20, 0}));
  s.vars.vToEndOfVector("v", 0);
  EXPECT_EQ(s.ints("v"), (std::vector<int>{10, 20, 0, 30}));
  s.vars.vInsertBefore("v", 3, 1);
  EXPECT_EQ(s.ints("v"), (std::vector<int>{10, 30, 20, 0}));
  s.vars.vInsertBefore("v", 0, 3);
  EXPECT_EQ(s.ints("v"), (std::vector<int>{30, 20, 10, 0}));
  s.vars.vRemoveElement("v", 1);
  EXPECT_EQ(s.ints("v"), (std::vector<int>{30, 10, 0}));
  EXPECT_EQ(s.names(), "v v[0] v[1] v[2] after ");
  s.vars.vResizeVector("v", 5);
  EXPECT_EQ(s.ints("v"), (std::vector<int>{30, 10, 0, 0, 0}));
  EXPECT_EQ(s.names(), "v v[0] v[1] v[2] v[3] v[4] after ");
  s.vars.vResizeVector(s.vars.find("v"), 1);
  EXPECT_EQ(s.names(), "v v[0] after ");
  EXPECT_EQ(codeOf([&] { s.vars.vSwapInVector("v", 0, 1); }), 0xe74200b0UL);
  EXPECT_EQ(codeOf([&] { s.vars.vSwapInVector(0, 0, 1); }), 0xe74200b2UL);
  EXPECT_EQ(codeOf([&] { s.vars.vRemoveElement("after", 0); }), 0xe75200b1UL);
  EXPECT_EQ(codeOf([&] { s.vars.vToEndOfVector(s.vars.find("after"), 0); }), 0xe75200b3UL);
  EXPECT_EQ(codeOf([&] { s.vars.vInsertBefore("v", 0, 2); }), 0xe74200b0UL);
}

TEST(VariableParser, VectorMethods) {
  Script s;
  s.define("LITERAL t[2]");
  s.define("INT n");
  s.define("INT i");
  s.call("t", "size", s.v("n"), {});
  EXPECT_EQ(s.v("n")->getLong(), 2);
  s.v("t[0]")->setContent("zero");
  s.v("t[1]")->setContent("one");
  s.v("i")->setContent(int32_t{3});
  s.call("t", "resize", nullptr, {s.v("i")});
  s.v("i")->setContent(int32_t{0});
  s.call("t", "remove", nullptr, {s.v("i")});
  EXPECT_STREQ(s.v("t[0]")->getString(), "one");
  EXPECT_EQ(s.v("t[2]"), nullptr);
  s.v("i")->setContent(int32_t{7});
  s.call("t", "remove", nullptr, {s.v("i")});  // beyond the size: ignored
  s.v("i")->setContent(int32_t{-1});
  s.call("t", "remove", nullptr, {s.v("i")});
  s.v("i")->setContent(int32_t{-5});
  EXPECT_EQ(codeOf([&] { s.call("t", "resize", nullptr, {s.v("i")}); }), 0xe74200c5UL);
  s.call("t", "size", s.v("n"), {});
  EXPECT_EQ(s.v("n")->getLong(), 2);
  char status[64];
  s.v("t")->getClass()->getStatusFunction()(s.v("t"), status, sizeof status);
  EXPECT_STREQ(status, "LITERAL[2]");
  // Destroying the vector takes its elements along, the last first.
  s.vars.remove("t");
  EXPECT_EQ(s.names(), "n i ");
  EXPECT_EQ(codeOf([&] { s.vars.remove("t[0]"); }), 0xe7520082UL);
}

TEST(CallList, LayoutTemporariesAndUnknownNames) {
  Script s;
  s.define("INT a");
  TICallList call(s.classes, s.vars);
  call.useThis("a");
  call.appendInteger(3);
  call.appendFloat(1.5);
  call.appendLiteral("x");
  call.appendVariable("a");
  EXPECT_EQ(call.getSize(), 4u);
  EXPECT_EQ(call.getThis(), s.v("a"));
  EXPECT_EQ(call.getReturn(), nullptr);
  EXPECT_STREQ(call.getArgList()[0]->getName(), "__TICallList__0");
  EXPECT_STREQ(call.getArgList()[2]->getName(), "__TICallList__2");
  EXPECT_EQ(call.getArgList()[4], nullptr);
  EXPECT_EQ(call.getCallList()[2], call.getArgList()[0]);
  EXPECT_EQ(codeOf([&] { call.useThis("zz"); }), 0xe0a20043UL);
  EXPECT_EQ(codeOf([&] { call.useReturn("zz"); }), 0xe0a20044UL);
  EXPECT_EQ(codeOf([&] { call.appendVariable("zz"); }), 0xe0a20045UL);
  call.reset();
  EXPECT_EQ(call.getSize(), 0u);
  TIClassList none;
  TICallList bare(none, s.vars);
  EXPECT_EQ(codeOf([&] { bare.appendFloat(1); }), 0xe0a20046UL);
}

TEST(CastManager, SixConversionsAndNoOthers) {
  Script s;
  TICastManager casts;
  TIEmbeddedCast::vAppendCasts(casts);
  std::vector<std::string> targets;
  ASSERT_TRUE(casts.bCanCast("FLOAT", targets));
  EXPECT_EQ(targets, (std::vector<std::string>{"INT", "LITERAL"}));
  EXPECT_FALSE(casts.bCanCast("VECTOR", targets));
  s.define("INT i");
  s.define("FLOAT f(-2.75)");
  s.define("LITERAL t");
  casts.vExecCast(s.v("f"), s.v("i"));
  EXPECT_EQ(s.v("i")->getLong(), -2);
  s.v("f")->setContent(1e30);
  casts.vExecCast(s.v("f"), s.v("i"));
  EXPECT_EQ(s.v("i")->getLong(), INT32_MAX);
  casts.vExecCast(s.v("i"), s.v("t"));
  EXPECT_STREQ(s.v("t")->getString(), "2147483647");
  s.v("t")->setContent("2,5");
  casts.vExecCast(s.v("t"), s.v("f"));
  EXPECT_DOUBLE_EQ(s.v("f")->getDouble(), 2.5);
  s.v("f")->setContent(0.1);
  casts.vExecCast(s.v("f"), s.v("t"));
  casts.vExecCast(s.v("t"), s.v("f"));
  EXPECT_EQ(s.v("f")->getDouble(), 0.1);
  EXPECT_EQ(codeOf([&] { casts.vExecCast(s.v("i"), s.v("i")); }), 0xe75200c4UL);
  EXPECT_EQ(codeOf([&] { casts.vAppendCast("INT", "FLOAT", nullptr, false); }), 0xe77200c3UL);
}

namespace {
void someRoutine(TIVariable**) {}
void otherRoutine(TIVariable**) {}
void someStatus(const TIVariable*, char*, int) {}
}  // namespace

TEST(HandleTable, RoundTripAndRefusals) {
  const uint32_t r = kdoint::uRoutineHandle(someRoutine);
  EXPECT_EQ(kdoint::uRoutineHandle(someRoutine), r);
  EXPECT_NE(kdoint::uRoutineHandle(otherRoutine), r);
  EXPECT_EQ(kdoint::pRoutineOfHandle(r), &someRoutine);
  static const char help[] = "help";
  const uint32_t h = kdoint::uHelpHandle(help);
  EXPECT_EQ(kdoint::pHelpOfHandle(h), help);
  EXPECT_EQ(kdoint::pHelpOfHandle(0), nullptr);
  EXPECT_EQ(kdoint::pStatusOfHandle(kdoint::uStatusHandle(someStatus)), &someStatus);
  EXPECT_EQ(codeOf([&] { kdoint::pRoutineOfHandle(0); }), 0xe75200c2UL);
  EXPECT_EQ(codeOf([&] { kdoint::pRoutineOfHandle(h); }), 0xe75200c2UL);       // a help handle
  EXPECT_EQ(codeOf([&] { kdoint::pStatusOfHandle(r + 1000); }), 0xe75200c2UL);  // never given out
}
