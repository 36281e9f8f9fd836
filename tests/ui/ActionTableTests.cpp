#include <doctest/doctest.h>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QMetaEnum>
#include <map>
#include <set>
#include <string>

#include "app/ActionReceivers.h"
#include "engine/api/Log.h"
#include "record/AudioRecord.h"
#include "support/widgets/Actions.h"
#include "support/widgets/Gestures.h"
#include "support/widgets/LivingWindow.h"
#include "support/widgets/TestText.h"
#include "ui/actions/ActionTable.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/Slider.h"
#include "ui/windows/MainWindow.h"

using namespace qm;

namespace {

// Stands for the controller: remembers what it was sent.
struct Receiver {
    QStringList received;

    void skip_10() { received << "skip_10"; }
    void gainUpdate(double value) { received << QStringLiteral("gainUpdate %1").arg(value); }
};

struct FakeRecorder {
    int toggles = 0;

    void toggleRecordSession() { ++toggles; }
};

// The table with what the receiver does of it.
struct ReceivedTable {
    Receiver receiver;
    QMainWindow window;
    ActionTable table{&window};

    ReceivedTable() {
        table.setReceiver(ActionId::skip_10, receiver, &Receiver::skip_10);
        table.setReceiver(ActionId::gainUpdate, receiver, &Receiver::gainUpdate);
    }
};

QList<QKeySequence> keysOf(const char* name) {
    const ActionRow& row = actionRow(idOf(name));
    return {row.keys.begin(), row.keys.end()};
}

}  // namespace

TEST_CASE("every action has one row, one name and one who does it") {
    LivingWindow living;
    AudioRecord recorder(living.fixture.capture, living.controller.takes());
    receiveActions(living.window.actions(), recorder);
    const auto ids = QMetaEnum::fromType<ActionId>();
    CHECK(static_cast<int>(actionRows().size()) == ids.keyCount());
    std::set<ActionId> withRow;
    for (const ActionRow& row : actionRows()) withRow.insert(row.id);
    for (int i = 0; i < ids.keyCount(); ++i) {
        CAPTURE(std::string(ids.key(i)));
        const auto id = static_cast<ActionId>(ids.value(i));
        CHECK(withRow.contains(id));
        CHECK(actionNamed(actionName(id)) == id);
        CHECK(living.window.actions().hasReceiver(id));
    }
    CHECK_FALSE(actionNamed(QStringLiteral("nothing")).has_value());
}

TEST_CASE("no key and no action stands in the table twice") {
    std::map<QString, std::string> owners;
    std::set<std::string> names;
    for (const ActionRow& row : actionRows()) {
        CHECK(names.insert(actionName(row.id).toStdString()).second);
        for (const QKeySequence& key : row.keys) {
            CAPTURE(key.toString());
            CHECK_FALSE(key.isEmpty());
            CHECK(owners.emplace(key.toString(), actionName(row.id).toStdString()).second);
        }
    }
}

TEST_CASE("the table gives the player's keys to their actions") {
    using Keys = QList<QKeySequence>;
    CHECK(keysOf("openFile") == Keys{QKeySequence(Qt::CTRL | Qt::Key_O)});
    CHECK(keysOf("openAnySound") == Keys{QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O)});
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
        CAPTURE(actionName(row.id).toStdString());
        const QString slot = actionName(row.id);
        const bool steps = slot.startsWith(u"skip") || slot == u"speedUp" || slot == u"speedDown";
        CHECK(row.repeats == steps);
    }
}

TEST_CASE("the menus stand in order and carry the table's words, keys and repeats") {
    Outlets outlets;
    MainWindow window(outlets);
    QStringList menus;
    for (const QAction* action : window.menuBar()->actions()) menus << action->text();
    CHECK(menus == QStringList{"&File", "&Edit", "&Playback", "&Sound", "&Loop", "&Window", "&Help"});
    for (const ActionRow& row : actionRows()) {
        CAPTURE(actionName(row.id).toStdString());
        const QAction* action = window.actions().action(row.id);
        CHECK((action != nullptr) == (*row.menu != '\0'));
        if (!action) continue;
        CHECK(action->shortcuts() == QList<QKeySequence>(row.keys.begin(), row.keys.end()));
        CHECK(action->autoRepeat() == row.repeats);
        CHECK(action->text() == QString::fromUtf8(row.text));
    }
}

TEST_CASE("Open Any Sound stands in the File menu right after Open") {
    Outlets outlets;
    MainWindow window(outlets);
    const QList<QAction*> file = window.menuBar()->actions().first()->menu()->actions();
    REQUIRE(file.size() > 2);
    CHECK(file[0] == window.actions().action(ActionId::openFile));
    CHECK(file[1] == window.actions().action(ActionId::openAnySound));
    CHECK(file[1]->text() == QString::fromUtf8("Open Any Sound…"));
}

TEST_CASE_FIXTURE(ReceivedTable, "a bound control sends its action and says what it does") {
    ChipButton chip(QStringLiteral("−10"));
    table.bind(&chip, ActionId::skip_10);
    CHECK(chip.accessibleName() == "Skip back 10 seconds");
    CHECK(chip.toolTip() == "Skip back 10 seconds [Shift+Left]");
    chip.click();
    CHECK(receiver.received == QStringList{"skip_10"});
}

TEST_CASE_FIXTURE(ReceivedTable, "a bound slider sends its action with its value whenever the user moves it") {
    Slider slider;
    slider.resize(220, 24);
    slider.setStep(0.25);
    table.bind(&slider, ActionId::gainUpdate);
    slider.setValue(0.5);
    CHECK(receiver.received.isEmpty());
    pressKey(slider, Qt::Key_Up);
    CHECK(receiver.received == QStringList{"gainUpdate 0.75"});
}

TEST_CASE("an action goes to who does it, and to nobody before there is one") {
    FakeRecorder recorder;
    ReceivedTable received;
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    received.table.send(ActionId::toggleRecordSession);
    setLogSink({});
    CHECK(lines.size() == 1);
    received.table.setReceiver(ActionId::toggleRecordSession, recorder, &FakeRecorder::toggleRecordSession);
    received.table.send(ActionId::toggleRecordSession);
    CHECK(recorder.toggles == 1);
    CHECK(received.receiver.received.isEmpty());
}

TEST_CASE_FIXTURE(ReceivedTable, "what stands before an action is done first, and may take its place") {
    std::vector<ActionId> told;
    QObject::connect(&table, &ActionTable::sent, &table, [&](ActionId id) { told.push_back(id); });
    bool isSent = true;
    table.setPreparation(ActionId::skip_10, [&] {
        receiver.received << QStringLiteral("before");
        return isSent;
    });
    table.send(ActionId::skip_10);
    CHECK(receiver.received == QStringList{"before", "skip_10"});
    isSent = false;
    table.send(ActionId::skip_10);
    CHECK(receiver.received == QStringList{"before", "skip_10", "before"});
    CHECK(told == std::vector{ActionId::skip_10});
}

TEST_CASE_FIXTURE(ReceivedTable,
                  "several things may stand before an action, and the first that takes its place is the last") {
    bool isSent = false;
    table.setPreparation(ActionId::skip_10, [&] { return isSent; });
    table.setPreparation(ActionId::skip_10, [&] {
        receiver.received << QStringLiteral("second");
        return true;
    });
    table.send(ActionId::skip_10);
    CHECK(receiver.received.isEmpty());
    isSent = true;
    table.send(ActionId::skip_10);
    CHECK(receiver.received == QStringList{"second", "skip_10"});
}

TEST_CASE_FIXTURE(ReceivedTable, "an action that nobody does, and one that lacks its value, leave a log line") {
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    table.send(ActionId::skip10);
    table.send(ActionId::gainUpdate);
    setLogSink({});
    CHECK(lines.size() == 2);
    CHECK(receiver.received.isEmpty());
}
