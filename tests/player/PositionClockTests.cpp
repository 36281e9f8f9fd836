#include "player/PositionClock.h"

#include <QPointer>
#include <QTimer>
#include <functional>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

TEST_CASE_FIXTURE(ControllerFixture, "the cue timer repeats every tenth of a second") {
    startWithLoadedTrack();
    REQUIRE(controller->movieTimer);
    CHECK(controller->movieTimer->isActive());
    CHECK(controller->movieTimer->interval() == 100);
    CHECK_FALSE(controller->movieTimer->isSingleShot());
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "starting the cue timer again replaces the running one, so that there is only one") {
    startWithLoadedTrack();
    const QPointer<QTimer> first = controller->movieTimer.get();
    controller->speedUp();
    CHECK(first.isNull());
    const QPointer<QTimer> second = controller->movieTimer.get();
    controller->speedUp();
    CHECK(second.isNull());
    CHECK(controller->movieTimer->isActive());
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a tick moves the slider to the movie's time and writes elapsed and remaining time") {
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 50070;
    fire(controller->movieTimer.get());
    CHECK(outlets.cueSlider->value() == 50070.0);
    CHECK(outlets.timecode->text() == "0:01:23.45");
    CHECK(outlets.timeRemaining->text() == "00:00:16");
}

TEST_CASE_FIXTURE(ControllerFixture, "a tick without a movie changes nothing") {
    startWithLoadedTrack();
    controller->qtMovie.reset();
    const Events before = everything();
    fire(controller->movieTimer.get());
    CHECK(everything() == before);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the tick that finds the movie done stops the clock but still shows the current time") {
    startWithLoadedTrack();
    engine.movie()->done = true;
    engine.movie()->time.timeValue = 59999;
    fire(controller->movieTimer.get());
    CHECK_FALSE(controller->movieTimer->isActive());
    CHECK(outlets.cueSlider->value() == 59999.0);
    CHECK(outlets.timecode->text() == "0:01:39.99");
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "at the forward end the slider is at the duration, nothing remains and playing is still shown") {
    startWithLoadedTrack();
    controller->playForward();
    engine.movie()->done = true;
    engine.movie()->time.timeValue = 60000;
    fire(controller->movieTimer.get());
    CHECK(outlets.cueSlider->value() == 60000.0);
    CHECK(outlets.timeRemaining->text() == "00:00:00");
    CHECK_FALSE(controller->movieTimer->isActive());
    CHECK(controller->isPlaying);
    CHECK(transportImages() == Events{"db_Play_F_on.png", "db_Pause_off.png", "db_Play_R_off.png"});
}

TEST_CASE_FIXTURE(ControllerFixture, "at the backward end the clock stops with the slider at the start") {
    startWithLoadedTrack();
    controller->playBackward();
    engine.movie()->done = true;
    fire(controller->movieTimer.get());
    CHECK(outlets.cueSlider->value() == 0.0);
    CHECK_FALSE(controller->movieTimer->isActive());
}

TEST_CASE_FIXTURE(ControllerFixture, "after the end a speed action starts the clock again and the next tick stops it") {
    startWithLoadedTrack();
    engine.movie()->done = true;
    fire(controller->movieTimer.get());
    REQUIRE_FALSE(controller->movieTimer->isActive());
    controller->speedDown();
    CHECK(controller->movieTimer->isActive());
    fire(controller->movieTimer.get());
    CHECK_FALSE(controller->movieTimer->isActive());
}

TEST_CASE_FIXTURE(ControllerFixture, "the clock never seeks, also not behind B") {
    startWithLoadedTrack();
    controller->markBUpdate();
    controller->loopSwitch();
    log.take();
    engine.movie()->time.timeValue = 30000;
    fire(controller->movieTimer.get());
    CHECK(log.events() == Events{});
    CHECK(outlets.cueSlider->value() == 30000.0);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a tick leaves a slider that the user holds under the hand but goes on with the times") {
    startWithLoadedTrack();
    pressKnob(outlets.cueSlider);
    REQUIRE(outlets.cueSlider->isHeld());
    engine.movie()->time.timeValue = 6000;
    fire(controller->movieTimer.get());
    CHECK(outlets.cueSlider->value() == 0.0);
    CHECK(outlets.timecode->text() == "0:00:10.00");
    releaseKnob(outlets.cueSlider);
    fire(controller->movieTimer.get());
    CHECK(outlets.cueSlider->value() == 6000.0);
}

TEST_CASE_FIXTURE(ControllerFixture, "a time without a text leaves both time fields as they are") {
    startWithLoadedTrack();
    engine.movie()->time = {6000, 600, 0};
    fire(controller->movieTimer.get());
    engine.movie()->time = {12000, 600, kQTTimeIsIndefinite};
    fire(controller->movieTimer.get());
    CHECK(outlets.timecode->text() == "0:00:10.00");
    CHECK(outlets.timeRemaining->text() == "00:01:30");
}

TEST_CASE_FIXTURE(ControllerFixture, "moving the position slider before a track is loaded puts it back to zero") {
    start();
    log.take();
    drag(outlets.cueSlider, 0.5, &QMController::cueUpdate);
    CHECK(outlets.cueSlider->value() == 0.0);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the position slider seeks to its value cut to a whole unit and refreshes the times at once") {
    startWithLoadedTrack();
    drag(outlets.cueSlider, 1234.9, &QMController::cueUpdate);
    CHECK(log.events() == Events{"seekTo 1234"});
    CHECK(outlets.timecode->text() == "0:00:02.05");
    CHECK(outlets.timeRemaining->text() == "00:01:37");
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "while a loop with a set B is on the slider does not seek and the next tick puts it back") {
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 9000;
    controller->markBUpdate();
    controller->loopSwitch();
    log.take();
    drag(outlets.cueSlider, 40000, &QMController::cueUpdate);
    CHECK(log.events() == Events{});
    fire(controller->movieTimer.get());
    CHECK(outlets.cueSlider->value() == 9000.0);
}

TEST_CASE_FIXTURE(ControllerFixture, "a loop whose B was never set lets the slider seek") {
    startWithLoadedTrack();
    controller->markAUpdate();
    controller->loopSwitch();
    log.take();
    drag(outlets.cueSlider, 40000, &QMController::cueUpdate);
    CHECK(log.events() == Events{"seekTo 40000"});
}

TEST_CASE_FIXTURE(ControllerFixture, "a B that was set does not stop the slider while the loop is off") {
    startWithLoadedTrack();
    controller->markBUpdate();
    drag(outlets.cueSlider, 40000, &QMController::cueUpdate);
    CHECK(log.count("seekTo 40000") == 1);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a load gives the position slider the movie's duration as its range and puts it at the start") {
    engine.usual.duration = 2147483647;
    startWithLoadedTrack();
    CHECK(outlets.cueSlider->minimum() == 0.0);
    CHECK(outlets.cueSlider->maximum() == 2147483647.0);
    CHECK(outlets.cueSlider->value() == 0.0);
}

TEST_CASE_FIXTURE(ControllerFixture, "the cue timer and the time fields go on while paused") {
    startWithLoadedTrack();
    controller->playForward();
    controller->pause();
    REQUIRE(controller->movieTimer->isActive());
    engine.movie()->time.timeValue = 6000;
    fire(controller->movieTimer.get());
    CHECK(outlets.timecode->text() == "0:00:10.00");
}

TEST_CASE_FIXTURE(ControllerFixture, "after the end everything that moves the track starts the clock again") {
    startWithLoadedTrack();
    const auto seek = [this] { drag(outlets.cueSlider, 1200, &QMController::cueUpdate); };
    const std::pair<const char*, std::function<void()>> moves[] = {{"go to start", [this] { controller->goToStart(); }},
                                                                   {"skip back", [this] { controller->skip_10(); }},
                                                                   {"skip", [this] { controller->skip1(); }},
                                                                   {"seek", seek}};
    for (const auto& [name, move] : moves) {
        CAPTURE(name);
        controller->playForward();
        engine.movie()->time.timeValue = 60000;
        engine.movie()->done = true;
        fire(controller->movieTimer.get());
        REQUIRE_FALSE(controller->movieTimer->isActive());
        engine.movie()->done = false;
        move();
        REQUIRE(controller->movieTimer->isActive());
        engine.movie()->time.timeValue = 3000;
        fire(controller->movieTimer.get());
        CHECK(outlets.cueSlider->value() == 3000.0);
        CHECK(outlets.timecode->text() == "0:00:05.00");
        controller->pause();
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "moving a track while the clock goes leaves its beat alone") {
    startWithLoadedTrack();
    const QTimer* timer = controller->movieTimer.get();
    controller->goToStart();
    controller->skip1();
    drag(outlets.cueSlider, 1200, &QMController::cueUpdate);
    CHECK(controller->movieTimer.get() == timer);
}

TEST_CASE_FIXTURE(ControllerFixture, "after the end a refused drag is put back by the next tick") {
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 9000;
    controller->markBUpdate();
    controller->loopSwitch();
    engine.movie()->done = true;
    fire(controller->movieTimer.get());
    REQUIRE_FALSE(controller->movieTimer->isActive());
    log.take();
    drag(outlets.cueSlider, 40000, &QMController::cueUpdate);
    CHECK(log.events() == Events{});
    REQUIRE(controller->movieTimer->isActive());
    fire(controller->movieTimer.get());
    CHECK(outlets.cueSlider->value() == 9000.0);
}

TEST_CASE_FIXTURE(ControllerFixture, "while the loop is on go to start wakes the clock, too") {
    startWithLoadedTrack();
    controller->loopSwitch();
    controller->movieTimer->stop();
    controller->goToStart();
    CHECK(controller->movieTimer->isActive());
}
