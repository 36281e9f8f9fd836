#include "ui/controls/BackgroundViewBlack.h"

#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>

#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

void BackgroundViewBlack::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient upward(rect().bottomLeft() + QPoint(0, 1), rect().topLeft());
    upward.setColorAt(0, tokens::kGroundBottom);
    upward.setColorAt(1, tokens::kGroundTop);
    fillRounded(painter, rect(), 1, upward, event->rect());
}

}  // namespace qm
