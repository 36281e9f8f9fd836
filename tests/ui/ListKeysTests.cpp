#include <doctest/doctest.h>

#include <QAction>
#include <QMenu>
#include <QTimer>

#include "support/widgets/Actions.h"
#include "support/widgets/Gestures.h"
#include "support/widgets/LivingWindow.h"
#include "support/widgets/TestText.h"
#include "ui/controls/EmptyListView.h"
#include "ui/controls/FindBar.h"
#include "ui/controls/SearchField.h"
#include "ui/controls/WaveformStrip.h"
#include "ui/windows/HeroView.h"
#include "ui/windows/PlayListCard.h"

using namespace qm;

namespace {

QString said(LivingWindow& living) {
    return living.grid().hero->noticeLine().text();
}

struct ListWindow : LivingWindow {
    ListWindow() {
        const auto add = [this](const char* title, const char* artist, const char* album) {
            const QString name = QString::fromUtf8(title);
            controller.insertEntry(controller.count(),
                                   {QStringLiteral("/music/%1.mp3").arg(name), QString::fromUtf8(artist),
                                    QString::fromUtf8(album), name, 60000, 600, 128, 128, 0, 60000});
        };
        add("Autumn", "Marlow Quartet", "Night Ferry");    // 0
        add("Blue Lantern", "Marlow Quartet", "Harbour");  // 1
        add("Étude", "Sigur Rós", " ");                    // 2
        add("Blau", "Åsa", "Night Ferry");                 // 3
        add("Zephyr", " ", "Harbour");                     // 4
        list.reloadData();
        window.show();
        QApplication::setActiveWindow(&window);
        list.setFocus(Qt::OtherFocusReason);
    }

    PlayListView& list = *outlets.playList;

    void send(const char* slot) { window.actions().send(idOf(slot)); }
    QString loaded() const { return controller.loadedPath; }
    FindBar& bar() { return grid().playList->findBar(); }
    void find(const QString& text) {
        send("findTrack");
        bar().field()->setText(text);
    }
    QStringList shownTitles() {
        QStringList titles;
        for (int row = 0; row < list.shownCount(); ++row) titles << list.model()->index(row, 1).data().toString();
        return titles;
    }
    QPointF placeOf(int shown) { return {100.0, list.rowViewportPosition(shown) + 12.0}; }
    bool type(const QString& text, int key = Qt::Key_unknown) {
        QKeyEvent override(QEvent::ShortcutOverride, key, Qt::NoModifier, text);
        override.ignore();
        QApplication::sendEvent(&list, &override);
        if (!override.isAccepted()) return false;
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&list, &press);
        return true;
    }
};

QMenu* openMenu(QWidget& widget, const QPoint& place, QContextMenuEvent::Reason reason) {
    QContextMenuEvent event(reason, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

QStringList enabledItems(const QMenu* menu) {
    QStringList names;
    for (const QAction* item : menu->actions())
        if (!item->isSeparator() && item->isEnabled()) names << item->objectName();
    return names;
}

}  // namespace

TEST_CASE_FIXTURE(ListWindow, "next and previous select the track beside the loaded one and play it, as Return does") {
    list.selectRowIndex(1);
    send("selectTrack");
    CHECK_FALSE(controller.isPlaying);
    list.selectRowIndex(4);  // the loaded one counts, not the selected
    send("nextTrack");
    CHECK(list.selectedRow() == 2);
    CHECK(loaded() == "/music/Étude.mp3");
    CHECK(controller.isPlaying);
    send("previousTrack");
    send("previousTrack");
    CHECK(list.selectedRow() == 0);
    CHECK(loaded() == "/music/Autumn.mp3");
}

TEST_CASE_FIXTURE(ListWindow, "at the ends, and where there is no track, next and previous say why they do nothing") {
    send("previousTrack");
    CHECK(said(*this) == "No track is selected");
    CHECK(loaded().isEmpty());
    send("nextTrack");
    CHECK(loaded() == "/music/Autumn.mp3");
    send("previousTrack");
    CHECK(said(*this) == "This is the first track");
    list.selectRowIndex(4);
    send("selectTrack");
    send("nextTrack");
    CHECK(said(*this) == "This is the last track");
    CHECK(loaded() == "/music/Zephyr.mp3");
    controller.removeAllEntries();
    list.reloadData();
    for (const char* slot : {"nextTrack", "findTrack", "goToPlayList"}) {
        controller.notices().withdraw(QStringLiteral("list"));
        CHECK(said(*this).isEmpty());
        send(slot);
        CHECK(said(*this) == "There are no tracks in the list");
    }
}

TEST_CASE_FIXTURE(ListWindow, "find shows the tracks whose title, artist or album has the words, and counts them") {
    find("marlow");
    CHECK(shownTitles() == QStringList{"Autumn", "Blue Lantern"});
    CHECK(bar().countText() == "2 of 5");
    bar().field()->setText("marlow HARB");
    CHECK(shownTitles() == QStringList{"Blue Lantern"});
    bar().field()->setText("etude");
    CHECK(shownTitles() == QStringList{"Étude"});
    bar().field()->setText("ROS");
    CHECK(shownTitles() == QStringList{"Étude"});
    bar().field()->setText("asa");
    CHECK(shownTitles() == QStringList{"Blau"});
    bar().field()->setText("nothing such");
    CHECK(shownTitles().isEmpty());
    CHECK(bar().countText() == "0 of 5");
    CHECK_FALSE(window.findChild<EmptyListView*>()->isVisible());
    bar().field()->clear();
    CHECK(shownTitles().size() == 5);
    CHECK(bar().isVisible());
}

TEST_CASE_FIXTURE(ListWindow, "the count is told when the typing pauses") {
    find("night");
    CHECK(said(*this).isEmpty());
    fire(listKeys.findChild<QTimer*>());
    CHECK(said(*this) == "2 of 5 tracks found");
    bar().field()->setText("xyz");
    fire(listKeys.findChild<QTimer*>());
    CHECK(said(*this) == "No track is found");
}

TEST_CASE_FIXTURE(ListWindow, "narrowing leaves the list, the selected row and the loaded track as they are") {
    list.selectRowIndex(2);
    send("selectTrack");
    const PlayListArrays before = controller;
    find("harbour");
    CHECK(before == controller);
    CHECK(list.selectedRow() == 2);  // out of sight
    CHECK_FALSE(list.isShown(2));
    CHECK(outlets.trackTotal->text() == "5 items");
    fixture.engine.movie()->time.timeValue = 600;
    send("markAUpdate");
    CHECK(controller.markAarray[2] == 600);
    CHECK(shownTitles() == QStringList{"Blue Lantern", "Zephyr"});
    pressKey(bar(), Qt::Key_Escape);
    CHECK(list.selectedRow() == 2);
    CHECK(list.selectionModel()->selectedRows().value(0).row() == 2);
    CHECK(shownTitles().size() == 5);
    CHECK_FALSE(bar().isVisible());
    CHECK(window.focusWidget() == &list);
}

TEST_CASE_FIXTURE(ListWindow, "while it is narrowed a double click, Return and removal mean the row that is seen") {
    find("harbour");
    clickMouse(*list.viewport(), placeOf(1));
    doubleClickMouse(*list.viewport(), placeOf(1));
    CHECK(list.selectedRow() == 4);
    CHECK(loaded() == "/music/Zephyr.mp3");
    pressKey(list, Qt::Key_Up);
    CHECK(list.selectedRow() == 1);
    pressKey(list, Qt::Key_Return);
    CHECK(loaded() == "/music/Blue Lantern.mp3");
    send("removeListEntry");
    CHECK(controller.count() == 4);
    CHECK(controller.trackArray[1] == "/music/Étude.mp3");
    CHECK(shownTitles() == QStringList{"Zephyr"});
    CHECK(bar().countText() == "1 of 4");
}

TEST_CASE_FIXTURE(ListWindow, "a track that is out of sight is not removed, and that is said") {
    list.selectRowIndex(2);
    find("harbour");
    send("removeListEntry");
    CHECK(controller.count() == 5);
    CHECK(said(*this) == "The selected track is not among those shown");
}

TEST_CASE_FIXTURE(ListWindow, "undo and whatever else adds a track shows the whole list again") {
    find("harbour");
    clickMouse(*list.viewport(), placeOf(0));
    send("removeListEntry");
    CHECK(shownTitles() == QStringList{"Zephyr"});
    send("undo");
    CHECK(controller.trackArray[1] == "/music/Blue Lantern.mp3");
    CHECK(shownTitles().size() == 5);
    CHECK(list.selectedRow() == 1);
    CHECK_FALSE(bar().isVisible());
    find("harbour");
    list.selectRowIndex(4);
    controller.loadFileAdd(QStringLiteral("/music/new.mp3"), true);
    CHECK(controller.count() == 6);
    CHECK(shownTitles().size() == 6);
    CHECK_FALSE(bar().isVisible());
}

TEST_CASE_FIXTURE(ListWindow, "Return in the field plays the first that was found, and gives the list the keyboard") {
    find("night");
    pressKey(*bar().field(), Qt::Key_Return);
    CHECK(loaded() == "/music/Autumn.mp3");
    CHECK(controller.isPlaying);
    CHECK(window.focusWidget() == &list);
    CHECK(shownTitles().size() == 2);
    send("nextTrack");
    CHECK(loaded() == "/music/Blau.mp3");
    send("nextTrack");
    CHECK(said(*this) == "No track that is shown comes after this one");
    pressKey(list, Qt::Key_Escape);
    CHECK(shownTitles().size() == 5);
    CHECK_FALSE(bar().isVisible());
}

TEST_CASE_FIXTURE(ListWindow, "Down leads from the field to the first that was found") {
    list.selectRowIndex(0);
    find("harbour");
    pressKey(*bar().field(), Qt::Key_Down);
    CHECK(window.focusWidget() == &list);
    CHECK(list.selectedRow() == 1);
}

TEST_CASE_FIXTURE(ListWindow, "a letter more looks only at the rows that are shown") {
    list.showOnly([](int row) { return row > 2; });
    int asked = 0;
    list.showFewer([&](int row) {
        ++asked;
        return row == 4;
    });
    CHECK(asked == 2);
    CHECK(shownTitles() == QStringList{"Zephyr"});
}

TEST_CASE_FIXTURE(ListWindow, "letters are the player's keys until a key leads to the list") {
    list.selectRowIndex(0);
    CHECK_FALSE(type("b", Qt::Key_B));
    CHECK_FALSE(type({}, Qt::Key_Home));
    send("goToPlayList");
    CHECK(window.focusWidget() == &list);
    CHECK(type("b", Qt::Key_B));
    CHECK(list.selectedRow() == 1);
    CHECK(type("l", Qt::Key_L));
    CHECK(type("a", Qt::Key_A));
    CHECK(list.selectedRow() == 3);
    CHECK(type({}, Qt::Key_Backspace));
    CHECK(controller.count() == 5);
    CHECK(type({}, Qt::Key_Home));
    CHECK(list.selectedRow() == 0);
    CHECK_FALSE(type({}, Qt::Key_Right));
    CHECK(type("q", Qt::Key_Q));
    CHECK(said(*this).startsWith("No title begins with “"));
    pressKey(list, Qt::Key_Escape);
    CHECK(said(*this) == "The keys are the player's again");
    CHECK_FALSE(type("b", Qt::Key_B));
}

TEST_CASE_FIXTURE(ListWindow, "Space plays also while letters lead to titles, unless it parts two words") {
    send("goToPlayList");
    CHECK_FALSE(type(" ", Qt::Key_Space));
    type("blue", Qt::Key_B);
    CHECK(type(" ", Qt::Key_Space));
    CHECK(list.selectedRow() == 1);
}

TEST_CASE_FIXTURE(ListWindow, "Return and whatever leaves the list give the letters back") {
    send("goToPlayList");
    pressKey(list, Qt::Key_Return);
    CHECK_FALSE(list.takesLetters());
    send("goToPlayList");
    outlets.loopButton->setFocus(Qt::TabFocusReason);
    CHECK_FALSE(list.takesLetters());
    send("goToPlayList");
    clickMouse(*list.viewport(), placeOf(1));
    CHECK_FALSE(list.takesLetters());
}

TEST_CASE_FIXTURE(ListWindow, "End and Ctrl with Home and End go to the ends of what is shown") {
    pressKey(list, Qt::Key_End);
    CHECK(list.selectedRow() == 4);
    pressKey(list, Qt::Key_Home, Qt::ControlModifier);
    CHECK(list.selectedRow() == 0);
    find("night");
    pressKey(list, Qt::Key_End, Qt::ControlModifier);
    CHECK(list.selectedRow() == 3);
}

TEST_CASE_FIXTURE(ListWindow,
                  "a row's menu has what can be done with it; what is of the loaded track only for its row") {
    list.selectRowIndex(0);
    send("selectTrack");
    clickMouse(*list.viewport(), placeOf(0));
    QMenu* menu = openMenu(*list.viewport(), placeOf(0).toPoint(), QContextMenuEvent::Mouse);
    REQUIRE(menu);
    CHECK(enabledItems(menu) ==
          QStringList{"rowDoubleClicked", "selectTrack", "displayInfo", "exportMovie", "removeListEntry"});
    const QAction* remove = menu->findChild<QAction*>(QStringLiteral("removeListEntry"));
    CHECK(remove->shortcut() == QKeySequence(Qt::Key_Delete));
    CHECK(menu->actionGeometry(const_cast<QAction*>(remove)).width() >
          menu->fontMetrics().horizontalAdvance(QStringLiteral("Load Selected Track Ctrl+Return")));
    menu->close();
    list.selectRowIndex(1);
    menu = openMenu(*list.viewport(), placeOf(1).toPoint(), QContextMenuEvent::Mouse);
    REQUIRE(menu);
    CHECK(enabledItems(menu) == QStringList{"rowDoubleClicked", "selectTrack", "removeListEntry"});
    menu->findChild<QAction*>(QStringLiteral("rowDoubleClicked"))->trigger();
    menu->close();
    CHECK(loaded() == "/music/Blue Lantern.mp3");
    menu = openMenu(*list.viewport(), {100, list.viewport()->height() - 3}, QContextMenuEvent::Mouse);
    REQUIRE(menu);
    CHECK(enabledItems(menu) == QStringList{"openFile", "findTrack", "clearList"});
    menu->close();
}

TEST_CASE_FIXTURE(ListWindow, "the Menu key and Shift+F10 open the menu of the selected row and of the position") {
    list.selectRowIndex(1);
    QMenu* menu = openMenu(list, {5, 5}, QContextMenuEvent::Keyboard);
    REQUIRE(menu);
    CHECK(enabledItems(menu).contains("removeListEntry"));
    menu->close();
    pressKey(list, Qt::Key_F10, Qt::ShiftModifier);
    menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    REQUIRE(menu);
    menu->close();
    send("selectTrack");
    pressKey(*outlets.cueSlider, Qt::Key_F10, Qt::ShiftModifier);
    menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    REQUIRE(menu);
    CHECK(enabledItems(menu) ==
          QStringList{"toggleStartStop", "goToStart", "markAUpdate", "markBUpdate", "loopSwitch", "resetMarks"});
    menu->close();
}

TEST_CASE_FIXTURE(ListWindow, "the strip's menu sets marks and goes to where it was asked for") {
    QWidget& hero = *grid().hero;
    WaveformStrip& strip = *outlets.waveformStrip;
    const QPoint middle = strip.mapTo(&hero, strip.rect().center());
    QMenu* menu = openMenu(hero, middle, QContextMenuEvent::Mouse);
    REQUIRE(menu);
    CHECK(enabledItems(menu) == QStringList{"toggleStartStop"});  // nothing is loaded
    menu->close();
    list.selectRowIndex(1);
    send("selectTrack");
    menu = openMenu(hero, middle, QContextMenuEvent::Mouse);
    REQUIRE(menu);
    menu->findChild<QAction*>(QStringLiteral("goHere"))->trigger();
    menu->close();
    const double half = outlets.cueSlider->maximum() / 2;
    CHECK(outlets.cueSlider->value() == doctest::Approx(half).epsilon(0.01));
    CHECK(openMenu(hero, {5, 5}, QContextMenuEvent::Mouse) == nullptr);  // beside the strip
}

TEST_CASE_FIXTURE(ListWindow,
                  "a right click leaves the play list's other rows alone and the strip's slider where it is") {
    list.selectRowIndex(0);
    sendMouse(*list.viewport(), QEvent::MouseButtonPress, placeOf(3), Qt::RightButton, Qt::RightButton);
    CHECK(list.selectedRow() == 3);
    CHECK(loaded().isEmpty());
}
