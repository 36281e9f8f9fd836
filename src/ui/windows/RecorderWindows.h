// The windows of the two recorders: Recording, which belongs to the main window's record toggle, and Recorder, which
// stands alone. Main thread only.
#pragma once

#include "record/AudioRecord.h"
#include "ui/controls/Outlets.h"
#include "ui/windows/RecorderPanel.h"

namespace qm {

class ImageView;

class RecordingWindow : public RecorderPanel {
    Q_OBJECT

public:
    RecordingWindow(Outlets& outlets, ActionTable& actions, QWidget* mainWindow, ReadStatus readStatus);

protected:
    void showStatus(const RecorderStatus& status) override;
    void closeEvent(QCloseEvent* event) override;  // is an action, which may first ask where to keep a recording

private:
    void placeStatus();

    ActionTable& m_actions;
    ImageView* m_light;
};

class RecorderWindow : public RecorderPanel {
    Q_OBJECT

public:
    RecorderWindow(AudioRecordOutlets& outlets, ActionTable& actions, QWidget* mainWindow, ReadStatus readStatus);

protected:
    void closeEvent(QCloseEvent* event) override;  // stops a recording first, which asks where to keep it

private:
    ActionTable& m_actions;
};

}  // namespace qm
