#include "ui/windows/RecorderWindows.h"

#include <doctest/doctest.h>

#include <QFile>
#include <QImage>
#include <QShortcut>

#include "app/ActionReceivers.h"
#include "support/widgets/Actions.h"
#include "support/widgets/ControllerFixture.h"
#include "support/widgets/Gestures.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/ImageView.h"
#include "ui/controls/InputLevels.h"
#include "ui/controls/MeterView.h"
#include "ui/windows/LevelMetersPanel.h"
#include "ui/windows/MainToolbar.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/MainWindowState.h"

using namespace qm;

namespace {

// The real windows on the fake capture engine.
struct RecorderDesk {
    ControllerFixture fixture;
    QMController& controller = fixture.init();
    AudioRecord audioRecord{fixture.capture, controller.takes()};
    Outlets outlets;
    AudioRecordOutlets recorderOutlets;
    MainWindow window{outlets};
    LevelMetersPanel meters{outlets, &window};
    RecordingWindow recording{outlets, window.actions(), &window,
                              [this] { return recorderStatus(controller, controller.isRecording); }};
    RecorderWindow recorder{recorderOutlets, window.actions(), &window,
                            [this] { return recorderStatus(audioRecord, audioRecord.recordingStatus); }};
    MainWindowState state{window, controller, controller, controller.abLoop(), outlets};

    RecorderDesk() {
        receiveActions(window.actions(), controller);
        receiveActions(window.actions(), audioRecord);
        awakeWith(controller, outlets);
        audioRecord.awakeFromNib(recorderOutlets);
        audioRecord.setRunSavePanel([this](QWidget*, const QString& folder, const QString& name) {
            return fixture.dialogs.savePanel(folder, name);
        });
        fixture.log.take();
    }

    static QString statusOf(RecorderPanel& panel) {
        panel.refresh();
        return panel.findChild<QLabel*>(QStringLiteral("recordingStatusLine"))->text();
    }
    static QList<LevelIndicator*> bars(RecorderPanel& panel) {
        panel.refresh();
        return panel.findChildren<LevelIndicator*>();
    }
    PushButton* closeButton() { return recording.findChild<PushButton*>(); }
    void send(const char* slot) { window.actions().send(idOf(slot)); }
};

}  // namespace

TEST_CASE_FIXTURE(RecorderDesk, "the windows carry the outlets under their names, and have the sizes of the design") {
    CHECK(outlets.audioRecordingWindow->objectName() == "audioRecordingWindow");
    CHECK(outlets.audioRecordingWindow->size() == QSize(380, 266));
    CHECK(outlets.audioRecordingWindow->windowTitle() == "Recording");
    CHECK(outlets.audioRecordingRecordButton->objectName() == "audioRecordingRecordButton");
    CHECK(outlets.audioRecordingTime->objectName() == "audioRecordingTime");
    CHECK(outlets.audioRecordingTime->text() == "00:00:00");
    CHECK(outlets.audioRecordButton->objectName() == "audioRecordButton");
    CHECK(outlets.audioRecordStatus->objectName() == "audioRecordStatus");
    CHECK(recorderOutlets.recordingWindow->objectName() == "recordingWindow");
    CHECK(recorderOutlets.recordingWindow->size() == QSize(312, 192));
    CHECK(recorderOutlets.recordingWindow->windowTitle() == "Recorder");
    CHECK(recorderOutlets.recordingStartStopButton->objectName() == "recordingStartStopButton");
    CHECK(recorderOutlets.audioRecordingTime->objectName() == "audioRecordingTime");
    CHECK(recorderOutlets.audioRecordingTime != outlets.audioRecordingTime);
}

TEST_CASE_FIXTURE(RecorderDesk, "every control of the recorders says what it is and what it does") {
    CHECK(outlets.audioRecordButton->accessibleName() == "Record");
    CHECK(outlets.audioRecordButton->toolTip() == "Start or stop recording [Ctrl+R]");
    CHECK(outlets.audioRecordStatus->accessibleName() == "Recording light");
    CHECK(outlets.audioRecordingRecordButton->accessibleName() == "Record");
    CHECK(recorderOutlets.recordingStartStopButton->accessibleName() == "Record");
    CHECK(closeButton()->accessibleName() == "Close");
    for (RecorderPanel* panel : {static_cast<RecorderPanel*>(&recording), static_cast<RecorderPanel*>(&recorder)}) {
        CHECK(panel->findChild<TimeLabel*>()->accessibleName() == "Recording time");
        CHECK(panel->findChild<InputLevels*>()->accessibleName() == "Input level");
    }
}

TEST_CASE_FIXTURE(RecorderDesk, "the status says what the recorder does") {
    CHECK(statusOf(recording) == "Ready to record");
    send("audioRecordOpen");
    CHECK(statusOf(recording) == "Ready to record");
    send("audioStartRecord");
    CHECK(statusOf(recording) == "Recording from the default input");
    CHECK(statusOf(recorder) == "Ready to record");
    fixture.capture.error = Error{ErrorCategory::Device, "gone"};
    CHECK(statusOf(recording) == "The sound input has gone. Stop to keep the recording.");
    fixture.capture.error = Error{ErrorCategory::Unwritable, "full"};
    CHECK(statusOf(recording) == "The disk takes no more. Stop to keep the recording.");
    send("audioStartRecord");
    CHECK(statusOf(recording) == "Ready to record");
}

TEST_CASE_FIXTURE(RecorderDesk, "without an input the status says so and there is no level to show") {
    fixture.capture.hasDevice = false;
    send("audioRecordOpen");
    send("displayAudioRecordWindow");
    for (RecorderPanel* panel : {static_cast<RecorderPanel*>(&recording), static_cast<RecorderPanel*>(&recorder)}) {
        CHECK(statusOf(*panel) == "No sound input found.");
        CHECK_FALSE(panel->findChild<InputLevels*>()->isVisible());
    }
    fixture.capture.hasDevice = true;
    send("displayAudioRecordWindow");
    CHECK(statusOf(recorder) == "Ready to record");
    CHECK(recorder.findChild<InputLevels*>()->isVisible());
}

TEST_CASE_FIXTURE(RecorderDesk, "an input that has gone is missed when the next recording is to begin") {
    send("audioRecordOpen");
    controller.captureSession->stopRunning();
    fixture.capture.runs = false;
    CHECK(statusOf(recording) == "Ready to record");
    send("audioStartRecord");
    CHECK(statusOf(recording) == "No sound input found.");
    fixture.capture.runs = true;
    send("audioStartRecord");
    CHECK(statusOf(recording) == "Recording from the default input");
}

TEST_CASE_FIXTURE(RecorderDesk, "light, round button and spoken state follow the recording") {
    send("audioRecordOpen");
    const auto* light = recording.findChild<ImageView*>();
    const auto look = [&] {
        recording.refresh();
        state.refresh();
        return Events{light->imageName().toStdString(), outlets.audioRecordingRecordButton->imageName().toStdString(),
                      outlets.audioRecordingRecordButton->accessibleDescription().toStdString(),
                      outlets.audioRecordButton->accessibleDescription().toStdString(),
                      outlets.audioRecordStatus->accessibleDescription().toStdString()};
    };
    const Events idle{"db_rec_ind_off.png", "RecordingControls_Record.png", "not recording", "not recording",
                      "not recording"};
    CHECK(look() == idle);
    outlets.audioRecordingRecordButton->click();
    CHECK(controller.isRecording);
    CHECK(look() == Events{"db_rec_ind_on.png", "RecordingControls_Stop.png", "recording", "recording", "recording"});
    outlets.audioRecordButton->click();
    CHECK(look() == idle);
}

TEST_CASE_FIXTURE(RecorderDesk, "the level has three decibels a cell, and one more cell for the peak") {
    send("audioRecordOpen");
    fixture.capture.levels = {{-60, -30}, {-96, -3}};
    auto cells = bars(recording);
    REQUIRE(cells.size() == 2);
    CHECK(cells[0]->litCells() == 0);
    CHECK(cells[1]->litCells() == 10);
    QImage bar(cells[1]->size(), QImage::Format_RGB32);
    bar.fill(Qt::black);
    cells[1]->render(&bar, {}, {}, QWidget::RenderFlags());
    const auto brightness = [&](int cell) { return bar.pixelColor(cell * 8 + 3, 2).value(); };
    CHECK(brightness(9) > 150);
    CHECK(brightness(10) < 40);
    CHECK(brightness(18) > 150);
    CHECK(brightness(19) < 40);
    controller.captureSession->stopRunning();
    CHECK(bars(recording)[1]->litCells() == 0);
}

TEST_CASE_FIXTURE(RecorderDesk, "closing the recording window in any way is the action") {
    fixture.dialogs.savePath = fixture.home.path() + QStringLiteral("/Desktop/Quillmere.mov");
    send("audioRecordOpen");
    const auto closes = [&](const std::function<void()>& close) {
        send("audioRecordOpen");
        send("audioStartRecord");
        REQUIRE(controller.isRecording);
        close();
        CHECK_FALSE(controller.isRecording);
        CHECK_FALSE(recording.isVisible());
    };
    closes([&] { closeButton()->click(); });
    closes([&] { recording.close(); });
    closes([&] {
        for (QShortcut* shortcut : recording.findChildren<QShortcut*>())
            if (shortcut->key() == QKeySequence(Qt::Key_Escape)) emit shortcut->activated();
    });
    CHECK(fixture.log.count("save panel") == 3);
}

TEST_CASE_FIXTURE(RecorderDesk, "closing the recorder's panel stops a recording and asks before the panel goes") {
    fixture.dialogs.savePath = fixture.home.supportFolder() + QStringLiteral("/Quillmere.mov");
    send("displayAudioRecordWindow");
    send("toggleRecordSession");
    fixture.log.take();
    fixture.log.atEvent = [&](const std::string&) { CHECK(recorder.isVisible()); };
    recorder.close();
    fixture.log.atEvent = {};
    CHECK(fixture.log.count("save panel") == 1);
    CHECK_FALSE(recorder.isVisible());
    CHECK_FALSE(audioRecord.recordingStatus);
    CHECK(QFile::exists(*fixture.dialogs.savePath));
}

TEST_CASE_FIXTURE(RecorderDesk, "closing the recorder's panel without a recording only hides it") {
    send("displayAudioRecordWindow");
    fixture.log.take();
    recorder.close();
    CHECK_FALSE(recorder.isVisible());
    CHECK(fixture.log.take().empty());
    CHECK(audioRecord.captureSession->isRunning());
}

TEST_CASE_FIXTURE(RecorderDesk, "the tool is lit while the recording window is shown") {
    ToolButton* tool = window.tools().tool(ActionId::audioRecordOpen);
    REQUIRE(tool);
    state.refresh();
    CHECK_FALSE(tool->isOn());
    tool->click();
    state.refresh();
    CHECK(recording.isVisible());
    CHECK(tool->isOn());
    recording.close();
    state.refresh();
    CHECK_FALSE(tool->isOn());
}

TEST_CASE_FIXTURE(RecorderDesk, "a status too wide for one line goes on in a second one") {
    StatusLine line(nullptr);
    line.resize(180, 36);
    line.setText(QStringLiteral("Ready to record"));
    const auto inkBelow = [&](int top) {
        QImage image(line.size(), QImage::Format_RGB32);
        image.fill(Qt::black);
        line.render(&image, {}, {}, QWidget::RenderFlags());
        for (int y = top; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y).value() > 100) return true;
        return false;
    };
    CHECK(inkBelow(0));
    CHECK_FALSE(inkBelow(19));
    line.setText(QStringLiteral("Recording from the default input"));
    CHECK(line.textWidth() > 180);
    CHECK(inkBelow(19));
}

TEST_CASE_FIXTURE(RecorderDesk, "no control has the focus when a window comes up, and Tab reaches the button") {
    send("audioRecordOpen");
    CHECK_FALSE(qobject_cast<FaceButton*>(recording.focusWidget()));
    outlets.audioRecordingRecordButton->setFocus(Qt::TabFocusReason);
    CHECK(recording.focusWidget() == outlets.audioRecordingRecordButton);
}

TEST_CASE_FIXTURE(RecorderDesk, "the recorder's status keeps clear of the window's edge") {
    const auto* line = recorder.findChild<StatusLine*>();
    CHECK(line->geometry().right() < recorder.width() - 12);
    CHECK(line->height() >= 36);
}

TEST_CASE_FIXTURE(RecorderDesk, "a panel that is shown first keeps clear of those that are there") {
    window.move(0, 0);
    window.show();
    meters.show();
    send("audioRecordOpen");
    CHECK_FALSE(recording.frameGeometry().intersects(meters.frameGeometry()));
}
