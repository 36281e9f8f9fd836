// Asks the system to run the calling thread before others that are ready. Where the user may not ask for that, nothing
// changes; the sound then depends on how busy the machine is.
#pragma once

#ifdef __linux__
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace qm {

enum class Urgency {
    Soon,  // decoding ahead
    Now,   // what the device is waiting for: works in short stretches and sleeps between them
};

inline void preferThisThread([[maybe_unused]] Urgency urgency) noexcept {
#ifdef __linux__
    constexpr int kNice = -12;
    const sched_param lowest{.sched_priority = 1};
    if (urgency == Urgency::Now && pthread_setschedparam(pthread_self(), SCHED_RR, &lowest) == 0) return;
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNice);
#endif
}

}  // namespace qm
