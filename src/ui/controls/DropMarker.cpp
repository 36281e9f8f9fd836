#include "ui/controls/DropMarker.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr double kLine = 2;
constexpr double kDash = 3, kDashGap = 2;  // in widths of the line
constexpr double kText = 13;
constexpr int kVeil = 150;  // of 255
constexpr int kPillHeight = 30, kPillTop = 14, kPillPadding = 14;

}  // namespace

DropMarker::DropMarker(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFont(uiFont(kText));
    hide();
}

void DropMarker::begin() {
    m_words.clear();
    m_refuses = false;
    setGeometry(parentWidget()->rect());  // the list moves its children when it scrolls
    show();
    raise();
}

void DropMarker::judge(const QString& words, bool refuses) {
    m_words = words;
    m_refuses = refuses;
    update();
}

void DropMarker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(kLine / 2, kLine / 2, -kLine / 2, -kLine / 2);
    QPen pen(m_refuses ? tokens::kNeutralBar : tokens::kAqua, kLine);
    pen.setJoinStyle(Qt::MiterJoin);
    if (m_refuses) {
        painter.fillRect(rect(), QColor(0, 0, 0, kVeil));
        pen.setDashPattern({kDash, kDashGap});
        pen.setCapStyle(Qt::FlatCap);
    } else {
        painter.fillRect(QRectF(0, 0, width(), kLine), tokens::kAqua);
    }
    painter.setPen(pen);
    painter.drawRect(frame);
    if (!m_words.isEmpty()) paintWords(painter);
}

void DropMarker::paintWords(QPainter& painter) const {
    painter.setFont(font());
    const double room = std::max(0, width() - 4 * kPillPadding);
    const QString shown = elidedInMiddle(font(), m_words, room);
    const double wide = std::ceil(textWidth(font(), shown)) + 2 * kPillPadding;
    const QRectF pill(std::round((width() - wide) / 2), kPillTop, wide, kPillHeight);
    painter.setPen(QPen(m_refuses ? tokens::kNeutralBar : tokens::kAqua, 1));
    painter.setBrush(tokens::kPanelHigh);
    painter.drawRoundedRect(pill.adjusted(0.5, 0.5, -0.5, -0.5), kPillHeight / 2.0, kPillHeight / 2.0);
    painter.setPen(tokens::kText);
    const double line = QFontMetricsF(font()).height();
    drawLine(painter, QRectF(pill.left() + kPillPadding, pill.center().y() - line / 2, wide, line), Qt::AlignLeft,
             shown);
}

}  // namespace qm
