#include "ui/PreferencePanes.h"

#include <QAccessible>
#include <QLabel>

#include "support/widgets/Gestures.h"
#include "support/widgets/PreferencesStage.h"
#include "ui/controls/Motion.h"

using namespace qm;

namespace {

const QStringList kIdentifiers = {"GeneralItem", "UpdateItem", "VolumeItem"};

struct Paned : PreferencesStage {
    PreferencePanes& panes() { return controller.preferencePanes(); }
    QObjectList shownPanes() const { return outlets.activePrefContentView->children(); }
    QAbstractButton* item(const char* identifier) const { return outlets.prefsToolbar->itemButton(identifier); }
};

// Records in order what happens to a window and to the view that holds its panes.
class PaneWatch : public QObject {
public:
    PaneWatch(EventLog& log, QWidget* window, QWidget* container)
        : m_log(log), m_window(window), m_container(container) {
        window->installEventFilter(this);
        container->installEventFilter(this);
    }

    bool eventFilter(QObject* object, QEvent* event) override {
        const bool child = event->type() == QEvent::ChildAdded || event->type() == QEvent::ChildRemoved;
        if (object == m_container && child)
            m_log.add(event->type() == QEvent::ChildAdded ? "pane added" : "pane removed");
        if (object == m_container && event->type() == QEvent::Resize)
            m_log.add("container " + std::to_string(m_container->height()));
        if (object == m_window && event->type() == QEvent::Resize)
            m_log.add("window " + std::to_string(m_window->height()));
        return false;
    }

private:
    EventLog& m_log;
    QWidget* m_window;
    QWidget* m_container;
};

}  // namespace

TEST_CASE("a pane's window keeps its left and top edge and is as wide as the pane and 78 higher") {
    const auto frame = [](int x, int y, int width, int height) { return QRect(x, y, width, height); };
    CHECK(frameForPane(frame(100, 200, 480, 348), {480, 190}) == frame(100, 280, 480, 268));
    CHECK(frameForPane(frame(100, 280, 480, 268), {480, 270}) == frame(100, 200, 480, 348));
    CHECK(frameForPane(frame(-30, -50, 300, 100), {500, 400}) == frame(-30, -428, 500, 478));
    CHECK(frameForPane(frame(7, 9, 480, 348), {480, 270}) == frame(7, 9, 480, 348));
}

TEST_CASE_FIXTURE(Paned,
                  "start-up makes the three items in order from their images, before the window's place is read") {
    awakeWith(controller, outlets);
    Events images;
    for (const std::string& event : log.events())
        if (event.starts_with("image preficon") || event.starts_with("image default")) images.push_back(event);
    CHECK(images == Events{"image preficon_general.png", "image preficon_SWUpdate.png", "image default.tiff"});
    CHECK(outlets.prefsToolbar->identifier() == "prefs toolbar");
    CHECK(outlets.prefsToolbar->itemIdentifiers() == kIdentifiers);
}

TEST_CASE_FIXTURE(Paned, "start-up shows the general pane and selects its item; the user cannot hide the toolbar") {
    wakeUp();
    CHECK(shownPanes() == QObjectList{outlets.generalPrefView});
    CHECK(outlets.prefsToolbar->selectedItemIdentifier() == "GeneralItem");
    CHECK(preferences.property("showsToolbarButton") == false);
    CHECK(outlets.prefsToolbar->contextMenuPolicy() == Qt::PreventContextMenu);
    CHECK_FALSE(preferences.isVisible());
}

TEST_CASE_FIXTURE(Paned, "each item has its label, tooltip and icon") {
    wakeUp();
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"GeneralItem", "General", "Turn on/off the audio level indicators."},
        {"UpdateItem", "Software Update", "Turn on/off the automatic software update check."},
        {"VolumeItem", "Volume", "Set the audio level used when Quillmere starts up."}};
    for (const auto& [identifier, label, toolTip] : cases) {
        CAPTURE(identifier);
        REQUIRE(item(identifier));
        CHECK(item(identifier)->text() == label);
        CHECK(item(identifier)->toolTip() == toolTip);
        const ToolbarItem* stored = panes().toolbarItemForItemIdentifier(outlets.prefsToolbar, identifier, false);
        REQUIRE(stored);
        CHECK(stored->label == label);
        CHECK_FALSE(stored->image.isNull());
    }
}

TEST_CASE_FIXTURE(Paned, "the delegate names the three items for its own toolbar, and nothing for another") {
    wakeUp();
    const PaneToolbar other;
    const PreferencePanes& delegate = panes();
    CHECK(delegate.toolbarDefaultItemIdentifiers(outlets.prefsToolbar) == kIdentifiers);
    CHECK(delegate.toolbarAllowedItemIdentifiers(outlets.prefsToolbar) == kIdentifiers);
    CHECK(delegate.toolbarSelectableItemIdentifiers(outlets.prefsToolbar) == kIdentifiers);
    for (const PaneToolbar* stranger : {&other, static_cast<const PaneToolbar*>(nullptr)}) {
        CHECK_FALSE(delegate.toolbarDefaultItemIdentifiers(stranger));
        CHECK_FALSE(delegate.toolbarAllowedItemIdentifiers(stranger));
        CHECK_FALSE(delegate.toolbarSelectableItemIdentifiers(stranger));
        CHECK(delegate.toolbarItemForItemIdentifier(stranger, "GeneralItem", true) == nullptr);
    }
    for (const QString& identifier : kIdentifiers) {
        const ToolbarItem* item = delegate.toolbarItemForItemIdentifier(outlets.prefsToolbar, identifier, true);
        REQUIRE(item);
        CHECK(item->identifier == identifier);
        CHECK(item == delegate.toolbarItemForItemIdentifier(outlets.prefsToolbar, identifier, false));
    }
    CHECK(delegate.toolbarItemForItemIdentifier(outlets.prefsToolbar, "OtherItem", true) == nullptr);
}

TEST_CASE_FIXTURE(Paned, "an item gets tooltip and action as it is added; an unknown one is left as it is") {
    wakeUp();
    ToolbarItem general{"GeneralItem", "G", {}}, update{"UpdateItem", "U", {}}, volume{"VolumeItem", "V", {}};
    ToolbarItem other{"OtherItem", "O", {}, "tip", "action"};
    for (ToolbarItem* item : {&general, &update, &volume, &other}) panes().toolbarWillAddItem(*item);
    CHECK(general.toolTip == "Turn on/off the audio level indicators.");
    CHECK(general.action == "toggleGeneralPreferenceView");
    CHECK(update.toolTip == "Turn on/off the automatic software update check.");
    CHECK(update.action == "toggleUpdatePreferenceView");
    CHECK(volume.toolTip == "Set the audio level used when Quillmere starts up.");
    CHECK(volume.action == "toggleAudioDefaultPreferenceView");
    CHECK(other.toolTip == "tip");
    CHECK(other.action == "action");
}

TEST_CASE_FIXTURE(Paned,
                  "choosing an item shows its pane alone and fits the window to it with its corner where it was") {
    wakeUp();
    controller.openPrefsWindow();
    const QPoint corner = preferences.geometry().topLeft();
    const std::tuple<const char*, QWidget*, int> cases[] = {{"UpdateItem", outlets.updatePrefView, 152},
                                                            {"GeneralItem", outlets.generalPrefView, 270},
                                                            {"VolumeItem", outlets.audioDefaultPrefView, 190}};
    for (const auto& [identifier, pane, height] : cases) {
        CAPTURE(identifier);
        item(identifier)->click();
        CHECK(shownPanes() == QObjectList{pane});
        CHECK(pane->isVisible());
        CHECK(outlets.prefsToolbar->selectedItemIdentifier() == identifier);
        CHECK(preferences.geometry() == QRect(corner, QSize(480, 50 + height)));
        CHECK(outlets.activePrefContentView->geometry() == QRect(0, 0, 480, height));
    }
}

TEST_CASE_FIXTURE(Paned, "the pane shown so far leaves, then the window changes, then the next pane comes") {
    wakeUp();
    controller.openPrefsWindow();
    QCoreApplication::processEvents();
    const PaneWatch watch(log, &preferences, outlets.activePrefContentView);
    log.take();
    panes().setActivePrefView(outlets.updatePrefView, false);
    CHECK(log.events() == Events{"pane removed", "window 202", "container 152", "pane added"});
}

TEST_CASE_FIXTURE(Paned, "with animation the window passes through sizes between, and the pane comes after the last") {
    wakeUp();
    controller.openPrefsWindow();
    QCoreApplication::processEvents();
    const PaneWatch watch(log, &preferences, outlets.activePrefContentView);
    log.take();
    controller.toggleUpdatePreferenceView();
    const Events events = log.take();
    REQUIRE(events.size() >= 4);
    CHECK(events.front() == "pane removed");
    CHECK(events[events.size() - 2] == "container 152");
    CHECK(events.back() == "pane added");
    CHECK(events[events.size() - 3] == "window 202");
    CHECK(std::count_if(events.begin(), events.end(), [](const std::string& e) { return e.starts_with("window"); }) >
          1);
}

TEST_CASE_FIXTURE(Paned, "when the desktop wants nothing to move, the window changes at once") {
    wakeUp();
    controller.openPrefsWindow();
    QCoreApplication::processEvents();
    const PaneWatch watch(log, &preferences, outlets.activePrefContentView);
    log.take();
    setMotionWanted(false);
    controller.toggleUpdatePreferenceView();
    setMotionWanted(true);
    CHECK(log.events() == Events{"pane removed", "window 202", "container 152", "pane added"});
}

TEST_CASE_FIXTURE(Paned, "the window opens again on the pane shown last") {
    wakeUp();
    controller.openPrefsWindow();
    item("VolumeItem")->click();
    controller.openPrefsWindow();
    controller.openPrefsWindow();
    CHECK(shownPanes() == QObjectList{outlets.audioDefaultPrefView});
    CHECK(outlets.prefsToolbar->selectedItemIdentifier() == "VolumeItem");
}

TEST_CASE_FIXTURE(Paned, "the arrow keys move from item to item, and Space turns a box") {
    wakeUp();
    controller.openPrefsWindow();
    REQUIRE(keyWindow() == &preferences);
    item("GeneralItem")->setFocus(Qt::TabFocusReason);
    pressKey(*item("GeneralItem"), Qt::Key_Right);
    CHECK(shownPanes() == QObjectList{outlets.updatePrefView});
    CHECK(preferences.focusWidget() == item("UpdateItem"));
    pressKey(*outlets.autoCheckForUpdatesPref, Qt::Key_Space);
    CHECK(prefs.contains("SoftwareUpdateCheck"));
    CHECK_FALSE(outlets.autoCheckForUpdatesPref->isChecked());
}

TEST_CASE_FIXTURE(Paned,
                  "Tab goes from the selected item through the pane, past the tiles that are not chosen, and back") {
    prefs.setInteger("TextColor", 2);
    wakeUp();
    controller.openPrefsWindow();
    REQUIRE(keyWindow() == &preferences);
    QStringList names;
    for (int i = 0; i < 4; ++i) {
        pressKey(*preferences.focusWidget(), Qt::Key_Tab);
        names << preferences.focusWidget()->accessibleName();
    }
    CHECK(names == QStringList{"General", "Show level indicators", "Orange", "General"});
}

TEST_CASE_FIXTURE(Paned, "every control of the preferences has a name, and choices and boxes tell their state") {
    wakeUp();
    preferences.ensureBuilt();
    const auto access = [](QWidget* widget) -> QAccessibleInterface& {
        return *QAccessible::queryAccessibleInterface(widget);
    };
    for (FaceButton* button : preferences.findChildren<FaceButton*>()) {
        CAPTURE(button->text());
        CHECK_FALSE(access(button).text(QAccessible::Name).isEmpty());
    }
    CHECK(access(item("GeneralItem")).state().checked);
    CHECK_FALSE(access(item("UpdateItem")).state().checked);
    CHECK(access(outlets.audioLevelsPref).state().checkable);
    CHECK(access(outlets.audioLevelsPref).role() == QAccessible::CheckBox);
    CHECK(access(item("GeneralItem")).role() == QAccessible::RadioButton);
}
