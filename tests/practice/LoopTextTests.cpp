#include "practice/LoopText.h"

#include <doctest/doctest.h>

#include "practice/PracticeMemory.h"

using namespace qm;

namespace {

PracticeRecord recordWithLoops() {
    PracticeMemory memory;
    memory.load({"q1-5f0c", "/one.mp3", "Blue\tLantern", "Marlow Quartet", {441000000, 44100}});
    memory.keep({{3175200, 4034312}, 0.75, -100}, 1);
    memory.keep({{1, 2}, 1, 0}, 2);
    memory.keep({{159000007, 159000999}, 1, 50}, 3);
    memory.rename(memory.loops()[0]->id, "Bridge, the 2nd", 4);
    return memory.record();
}

}  // namespace

TEST_CASE("Loops are a text that people can read") {
    CHECK(loopText(recordWithLoops()) ==
          "Title: Blue Lantern\n"
          "Artist: Marlow Quartet\n"
          "Sound: q1-5f0c\n"
          "Rate: 44100\n"
          "0:01:12.000000\t0:01:31.480998\t0.75\t-100\tBridge, the 2nd\n"
          "0:00:00.000023\t0:00:00.000045\t-\t-\tLoop 2\n"
          "1:00:05.442336\t1:00:05.464830\t-\t50\tLoop 3\n");
}

TEST_CASE("A text is read to the frame, at every rate") {
    for (const std::int64_t scale : {8000, 44100, 48000, 96000, 192000}) {
        PracticeRecord record = recordWithLoops();
        record.scale = scale;
        const ReadLoopText read = readLoopText(loopText(record), 1);
        CHECK(read.skipped == 0);
        CHECK(read.record.sound == "q1-5f0c");
        CHECK(read.record.scale == scale);
        const auto loops = read.record.keptLoops(), wanted = record.keptLoops();
        REQUIRE(loops.size() == wanted.size());
        for (std::size_t i = 0; i < loops.size(); ++i) {
            CHECK(loops[i]->a == wanted[i]->a);
            CHECK(loops[i]->b == wanted[i]->b);
            CHECK(loops[i]->speed == wanted[i]->speed);
            CHECK(loops[i]->cents == wanted[i]->cents);
            CHECK(loops[i]->name == wanted[i]->name);
        }
    }
}

TEST_CASE("Lines that are none are skipped and counted") {
    const ReadLoopText read = readLoopText(
        "\xef\xbb\xbfTitle: One\r\n"
        "\r\n"
        "some words\r\n"
        "0:10 0:20 - - Written by hand\r\n"
        "0:10\t0:20\t9\t-\tToo fast\r\n"
        "0:20\t0:10\t-\t-\tBackward\r\n"
        "0:30\t0:40\t0.5\t-\r\n"
        "0:30\t0:40\r\n",
        1000);
    CHECK(read.record.title == "One");
    CHECK(read.record.scale == 1000);
    CHECK(read.skipped == 4);
    const auto loops = read.record.keptLoops();
    REQUIRE(loops.size() == 2);
    CHECK(loops[0]->name == "Written by hand");
    CHECK(loops[0]->a == 10000);
    CHECK(loops[1]->speed == 0.5);
    CHECK(loops[1]->name.isEmpty());
}

TEST_CASE("Any text is read without harm") {
    CHECK(readLoopText("", 44100).skipped == 0);
    CHECK(readLoopText(QByteArray(100000, '\xff'), 44100).skipped == 1);
    CHECK(readLoopText("Rate: 0\nRate: x\n", 44100).skipped == 2);
}
