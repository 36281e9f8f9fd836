#include "engine/realtime/ThreadRole.h"

#include <doctest/doctest.h>

#include <thread>

using qm::ThreadRole;

namespace {

bool isOnAnotherThread(const ThreadRole& role) {
    bool answer = false;
    std::thread([&] { answer = role.isHere(); }).join();
    return answer;
}

}  // namespace

TEST_CASE("a role belongs to the thread that asks first") {
    const ThreadRole role;
    CHECK(role.isHere());
    CHECK(role.isHere());
    CHECK_FALSE(isOnAnotherThread(role));
    CHECK(role.isHere());
}

TEST_CASE("a role that another thread took stays with it") {
    const ThreadRole role;
    CHECK(isOnAnotherThread(role));
    CHECK_FALSE(role.isHere());
}

TEST_CASE("a role that is handed over belongs to the next thread that asks") {
    ThreadRole role;
    CHECK(role.isHere());
    role.handOver();
    CHECK(isOnAnotherThread(role));
    CHECK_FALSE(role.isHere());
}
