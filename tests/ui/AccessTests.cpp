#include <doctest/doctest.h>

#include <QAccessible>
#include <QAction>
#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <functional>

#include "support/widgets/LivingWindow.h"
#include "ui/controls/MovieView.h"
#include "ui/controls/WaveformStrip.h"
#include "ui/windows/LevelMetersPanel.h"
#include "ui/windows/VideoPanel.h"

using namespace qm;

namespace {

QAccessibleInterface* accessOf(QWidget* widget) {
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(widget);
    REQUIRE(access);
    return access;
}

QString nameOf(QWidget* widget) {
    return accessOf(widget)->text(QAccessible::Name);
}

QString spoken(QWidget* widget) {
    return accessOf(widget)->text(QAccessible::Value);
}

using Visit = std::function<void(QAccessibleInterface&)>;

void walk(QAccessibleInterface* access, const Visit& visit) {
    if (!access || !access->isValid()) return;
    visit(*access);
    for (int i = 0; i < access->childCount(); ++i) walk(access->child(i), visit);
}

bool saysWhatItIs(QAccessible::Role role) {
    // What only holds others, or parts them.
    return role != QAccessible::Client && role != QAccessible::Separator && role != QAccessible::Pane &&
           role != QAccessible::PopupMenu;
}

void expectNames(QWidget& window) {
    int visited = 0;
    walk(accessOf(&window), [&](QAccessibleInterface& access) {
        ++visited;
        if (!saysWhatItIs(access.role()) || access.state().invisible) return;
        const QObject* object = access.object();
        const std::string about =
            object ? std::string(object->metaObject()->className()) + " " + object->objectName().toStdString()
                   : std::string("a part");
        CAPTURE(about);
        CAPTURE(static_cast<int>(access.role()));
        CHECK_FALSE(access.text(QAccessible::Name).trimmed().isEmpty());
    });
    CHECK(visited > 3);
}

}  // namespace

TEST_CASE("every control of the main window has a name, also every cell of its list") {
    LivingWindow living;
    living.window.show();
    living.state.refresh();
    expectNames(living.window);
    living.loadTrack();
    living.controller.artistArray[0] = QStringLiteral(" ");
    living.state.refresh();
    expectNames(living.window);
}

TEST_CASE("every control of the panels has a name") {
    Outlets outlets;
    QWidget main;
    LevelMetersPanel levels(outlets, &main);
    VideoPanel video(outlets, &main);
    for (QWidget* panel : {static_cast<QWidget*>(&levels), static_cast<QWidget*>(&video)}) {
        panel->show();
        walk(accessOf(panel), [](QAccessibleInterface& access) {
            if (saysWhatItIs(access.role())) CHECK_FALSE(access.text(QAccessible::Name).isEmpty());
        });
    }
    CHECK(accessOf(outlets.movieView)->role() == QAccessible::Graphic);
    CHECK(accessOf(&levels)->role() == QAccessible::Dialog);
    CHECK(nameOf(outlets.audioLevelLeft) == "Left level in decibels");
    CHECK(spoken(outlets.audioLevelLeft) == "dB");
}

TEST_CASE("sliders say their value in words, never the raw title") {
    LivingWindow living;
    living.loadTrack();
    living.controller.speed075();
    living.controller.semiToneDown();
    living.state.refresh();
    const Outlets& o = living.outlets;
    CHECK(spoken(o.speedSlider) == "0.75 times, forward");
    CHECK(spoken(o.pitchSlider) == "minus 100 cents");
    CHECK(spoken(o.gainSlider) == "50 percent");
    CHECK(spoken(o.balanceSlider) == "centre");
    CHECK(spoken(o.bassSlider) == "128 of 256");
    o.cueSlider->setValue(83 * 600);
    CHECK(spoken(o.cueSlider) == "1 minute 23 seconds of 1 minute 40");
    for (Slider* slider :
         {o.speedSlider, o.pitchSlider, o.gainSlider, o.balanceSlider, o.bassSlider, o.trebleSlider, o.cueSlider}) {
        CHECK(accessOf(slider)->role() == QAccessible::Slider);
        CHECK(accessOf(slider)->text(QAccessible::Description) == spoken(slider));
        REQUIRE(accessOf(slider)->valueInterface());
        CHECK(accessOf(slider)->valueInterface()->maximumValue().toDouble() == slider->maximum());
    }
}

TEST_CASE("a slider moved by an assistive tool does what the hand does") {
    LivingWindow living;
    accessOf(living.outlets.pitchSlider)->valueInterface()->setCurrentValue(-200.0);
    CHECK(living.controller.pitch == -200);
    CHECK(living.outlets.pitchSlider->value() == -200);
}

TEST_CASE("buttons that stand for something say whether it is on") {
    LivingWindow living;
    living.loadTrack();
    living.state.refresh();
    const Outlets& o = living.outlets;
    const auto isOn = [](QWidget* button) {
        const QAccessible::State state = accessOf(button)->state();
        CHECK(state.checkable);
        CHECK(spoken(button) == (state.checked ? "on" : "off"));
        return static_cast<bool>(state.checked);
    };
    CHECK_FALSE(isOn(o.loopButton));
    CHECK_FALSE(isOn(o.markAButton));
    CHECK_FALSE(isOn(o.playForwardButton));
    living.controller.loopSwitch();
    living.controller.markAUpdate();
    living.controller.playForward();
    CHECK(isOn(o.loopButton));
    CHECK(isOn(o.markAButton));
    CHECK(isOn(o.playForwardButton));
    auto* toStart = living.window.findChild<QWidget*>(QStringLiteral("goToStartButton"));
    CHECK_FALSE(accessOf(toStart)->state().checkable);
    living.controller.speed150();
    living.state.refresh();
    CHECK(isOn(living.window.findChild<QWidget*>(QStringLiteral("speed150"))));
    auto* other = living.window.findChild<QWidget*>(QStringLiteral("speed20"));
    CHECK_FALSE(accessOf(other)->state().checkable);
    CHECK(spoken(other).isEmpty());
}

TEST_CASE("the marks' buttons tell the times of the marks") {
    LivingWindow living;
    living.loadTrack();
    living.fixture.engine.movie()->time.timeValue = 83 * 600;
    living.controller.markAUpdate();
    living.state.refresh();
    CHECK(accessOf(living.outlets.markAButton)->text(QAccessible::Description) == "on. 1 minute 23 seconds");
    CHECK(accessOf(living.outlets.markBButton)->text(QAccessible::Description) == "off. 1 minute 40 seconds");
}

TEST_CASE("a button pressed by an assistive tool does what a click does") {
    LivingWindow living;
    living.loadTrack();
    accessOf(living.outlets.loopButton)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    CHECK(living.controller.isLooping);
}

TEST_CASE("a row of the play list says title, artist and duration") {
    LivingWindow living;
    living.addTrack(QStringLiteral("/music/a.mp3"));
    living.window.show();
    QAccessibleTableInterface* table = accessOf(living.outlets.playList)->tableInterface();
    REQUIRE(table);
    const auto cell = [&](int column) { return table->cellAt(0, column)->text(QAccessible::Name); };
    CHECK(cell(1) == "Blue Lantern, Marlow Quartet, 1 minute 40 seconds");
    CHECK(cell(0) == "audio");
    CHECK(cell(3) == "Night Ferry");
    CHECK(cell(4) == "1 minute 40 seconds");
    CHECK(cell(5) == "0 seconds");
}

TEST_CASE("a slider's scale says nothing beside it, and the strip is the slider's picture") {
    LivingWindow living;
    QWidget* scale = living.outlets.speedSlider->parentWidget();
    CHECK(accessOf(scale)->childCount() == 1);
    CHECK(accessOf(scale)->child(0)->object() == living.outlets.speedSlider);
    CHECK(accessOf(living.outlets.waveformStrip)->role() == QAccessible::Graphic);
    CHECK(nameOf(living.outlets.waveformStrip) == "Picture of the position slider");
}

TEST_CASE("no menu item has its key in its name, and a key that is only mentioned is drawn all the same") {
    LivingWindow living;
    for (const QAction* menu : living.window.menuBar()->actions()) {
        walk(accessOf(menu->menu()),
             [](QAccessibleInterface& item) { CHECK_FALSE(item.text(QAccessible::Name).contains(u'\t')); });
    }
    QMenu* playback = living.window.menuBar()->actions().at(2)->menu();
    QAction* item = living.window.actions().action(ActionId::rowDoubleClicked);
    const QImage with = playback->grab().toImage();
    item->setProperty("shownKey", QString());
    CHECK(playback->grab().toImage() != with);
}

TEST_CASE("a button that switches nothing off never says that it is off") {
    LivingWindow living;
    living.loadTrack();
    living.controller.speed150();
    living.state.refresh();
    QStringList off;
    for (FaceButton* button : living.window.findChildren<FaceButton*>())
        if (accessOf(button)->text(QAccessible::Description).startsWith(QStringLiteral("off. "))) off << nameOf(button);
    off.sort();
    CHECK(off.join(u'|') == "Level meters|Loop A to B|Pause|Play backward|Play forward|Set A|Set B|Track information");
    auto* preset = living.window.findChild<QWidget*>(QStringLiteral("speed150"));
    CHECK(accessOf(preset)->text(QAccessible::Description).startsWith(QStringLiteral("on. ")));
}
