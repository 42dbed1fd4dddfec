// Random scripts from the language's own pieces: whatever they hold, the
// interpreter runs them to the end (or to its line limit) without a crash,
// and leaves no child parser and no open level behind once its input is
// used up and every block is closed.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "KdoSession.h"

using kdotest::Session;

namespace {

std::string randomLine(std::mt19937& rng) {
  static const std::vector<std::string> pieces = {
      "INT",  "FLOAT", "LITERAL", "VECTOR", "a",      "b",     "v",       "v[1]", "v[k]", "k",      "p",
      "if",   "while", "else",    "{",      "}",      "(",     ")",       "[",    "]",    "=",      "+=",
      "-=",   "*=",    "/=",      "%=",     "+",      "-",     "*",       "/",    "%",    "<",      "<=",
      ">",    ">=",    "==",      "!=",     ".",      ",",     "1",       "0",    "-1",   "2.5",    "0x10",
      "\"x\"", "\"%d\"", "echo", "destroy", "global", "exist", "procedure", "class", "supplement",
      "toString", "size", "resize", "remove", "swap", "strlen", "closeParser", "repeatWhile",
      "endPlayMacro", "reference", "//", "#", ";", "\"", "0x", "1e5", "abs", "shift"};
  static const std::vector<std::string> lines = {
      "INT a", "INT k(1)", "FLOAT b(1.5)", "LITERAL s=\"t\"", "INT v[3]", "a+=1", "a=a+1", "b=b*2.0",
      "while(a<5)", "if(a<3)", "else", "{", "}", "echo(a)", "procedure p(INT x)", "p(a)", "p(k)",
      "destroy(\"a\")", "global(\"k\")", "v.resize(5)", "v.remove(1)", "a=v[2]", "s=a.toString(\"%d\")"};
  std::string line;
  if (rng() % 3 == 0) {
    line = lines[rng() % lines.size()];
  } else {
    const int n = 1 + static_cast<int>(rng() % 9);
    for (int i = 0; i < n; ++i) line += pieces[rng() % pieces.size()] + (rng() % 2 ? " " : "");
  }
  return line + "\n";
}

}  // namespace

TEST(ScriptFuzz, RandomScriptsRunWithoutCrash) {
  std::mt19937 rng(20261124);
  int answered = 0;
  for (int round = 0; round < 200; ++round) {
    Session s;
    std::string script;
    for (int i = 0; i < 60; ++i) script += randomLine(rng);
    // Close whatever blocks are still open, so that the input ends clean.
    script += "}\n}\n}\n}\n}\n}\n}\n}\n";
    s.run(script, 20000);
    kx::deleteError();
    // The interpreter still answers.
    const std::string out = s.run("}\n}\n}\n}\n}\n}\n}\n}\n}\n}\nINT zz(7)\necho(zz)\n", 20000);
    answered += out.find("7") != std::string::npos;
  }
  // Most scripts leave the interpreter ready for the next line; a few end in
  // a loop that runs past the line limit.
  EXPECT_GT(answered, 150);
}
