#include "record/MainRecorder.h"

#include <QDesktopServices>
#include <QFile>
#include <QUrl>

#include "player/OutletSetters.h"
#include "record/Capture.h"
#include "record/ElapsedClock.h"
#include "ui/SavePanel.h"
#include "ui/controls/WindowOrder.h"

namespace qm {

MainRecorder::MainRecorder(RecordingState& state, MainRecorderState& recorder, const RecordOutlets& outlets,
                           CaptureEngine& engine, Takes& takes)
    : m_recording(state),
      m_recorder(recorder),
      m_outlets(outlets),
      m_engine(engine),
      m_takes(takes),
      m_runSavePanel([](QWidget* parent, const QString& folder, const QString& name) {
          return runKeepPanel(parent, folder, name, takeOnDesktop());
      }) {}

void MainRecorder::audioRecordOpen() {
    if (m_outlets.audioRecordingWindow && !m_outlets.audioRecordingWindow->isVisible())
        makeKeyAndOrderFront(*m_outlets.audioRecordingWindow);
    if (m_recorder.captureSession) return;
    setUpCapture(m_recorder, m_engine, "audioRecordOpen");
}

void MainRecorder::audioStartRecord() {
    if (m_recording.isRecording) {
        m_recording.isRecording = false;
        showImage(m_outlets.audioRecordStatus, QStringLiteral("db_rec_ind_off.png"));
        showImage(m_outlets.audioRecordButton, QStringLiteral("db_start_recording_off.png"));
        audioStopRecord();
        return;
    }
    if (!runCapture(m_recorder, "audioStartRecord")) return;
    m_recorder.audioRecordStartTime = m_now();
    m_recording.isRecording = true;
    startRecordClock(m_recorder, [this] { updateAudioRecorder(); });
    m_recorder.audioRecordPath = takeOnDesktop();
    recordTo(m_recorder, m_recorder.audioRecordPath);
    showImage(m_outlets.audioRecordButton, QStringLiteral("db_stop_recording_off.png"));
    showImage(m_outlets.audioRecordStatus, QStringLiteral("db_rec_ind_on.png"));
}

void MainRecorder::updateAudioRecorder() {
    if (!m_recording.isRecording && m_recorder.audioRecordTimer) {
        stopRecordClock(m_recorder);
        showText(m_outlets.audioRecordingTime, kNothingElapsed);
        return;
    }
    showText(m_outlets.audioRecordingTime, readRecordClock(m_recorder, m_now()));
}

// The clock is left to its next tick.
void MainRecorder::audioStopRecord() {
    finishCapture(m_recorder);
    const QString source = takeOnDesktop();
    const auto chosen = m_runSavePanel(m_outlets.audioRecordingWindow, desktopFolder(), kTakeName);
    if (!chosen) {
        if (m_outlets.audioRecordingWindow) m_outlets.audioRecordingWindow->hide();
        QFile::remove(source);
        return;
    }
    m_recorder.audioRecordPath = *chosen;
    if (*chosen != source) m_takes.keep(source, *chosen);
}

void MainRecorder::audioRecordClose() {
    QWidget* window = m_outlets.audioRecordingWindow;
    if (!window || !window->isVisible()) return;
    if (m_recording.isRecording) audioStartRecord();
    window->hide();
}

void MainRecorder::captureOutputDidFinishRecording(const QUrl& file) {
    QDesktopServices::openUrl(file);
}

void MainRecorder::finishFile() {
    if (m_recording.isRecording) finishCapture(m_recorder);
}

}  // namespace qm
