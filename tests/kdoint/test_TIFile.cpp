// The file layer: the input stack, the growing input file, output shared
// between two parties, the macro recorder, and their errors.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "kdoint/TIEAManager.h"
#include "kdoint/TIFile.h"
#include "kdoint/TIFileReadStack.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TITrace.h"
#include "KdoTestUtil.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace fs = std::filesystem;

using kdotest::errorOf;

namespace {

struct TempDir {
  fs::path p;
  TempDir() {
    p = fs::temp_directory_path() / ("kx_kdo_" + std::to_string(::getpid()));
    fs::remove_all(p);
    fs::create_directories(p);
  }
  ~TempDir() { fs::remove_all(p); }
  std::string operator/(const char* name) const { return (p / name).string(); }
};

void put(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }
std::string slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// All lines the stack has now, as "file:line:text" with the line end shown.
std::vector<std::string> drain(TIFileReadStack& s) {
  std::vector<std::string> out;
  char line[300], file[260];
  int n = 0;
  while (s.isLine()) {
    s.read(line, file, &n);
    std::string l = line;
    for (auto& c : l)
      if (c == '\r') c = '~';
    if (!l.empty() && l.back() == '\n') l.pop_back();
    out.push_back(std::string(fs::path(file).filename()) + ":" + std::to_string(n) + ":" + l);
  }
  return out;
}

}  // namespace

TEST(FileStack, PopsWithOneEndLineEachAndKeepsTheBottom) {
  TempDir d;
  put(d / "in.txt", "");
  put(d / "m.mac", "a\r\nlast");
  put(d / "blk", "{\r\n}\r\n");
  TIFileReadStack s;
  s.open((d / "in.txt").c_str(), false, false);
  s.open((d / "m.mac").c_str(), false, true);
  s.open((d / "blk").c_str(), true, true);
  EXPECT_EQ(drain(s), (std::vector<std::string>{"blk:0:{~", "blk:1:}~", "FileReadStack:-1:endPlayMacro()~",
                                                 "m.mac:0:a~", "m.mac:1:last~", "FileReadStack:-1:endPlayMacro()~"}));
  EXPECT_EQ(s.getSize(), 1u);
  EXPECT_FALSE(fs::exists(d / "blk")) << "deleted when popped";
  EXPECT_TRUE(fs::exists(d / "m.mac"));
  EXPECT_FALSE(s.isLine());  // the bottom is never popped

  // Rewind restarts the top file and its line numbers.
  put(d / "w.mac", "x\r\ny\r\n");
  s.open((d / "w.mac").c_str(), false, true);
  char line[300], file[260];
  int n = 0;
  ASSERT_TRUE(s.isLine());
  s.read(line, file, &n);
  s.rewind();
  ASSERT_TRUE(s.isLine());
  s.read(line, file, &n);
  EXPECT_STREQ(line, "x\r\n");
  EXPECT_EQ(n, 0);

  TIFileReadStack empty;
  EXPECT_EQ(errorOf([&] { empty.isLine(); }).first, 0xe502000cUL);
  EXPECT_EQ(errorOf([&] { empty.read(line, file, &n); }).first, 0xe502000dUL);
}

TEST(FileStack, LineBufferOf256Bytes) {
  TempDir d;
  const std::string exact = std::string(254, 'a') + "\r\n";  // 256 with its line end
  const std::string longer = std::string(300, 'b') + "\r\n";
  put(d / "in.txt", "");
  put(d / "a.mac", exact + "next\r\n");
  put(d / "b.mac", "first\r\n" + longer + "never\r\n");
  TIFileReadStack s;
  s.open((d / "in.txt").c_str(), false, false);
  s.open((d / "b.mac").c_str(), false, true);
  s.open((d / "a.mac").c_str(), false, true);
  const auto lines = drain(s);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], "a.mac:0:" + std::string(254, 'a') + "~");
  EXPECT_EQ(lines[1], "a.mac:1:next~");
  EXPECT_EQ(lines[3], "b.mac:0:first~");  // the long line ends that file
  EXPECT_EQ(lines[4], "FileReadStack:-1:endPlayMacro()~");
}

// The input file grows while it is read: a partial line waits for its line
// feed, and lines appended by another process in small pieces arrive whole,
// none lost and none twice.
TEST(FileStack, GrowingInputFromAnotherProcess) {
  TempDir d;
  const std::string in = d / "in.txt";
  put(in, "");
  TIEAManager io;
  io.openInput(in.c_str(), false, false);
  char line[300], file[260];
  int n = 0;
  EXPECT_FALSE(io.isInput());
  {
    std::ofstream(in, std::ios::binary | std::ios::app) << "ech";
  }
  EXPECT_FALSE(io.isInput()) << "a partial line is held back";
  {
    std::ofstream(in, std::ios::binary | std::ios::app) << "o(1)\r\n";
  }
  ASSERT_TRUE(io.isInput());
  io.readInput(line, file, &n);
  EXPECT_STREQ(line, "echo(1)\r\n");

  const int count = 500;
  const pid_t pid = ::fork();
  if (pid == 0) {
    TIFileWrite w(in.c_str());
    w.open(false, true);
    for (int i = 0; i < count; ++i) {
      const std::string text = "line" + std::to_string(i) + "\r\n";
      w.write(text.c_str(), 3);
      w.write(text.c_str() + 3, text.size() - 3);
    }
    ::_exit(0);
  }
  int got = 0;
  std::string bad;
  while (got < count) {
    if (!io.isInput()) {
      int status = 0;
      if (::waitpid(pid, &status, WNOHANG) == pid && !io.isInput()) break;
      continue;
    }
    io.readInput(line, file, &n);
    if (std::string(line) != "line" + std::to_string(got) + "\r\n") bad = line;
    ++got;
  }
  ::waitpid(pid, nullptr, 0);
  EXPECT_EQ(got, count);
  EXPECT_EQ(bad, "");
  EXPECT_FALSE(io.isInput());
}

TEST(FileStack, OpenErrorsAndAVanishingFile) {
  TempDir d;
  put(d / "full.txt", "x\r\n");
  TIFileRead r((d / "full.txt").c_str());
  TLanguage::setEnglisch();
  EXPECT_EQ(errorOf([&] { r.open(true, 256); }), std::make_pair(0xe3320002UL, "File " + (d / "full.txt") + " allready exists"));
  TIFileRead missing((d / "none.mac").c_str());
  EXPECT_EQ(errorOf([&] { missing.open(false, 256); }).first, 0xe3020002UL);
  r.open(false, 256);
  EXPECT_EQ(errorOf([&] { r.open(false, 256); }).first, 0xe3720001UL);
  r.close(false);
  EXPECT_EQ(errorOf([&] { r.close(false); }).first, 0xe3020003UL);
  EXPECT_EQ(errorOf([&] { r.isLine(); }).first, 0xe3020005UL);
  char line[300], file[260];
  int n = 0;
  EXPECT_EQ(errorOf([&] { r.read(line, file, &n); }).first, 0xe3020007UL);
  TIFileWrite w((d / "w.txt").c_str());
  EXPECT_EQ(errorOf([&] { w.write("x"); }).first, 0xe3020009UL);

  // A macro deleted while it is on the stack is still read to its end.
  put(d / "in.txt", "");
  put(d / "gone.mac", "a\r\nb\r\n");
  TIFileReadStack s;
  s.open((d / "in.txt").c_str(), false, false);
  s.open((d / "gone.mac").c_str(), false, true);
  fs::remove(d / "gone.mac");
  EXPECT_EQ(drain(s).size(), 3u);
  TLanguage::setDeutsch();
}

TEST(EAManager, OutputRecordingAndTrace) {
  TempDir d;
  TIEAManager io;
  TLanguage::setEnglisch();
  EXPECT_EQ(errorOf([&] { io.isInput(); }), std::make_pair(0xe312003aUL, std::string("Input not open yet")));
  EXPECT_EQ(errorOf([&] { io.writeOutput("x"); }).first, 0xe312003cUL);
  EXPECT_EQ(errorOf([&] { io.recordMacro((d / "m.mac").c_str(), false); }).first, 0xe762008cUL);
  put(d / "in.txt", "");
  io.openInput((d / "in.txt").c_str(), false, false);
  io.openOutput((d / "out.txt").c_str());
  EXPECT_EQ(errorOf([&] { io.openOutput((d / "out.txt").c_str()); }).first, 0xe3720038UL);
  io.writeOutput("a");
  io.writeOutput(nullptr);
  io.silentOutput(true);
  io.writeOutput("hidden");
  io.silentOutput(false);
  TITrace::openTrace(&io);
  TITrace::trace("/x/kdoint/TILineParser.cpp", 42, "n=%d", 7);
  TITrace::openTrace(nullptr);
  TITrace::trace("f.cpp", 1, "gone");
  EXPECT_EQ(slurp(d / "out.txt"), "a(Null)Trace    TILineParser.cpp   42: n=7\r\n");

  EXPECT_EQ(errorOf([&] { io.endMacro(); }).first, 0xe5020085UL);
  io.recordMacro((d / "m.mac").c_str(), false);
  EXPECT_EQ(errorOf([&] { io.recordMacro((d / "m.mac").c_str(), false); }).first, 0xe5020084UL);
  io.write2Macro("echo(1)\r\n");
  put(d / "p.mac", "x\r\n");
  io.openInput((d / "p.mac").c_str(), false, true);
  EXPECT_EQ(errorOf([&] { io.endMacro(); }).first, 0xe762008dUL);
  char line[300], file[260];
  int n = 0;
  while (io.isInput()) io.readInput(line, file, &n);  // back to depth 1
  io.endMacro();
  EXPECT_EQ(slurp(d / "m.mac"), "echo(1)\r\n");
  // onto an existing macro: only with replace
  EXPECT_EQ(errorOf([&] { io.recordMacro((d / "m.mac").c_str(), false); }).first, 0xe3320002UL);
  EXPECT_FALSE(io.bIsRecording());
  io.recordMacro((d / "m.mac").c_str(), true);
  io.endMacro();
  EXPECT_EQ(slurp(d / "m.mac"), "");
  TLanguage::setDeutsch();
}

TEST(Messages, TableTextsInBothLanguages) {
  EXPECT_STREQ(TIMessage::getText(0x109, 0), "Datei bereits vorhanden: %s");
  EXPECT_STREQ(TIMessage::getText(0x109, 1), "File %s allready exists");
  EXPECT_STREQ(TIMessage::getText(0x408, 1), "Token after if|while is no \"(\"");
  EXPECT_STREQ(TIMessage::getText(0x2002, 0), "%s (Instanzen=%u Referenzen=%u)\r\n");
  EXPECT_STREQ(TIMessage::getText(0x30d, 1), "");
  EXPECT_TRUE(TIMessage::bExists(0x409));
  EXPECT_FALSE(TIMessage::bExists(0x999));
  EXPECT_STREQ(TIMessage::getText(0x999, 1), TIMessage::getText(0x998, 0));  // the ending entry
  TLanguage::setEnglisch();
  EXPECT_STREQ(TIMessage::getString(0x411, 3, 2), "Index error in token: position=3 size=2");
  TLanguage::setDeutsch();
  EXPECT_STREQ(TIMessage::getString(0x411, 3, 2), "Indexfehler Token: Position=3 Size=2");
  int ids = 0;
  for (unsigned long id = 1; id < 0x3000; ++id) ids += TIMessage::bExists(id);
  EXPECT_EQ(ids, 120);  // 115 with texts, five empty
}
