#include <doctest/doctest.h>

#include <QApplication>
#include <algorithm>

#include "support/widgets/Gestures.h"
#include "support/widgets/LivingWindow.h"
#include "ui/controls/FocusRing.h"

using namespace qm;

namespace {

// The names of the controls that Tab goes to, beginning with the one after `first`, until it is back there.
QStringList tabRound(QWidget& window, QWidget* first) {
    QStringList names;
    first->setFocus(Qt::TabFocusReason);
    for (int steps = 0; steps < 200; ++steps) {
        pressKey(*window.focusWidget(), Qt::Key_Tab);
        if (window.focusWidget() == first) return names;
        names << window.focusWidget()->objectName();
    }
    FAIL("Tab does not come back");
    return names;
}

QStringList toolbarFromLeft(const MainWindow& window) {
    QList<FaceButton*> tools = window.findChild<QWidget*>(QStringLiteral("toolbar"))->findChildren<FaceButton*>();
    std::sort(tools.begin(), tools.end(), [](FaceButton* a, FaceButton* b) { return a->x() < b->x(); });
    QStringList names;
    for (const FaceButton* tool : tools) names << tool->objectName();
    return names;
}

void activate(QWidget& window) {
    window.show();
    QApplication::setActiveWindow(&window);
}

}  // namespace

TEST_CASE("the play list has the focus first") {
    LivingWindow living;
    activate(living.window);
    CHECK(living.window.focusWidget() == living.outlets.playList);
}

TEST_CASE("Tab goes through the window in reading order of the work: list, transport, loop, position, sound, toolbar") {
    LivingWindow living;
    living.addTrack(QStringLiteral("/music/a.mp3"));
    activate(living.window);
    QStringList expected = {// the list's own buttons
                            "openFile", "removeListEntry",
                            // transport and skips
                            "goToStartButton", "playBackwardButton", "pauseButton", "playForwardButton", "skip_60",
                            "skip_10", "skipBack", "skip1", "skip10", "skip30", "skip60", "skip300",
                            // loop and position
                            "markAButton", "loopButton", "markBButton", "resetMarksButton", "cueSlider",
                            // speed and pitch
                            "speedResetButton", "speedSlider", "speedDown", "speed05", "speed075", "speed150",
                            "speed20", "speedUp", "pitchResetButton", "pitchSlider", "semiToneDown", "semiToneUp",
                            // gain, balance, bass, treble
                            "volumeMin", "gainSlider", "volumeMax", "gainResetButton", "balanceLeftMax",
                            "balanceSlider", "balanceRightMax", "balanceResetButton", "bassMin", "bassSlider",
                            "bassMax", "bassResetButton", "trebleMin", "trebleSlider", "trebleMax", "trebleResetButton",
                            // all of it
                            "resetAudio", "audioRecordButton"};
    expected << toolbarFromLeft(living.window);
    const QStringList round = tabRound(living.window, living.outlets.playList);
    CHECK(round.join(u' ').toStdString() == expected.join(u' ').toStdString());
}

TEST_CASE("the button of the empty list is next to the list") {
    LivingWindow living;
    activate(living.window);
    pressKey(*living.outlets.playList, Qt::Key_Tab);
    CHECK(living.window.focusWidget()->accessibleName() == "Add files");
    CHECK(living.outlets.playList->isAncestorOf(living.window.focusWidget()));
}

TEST_CASE("whatever Tab goes to shows that it has the focus") {
    LivingWindow living;
    activate(living.window);
    auto* ring = living.window.findChild<FocusRing*>();
    REQUIRE(ring);
    pressKey(*living.outlets.playList, Qt::Key_Tab);
    while (living.window.focusWidget() != living.outlets.playList) {
        QWidget* control = living.window.focusWidget();
        CAPTURE(control->objectName().toStdString());
        CHECK(ring->followedWidget() == control);
        CHECK(ring->isVisible());
        CHECK_FALSE(dynamic_cast<FocusShape*>(control)->focusPath().isEmpty());
        pressKey(*control, Qt::Key_Tab);
    }
    CHECK(living.outlets.playList->showsFocusInRow());
}

TEST_CASE("Space never presses the focused button, Return does") {
    LivingWindow living;
    living.loadTrack();
    activate(living.window);
    living.outlets.loopButton->setFocus(Qt::TabFocusReason);
    pressKey(*living.outlets.loopButton, Qt::Key_Space);
    CHECK_FALSE(living.controller.isLooping);
    pressKey(*living.outlets.loopButton, Qt::Key_Return);
    CHECK(living.controller.isLooping);
}

TEST_CASE("a focused slider takes Up and Down and leaves Left and Right to the skips") {
    LivingWindow living;
    Slider& slider = *living.outlets.gainSlider;
    CHECK(pressKey(slider, Qt::Key_Up));
    CHECK(slider.value() == doctest::Approx(0.52));
    CHECK(pressKey(slider, Qt::Key_Down));
    CHECK_FALSE(pressKey(slider, Qt::Key_Left));
    CHECK_FALSE(pressKey(slider, Qt::Key_Right));
    CHECK(slider.value() == doctest::Approx(0.5));
}

TEST_CASE("Down selects the first row when none is, also the only one") {
    LivingWindow living;
    living.addTrack(QStringLiteral("/music/a.mp3"));
    activate(living.window);
    PlayListView& list = *living.outlets.playList;
    living.outlets.loopButton->setFocus(Qt::TabFocusReason);
    list.setFocus(Qt::TabFocusReason);
    CHECK(list.selectedRow() == -1);
    pressKey(list, Qt::Key_Down);
    CHECK(list.selectedRow() == 0);
    CHECK(list.currentIndex().column() == PlayListView::columnIndex("IBtrack"));
}
