// The stand-alone recorder with a panel of its own. It records into the program's support folder and asks, when it is
// stopped, where to keep the recording. It differs from the main recorder in when it sets up, in how its button and its
// flag follow one another, and in stopping its clock at once. Main thread only. What cannot be done does nothing and
// leaves a log line; a recording that cannot be moved stays, and the user is told.
#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "record/RecordedFile.h"
#include "record/RecorderState.h"
#include "record/Takes.h"

class QWidget;

namespace qm {

class ImageButton;
class TimeLabel;

struct AudioRecordOutlets {
    QWidget* recordingWindow = nullptr;
    ImageButton* recordingStartStopButton = nullptr;
    TimeLabel* audioRecordingTime = nullptr;
};

class AudioRecord : public QObject, public RecorderState, public AudioRecordOutlets {
    Q_OBJECT

public:
    AudioRecord(CaptureEngine& engine, Takes& takes);

    // Takes the outlets and the names of the button's two images.
    void awakeFromNib(const AudioRecordOutlets& outlets);

    void setupAudioRecordSession();
    void startAudioRecording();
    void stopAudioRecording();
    void updateAudioRecordTime();  // one tick of the clock
    void finishFile();             // the program ends: what is being recorded is kept as it is

    void setRunSavePanel(RunSavePanel run) { m_runSavePanel = std::move(run); }
    void setNow(std::function<QDateTime()> now) { m_now = std::move(now); }

    bool recordingStatus;
    QString recordImage;
    QString stopImage;

public slots:
    void displayAudioRecordWindow();
    void toggleRecordSession();

private:
    CaptureEngine& m_engine;
    Takes& m_takes;
    RunSavePanel m_runSavePanel;
    std::function<QDateTime()> m_now = QDateTime::currentDateTimeUtc;
};

}  // namespace qm
