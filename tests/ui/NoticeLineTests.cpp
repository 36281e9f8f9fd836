#include <doctest/doctest.h>

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QGraphicsEffect>
#include <QTimer>

#include "support/widgets/Gestures.h"
#include "support/widgets/LivingWindow.h"
#include "support/widgets/TestText.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Motion.h"
#include "ui/controls/NoticeLine.h"
#include "ui/windows/HeroView.h"

using namespace qm;

namespace {

struct TellingWindow : LivingWindow {
    NoticeLine& line = grid().hero->noticeLine();
    int acts = 0;

    TellingWindow() {
        window.show();
        state.refresh();
        setMotionWanted(false);
    }
    ~TellingWindow() { setMotionWanted(true); }

    void tell(const Notice& notice) { controller.notices().tell(notice); }
    Notice offering(const QString& text, const QString& subject = {}, bool lasts = false) {
        return {text, QStringLiteral("Bring Back"), [this] { ++acts; }, subject, lasts};
    }
    Notice lasting(const QString& text, const QString& subject) { return {text, {}, {}, subject, true}; }
    QTimer* rest() { return line.findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly); }
    QRect placeOf(const QWidget* part) { return {part->mapTo(grid().hero, QPoint()), part->size()}; }
    bool byLineIsShown() {
        for (const TextLabel* label : grid().hero->findChildren<TextLabel*>())
            if (label->text() == grid().hero->byLine()) return label->isVisible();
        return false;
    }
};

}  // namespace

TEST_CASE("what is told stands in the status line and goes by itself") {
    TellingWindow w;
    CHECK_FALSE(w.line.isVisible());
    w.tell({QStringLiteral("FLAC files are not played"), {}});
    CHECK(w.line.isVisible());
    CHECK(w.line.text() == "FLAC files are not played");
    CHECK_FALSE(w.line.offersAct());
    REQUIRE(w.rest()->isActive());
    fire(w.rest());
    CHECK_FALSE(w.line.isVisible());
    CHECK(w.line.text().isEmpty());
}

TEST_CASE("the line fades where things may move, and one that is told meanwhile stands in full") {
    TellingWindow w;
    setMotionWanted(true);
    w.tell({QStringLiteral("A at 1 second"), {}});
    fire(w.rest());
    CHECK(w.line.isVisible());
    CHECK(w.line.graphicsEffect());
    w.tell({QStringLiteral("B at 2 seconds"), {}});
    CHECK_FALSE(w.line.graphicsEffect());
    CHECK(w.line.text() == "B at 2 seconds");
}

TEST_CASE("a notice replaces an older one, and what lasts comes back after one that passes") {
    TellingWindow w;
    w.tell(w.lasting(QStringLiteral("No sound output"), QStringLiteral("sound")));
    CHECK_FALSE(w.rest()->isActive());
    w.tell({QStringLiteral("A at 1 second"), {}});
    CHECK(w.line.text() == "A at 1 second");
    fire(w.rest());
    CHECK(w.line.text() == "No sound output");
    CHECK_FALSE(w.rest()->isActive());
    w.controller.notices().withdraw(QStringLiteral("sound"));
    CHECK_FALSE(w.line.isVisible());
}

TEST_CASE("one subject has one notice, and of several that last the newest stands in front") {
    TellingWindow w;
    w.tell(w.lasting(QStringLiteral("No sound output"), QStringLiteral("sound")));
    w.tell(w.lasting(QStringLiteral("The play list is not saved"), QStringLiteral("list")));
    CHECK(w.line.text() == "The play list is not saved");
    w.tell({QStringLiteral("Sound is back"), {}, {}, QStringLiteral("sound")});
    CHECK(w.line.text() == "Sound is back");
    fire(w.rest());
    CHECK(w.line.text() == "The play list is not saved");
    w.controller.notices().withdraw(QStringLiteral("list"));
    CHECK_FALSE(w.line.isVisible());
}

TEST_CASE("what is withdrawn behind another notice changes nothing on the screen and does not come back") {
    TellingWindow w;
    w.tell(w.lasting(QStringLiteral("No sound output"), QStringLiteral("sound")));
    w.tell({QStringLiteral("A at 1 second"), {}});
    w.controller.notices().withdraw(QStringLiteral("sound"));
    w.controller.notices().withdraw(QString());
    CHECK(w.line.text() == "A at 1 second");
    fire(w.rest());
    CHECK_FALSE(w.line.isVisible());
}

TEST_CASE("the button runs its act once, and the line goes") {
    TellingWindow w;
    w.tell(w.offering(QStringLiteral("3 tracks removed")));
    REQUIRE(w.line.button()->isVisible());
    CHECK(w.line.button()->text() == "Bring Back");
    clickMouse(*w.line.button(), w.line.button()->rect().center());
    CHECK(w.acts == 1);
    CHECK_FALSE(w.line.isVisible());
    w.window.actions().send(ActionId::useMessageButton);
    CHECK(w.acts == 1);
}

TEST_CASE("what an act tells stays when the line of its button has gone") {
    TellingWindow w;
    Notice offer = w.offering(QStringLiteral("The list of the last run was not kept"), QStringLiteral("list"), true);
    offer.act = [&w] { w.tell({QStringLiteral("8 tracks are back"), {}, {}, QStringLiteral("list")}); };
    w.tell(offer);
    w.line.act();
    CHECK(w.line.text() == "8 tracks are back");
    fire(w.rest());
    CHECK_FALSE(w.line.isVisible());
}

TEST_CASE("the button has a key and a menu item while there is one") {
    TellingWindow w;
    QAction* item = w.window.actions().action(ActionId::useMessageButton);
    REQUIRE(item);
    CHECK(item->shortcut() == QKeySequence(Qt::Key_F8));
    CHECK_FALSE(item->isEnabled());
    w.tell({QStringLiteral("A at 1 second"), {}});
    CHECK_FALSE(item->isEnabled());
    w.tell(w.offering(QStringLiteral("3 tracks removed")));
    REQUIRE(item->isEnabled());
    item->trigger();
    CHECK(w.acts == 1);
    CHECK_FALSE(item->isEnabled());
}

TEST_CASE("Tab reaches the button, the line waits for it, and the keyboard goes back where it was") {
    TellingWindow w;
    w.window.activateWindow();
    QApplication::processEvents();
    w.outlets.playList->setFocus();
    w.tell(w.offering(QStringLiteral("3 tracks removed")));
    QWidget* before = w.line.button()->previousInFocusChain();
    while (!(before->focusPolicy() & Qt::TabFocus)) before = before->previousInFocusChain();
    CHECK(before == w.outlets.audioRecordButton);
    w.line.button()->setFocus(Qt::TabFocusReason);
    REQUIRE(w.line.button()->hasFocus());
    fire(w.rest());
    CHECK(w.line.isVisible());
    pressKey(*w.line.button(), Qt::Key_Return);
    CHECK(w.acts == 1);
    CHECK(w.outlets.playList->hasFocus());
}

TEST_CASE("the status line moves nothing and covers neither tags nor clock") {
    TellingWindow w;
    w.loadTrack();
    w.controller.speed075();
    w.controller.semiToneDown();
    w.controller.loopSwitch();
    w.controller.volumeMin();
    for (const QSize size : {QSize(980, 650), QSize(1280, 830)}) {
        w.window.resize(size);
        w.state.refresh();
        std::vector<std::pair<QWidget*, QRect>> before;
        for (QWidget* part : w.grid().hero->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            if (part != &w.line && part->isVisible()) before.emplace_back(part, part->geometry());
        REQUIRE(before.size() > 8);
        for (const int length : {10, 40, 200}) {
            w.tell(w.offering(QString(length, u'n')));
            for (const auto& [part, place] : before) {
                CAPTURE(length);
                CAPTURE(part->objectName());
                CHECK(part->geometry() == place);
                if (part->isVisible()) CHECK_FALSE(part->geometry().intersects(w.line.geometry()));
            }
            CHECK(w.line.rect().contains(w.line.button()->geometry()));
        }
        w.line.clear();
    }
}

TEST_CASE("a short line stands beside the tags, a long one in the artist's place until it goes") {
    TellingWindow w;
    w.loadTrack();
    w.controller.loopSwitch();  // not speed or pitch, whose large tags take room from the artist
    w.controller.volumeMin();
    w.state.refresh();
    QRect tag;
    for (const auto* shown : w.grid().hero->findChildren<StateTag*>())
        if (shown->isVisible()) tag = w.placeOf(shown);
    w.tell({QStringLiteral("A at 1 second"), {}});
    CHECK(w.line.x() > tag.right());
    CHECK(w.line.geometry().center().y() == tag.center().y());
    CHECK(w.byLineIsShown());
    w.tell({QStringLiteral("The recording stays where it is: there is no room for it on the disk"), {}});
    CHECK(w.line.x() == 0);
    CHECK(w.line.geometry().bottom() < tag.top());
    CHECK_FALSE(w.byLineIsShown());
    fire(w.rest());
    CHECK(w.byLineIsShown());
}

TEST_CASE("a line that has no room is cut in its middle and tells all of it when pointed at, as it is written") {
    TellingWindow w;
    const QString text =
        QStringLiteral("Not found: /music/<b>a</b>/") + QString(100, u'x') + QStringLiteral("/end.mp3");
    w.tell({text, {}});
    CHECK(w.line.toolTip().contains(QStringLiteral("&lt;b&gt;")));
    const QFont font = uiFont(13);
    const QString cut = elidedInMiddle(font, text, 200);
    CHECK(textWidth(font, cut) <= 200);
    CHECK(cut.startsWith(QStringLiteral("Not found: /")));
    CHECK(cut.endsWith(QStringLiteral("/end.mp3")));
    CHECK(cut.count(u'…') == 1);
    CHECK(elidedInMiddle(font, QStringLiteral("short"), 200) == "short");
    CHECK(elidedInMiddle(font, text, 0) == "…");
}

TEST_CASE("the button stands beside the words, also where they are cut") {
    TellingWindow w;
    for (const int length : {10, 300}) {
        w.tell(w.offering(QStringLiteral("Not found: /music/") + QString(length, u'x')));
        const int words = w.line.sizeHint().width() - w.line.button()->width() - 10;
        if (length == 10) CHECK(w.line.button()->x() == words + 10);
        CHECK(w.line.button()->geometry().right() > w.line.width() - 12);
        CHECK(w.line.rect().contains(w.line.button()->geometry()));
    }
}

TEST_CASE("what is told before there is a window stands in the line when there is one") {
    ControllerFixture fixture;
    QMController& controller = fixture.init();
    controller.notices().tell({QStringLiteral("2 tracks could not be read"), {}, {}, QStringLiteral("list"), true});
    controller.notices().tell({QStringLiteral("Never seen"), {}, {}, QStringLiteral("gone"), true});
    controller.notices().withdraw(QStringLiteral("gone"));
    Outlets outlets;
    MainWindow window(outlets);
    StatusNotices notices(window, controller.notices());
    CHECK(window.grid().hero->noticeLine().text() == "2 tracks could not be read");
    CHECK(controller.notices().takeUntold().empty());
}

TEST_CASE("to assistive tools the line is a notification with its button, and nothing while it is empty") {
    TellingWindow w;
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&w.line);
    REQUIRE(access);
    CHECK(access->role() == QAccessible::Notification);
    CHECK(access->state().invisible);
    w.tell(w.offering(QStringLiteral("3 tracks removed")));
    CHECK_FALSE(access->state().invisible);
    CHECK(access->text(QAccessible::Name) == "3 tracks removed");
    REQUIRE(access->childCount() == 1);
    CHECK(access->child(0)->text(QAccessible::Name) == "Bring Back");
}

TEST_CASE("an update shows other numbers in the place of what lasts, behind what passes, and is not spoken") {
    TellingWindow w;
    Notice progress = w.lasting(QStringLiteral("Adding 1 of 9 files"), QStringLiteral("adding"));
    w.tell(progress);
    progress.isUpdate = true;
    progress.text = QStringLiteral("Adding 2 of 9 files");
    w.tell(progress);
    CHECK(w.line.text() == "Adding 2 of 9 files");
    w.tell({QStringLiteral("A at 1 second"), {}});
    progress.text = QStringLiteral("Adding 3 of 9 files");
    w.tell(progress);
    CHECK(w.line.text() == "A at 1 second");
    fire(w.rest());
    CHECK(w.line.text() == "Adding 3 of 9 files");
    w.controller.notices().withdraw(QStringLiteral("adding"));
    CHECK_FALSE(w.line.isVisible());
}
