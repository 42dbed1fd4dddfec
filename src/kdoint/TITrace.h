// Traces of the interpreter into its output: "Trace %15s%s %4d: " with the
// source's name and extension and the line, then the text, ended by a line
// feed (CR LF) unless it ends in one already. Nothing happens until a manager
// is set with openTrace (and after openTrace(nullptr)).
#pragma once

class TIEAManager;

class TITrace {
 public:
  static void openTrace(TIEAManager* manager);
  static void trace(const char* file, int line, const char* format, ...) __attribute__((format(printf, 3, 4)));
};
