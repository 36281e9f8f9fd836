#include "ui/controls/BackgroundViewBlack.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include "ui/controls/Tokens.h"

namespace qm {

void BackgroundViewBlack::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(rect(), 1.0, 1.0);
    QLinearGradient upward(rect().bottomLeft() + QPoint(0, 1), rect().topLeft());
    upward.setColorAt(0, tokens::kGroundBottom);
    upward.setColorAt(1, tokens::kGroundTop);
    painter.fillPath(path, upward);
}

}  // namespace qm
