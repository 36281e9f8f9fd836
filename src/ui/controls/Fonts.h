// The program's type: sizes in logical pixels, fractions of one counting, one family for the whole window, and the
// toolkit's own layout for whatever people write: every script, in the order in which it is read. Only times stand in
// digit cells, so that they never jitter. Main thread only.
#pragma once

#include <QFont>
#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>

class QPainter;

namespace qm {

// Font of `pixels` logical pixels and `weight` (400, 500, 600, 700); `spacing` is in parts of the size, for example
// -0.03. Text in it is measured and drawn with the functions below, which know its exact size.
QFont uiFont(double pixels, int weight = 400, double spacing = 0);

double textWidth(const QFont& font, const QString& text);

// Draws one line in the painter's font and pen, centred vertically; `alignment` takes the horizontal flags. A text
// reads in the direction of its first letter that has one, unless it is said which.
void drawLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text,
              Qt::LayoutDirection direction = Qt::LayoutDirectionAuto);

// Draws one line from `left` on a baseline of its own, which is moved to the nearest row of the screen's pixels.
void drawLineAt(QPainter& painter, const QPointF& left, const QString& text,
                Qt::LayoutDirection direction = Qt::LayoutDirectionAuto);

// A time: the same, with each digit in a cell as wide as the widest.
double timeWidth(const QFont& font, const QString& time);
// Of one that is painted in part, only the characters that reach into `part` are drawn.
void drawTime(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& time,
              const std::optional<QRectF>& part = {});

// Where the characters from `first` to before `last` are drawn, with what reaches out of their cells.
QRectF timePart(const QFont& font, const QRectF& rect, Qt::Alignment alignment, const QString& time, qsizetype first,
                qsizetype last);

// The baseline that centres a line of the font's own height in `height`, in whole pixels of a screen of that scale.
double centredBaseline(const QFont& font, double height, double scale);

double fontAscent(const QFont& font);
double fontHeight(const QFont& font);

// What fits. No character is cut in two, however many signs it is written with.

// The text, cut at its end with an ellipsis if it is wider than `width`.
QString elidedText(const QFont& font, const QString& text, double width);

// The same, cut in its middle: both ends of a path say something.
QString elidedInMiddle(const QFont& font, const QString& text, double width);

// The text in lines, broken where its script allows it, inside a word only where that is wider than a line. Together
// they are the text without its line feeds; spaces may stand out behind a line.
QStringList wrappedText(const QFont& font, const QString& text, double width);

// The place between two characters of a line that is nearest to x, and where the characters between two places are
// seen, from left to right in pixels; a part of a line that reads both ways may be seen in several places.
int placeInLine(const QFont& font, const QString& line, double x);
QList<std::pair<double, double>> spansInLine(const QFont& font, const QString& line, int from, int to);

}  // namespace qm
