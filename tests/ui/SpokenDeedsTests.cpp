#include <doctest/doctest.h>

#include "support/widgets/Actions.h"
#include "support/widgets/LivingWindow.h"
#include "support/widgets/TestText.h"
#include "ui/ReadableForms.h"
#include "ui/windows/SpokenDeeds.h"

using namespace qm;

namespace {

struct SpeakingWindow : LivingWindow {
    SpokenDeeds deeds{window.actions(), controller, controller.abLoop(), outlets, controller.notices()};
    QString told;

    SpeakingWindow() {
        QObject::connect(&controller.notices(), &Notices::told, &window,
                         [this](const Notice& notice) { told = notice.text; });
    }
    QString after(const char* slot) {
        told.clear();
        window.actions().send(idOf(slot));
        return told;
    }
    QString afterMoving(Slider* slider) {
        told.clear();
        slider->moveByUser(slider->maximum() * 0.8);
        return told;
    }
    QString markAt(const char* slot, int seconds) {
        fixture.engine.movie()->time.timeValue = seconds * 600;
        return after(slot);
    }
};

}  // namespace

TEST_CASE("marks and loop are told in words") {
    SpeakingWindow w;
    w.loadTrack();
    CHECK(w.after("loopSwitch") == "Loop over the whole track");
    CHECK(w.after("loopSwitch") == "Loop off");
    CHECK(w.markAt("markAUpdate", 1) == "A at 1 second");
    CHECK(w.markAt("markBUpdate", 72) == "B at 1 minute 12 seconds");
    CHECK(w.after("loopSwitch") == "Loop from 1 second to 1 minute 12 seconds");
    CHECK(w.after("resetMarks") == "A at the start, B at the end");
}

TEST_CASE("with B before A the loop is told as it is played") {
    SpeakingWindow w;
    w.loadTrack();
    w.markAt("markAUpdate", 50);
    w.markAt("markBUpdate", 20);
    CHECK(w.after("loopSwitch") == "Loop from 20 seconds to 50 seconds");
}

TEST_CASE("a mark or a loop that comes to nothing says why") {
    SpeakingWindow w;
    for (const char* slot : {"markAUpdate", "markBUpdate", "loopSwitch", "resetMarks"})
        CHECK(w.after(slot) == "No track is loaded");
    w.loadTrack();
    w.outlets.playList->selectRowIndex(-1);
    for (const char* slot : {"markAUpdate", "markBUpdate", "loopSwitch", "resetMarks"})
        CHECK(w.after(slot) == "No track is selected");
}

TEST_CASE("speed and pitch are told in words when a key or a button changes them, not while a slider is dragged") {
    SpeakingWindow w;
    CHECK(w.after("speed075") == "Speed 0.75 times, forward");
    CHECK(w.after("speedReset") == "Speed 1 times, forward");
    CHECK(w.after("semiToneDown") == "Pitch minus 100 cents");
    CHECK(w.after("pitchReset") == "Pitch 0 cents");
    CHECK(w.afterMoving(w.outlets.speedSlider).isEmpty());
    CHECK(w.afterMoving(w.outlets.pitchSlider).isEmpty());
    CHECK(w.after("displayLevels").isEmpty());
}

TEST_CASE("gain, balance and tone are told in words, also where nothing has changed") {
    SpeakingWindow w;
    CHECK(w.after("silence") == "Gain 0 percent");
    CHECK(w.after("resetGain") == "Gain 50 percent");
    CHECK(w.after("volumeMin") == "Gain 0 percent");
    CHECK(w.after("volumeMax") == "Gain 100 percent");
    CHECK(w.after("balanceReset") == "Balance " + spokenBalance(0));
    CHECK(w.after("balanceLeftMax") == "Balance " + spokenBalance(-1));
    CHECK(w.after("bassReset") == "Bass " + spokenTone(128));
    CHECK(w.after("trebleMax") == "Treble " + spokenTone(256));
    CHECK(w.after("resetSound") == "Speed, pitch and all sound controls are at rest");
    for (Slider* slider : {w.outlets.gainSlider, w.outlets.balanceSlider, w.outlets.bassSlider, w.outlets.trebleSlider})
        CHECK(w.afterMoving(slider).isEmpty());
}

TEST_CASE("a loaded track, the start and the ends of a track are told in words") {
    SpeakingWindow w;
    w.loadTrack();
    CHECK(w.after("selectTrack") == "A Song is loaded");
    CHECK(w.after("goToStart") == "At the start");
    CHECK(w.markAt("skip1", 10).isEmpty());
    CHECK(w.markAt("skip60", 99) == "At the end");
    CHECK(w.markAt("skipBack", 0) == "At the start");
    w.after("loopSwitch");
    CHECK(w.after("goToStart") == "At A");
}

TEST_CASE("the footer's format is told as it comes and goes") {
    SpeakingWindow w;
    CHECK(w.after("displayTrackFormat") == "The track's format is hidden");
    CHECK(w.after("displayTrackFormat") == "The track's format is shown");
}
