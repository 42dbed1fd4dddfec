// Finding one of 1,000 variables spread over 10 levels (items: lookups per
// second).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "kdoint/TIClass.h"
#include "kdoint/TIVariable.h"
#include "kdoint/TIVariableArray.h"

namespace {

void BM_Kdo_VariableLookup(benchmark::State& state) {
  TIClass intC("INT");
  TIVariableArray va;
  std::vector<std::string> names;
  for (int level = 0; level < 10; ++level) {
    if (level) va.openLevel();
    for (int i = 0; i < 100; ++i) {
      names.push_back("var" + std::to_string(level) + "_" + std::to_string(i));
      va.append(new TIVariable(names.back().c_str(), &intC));
    }
  }
  std::size_t k = 0;
  long found = 0;
  for (auto _ : state) {
    found += va.addressOf(names[k].c_str()) != nullptr;
    k = (k + 337) % names.size();
  }
  benchmark::DoNotOptimize(found);
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(BM_Kdo_VariableLookup);

}  // namespace
