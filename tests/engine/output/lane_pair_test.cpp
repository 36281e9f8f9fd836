#include "engine/output/LanePair.h"

#include <doctest/doctest.h>

#include <cmath>
#include <vector>

using namespace qm;

namespace {

// A pair of lanes; what is written to a lane is one value all over.
struct Lanes {
    LanePair pair{1024};

    void write(float value, std::size_t frames) {
        Lane* lane = pair.idle();
        REQUIRE(lane != nullptr);
        lane->base = lane->frames.writePosition();
        lane->frames.write(std::vector<StereoFrame>(frames, {value, value}));
    }

    void playFromSilence(float value, std::size_t frames) {
        write(value, frames);
        pair.splice({0, 0, true});
        REQUIRE(pair.takeSplice(true));
    }

    // As the callback does, without ever being silent.
    std::vector<float> play(std::size_t frames) {
        std::vector<float> sound;
        while (sound.size() < frames) {
            pair.takeSplice(false);
            std::vector<StereoFrame> part(pair.framesInOneGo(frames - sound.size()));
            if (part.empty()) break;
            pair.read(part);
            for (const StereoFrame& frame : part) sound.push_back(frame.left);
        }
        return sound;
    }
};

}  // namespace

TEST_CASE("one lane is free to be written as long as no splice is under way") {
    Lanes lanes;
    lanes.playFromSilence(1, 500);
    CHECK(lanes.pair.idle() != nullptr);
    lanes.write(0.5f, 500);
    lanes.pair.splice({100, 0, true});
    CHECK(lanes.pair.idle() == nullptr);
    CHECK(lanes.play(100).size() == 100);
    CHECK(lanes.pair.idle() == nullptr);
    lanes.play(1);
    CHECK(lanes.pair.idle() != nullptr);
}

TEST_CASE("the lane being written is the one that the newest splice leads to, before it plays") {
    Lanes lanes;
    lanes.playFromSilence(1, 500);
    CHECK(&lanes.pair.beingWritten() == &lanes.pair.playing());
    lanes.write(0.5f, 300);
    lanes.pair.splice({100, 0, true});
    CHECK(&lanes.pair.beingWritten() != &lanes.pair.playing());
    CHECK(lanes.pair.framesReady() == 300);
    lanes.play(101);
    CHECK(&lanes.pair.beingWritten() == &lanes.pair.playing());
    CHECK(lanes.pair.framesReady() == 299);
    CHECK(lanes.pair.splices() == 2);
}

TEST_CASE("unrelated sound is faded at equal power, the same sound at equal gain") {
    for (const bool unrelated : {true, false}) {
        Lanes lanes;
        lanes.playFromSilence(1, 500);
        lanes.write(1, 500);
        lanes.pair.splice({0, 101, unrelated});
        const auto sound = lanes.play(200);
        CHECK(sound[50] == doctest::Approx(unrelated ? std::sqrt(2.0) : 1.0));
        CHECK(sound[101] == 1);
    }
}

TEST_CASE("a fade is over when the sound that fades out is") {
    Lanes lanes;
    lanes.playFromSilence(1, 40);
    lanes.write(0.5f, 500);
    lanes.pair.splice({0, 100, true});
    const auto sound = lanes.play(41);
    CHECK(sound[39] != 0.5f);
    CHECK(sound[40] == 0.5f);
    CHECK(lanes.pair.idle() != nullptr);
}

TEST_CASE("a lane that runs dry in a fade ends the fade only if nothing more will come") {
    Lanes lanes;
    lanes.playFromSilence(1, 500);
    lanes.write(0.5f, 10);
    lanes.pair.splice({0, 100, true});
    CHECK(lanes.play(100).size() == 10);
    lanes.pair.runDry();
    CHECK(lanes.pair.idle() == nullptr);
    lanes.pair.beingWritten().ended = true;
    lanes.pair.runDry();
    CHECK(lanes.pair.idle() != nullptr);
}

TEST_CASE("in silence a splice needs no fade and waits for no frame") {
    Lanes lanes;
    lanes.playFromSilence(1, 500);
    lanes.write(0.5f, 500);
    lanes.pair.splice({400, 100, true});
    CHECK_FALSE(lanes.pair.takeSplice(false));
    CHECK(lanes.pair.takeSplice(true));
    CHECK(lanes.play(1).front() == 0.5f);
    CHECK(lanes.pair.idle() != nullptr);
}
