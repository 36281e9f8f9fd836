#include "record/AudioRecord.h"

#include <QFile>

#include "app/state/OutletSetters.h"
#include "record/Capture.h"
#include "record/ElapsedClock.h"
#include "ui/controls/WindowOrder.h"
#include "ui/dialogs/SavePanel.h"

namespace qm {

AudioRecord::AudioRecord(CaptureEngine& engine, Takes& takes)
    : recordingStatus(false),
      m_engine(engine),
      m_takes(takes),
      m_runSavePanel([](QWidget* parent, const QString& folder, const QString& name) {
          return runKeepPanel(parent, folder, name);
      }) {}

void AudioRecord::awakeFromNib(const AudioRecordOutlets& outlets) {
    static_cast<AudioRecordOutlets&>(*this) = outlets;
    recordImage = QStringLiteral("RecordingControls_Record.png");
    stopImage = QStringLiteral("RecordingControls_Stop.png");
}

void AudioRecord::displayAudioRecordWindow() {
    if (recordingWindow) makeKeyAndOrderFront(*recordingWindow);
    setupAudioRecordSession();
}

void AudioRecord::setupAudioRecordSession() {
    if (captureSession && captureSession->isRunning()) return;
    setUpCapture(*this, m_engine, "setupAudioRecordSession");
}

// The flag is cleared on both ways; starting sets it again.
void AudioRecord::toggleRecordSession() {
    if (recordingStatus) {
        showImage(recordingStartStopButton, recordImage);
        stopAudioRecording();
        recordingStatus = false;
        return;
    }
    showImage(recordingStartStopButton, stopImage);
    recordingStatus = false;
    startAudioRecording();
}

void AudioRecord::startAudioRecording() {
    if (recordingStatus) {
        recordingStatus = false;
        stopAudioRecording();
        return;
    }
    if (!runCapture(*this, "startAudioRecording")) return;
    audioRecordStartTime = m_now();
    recordingStatus = true;
    startRecordClock(*this, [this] { updateAudioRecordTime(); });
    recordTo(*this, takeInSupportFolder());
}

void AudioRecord::stopAudioRecording() {
    finishCapture(*this);
    stopRecordClock(*this);
    const QString source = takeInSupportFolder();
    if (const auto chosen = m_runSavePanel(recordingWindow, musicFolder(), kTakeName)) {
        m_takes.keep(source, *chosen);
    } else {
        if (recordingWindow) recordingWindow->hide();
        QFile::remove(source);
    }
    showText(audioRecordingTime, kNothingElapsed);
}

void AudioRecord::updateAudioRecordTime() {
    if (!recordingStatus && audioRecordTimer) {
        stopRecordClock(*this);
        showText(audioRecordingTime, kNothingElapsed);
        return;
    }
    showText(audioRecordingTime, readRecordClock(*this, m_now()));
}

void AudioRecord::finishFile() {
    if (recordingStatus) finishCapture(*this);
}

}  // namespace qm
