#include "ui/controls/Fonts.h"

#include <QFontDatabase>
#include <QPainter>
#include <cmath>

#include "ui/controls/ExactFont.h"
#include "ui/controls/PixelGrid.h"

namespace qm {

namespace {

QString uiFamily() {
    static const QString family = [] {
        return QFontDatabase::hasFamily(QStringLiteral("Inter"))
                   ? QStringLiteral("Inter")
                   : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    }();
    return family;
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// Cuts a time into single digits and stretches of everything else, and calls `place` with each and its x; answers the
// width of the whole. All lengths are those of the layout size.
template <typename Place>
double layOutTime(Face& face, const QString& time, Place place) {
    double x = 0;
    for (qsizetype i = 0; i < time.size();) {
        qsizetype end = i + 1;
        while (!isDigit(time[i]) && end < time.size() && !isDigit(time[end])) ++end;
        LaidOutText& piece = face.line(time.mid(i, end - i), Qt::LeftToRight);
        const double room = isDigit(time[i]) ? face.digitCell() : piece.width();
        place(piece, x + (room - piece.width()) / 2);
        x += room;
        i = end;
    }
    return x;
}

// Puts the painter's origin there. On a fraction of a pixel the line would be blurred and jump with its neighbours.
void beginLine(QPainter& painter, const QPointF& left) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(left.x(), onPixelRow(painter, left.y()));
}

QPointF placeOfLine(const QPainter& painter, const QRectF& rect, Qt::Alignment alignment, double width) {
    double left = rect.left();
    if (alignment & Qt::AlignRight) left = rect.right() - width;
    if (alignment & Qt::AlignHCenter) left = rect.center().x() - width / 2;
    const double scale = painter.deviceTransform().m22();
    return {left, rect.top() + centredBaseline(painter.font(), rect.height(), scale)};
}

}  // namespace

QFont uiFont(double pixels, int weight, double spacing) {
    QFont font(uiFamily());
    font.setPointSizeF(pixels * 72.0 / screenDpi());
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setHintingPreference(QFont::PreferNoHinting);
    if (spacing != 0) font.setLetterSpacing(QFont::AbsoluteSpacing, spacing * pixels);
    return font;
}

double textWidth(const QFont& font, const QString& text) {
    const ExactFont& exact = exactFont(font);
    return exact.face->line(text).width() * exact.scale;
}

void drawLineAt(QPainter& painter, const QPointF& left, const QString& text, Qt::LayoutDirection direction) {
    const ExactFont& exact = exactFont(painter.font());
    beginLine(painter, left);
    exact.face->line(text, direction).draw(painter, exact.scale);
    painter.restore();
}

void drawLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text,
              Qt::LayoutDirection direction) {
    const ExactFont& exact = exactFont(painter.font());
    const double width = exact.face->line(text, direction).width() * exact.scale;
    drawLineAt(painter, placeOfLine(painter, rect, alignment, width), text, direction);
}

double timeWidth(const QFont& font, const QString& time) {
    const ExactFont& exact = exactFont(font);
    return layOutTime(*exact.face, time, [](LaidOutText&, double) {}) * exact.scale;
}

void drawTime(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& time) {
    const ExactFont& exact = exactFont(painter.font());
    beginLine(painter, placeOfLine(painter, rect, alignment, timeWidth(painter.font(), time)));
    double drawnAt = 0;
    layOutTime(*exact.face, time, [&](LaidOutText& piece, double x) {
        painter.translate((x - drawnAt) * exact.scale, 0);
        drawnAt = x;
        piece.draw(painter, exact.scale);
    });
    painter.restore();
}

double fontAscent(const QFont& font) {
    const ExactFont& exact = exactFont(font);
    return exact.face->ascent() * exact.scale;
}

double fontHeight(const QFont& font) {
    const ExactFont& exact = exactFont(font);
    return (exact.face->ascent() + exact.face->descent()) * exact.scale;
}

double centredBaseline(const QFont& font, double height, double scale) {
    const double exactDescent = (fontHeight(font) - fontAscent(font)) * scale;
    const double whole = std::round(fontAscent(font) * scale) + std::round(exactDescent);
    // Where pixels are small, what hangs below the line has room in full.
    const double descent = scale > 1 ? std::ceil(exactDescent) : std::round(exactDescent);
    const double ascent = whole - descent;
    return (std::floor((height * scale - ascent - descent) / 2) + ascent) / scale;
}

}  // namespace qm
