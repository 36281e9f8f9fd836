// What the two windows of the recorders share: their ground and foot, the time, the status line, the level of the input
// and the round button. They show what they are told, ten times a second while they are on the screen, and act only
// through the table of actions. Main thread only.
#pragma once

#include <QLabel>
#include <QTimer>
#include <functional>

#include "record/RecorderStatus.h"
#include "ui/ActionTable.h"
#include "ui/windows/ToolPanel.h"

namespace qm {

class ImageButton;
class InputLevels;
class TimeLabel;

// A few words, on a second line when they are too wide for one.
class StatusLine : public QLabel {
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent);

    int textWidth() const;  // of all of it on one line, in pixels

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QStringList lines() const;
};

class RecorderPanel : public ToolPanel {
    Q_OBJECT

public:
    using ReadStatus = std::function<RecorderStatus()>;

    void refresh();  // now

protected:
    RecorderPanel(const QString& title, const QString& name, QWidget* mainWindow, ReadStatus readStatus);

    bool isRecording() const { return m_readStatus().recording; }
    void buildFoot(int height, const QString& hint);
    virtual void showStatus(const RecorderStatus& status);

    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    TimeLabel* m_time;
    ImageButton* m_button;
    StatusLine* m_status;
    InputLevels* m_levels;

private:
    const ReadStatus m_readStatus;
    QTimer m_timer;
    int m_footTop = 0;
};

}  // namespace qm
