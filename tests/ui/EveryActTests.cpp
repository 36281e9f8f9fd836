// Whatever the user can do is answered: something is seen that was not there before, or it is told.
#include <doctest/doctest.h>

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QMap>
#include <QSet>

#include "app/ActionReceivers.h"
#include "app/TakePreparation.h"
#include "record/AudioRecord.h"
#include "record/RecorderStatus.h"
#include "support/widgets/Actions.h"
#include "support/widgets/LivingWindow.h"
#include "support/widgets/TestText.h"
#include "ui/controls/Motion.h"
#include "ui/windows/AboutPanel.h"
#include "ui/windows/ExportPanel.h"
#include "ui/windows/LevelMetersPanel.h"
#include "ui/windows/PreferencesWindow.h"
#include "ui/windows/RecorderWindows.h"
#include "ui/windows/SpokenDeeds.h"
#include "ui/windows/TrackInfoPanel.h"
#include "ui/windows/VideoPanel.h"

using namespace qm;

namespace {

enum class Standing { EmptyList, NothingLoaded, Loaded };

// The whole program, as far as it is seen, in one of the states that a user meets first.
struct Program : LivingWindow {
    AudioRecord recorder{fixture.capture, controller.takes()};
    AudioRecordOutlets recorderOutlets;
    SpokenDeeds deeds{window.actions(), controller, controller.abLoop(), outlets, controller.notices()};
    LevelMetersPanel meters{outlets, &window};
    TrackInfoPanel info{outlets, &window};
    VideoPanel video{outlets, &window};
    ExportPanel exporting{outlets, window.actions(), &window};
    RecordingWindow recording{outlets, window.actions(), &window,
                              [this] { return recorderStatus(controller, controller.isRecording); }};
    RecorderWindow ownRecorder{recorderOutlets, window.actions(), &window,
                               [this] { return recorderStatus(recorder, recorder.recordingStatus); }};
    PreferencesWindow preferences{outlets, window.actions(), &window};
    AboutPanel about{outlets, &window};
    int told = 0, asked = 0;

    explicit Program(Standing standing) {
        receiveActions(window.actions(), recorder);
        prepareTakes(window.actions(), controller, recorder);
        recorder.awakeFromNib(recorderOutlets);
        recorder.setRunSavePanel([this](QWidget*, const QString&, const QString&) -> std::optional<QString> {
            ++asked;
            return std::nullopt;
        });
        controller.setUpdaterMaker([this] { ++asked; });
        QObject::connect(&window, &MainWindow::quitRequested, &window, [this] { ++asked; });
        QObject::connect(&window, &MainWindow::guideRequested, &window, [this] { ++asked; });
        QObject::connect(&controller.notices(), &Notices::told, &window, [this] { ++told; });
        setMotionWanted(false);
        if (standing != Standing::EmptyList) addTrack(QStringLiteral("/music/b.mp3"));
        if (standing == Standing::Loaded) loadTrack();
        window.show();
        state.refresh();
    }
    ~Program() { setMotionWanted(true); }

    // Every window's picture, by its name.
    QMap<QString, QImage> seen() {
        controller.positionClock().updateSlider();
        state.refresh();
        QCoreApplication::processEvents();
        QMap<QString, QImage> pictures;
        for (QWidget* shown : QApplication::topLevelWidgets())
            if (shown->isVisible()) pictures.insert(shown->objectName(), shown->grab().toImage());
        return pictures;
    }
    int questions() const {
        return asked + fixture.log.count("alert ") + fixture.log.count("open panel") + fixture.log.count("save panel ");
    }
    void doAct(const ActionRow& row);
};

Slider* sliderOf(const Outlets& outlets, const QString& slot) {
    const QMap<QString, Slider*> sliders = {
        {"cueUpdate", outlets.cueSlider},         {"speedUpdate", outlets.speedSlider},
        {"pitchUpdate", outlets.pitchSlider},     {"gainUpdate", outlets.gainSlider},
        {"balanceUpdate", outlets.balanceSlider}, {"bassUpdate", outlets.bassSlider},
        {"trebleUpdate", outlets.trebleSlider}};
    return sliders.value(slot);
}

// As its key, its menu item or its control does it. What has none of them just now cannot be done.
void Program::doAct(const ActionRow& row) {
    const QString slot = actionName(row.id);
    if (Slider* slider = sliderOf(outlets, slot)) return slider->moveByUser(slider->maximum() * 0.8);
    if (QAction* action = window.actions().action(idOf(slot))) return action->trigger();
    window.actions().send(idOf(slot));
}

// The act that opens the window in which this one has its control; empty for the main window's own.
QString openerOf(const QString& slot) {
    static const QMap<QString, QString> openers = {{"toggleRecordSession", "displayAudioRecordWindow"},
                                                   {"audioRecordClose", "audioRecordOpen"},
                                                   {"toggleGeneralPreferenceView", "toggleUpdatePreferenceView"},
                                                   {"toggleUpdatePreferenceView", "openPrefsWindow"},
                                                   {"toggleAudioDefaultPreferenceView", "openPrefsWindow"},
                                                   {"updateDefaultAudioPref", "toggleAudioDefaultPreferenceView"}};
    return openers.value(slot);
}

void openFor(Program& program, const QString& slot) {
    const QString opener = openerOf(slot);
    if (opener.isEmpty()) return;
    openFor(program, opener);
    program.window.actions().send(idOf(opener));
}

bool canBeDone(Program& program, const QString& slot) {
    // A check box or a tile shows what it is set to before its action is sent, and nothing is being exported.
    static const QSet<QString> seenBefore = {"toggleAudioLevelsPref", "toggleSoftwareUpdateCheck", "toggleTextColor",
                                             "cancelExport"};
    const QAction* action = program.window.actions().action(idOf(slot));
    return !seenBefore.contains(slot) && (!action || action->isEnabled());
}

void checkAnswered(Standing standing, const ActionRow& row) {
    CAPTURE(actionName(row.id).toStdString());
    const QString slot = actionName(row.id);
    Program program(standing);
    if (!canBeDone(program, slot)) return;
    openFor(program, slot);
    program.seen();
    const auto before = program.seen();
    REQUIRE(program.seen() == before);  // or any act would seem to be answered
    const int questions = program.questions();
    program.told = 0;
    program.doAct(row);
    const bool isAnswered = program.told > 0 || program.questions() > questions || program.seen() != before;
    CHECK(isAnswered);
}

}  // namespace

TEST_CASE("every act is seen or told while the list is empty") {
    for (const ActionRow& row : actionRows()) checkAnswered(Standing::EmptyList, row);
}

TEST_CASE("every act is seen or told while tracks are listed and none is loaded") {
    for (const ActionRow& row : actionRows()) checkAnswered(Standing::NothingLoaded, row);
}

TEST_CASE("every act is seen or told while a track is loaded") {
    for (const ActionRow& row : actionRows()) checkAnswered(Standing::Loaded, row);
}
