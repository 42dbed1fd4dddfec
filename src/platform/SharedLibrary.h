// A loaded shared library, in place of LoadLibraryA / GetProcAddress.
// A name ending in ".dll" is tried as given and then with ".so" in its place,
// with and without a "lib" prefix, so that ini files naming "SimGrabber.dll"
// find "libSimGrabber.so". A name with a '/' is a path; otherwise the dynamic
// loader's search path applies, after the directory of the running program.
#pragma once

#include <string>

namespace kx::platform {

class SharedLibrary {
 public:
  SharedLibrary() = default;
  explicit SharedLibrary(const std::string& name) { open(name); }
  ~SharedLibrary();
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;
  SharedLibrary(SharedLibrary&& o) noexcept;
  SharedLibrary& operator=(SharedLibrary&& o) noexcept;

  // Returns false on failure; lastError() then holds the loader's text.
  bool open(const std::string& name);
  void close();
  bool isOpen() const { return handle_ != nullptr; }
  // The address of an exported symbol, nullptr if there is none.
  void* symbol(const char* name) const;
  const std::string& lastError() const { return error_; }
  const std::string& path() const { return path_; }

 private:
  void* handle_ = nullptr;
  std::string error_;
  std::string path_;
};

}  // namespace kx::platform
