#include "platform/SharedLibrary.h"

#include <dlfcn.h>
#include <unistd.h>

#include <utility>
#include <vector>

namespace kx::platform {
namespace {
std::string programDir() {
  char buf[4096];
  ssize_t n = ::readlink("/proc/self/exe", buf, sizeof buf - 1);
  if (n <= 0) return {};
  std::string p(buf, static_cast<size_t>(n));
  auto pos = p.rfind('/');
  return pos == std::string::npos ? std::string() : p.substr(0, pos + 1);
}

std::vector<std::string> candidates(std::string name) {
  for (auto& c : name)
    if (c == '\\') c = '/';
  std::vector<std::string> names{name};
  auto lower = [](std::string s) {
    for (auto& c : s) c = static_cast<char>((c >= 'A' && c <= 'Z') ? c - 'A' + 'a' : c);
    return s;
  };
  if (name.size() > 4 && lower(name.substr(name.size() - 4)) == ".dll") {
    std::string stem = name.substr(0, name.size() - 4);
    auto slash = stem.rfind('/');
    std::string dir = slash == std::string::npos ? std::string() : stem.substr(0, slash + 1);
    std::string base = slash == std::string::npos ? stem : stem.substr(slash + 1);
    names.push_back(dir + base + ".so");
    names.push_back(dir + "lib" + base + ".so");
  }
  std::vector<std::string> all;
  const std::string here = programDir();
  for (const auto& n : names) {
    if (n.find('/') == std::string::npos && !here.empty()) all.push_back(here + n);
    all.push_back(n);
  }
  return all;
}
}  // namespace

SharedLibrary::~SharedLibrary() { close(); }

SharedLibrary::SharedLibrary(SharedLibrary&& o) noexcept
    : handle_(std::exchange(o.handle_, nullptr)), error_(std::move(o.error_)), path_(std::move(o.path_)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& o) noexcept {
  if (this != &o) {
    close();
    handle_ = std::exchange(o.handle_, nullptr);
    error_ = std::move(o.error_);
    path_ = std::move(o.path_);
  }
  return *this;
}

bool SharedLibrary::open(const std::string& name) {
  close();
  error_.clear();
  for (const auto& candidate : candidates(name)) {
    if (void* h = ::dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL)) {
      handle_ = h;
      path_ = candidate;
      return true;
    }
    const char* e = ::dlerror();
    if (error_.empty() && e) error_ = e;
  }
  if (error_.empty()) error_ = "cannot load " + name;
  return false;
}

void SharedLibrary::close() {
  if (handle_) ::dlclose(handle_);
  handle_ = nullptr;
  path_.clear();
}

void* SharedLibrary::symbol(const char* name) const {
  if (!handle_ || !name) return nullptr;
  ::dlerror();
  return ::dlsym(handle_, name);
}

}  // namespace kx::platform
