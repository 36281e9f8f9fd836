#include "support/HeapWatch.h"

#include <cstddef>

namespace qm::test {

constinit thread_local bool t_isWatched = false;
constinit thread_local int t_heapCalls = 0;

}  // namespace qm::test

using qm::test::t_heapCalls;
using qm::test::t_isWatched;

#ifdef QUILLMERE_HEAP_WATCH
extern "C" {
void* __libc_malloc(std::size_t);
void __libc_free(void*);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);

void* malloc(std::size_t size) {
    t_heapCalls += t_isWatched;
    return __libc_malloc(size);
}
void free(void* block) {
    t_heapCalls += t_isWatched;
    __libc_free(block);
}
void* calloc(std::size_t count, std::size_t size) {
    t_heapCalls += t_isWatched;
    return __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
    t_heapCalls += t_isWatched;
    return __libc_realloc(block, size);
}
}
#endif
