// Helpers of the rastrix tests: error codes of a call, a message recorder,
// colour pixels from numbers, bitwise pixel comparison, a scratch directory,
// files and commands as text.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "kxexception/KxError.h"
#include "kxexception/TDelivery.h"
#include "rastrix/TRGBPixel.h"

namespace rastrixtest {

// A scratch directory for one test, removed afterwards.
struct TempDir {
  std::filesystem::path p;
  explicit TempDir(const char* stem = "kx_rastrix_") {
    p = std::filesystem::temp_directory_path() / (std::string(stem) + std::to_string(::getpid()));
    std::filesystem::remove_all(p);
    std::filesystem::create_directories(p);
  }
  ~TempDir() { std::filesystem::remove_all(p); }
  std::string operator/(const char* name) const { return (p / name).string(); }
};

inline std::string slurp(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// What a shell command prints (standard error too).
inline std::string run(const std::string& command) {
  FILE* p = ::popen((command + " 2>&1").c_str(), "r");
  std::string out;
  char b[512];
  while (p && std::fgets(b, sizeof b, p)) out += b;
  if (p) ::pclose(p);
  return out;
}

// The code a call raises (0 if none); the chain is ended.
template <class F>
unsigned long codeOf(F&& f) {
  try {
    f();
  } catch (unsigned long c) {
    kx::deleteError();
    return c;
  }
  return 0;
}

// The code and the text of the raising site.
template <class F>
std::pair<unsigned long, std::string> errorOf(F&& f) {
  try {
    f();
  } catch (unsigned long c) {
    auto chain = kx::getErrorChain();
    std::string text = chain.empty() ? std::string() : chain.front().text;
    kx::deleteError();
    return {c, text};
  }
  return {0, {}};
}

// Records the messages it receives, in order.
class TRecorder : public TDelivery {
 public:
  explicit TRecorder(TDelivery* sender = nullptr) {
    if (sender) vConnectSender(sender);
  }
  bool bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b) override {
    if (!bIsSender(sender)) return false;
    codes.push_back(a);
    params.push_back(b);
    if (onMessage) onMessage(a);
    return true;
  }
  void clear() {
    codes.clear();
    params.clear();
  }
  std::vector<unsigned long> codes;
  std::vector<unsigned long> params;
  std::function<void(unsigned long)> onMessage;
};

inline Rastrix::TRGBPixel rgb(int r, int g, int b) {
  Rastrix::TRGBPixel p;
  p.set(r, g, b);
  return p;
}

inline Rastrix::TRGBFloatPixel rgbf(float r, float g, float b) {
  Rastrix::TRGBFloatPixel p;
  p.set(r, g, b);
  return p;
}

// Two pixels equal to the bit (NaN equals itself, -0 differs from 0).
template <class T>
bool same(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

}  // namespace rastrixtest
