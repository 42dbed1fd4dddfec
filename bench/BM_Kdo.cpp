// The interpreter's line cleaner and tokeniser over a macro of typical
// statements (items: lines per second; the target is 10 million).
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "kdoint/TIPraeprozessor.h"
#include "kdoint/TIToken.h"

namespace {

std::vector<std::string> typicalMacro(int lines) {
  const char* forms[] = {"INT i(0)\r\n",
                         "while(i < 100)\r\n",
                         "{\r\n",
                         "  i = i + 1\r\n",
                         "  r = pic.mean(\"Leuchte\", 3)  // the mean of the lamp\r\n",
                         "  echo(\"value: \"); echo(r)\r\n",
                         "}\r\n",
                         "# a comment line\r\n",
                         "FLOAT f(1.5e-3)\r\n",
                         "Ret=MacroPaths.insert(MacroDir,99)\r\n"};
  std::vector<std::string> out;
  for (int i = 0; i < lines; ++i) out.emplace_back(forms[i % 10]);
  return out;
}

void BM_Kdo_Tokenise(benchmark::State& state) {
  const auto macro = typicalMacro(10000);
  TIPraeprozessor pre;
  TITokenLine tokens;
  char line[1024];
  std::size_t count = 0;
  for (auto _ : state) {
    for (const auto& l : macro) {
      std::memcpy(line, l.c_str(), l.size() + 1);
      pre.processLine(line);
      tokens.nextLine(line, false);
      count += tokens.getSize();
    }
  }
  benchmark::DoNotOptimize(count);
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(macro.size()));
}
BENCHMARK(BM_Kdo_Tokenise)->Unit(benchmark::kMillisecond);

}  // namespace
