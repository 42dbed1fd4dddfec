#include "kxexception/TTimeStamp.h"

#include "platform/Clock.h"

namespace Process {
void TTimeStamp::set() { count_ = kx::platform::monotonicNs(); }
}  // namespace Process
