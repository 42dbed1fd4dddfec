// A demonstration step of kxdemo. Each step lives in its own file and
// registers itself:
//   static kxdemo::Step step(20, "planes", [](kxdemo::Context& c) { ... });
// Steps run in the order of their numbers; a step that throws an error code
// is reported with its chain and makes kxdemo exit non-zero.
#pragma once

#include <cstdio>
#include <functional>
#include <string>

namespace kxdemo {

struct Context {
  std::string workDir;      // a fresh directory for the files a step writes
  std::string examplesDir;  // examples/ of the source tree
};

struct Step {
  Step(int order, const char* name, std::function<void(Context&)> run);
};

// printf to standard output, indented under the step's heading.
void say(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace kxdemo
