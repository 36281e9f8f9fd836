#include "record/AudioRecord.h"

#include <doctest/doctest.h>

#include <QDir>
#include <QFile>

#include "support/widgets/ControllerFixture.h"
#include "ui/controls/ImageView.h"

using namespace qm;

namespace {

const Events kSetUp{"session",   "default sound input", "open device",   "device input",
                    "add input", "movie file output",   "start running", "add output"};

struct StandAlone {
    EventLog log;
    TestHome home{log};
    ScriptedDialogs dialogs{log};
    FakeCapture capture{log};
    QWidget window;
    AudioRecordOutlets outlets{&window, new ImageButton(QStringLiteral("as laid out"), &window),
                               new TimeLabel(QStringLiteral("00:00:00"), &window)};
    Notices notices;
    Outlets controls;
    Takes takes{notices, controls};
    AudioRecord recorder{capture, takes};
    QString source = home.supportFolder() + QStringLiteral("/Quillmere.mov");
    QDateTime now = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000);

    StandAlone() {
        recorder.awakeFromNib(outlets);
        recorder.setNow([this] { return now; });
        recorder.setRunSavePanel(
            [this](QWidget*, const QString& folder, const QString& name) { return dialogs.savePanel(folder, name); });
    }

    void record() {
        recorder.displayAudioRecordWindow();
        recorder.toggleRecordSession();
        log.take();
    }
    void tick(double seconds) {
        now = now.addMSecs(static_cast<qint64>(seconds * 1000));
        fire(recorder.audioRecordTimer.get());
    }
    QString image() const { return outlets.recordingStartStopButton->imageName(); }
    std::string saveEvent() const { return "save panel " + home.path().toStdString() + "/Music Quillmere.mov"; }
};

const QString kRecordImage = QStringLiteral("RecordingControls_Record.png");
const QString kStopImage = QStringLiteral("RecordingControls_Stop.png");

}  // namespace

TEST_CASE_FIXTURE(StandAlone, "a new recorder is idle and takes its two images when it wakes") {
    AudioRecord fresh(capture, takes);
    CHECK_FALSE(fresh.recordingStatus);
    CHECK(fresh.recordImage.isEmpty());
    fresh.awakeFromNib(outlets);
    CHECK(fresh.recordImage == kRecordImage);
    CHECK(fresh.stopImage == kStopImage);
}

TEST_CASE_FIXTURE(StandAlone, "displaying brings the panel forward before it sets up") {
    log.atEvent = [&](const std::string&) { CHECK(window.isVisible()); };
    recorder.displayAudioRecordWindow();
    log.atEvent = {};
    CHECK(log.take() == kSetUp);
}

TEST_CASE_FIXTURE(StandAlone, "set-up stops only at a session that runs, and otherwise builds a new one") {
    recorder.displayAudioRecordWindow();
    log.take();
    recorder.displayAudioRecordWindow();
    CHECK(log.take().empty());
    recorder.captureSession->stopRunning();
    log.take();
    recorder.displayAudioRecordWindow();
    CHECK(log.take() == kSetUp);
}

TEST_CASE_FIXTURE(StandAlone, "a failed set-up is logged and tried again the next time") {
    capture.hasDevice = false;
    recorder.displayAudioRecordWindow();
    CHECK(log.take() ==
          Events{"session", "default sound input", "log setupAudioRecordSession: Unable to open audio device."});
    CHECK_FALSE(recorder.audioDevice);
    capture.hasDevice = true;
    capture.addsInput = false;
    recorder.displayAudioRecordWindow();
    CHECK(log.take() == Events{"session", "default sound input", "open device", "device input", "add input",
                               "log setupAudioRecordSession: Unable to setup audio capture."});
    capture.addsInput = true;
    recorder.displayAudioRecordWindow();
    CHECK(log.take() == kSetUp);
}

TEST_CASE_FIXTURE(StandAlone, "an output that cannot be made is not noticed") {
    capture.makesOutput = false;
    recorder.displayAudioRecordWindow();
    CHECK(log.count("log ") == 0);
}

TEST_CASE_FIXTURE(StandAlone, "the toggle shows the stop image first and then starts") {
    recorder.displayAudioRecordWindow();
    log.take();
    log.atEvent = [&](const std::string&) {
        CHECK(image() == kStopImage);
        CHECK(recorder.recordingStatus);
        CHECK(recorder.audioRecordStartTime == now);
        REQUIRE(recorder.audioRecordTimer);
        CHECK(recorder.audioRecordTimer->interval() == 1000);
    };
    recorder.toggleRecordSession();
    log.atEvent = {};
    CHECK(log.take() == Events{"record " + source.toStdString()});
    CHECK(recorder.recordingStatus);
}

TEST_CASE_FIXTURE(StandAlone, "the support folder is made, and a file that was left there is overwritten") {
    record();
    CHECK(QFile::exists(source));
    recorder.captureMovieFileOutput->recordToOutputFileURL(std::nullopt);
    recorder.recordingStatus = false;
    log.atEvent = [&](const std::string& event) {
        if (event.starts_with("record /")) CHECK_FALSE(QFile::exists(source));
    };
    recorder.startAudioRecording();
    log.atEvent = {};
    CHECK(QFile::exists(source));
}

TEST_CASE_FIXTURE(StandAlone, "without a device the toggle shows the stop image although nothing records") {
    capture.hasDevice = false;
    recorder.displayAudioRecordWindow();
    recorder.toggleRecordSession();
    CHECK(image() == kStopImage);
    CHECK_FALSE(recorder.recordingStatus);
    CHECK_FALSE(recorder.audioRecordTimer);
    recorder.toggleRecordSession();
    CHECK(image() == kStopImage);
    CHECK(log.count("record ") == 0);
}

TEST_CASE_FIXTURE(StandAlone, "the toggle does nothing but show the image before any session was set up") {
    recorder.toggleRecordSession();
    CHECK(image() == kStopImage);
    CHECK(log.take() == Events{"log startAudioRecording: no capture session, nothing is recorded"});
}

TEST_CASE_FIXTURE(StandAlone, "the toggle shows the record image, stops, and clears the flag at last") {
    record();
    dialogs.savePath = source;
    log.atEvent = [&](const std::string&) {
        CHECK(image() == kRecordImage);
        CHECK(recorder.recordingStatus);
    };
    recorder.toggleRecordSession();
    log.atEvent = {};
    CHECK_FALSE(recorder.recordingStatus);
    CHECK(log.take() == Events{"record nil", "stop running", saveEvent()});
}

TEST_CASE_FIXTURE(StandAlone, "stopping ends the clock before it asks, and resets it after") {
    record();
    tick(12);
    CHECK(outlets.audioRecordingTime->text() == "00:00:12");
    QTimer* clock = recorder.audioRecordTimer.get();
    bool asked = false;
    log.atEvent = [&](const std::string& event) {
        if (!event.starts_with("save panel")) return;
        asked = true;
        CHECK_FALSE(recorder.audioRecordTimer);
        CHECK_FALSE(clock->isActive());
        CHECK(outlets.audioRecordingTime->text() == "00:00:12");
    };
    SUBCASE("kept") {
        dialogs.savePath = source;
    }
    SUBCASE("cancelled") {}
    recorder.toggleRecordSession();
    log.atEvent = {};
    CHECK(asked);
    CHECK(outlets.audioRecordingTime->text() == "00:00:00");
}

TEST_CASE_FIXTURE(StandAlone, "a chosen name moves the recording, and its own name keeps it") {
    record();
    QString kept = source;
    SUBCASE("own") {}
    SUBCASE("other") {
        kept = home.path() + QStringLiteral("/lick.mov");
    }
    dialogs.savePath = kept;
    recorder.toggleRecordSession();
    CHECK(QFile::exists(kept));
    CHECK(QFile::exists(source) == (kept == source));
    CHECK(window.isVisible());
}

TEST_CASE_FIXTURE(StandAlone, "a cancel hides the panel and deletes the recording") {
    record();
    recorder.toggleRecordSession();
    CHECK_FALSE(window.isVisible());
    CHECK_FALSE(QFile::exists(source));
}

TEST_CASE_FIXTURE(StandAlone, "starting while the flag is set clears it and stops instead") {
    record();
    dialogs.savePath = source;
    log.atEvent = [&](const std::string&) { CHECK_FALSE(recorder.recordingStatus); };
    recorder.startAudioRecording();
    log.atEvent = {};
    CHECK(log.take() == Events{"record nil", "stop running", saveEvent()});
    CHECK(image() == kStopImage);
}

TEST_CASE_FIXTURE(StandAlone, "a second recording starts the session again") {
    record();
    dialogs.savePath = source;
    recorder.toggleRecordSession();
    log.take();
    recorder.toggleRecordSession();
    CHECK(log.take() == Events{"start running", "record " + source.toStdString()});
}

TEST_CASE_FIXTURE(StandAlone, "a tick without a recording ends the clock") {
    record();
    tick(3);
    recorder.recordingStatus = false;
    tick(1);
    CHECK_FALSE(recorder.audioRecordTimer);
    CHECK(outlets.audioRecordingTime->text() == "00:00:00");
}

TEST_CASE_FIXTURE(StandAlone, "the clock stores hours, minutes and seconds") {
    record();
    tick(36000 + 125);
    CHECK(outlets.audioRecordingTime->text() == "10:02:05");
    CHECK(recorder.auhours == 10);
    CHECK(recorder.auminutes == 2);
    CHECK(recorder.auseconds == 5);
}

TEST_CASE_FIXTURE(StandAlone, "both recorders have their own session, and neither shows the other's recording") {
    ControllerFixture main;
    main.start();
    main.controller->audioRecordOpen();
    record();
    CHECK_FALSE(main.controller->isRecording);
    CHECK(main.outlets.audioRecordStatus->imageName() == "db_rec_ind_off.png");
    CHECK(recorder.captureSession != main.controller->captureSession);
}
