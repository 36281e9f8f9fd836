// The program's type: sizes in logical pixels, fractions of one counting, one family for the whole window, and digits
// that all stand in cells of one width, so that changing numbers never jitter. Main thread only.
#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace qm {

// Begins to read the system's font configuration on another thread; the first font waits for it. Call at most once,
// before the application object is built, which does not need it.
void beginReadingFonts();

// Font of `pixels` logical pixels and `weight` (400, 500, 600, 700); `spacing` is in parts of the size, for example
// -0.03. Text in it is measured and drawn with the functions below, which know its exact size.
QFont uiFont(double pixels, int weight = 400, double spacing = 0);

double textWidth(const QFont& font, const QString& text);

// The text, cut at its end with an ellipsis if it is wider than `width`.
QString elidedText(const QFont& font, const QString& text, double width);

// The same, cut in its middle: both ends of a path say something.
QString elidedInMiddle(const QFont& font, const QString& text, double width);

// Draws one line in the painter's font and pen, centred vertically; `alignment` takes the horizontal flags.
void drawLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text);

// Draws one line from `left` on a baseline of its own, which is moved to the nearest row of the screen's pixels.
void drawLineAt(QPainter& painter, const QPointF& left, const QString& text);

// The baseline that centres a line of the font's own height in `height`, in whole pixels of a screen of that scale.
double centredBaseline(const QFont& font, double height, double scale);

double fontAscent(const QFont& font);
double fontHeight(const QFont& font);

}  // namespace qm
