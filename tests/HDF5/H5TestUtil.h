// Helpers of the HDF5 tests: a fresh directory per test, the data base, error
// checks, and running outside tools.
#pragma once

#include <gtest/gtest.h>
#include <hdf5.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "HDF5/TH5Database.h"
#include "HDF5/TH5File.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace h5test {

// Runs a command, returns its standard output (and error) and exit status.
inline std::string run(const std::string& command, int* status = nullptr) {
  std::string out;
  FILE* p = ::popen((command + " 2>&1").c_str(), "r");
  if (!p) return out;
  char buf[4096];
  size_t n;
  while ((n = std::fread(buf, 1, sizeof buf, p)) > 0) out.append(buf, n);
  const int st = ::pclose(p);
  if (status) *status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
  return out;
}

inline std::string readBytes(const std::string& name, size_t count = std::string::npos) {
  std::ifstream in(name, std::ios::binary);
  std::string s((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (count != std::string::npos && s.size() > count) s.resize(count);
  return s;
}

inline void writeBytes(const std::string& name, const std::string& bytes) {
  std::ofstream out(name, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Identifiers HDF5 holds open anywhere in the process.
inline ssize_t openIds() { return H5Fget_obj_count(H5F_OBJ_ALL, H5F_OBJ_ALL); }

// A fresh directory and the data base for one test; at the end every file is
// closed, the data base released and no HDF5 identifier may be left open.
class H5Test : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/kxh5testXXXXXX";
    ASSERT_NE(::mkdtemp(pattern), nullptr);
    dir = pattern;
    TLanguage::setEnglisch();
    db = TH5Database::pOpenHDF5();
  }
  void TearDown() override {
    while (db && db->uGetSize() > 0) db->vCloseFile((*db)[0u]->cpGetAlias());
    TH5Database::vCloseHDF5(&db);
    EXPECT_EQ(TH5Database::uGetReferences(), 0u);
    EXPECT_EQ(openIds(), 0) << "HDF5 identifiers left open";
    kx::deleteError();
    TLanguage::setDeutsch();
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
  }
  std::string path(const std::string& name) const { return dir + "/" + name; }

  std::string dir;
  TH5Database* db = nullptr;
};

// Runs a test body; an error code that escapes fails the test with its chain.
template <class F>
void guarded(F&& f) {
  try {
    f();
  } catch (unsigned long code) {
    ADD_FAILURE() << "error 0x" << std::hex << code << "\n" << kx::formatErrorChain();
    kx::deleteError();
  }
}

// Runs f, which must raise `code` with `text` somewhere in the chain.
template <class F>
void expectError(unsigned long code, const std::string& text, F&& f) {
  try {
    f();
    ADD_FAILURE() << "no error raised, expected 0x" << std::hex << code;
  } catch (unsigned long c) {
    EXPECT_EQ(c, code) << kx::formatErrorChain();
    const std::string chain = kx::formatErrorChain();
    if (!text.empty()) {
      EXPECT_NE(chain.find(text), std::string::npos) << chain;
    }
    kx::deleteError();
  }
}

}  // namespace h5test
