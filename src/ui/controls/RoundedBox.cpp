#include "ui/controls/RoundedBox.h"

#include <QPainter>

#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

void RoundedBox::setCornerRadius(double radius) {
    m_cornerRadius = radius;
    update();
}

void RoundedBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, rect(), m_cornerRadius, Qt::black);
    strokeRounded(painter, rect(), m_cornerRadius, tokens::kLineStrong);
}

}  // namespace qm
