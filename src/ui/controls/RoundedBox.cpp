#include "ui/controls/RoundedBox.h"

#include <QPainter>
#include <algorithm>

#include "ui/controls/Tokens.h"

namespace qm {

void RoundedBox::setCornerRadius(double radius) {
    m_cornerRadius = radius;
    update();
}

void RoundedBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(rect(), m_cornerRadius, m_cornerRadius);
    const double inside = std::max(0.0, m_cornerRadius - 0.5);
    painter.setPen(QPen(tokens::kLineStrong, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), inside, inside);
}

}  // namespace qm
