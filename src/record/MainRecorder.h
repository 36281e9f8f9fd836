// The main recorder: the record toggle of the main window, the Recording window and its clock. It records to the
// desktop and asks, when it is stopped, where to keep the recording. It has nothing to do with what plays. Main thread
// only. What cannot be done does nothing and leaves a log line; a set-up that has failed is not tried again; a
// recording that cannot be moved stays, and the user is told.
#pragma once

#include <QString>
#include <functional>

#include "app/PlayerState.h"
#include "record/RecordedFile.h"
#include "record/RecorderState.h"
#include "record/Takes.h"
#include "ui/controls/Outlets.h"

class QUrl;

namespace qm {

struct MainRecorderState : RecorderState {
    QString audioRecordPath;  // being recorded to, and then the one chosen to keep it
};

class MainRecorder {
public:
    MainRecorder(RecordingState& state, MainRecorderState& recorder, const RecordOutlets& outlets,
                 CaptureEngine& engine, Takes& takes);

    void audioRecordOpen();   // shows the Recording window and prepares capture
    void audioStartRecord();  // starts, or stops
    void audioStopRecord();   // finishes the file and asks where to keep it
    void audioRecordClose();  // hides the window, after stopping
    void updateAudioRecorder();

    // Opens a finished recording. Not attached to the output: a recording is not opened by itself.
    void captureOutputDidFinishRecording(const QUrl& file);

    void finishFile();  // the program ends: what is being recorded is kept as it is

    void setRunSavePanel(RunSavePanel run) { m_runSavePanel = std::move(run); }
    void setNow(std::function<QDateTime()> now) { m_now = std::move(now); }

private:
    RecordingState& m_recording;
    MainRecorderState& m_recorder;
    const RecordOutlets& m_outlets;
    CaptureEngine& m_engine;
    Takes& m_takes;
    RunSavePanel m_runSavePanel;
    std::function<QDateTime()> m_now = QDateTime::currentDateTimeUtc;
};

}  // namespace qm
