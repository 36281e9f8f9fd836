// Counts what a thread takes from the heap and gives back while it is watched, by functions that stand in front of the
// C library's own. In programs with sanitizers, which stand there themselves, nothing is counted.
#pragma once

namespace qm::test {

#ifdef QUILLMERE_HEAP_WATCH
inline constexpr bool kWatchCounts = true;
#else
inline constexpr bool kWatchCounts = false;
#endif

extern constinit thread_local bool t_isWatched;
extern constinit thread_local int t_heapCalls;

}  // namespace qm::test
