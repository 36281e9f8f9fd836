#include <doctest/doctest.h>

#include <array>
#include <thread>

#include "engine/realtime/SeqLocked.h"
#include "engine/realtime/SpscRing.h"

using namespace qm;

TEST_CASE("a ring passes every element on, in order and once, between two threads") {
    SpscRing<int> ring(64);
    constexpr int kCount = 200000;
    std::thread producer([&] {
        for (int next = 0; next < kCount;) {
            std::array<int, 7> items;
            const int n = std::min(7, kCount - next);
            for (int i = 0; i < n; ++i) items[std::size_t(i)] = next + i;
            next += static_cast<int>(ring.write(std::span<const int>(items.data(), std::size_t(n))));
        }
    });
    int expected = 0, wrong = 0;
    while (expected < kCount) {
        std::array<int, 5> items;
        const std::size_t got = ring.read(items);
        for (std::size_t i = 0; i < got; ++i) wrong += items[i] != expected++;
    }
    producer.join();
    CHECK(wrong == 0);
}

TEST_CASE("a ring takes no more than it holds and gives no more than it has") {
    SpscRing<int> ring(4);
    const std::array<int, 6> six{1, 2, 3, 4, 5, 6};
    CHECK(ring.write(six) == 4);
    CHECK(ring.space() == 0);
    std::array<int, 6> out{};
    CHECK(ring.read(out) == 4);
    CHECK(out[3] == 4);
    CHECK(ring.read(out) == 0);
    CHECK(ring.peek(0) == 1);
}

TEST_CASE("a published value is never seen half written") {
    struct Pair {
        std::int64_t a, b, c;
    };
    SeqLocked<Pair> shared;
    shared.store({0, 0, 0});
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (std::int64_t i = 1; i < 200000; ++i) shared.store({i, -i, 2 * i});
        done = true;
    });
    std::int64_t torn = 0, last = 0, backwards = 0;
    while (!done) {
        const auto value = shared.tryLoad();
        if (!value) continue;
        torn += value->b != -value->a || value->c != 2 * value->a;
        backwards += value->a < last;
        last = value->a;
    }
    writer.join();
    CHECK(torn == 0);
    CHECK(backwards == 0);
}
