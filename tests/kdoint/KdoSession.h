// An interpreter on three files in a scratch directory, fed a script through
// its input file and run until the input is used up.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "kdoint/TIInterpreter.h"
#include "kxexception/KxError.h"

namespace kdotest {

class Session {
 public:
  Session() {
    static int serial = 0;
    dir_ = std::filesystem::temp_directory_path() /
           ("kx_kdos_" + std::to_string(::getpid()) + "_" + std::to_string(serial++));
    std::filesystem::remove_all(dir_);
    std::filesystem::create_directories(dir_);
    std::vector<std::string> none;
    interp_ = new TIInterpreter(path("i.txt").c_str(), path("o.txt").c_str(), path("e.txt").c_str(),
                                dir_.c_str(), dir_.c_str(), dir_.c_str(), dir_.c_str(), "", none, none);
    interp_->init();
  }
  ~Session() {
    delete interp_;
    kx::closeErrorFile();
    kx::deleteError();
    std::filesystem::remove_all(dir_);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  std::string path(const char* name) const { return (dir_ / name).string(); }
  TIInterpreter& interp() { return *interp_; }

  // Appends the script to the input file and runs every line; returns what
  // the run wrote to the output file. `limit` guards against a runaway.
  std::string run(const std::string& script, long limit = 1000000) {
    { std::ofstream(path("i.txt"), std::ios::binary | std::ios::app) << script; }
    const std::size_t before = slurp(path("o.txt")).size();
    for (long n = 0; n < limit && interp_->isLoop() && interp_->isInput(); ++n) interp_->doExecute();
    return slurp(path("o.txt")).substr(before);
  }
  // The code of the chain a failing line left, 0 if none; ends the chain.
  unsigned long lastError() {
    const unsigned long code = kx::getErrorCode();
    kx::deleteError();
    return code;
  }
  static std::string slurp(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }

 private:
  std::filesystem::path dir_;
  TIInterpreter* interp_ = nullptr;
};

}  // namespace kdotest
