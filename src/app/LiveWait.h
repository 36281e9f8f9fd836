// Waits for work on another thread without stopping the window: after a moment it is painted, its timers run and the
// pointer shows that something is being done. What the user does meanwhile waits its turn at first; when it takes long,
// it is done at once, so whoever waits here may be called again, and the program may end here. Main thread only.
#pragma once

#include "engine/api/Patience.h"

namespace qm {

void waitWithLiveWindow(const IsDone& isDone);

}  // namespace qm
