// Step mode: each line that reaches the line parser with tokens is shown
// (file, line, depth, status, command) and appended to a history, and the
// interpreter is held until the user lets it go:
//   Hinein   (into)  one line
//   Drüber   (over)  runs the lines deeper than the present one through
//   Run              one line per 40 ms, until Halt
//   Halt             stops after the present line
// Hiding the display ends step mode. While a line is held, the front end's
// events are processed (every 40 ms, on the platform clock).
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kdoint/TIInterpreter.h"

class TIStepLoop : public TIStepDisplay {
 public:
  struct TRow {
    std::string file;
    int line;
    int depth;
    std::string status;
    std::string command;
  };
  enum eMode { eWait = 0, eInto = 1, eOver = 2, eRun = 3, eHalt = 4 };

  explicit TIStepLoop(TIInterpreter& interpreter) : interpreter_(interpreter) {}

  void vShow() override { visible_ = true; }
  void vHide() { visible_ = false; }
  bool isVisible() const { return visible_; }
  void vStep(const char* line, const char* fileName, int lineNumber, int depth, int status) override;

  // The buttons.
  void vInto() { mode_ = eInto; }
  void vOver() {
    mode_ = eOver;
    storedDepth_ = lastDepth_;
  }
  void vRun() { mode_ = eRun; }
  void vHalt() { mode_ = eHalt; }
  eMode eGetMode() const { return mode_; }
  // "Nur Status=0 anzeigen", "Nur Status=0 halten".
  void vSetOnlyStatus0Show(bool on) { onlyShow0_ = on; }
  void vSetOnlyStatus0Hold(bool on) { onlyHold0_ = on; }

  // What the display shows now, and the history grid ("Datei", "Zeile",
  // "Tiefe", "Status", "Kommando").
  const TRow& rGetCurrent() const { return current_; }
  const std::vector<TRow>& rGetHistory() const { return history_; }
  // "Speichern": the grid as text, "%-25s%4s%4s%4s %s" per row.
  void vSave(const char* fileName) const;
  // Called while a line is held: the front end's events (its buttons).
  void vSetEvents(std::function<void()> events) { events_ = std::move(events); }
  // Called when a line is shown.
  void vSetShow(std::function<void(const TRow&)> show) { show_ = std::move(show); }

 private:
  TIInterpreter& interpreter_;
  bool visible_ = false;
  bool onlyShow0_ = false;
  bool onlyHold0_ = false;
  eMode mode_ = eWait;
  int storedDepth_ = 0;
  int lastDepth_ = 0;
  TRow current_{};
  std::vector<TRow> history_;
  std::function<void()> events_;
  std::function<void(const TRow&)> show_;
};
