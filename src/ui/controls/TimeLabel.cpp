#include "ui/controls/TimeLabel.h"

#include <QPainter>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

TimeLabel::TimeLabel(const QString& text, QWidget* parent) : QWidget(parent), m_text(text), m_color(tokens::kText) {
    setFont(uiFont(13));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TimeLabel::setText(const QString& text) {
    if (m_text == text) return;
    const bool grows = m_text.size() != text.size();
    m_text = text;
    if (grows) updateGeometry();
    update();
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

void TimeLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(m_color);
    drawTime(painter, rect(), m_alignment, m_text);
}

}  // namespace qm
