#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "Demo.h"
#include "kxexception/KxError.h"

namespace kxdemo {
namespace {
struct Entry {
  int order;
  const char* name;
  std::function<void(Context&)> run;
};
std::vector<Entry>& registry() {
  static std::vector<Entry> r;
  return r;
}
}  // namespace

Step::Step(int order, const char* name, std::function<void(Context&)> run) {
  registry().push_back({order, name, std::move(run)});
}

void say(const char* format, ...) {
  std::fputs("    ", stdout);
  va_list ap;
  va_start(ap, format);
  std::vprintf(format, ap);
  va_end(ap);
  std::fputc('\n', stdout);
}
}  // namespace kxdemo

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  kxdemo::Context ctx;
  ctx.examplesDir = KX_EXAMPLES_DIR;
  ctx.workDir = argc > 1 ? argv[1] : (fs::temp_directory_path() / ("kxdemo-" + std::to_string(::getpid()))).string();
  fs::create_directories(ctx.workDir);

  auto& steps = kxdemo::registry();
  std::stable_sort(steps.begin(), steps.end(), [](auto& a, auto& b) { return a.order < b.order; });
  int failed = 0;
  for (auto& s : steps) {
    std::printf("== %s\n", s.name);
    try {
      s.run(ctx);
    } catch (...) {
      std::printf("    FAILED: %s", kx::formatErrorChain().c_str());
      kx::deleteError();
      ++failed;
    }
  }
  std::printf("kxdemo: %zu steps, %d failed; files in %s\n", steps.size(), failed, ctx.workDir.c_str());
  return failed ? EXIT_FAILURE : EXIT_SUCCESS;
}
