// Counts what a thread does that a sound callback must not, while it is watched: what it takes from the heap and gives
// back, each lock, wait and wake of the C library, each write to a file, and on x86-64 the system call behind any of
// them, whoever makes it.
// Programs with sanitizers, which stand in front of the same functions, run what is watched and count nothing.
#pragma once

namespace qm::test {

struct Calls {
    int heap = 0;    // malloc, free and their kin; operator new and delete end there
    int locks = 0;   // mutexes and read-write locks, also when nobody else holds them
    int waits = 0;   // for a condition, a semaphore, a descriptor, or time
    int wakes = 0;   // of a condition or a semaphore; any futex by its number
    int writes = 0;  // to a descriptor or a stream
    int system = 0;  // watched stretches in which there was a system call

    int all() const { return heap + locks + waits + wakes + writes + system; }
};

#ifdef QUILLMERE_HEAP_WATCH
Calls& calls();  // of this thread

void beginToWatch();
void endToWatch();
#else
inline Calls& calls() {
    static thread_local Calls none;
    return none;
}
inline void beginToWatch() {}
inline void endToWatch() {}
#endif

// What an act came to.
template <typename Act>
Calls callsOf(const Act& act) {
    calls() = {};
    beginToWatch();
    act();
    endToWatch();
    return calls();
}

}  // namespace qm::test
