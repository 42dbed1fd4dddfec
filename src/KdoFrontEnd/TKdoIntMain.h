// The interpreter's front end, headless: what the window of a measuring
// application does, without the window. It reads the start configuration,
// makes the three files of the run in the work directory
// ("YYYY-MM-DD-HH-MM-SS-i.txt", "-o.txt", "-e.txt"), starts the interpreter
// with the default start macro and then runs its main loop: every 10 ms, as
// many lines as fit into 5 ms (at least one), then what arrived through the
// FIFO is appended to the input file. Another process talks to the
// interpreter by writing lines into the FIFO or appending them to the input
// file.
//
// Command line: -u=FILE the start ini (default "KdoIntUse.ini" next to the
// program); -e English, -g German (the first one seen wins); -f<n>, -i<n>,
// -m<n>, -t<n> choose start macro, calibration, application and work
// directory by number from 1 (each is tested against the size of the list
// with the -i number: kept as it is); -p=PATH the FIFO (default
// $XDG_RUNTIME_DIR/Ombrix, else /tmp/Ombrix-<uid>).
//
// Step mode (step()) shows each held line on standard error and takes the
// buttons as letters from standard input: i into, o over, r run, h halt,
// q hide (ends step mode).
//
// SIGTERM and SIGINT write play("Beenden.mac") to the input file, as closing
// the window does; the third one ends the process at once.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "KdoFrontEnd/CPipe.h"
#include "KdoFrontEnd/TNamedPipe.h"

class TIInterpreter;

class TKdoIntMain {
 public:
  TKdoIntMain(int argc, const char* const* argv);
  ~TKdoIntMain();
  TKdoIntMain(const TKdoIntMain&) = delete;
  TKdoIntMain& operator=(const TKdoIntMain&) = delete;

  // Start, loop until exit(), end. The exit code: 0 after exit(), 1 when
  // the start failed.
  int run();

  // The start (true when the interpreter runs) and one tick of the loop
  // (false once the interpreter's loop flag is clear).
  bool FormCreate();
  bool Timer1Timer();
  void FormDestroy();

  const std::string& sGetStdin() const { return stdin_; }
  const std::string& sGetStdout() const { return stdout_; }
  const std::string& sGetStderr() const { return stderr_; }
  const std::string& sGetPipeName() const { return pipeName_; }

 private:
  void _createFileNames(const std::string& workDir);
  void _vDeleteOldTempFiles(const std::string& workDir);
  void _vDrainPipe();
  void _vShowOutput();
  void _vAppendInput(const std::string& text);

  std::vector<std::string> args_;
  std::string iniFile_;
  std::string pipeName_;
  std::string stdin_, stdout_, stderr_;
  std::unique_ptr<TIInterpreter> interpreter_;
  CPipeClient inputClient_;
  CPipeServer outputServer_, errorServer_;
  TNamedPipe pipe_;
  bool inTimer_ = false;
  bool visible_ = false;
};
