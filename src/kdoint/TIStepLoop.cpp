#include "kdoint/TIStepLoop.h"

#include <cstdio>
#include <cstring>

#include "kdoint/TILineParser.h"
#include "kxexception/KxError.h"
#include "platform/Clock.h"

void TIStepLoop::vStep(const char* line, const char* fileName, int lineNumber, int depth, int status) {
  if (status != 0 && onlyShow0_) return;
  std::string command = line ? line : "";
  const auto end = command.find_first_of("\r\n");
  if (end != std::string::npos) command.resize(end);
  current_ = {fileName ? fileName : "", lineNumber, depth, TILineParser::cpStatusName(status), command};
  if (current_.status.empty()) current_.status = std::to_string(status);
  history_.push_back(current_);
  if (show_) show_(current_);
  if (status != 0 && onlyHold0_) return;
  if (mode_ == eOver) {
    if (depth > storedDepth_) return;
    mode_ = eWait;
  }
  for (;;) {
    if (!visible_) {
      interpreter_.vSetStepMode(false);
      mode_ = eWait;
      return;
    }
    if (events_) events_();
    kx::platform::sleepMs(40);
    if (mode_ == eWait) continue;
    if (mode_ == eInto || mode_ == eHalt) mode_ = eWait;
    break;
  }
  lastDepth_ = depth;
}

void TIStepLoop::vSave(const char* fileName) const {
  KX_TRY {
    std::FILE* out = std::fopen(fileName ? fileName : "", "wb");
    if (!out) KX_THROW(0xe30200c8UL, "%s", fileName ? fileName : "");
    char row[1400];
    for (const auto& r : history_) {
      std::snprintf(row, sizeof row, "%-25s%4s%4s%4s %s\r\n", r.file.c_str(), std::to_string(r.line).c_str(),
                    std::to_string(r.depth).c_str(), r.status.substr(0, r.status.find(' ')).c_str(), r.command.c_str());
      std::fputs(row, out);
    }
    if (std::fclose(out) != 0) KX_THROW(0xe30200c8UL, "%s", fileName);
  }
  KX_CATCH
}
