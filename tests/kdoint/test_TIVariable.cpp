// Classes, functions, variables and their scopes.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "kdoint/TIClass.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"
#include "KdoTestUtil.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

using kdotest::errorOf;

namespace {

std::vector<std::string> destroyed;
void destroyRoutine(TIVariable** call) { destroyed.push_back(call[0]->getName()); }
void noop(TIVariable**) {}

struct Classes {
  TIClassList list;
  TIClass* thing;
  TIClass* plain;
  TIClass* vec;
  Classes() {
    thing = new TIClass("THING");
    thing->getFunctionList().append(new TIFunction(thing, "destroy", {}, nullptr, destroyRoutine));
    plain = new TIClass("PLAIN");  // no destroy
    vec = new TIClass("VECTOR");
    list.append(thing);
    list.append(plain);
    list.append(vec);
  }
};

}  // namespace

TEST(Functions, NamesFormatsAndExactLookup) {
  TIClass intC("INT"), floatC("FLOAT");
  {
    TIFunctionList fl;
    fl.append(new TIFunction(&intC, "operator+", {&intC}, &intC, noop));
    fl.append(new TIFunction(&intC, "operator+", {&floatC}, &floatC, noop, "help"));
    fl.append(new TIFunction(nullptr, "reference$h", {&intC, &intC}, nullptr, noop));
    EXPECT_EQ(fl[0]->getFormat(), "INT operator+(INT)");
    EXPECT_EQ(fl[2]->getFormat(), "VOID reference(INT,INT)");
    EXPECT_TRUE(fl[2]->isHidden());
    EXPECT_FALSE(fl[0]->isHidden());
    EXPECT_STREQ(fl[0]->getHelp(), "Für diese Funktion ist keine Hilfe verfügbar.");
    EXPECT_EQ(fl.find("operator+", "FLOAT", {"FLOAT"}), 1);
    EXPECT_EQ(fl.find("operator+", "FLOAT", {"INT"}), -1);  // the result class is part of it
    EXPECT_EQ(fl.find("reference", static_cast<const char*>(nullptr), std::vector<const char*>{"INT", "INT"}), 2);
    EXPECT_EQ(fl.find("reference", &intC, std::vector<const TIClass*>{&intC, &intC}), -1);
    EXPECT_EQ(errorOf([&] { fl[3]; }).first, 0xe7420049UL);
    EXPECT_EQ(floatC.getReferences(), 2u);  // the owner INT counts none of its own
    EXPECT_EQ(intC.getReferences(), 2u);
  }
  EXPECT_EQ(floatC.getReferences(), 0u);
}

TEST(Classes, ListRefusesToRemoveClassesInUse) {
  TIClassList list;
  auto* a = new TIClass("A");
  auto* b = new TIClass("B");
  list.append(a);
  list.append(b);
  b->getFunctionList().append(new TIFunction(b, "f", {a}, nullptr, noop));
  TLanguage::setEnglisch();
  EXPECT_EQ(errorOf([&] { list.remove(0); }), std::make_pair(0xe522002eUL, std::string("Class A not deleteable, 1 references")));
  {
    TIVariable v("v", b);
    EXPECT_EQ(errorOf([&] { list.remove(1); }), std::make_pair(0xe522002dUL, std::string("Class B not deleteable, 1 instances")));
    TLanguage::setDeutsch();
    EXPECT_EQ(errorOf([&] { list.remove(1); }).second, "Klasse B nicht loeschbar, 1 Instanzen");
  }
  EXPECT_EQ(errorOf([&] { list.addressOf("C"); }).first, 0xe7520035UL);
  EXPECT_EQ(errorOf([&] { list[5]; }).first, 0xe742001cUL);
  EXPECT_EQ(errorOf([&] { list.remove(5); }).first, 0xe742002cUL);
  list.remove(1);
  list.remove(0);
  EXPECT_EQ(list.getSize(), 0u);
}

TEST(Variables, ContentReferencesAndLineFeeds) {
  TIClass lit("LITERAL");
  {
    TIVariable a("a", &lit), b("b", &lit);
    EXPECT_EQ(lit.getInstances(), 2u);
    a.setContent("a\\nb\\tc");
    EXPECT_STREQ(a.getString(), "a\r\nb\\tc");
    b.vSetReference(&a);
    EXPECT_EQ(a.uGetReferenceNumber(), 2u);
    EXPECT_STREQ(b.getString(), "a\r\nb\\tc");
    b.setContent(static_cast<const char*>(nullptr));
    EXPECT_EQ(a.getString(), nullptr);  // one value under two names
    TIContentNumber c;
    EXPECT_EQ(errorOf([&] { c.vDecreaseReference(); }).first, 0xe712009bUL);
  }
  EXPECT_EQ(lit.getInstances(), 0u);
}

TEST(Variables, ScopesLookupAndReverseDestruction) {
  Classes c;
  destroyed.clear();
  {
    TIVariableArray va;
    va.append(new TIVariable("a", c.thing));
    va.append(new TIVariable("b", c.plain));
    va.openLevel();
    va.append(new TIVariable("a", c.thing));  // hides the outer a
    va.append(new TIVariable("c", c.thing));
    EXPECT_EQ(va.find("a"), 2);
    EXPECT_EQ(va.iGetLevel("a"), 1);
    EXPECT_EQ(va.find1("b"), -1);
    EXPECT_EQ(va.find("b"), 1);
    EXPECT_EQ(va.find("A"), -1);  // case counts
    EXPECT_EQ(va.addressOf("c"), va[3]);
    // A shared content is not destroyed by the one that goes.
    va.addressOf("c")->vSetReference(va[0]);
    va.closeLevel(false);
    EXPECT_EQ(destroyed, std::vector<std::string>{"a"});  // c shared a's content
    EXPECT_EQ(va.find("a"), 0);
    va.closeLevel(false);  // the last level stays
    EXPECT_EQ(va.uGetLevels(), 1u);
    EXPECT_EQ(errorOf([&] { va.remove("b"); }).first, 0xe7020065UL);  // no destroy
    EXPECT_EQ(errorOf([&] { va.remove("zz"); }).first, 0xe0a2001aUL);
    EXPECT_EQ(errorOf([&] { va.remove("x[1]"); }).first, 0xe7520082UL);
    EXPECT_EQ(errorOf([&] { va[7]; }).first, 0xe7420019UL);
    EXPECT_EQ(errorOf([&] { va.remove(7); }).first, 0xe742001aUL);
    va.append(new TIVariable("d", c.thing));
    va.remove("d");
    EXPECT_EQ(destroyed.back(), "d");
  }
  EXPECT_EQ(destroyed.back(), "a");  // level 0 closed by force at the end
  EXPECT_EQ(c.thing->getInstances(), 0u);
  EXPECT_EQ(c.plain->getInstances(), 0u);
}

TEST(Variables, GlobalAndPreserveMoveVectorsWithTheirElements) {
  Classes c;
  TIVariableArray va;
  va.append(new TIVariable("g", c.thing));
  va.openLevel();
  va.openLevel();
  auto* v = new TIVariable("v", c.vec);
  auto* rec = new TIVectorRecord;
  rec->size = 2;
  v->setContent(static_cast<void*>(rec));
  va.append(new TIVariable("before", c.thing));
  va.append(v);
  va.append(new TIVariable("v[0]", c.thing));
  va.append(new TIVariable("v[1]", c.thing));
  va.append(new TIVariable("g", c.thing));
  va.preserve(va.find("v"));
  EXPECT_EQ(va.iGetLevel("v"), 1);
  EXPECT_EQ(va.iGetLevel("v[1]"), 1);
  va.global(va.find("v"));
  EXPECT_EQ(va.find("v"), 1);
  EXPECT_EQ(va.find("v[0]"), 2);
  EXPECT_EQ(va.find("v[1]"), 3);
  EXPECT_EQ(va.iGetLevel("before"), 2);
  EXPECT_EQ(errorOf([&] { va.global(va.find("g")); }).first, 0xe712009aUL);  // level 0 has a g
  va.global(0);                                                                // at level 0: nothing
  EXPECT_EQ(va.find("g"), 5);
  va.vRename(va.addressOf("before"), "after");
  EXPECT_EQ(va.find("before"), -1);
  EXPECT_EQ(va.iGetLevel("after"), 2);
  va.closeLevel(true);
  va.closeLevel(true);
  v->setContent(static_cast<void*>(nullptr));
  delete rec;
  EXPECT_EQ(va.getSize(), 4);  // g, v and its two elements at level 0
}
