#include "ui/controls/RoundedBox.h"

#include <QPaintEvent>
#include <QPainter>

#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

void RoundedBox::setCornerRadius(double radius) {
    m_cornerRadius = radius;
    update();
}

void RoundedBox::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, rect(), m_cornerRadius, Qt::black, event->rect());
    constexpr int kLine = 2;  // pixels that its edge takes at most
    if (rect().adjusted(kLine, kLine, -kLine, -kLine).contains(event->rect())) return;
    strokeRounded(painter, rect(), m_cornerRadius, tokens::kLineStrong);
}

}  // namespace qm
