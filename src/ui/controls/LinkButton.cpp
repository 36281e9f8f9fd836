#include "ui/controls/LinkButton.h"

#include <QPainter>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kLine = 18, kSide = 4;

}  // namespace

LinkButton::LinkButton(const QString& text, QWidget* parent) : FaceButton(parent) {
    setFont(uiFont(13, 500));
    setText(text);
    setAccessibleName(text);
}

QSize LinkButton::sizeHint() const {
    return {static_cast<int>(std::ceil(textWidth(font(), text()))) + 2 * kSide, kLine};
}

void LinkButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(drawingOpacity());
    painter.setFont(font());
    painter.setPen(isDown() ? tokens::kLinkPressed : tokens::kLink);
    drawLine(painter, rect(), Qt::AlignHCenter, text());
    if (!isHovered()) return;
    const double width = textWidth(font(), text());
    const double baseline = centredBaseline(font(), height(), devicePixelRatioF());
    const QRectF line((this->width() - width) / 2, baseline + 2, width, 1);
    painter.fillRect(onPixels(painter, line), painter.pen().color());
}

}  // namespace qm
