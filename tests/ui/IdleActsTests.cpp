#include "support/widgets/Actions.h"
#include "ui/IdleActs.h"

#include <doctest/doctest.h>

#include <QAction>

#include "support/widgets/Gestures.h"
#include "support/widgets/LivingWindow.h"
#include "support/widgets/TestText.h"

using namespace qm;

namespace {

struct Idle : LivingWindow {
    QList<Notice> told;

    Idle() {
        QObject::connect(&controller.notices(), &Notices::told, &window, [this](const Notice& n) { told << n; });
    }
    QString after(const char* slot) {
        told.clear();
        window.actions().send(idOf(slot));
        return told.isEmpty() ? QString() : told.last().text;
    }
    void holdLoop() {
        loadTrack();
        markAt(600, 6000);
        controller.loopSwitch();
        told.clear();
    }
};

constexpr const char* kOfTrack[] = {"goToStart", "skip1", "skipBack", "skip300", "pause", "exportMovie"};
constexpr const char* kOfRow[] = {"removeListEntry", "selectTrack", "rowDoubleClicked", "displayInfo"};
constexpr char kEmpty[] = "The play list is empty: drop a file on it, or open one";

}  // namespace

TEST_CASE_FIXTURE(Idle, "with an empty list an act that needs a track says what to do, and the button does it") {
    for (const char* slot : kOfTrack) CHECK(after(slot) == kEmpty);
    for (const char* slot : kOfRow) CHECK(after(slot) == kEmpty);
    for (const char* slot : {"toggleStartStop", "playForward", "playBackward"}) CHECK(after(slot) == kEmpty);
    REQUIRE(told.last().actText == "Open…");
    fixture.log.take();
    told.last().act();
    CHECK(fixture.log.count("open panel") == 1);
}

TEST_CASE_FIXTURE(Idle, "an act that lacks its track or its row says which") {
    addTrack(QStringLiteral("/music/a.mp3"));
    for (const char* slot : kOfTrack) CHECK(after(slot) == "No track is loaded");
    for (const char* slot : kOfRow) CHECK(after(slot) == "No track is selected");
}

TEST_CASE_FIXTURE(Idle, "an act that has what it needs is done without a word of it") {
    loadTrack();
    for (const char* slot : {"skip1", "displayInfo", "selectTrack"}) CHECK(after(slot).isEmpty());
    CHECK(after("pause") == "Nothing is playing");
    controller.playForward();
    CHECK(after("pause").isEmpty());
}

TEST_CASE_FIXTURE(Idle, "Del that reaches nobody says where it works, and the button leads there") {
    loadTrack();
    window.show();
    outlets.speedSlider->setFocus();
    for (const int key : {Qt::Key_Delete, Qt::Key_Backspace}) {
        told.clear();
        pressKey(*outlets.speedSlider, key);
        REQUIRE(told.size() == 1);
        CHECK(told[0].text == "Del removes a track when the play list has the keyboard");
    }
    told[0].act();
    CHECK(window.focusWidget() == outlets.playList);
    told.clear();
    pressKey(*outlets.speedSlider, Qt::Key_F5);
    pressKey(*outlets.speedSlider, Qt::Key_Delete, Qt::ControlModifier);
    CHECK(told.isEmpty());
}

TEST_CASE_FIXTURE(Idle, "a drag of the position that the loop holds is told once, and the button switches it off") {
    holdLoop();
    outlets.cueSlider->moveByUser(300);
    outlets.cueSlider->moveByUser(400);
    REQUIRE(told.size() == 1);
    CHECK(told[0].text == "The loop holds the position: switch it off to move freely");
    told[0].act();
    CHECK_FALSE(controller.isLooping);
}

TEST_CASE_FIXTURE(Idle, "a drag of the position is told where there is no track, and not where there is one") {
    addTrack(QStringLiteral("/music/b.mp3"));
    outlets.cueSlider->moveByUser(0.5);
    REQUIRE(told.size() == 1);
    CHECK(told[0].text == "No track is loaded");
    Idle loaded;
    loaded.loadTrack();
    loaded.told.clear();
    loaded.outlets.cueSlider->moveByUser(300);
    CHECK(loaded.told.isEmpty());
}
