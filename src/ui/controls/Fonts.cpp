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

// Cuts a time into single digits and stretches of everything else, and calls `place` with each, its x, and the index
// behind it in the time; answers the width of the whole. All lengths are those of the layout size.
template <typename Place>
double layOutTime(Face& face, const QString& time, Place place) {
    double x = 0;
    for (qsizetype i = 0; i < time.size();) {
        qsizetype end = i + 1;
        while (!isDigit(time[i]) && end < time.size() && !isDigit(time[end])) ++end;
        LaidOutText& piece = face.line(time.mid(i, end - i), Qt::LeftToRight);
        const double room = isDigit(time[i]) ? face.digitCell() : piece.width();
        place(piece, x + (room - piece.width()) / 2, end);
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

// A letter may reach out of the width it takes, the more so where the letters are set close.
double reachOverCell(const QFont& font) {
    return 1 + fontHeight(font) / 16;
}

double leftOfLine(const QRectF& rect, Qt::Alignment alignment, double width) {
    if (alignment & Qt::AlignRight) return rect.right() - width;
    if (alignment & Qt::AlignHCenter) return rect.center().x() - width / 2;
    return rect.left();
}

QPointF placeOfLine(const QPainter& painter, const QRectF& rect, Qt::Alignment alignment, double width) {
    const double left = leftOfLine(rect, alignment, width);
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
    return layOutTime(*exact.face, time, [](LaidOutText&, double, qsizetype) {}) * exact.scale;
}

void drawTime(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& time,
              const std::optional<QRectF>& part) {
    const ExactFont& exact = exactFont(painter.font());
    const QPointF place = placeOfLine(painter, rect, alignment, timeWidth(painter.font(), time));
    const double over = reachOverCell(painter.font());
    beginLine(painter, place);
    double drawnAt = 0;
    layOutTime(*exact.face, time, [&](LaidOutText& piece, double x, qsizetype) {
        const double left = place.x() + x * exact.scale, right = left + piece.width() * exact.scale;
        if (part && (right + over < part->left() || left - over > part->right())) return;
        painter.translate((x - drawnAt) * exact.scale, 0);
        drawnAt = x;
        piece.draw(painter, exact.scale);
    });
    painter.restore();
}

QRectF timePart(const QFont& font, const QRectF& rect, Qt::Alignment alignment, const QString& time, qsizetype first,
                qsizetype last) {
    const ExactFont& exact = exactFont(font);
    double begin = 0, end = 0;
    qsizetype pieceBegin = 0;
    layOutTime(*exact.face, time, [&](LaidOutText& piece, double x, qsizetype behind) {
        if (behind <= first) begin = (x + piece.width()) * exact.scale;
        if (pieceBegin < last) end = (x + piece.width()) * exact.scale;
        pieceBegin = behind;
    });
    const double left = leftOfLine(rect, alignment, timeWidth(font, time)), over = reachOverCell(font);
    return {left + begin - over, rect.top(), end - begin + 2 * over, rect.height()};
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
