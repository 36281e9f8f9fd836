#include "ui/controls/TimeLabel.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

TimeLabel::TimeLabel(const QString& text, QWidget* parent) : QWidget(parent), m_text(text), m_color(tokens::kText) {
    setFont(uiFont(13));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TimeLabel::setText(const QString& text) {
    if (m_text == text) return;
    const QString before = std::exchange(m_text, text);
    if (before.size() != text.size()) updateGeometry();
    if (before.size() != text.size() || timeWidth(font(), before) != timeWidth(font(), text)) return update();
    // The cells from the first character that changes to the last.
    const auto first = std::mismatch(before.begin(), before.end(), text.begin()).first - before.begin();
    const auto last = std::mismatch(before.rbegin(), before.rend(), text.rbegin()).first.base() - before.begin();
    for (const QString& each : {before, text})
        update(timePart(font(), rect(), m_alignment, each, first, last).toAlignedRect());
}

void TimeLabel::setTextFont(const QFont& font, int lineHeight) {
    setFont(font);
    m_lineHeight = lineHeight;
    updateGeometry();
    update();
}

void TimeLabel::setTextColor(const QColor& color) {
    if (m_color == color) return;
    m_color = color;
    update();
}

void TimeLabel::setTextAlignment(Qt::Alignment alignment) {
    m_alignment = alignment;
    update();
}

QSize TimeLabel::sizeHint() const {
    return {static_cast<int>(std::ceil(timeWidth(font(), m_text))), m_lineHeight};
}

void TimeLabel::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(m_color);
    drawTime(painter, rect(), m_alignment, m_text, event->rect());
}

}  // namespace qm
