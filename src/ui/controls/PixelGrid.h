// Shapes on whole pixels of the screen, which are not whole logical pixels where the scale is 1.25 or 1.5. For painters
// that are only moved and scaled. Main thread only.
#pragma once

#include <QBrush>
#include <QRectF>

class QPainter;

namespace qm {

// The rectangle with its edges on the pixels nearest to them.
QRectF onPixels(const QPainter& painter, const QRectF& rect);

// The height on the row of pixels nearest to it.
double onPixelRow(const QPainter& painter, double y);

// The width of the thinnest sharp line that is no wider than one logical pixel, or one pixel of the screen.
double hairline(const QPainter& painter);

// Whether a shape that moves so many logical pixels looks different on a screen of that scale: from a quarter of one of
// its pixels on.
bool isSeenToMove(double distance, double scale);

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush);

// The same where the painter is clipped to `part`, which mostly holds no corner: then nothing is to be rounded.
void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush, const QRectF& part);

// Inside the rectangle; `width` counts hairlines.
void strokeRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color, double width = 1);

}  // namespace qm
