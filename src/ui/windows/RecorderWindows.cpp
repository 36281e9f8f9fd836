#include "ui/windows/RecorderWindows.h"

#include <QCloseEvent>

#include "ui/controls/ChipButton.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/ImageView.h"
#include "ui/controls/InputLevels.h"
#include "ui/controls/TimeLabel.h"

namespace qm {

namespace {

// Lengths in pixels.
constexpr QSize kRecordingSize{380, 266};
constexpr int kBigTime = 56, kBigTimeTop = 22, kBigTimeLine = 60;
constexpr int kStatusTop = 84, kStatusHeight = 20, kLightGap = 6;
constexpr int kRoundButtonTop = 110, kRecordingLevelsTop = 199;
constexpr int kRecordingFoot = 48, kCloseRight = 14;
constexpr QSize kClose{58, 28};

constexpr QSize kRecorderSize{312, 192};
constexpr QPoint kRecorderButton{23, 32};
constexpr int kRecorderLeft = 121, kRecorderRight = 16;  // what stands beside the button is between them
constexpr int kSmallTime = 38, kSmallTimeTop = 46, kSmallTimeLine = 42;
constexpr int kRecorderStatusTop = 88, kRecorderStatusHeight = 36, kRecorderLevelsTop = 128;
constexpr int kRecorderFoot = 40;

constexpr double kTimeSpacing = -0.03;

QString buttonImage(bool recording) {
    return recording ? QStringLiteral("RecordingControls_Stop.png") : QStringLiteral("RecordingControls_Record.png");
}

QString lightImage(bool recording) {
    return recording ? QStringLiteral("db_rec_ind_on.png") : QStringLiteral("db_rec_ind_off.png");
}

}  // namespace

RecordingWindow::RecordingWindow(Outlets& outlets, ActionTable& actions, QWidget* mainWindow, ReadStatus readStatus)
    : RecorderPanel(tr("Recording"), QStringLiteral("audioRecordingWindow"), mainWindow, std::move(readStatus)),
      m_actions(actions),
      m_light(new ImageView(lightImage(false), this)) {
    setFixedSize(kRecordingSize);
    m_light->setAccessibleName(tr("Recording light"));
    m_time->setTextFont(uiFont(kBigTime, 400, kTimeSpacing), kBigTimeLine);
    m_time->setTextAlignment(Qt::AlignHCenter);
    m_time->setGeometry(0, kBigTimeTop, width(), kBigTimeLine);
    m_button->setObjectName(QStringLiteral("audioRecordingRecordButton"));
    m_button->setGeometry(
        QRect(QPoint((width() - m_button->sizeHint().width()) / 2, kRoundButtonTop), m_button->sizeHint()));
    m_levels->move((width() - m_levels->width()) / 2, kRecordingLevelsTop);
    buildFoot(kRecordingFoot, tr("When you stop, choose where to keep it."));
    auto* close = new PushButton(tr("Close"), false, this);
    const QPoint closeAt(width() - kCloseRight - kClose.width(), height() - (kRecordingFoot + kClose.height()) / 2);
    close->setGeometry(QRect(closeAt, kClose));
    actions.bind(m_button, ActionId::audioStartRecord);
    actions.bind(close, ActionId::audioRecordClose);
    outlets.audioRecordingWindow = this;
    outlets.audioRecordingRecordButton = m_button;
    outlets.audioRecordingTime = m_time;
}

void RecordingWindow::showStatus(const RecorderStatus& status) {
    RecorderPanel::showStatus(status);
    m_button->setImageName(buttonImage(status.recording));
    m_light->setImageName(lightImage(status.recording));
    placeStatus();
}

// Light and words together stand in the middle.
void RecordingWindow::placeStatus() {
    const int wordsWidth = m_status->textWidth();
    const int left = (width() - m_light->width() - kLightGap - wordsWidth) / 2;
    m_light->move(left, kStatusTop + (kStatusHeight - m_light->height()) / 2);
    m_status->setGeometry(left + m_light->width() + kLightGap, kStatusTop + 1, wordsWidth + 1, kStatusHeight - 1);
}

void RecordingWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    m_actions.send(ActionId::audioRecordClose);
}

RecorderWindow::RecorderWindow(AudioRecordOutlets& outlets, ActionTable& actions, QWidget* mainWindow,
                               ReadStatus readStatus)
    : RecorderPanel(tr("Recorder"), QStringLiteral("recordingWindow"), mainWindow, std::move(readStatus)),
      m_actions(actions) {
    setFixedSize(kRecorderSize);
    m_button->setObjectName(QStringLiteral("recordingStartStopButton"));
    m_button->setGeometry(QRect(kRecorderButton, m_button->sizeHint()));
    m_time->setTextFont(uiFont(kSmallTime, 400, kTimeSpacing), kSmallTimeLine);
    m_time->setGeometry(kRecorderLeft, kSmallTimeTop, width() - kRecorderLeft, kSmallTimeLine);
    m_status->setGeometry(kRecorderLeft, kRecorderStatusTop, width() - kRecorderLeft - kRecorderRight,
                          kRecorderStatusHeight);
    m_levels->move(kRecorderLeft, kRecorderLevelsTop);
    buildFoot(kRecorderFoot, tr("When you stop, keep it in Music or elsewhere."));
    actions.bind(m_button, ActionId::toggleRecordSession);
    outlets.recordingWindow = this;
    outlets.recordingStartStopButton = m_button;
    outlets.audioRecordingTime = m_time;
}

void RecorderWindow::closeEvent(QCloseEvent* event) {
    if (isRecording()) m_actions.send(ActionId::toggleRecordSession);
    RecorderPanel::closeEvent(event);
}

}  // namespace qm
