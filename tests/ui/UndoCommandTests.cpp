#include <doctest/doctest.h>

#include <QAction>

#include "support/widgets/LivingWindow.h"

using namespace qm;

namespace {

QAction& action(LivingWindow& living, ActionId id) {
    return *living.window.actions().action(id);
}

}  // namespace

TEST_CASE("Undo names what it would take back, and is dimmed when there is nothing") {
    LivingWindow living;
    QAction& undo = action(living, ActionId::undo);
    CHECK(undo.text() == "Undo");
    CHECK_FALSE(undo.isEnabled());
    living.window.showUndo("Remove Track");
    CHECK(undo.text() == "Undo Remove Track");
    CHECK(undo.isEnabled());
    living.window.showUndo({});
    CHECK(undo.text() == "Undo");
    CHECK_FALSE(undo.isEnabled());
    CHECK(undo.shortcut() == QKeySequence(Qt::CTRL | Qt::Key_Z));
}

TEST_CASE("Undo in the menu brings a removed track back") {
    LivingWindow living;
    living.addTrack("/music/a.mp3");
    living.outlets.playList->selectRowIndex(0);
    living.window.actions().send(ActionId::removeListEntry);
    CHECK(living.controller.count() == 0);
    living.window.actions().send(ActionId::undo);
    CHECK(living.controller.count() == 1);
}

TEST_CASE("the keys that remove a track are the list's, all others the window's") {
    LivingWindow living;
    const QList<QAction*> ofTheList = living.outlets.playList->actions();
    CHECK(ofTheList == QList<QAction*>{&action(living, ActionId::removeListEntry)});
    for (const ActionRow& row : actionRows()) {
        if (*row.menu == '\0') continue;
        CAPTURE(actionName(row.id).toStdString());
        CHECK(action(living, row.id).shortcutContext() ==
              (ofTheList.contains(&action(living, row.id)) ? Qt::WidgetShortcut : Qt::WindowShortcut));
    }
}
