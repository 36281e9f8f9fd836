#include "ui/controls/PixelGrid.h"

#include <QPainter>
#include <QPen>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace qm {

QRectF onPixels(const QPainter& painter, const QRectF& rect) {
    const QTransform toPixels = painter.deviceTransform();
    const QRectF there = toPixels.mapRect(rect);
    const QPointF from(std::round(there.left()), std::round(there.top()));
    const QPointF to(std::round(there.right()), std::round(there.bottom()));
    return toPixels.inverted().mapRect(QRectF(from, to));
}

double onPixelRow(const QPainter& painter, double y) {
    const QTransform toPixels = painter.deviceTransform();
    return (std::round(y * toPixels.m22() + toPixels.dy()) - toPixels.dy()) / toPixels.m22();
}

double hairline(const QPainter& painter) {
    const double scale = painter.deviceTransform().m22();
    return std::max(1.0, std::floor(scale)) / scale;
}

bool isSeenToMove(double distance, double scale) {
    return std::abs(distance) * scale >= 0.25;
}

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(onPixels(painter, rect), radius, radius);
}

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush, const QRectF& part) {
    const double corner = radius + 1;
    const bool holdsNone = (part.left() >= rect.left() + corner && part.right() <= rect.right() - corner) ||
                           (part.top() >= rect.top() + corner && part.bottom() <= rect.bottom() - corner);
    if (holdsNone) return painter.fillRect(onPixels(painter, rect), brush);
    fillRounded(painter, rect, radius, brush);
}

void strokeRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color, double width) {
    const double line = width * hairline(painter), half = line / 2;
    const double inside = std::max(0.0, radius - half);
    painter.setPen(QPen(color, line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(onPixels(painter, rect).adjusted(half, half, -half, -half), inside, inside);
}

}  // namespace qm
