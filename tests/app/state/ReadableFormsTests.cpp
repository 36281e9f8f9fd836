#include <doctest/doctest.h>

#include "app/state/ReadableForms.h"
#include "support/widgets/TestText.h"

using namespace qm;

TEST_CASE("values are told in words with true minus signs and no needless decimals") {
    CHECK(readableSpeed(0.75f) == "0.75×");
    CHECK(readableSpeed(-1.0) == "1× backward");
    CHECK(readableSpeed(0.35f) == "0.35×");
    CHECK(readablePitch(-150) == "−1.5 semitones");
    CHECK(readablePitch(100) == "1 semitone");
    CHECK(readablePitch(-0.4) == "0 semitones");
    CHECK(readableGain(0.62f) == "62 %");
    CHECK(readableBalance(-0.2f) == "L 0.2");
    CHECK(readableBalance(0.5) == "R 0.5");
    CHECK(readableBalance(0) == "Centre");
    CHECK(readableTone(148) == "148 of 256");
    CHECK(readableTime(83.45) == "1:23.4");
    CHECK(readableTime(-1) == "0:00.0");
    CHECK(readableTime(3605) == "60:05.0");
}

TEST_CASE("spoken values name the unit and the direction") {
    CHECK(spokenSpeed(0.75) == "0.75 times, forward");
    CHECK(spokenSpeed(-2) == "2 times, backward");
    CHECK(spokenPitch(-100) == "minus 100 cents");
    CHECK(spokenGain(0.62) == "62 percent");
    CHECK(spokenBalance(-0.2) == "left 20 percent");
    CHECK(spokenBalance(0) == "centre");
    CHECK(spokenTime(83, 252) == "1 minute 23 seconds of 4 minutes 12");
    CHECK(spokenTime(5, 59) == "5 seconds of 59 seconds");
    CHECK(spokenTime(1, 60) == "1 second of 1 minute 0");
}

TEST_CASE("tags are empty at rest") {
    CHECK(speedTag(1.0f).isEmpty());
    CHECK(pitchTag(0).isEmpty());
    CHECK(speedTag(1.5) == "1.5× speed");
    CHECK(speedTag(-1.0f) == "1× backward");
    CHECK(pitchTag(1200) == "+1200 cents");
}
