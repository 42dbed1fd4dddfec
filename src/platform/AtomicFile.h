// Saving a file so that a failure never costs the old one.
//
// The new content goes to a temporary file in the same directory, is written
// whole, flushed to the disk (fsync) and then renamed over the target, which
// keeps the mode of the file it replaces (a new file gets 0666 less the
// umask). A failure at any step removes the temporary file and leaves the old
// file exactly as it was. Failures are reported by return value with the
// operating system's text ("write /a/b.ini: No space left on device"); the
// callers raise their own error codes with that text in the chain.
//
// SIGXFSZ: a write past the file-size limit raises that signal, whose default
// action ends the process. Writers that must survive it have to ignore the
// signal; then the write fails with EFBIG like any other.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kx::platform {

class AtomicFile {
 public:
  AtomicFile() = default;
  // Removes the temporary file unless commit() succeeded.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // Creates the temporary file beside `path`.
  bool open(const std::string& path);
  // Appends all bytes (short writes and EINTR are retried).
  bool write(const void* data, std::size_t size);
  bool write(std::string_view text) { return write(text.data(), text.size()); }
  // fsync, close, keep the old mode, rename over the target, fsync the
  // directory. After a failure the target is untouched.
  bool commit();
  // Drops the temporary file; the target is untouched.
  void abort();

  // The text of the last failure: "<step> <path>: <strerror>".
  const std::string& error() const { return error_; }
  int errorNumber() const { return errno_; }
  const std::string& path() const { return path_; }

 private:
  bool fail(const char* step, const std::string& name);

  int fd_ = -1;
  std::string path_;
  std::string temp_;
  std::string error_;
  int errno_ = 0;
};

// The whole content in one call; false with `error` set on failure.
bool writeFileAtomic(const std::string& path, std::string_view content, std::string* error = nullptr);

// Reads a whole regular file; false with `error` set when it cannot.
bool readWholeFile(const std::string& path, std::string& content, std::string* error = nullptr);

}  // namespace kx::platform
