// What the watch sees: one act of each kind.
#ifdef QUILLMERE_HEAP_WATCH
#include "realtime/CallWatch.h"

#include <doctest/doctest.h>
#include <fcntl.h>
#include <linux/futex.h>
#include <poll.h>
#include <semaphore.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <thread>

#include "engine/api/Log.h"
#include "support/LogLines.h"

using namespace qm;
using namespace qm::test;

TEST_CASE("the watch sees nothing where there is nothing") {
    volatile double value = 1;
    CHECK(callsOf([&] { value = value * 1.5 + 1; }).all() == 0);
}

TEST_CASE("the watch sees what is taken from the heap and given back") {
    void* volatile block = nullptr;
    CHECK(callsOf([&] { block = std::malloc(10); }).heap == 1);
    CHECK(callsOf([&] { block = std::realloc(block, 20); }).heap == 1);
    CHECK(callsOf([&] { std::free(block); }).heap == 1);
    CHECK(callsOf([&] { block = ::operator new(10); }).heap == 1);
    CHECK(callsOf([&] { ::operator delete(block); }).heap == 1);
}

TEST_CASE("the watch sees locks that nobody else holds") {
    std::mutex mutex;
    CHECK(callsOf([&] { const std::lock_guard lock(mutex); }).locks == 1);
    CHECK(callsOf([&] { const std::unique_lock lock(mutex, std::try_to_lock); }).locks == 1);
    std::shared_mutex shared;
    CHECK(callsOf([&] { const std::shared_lock lock(shared); }).locks == 1);
}

TEST_CASE("the watch sees waits") {
    std::mutex mutex;
    std::condition_variable condition;
    std::unique_lock lock(mutex);
    CHECK(callsOf([&] { condition.wait_for(lock, std::chrono::microseconds(1)); }).waits == 1);
    CHECK(callsOf([] { std::this_thread::sleep_for(std::chrono::microseconds(1)); }).waits == 1);
    CHECK(callsOf([] { std::this_thread::yield(); }).waits == 1);
    CHECK(callsOf([] { ::poll(nullptr, 0, 0); }).waits == 1);
}

TEST_CASE("the watch sees wakes, also of nobody") {
    std::condition_variable condition;
    CHECK(callsOf([&] { condition.notify_one(); }).wakes == 1);
    CHECK(callsOf([&] { condition.notify_all(); }).wakes == 1);
    sem_t semaphore;
    sem_init(&semaphore, 0, 0);
    CHECK(callsOf([&] { sem_post(&semaphore); }).wakes == 1);
    CHECK(callsOf([&] { sem_wait(&semaphore); }).waits == 1);
    int word = 0;
    CHECK(callsOf([&] { syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0); }).wakes == 1);
}

TEST_CASE("the watch sees what is written to a descriptor, a stream or the log") {
    const int event = eventfd(0, EFD_NONBLOCK);
    const std::uint64_t one = 1;
    CHECK(callsOf([&] { static_cast<void>(::write(event, &one, sizeof one) == 0); }).writes == 1);
    CHECK(callsOf([&] { eventfd_write(event, 1); }).writes == 1);
    close(event);
    std::FILE* nowhere = std::fopen("/dev/null", "w");
    CHECK(callsOf([&] { std::fputs("line", nowhere); }).writes == 1);
    std::fclose(nowhere);
    const LogLines log;
    CHECK(callsOf([] { qmLog("line"); }).all() > 0);
}

#if defined(__x86_64__)
TEST_CASE("the watch sees a system call in front of which nobody stands") {
    const Calls seen = callsOf([] { getppid(); });
    CHECK(seen.system == 1);
    CHECK(seen.all() == 1);
    int answer = 0;
    callsOf([&] { answer = getppid(); });
    CHECK(answer == getppid());
}
#endif

#endif  // QUILLMERE_HEAP_WATCH
