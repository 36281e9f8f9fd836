#include "sound/VolumeControl.h"

#include "support/widgets/ControllerFixture.h"

using namespace qm;

TEST_CASE_FIXTURE(ControllerFixture,
                  "the gain slider sets field and title, then unmutes the movie and sets its volume") {
    startWithLoadedTrack();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + ", gain " + std::to_string(controller->gain) + ", title " +
                       outlets.gainResetButton->title().toStdString());
    };
    drag(outlets.gainSlider, 0.75, &QMController::gainUpdate);
    CHECK(seen == Events{"setMuted NO, gain 0.750000, title 0.75", "setVolume 0.75, gain 0.750000, title 0.75"});
    CHECK(outlets.gainResetButton->titleAttributes() == controller->controlColorAttributes);
}

TEST_CASE_FIXTURE(ControllerFixture, "the gain reads with two decimals") {
    start();
    const std::pair<double, const char*> titles[] = {{0.333, "0.33"}, {1.0, "1.00"}, {0.0, "0.00"}, {0.5, "0.50"}};
    for (const auto& [value, title] : titles) {
        CAPTURE(value);
        drag(outlets.gainSlider, value, &QMController::gainUpdate);
        CHECK(outlets.gainResetButton->title() == title);
    }
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the gain reset puts movie, slider and title to a half but leaves the gain for the next track") {
    startWithLoadedTrack();
    drag(outlets.gainSlider, 0.8, &QMController::gainUpdate);
    log.take();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + ", slider " + std::to_string(outlets.gainSlider->value()));
    };
    controller->gainReset();
    CHECK(seen == Events{"setMuted NO, slider 0.800000", "setVolume 0.5, slider 0.800000"});
    CHECK(outlets.gainSlider->value() == 0.5);
    CHECK(outlets.gainResetButton->title() == "0.5");
    CHECK_FALSE(outlets.gainResetButton->titleAttributes());
    CHECK(controller->gain == 0.8f);
}

TEST_CASE_FIXTURE(ControllerFixture, "the gain reset is a half whatever the stored default level is") {
    prefs.setFloat("DefaultAudioLevel", 0.8f);
    startWithLoadedTrack();
    controller->gainReset();
    CHECK(outlets.gainSlider->value() == 0.5);
    CHECK(log.count("setVolume 0.5") == 1);
}

TEST_CASE_FIXTURE(ControllerFixture, "full and no volume set field, plain title and slider and never mute or unmute") {
    startWithLoadedTrack();
    drag(outlets.gainSlider, 0.3, &QMController::gainUpdate);
    log.take();
    controller->volumeMax();
    CHECK(controller->gain == 1.0f);
    CHECK(outlets.gainResetButton->title() == "1.0");
    CHECK_FALSE(outlets.gainResetButton->titleAttributes());
    CHECK(outlets.gainSlider->value() == 1.0);
    CHECK(log.take() == Events{"setVolume 1"});
    controller->volumeMin();
    CHECK(controller->gain == 0.0f);
    CHECK(outlets.gainResetButton->title() == "0");
    CHECK(outlets.gainSlider->value() == 0.0);
    CHECK(log.take() == Events{"setVolume 0"});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "after no volume and a reset the movie plays at a half, but the next track is silent") {
    startWithLoadedTrack();
    controller->volumeMin();
    controller->gainReset();
    CHECK(log.events().back() == "setVolume 0.5");
    outlets.playList->selectRowIndex(1);
    log.take();
    controller->selectTrack();
    CHECK(log.count("setVolume 0") == 1);
    CHECK(log.count("setVolume 0.5") == 0);
}

TEST_CASE_FIXTURE(ControllerFixture, "the balance slider sets the field, then the movie, then the title") {
    startWithLoadedTrack();
    outlets.balanceResetButton->setPlainTitle("before");
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + ", title " + outlets.balanceResetButton->title().toStdString());
    };
    drag(outlets.balanceSlider, -0.5, &QMController::balanceUpdate);
    CHECK(seen == Events{"setBalance -0.5, title before"});
    CHECK(controller->balance == -0.5f);
    CHECK(outlets.balanceResetButton->title() == "L0.5");
    CHECK(outlets.balanceResetButton->titleAttributes() == controller->controlColorAttributes);
}

TEST_CASE_FIXTURE(ControllerFixture, "the balance reads R or L with two decimals cut to four characters") {
    start();
    const std::pair<double, const char*> titles[] = {{0.25, "R0.2"}, {-0.5, "L0.5"}, {0.0, "R0.0"},  {-0.04, "L0.0"},
                                                     {1.0, "R1.0"},  {-1.0, "L1.0"}, {-0.0, "R0.0"}, {0.999, "R1.0"}};
    for (const auto& [value, title] : titles) {
        CAPTURE(value);
        drag(outlets.balanceSlider, value, &QMController::balanceUpdate);
        CHECK(outlets.balanceResetButton->title() == title);
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "before the first load the balance slider changes balance and title only") {
    start();
    log.take();
    drag(outlets.balanceSlider, 0.25, &QMController::balanceUpdate);
    CHECK(log.events() == Events{});
    CHECK(controller->balance == 0.25f);
    CHECK(outlets.balanceResetButton->title() == "R0.2");
}

TEST_CASE_FIXTURE(ControllerFixture, "the balance presets set field, slider and plain title, then the movie") {
    startWithLoadedTrack();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + ", slider " + std::to_string(int(outlets.balanceSlider->value())) + ", title " +
                       outlets.balanceResetButton->title().toStdString());
    };
    controller->balanceLeftMax();
    CHECK(controller->balance == -1.0f);
    controller->balanceRightMax();
    CHECK(controller->balance == 1.0f);
    controller->balanceReset();
    CHECK(controller->balance == 0.0f);
    CHECK_FALSE(outlets.balanceResetButton->titleAttributes());
    CHECK(seen == Events{"setBalance -1, slider -1, title -1", "setBalance 1, slider 1, title 1.0",
                         "setBalance 0, slider 0, title 0"});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "without a movie the balance presets set field, slider and title and leave the engine alone") {
    start();
    log.take();
    struct Preset {
        void (QMController::*action)();
        float balance;
        const char* title;
    };
    for (const Preset& preset :
         {Preset{&QMController::balanceLeftMax, -1, "-1"}, Preset{&QMController::balanceRightMax, 1, "1.0"},
          Preset{&QMController::balanceReset, 0, "0"}}) {
        (controller.get()->*preset.action)();
        CHECK(controller->balance == preset.balance);
        CHECK(outlets.balanceSlider->value() == preset.balance);
        CHECK(outlets.balanceResetButton->title() == preset.title);
    }
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "fully left by hand reads L1.0 and by the button -1") {
    start();
    drag(outlets.balanceSlider, -1, &QMController::balanceUpdate);
    CHECK(outlets.balanceResetButton->title() == "L1.0");
    controller->balanceLeftMax();
    CHECK(outlets.balanceResetButton->title() == "-1");
}

TEST_CASE_FIXTURE(ControllerFixture, "a plain title drops the style of the value title before it") {
    start();
    drag(outlets.gainSlider, 0.2, &QMController::gainUpdate);
    REQUIRE(outlets.gainResetButton->titleAttributes());
    controller->gainReset();
    CHECK_FALSE(outlets.gainResetButton->titleAttributes());
    drag(outlets.balanceSlider, 0.2, &QMController::balanceUpdate);
    REQUIRE(outlets.balanceResetButton->titleAttributes());
    controller->balanceRightMax();
    CHECK_FALSE(outlets.balanceResetButton->titleAttributes());
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "resetting the whole sound resets gain, bass, treble, balance, speed and pitch in this order") {
    startWithLoadedTrack();
    drag(outlets.gainSlider, 0.8, &QMController::gainUpdate);
    drag(outlets.speedSlider, -2, &QMController::speedUpdate);
    controller->bassMax();
    controller->trebleMin();
    controller->balanceLeftMax();
    controller->semiToneUp();
    controller->playBackward();
    log.take();
    controller->resetAudio();
    CHECK(log.events() == Events{"setMuted NO", "setVolume 0.5", "setTone track 0 128 0", "setTone track 0 128 128",
                                 "setBalance 0", "setRate 1", "setPitch 0"});
    CHECK(controller->gain == 0.8f);
    CHECK(outlets.gainSlider->value() == 0.5);
    CHECK(controller->bass == 128);
    CHECK(controller->treble == 128);
    CHECK(controller->balance == 0.0f);
    CHECK(controller->rate == 1.0f);
    CHECK(controller->pitch == 0.0f);
    CHECK(controller->isPlaying);
}

TEST_CASE_FIXTURE(ControllerFixture, "gain and balance survive a change of tracks and reach each of them") {
    startWithLoadedTrack();
    drag(outlets.gainSlider, 0.25, &QMController::gainUpdate);
    drag(outlets.balanceSlider, 0.75, &QMController::balanceUpdate);
    for (const int row : {1, 0}) {
        outlets.playList->selectRowIndex(row);
        log.take();
        controller->selectTrack();
        CHECK(log.count("setMuted NO") == 1);
        CHECK(log.count("setVolume 0.25") == 1);
        CHECK(log.count("setBalance 0.75") == 1);
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "without a movie the gain actions change value, slider and title only") {
    start();
    log.take();
    drag(outlets.gainSlider, 0.25, &QMController::gainUpdate);
    CHECK(controller->gain == 0.25f);
    controller->volumeMax();
    CHECK(controller->gain == 1.0f);
    CHECK(outlets.gainSlider->value() == 1.0);
    controller->volumeMin();
    controller->gainReset();
    CHECK(controller->gain == 0.0f);
    CHECK(outlets.gainResetButton->title() == "0.5");
    CHECK(log.events() == Events{});
}
