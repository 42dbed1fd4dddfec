// The built-in classes LITERAL, INT and FLOAT, called through their method
// tables as the interpreter calls them.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "kdoint/TIBuiltInClasses.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIVariable.h"
#include "KdoTestUtil.h"
#include "kxexception/KxError.h"

using kdotest::codeOf;

namespace {

struct Builtins {
  TIClassList classes;
  std::vector<std::unique_ptr<TIVariable>> vars;
  Builtins() { vLoadBuiltInClasses(classes); }
  TIClass* cls(const char* n) { return classes.addressOf(n); }
  TIVariable* var(const char* cls_, const char* name = "v") {
    vars.push_back(std::make_unique<TIVariable>(name, cls(cls_)));
    return vars.back().get();
  }
  TIVariable* num(int32_t v) {
    auto* x = var("INT");
    x->setContent(v);
    return x;
  }
  TIVariable* flt(double v) {
    auto* x = var("FLOAT");
    x->setContent(v);
    return x;
  }
  TIVariable* lit(const char* s) {
    auto* x = var("LITERAL");
    x->setContent(s);
    return x;
  }
  // Calls the method of `self`'s class with exactly these classes.
  void call(TIVariable* self, const char* name, TIVariable* result, std::vector<TIVariable*> args) {
    std::vector<const TIClass*> argClasses;
    for (auto* a : args) argClasses.push_back(a->getClass());
    const TIFunctionList& fl = self->getClass()->getFunctionList();
    const int i = fl.find(name, result ? result->getClass() : nullptr, argClasses);
    if (i < 0) throw std::string("not found: ") + name;
    std::vector<TIVariable*> list{self, result};
    list.insert(list.end(), args.begin(), args.end());
    list.push_back(nullptr);
    fl[static_cast<unsigned>(i)]->getAddress()(list.data());
  }
  bool has(const char* cls_, const char* format) {
    const TIFunctionList& fl = cls(cls_)->getFunctionList();
    for (unsigned i = 0; i < fl.getSize(); ++i)
      if (fl[i]->getFormat() == format) return true;
    return false;
  }
  ~Builtins() {
    for (auto& v : vars)
      if (v->getClass()->getName() == "LITERAL") v->setContent(static_cast<const char*>(nullptr));
    vars.clear();
  }
};

}  // namespace

TEST(BuiltIns, TablesInTheirOrderWithoutImplicitConversions) {
  Builtins b;
  EXPECT_EQ(b.classes[0]->getName(), "LITERAL");
  EXPECT_EQ(b.classes[1]->getName(), "INT");
  EXPECT_EQ(b.classes[2]->getName(), "FLOAT");
  EXPECT_TRUE(b.has("INT", "LITERAL toString(LITERAL)"));
  EXPECT_TRUE(b.has("FLOAT", "VOID operator=(INT)"));
  EXPECT_TRUE(b.has("FLOAT", "INT operator<=(FLOAT)"));
  EXPECT_FALSE(b.has("FLOAT", "INT operator>(FLOAT)"));   // none, deliberately
  EXPECT_FALSE(b.has("FLOAT", "VOID operator+=(INT)"));   // no conversion of arguments
  EXPECT_FALSE(b.has("INT", "VOID operator=(FLOAT)"));
  EXPECT_EQ(b.cls("INT")->getFunctionList().getSize(), 33u);
  EXPECT_EQ(b.cls("FLOAT")->getFunctionList().getSize(), 35u);
  EXPECT_EQ(b.cls("LITERAL")->getFunctionList().getSize(), 13u);
}

TEST(BuiltIns, IntArithmeticWrapsAndNeverTraps) {
  Builtins b;
  auto* r = b.num(0);
  b.call(b.num(INT_MAX), "operator+", r, {b.num(1)});
  EXPECT_EQ(r->getLong(), INT_MIN);
  b.call(b.num(-7), "operator/", r, {b.num(2)});
  EXPECT_EQ(r->getLong(), -3);
  b.call(b.num(-7), "operator%", r, {b.num(2)});
  EXPECT_EQ(r->getLong(), -1);
  EXPECT_EQ(codeOf([&] { b.call(b.num(1), "operator/", r, {b.num(0)}); }), 0xe0000000UL);
  EXPECT_EQ(codeOf([&] { b.call(b.num(1), "operator%", r, {b.num(0)}); }), 0xe0000000UL);
  EXPECT_EQ(codeOf([&] { b.call(b.num(INT_MIN), "operator/", r, {b.num(-1)}); }), 0xe0000000UL);
  auto* a = b.num(5);
  EXPECT_EQ(codeOf([&] { b.call(a, "operator/=", nullptr, {b.num(0)}); }), 0xe0000000UL);
  EXPECT_EQ(a->getLong(), 5);
  const struct {
    int32_t x, n, out;
  } shifts[] = {{1, 3, 8}, {-16, -2, -4}, {1, 33, 2}, {-1, -40, -1}, {1, 31, INT_MIN}};
  for (const auto& s : shifts) {
    b.call(b.num(s.x), "shift", r, {b.num(s.n)});
    EXPECT_EQ(r->getLong(), s.out) << s.x << " shift " << s.n;
  }
  b.call(b.num(3), "operator>=", r, {b.num(3)});
  EXPECT_EQ(r->getLong(), 1);
  b.call(a, "operator=", nullptr, {b.lit("0x1f")});
  EXPECT_EQ(a->getLong(), 31);
  b.call(a, "operator=", nullptr, {b.lit("junk")});
  EXPECT_EQ(a->getLong(), 0);
}

TEST(BuiltIns, TextsOfIntAndLiteral) {
  Builtins b;
  auto* i = b.num(0);
  b.call(i, "strstr", nullptr, {b.lit("abc"), b.lit("z")});
  EXPECT_EQ(i->getLong(), -1);
  b.call(i, "strstr", nullptr, {b.lit("abc"), b.lit("c")});
  EXPECT_EQ(i->getLong(), 2);
  b.call(i, "IsStrEnd", nullptr, {b.lit("abcabc"), b.lit("abc")});
  EXPECT_EQ(i->getLong(), 0);  // only the first occurrence counts
  b.call(i, "IsStrEnd", nullptr, {b.lit("pic.tif"), b.lit(".tif")});
  EXPECT_EQ(i->getLong(), 1);
  b.call(i, "strlen", nullptr, {b.var("LITERAL")});
  EXPECT_EQ(i->getLong(), 0);

  auto* s = b.lit("A\\B");
  b.call(s, "toSlash", nullptr, {});
  b.call(s, "strlwr", nullptr, {});
  EXPECT_STREQ(s->getString(), "a/b");
  b.call(s, "operator+=", nullptr, {b.lit("\\nx")});
  EXPECT_STREQ(s->getString(), "a/b\r\nx");
  auto *dr = b.lit(""), *dir = b.lit(""), *nm = b.lit(""), *ex = b.lit("");
  auto* path = b.lit("c:/m/pic.tif");
  b.call(path, "fnsplit", nullptr, {dr, dir, nm, ex});
  EXPECT_STREQ(dir->getString(), "/m/");
  EXPECT_STREQ(ex->getString(), ".tif");
  auto* merged = b.var("LITERAL");
  b.call(merged, "fnmerge", nullptr, {dr, dir, nm, b.lit(".txt")});
  EXPECT_STREQ(merged->getString(), "c:/m/pic.txt");

  auto* r = b.var("LITERAL");
  b.call(b.num(42), "toString", r, {b.lit("n=%05d!")});
  EXPECT_STREQ(r->getString(), "n=00042!");
  b.call(b.flt(1.5), "toString", r, {b.lit("%.2f%%")});
  EXPECT_STREQ(r->getString(), "1.50%");
  // Formats that would read what they are not given are refused, not read.
  for (const char* bad : {"%s", "%n", "%d %d", "%*d", "%f", "%p"})
    EXPECT_EQ(codeOf([&] { b.call(b.num(1), "toString", r, {b.lit(bad)}); }), 0xe75200c1UL) << bad;
  EXPECT_EQ(codeOf([&] { b.call(b.flt(1), "toString", r, {b.lit("%d")}); }), 0xe75200c1UL);

  const auto file = std::filesystem::temp_directory_path() / ("kx_wf_" + std::to_string(::getpid()));
  b.call(b.lit("100%% sure\\n"), "writeFile", nullptr, {b.lit(file.c_str())});
  std::stringstream content;
  content << std::ifstream(file).rdbuf();
  EXPECT_EQ(content.str(), "100% sure\r\n");
  EXPECT_EQ(codeOf([&] { b.call(b.lit("%s"), "writeFile", nullptr, {b.lit(file.c_str())}); }), 0xe75200c1UL);
  std::filesystem::remove(file);
}

TEST(BuiltIns, FloatConversionsAndMaths) {
  Builtins b;
  auto* f = b.flt(0);
  b.call(f, "operator=", nullptr, {b.lit("1,5e2")});
  EXPECT_DOUBLE_EQ(f->getDouble(), 150.0);
  b.call(f, "operator=", nullptr, {b.num(-3)});
  EXPECT_DOUBLE_EQ(f->getDouble(), -3.0);
  auto* i = b.num(0);
  b.call(b.flt(2.5), "round", i, {});
  EXPECT_EQ(i->getLong(), 3);
  b.call(b.flt(-2.5), "round", i, {});
  EXPECT_EQ(i->getLong(), -2);  // floor(x + 0.5)
  b.call(b.flt(-2.5), "floor", i, {});
  EXPECT_EQ(i->getLong(), -3);
  auto* r = b.flt(0);
  b.call(b.flt(2), "pow", r, {b.flt(10)});
  EXPECT_DOUBLE_EQ(r->getDouble(), 1024.0);
  b.call(b.flt(1), "operator<", i, {b.flt(2)});
  EXPECT_EQ(i->getLong(), 1);
  char status[64];
  b.cls("INT")->getStatusFunction()(b.num(-1), status, sizeof status);
  EXPECT_STREQ(status, "-1 (0xffffffff)");
  b.cls("FLOAT")->getStatusFunction()(b.flt(0.5), status, sizeof status);
  EXPECT_STREQ(status, "5.000000e-01");
}
