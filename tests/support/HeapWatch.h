// Counts what a thread takes from the heap and gives back while it is watched, by functions that stand in front of the
// C library's own. Not in programs with sanitizers, which stand there themselves.
#pragma once

namespace qm::test {

extern constinit thread_local bool t_isWatched;
extern constinit thread_local int t_heapCalls;

}  // namespace qm::test
