// Hands the screen what has been asked of it. Main thread only.
#pragma once

namespace qm {

// Sends what still waits in this program's queue, without waiting for an answer. The toolkit does it only when nothing
// else is left to do, which at the start comes late. Does nothing where there is no such queue.
void flushDisplay();

}  // namespace qm
