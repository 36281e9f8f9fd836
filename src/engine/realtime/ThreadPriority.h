// Asks the system to run the calling thread before others that are ready, or after them. Where the user may not ask for
// that, nothing changes; the sound then depends on how busy the machine is.
#pragma once

#ifdef __linux__
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace qm {

enum class Urgency {
    Idle,  // when nothing else wants to run
    Soon,  // rendering and decoding ahead: a sound server that needs the core for a moment is not kept waiting
    Now,   // what the device is waiting for
};

inline void preferThisThread([[maybe_unused]] Urgency urgency) noexcept {
#ifdef __linux__
    constexpr int kNice = -12;
    constexpr int kNiceWhenIdle = 10;
    if (urgency == Urgency::Idle) {
        setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNiceWhenIdle);
        return;
    }
    if (urgency == Urgency::Now) {
        constexpr sched_param priority{.sched_priority = 1};
        if (pthread_setschedparam(pthread_self(), SCHED_RR, &priority) == 0) return;
    }
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNice);
#endif
}

}  // namespace qm
