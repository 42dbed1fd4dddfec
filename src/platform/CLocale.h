// Number texts in files, headers and scripts are written and read with the
// point, whatever locale the host program has set (a host with a German
// locale would otherwise get "1,5e+00"). A CNumericScope switches the calling
// thread to the C locale for its lifetime; other threads are not affected.
#pragma once

namespace kx::platform {

class CNumericScope {
 public:
  CNumericScope();
  ~CNumericScope();
  CNumericScope(const CNumericScope&) = delete;
  CNumericScope& operator=(const CNumericScope&) = delete;

 private:
  void* old_;  // the thread's locale before
};

}  // namespace kx::platform
