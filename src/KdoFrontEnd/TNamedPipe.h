// The channel through which another process writes script text to the
// interpreter: a POSIX FIFO (made if absent). The front end holds it open
// for reading and writing, so that it never sees an end of file when a
// writer goes away, and reads without waiting.
#pragma once

#include <cstddef>
#include <string>

class TNamedPipe {
 public:
  TNamedPipe() = default;
  ~TNamedPipe() { bClose(); }
  TNamedPipe(const TNamedPipe&) = delete;
  TNamedPipe& operator=(const TNamedPipe&) = delete;

  // Makes the FIFO if there is none; refuses a path that is something else.
  bool bOpen(const char* name);
  // What is there, up to `count` bytes; 0 bytes when nothing waits.
  bool bRead(char* buffer, std::size_t count, std::size_t* bytesRead);
  bool bWrite(const char* buffer, std::size_t count);
  bool bClose();
  // The handle to wait on (poll), -1 when closed.
  int getHandle() const { return fd_; }
  const std::string& getName() const { return name_; }

 private:
  int fd_ = -1;
  std::string name_;
};
