#include <doctest/doctest.h>

#include <vector>

#include "engine/sound/Playhead.h"

using namespace qm;

namespace {

std::vector<std::int64_t> framesOf(const Playhead& head, std::int64_t first, std::int64_t count) {
    std::vector<std::int64_t> frames;
    for (std::int64_t s = first; s < first + count; ++s) frames.push_back(head.frameAt(s));
    return frames;
}

using Frames = std::vector<std::int64_t>;

}  // namespace

TEST_CASE("forward play starts with the frame at its position") {
    CHECK(framesOf(makePlayhead(5, false, false, 0, 0, 100), 0, 3) == Frames{5, 6, 7});
}

TEST_CASE("backward play starts with the frame before its position") {
    CHECK(framesOf(makePlayhead(5, true, false, 0, 0, 100), 0, 3) == Frames{4, 3, 2});
}

TEST_CASE("the end of the track played backward is its last frame") {
    CHECK(makePlayhead(100, true, false, 0, 0, 100).frameAt(0) == 99);
}

TEST_CASE("a loop goes from the frame before B to A") {
    CHECK(framesOf(makePlayhead(12, false, true, 10, 14, 100), 0, 7) == Frames{12, 13, 10, 11, 12, 13, 10});
}

TEST_CASE("a loop played backward goes from A to the frame before B") {
    CHECK(framesOf(makePlayhead(12, true, true, 10, 14, 100), 0, 7) == Frames{11, 10, 13, 12, 11, 10, 13});
}

TEST_CASE("what lies before the start of play is the source before it, also in a loop") {
    CHECK(framesOf(makePlayhead(10, false, true, 10, 14, 100), -2, 3) == Frames{8, 9, 10});
    CHECK(framesOf(makePlayhead(14, true, true, 10, 14, 100), -2, 3) == Frames{15, 14, 13});
}

TEST_CASE("a loop of one frame repeats that frame") {
    CHECK(framesOf(makePlayhead(7, false, true, 7, 8, 100), 0, 3) == Frames{7, 7, 7});
}

TEST_CASE("an empty or inverted range loops the whole track") {
    for (const auto& [a, b] : {std::pair{50, 50}, std::pair{60, 40}}) {
        const Playhead head = makePlayhead(99, false, true, a, b, 100);
        CHECK(framesOf(head, 0, 3) == Frames{99, 0, 1});
    }
}

TEST_CASE("a position outside the range enters it at the edge that comes first in the direction of play") {
    CHECK(makePlayhead(5, false, true, 10, 20, 100).start == 10);
    CHECK(makePlayhead(30, false, true, 10, 20, 100).start == 10);
    CHECK(makePlayhead(20, false, true, 10, 20, 100).start == 10);
    CHECK(makePlayhead(5, true, true, 10, 20, 100).start == 20);
    CHECK(makePlayhead(30, true, true, 10, 20, 100).start == 20);
    CHECK(makePlayhead(10, true, true, 10, 20, 100).start == 20);
}

TEST_CASE("marks outside the track are held inside it") {
    const Playhead head = makePlayhead(0, false, true, -5, 500, 100);
    CHECK(head.rangeBegin == 0);
    CHECK(head.rangeEnd == 100);
}

TEST_CASE("a track without frames loops nowhere and does not hang") {
    const Playhead head = makePlayhead(0, false, true, 0, 0, 0);
    CHECK_FALSE(head.loops);
    CHECK(head.positionAt(1000) == 0);
}

TEST_CASE("the position is held at the end, forward and backward") {
    CHECK(makePlayhead(90, false, false, 0, 0, 100).positionAt(50) == 100);
    CHECK(makePlayhead(10, true, false, 0, 0, 100).positionAt(50) == 0);
}

TEST_CASE("the position folds at the wraps of a loop") {
    const Playhead forward = makePlayhead(12, false, true, 10, 14, 100);
    CHECK(forward.positionAt(1.5) == 13.5);
    CHECK(forward.positionAt(2) == 10);
    CHECK(forward.positionAt(6.25) == 10.25);
    const Playhead backward = makePlayhead(12, true, true, 10, 14, 100);
    CHECK(backward.positionAt(1.5) == 10.5);
    CHECK(backward.positionAt(2) == 14);
    CHECK(backward.positionAt(6.25) == 13.75);
}

TEST_CASE("before its first step the position is where play starts") {
    CHECK(makePlayhead(12, false, false, 0, 0, 100).positionAt(-128) == 12);
}

TEST_CASE("runs of consecutive frames end at the wraps") {
    const Playhead head = makePlayhead(12, false, true, 10, 14, 100);
    CHECK(head.runFrom(-3) == 5);
    CHECK(head.runFrom(0) == 2);
    CHECK(head.runFrom(2) == 4);
    CHECK(head.runFrom(5) == 1);
}
