#include <doctest/doctest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMetaEnum>
#include <QScrollArea>
#include <QScrollBar>

#include "app/ActionReceivers.h"
#include "support/widgets/Gestures.h"
#include "support/widgets/PreferencesStage.h"
#include "ui/windows/ExportPanel.h"
#include "ui/windows/RecorderWindows.h"
#include "ui/windows/ShortcutsPanel.h"
#include "ui/windows/SoftwareUpdatePanel.h"
#include "ui/windows/TrackInfoPanel.h"
#include "ui/windows/VideoPanel.h"

using namespace qm;

namespace {

// Every panel that there is, beside the main window, over the fake engines.
struct AllPanels : PreferencesStage {
    AudioRecord audioRecord{fixture.capture, controller.takes()};
    AudioRecordOutlets recorderOutlets;
    UpdateOutlets updateOutlets;
    TrackInfoPanel info{outlets, &window};
    VideoPanel video{outlets, &window};
    ExportPanel exporting{outlets, window.actions(), &window};
    RecordingWindow recording{outlets, window.actions(), &window,
                              [this] { return recorderStatus(controller, controller.isRecording); }};
    RecorderWindow recorder{recorderOutlets, window.actions(), &window,
                            [this] { return recorderStatus(audioRecord, audioRecord.recordingStatus); }};
    SoftwareUpdatePanel* update = new SoftwareUpdatePanel(updateOutlets, &window);

    AllPanels() {
        receiveActions(window.actions(), audioRecord);
        audioRecord.setRunSavePanel([](QWidget*, const QString&, const QString&) { return std::nullopt; });
        wakeUp();
        audioRecord.awakeFromNib(recorderOutlets);
        window.displayShortcuts();
        window.show();
    }

    QList<ToolPanel*> panels() { return window.findChildren<ToolPanel*>(Qt::FindDirectChildrenOnly); }
};

// Counts how often one press of a key arrives at any widget, and takes it away when it runs in a circle.
class KeyTrace : public QObject {
public:
    static constexpr int kCircle = 200;

    KeyTrace() { qApp->installEventFilter(this); }

    int arrivals = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return false;
        return ++arrivals > kCircle;
    }
};

QList<int> everyKey() {
    QList<int> keys;
    const QMetaEnum names = QMetaEnum::fromType<Qt::Key>();
    for (int i = 0; i < names.keyCount(); ++i) keys << names.value(i);
    return keys;
}

// What has the keyboard in turn: the panel itself, then each control that takes it.
QList<QWidget*> placesOfFocus(ToolPanel& panel) {
    QList<QWidget*> places{&panel};
    for (QWidget* child : panel.findChildren<QWidget*>())
        if (child->focusPolicy() != Qt::NoFocus) places << child;
    return places;
}

// Answers how many presses arrived.
int pressEveryKey(ToolPanel& panel, QWidget& focused) {
    int arrived = 0;
    for (const int key : everyKey()) {
        for (const Qt::KeyboardModifiers modifiers :
             {Qt::KeyboardModifiers(Qt::NoModifier), Qt::KeyboardModifiers(Qt::ShiftModifier),
              Qt::KeyboardModifiers(Qt::ControlModifier), Qt::KeyboardModifiers(Qt::AltModifier),
              Qt::KeyboardModifiers(Qt::ControlModifier | Qt::ShiftModifier),
              Qt::KeyboardModifiers(Qt::KeypadModifier)}) {
            panel.show();
            focused.setFocus(Qt::TabFocusReason);
            KeyTrace trace;
            pressKey(focused, key, modifiers);
            arrived += trace.arrivals > 0;
            if (trace.arrivals <= KeyTrace::kCircle) continue;
            CAPTURE(key);
            FAIL_CHECK("a key runs in a circle");
            return arrived;
        }
    }
    return arrived;
}

}  // namespace

TEST_CASE("every panel takes every key, with and without modifiers, wherever its focus is") {
    AllPanels all;
    const int presses = static_cast<int>(everyKey().size()) * 6;
    CHECK(presses > 2400);
    const QList<ToolPanel*> panels = all.panels();
    CHECK(panels.size() == 10);
    for (ToolPanel* panel : panels) {
        panel->ensureBuilt();
        for (QWidget* focused : placesOfFocus(*panel)) {
            CAPTURE(panel->metaObject()->className());
            CAPTURE(focused->objectName().toStdString());
            CHECK(pressEveryKey(*panel, *focused) == presses);
        }
        panel->hide();
    }
}

TEST_CASE("the arrows and page keys scroll the shortcuts where they do not fit") {
    QWidget main;
    ShortcutsPanel panel(&main);
    panel.resize(400, 200);
    panel.show();
    const QScrollBar& bar = *panel.findChild<QScrollArea*>()->verticalScrollBar();
    REQUIRE(bar.maximum() > 0);
    CHECK(pressKey(panel, Qt::Key_Down));
    CHECK(bar.value() == bar.singleStep());
    pressKey(panel, Qt::Key_PageDown);
    CHECK(bar.value() > bar.singleStep());
    pressKey(panel, Qt::Key_PageUp);
    pressKey(panel, Qt::Key_Up);
    CHECK(bar.value() == 0);
    CHECK_FALSE(pressKey(panel, Qt::Key_F5));
}
