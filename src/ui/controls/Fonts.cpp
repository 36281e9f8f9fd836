#include "ui/controls/Fonts.h"

#include <QCache>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr int kCachedOutlines = 2000;
constexpr double kCellRoom = 1.008;  // of the widest digit, as the family's own tabular digits have

QString uiFamily() {
    static const QString family = [] {
        return QFontDatabase::hasFamily(QStringLiteral("Inter"))
                   ? QStringLiteral("Inter")
                   : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    }();
    return family;
}

double screenDpi() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchY() : 96.0;
}

// The toolkit rounds sizes to whole pixels, so text is laid out at a whole size and scaled to the exact one.
struct ExactFont {
    explicit ExactFont(const QFont& wanted) : whole(wanted) {
        const double pixels = wanted.pixelSize() > 0 ? wanted.pixelSize() : wanted.pointSizeF() * screenDpi() / 72;
        spacing = wanted.letterSpacing();
        whole.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
        whole.setLetterSpacing(QFont::AbsoluteSpacing, 0);
        scale = pixels / whole.pixelSize();
    }
    QFont whole;
    double scale = 1;
    double spacing = 0;  // pixels after each character
};

// The font and everything that follows from it, kept for the next text in it.
struct FontMeasures {
    explicit FontMeasures(const QFont& font) : exact(font), metrics(exact.whole) {
        double widest = 0;
        for (char digit = '0'; digit <= '9'; ++digit)
            widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
        cell = widest * kCellRoom * exact.scale;
    }
    double advance(const QString& text) const {
        return metrics.horizontalAdvance(text) * exact.scale + exact.spacing * static_cast<double>(text.size());
    }
    ExactFont exact;
    QFontMetricsF metrics;
    double cell = 0;  // width of a digit's cell, without spacing
};

const FontMeasures& measuresOf(const QFont& font) {
    static QCache<QString, FontMeasures> cache(64);
    const QString key = font.key() + u'/' + QString::number(font.letterSpacing());
    FontMeasures* measures = cache.object(key);
    if (!measures) {
        measures = new FontMeasures(font);
        cache.insert(key, measures);
    }
    return *measures;
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// Cuts the text into single digits and stretches of everything else, and calls `place` with each and its x; answers
// the width of the whole.
template <typename Place>
double layOut(const FontMeasures& font, const QString& text, Place place) {
    double x = 0;
    for (qsizetype i = 0; i < text.size();) {
        if (isDigit(text[i])) {
            const QString digit = text.mid(i, 1);
            place(digit, x + (font.cell - font.metrics.horizontalAdvance(digit) * font.exact.scale) / 2);
            x += font.cell + font.exact.spacing;
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < text.size() && !isDigit(text[end])) ++end;
        const QString stretch = text.mid(i, end - i);
        place(stretch, x);
        x += font.advance(stretch);
        i = end;
    }
    return x;
}

// Text is filled as outlines: the same shapes and weights at every size, scale and place.
const QPainterPath& outlineOf(const FontMeasures& font, const QString& fontKey, const QString& text) {
    static QCache<QString, QPainterPath> cache(kCachedOutlines);
    const QString key = fontKey + u'/' + text;
    QPainterPath* path = cache.object(key);
    if (!path) {
        path = new QPainterPath;
        QFont spaced = font.exact.whole;
        if (font.exact.spacing != 0)
            spaced.setLetterSpacing(QFont::AbsoluteSpacing, font.exact.spacing / font.exact.scale);
        path->setFillRule(Qt::WindingFill);
        path->addText(0, 0, spaced, text);
        cache.insert(key, path);
    }
    return *path;
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
    return layOut(measuresOf(font), text, [](const QString&, double) {});
}

QString elidedText(const QFont& font, const QString& text, double width) {
    constexpr double kTolerance = 0.01;
    if (textWidth(font, text) <= width + kTolerance) return text;
    const QString ellipsis = QStringLiteral("…");
    qsizetype fits = 0, tooLong = text.size();
    while (tooLong - fits > 1) {
        const qsizetype middle = (fits + tooLong) / 2;
        (textWidth(font, text.left(middle) + ellipsis) <= width ? fits : tooLong) = middle;
    }
    if (fits > 0 && text[fits - 1].isHighSurrogate()) --fits;
    return text.left(fits).trimmed() + ellipsis;
}

void drawLineAt(QPainter& painter, const QPointF& left, const QString& text) {
    const QFont font = painter.font();
    const FontMeasures& measures = measuresOf(font);
    const QString key = font.key() + u'/' + QString::number(font.letterSpacing());
    const QBrush ink(painter.pen().color());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(left);
    painter.scale(measures.exact.scale, measures.exact.scale);
    double drawnAt = 0;
    layOut(measures, text, [&](const QString& piece, double x) {
        painter.translate((x - drawnAt) / measures.exact.scale, 0);
        drawnAt = x;
        painter.fillPath(outlineOf(measures, key, piece), ink);
    });
    painter.restore();
}

void drawLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text) {
    double left = rect.left();
    if (alignment & Qt::AlignRight) left = rect.right() - textWidth(painter.font(), text);
    if (alignment & Qt::AlignHCenter) left = rect.center().x() - textWidth(painter.font(), text) / 2;
    drawLineAt(painter, {left, centredBaseline(painter.font(), rect.top(), rect.height())}, text);
}

double fontAscent(const QFont& font) {
    const FontMeasures& measures = measuresOf(font);
    return measures.metrics.ascent() * measures.exact.scale;
}

double fontHeight(const QFont& font) {
    const FontMeasures& measures = measuresOf(font);
    return (measures.metrics.ascent() + measures.metrics.descent()) * measures.exact.scale;
}

double centredBaseline(const QFont& font, double top, double height) {
    // Whole pixels: a line on a fraction of one would be blurred or jump with its neighbours.
    const double ascent = std::round(fontAscent(font));
    const double descent = std::round(fontHeight(font) - fontAscent(font));
    return std::floor(top + (height - ascent - descent) / 2) + ascent;
}

}  // namespace qm
