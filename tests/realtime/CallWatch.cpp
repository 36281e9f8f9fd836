// With checked calls the headers would define some of these functions themselves.
#undef _FORTIFY_SOURCE
#ifdef QUILLMERE_HEAP_WATCH
#include "realtime/CallWatch.h"

#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <ucontext.h>
#include <unistd.h>

#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "support/HeapWatch.h"

namespace qm::test {

namespace {

constinit thread_local Calls t_calls;

#if defined(__x86_64__) && defined(PR_SET_SYSCALL_USER_DISPATCH)

// The kernel looks at this byte at each system call of the thread, and sends a signal instead when it says so.
constinit thread_local volatile char t_dispatch = SYSCALL_DISPATCH_FILTER_ALLOW;
constinit thread_local bool t_isArmed = false;

// Counts the first system call of a stretch, and then makes it.
void onSystemCall(int, siginfo_t*, void* context) {
    t_dispatch = SYSCALL_DISPATCH_FILTER_ALLOW;
    ++t_calls.system;
    greg_t* registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    long result = registers[REG_RAX];
    register long r10 asm("r10") = registers[REG_R10];
    register long r8 asm("r8") = registers[REG_R8];
    register long r9 asm("r9") = registers[REG_R9];
    asm volatile("syscall"
                 : "+a"(result)
                 : "D"(registers[REG_RDI]), "S"(registers[REG_RSI]), "d"(registers[REG_RDX]), "r"(r10), "r"(r8), "r"(r9)
                 : "rcx", "r11", "memory");
    registers[REG_RAX] = result;
}

void armThisThread() {
    if (t_isArmed) return;
    struct sigaction action = {};
    action.sa_sigaction = onSystemCall;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSYS, &action, nullptr);
    if (prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON, 0, 0, &t_dispatch) != 0) {
        std::perror("the kernel does not show system calls");
        std::abort();
    }
    t_isArmed = true;
}

void showSystemCalls(bool shown) {
    t_dispatch = shown ? SYSCALL_DISPATCH_FILTER_BLOCK : SYSCALL_DISPATCH_FILTER_ALLOW;
}

#else

void armThisThread() {}
void showSystemCalls(bool) {}

#endif

}  // namespace

Calls& calls() {
    return t_calls;
}

void beginToWatch() {
    armThisThread();
    t_heapCalls = 0;
    t_isWatched = true;
    showSystemCalls(true);
}

void endToWatch() {
    showSystemCalls(false);
    t_isWatched = false;
    t_calls.heap += t_heapCalls;
}

}  // namespace qm::test

namespace {

void count(int qm::test::Calls::*kind) {
    qm::test::t_calls.*kind += qm::test::t_isWatched;
}

}  // namespace

using qm::test::Calls;

// Stands in front of a function of the C library: counts, and goes on to it.
#define COUNTED(kind, result, name, parameters, arguments)                                     \
    result name parameters {                                                                   \
        static const auto real = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name)); \
        count(&Calls::kind);                                                                   \
        return real arguments;                                                                 \
    }

extern "C" {
COUNTED(locks, int, pthread_mutex_lock, (pthread_mutex_t * m), (m))
COUNTED(locks, int, pthread_mutex_trylock, (pthread_mutex_t * m), (m))
COUNTED(locks, int, pthread_mutex_timedlock, (pthread_mutex_t * m, const timespec* t), (m, t))
COUNTED(locks, int, pthread_mutex_clocklock, (pthread_mutex_t * m, clockid_t c, const timespec* t), (m, c, t))
COUNTED(locks, int, pthread_rwlock_rdlock, (pthread_rwlock_t * l), (l))
COUNTED(locks, int, pthread_rwlock_wrlock, (pthread_rwlock_t * l), (l))
COUNTED(locks, int, pthread_spin_lock, (pthread_spinlock_t * l), (l))

COUNTED(waits, int, pthread_cond_wait, (pthread_cond_t * c, pthread_mutex_t* m), (c, m))
COUNTED(waits, int, pthread_cond_timedwait, (pthread_cond_t * c, pthread_mutex_t* m, const timespec* t), (c, m, t))
COUNTED(waits, int, pthread_cond_clockwait, (pthread_cond_t * c, pthread_mutex_t* m, clockid_t k, const timespec* t),
        (c, m, k, t))
COUNTED(waits, int, sem_wait, (sem_t * s), (s))
COUNTED(waits, int, sem_timedwait, (sem_t * s, const timespec* t), (s, t))
COUNTED(waits, int, nanosleep, (const timespec* t, timespec* left), (t, left))
COUNTED(waits, int, clock_nanosleep, (clockid_t c, int f, const timespec* t, timespec* left), (c, f, t, left))
COUNTED(waits, int, usleep, (useconds_t t), (t))
COUNTED(waits, int, sched_yield, (), ())
COUNTED(waits, int, poll, (pollfd * f, nfds_t n, int t), (f, n, t))
COUNTED(waits, ssize_t, read, (int f, void* b, size_t n), (f, b, n))

COUNTED(wakes, int, pthread_cond_signal, (pthread_cond_t * c), (c))
COUNTED(wakes, int, pthread_cond_broadcast, (pthread_cond_t * c), (c))
COUNTED(wakes, int, sem_post, (sem_t * s), (s))

COUNTED(writes, ssize_t, write, (int f, const void* b, size_t n), (f, b, n))
COUNTED(writes, ssize_t, writev, (int f, const iovec* v, int n), (f, v, n))
COUNTED(writes, ssize_t, send, (int f, const void* b, size_t n, int flags), (f, b, n, flags))
COUNTED(writes, ssize_t, sendmsg, (int f, const msghdr* m, int flags), (f, m, flags))
COUNTED(writes, int, eventfd_write, (int f, eventfd_t v), (f, v))
COUNTED(writes, size_t, fwrite, (const void* b, size_t s, size_t n, FILE* f), (b, s, n, f))
COUNTED(writes, int, fputs, (const char* s, FILE* f), (s, f))

// Atomics that wait and wake do so by number.
long syscall(long number, ...) noexcept {
    using Call = long (*)(long, ...);
    static const auto real = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "syscall"));
    va_list list;
    va_start(list, number);
    long a[6];
    for (long& argument : a) argument = va_arg(list, long);
    va_end(list);
    count(number == SYS_futex ? &Calls::wakes : &Calls::writes);
    return real(number, a[0], a[1], a[2], a[3], a[4], a[5]);
}
}

#endif  // QUILLMERE_HEAP_WATCH
