// Asks the system to run the calling thread before others that are ready. Where the user may not ask for that, nothing
// changes; the sound then depends on how busy the machine is.
#pragma once

#ifdef __linux__
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace qm {

inline void preferThisThread() noexcept {
#ifdef __linux__
    constexpr int kNice = -12;
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNice);
#endif
}

}  // namespace qm
