#include "ui/controls/EmptyListView.h"

#include <QCoreApplication>
#include <QVariantAnimation>

#include "app/ActionReceivers.h"
#include "support/widgets/Actions.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/controls/Motion.h"
#include "ui/windows/MainWindow.h"

using namespace qm;

namespace {

struct EmptyWindow {
    ControllerFixture fixture;
    QMController& controller = fixture.init();
    Outlets outlets;
    MainWindow window{outlets};
    EmptyListView* dropArea = window.findChild<EmptyListView*>();
    QVariantAnimation* pulse = dropArea->findChild<QVariantAnimation*>();

    EmptyWindow() {
        receiveActions(window.actions(), controller);
        awakeWith(controller, outlets);
        window.show();
    }
    bool isPulsing() const { return pulse->state() == QAbstractAnimation::Running; }
};

QColor middle(EmptyListView& view) {
    QImage image(view.size(), QImage::Format_ARGB32);
    image.fill(Qt::black);
    view.render(&image, {}, {}, QWidget::RenderFlags());
    return image.pixelColor(20, view.height() / 2);
}

}  // namespace

TEST_CASE_FIXTURE(EmptyWindow,
                  "playing forward with an empty list makes the drop area pulse twice, then it is as before") {
    REQUIRE(dropArea->isVisible());
    const QColor calm = middle(*dropArea);
    for (const char* slot : {"playForward", "toggleStartStop"}) {
        window.actions().send(idOf(slot));
        REQUIRE(isPulsing());
        for (const int loop : {0, 1}) {
            pulse->setCurrentTime(loop * 240 + 120);
            CHECK(middle(*dropArea).blue() > calm.blue());
            CHECK(middle(*dropArea).blue() > middle(*dropArea).red());
        }
        pulse->setCurrentTime(480);
        CHECK_FALSE(isPulsing());
        CHECK(middle(*dropArea) == calm);
    }
}

TEST_CASE_FIXTURE(EmptyWindow, "when the desktop wants nothing to move, the drop area does not pulse") {
    setMotionWanted(false);
    window.actions().send(ActionId::playForward);
    setMotionWanted(true);
    CHECK_FALSE(isPulsing());
}

TEST_CASE_FIXTURE(EmptyWindow, "the empty list leads to every key, and covers nothing for it") {
    auto* keys = dropArea->keysButton();
    for (const int height : {window.minimumHeight(), 650, 900}) {
        window.resize(window.width(), height);
        QCoreApplication::processEvents();
        CHECK(keys->isVisible());
        CHECK(dropArea->rect().contains(keys->geometry()));
        for (const QWidget* other : dropArea->findChildren<QWidget*>()) {
            const QRect place(other->mapTo(dropArea, QPoint(0, 0)), other->size());
            if (other != keys && other->layout() == nullptr) CHECK_FALSE(place.intersects(keys->geometry()));
        }
    }
    keys->click();
    QWidget* panel = window.findChild<QWidget*>(QStringLiteral("shortcutsPanel"));
    REQUIRE(panel);
    CHECK(panel->isVisible());
}

TEST_CASE_FIXTURE(EmptyWindow, "other actions do not make the drop area pulse, nor playing with a list") {
    window.actions().send(ActionId::playBackward);
    CHECK_FALSE(isPulsing());
    controller.insertEntry(0, {QStringLiteral("/music/a.mp3"), QStringLiteral(" "), QStringLiteral(" "),
                               QStringLiteral("A"), 60000, 600, 128, 128, 0, 60000});
    outlets.playList->reloadData();
    window.actions().send(ActionId::playForward);
    CHECK_FALSE(isPulsing());
}
