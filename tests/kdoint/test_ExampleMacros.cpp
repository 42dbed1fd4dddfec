// The example macros of examples/macros against their golden output.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "KdoSession.h"

using kdotest::Session;

namespace {
const std::filesystem::path examples = std::filesystem::path(KX_EXAMPLES_DIR) / "macros";
}

class ExampleMacro : public ::testing::TestWithParam<const char*> {};

TEST_P(ExampleMacro, WritesItsGoldenOutput) {
  Session s;
  const std::string name = GetParam();
  const std::string out = s.run("play(\"" + (examples / (name + ".mac")).string() + "\")\n");
  EXPECT_EQ(s.lastError(), 0u);
  EXPECT_EQ(out, Session::slurp((examples / (name + ".golden")).string()));
  // The macros clean up after themselves: only the globals of a fresh
  // interpreter and the procedures' names are left.
  EXPECT_EQ(s.interp().getLineParser().getChild(), nullptr);
  EXPECT_EQ(s.interp().iGetPlayDepth(), 0);
}

INSTANTIATE_TEST_SUITE_P(Macros, ExampleMacro, ::testing::Values("factorial", "loops", "overloads"));
