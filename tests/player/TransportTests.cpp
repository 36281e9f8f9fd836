#include "player/Transport.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QTimer>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

const Events kForwardImages = {"db_Play_F_on.png", "db_Pause_off.png", "db_Play_R_off.png"};
const Events kBackwardImages = {"db_Play_F_off.png", "db_Pause_off.png", "db_Play_R_on.png"};
const Events kPauseImages = {"db_Play_F_off.png", "db_Pause_on.png", "db_Play_R_off.png"};

}  // namespace

TEST_CASE_FIXTURE(ControllerFixture, "play forward, play backward and pause each show their images") {
    startWithLoadedTrack();
    controller->playForward();
    CHECK(transportImages() == kForwardImages);
    controller->playBackward();
    CHECK(transportImages() == kBackwardImages);
    controller->pause();
    CHECK(transportImages() == kPauseImages);
}

TEST_CASE_FIXTURE(ControllerFixture, "play forward while playing pauses") {
    startWithLoadedTrack();
    controller->playForward();
    log.take();
    controller->playForward();
    CHECK_FALSE(controller->isPlaying);
    CHECK(log.events() == Events{"stop"});
    CHECK(transportImages() == kPauseImages);
}

TEST_CASE_FIXTURE(ControllerFixture, "play without a selected row does nothing even when a movie is open") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(-1);
    const Events before = everything();
    controller->playForward();
    controller->playBackward();
    CHECK(everything() == before);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "play with neither a track nor a row does nothing") {
    start();
    log.take();
    const Events before = everything();
    controller->playForward();
    controller->playBackward();
    CHECK(everything() == before);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "play forward loads a selected row that is not the last one chosen, and plays it") {
    startWithRows({"/music/one.wav", "/music/two.wav"});
    outlets.playList->selectRowIndex(1);
    controller->playForward();
    CHECK(log.count("open /music/two.wav") == 1);
    CHECK(controller->mostRecentlySelected == 1);
    CHECK(controller->isPlaying);
    outlets.playList->selectRowIndex(0);
    controller->playBackward();
    CHECK(log.count("open /music/one.wav") == 1);
    CHECK(controller->mostRecentlySelected == 0);
}

TEST_CASE_FIXTURE(ControllerFixture, "play, pause and play again open the file once") {
    startWithRows({"/music/one.wav"});
    outlets.playList->selectRowIndex(0);
    controller->playForward();
    controller->pause();
    controller->playForward();
    CHECK(log.count("open") == 1);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a row that cannot be opened is not played, and a second press does not try again") {
    engine.unreadable = {"/music/gone.wav"};
    startWithRows({"/music/gone.wav"});
    outlets.playList->selectRowIndex(0);
    const Events images = transportImages();
    controller->playForward();
    CHECK_FALSE(controller->isPlaying);
    CHECK(controller->qtMovie == nullptr);
    CHECK(controller->mostRecentlySelected == 0);
    CHECK(transportImages() == images);
    controller->playForward();
    controller->playBackward();
    CHECK(log.count("open") == 1);
    CHECK_FALSE(controller->isPlaying);
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "play forward sets the flag, plays, flips the sign, shows the images, then sets the rate and the slider's range") {
    startWithLoadedTrack();
    controller->rate = -0.5f;
    outlets.cueSlider->setRange(0, 1);
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + (controller->isPlaying ? ", playing" : ", not playing") + ", rate " +
                       std::to_string(controller->rate) + ", title " + outlets.speedResetButton->title().toStdString() +
                       ", " + transportImages()[0] + ", maximum " + std::to_string(int(outlets.cueSlider->maximum())));
    };
    controller->playForward();
    CHECK(seen == Events{"play, playing, rate -0.500000, title 1.0, db_Play_F_off.png, maximum 1",
                         "setRate 0.5, playing, rate 0.500000, title 0.500000.2, db_Play_F_on.png, maximum 1"});
    CHECK(outlets.cueSlider->minimum() == 0.0);
    CHECK(outlets.cueSlider->maximum() == 60000.0);
}

TEST_CASE_FIXTURE(ControllerFixture, "play forward at a backward rate plays forward at the same speed and shows it") {
    startWithLoadedTrack();
    controller->rate = -0.5f;
    controller->playForward();
    CHECK(controller->rate == 0.5f);
    CHECK(outlets.speedSlider->value() == 0.5);
    CHECK(outlets.speedResetButton->title() == "0.500000.2");
    CHECK(outlets.speedResetButton->titleAttributes() == controller->controlColorAttributes);
    CHECK(log.events() == Events{"play", "setRate 0.5"});
}

TEST_CASE_FIXTURE(ControllerFixture, "play forward keeps a cue timer that runs and starts one when it has stopped") {
    startWithLoadedTrack();
    const QPointer<QTimer> running = controller->movieTimer.get();
    controller->playForward();
    CHECK(controller->movieTimer.get() == running.data());
    controller->pause();
    controller->movieTimer->stop();
    controller->playForward();
    CHECK(running.isNull());
    CHECK(controller->movieTimer->isActive());
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "play forward refreshes the track's information, also unseen, and play backward does not") {
    startWithLoadedTrack();
    outlets.movieName->setText("as before");
    controller->playBackward();
    CHECK(outlets.movieName->text() == "as before");
    controller->pause();
    controller->playForward();
    CHECK(outlets.movieName->text() == "/music/one.wav");
}

TEST_CASE_FIXTURE(ControllerFixture, "play backward while playing forward reverses without a pause") {
    startWithLoadedTrack();
    controller->playForward();
    log.take();
    controller->playBackward();
    CHECK(log.events() == Events{"play", "setRate -1"});
    CHECK(controller->rate == -1.0f);
    CHECK(outlets.speedSlider->value() == -1.0);
    CHECK(outlets.speedResetButton->title() == "-1.000000.2");
    CHECK(outlets.speedResetButton->titleAttributes() == controller->controlColorAttributes);
}

TEST_CASE_FIXTURE(ControllerFixture, "play backward while playing backward goes on and restarts the clock") {
    startWithLoadedTrack();
    controller->playBackward();
    const QPointer<QTimer> first = controller->movieTimer.get();
    log.take();
    controller->playBackward();
    CHECK(controller->isPlaying);
    CHECK(log.events() == Events{"play", "setRate -1"});
    CHECK(first.isNull());
    CHECK(controller->movieTimer->isActive());
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a rate of zero keeps its sign in both directions: the movie stands still and the play images show") {
    startWithLoadedTrack();
    drag(outlets.speedSlider, 0, &QMController::speedUpdate);
    log.take();
    controller->playForward();
    CHECK(log.take() == Events{"play", "setRate 0"});
    CHECK(transportImages() == kForwardImages);
    controller->playBackward();
    CHECK(log.take() == Events{"play", "setRate 0"});
    CHECK(transportImages() == kBackwardImages);
    CHECK(controller->rate == 0.0f);
}

TEST_CASE_FIXTURE(ControllerFixture, "pause does nothing without a movie or when not playing") {
    start();
    log.take();
    Events before = everything();
    controller->pause();
    CHECK(everything() == before);

    startWithLoadedTrack();
    before = everything();
    controller->pause();
    CHECK(everything() == before);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "pause clears the flag, stops the movie, then shows the images and empties the level read-outs") {
    startWithLoadedTrack();
    controller->playForward();
    outlets.audioLevelLeft->setText("-12.0");
    outlets.audioLevelRight->setText("-13.0");
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + (controller->isPlaying ? ", playing, " : ", not playing, ") + transportImages()[1] +
                       ", " + outlets.audioLevelLeft->text().toStdString());
    };
    controller->pause();
    CHECK(seen == Events{"stop, not playing, db_Pause_off.png, -12.0"});
    CHECK(transportImages() == kPauseImages);
    CHECK(outlets.audioLevelLeft->text() == "dB");
    CHECK(outlets.audioLevelRight->text() == "dB");
}

TEST_CASE_FIXTURE(ControllerFixture, "the start-stop toggle plays, then pauses") {
    startWithLoadedTrack();
    controller->toggleStartStop();
    CHECK(controller->isPlaying);
    controller->toggleStartStop();
    CHECK_FALSE(controller->isPlaying);
    CHECK(log.events() == Events{"play", "setRate 1", "stop"});
}

TEST_CASE_FIXTURE(ControllerFixture, "at the end of the movie the next play forward pauses and the one after plays") {
    startWithLoadedTrack();
    controller->playForward();
    engine.movie()->done = true;
    fire(controller->movieTimer.get());
    log.take();
    controller->playForward();
    CHECK(log.take() == Events{"stop"});
    controller->playForward();
    CHECK(log.take() == Events{"play", "setRate 1"});
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "after a double-click on a row that cannot be opened the flag says playing: pause does nothing, play only pauses") {
    engine.unreadable = {"/music/gone.wav"};
    startWithRows({"/music/gone.wav"});
    outlets.playList->selectRowIndex(0);
    controller->rowDoubleClicked();
    REQUIRE(controller->isPlaying);
    log.take();
    const Events before = everything();
    controller->pause();
    controller->playForward();
    CHECK(everything() == before);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "before the first load no transport, loop or mark action has an effect") {
    start();
    log.take();
    const Events before = everything();
    for (const auto action :
         {&QMController::playForward, &QMController::playBackward, &QMController::toggleStartStop, &QMController::pause,
          &QMController::goToStart, &QMController::skip1, &QMController::skip10, &QMController::skip30,
          &QMController::skip60, &QMController::skip300, &QMController::skipBack, &QMController::skip_10,
          &QMController::skip_60, &QMController::loopSwitch, &QMController::markAUpdate, &QMController::markBUpdate,
          &QMController::resetMarks}) {
        (controller.get()->*action)();
    }
    CHECK(everything() == before);
    CHECK(log.events() == Events{});
    CHECK(QApplication::activeModalWidget() == nullptr);
}

TEST_CASE_FIXTURE(ControllerFixture, "an engine that fails every call changes nothing of what the actions do") {
    startWithLoadedTrack();
    controller->quickTimeMovie = 0;
    controller->playForward();
    CHECK(controller->isPlaying);
    CHECK(transportImages() == kForwardImages);
    controller->speedUp();
    controller->semiToneUp();
    controller->balanceLeftMax();
    controller->bassMax();
    CHECK(controller->rate == 1.05f);
    CHECK(controller->pitch == 100.0f);
    CHECK(controller->balance == -1.0f);
    CHECK(controller->bassArray[0] == 256);
}
