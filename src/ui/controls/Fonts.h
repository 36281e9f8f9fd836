// The program's type: sizes in logical pixels, one family for the whole window, and text whose digits all stand in
// cells of one width so that changing numbers never jitter. Main thread only.
#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace qm {

// Font of `pixels` logical pixels (fractions count) and `weight` (400, 500, 600, 700); `spacing` is in parts of the
// size, for example -0.03.
QFont uiFont(double pixels, int weight = 400, double spacing = 0);

// The width that drawTabular() needs for the text.
double tabularWidth(const QFont& font, const QString& text);

// Draws one line with every digit in a cell as wide as the widest digit, in the painter's font and pen. `alignment`
// takes the horizontal flags; the line is centred vertically. Nothing is elided.
void drawTabular(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text);

// The baseline that centres a line of the font's own height in [top, top + height].
double centredBaseline(const QFont& font, double top, double height);

}  // namespace qm
