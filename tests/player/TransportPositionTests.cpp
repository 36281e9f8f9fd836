#include <QTimer>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

TEST_CASE_FIXTURE(ControllerFixture, "go to start moves the movie and the slider to zero at once") {
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 30000;
    fire(controller->movieTimer.get());
    controller->goToStart();
    CHECK(log.events() == Events{"seekTo 0"});
    CHECK(outlets.cueSlider->value() == 0.0);
}

TEST_CASE_FIXTURE(ControllerFixture, "go to start without a movie leaves the slider") {
    start();
    log.take();
    outlets.cueSlider->setValue(0.5);
    controller->goToStart();
    CHECK(outlets.cueSlider->value() == 0.5);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "while the loop is on go to start moves to A in the movie's own scale and leaves the slider to the next tick") {
    engine.usual.timeScale = 44100;
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 1200;
    controller->markAUpdate();
    engine.movie()->time.timeValue = 30000;
    controller->loopSwitch();
    fire(controller->movieTimer.get());
    log.take();
    controller->goToStart();
    CHECK(log.events() == Events{"setCurrentTime 1200/44100"});
    CHECK(outlets.cueSlider->value() == 30000.0);
    fire(controller->movieTimer.get());
    CHECK(outlets.cueSlider->value() == 1200.0);
}

TEST_CASE_FIXTURE(ControllerFixture, "while the loop is on go to start uses the mark of the row selected now") {
    startWithLoadedTrack();
    controller->loopSwitch();
    controller->markAarray[1] = 777;
    outlets.playList->selectRowIndex(1);
    log.take();
    controller->goToStart();
    CHECK(log.events() == Events{"setCurrentTime 777/600"});
}

TEST_CASE_FIXTURE(ControllerFixture, "while the loop is on and no row is selected go to start does not move") {
    startWithLoadedTrack();
    controller->loopSwitch();
    outlets.playList->selectRowIndex(-1);
    log.take();
    controller->goToStart();
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "go to start leaves playing and the rate alone") {
    startWithLoadedTrack();
    controller->playBackward();
    log.take();
    controller->goToStart();
    CHECK(controller->isPlaying);
    CHECK(controller->rate == -1.0f);
    CHECK(log.events() == Events{"seekTo 0"});
}

TEST_CASE_FIXTURE(ControllerFixture, "each skip moves by its own number of seconds in the movie's scale") {
    startWithLoadedTrack();
    const std::pair<void (QMController::*)(), int> skips[] = {
        {&QMController::skip1, 1},     {&QMController::skip10, 10},   {&QMController::skip30, 30},
        {&QMController::skip60, 60},   {&QMController::skip300, 300}, {&QMController::skipBack, -1},
        {&QMController::skip_10, -10}, {&QMController::skip_60, -60}};
    for (const auto& [action, seconds] : skips) {
        CAPTURE(seconds);
        engine.movie()->time = {30000, 600, 0};
        log.take();
        (controller.get()->*action)();
        CHECK(log.events() == Events{"setCurrentTime " + std::to_string(30000 + seconds * 600) + "/600"});
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "there is no backward skip of thirty or three hundred seconds") {
    CHECK(QMController::staticMetaObject.indexOfSlot("skip_60()") >= 0);
    CHECK(QMController::staticMetaObject.indexOfSlot("skip_30()") == -1);
    CHECK(QMController::staticMetaObject.indexOfSlot("skip_300()") == -1);
}

TEST_CASE_FIXTURE(ControllerFixture, "a skip past the ends is handed to the engine as it is") {
    startWithLoadedTrack();
    engine.movie()->time = {6000, 600, 0};
    controller->skip_60();
    CHECK(log.take() == Events{"setCurrentTime -30000/600"});
    engine.movie()->time = {59000, 600, 0};
    controller->skip300();
    CHECK(log.take() == Events{"setCurrentTime 239000/600"});
}

TEST_CASE_FIXTURE(ControllerFixture, "the skipped step wraps in thirty-two bits") {
    engine.usual.timeScale = 10000000;
    startWithLoadedTrack();
    controller->skip300();
    CHECK(log.events() == Events{"setCurrentTime -1294967296/10000000"});
}

TEST_CASE_FIXTURE(ControllerFixture, "a skip does nothing without a movie or when the movie gives no time scale") {
    start();
    log.take();
    controller->skip10();
    CHECK(log.events() == Events{});

    engine.usual.givesTimeScale = false;
    startWithLoadedTrack();
    controller->skip10();
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "skips work playing or paused, loop on or off, and leave playing alone") {
    startWithLoadedTrack();
    for (const bool playing : {false, true}) {
        for (const bool looping : {false, true}) {
            CAPTURE(playing);
            CAPTURE(looping);
            controller->isPlaying = playing;
            controller->isLooping = looping;
            log.take();
            controller->skip1();
            CHECK(log.count("setCurrentTime") == 1);
            CHECK(controller->isPlaying == playing);
            CHECK(controller->isLooping == looping);
        }
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "a skip leaves the display to the next tick") {
    startWithLoadedTrack();
    fire(controller->movieTimer.get());
    controller->skip10();
    CHECK(outlets.timecode->text() == "0:00:00.00");
    CHECK(outlets.cueSlider->value() == 0.0);
    fire(controller->movieTimer.get());
    CHECK(outlets.timecode->text() == "0:00:10.00");
    CHECK(outlets.cueSlider->value() == 6000.0);
}
