// Where message boxes go. There is no screen: a notice (caption and text) is
// handed to the installed sink. The default sink writes it to standard error
// and never blocks; tests install a recording sink. Process wide; the sink is
// called under a mutex, so it may be called from any thread.
#pragma once

#include <functional>
#include <string>

namespace kx::platform {

enum class eNoticeKind { eError, eInfo, eQuestion };

using NoticeSink = std::function<void(eNoticeKind, const std::string& caption, const std::string& text)>;

// Installs a sink; an empty function restores the default. Returns the old one.
NoticeSink setNoticeSink(NoticeSink sink);
void notice(eNoticeKind kind, const std::string& caption, const std::string& text);

// Questions to the operator (yes or no). The default gives the question to
// the notice sink as eQuestion and answers No; a host or a test installs an
// answerer. An empty function restores the default. Returns the old one.
using QuestionHandler = std::function<bool(const std::string& caption, const std::string& text)>;
QuestionHandler setQuestionHandler(QuestionHandler handler);
bool askYesNo(const std::string& caption, const std::string& text);

// Handling the pending messages of a user interface, called by long loops
// (capture, waiting). A no-op unless a host installs one.
using MessagePump = std::function<void()>;
MessagePump setMessagePump(MessagePump pump);
void processMessages();

}  // namespace kx::platform
