#include "ui/controls/Fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cmath>

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

double widestDigit(const QFontMetricsF& metrics) {
    double widest = 0;
    for (char digit = '0'; digit <= '9'; ++digit) widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

// Calls `place` with each character and the x at which it is drawn; answers the width of the whole.
template <typename Place>
double layOutTabular(const QFont& font, const QString& text, Place place) {
    const QFontMetricsF metrics(font);
    const double cell = widestDigit(metrics);
    double x = 0;
    for (int i = 0; i < text.size();) {
        const int length = text[i].isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        const QString glyph = text.mid(i, length);
        const double advance = metrics.horizontalAdvance(glyph);
        if (text[i] >= u'0' && text[i] <= u'9') {
            place(glyph, x + (cell - advance) / 2);
            x += cell;
        } else {
            place(glyph, x);
            x += advance;
        }
        i += length;
    }
    return x;
}

}  // namespace

QFont uiFont(double pixels, int weight, double spacing) {
    QFont font(uiFamily());
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double dpi = screen ? screen->logicalDotsPerInchY() : 96.0;
    font.setPointSizeF(pixels * 72.0 / dpi);
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setHintingPreference(QFont::PreferNoHinting);
    if (spacing != 0) font.setLetterSpacing(QFont::AbsoluteSpacing, spacing * pixels);
    return font;
}

double tabularWidth(const QFont& font, const QString& text) {
    return layOutTabular(font, text, [](const QString&, double) {});
}

void drawTabular(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text) {
    const QFont font = painter.font();
    double left = rect.left();
    if (alignment & Qt::AlignRight) left = rect.right() - tabularWidth(font, text);
    if (alignment & Qt::AlignHCenter) left = rect.center().x() - tabularWidth(font, text) / 2;
    const double baseline = centredBaseline(font, rect.top(), rect.height());
    layOutTabular(font, text,
                  [&](const QString& glyph, double x) { painter.drawText(QPointF(left + x, baseline), glyph); });
}

double centredBaseline(const QFont& font, double top, double height) {
    // Whole pixels: a line on a fraction of one would be blurred or jump with its neighbours.
    const QFontMetricsF metrics(font);
    const double ascent = std::round(metrics.ascent()), descent = std::round(metrics.descent());
    return std::floor(top + (height - ascent - descent) / 2) + ascent;
}

}  // namespace qm
