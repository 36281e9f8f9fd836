#include "sound/PitchControl.h"

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

Events pitchOf(const std::string& cents) {
    return {"setPitch " + cents};
}

}  // namespace

TEST_CASE_FIXTURE(ControllerFixture, "the pitch is zero at the start and kept across tracks") {
    startWithLoadedTrack();
    CHECK(controller->pitch == 0.0f);
    controller->semiToneUp();
    outlets.playList->selectRowIndex(1);
    controller->selectTrack();
    CHECK(controller->pitch == 100.0f);
}

TEST_CASE_FIXTURE(ControllerFixture, "the pitch slider's value is the pitch as it is") {
    startWithLoadedTrack();
    drag(outlets.pitchSlider, 37.5, &QMController::pitchUpdate);
    CHECK(controller->pitch == 37.5f);
    CHECK(outlets.pitchSlider->value() == 37.5);
    CHECK(outlets.pitchResetButton->title() == "37");
    CHECK(log.events() == pitchOf("37.5"));
}

TEST_CASE_FIXTURE(ControllerFixture, "the pitch title is cut toward zero and drawn with the value titles' attributes") {
    startWithLoadedTrack();
    drag(outlets.pitchSlider, -150.7, &QMController::pitchUpdate);
    CHECK(outlets.pitchResetButton->title() == "-150");
    CHECK(outlets.pitchResetButton->titleAttributes() == controller->controlColorAttributes);
    drag(outlets.pitchSlider, -0.6, &QMController::pitchUpdate);
    CHECK(outlets.pitchResetButton->title() == "0");
    CHECK(log.count("setPitch -0.6") == 1);
}

TEST_CASE_FIXTURE(ControllerFixture, "a semitone changes field, slider and title before it reaches the movie") {
    startWithLoadedTrack();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + ", slider " + std::to_string(int(outlets.pitchSlider->value())) + ", title " +
                       outlets.pitchResetButton->title().toStdString());
    };
    controller->semiToneDown();
    controller->semiToneUp();
    controller->semiToneUp();
    CHECK(seen == Events{"setPitch -100, slider -100, title -100", "setPitch 0, slider 0, title 0",
                         "setPitch 100, slider 100, title 100"});
    CHECK(outlets.pitchResetButton->titleAttributes() == controller->controlColorAttributes);
}

TEST_CASE_FIXTURE(ControllerFixture, "semitones step from where the pitch is") {
    start();
    drag(outlets.pitchSlider, 37, &QMController::pitchUpdate);
    controller->semiToneUp();
    CHECK(controller->pitch == 137.0f);
}

TEST_CASE_FIXTURE(ControllerFixture, "a semitone past an octave stops at the octave") {
    start();
    drag(outlets.pitchSlider, -1150, &QMController::pitchUpdate);
    controller->semiToneDown();
    CHECK(controller->pitch == -1200.0f);
    controller->semiToneDown();
    CHECK(controller->pitch == -1200.0f);
    CHECK(outlets.pitchSlider->value() == -1200.0);
    drag(outlets.pitchSlider, 1150, &QMController::pitchUpdate);
    controller->semiToneUp();
    CHECK(controller->pitch == 1200.0f);
}

TEST_CASE_FIXTURE(ControllerFixture, "twelve semitones up reach the octave and a thirteenth applies it again") {
    startWithLoadedTrack();
    for (int i = 0; i < 13; ++i) controller->semiToneUp();
    CHECK(controller->pitch == 1200.0f);
    CHECK(log.count("setPitch") == 13);
    CHECK(log.count("setPitch 1200") == 2);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the pitch reset shows a zero with the value titles' attributes and reaches the movie") {
    startWithLoadedTrack();
    controller->semiToneUp();
    log.take();
    controller->pitchReset();
    CHECK(controller->pitch == 0.0f);
    CHECK(outlets.pitchSlider->value() == 0.0);
    CHECK(outlets.pitchResetButton->title() == "0");
    CHECK(outlets.pitchResetButton->titleAttributes() == controller->controlColorAttributes);
    CHECK(log.events() == pitchOf("0"));
}

TEST_CASE_FIXTURE(ControllerFixture, "the pitch reaches a paused and a playing movie at once") {
    startWithLoadedTrack();
    controller->semiToneUp();
    CHECK(log.take() == pitchOf("100"));
    controller->playForward();
    log.take();
    controller->semiToneUp();
    CHECK(log.take() == pitchOf("200"));
}

TEST_CASE_FIXTURE(ControllerFixture, "a failing call changes nothing of the pitch shown and kept") {
    startWithLoadedTrack();
    controller->quickTimeMovie = 0;
    controller->semiToneUp();
    CHECK(controller->pitch == 100.0f);
    CHECK(outlets.pitchSlider->value() == 100.0);
    CHECK(outlets.pitchResetButton->title() == "100");
}

TEST_CASE_FIXTURE(ControllerFixture, "without a movie the pitch actions change pitch, slider and title only") {
    start();
    log.take();
    controller->semiToneUp();
    CHECK(outlets.pitchResetButton->title() == "100");
    drag(outlets.pitchSlider, -20, &QMController::pitchUpdate);
    CHECK(outlets.pitchResetButton->title() == "-20");
    controller->pitchReset();
    CHECK(controller->pitch == 0.0f);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "a loaded movie gets the pitch right after volume and balance") {
    startWithLoadedTrack();
    controller->semiToneUp();
    outlets.playList->selectRowIndex(1);
    log.take();
    controller->selectTrack();
    Events sound;
    for (const std::string& event : log.take()) {
        if (event.starts_with("set") || event.starts_with("QTSet") || event.starts_with("SetMovieAudioB")) {
            sound.push_back(event);
        }
    }
    CHECK(sound == Events{"setMuted NO", "setVolume 0.5", "setBalance 0", "setPitch 100"});
}
