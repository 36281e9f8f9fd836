#include <doctest/doctest.h>

#include <QImage>
#include <QPainter>
#include <functional>

#include "ui/controls/Card.h"
#include "ui/controls/Tokens.h"

using namespace qm;

namespace {

QImage painted(double scale, const std::function<void(QPainter&)>& paint) {
    QImage image(QSize(200, 150) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(QColor(90, 120, 150));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
    return image;
}

}  // namespace

TEST_CASE("A tall card is one shape without a seam, at every sharpness of the screen") {
    Card card;
    card.resize(200, 150);
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const QImage shown = painted(
            scale, [&](QPainter& painter) { card.render(&painter, QPoint(), QRegion(), QWidget::RenderFlags()); });
        const QImage wanted = painted(scale, [&](QPainter& painter) {
            const double r = tokens::kCardRadius;
            painter.setPen(Qt::NoPen);
            painter.setBrush(tokens::kWell);
            painter.drawRoundedRect(card.rect(), r, r);
            painter.setPen(QPen(tokens::kLine, 1));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(QRectF(card.rect()).adjusted(0.5, 0.5, -0.5, -0.5), r - 0.5, r - 0.5);
        });
        CHECK(shown == wanted);
    }
}
