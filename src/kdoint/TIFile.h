// The interpreter's file layer: ordinary disk files read line by line and
// written by appending. Read with POSIX calls, never through stdio: the input
// file grows while it is read, and a read after its end must see what another
// party appended since.
//
// Errors (KdoIntErrors.h): 0xe3720001 (107) a file already open, 0xe3020002
// (108) a file that cannot be opened, 0xe3320002 (109) a file opened as new
// that is not empty, 0xe3020003 (10a) closing a closed file, 0xe3020004 (10b)
// a failed close; reading and writing as told at each operation.
#pragma once

#include <memory>
#include <string>

class TIFile {
 public:
  enum eAccess { eRead = 1, eWrite = 2 };

  // Without a name: a fresh temporary file "BLK…" in the temporary directory
  // ($TMPDIR, else /tmp), which exists from this moment on. Temporary files
  // live in memory, in a store of this process under that name: blocks,
  // loop bodies and procedure calls are written and read back at memory
  // speed, and a deep recursion is not bounded by the number of open files.
  // Every operation of this layer that takes the name finds them there.
  TIFile();
  explicit TIFile(const char* name);
  // Closes an open file without deleting it.
  virtual ~TIFile();
  TIFile(const TIFile&) = delete;
  TIFile& operator=(const TIFile&) = delete;

  // Opens with read and write sharing. `bExisting`: the file must exist,
  // else it is created when absent. `bNew`: it must turn out empty (a
  // non-empty file is closed again and refused with 109).
  void _open(int access, bool bNew, bool bExisting);
  // Closes; with `bDelete` the file is deleted too.
  void close(bool bDelete);
  bool isOpen() const { return fd_ >= 0 || mem_ != nullptr; }
  // Deletes a file by name (a temporary one from the store).
  static void vDelete(const char* name);
  // Whether the name is a temporary file in the store.
  static bool bIsTemporary(const char* name);
  const char* getFileName() const { return name_; }
  // The system's handle, 0 when closed.
  int getHandle() const { return fd_ >= 0 ? fd_ : 0; }
  bool bGetIsNew() const { return isNew_; }

 protected:
  // Read or write through the file's handle or its memory.
  long _read(char* buffer, std::size_t size);
  long _write(const char* text, std::size_t size);

  int fd_ = -1;
  std::shared_ptr<std::string> mem_;
  std::size_t memPos_ = 0;
  char name_[260]{};
  int access_ = 0;
  bool isNew_ = false;
};

class TIFileRead : public TIFile {
 public:
  TIFileRead() = default;
  explicit TIFileRead(const char* name) : TIFile(name) {}
  ~TIFileRead() override;

  // Opens for reading (must exist unless `bNew`) with a line buffer of
  // `bufferSize` bytes; the line numbers start at 0.
  void open(bool bNew, unsigned bufferSize);
  // True when a whole line is in the buffer. Reads what fits; at the end of
  // a file that is not `isNew` a last line without line feed is completed
  // with CR LF. A line longer than the buffer never yields a line feed: that
  // is the end of the file (the limit on script lines, kept as it is).
  // Closed: 0xe3020005; a failed read: 0xe3320006.
  bool isLine();
  // The next line with its line end into `line` (room for the buffer size
  // plus 3), the file name into `fileName` (260 bytes), the running line
  // number (then incremented). Closed: 0xe3020007; no whole line: 0xe3020008.
  void read(char* line, char* fileName, int* lineNumber);
  // The whole file as text, read line by line with a 1024-byte buffer.
  void vContent2String(std::string& out);

 private:
  char* buffer_ = nullptr;
  unsigned size_ = 0;
  unsigned count_ = 0;
  int line_ = 0;
};

class TIFileWrite : public TIFile {
 public:
  TIFileWrite() = default;
  explicit TIFileWrite(const char* name) : TIFile(name) {}

  // Opens for writing (created when absent). `bSharedAppend`: every write
  // goes to the end of the file under a lock of the range it adds, so that
  // two parties appending to one file keep their texts whole.
  void open(bool bNew, bool bSharedAppend);
  // Closed: 0xe3020009; a failed write: 0xe302000a; fewer bytes written than
  // asked: 0xe302000b.
  void write(const char* text);
  void write(const char* text, std::size_t size);

 private:
  bool sharedAppend_ = false;
};

// A temporary file written, then read back: a write opens it on demand,
// rewind closes the writer and opens the reader.
class TIFileBlock {
 public:
  TIFileBlock();
  ~TIFileBlock();
  TIFileBlock(const TIFileBlock&) = delete;
  TIFileBlock& operator=(const TIFileBlock&) = delete;
  void write(const char* text);
  void rewind();
  bool isLine();
  void read(char* line, char* fileName, int* lineNumber);
  const char* getFileName() const { return name_.c_str(); }

 private:
  std::string name_;
  TIFileRead* reader_ = nullptr;
  TIFileWrite* writer_ = nullptr;
};
