#include "player/AbLoop.h"

#include <QPointer>
#include <QTimer>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

TEST_CASE_FIXTURE(ControllerFixture,
                  "marks at two and five seconds give a selection of three seconds and show as short times") {
    engine.usual.timeScale = 44100;
    engine.usual.duration = 4410000;
    startWithRows({});
    addRow("/music/one.wav", 4410000, 44100);
    outlets.playList->selectRowIndex(0);
    controller->selectTrack();
    engine.movie()->time.timeValue = 88200;
    controller->markAUpdate();
    engine.movie()->time.timeValue = 220500;
    controller->markBUpdate();
    log.take();
    controller->loopSwitch();
    CHECK(log.events() ==
          Events{"setSelection 88200/44100 + 132300/44100", "setLoops YES", "setPlaysSelectionOnly YES"});
    CHECK(outlets.loopIn->text() == "00:00:02");
    CHECK(outlets.loopOut->text() == "00:00:05");
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "switching the loop on flips the flag first, arms the engine, then shows the image, the clock and the fields") {
    startWithLoadedTrack();
    controller->markBarray[0] = 30000;
    const QPointer<QTimer> timer = controller->movieTimer.get();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + (controller->isLooping ? ", on, " : ", off, ") +
                       outlets.loopButton->imageName().toStdString() + ", " + outlets.loopOut->text().toStdString() +
                       (timer ? ", same clock" : ", new clock"));
    };
    controller->loopSwitch();
    const std::string before = ", on, db_loop_off.png, 00:00:00, same clock";
    CHECK(seen == Events{"setSelection 0/600 + 30000/600" + before, "setLoops YES" + before,
                         "setPlaysSelectionOnly YES" + before});
    CHECK(outlets.loopButton->imageName() == "db_loop_on.png");
    CHECK(timer.isNull());
    CHECK(controller->movieTimer->isActive());
    CHECK(outlets.loopOut->text() == "00:00:50");
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "switching the loop off forgets that B was set, takes loop and selection-only off the engine and "
                  "leaves the selection") {
    startWithLoadedTrack();
    controller->markBUpdate();
    controller->loopSwitch();
    log.take();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + (controller->markBset ? ", B set, " : ", B not set, ") +
                       outlets.loopButton->imageName().toStdString());
    };
    controller->loopSwitch();
    CHECK(seen ==
          Events{"setLoops NO, B not set, db_loop_on.png", "setPlaysSelectionOnly NO, B not set, db_loop_on.png"});
    CHECK_FALSE(controller->isLooping);
    CHECK(outlets.loopButton->imageName() == "db_loop_off.png");
}

TEST_CASE_FIXTURE(ControllerFixture, "after the loop is switched off the position slider seeks again") {
    startWithLoadedTrack();
    controller->markBUpdate();
    controller->loopSwitch();
    controller->loopSwitch();
    log.take();
    drag(outlets.cueSlider, 100, &QMController::cueUpdate);
    CHECK(log.events() == Events{"seekTo 100"});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the loop switched on without a row only flips the flag, and the next press switches it off") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(-1);
    outlets.loopIn->setText("as before");
    controller->loopSwitch();
    CHECK(controller->isLooping);
    CHECK(log.events() == Events{});
    CHECK(outlets.loopButton->imageName() == "db_loop_off.png");
    CHECK(outlets.loopIn->text() == "as before");
    controller->loopSwitch();
    CHECK_FALSE(controller->isLooping);
    CHECK(log.events() == Events{"setLoops NO", "setPlaysSelectionOnly NO"});
}

TEST_CASE_FIXTURE(ControllerFixture, "B before A and B equal to A are handed to the engine as they are") {
    startWithLoadedTrack();
    controller->markAarray[0] = 3000;
    controller->markBarray[0] = 1000;
    controller->loopSwitch();
    CHECK(log.take()[0] == "setSelection 3000/600 + -2000/600");
    controller->loopSwitch();
    log.take();
    controller->markBarray[0] = 3000;
    controller->loopSwitch();
    CHECK(log.take()[0] == "setSelection 3000/600 + 0/600");
}

TEST_CASE_FIXTURE(ControllerFixture, "a mark without a movie or without a row changes nothing") {
    startWithRows({"/music/one.wav"});
    outlets.playList->selectRowIndex(0);
    Events before = everything();
    controller->markAUpdate();
    controller->markBUpdate();
    CHECK(everything() == before);

    startWithLoadedTrack();
    engine.movie()->time.timeValue = 100;
    outlets.playList->selectRowIndex(-1);
    before = everything();
    controller->markAUpdate();
    controller->markBUpdate();
    CHECK(everything() == before);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a mark stores the current time in the selected row, shows its image and the loop fields") {
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 1200;
    controller->markAUpdate();
    CHECK(controller->markAarray[0] == 1200);
    CHECK(controller->markBarray[0] == 60000);
    CHECK_FALSE(controller->markBset);
    CHECK(outlets.markAButton->imageName() == "db_set_in_on.png");
    CHECK(outlets.markBButton->imageName() == "db_set_out_off.png");
    CHECK(outlets.loopIn->text() == "00:00:02");

    engine.movie()->time.timeValue = 6000;
    controller->markBUpdate();
    CHECK(controller->markBarray[0] == 6000);
    CHECK(controller->markBset);
    CHECK(outlets.markBButton->imageName() == "db_set_out_on.png");
    CHECK(outlets.loopOut->text() == "00:00:10");
    CHECK(controller->markAarray[1] == 0);
    CHECK(controller->markBarray[1] == 60000);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "a mark keeps the movie's count of units whatever the row's scale") {
    engine.usual.timeScale = 44100;
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 44100;
    controller->markAUpdate();
    CHECK(controller->timescaleArray[0] == 600);
    CHECK(controller->markAarray[0] == 44100);
    CHECK(outlets.loopIn->text() == "00:01:13");
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a mark set while the loop is on gives the engine the new range at once and keeps the loop on") {
    startWithLoadedTrack();
    controller->loopSwitch();
    log.take();
    engine.movie()->time.timeValue = 30000;
    controller->markBUpdate();
    CHECK(log.take() == Events{"setSelection 0/600 + 30000/600", "setLoops YES", "setPlaysSelectionOnly YES"});
    CHECK(controller->isLooping);
    CHECK(controller->markBset);
    CHECK(outlets.loopButton->imageName() == "db_loop_on.png");
    engine.movie()->time.timeValue = 600;
    controller->markAUpdate();
    CHECK(log.take() == Events{"setSelection 600/600 + 29400/600", "setLoops YES", "setPlaysSelectionOnly YES"});
    CHECK(controller->markBset);
}

TEST_CASE_FIXTURE(ControllerFixture, "B counts as set before the loop is armed again") {
    startWithLoadedTrack();
    controller->loopSwitch();
    bool setWhenArmed = false;
    log.atEvent = [&](const std::string& event) {
        if (event.starts_with("setSelection")) setWhenArmed = controller->markBset;
    };
    controller->markBUpdate();
    CHECK(setWhenArmed);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "resetting the marks clears both stored times even without a movie, and then stops") {
    startWithRows({"/music/one.wav"});
    outlets.playList->selectRowIndex(0);
    controller->timeA = {1, 2, 1};
    controller->timeB = {3, 4, 1};
    controller->markBset = true;
    controller->markAarray[0] = 5;
    controller->resetMarks();
    CHECK(controller->timeA == QTTime{});
    CHECK(controller->timeB == QTTime{});
    CHECK(controller->markBset);
    CHECK(controller->markAarray[0] == 5);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "resetting the marks puts A to zero and B to the movie's duration and shows it") {
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 600;
    controller->markAUpdate();
    controller->markBUpdate();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + (controller->markBset ? ", B set, " : ", B not set, ") +
                       std::to_string(controller->markAarray[0]) + ", " +
                       outlets.markAButton->imageName().toStdString());
    };
    engine.movie()->script.duration = 54000;
    controller->resetMarks();
    CHECK(seen == Events{"setPlaysSelectionOnly NO, B not set, 600, db_set_in_on.png"});
    CHECK(controller->markAarray[0] == 0);
    CHECK(controller->markBarray[0] == 54000);
    CHECK(outlets.markAButton->imageName() == "db_set_in_off.png");
    CHECK(outlets.markBButton->imageName() == "db_set_out_off.png");
    CHECK(outlets.loopIn->text() == "00:00:00");
    CHECK(outlets.loopOut->text() == "00:01:30");
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "resetting the marks leaves a loop on: the flag, the button and the engine's loop stay") {
    startWithLoadedTrack();
    controller->loopSwitch();
    log.take();
    controller->resetMarks();
    CHECK(controller->isLooping);
    CHECK(outlets.loopButton->imageName() == "db_loop_on.png");
    CHECK(log.events() == Events{"setPlaysSelectionOnly NO"});
}

TEST_CASE_FIXTURE(ControllerFixture, "resetting the marks without a row ends after the engine was told") {
    startWithLoadedTrack();
    controller->markAUpdate();
    controller->markBUpdate();
    outlets.playList->selectRowIndex(-1);
    controller->resetMarks();
    CHECK_FALSE(controller->markBset);
    CHECK(log.events() == Events{"setPlaysSelectionOnly NO"});
    CHECK(outlets.markAButton->imageName() == "db_set_in_on.png");
    CHECK(outlets.markBButton->imageName() == "db_set_out_on.png");
}

TEST_CASE_FIXTURE(ControllerFixture, "a negative duration of the movie is stored with its sign as B") {
    startWithLoadedTrack();
    engine.movie()->script.duration = -5;
    controller->resetMarks();
    CHECK(controller->markBarray[0] == -5);
}

TEST_CASE_FIXTURE(ControllerFixture, "showing the loop fields makes both visible") {
    startWithLoadedTrack();
    outlets.loopIn->hide();
    outlets.loopOut->hide();
    controller->markAUpdate();
    CHECK_FALSE(outlets.loopIn->isHidden());
    CHECK_FALSE(outlets.loopOut->isHidden());
}

TEST_CASE_FIXTURE(ControllerFixture, "the loop fields stay as they are without a selected row") {
    startWithLoadedTrack();
    controller->loopSwitch();
    outlets.loopIn->setText("as before");
    outlets.playList->selectRowIndex(-1);
    controller->loopSwitch();
    CHECK(outlets.loopIn->text() == "as before");
}

TEST_CASE_FIXTURE(ControllerFixture, "the marks of a row stay while another one is chosen") {
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 1200;
    controller->markAUpdate();
    outlets.playList->selectRowIndex(1);
    controller->selectTrack();
    outlets.playList->selectRowIndex(0);
    controller->selectTrack();
    CHECK(controller->markAarray[0] == 1200);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the loop takes marks and scale of the row selected now, also when another track is loaded") {
    startWithLoadedTrack();
    addRow("/music/three.wav", 88200, 44100);
    controller->markAarray[2] = 44100;
    outlets.playList->selectRowIndex(2);
    log.take();
    controller->loopSwitch();
    CHECK(log.take()[0] == "setSelection 44100/44100 + 44100/44100");
}

TEST_CASE_FIXTURE(ControllerFixture, "a mark keeps the selected row selected") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(1);
    controller->markAUpdate();
    CHECK(outlets.playList->selectedRow() == 1);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "after a double-click on another row B still counts as set, so that the next loop locks the slider") {
    startWithLoadedTrack();
    controller->markBUpdate();
    controller->loopSwitch();
    outlets.playList->selectRowIndex(1);
    controller->rowDoubleClicked();
    CHECK_FALSE(controller->isLooping);
    CHECK(controller->markBset);
    controller->loopSwitch();
    log.take();
    drag(outlets.cueSlider, 100, &QMController::cueUpdate);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "playing another row while looping keeps flag and image, gives the new movie no range, and goes to its A") {
    startWithLoadedTrack();
    controller->loopSwitch();
    controller->markAarray[1] = 1200;
    outlets.playList->selectRowIndex(1);
    log.take();
    controller->playForward();
    CHECK(controller->isLooping);
    CHECK(outlets.loopButton->imageName() == "db_loop_on.png");
    CHECK(log.count("open /music/two.wav") == 1);
    CHECK(log.count("setSelection") == 0);
    CHECK(log.count("setLoops") == 0);
    log.take();
    controller->goToStart();
    CHECK(log.events() == Events{"setCurrentTime 1200/600"});
}
