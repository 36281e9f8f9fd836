#include "ui/windows/RecorderPanel.h"

#include <QLinearGradient>
#include <QPainter>
#include <QShowEvent>
#include <algorithm>

#include "ui/controls/Card.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/InputLevels.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kRefreshMilliseconds = 100;
constexpr int kStatusLineHeight = 18, kHintLeft = 18, kHintRight = 12;
constexpr double kWords = 12.5;
const QColor kGroundTop{0x0C, 0x0D, 0x0E}, kGroundBottom{0x2E, 0x2F, 0x31}, kFoot{0, 0, 0, 64};

}  // namespace

StatusLine::StatusLine(QWidget* parent) : QLabel(parent) {
    setObjectName(QStringLiteral("recordingStatusLine"));
    setFont(uiFont(kWords));
}

int StatusLine::textWidth() const {
    return qRound(qm::textWidth(font(), text()));
}

// Breaks where the two lines become most nearly equally long.
QStringList StatusLine::lines() const {
    const QString words = text();
    if (textWidth() <= width()) return {words};
    QStringList best{words};
    double narrowest = textWidth();
    for (qsizetype space = words.indexOf(u' '); space > 0; space = words.indexOf(u' ', space + 1)) {
        const QStringList two{words.left(space), words.mid(space + 1)};
        const double wider = std::max(qm::textWidth(font(), two[0]), qm::textWidth(font(), two[1]));
        if (wider >= narrowest) continue;
        narrowest = wider;
        best = two;
    }
    return best;
}

void StatusLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(tokens::kText2);
    QRect line(0, 0, width(), kStatusLineHeight);
    for (const QString& words : lines()) {
        drawLine(painter, line, Qt::AlignLeft, words);
        line.translate(0, kStatusLineHeight);
    }
}

RecorderPanel::RecorderPanel(const QString& title, const QString& name, QWidget* mainWindow, ReadStatus readStatus)
    : ToolPanel(title, mainWindow),
      m_time(new TimeLabel(QStringLiteral("00:00:00"), this)),
      m_button(new ImageButton(QStringLiteral("RecordingControls_Record.png"), this)),
      m_status(new StatusLine(this)),
      m_levels(new InputLevels(this)),
      m_readStatus(std::move(readStatus)) {
    setObjectName(name);
    m_time->setObjectName(QStringLiteral("audioRecordingTime"));
    m_time->setAccessibleName(tr("Recording time"));
    m_timer.setInterval(kRefreshMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &RecorderPanel::refresh);
    new FocusRing(this);
}

void RecorderPanel::buildFoot(int height, const QString& hint) {
    m_footTop = this->height() - height;
    auto* label = new TextLabel(hint, uiFont(kWords), tokens::kText2, this);
    label->setGeometry(kHintLeft, m_footTop + 1, width() - kHintLeft - kHintRight, height - 1);
}

void RecorderPanel::refresh() {
    showStatus(m_readStatus());
}

void RecorderPanel::showStatus(const RecorderStatus& status) {
    m_status->setText(status.text);
    m_levels->setVisible(status.hasInput);
    m_levels->setLevels(status.levels);
    m_button->setAccessibleDescription(status.recording ? tr("recording") : tr("not recording"));
}

void RecorderPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QLinearGradient ground(0, 0, 0, height());
    ground.setColorAt(0, kGroundTop);
    ground.setColorAt(1, kGroundBottom);
    painter.fillRect(rect(), ground);
    painter.fillRect(QRect(0, m_footTop, width(), height() - m_footTop), kFoot);
    painter.fillRect(QRect(0, m_footTop, width(), 1), tokens::kLine);
}

void RecorderPanel::showEvent(QShowEvent* event) {
    refresh();
    m_timer.start();
    if (!event->spontaneous()) setFocus();  // not the button's, so that a key meant for the player does not record
    ToolPanel::showEvent(event);
}

void RecorderPanel::hideEvent(QHideEvent* event) {
    m_timer.stop();
    ToolPanel::hideEvent(event);
}

}  // namespace qm
