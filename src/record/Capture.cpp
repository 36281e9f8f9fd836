#include "record/Capture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "engine/api/Log.h"
#include "record/ElapsedClock.h"

namespace qm {

namespace {

constexpr int kTickMilliseconds = 1000;

void logFor(const char* caller, const char* what) {
    qmLog(std::string(caller) + ": " + what);
}

}  // namespace

void setUpCapture(RecorderState& recorder, CaptureEngine& engine, const char* caller) {
    recorder.captureSession = engine.makeSession();
    recorder.captureMovieFileOutput.reset();
    recorder.audioDevice = engine.defaultInputDeviceWithMediaType(QTMediaType::Sound);
    if (!recorder.audioDevice || !recorder.audioDevice->open()) {
        recorder.audioDevice.reset();
        logFor(caller, "Unable to open audio device.");
        return;
    }
    recorder.captureAudioDeviceInput = engine.makeDeviceInput(recorder.audioDevice);
    const bool success = recorder.captureSession->addInput(recorder.captureAudioDeviceInput);
    if (!success) {
        logFor(caller, "Unable to setup audio capture.");
        return;
    }
    recorder.captureMovieFileOutput = engine.makeMovieFileOutput();
    if (!success) {  // the flag of the input, meant so: an output that cannot be made is not noticed here
        logFor(caller, "Unable to setup audio record file.");
        return;
    }
    recorder.captureSession->startRunning();
    recorder.captureSession->addOutput(recorder.captureMovieFileOutput);
}

bool runCapture(RecorderState& recorder, const char* caller) {
    if (!recorder.captureSession) {
        logFor(caller, "no capture session, nothing is recorded");
        return false;
    }
    if (!recorder.captureSession->isRunning()) recorder.captureSession->startRunning();
    recorder.inputGaveNothing = !recorder.captureSession->isRunning();
    if (recorder.inputGaveNothing) logFor(caller, "the capture session does not run, nothing is recorded");
    return !recorder.inputGaveNothing;
}

void recordTo(RecorderState& recorder, const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    if (QFile::exists(path)) QFile::remove(path);
    if (recorder.captureMovieFileOutput)
        recorder.captureMovieFileOutput->recordToOutputFileURL(QFile::encodeName(path).toStdString());
}

void finishCapture(RecorderState& recorder) {
    if (recorder.captureMovieFileOutput) recorder.captureMovieFileOutput->recordToOutputFileURL(std::nullopt);
    if (recorder.captureSession && recorder.captureSession->isRunning()) recorder.captureSession->stopRunning();
}

// Precise, or the clock would leave out a second now and then.
void startRecordClock(RecorderState& recorder, const std::function<void()>& tick) {
    recorder.audioRecordTimer = std::make_unique<QTimer>();
    recorder.audioRecordTimer->setTimerType(Qt::PreciseTimer);
    QObject::connect(recorder.audioRecordTimer.get(), &QTimer::timeout, recorder.audioRecordTimer.get(), tick);
    recorder.audioRecordTimer->start(kTickMilliseconds);
}

void stopRecordClock(RecorderState& recorder) {
    if (!recorder.audioRecordTimer) return;
    recorder.audioRecordTimer->stop();
    recorder.audioRecordTimer.release()->deleteLater();
}

QString readRecordClock(RecorderState& recorder, const QDateTime& now) {
    const ElapsedTime time = elapsedTime(static_cast<double>(recorder.audioRecordStartTime.msecsTo(now)) / 1000);
    recorder.auhours = time.hours;
    recorder.auminutes = time.minutes;
    recorder.auseconds = time.seconds;
    return elapsedClockText(time);
}

}  // namespace qm
