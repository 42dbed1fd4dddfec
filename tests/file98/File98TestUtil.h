// Scratch directories and files, parsed ini texts and expected error codes
// for the file98 tests.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"

namespace kxtest {

// A fresh directory under the system's temporary directory, removed with
// everything in it at the end of the scope. path() has no trailing '/'.
class TempDir {
 public:
  TempDir() {
    std::string t = (std::filesystem::temp_directory_path() / "kxf98XXXXXX").string();
    if (!::mkdtemp(t.data())) std::abort();
    path_ = t;
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& path() const { return path_; }
  std::string operator/(const std::string& rel) const { return path_ + "/" + rel; }

 private:
  std::string path_;
};

// Makes a directory current for the scope and goes back afterwards.
class CurrentDir {
 public:
  explicit CurrentDir(const std::string& dir) : old_(std::filesystem::current_path()) {
    std::filesystem::current_path(dir);
  }
  ~CurrentDir() {
    std::error_code ec;
    std::filesystem::current_path(old_, ec);
  }
  CurrentDir(const CurrentDir&) = delete;
  CurrentDir& operator=(const CurrentDir&) = delete;

 private:
  std::filesystem::path old_;
};

inline void writeFile(const std::string& path, const std::string& bytes) {
  const auto parent = std::filesystem::path(path).parent_path();
  if (!parent.empty()) std::filesystem::create_directories(parent);
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// An in-memory ini file read from `text`.
inline TKxMemIniFile parsed(const std::string& text) {
  TKxMemIniFile ini;
  ini.vReadFromString(text.c_str());
  return ini;
}

// Runs f, expects it to raise `code`, and returns the texts of the chain;
// clears the error afterwards.
template <class F>
std::string expectCode(unsigned long code, F f) {
  try {
    f();
  } catch (unsigned long c) {
    EXPECT_EQ(c, code);
    std::string text = kx::formatErrorChain();
    kx::deleteError();
    return text;
  }
  ADD_FAILURE() << "no error";
  return {};
}

}  // namespace kxtest
