#include <doctest/doctest.h>

#include <QImage>
#include <QPainter>
#include <functional>

#include "ui/controls/Card.h"
#include "ui/controls/PixelGrid.h"
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
            fillRounded(painter, card.rect(), tokens::kCardRadius, tokens::kWell);
            strokeRounded(painter, card.rect(), tokens::kCardRadius, tokens::kLine);
        });
        CHECK(shown == wanted);
    }
}
