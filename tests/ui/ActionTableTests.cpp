#include <doctest/doctest.h>

#include <QAction>
#include <QMenuBar>
#include <QMetaMethod>
#include <map>
#include <set>
#include <string>

#include "app/QMController.h"
#include "engine/api/Log.h"
#include "record/AudioRecord.h"
#include "support/widgets/Gestures.h"
#include "support/widgets/TestText.h"
#include "ui/ActionTable.h"
#include "ui/PlayerKeys.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/Slider.h"
#include "ui/windows/ListKeys.h"
#include "ui/windows/MainWindow.h"

using namespace qm;

namespace {

bool hasSlot(const QMetaObject& type, const char* name) {
    return type.indexOfSlot(QByteArray(name).append("()")) >= 0;
}

// Stands for the controller: remembers what it was sent.
class Receiver : public QObject {
    Q_OBJECT

public:
    QStringList received;

public slots:
    void skip_10() { received << "skip_10"; }
    void gainUpdate() { received << "gainUpdate"; }
};

class FakeRecorder : public QObject {
    Q_OBJECT

public:
    int toggles = 0;

public slots:
    void toggleRecordSession() { ++toggles; }
};

QList<QKeySequence> keysOf(const char* slot) {
    const ActionRow* row = actionRow(QString::fromLatin1(slot));
    REQUIRE(row);
    return {row->keys.begin(), row->keys.end()};
}

}  // namespace

TEST_CASE("every action of the table exists on its receiver") {
    for (const ActionRow& row : actionRows()) {
        CAPTURE(row.slot);
        const QMetaObject* type = &QMController::staticMetaObject;
        if (row.owner == ActionRow::Window) type = &MainWindow::staticMetaObject;
        if (row.owner == ActionRow::Keys) type = &PlayerKeys::staticMetaObject;
        if (row.owner == ActionRow::List) type = &ListKeys::staticMetaObject;
        if (row.owner == ActionRow::Recorder) type = &AudioRecord::staticMetaObject;
        CHECK(hasSlot(*type, row.slot));
    }
}

TEST_CASE("no key and no action stands in the table twice") {
    std::map<QString, std::string> owners;
    std::set<std::string> names;
    for (const ActionRow& row : actionRows()) {
        CHECK(names.insert(row.slot).second);
        for (const QKeySequence& key : row.keys) {
            CAPTURE(key.toString());
            CHECK_FALSE(key.isEmpty());
            CHECK(owners.emplace(key.toString(), row.slot).second);
        }
    }
}

TEST_CASE("the table gives the player's keys to their actions") {
    using Keys = QList<QKeySequence>;
    CHECK(keysOf("toggleStartStop") == Keys{QKeySequence(Qt::Key_Space)});
    CHECK(keysOf("playBackward") == Keys{QKeySequence(Qt::SHIFT | Qt::Key_Space)});
    CHECK(keysOf("pause") == Keys{QKeySequence(Qt::Key_P)});
    CHECK(keysOf("goToStart") == Keys{QKeySequence(Qt::Key_Home), QKeySequence(Qt::Key_0)});
    CHECK(keysOf("skip1") == Keys{QKeySequence(Qt::Key_Right)});
    CHECK(keysOf("skip10") == Keys{QKeySequence(Qt::SHIFT | Qt::Key_Right)});
    CHECK(keysOf("skip30") == Keys{QKeySequence(Qt::ALT | Qt::Key_Right)});
    CHECK(keysOf("skip60") == Keys{QKeySequence(Qt::CTRL | Qt::Key_Right)});
    CHECK(keysOf("skip300") == Keys{QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Right)});
    CHECK(keysOf("skipBack") == Keys{QKeySequence(Qt::Key_Left)});
    CHECK(keysOf("skip_10") == Keys{QKeySequence(Qt::SHIFT | Qt::Key_Left)});
    CHECK(keysOf("skip_60") == Keys{QKeySequence(Qt::CTRL | Qt::Key_Left)});
    CHECK(keysOf("speedUp") == Keys{QKeySequence(Qt::Key_Equal), QKeySequence(Qt::Key_Plus)});
    CHECK(keysOf("speedDown") == Keys{QKeySequence(Qt::Key_Minus)});
    CHECK(keysOf("loopSwitch") == Keys{QKeySequence(Qt::Key_L)});
    CHECK(keysOf("markAUpdate") == Keys{QKeySequence(Qt::Key_BracketLeft), QKeySequence(Qt::Key_A)});
    CHECK(keysOf("markBUpdate") == Keys{QKeySequence(Qt::Key_BracketRight), QKeySequence(Qt::Key_B)});
    CHECK(keysOf("resetMarks") == Keys{QKeySequence(Qt::SHIFT | Qt::Key_L)});
    CHECK(keysOf("audioStartRecord") == Keys{QKeySequence(Qt::CTRL | Qt::Key_R)});
    CHECK(keysOf("audioRecordOpen") == Keys{QKeySequence(Qt::CTRL | Qt::Key_4)});
    CHECK(keysOf("displayAudioRecordWindow") == Keys{QKeySequence(Qt::CTRL | Qt::Key_5)});
    CHECK(keysOf("removeListEntry") == Keys{QKeySequence(Qt::Key_Delete), QKeySequence(Qt::Key_Backspace)});
    CHECK(keysOf("nextTrack") == Keys{QKeySequence(Qt::Key_Period), QKeySequence(Qt::CTRL | Qt::Key_Down)});
    CHECK(keysOf("previousTrack") == Keys{QKeySequence(Qt::Key_Comma), QKeySequence(Qt::CTRL | Qt::Key_Up)});
    CHECK(keysOf("findTrack") == Keys{QKeySequence(Qt::CTRL | Qt::Key_F)});
    CHECK(keysOf("goToPlayList") == Keys{QKeySequence(Qt::Key_F6)});
    CHECK(keysOf("volumeMax").isEmpty());
    CHECK(keysOf("rowDoubleClicked").isEmpty());
}

TEST_CASE("skips and speed steps repeat while the key is held, switches do not") {
    for (const ActionRow& row : actionRows()) {
        CAPTURE(row.slot);
        const QString slot = QString::fromLatin1(row.slot);
        const bool steps = slot.startsWith(u"skip") || slot == u"speedUp" || slot == u"speedDown";
        CHECK(row.repeats == steps);
    }
}

TEST_CASE("the menus stand in order and carry the table's words, keys and repeats") {
    Outlets outlets;
    QObject controller;
    MainWindow window(outlets, &controller);
    QStringList menus;
    for (const QAction* action : window.menuBar()->actions()) menus << action->text();
    CHECK(menus == QStringList{"&File", "&Edit", "&Playback", "&Sound", "&Loop", "&Window", "&Help"});
    for (const ActionRow& row : actionRows()) {
        CAPTURE(row.slot);
        const QAction* action = window.actions().action(QString::fromLatin1(row.slot));
        CHECK((action != nullptr) == (*row.menu != '\0'));
        if (!action) continue;
        CHECK(action->shortcuts() == QList<QKeySequence>(row.keys.begin(), row.keys.end()));
        CHECK(action->autoRepeat() == row.repeats);
        CHECK(action->text() == QString::fromUtf8(row.text));
    }
}

TEST_CASE("a bound control sends its action by name and says what it does") {
    Receiver receiver;
    QMainWindow window;
    ActionTable table(&window, &receiver);
    ChipButton chip(QStringLiteral("−10"));
    table.bind(&chip, QStringLiteral("skip_10"));
    CHECK(chip.accessibleName() == "Skip back 10 seconds");
    CHECK(chip.toolTip() == "Skip back 10 seconds [Shift+Left]");
    chip.click();
    CHECK(receiver.received == QStringList{"skip_10"});

    Slider slider;
    slider.resize(220, 24);
    table.bind(&slider, QStringLiteral("gainUpdate"));
    slider.setValue(0.5);
    CHECK(receiver.received.size() == 1);
    pressKey(slider, Qt::Key_Up);
    CHECK(receiver.received == QStringList{"skip_10", "gainUpdate"});
}

TEST_CASE("an action goes to the receiver of its owner, and to none before there is one") {
    FakeRecorder recorder;
    Receiver receiver;
    QMainWindow window;
    ActionTable table(&window, &receiver);
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    table.send(QStringLiteral("toggleRecordSession"));
    setLogSink({});
    CHECK(lines.size() == 1);
    table.setReceiver(ActionRow::Recorder, &recorder);
    table.send(QStringLiteral("toggleRecordSession"));
    CHECK(recorder.toggles == 1);
    CHECK(receiver.received.isEmpty());
}

TEST_CASE("what stands before an action is done first, and may take its place") {
    Receiver receiver;
    QMainWindow window;
    ActionTable table(&window, &receiver);
    QStringList told;
    QObject::connect(&table, &ActionTable::sent, &table, [&](const QString& slot) { told << slot; });
    bool isSent = true;
    table.setPreparation(QStringLiteral("skip_10"), [&] {
        receiver.received << QStringLiteral("before");
        return isSent;
    });
    table.send(QStringLiteral("skip_10"));
    CHECK(receiver.received == QStringList{"before", "skip_10"});
    isSent = false;
    table.send(QStringLiteral("skip_10"));
    CHECK(receiver.received == QStringList{"before", "skip_10", "before"});
    CHECK(told == QStringList{"skip_10"});
}

TEST_CASE("several things may stand before an action, and the first that takes its place is the last") {
    Receiver receiver;
    QMainWindow window;
    ActionTable table(&window, &receiver);
    bool isSent = false;
    table.setPreparation(QStringLiteral("skip_10"), [&] { return isSent; });
    table.setPreparation(QStringLiteral("skip_10"), [&] {
        receiver.received << QStringLiteral("second");
        return true;
    });
    table.send(QStringLiteral("skip_10"));
    CHECK(receiver.received.isEmpty());
    isSent = true;
    table.send(QStringLiteral("skip_10"));
    CHECK(receiver.received == QStringList{"second", "skip_10"});
}

TEST_CASE("an action that nobody knows leaves a log line") {
    Receiver receiver;
    QMainWindow window;
    ActionTable table(&window, &receiver);
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    table.send(QStringLiteral("skip10"));
    table.send(QStringLiteral("nothing"));
    setLogSink({});
    CHECK(lines.size() == 2);
    CHECK(receiver.received.isEmpty());
}

#include "ActionTableTests.moc"
