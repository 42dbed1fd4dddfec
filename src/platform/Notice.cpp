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

namespace {
QuestionHandler& currentQuestion() {
  static QuestionHandler h;
  return h;
}
MessagePump& currentPump() {
  static MessagePump p;
  return p;
}
std::mutex& hookMutex() {
  static std::mutex m;
  return m;
}
}  // namespace

QuestionHandler setQuestionHandler(QuestionHandler handler) {
  std::lock_guard lock(hookMutex());
  QuestionHandler old = std::move(currentQuestion());
  currentQuestion() = std::move(handler);
  return old;
}

bool askYesNo(const std::string& caption, const std::string& text) {
  QuestionHandler h;
  {
    std::lock_guard lock(hookMutex());
    h = currentQuestion();
  }
  if (h) return h(caption, text);
  notice(eNoticeKind::eQuestion, caption, text + " -> No");
  return false;
}

MessagePump setMessagePump(MessagePump pump) {
  std::lock_guard lock(hookMutex());
  MessagePump old = std::move(currentPump());
  currentPump() = std::move(pump);
  return old;
}

void processMessages() {
  MessagePump p;
  {
    std::lock_guard lock(hookMutex());
    p = currentPump();
  }
  if (p) p();
}

}  // namespace kx::platform
