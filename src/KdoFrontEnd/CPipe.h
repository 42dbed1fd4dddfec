// Shared files between the front end and the interpreter (the names of the
// classes are historical: these are plain files). A server reads from its
// position without waiting; a client appends under a lock of the range it
// adds, so that two parties' appends stay whole. A failed operation sets the
// error state, and later operations do nothing.
#pragma once

#include <cstddef>
#include <string>

class CPipe {
 public:
  enum eAccess { eRead = 1, eWrite = 2 };
  CPipe() = default;
  virtual ~CPipe();
  CPipe(const CPipe&) = delete;
  CPipe& operator=(const CPipe&) = delete;

  // Opens (creating the file if absent); with `bNew` a non-empty file is
  // refused.
  bool Open(const char* name, int access, bool bNew);
  void Close(bool bDelete);
  long getFileSize() const;
  void gotoEndOfFile();
  int getError() const { return error_; }
  const std::string& getName() const { return name_; }

 protected:
  int error_ = 0;
  int fd_ = -1;
  std::string name_;
};

class CPipeServer : public CPipe {
 public:
  bool Open(const char* name, bool bNew = false) { return CPipe::Open(name, eRead, bNew); }
  // Reads what is there, never waits; `bytesRead` 0 at the end for now.
  bool Read(char* buffer, std::size_t count, std::size_t* bytesRead);
};

class CPipeClient : public CPipe {
 public:
  bool Open(const char* name, bool bNew = false) { return CPipe::Open(name, eWrite, bNew); }
  bool Write(const char* buffer, std::size_t count, bool bAppend);
};
