// Scripts run by the interpreter: a counting while loop (items: body lines
// per second) and procedure calls (items: calls per second).
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "kdoint/TIInterpreter.h"
#include "kxexception/KxError.h"

namespace {

struct Run {
  std::filesystem::path dir;
  TIInterpreter* interp = nullptr;
  Run() {
    dir = std::filesystem::temp_directory_path() / ("kx_bench_kdo_" + std::to_string(::getpid()));
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    std::vector<std::string> none;
    interp = new TIInterpreter((dir / "i.txt").c_str(), (dir / "o.txt").c_str(), (dir / "e.txt").c_str(), dir.c_str(),
                               dir.c_str(), dir.c_str(), dir.c_str(), "", none, none);
    interp->init();
  }
  ~Run() {
    delete interp;
    kx::closeErrorFile();
    std::filesystem::remove_all(dir);
  }
  void play(const std::string& script) {
    { std::ofstream(dir / "i.txt", std::ios::binary | std::ios::app) << script; }
    while (interp->isLoop() && interp->isInput()) interp->doExecute();
  }
};

long residentKb() {
  long pages = 0, resident = 0;
  if (std::FILE* f = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(f);
  }
  return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

void BM_Kdo_WhileLoop(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Run run;
  run.play("INT i\nINT done\n");
  // One loop first, so that what is kept for reuse is there.
  run.play("i=0\nwhile(i<1000)\n{\ni+=1\ndone=i+0\n}\n");
  const long before = residentKb();
  for (auto _ : state) {
    // Body: "i+=1" and "done=i+0" each pass, plus the repeatWhile line.
    run.play("i=0\nwhile(i<" + std::to_string(n) + ")\n{\ni+=1\ndone=i+0\n}\n");
  }
  state.SetItemsProcessed(state.iterations() * n * 2);
  // Memory stays flat over the passes: what the loop grew the process by.
  state.counters["rss_growth_kb"] = static_cast<double>(residentKb() - before);
}
BENCHMARK(BM_Kdo_WhileLoop)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_Kdo_ProcedureCall(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Run run;
  run.play("procedure add(INT a, INT b)\n{\na+=b\n}\nINT x\nINT one(1)\nINT i\n");
  for (auto _ : state) {
    run.play("i=0\nwhile(i<" + std::to_string(n) + ")\n{\ni+=1\nadd(x, one)\n}\n");
  }
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_Kdo_ProcedureCall)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
