#include "record/MainRecorder.h"

#include <doctest/doctest.h>

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QUrl>

#include "support/widgets/ControllerFixture.h"
#include "ui/controls/ImageView.h"

using namespace qm;

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

struct RecorderFixture : ControllerFixture {
    QMController& player = start();
    QString desktop = home.path() + QStringLiteral("/Desktop");
    QString source = desktop + QStringLiteral("/Quillmere.mov");
    QDateTime now = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000);

    RecorderFixture() {
        player.mainRecorder().setNow([this] { return now; });
        log.take();
    }

    void open() {
        player.audioRecordOpen();
        log.take();
    }
    void record() {
        open();
        player.audioStartRecord();
        log.take();
    }
    void tick(double seconds) {
        now = now.addMSecs(static_cast<qint64>(seconds * 1000));
        fire(player.audioRecordTimer.get());
    }
    Events images() const {
        return {outlets.audioRecordButton->imageName().toStdString(),
                outlets.audioRecordStatus->imageName().toStdString()};
    }
    std::string saveEvent() const { return "save panel " + desktop.toStdString() + " Quillmere.mov"; }
};

const Events kIdle{"db_start_recording_off.png", "db_rec_ind_off.png"};
const Events kRecording{"db_stop_recording_off.png", "db_rec_ind_on.png"};
const Events kSetUp{"session",   "default sound input", "open device",   "device input",
                    "add input", "movie file output",   "start running", "add output"};

}  // namespace

TEST_CASE_FIXTURE(RecorderFixture, "opening shows the window and sets capture up in order, running before the output") {
    player.audioRecordOpen();
    CHECK(outlets.audioRecordingWindow->isVisible());
    CHECK(log.take() == kSetUp);
    CHECK(player.audioDevice);
    CHECK(player.captureAudioDeviceInput);
    CHECK(player.captureMovieFileOutput);
}

TEST_CASE_FIXTURE(RecorderFixture, "capture is set up once a run, whatever becomes of the window") {
    open();
    player.audioRecordOpen();
    CHECK(log.take().empty());
    player.audioRecordClose();
    CHECK_FALSE(outlets.audioRecordingWindow->isVisible());
    player.audioRecordOpen();
    CHECK(outlets.audioRecordingWindow->isVisible());
    CHECK(log.take().empty());
}

TEST_CASE_FIXTURE(RecorderFixture, "a device that is not there or does not open is logged, and not tried again") {
    const Events wanted[] = {
        {"session", "default sound input", "log audioRecordOpen: Unable to open audio device."},
        {"session", "default sound input", "open device", "log audioRecordOpen: Unable to open audio device."}};
    SUBCASE("none") {
        capture.hasDevice = false;
    }
    SUBCASE("closed") {
        capture.deviceOpens = false;
    }
    player.audioRecordOpen();
    CHECK(log.take() == wanted[capture.hasDevice]);
    CHECK_FALSE(player.audioDevice);
    CHECK(player.captureSession);
    capture.hasDevice = capture.deviceOpens = true;
    player.audioRecordOpen();
    CHECK(log.take().empty());
    player.audioStartRecord();
    CHECK_FALSE(player.isRecording);
    CHECK(images() == kIdle);
    CHECK(log.count("record ") == 0);
}

TEST_CASE_FIXTURE(RecorderFixture, "an input that the session refuses ends the set-up with a line of its own") {
    capture.addsInput = false;
    player.audioRecordOpen();
    CHECK(log.take() == Events{"session", "default sound input", "open device", "device input", "add input",
                               "log audioRecordOpen: Unable to setup audio capture."});
    CHECK_FALSE(player.captureMovieFileOutput);
    player.audioStartRecord();
    CHECK_FALSE(player.isRecording);
}

TEST_CASE_FIXTURE(RecorderFixture, "an output that cannot be made is not noticed") {
    capture.makesOutput = false;
    player.audioRecordOpen();
    CHECK(log.count("log ") == 0);
    CHECK(log.take().back() == "add no output");
    player.audioStartRecord();
    CHECK(player.isRecording);
    CHECK(log.count("record ") == 0);
    player.audioStartRecord();
    CHECK_FALSE(player.isRecording);
}

TEST_CASE_FIXTURE(RecorderFixture, "the toggle does nothing before the window was opened") {
    player.audioStartRecord();
    CHECK(log.take() == Events{"log audioStartRecord: no capture session, nothing is recorded"});
    CHECK_FALSE(player.isRecording);
    CHECK_FALSE(player.audioRecordTimer);
    CHECK(images() == kIdle);
}

TEST_CASE_FIXTURE(RecorderFixture, "a session that does not run is started, and when it will not run nothing happens") {
    open();
    player.captureSession->stopRunning();
    capture.runs = false;
    log.take();
    player.audioStartRecord();
    CHECK(log.take() ==
          Events{"start running", "log audioStartRecord: the capture session does not run, nothing is recorded"});
    CHECK_FALSE(player.isRecording);
    CHECK_FALSE(player.audioRecordTimer);
    capture.runs = true;
    player.audioStartRecord();
    CHECK(log.take() == Events{"start running", "record " + source.toStdString()});
    CHECK(player.isRecording);
}

TEST_CASE_FIXTURE(RecorderFixture,
                  "starting sets time, flag, clock and path before it records, and shows it afterwards") {
    open();
    bool looked = false;
    log.atEvent = [&](const std::string& event) {
        looked = true;
        CHECK(event == "record " + source.toStdString());
        CHECK(player.audioRecordStartTime == now);
        CHECK(player.isRecording);
        REQUIRE(player.audioRecordTimer);
        CHECK(player.audioRecordTimer->isActive());
        CHECK(player.audioRecordTimer->interval() == 1000);
        CHECK_FALSE(player.audioRecordTimer->isSingleShot());
        CHECK(player.audioRecordPath == source);
        CHECK(images() == kIdle);
    };
    player.audioStartRecord();
    log.atEvent = {};
    CHECK(looked);
    CHECK(images() == kRecording);
}

TEST_CASE_FIXTURE(RecorderFixture, "a file that was left at the path is gone before the recording begins") {
    QDir().mkpath(desktop);
    QFile left(source);
    REQUIRE(left.open(QIODevice::WriteOnly));
    left.write("left");
    left.close();
    open();
    log.atEvent = [&](const std::string&) { CHECK_FALSE(QFile::exists(source)); };
    player.audioStartRecord();
    log.atEvent = {};
    CHECK(contentOf(source) == "recording 1");
}

TEST_CASE_FIXTURE(RecorderFixture, "the desktop is made when there is none") {
    CHECK_FALSE(QDir(desktop).exists());
    record();
    CHECK(contentOf(source) == "recording 1");
}

TEST_CASE_FIXTURE(RecorderFixture, "the clock shows and stores what has elapsed, from the start time on") {
    record();
    tick(1);
    CHECK(outlets.audioRecordingTime->text() == "00:00:01");
    tick(3664.5);
    CHECK(outlets.audioRecordingTime->text() == "01:01:05");
    CHECK(player.auhours == 1);
    CHECK(player.auminutes == 1);
    CHECK(player.auseconds == 5);
}

TEST_CASE_FIXTURE(RecorderFixture, "stopping clears the flag and the images first, then finishes, stops and asks") {
    record();
    dialogs.savePath = source;
    log.atEvent = [&](const std::string&) {
        CHECK_FALSE(player.isRecording);
        CHECK(images() == kIdle);
    };
    player.audioStartRecord();
    log.atEvent = {};
    CHECK(log.take() == Events{"record nil", "stop running", saveEvent()});
}

TEST_CASE_FIXTURE(RecorderFixture, "a session that has stopped by itself is not stopped again") {
    record();
    player.captureSession->stopRunning();
    log.take();
    player.audioStartRecord();
    CHECK(log.take() == Events{"record nil", saveEvent()});
}

TEST_CASE_FIXTURE(RecorderFixture, "the suggested name leaves the recording where it is") {
    record();
    dialogs.savePath = source;
    player.audioStartRecord();
    CHECK(player.audioRecordPath == source);
    CHECK(contentOf(source) == "recording 1");
    CHECK(outlets.audioRecordingWindow->isVisible());
}

TEST_CASE_FIXTURE(RecorderFixture, "another name moves the recording there, in the place of what had it") {
    const QString chosen = home.path() + QStringLiteral("/take one.mov");
    SUBCASE("free") {}
    SUBCASE("taken") {
        QFile taken(chosen);
        REQUIRE(taken.open(QIODevice::WriteOnly));
        taken.write("an older take");
    }
    record();
    dialogs.savePath = chosen;
    player.audioStartRecord();
    CHECK(player.audioRecordPath == chosen);
    CHECK(contentOf(chosen) == "recording 1");
    CHECK_FALSE(QFile::exists(source));
    CHECK(log.count("log ") == 0);
}

TEST_CASE_FIXTURE(RecorderFixture,
                  "a move that fails keeps the recording, leaves a log line and a notice, and asks nothing") {
    QStringList told;
    QObject::connect(&player.notices(), &Notices::told, &player, [&](const Notice& notice) { told << notice.text; });
    record();
    dialogs.savePath = home.path() + QStringLiteral("/no such folder/take.mov");
    player.audioStartRecord();
    CHECK(told.size() == 1);
    CHECK(player.audioRecordPath == *dialogs.savePath);
    CHECK(contentOf(source) == "recording 1");
    CHECK(log.count("log the recording stays in " + source.toStdString()) == 1);
    CHECK(log.count("alert") == 0);
}

TEST_CASE_FIXTURE(RecorderFixture, "a cancel hides the window and deletes the recording") {
    record();
    player.audioStartRecord();
    CHECK_FALSE(outlets.audioRecordingWindow->isVisible());
    CHECK_FALSE(QFile::exists(source));
    CHECK(player.audioRecordPath == source);
}

TEST_CASE_FIXTURE(RecorderFixture, "stopping leaves the clock to its next tick, which ends it") {
    record();
    tick(7);
    dialogs.savePath = source;
    player.audioStartRecord();
    REQUIRE(player.audioRecordTimer);
    CHECK(player.audioRecordTimer->isActive());
    CHECK(outlets.audioRecordingTime->text() == "00:00:07");
    tick(1);
    CHECK_FALSE(player.audioRecordTimer);
    CHECK(outlets.audioRecordingTime->text() == "00:00:00");
}

TEST_CASE_FIXTURE(RecorderFixture, "the next recording starts the session again and overwrites the one before") {
    record();
    dialogs.savePath = source;
    player.audioStartRecord();
    CHECK(contentOf(source) == "recording 1");
    log.take();
    player.audioStartRecord();
    CHECK(log.take() == Events{"start running", "record " + source.toStdString()});
    CHECK(contentOf(source) == "recording 2");
    CHECK(images() == kRecording);
}

TEST_CASE_FIXTURE(RecorderFixture, "closing the window stops a recording and asks before the window goes") {
    record();
    dialogs.savePath = source;
    log.atEvent = [&](const std::string&) { CHECK(outlets.audioRecordingWindow->isVisible()); };
    player.audioRecordClose();
    log.atEvent = {};
    CHECK(log.take() == Events{"record nil", "stop running", saveEvent()});
    CHECK_FALSE(outlets.audioRecordingWindow->isVisible());
    CHECK(contentOf(source) == "recording 1");
    CHECK(images() == kIdle);
}

TEST_CASE_FIXTURE(RecorderFixture, "closing does nothing while the window is hidden, not even to a recording") {
    record();
    outlets.audioRecordingWindow->hide();
    player.audioRecordClose();
    CHECK(player.isRecording);
    CHECK(log.take().empty());
}

TEST_CASE_FIXTURE(RecorderFixture, "closing without a recording only hides the window") {
    open();
    player.audioRecordClose();
    CHECK_FALSE(outlets.audioRecordingWindow->isVisible());
    CHECK(log.take().empty());
    CHECK(player.captureSession->isRunning());
}

namespace {

struct UrlReceiver : QObject {
    Q_OBJECT

public:
    QList<QUrl> opened;

public slots:
    void take(const QUrl& url) { opened << url; }
};

}  // namespace

TEST_CASE_FIXTURE(RecorderFixture, "a finished recording is opened by the handler, which nobody calls") {
    UrlReceiver workspace;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &workspace, "take");
    record();
    dialogs.savePath = source;
    player.audioStartRecord();
    CHECK(workspace.opened.isEmpty());
    const QUrl file = QUrl::fromLocalFile(source);
    player.captureOutputDidFinishRecordingToOutputFileAtURLForConnectionsDueToError(file);
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    CHECK(workspace.opened == QList<QUrl>{file});
}

TEST_CASE_FIXTURE(RecorderFixture, "recording touches neither the movie nor what the player shows") {
    ControllerFixture other;
    other.startWithLoadedTrack();
    other.controller->playForward();
    const Events before = other.everything();
    other.log.take();
    other.controller->audioRecordOpen();
    other.controller->audioStartRecord();
    CHECK(other.everything() == before);
    CHECK(other.log.take() == Events{kSetUp[0], kSetUp[1], kSetUp[2], kSetUp[3], kSetUp[4], kSetUp[5], kSetUp[6],
                                     kSetUp[7],
                                     "record " + other.home.path().toStdString() + "/Desktop/Quillmere.mov"});
}

TEST_CASE_FIXTURE(RecorderFixture, "without its window and controls the recorder records all the same") {
    ControllerFixture bare;
    bare.outlets.audioRecordingWindow = nullptr;
    bare.outlets.audioRecordingTime = nullptr;
    bare.outlets.audioRecordButton = nullptr;
    bare.outlets.audioRecordStatus = nullptr;
    QMController& bareController = bare.start();
    bareController.audioRecordOpen();
    bareController.audioStartRecord();
    CHECK(bareController.isRecording);
    fire(bareController.audioRecordTimer.get());
    bareController.audioRecordClose();
    CHECK(bareController.isRecording);
    bareController.audioStartRecord();
    CHECK_FALSE(bareController.isRecording);
}

TEST_CASE_FIXTURE(RecorderFixture, "when the program ends, a recording is finished where it is") {
    record();
    player.mainRecorder().finishFile();
    CHECK(log.take() == Events{"record nil", "stop running"});
    CHECK(contentOf(source) == "recording 1");
}

#include "MainRecorderTests.moc"
