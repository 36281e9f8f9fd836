#include "ui/controls/CheckBox.h"

#include <QKeyEvent>
#include <QPainter>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kBox = 18, kGap = 10;
constexpr double kBoxRadius = 4, kBoxLine = 1.5;
constexpr QPointF kTick[] = {{5.2, 9.4}, {7.9, 12}, {12.8, 6.4}};

void paintOn(QPainter& painter, const QRectF& box, bool hovered) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(hovered ? QColor(0x66, 0xDE, 0xEA) : tokens::kAqua);
    painter.drawRoundedRect(box, kBoxRadius, kBoxRadius);
    painter.fillRect(QRectF(box.left() + 3, box.top(), box.width() - 6, 1), QColor(255, 255, 255, 115));
    painter.setPen(QPen(tokens::kAquaInk, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(box.topLeft());
    painter.drawPolyline(kTick, 3);
    painter.translate(-box.topLeft());
}

void paintOff(QPainter& painter, const QRectF& box, bool hovered) {
    const double half = kBoxLine / 2;
    painter.setPen(QPen(hovered ? tokens::kText2 : tokens::kNeutralBar, kBoxLine));
    painter.setBrush(QColor(0, 0, 0, 77));
    painter.drawRoundedRect(box.adjusted(half, half, -half, -half), kBoxRadius - half, kBoxRadius - half);
}

}  // namespace

CheckBox::CheckBox(const QString& text, QWidget* parent) : FaceButton(parent) {
    setCheckable(true);  // first: what assistive tools are told depends on it
    setFont(uiFont(13, 500));
    setText(text);
}

QSize CheckBox::sizeHint() const {
    return {kBox + kGap + static_cast<int>(std::ceil(textWidth(font(), text()))), kBox};
}

void CheckBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space) return FaceButton::keyPressEvent(event);
    if (!event->isAutoRepeat()) click();
}

void CheckBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(drawingOpacity());
    const QRectF box(0, (height() - kBox) / 2, kBox, kBox);
    if (isChecked())
        paintOn(painter, box, isHovered());
    else
        paintOff(painter, box, isHovered());
    if (isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 46));
        painter.drawRoundedRect(box, kBoxRadius, kBoxRadius);
    }
    painter.setFont(font());
    painter.setPen(tokens::kText);
    drawLine(painter, QRectF(kBox + kGap, 0, width() - kBox - kGap, height()), Qt::AlignLeft, text());
}

}  // namespace qm
