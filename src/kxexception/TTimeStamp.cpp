#include "kxexception/TTimeStamp.h"

#include "platform/Clock.h"

namespace Process {
void TTimeStamp::set() { store(kx::platform::monotonicNs()); }
}  // namespace Process
