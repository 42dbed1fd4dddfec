#include "platform/Notice.h"

#include <cstdio>
#include <mutex>

namespace kx::platform {
namespace {
std::mutex& noticeMutex() {
  static std::mutex m;
  return m;
}
NoticeSink& currentSink() {
  static NoticeSink s;
  return s;
}
void defaultSink(eNoticeKind, const std::string& caption, const std::string& text) {
  if (!caption.empty()) std::fprintf(stderr, "[%s]\n", caption.c_str());
  std::fprintf(stderr, "%s\n", text.c_str());
  std::fflush(stderr);
}
}  // namespace

NoticeSink setNoticeSink(NoticeSink sink) {
  std::lock_guard lock(noticeMutex());
  NoticeSink old = std::move(currentSink());
  currentSink() = std::move(sink);
  return old;
}

void notice(eNoticeKind kind, const std::string& caption, const std::string& text) {
  std::lock_guard lock(noticeMutex());
  if (currentSink())
    currentSink()(kind, caption, text);
  else
    defaultSink(kind, caption, text);
}

}  // namespace kx::platform
