#include "ui/controls/Fonts.h"

#include <QCache>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <future>
#include <memory>
#include <optional>

#include "ui/controls/PixelGrid.h"

#ifdef QUILLMERE_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

namespace qm {

namespace {

// Text is laid out at one large size and scaled to the exact one: the same shapes and weights at every size, scale and
// place, and only one font to load for each weight.
constexpr int kLayoutPixels = 256;
constexpr int kCachedPieces = 2000;
constexpr double kCellRoom = 1.008;  // of the widest digit, as the family's own tabular digits have

std::future<void> g_readingFonts;

QString uiFamily() {
    static const QString family = [] {
        if (g_readingFonts.valid()) g_readingFonts.wait();
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

// A weight and letter spacing of the family at the layout size, with what was asked of it kept for the next time.
class Face {
public:
    explicit Face(const QFont& font) : m_spaced(font), m_spacing(font.letterSpacing()), m_metrics(plain(font)) {
        for (char digit = '0'; digit <= '9'; ++digit)
            m_cell = std::max(m_cell, m_metrics.horizontalAdvance(QChar(digit)));
        m_cell *= kCellRoom;
    }

    double advance(const QString& text) {
        Piece& known = piece(text);
        if (!known.advance) known.advance = m_metrics.horizontalAdvance(text);
        return *known.advance + m_spacing * static_cast<double>(text.size());
    }

    const QPainterPath& outline(const QString& text) {
        Piece& known = piece(text);
        if (!known.outline) {
            known.outline.emplace().setFillRule(Qt::WindingFill);
            known.outline->addText(0, 0, m_spaced, text);
        }
        return *known.outline;
    }

    double cell() const { return m_cell + m_spacing; }  // of a digit
    double ascent() const { return m_metrics.ascent(); }
    double descent() const { return m_metrics.descent(); }

private:
    struct Piece {
        std::optional<double> advance;  // without spacing
        std::optional<QPainterPath> outline;
    };

    static QFont plain(QFont font) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, 0);
        return font;
    }

    Piece& piece(const QString& text) {
        if (!m_pieces.contains(text)) m_pieces.insert(text, new Piece);
        return *m_pieces.object(text);
    }

    QFont m_spaced;
    double m_spacing;
    QFontMetricsF m_metrics;
    double m_cell = 0;  // without spacing
    QCache<QString, Piece> m_pieces{kCachedPieces};
};

std::shared_ptr<Face> faceOf(const QFont& layoutFont) {
    static QHash<QFont, std::shared_ptr<Face>> faces;
    auto& face = faces[layoutFont];
    if (!face) face = std::make_shared<Face>(layoutFont);
    return face;
}

// A font at its exact size: its face, and the scale from the layout size.
struct ExactFont {
    double scale = 1;
    std::shared_ptr<Face> face;
};

const ExactFont& exactFont(const QFont& font) {
    static QHash<QFont, ExactFont> fonts;
    ExactFont& exact = fonts[font];
    if (exact.face) return exact;
    const double pixels = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * screenDpi() / 72;
    exact.scale = pixels / kLayoutPixels;
    QFont layoutFont = font;
    layoutFont.setPixelSize(kLayoutPixels);
    layoutFont.setLetterSpacing(QFont::AbsoluteSpacing, font.letterSpacing() / exact.scale);
    exact.face = faceOf(layoutFont);
    return exact;
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// Cuts the text into single digits and stretches of everything else, and calls `place` with each and its x; answers
// the width of the whole. All lengths are those of the layout size.
template <typename Place>
double layOut(Face& face, const QString& text, Place place) {
    double x = 0;
    for (qsizetype i = 0; i < text.size();) {
        if (isDigit(text[i])) {
            const QString digit = text.mid(i, 1);
            place(digit, x + (face.cell() - face.advance(digit)) / 2);
            x += face.cell();
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < text.size() && !isDigit(text[end])) ++end;
        const QString stretch = text.mid(i, end - i);
        place(stretch, x);
        x += face.advance(stretch);
        i = end;
    }
    return x;
}

const QString kEllipsis = QStringLiteral("…");

QString headOf(const QString& text, qsizetype length) {
    if (length > 0 && text[length - 1].isHighSurrogate()) --length;
    return text.left(length).trimmed();
}

QString tailOf(const QString& text, qsizetype length) {
    if (length > 0 && text[text.size() - length].isLowSurrogate()) --length;
    return text.right(length).trimmed();
}

// The text itself where it fits, else what `cut` makes of as many of its characters as fit.
template <typename Cut>
QString longestThatFits(const QFont& font, const QString& text, double width, Cut cut) {
    constexpr double kTolerance = 0.01;
    if (textWidth(font, text) <= width + kTolerance) return text;
    qsizetype fits = 0, tooLong = text.size();
    while (tooLong - fits > 1) {
        const qsizetype middle = (fits + tooLong) / 2;
        (textWidth(font, cut(middle)) <= width ? fits : tooLong) = middle;
    }
    return cut(fits);
}

}  // namespace

void beginReadingFonts() {
#ifdef QUILLMERE_FONTCONFIG
    g_readingFonts = std::async(std::launch::async, [] { FcInit(); });
#endif
}

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
    return layOut(*exact.face, text, [](const QString&, double) {}) * exact.scale;
}

QString elidedText(const QFont& font, const QString& text, double width) {
    return longestThatFits(font, text, width, [&](qsizetype kept) { return headOf(text, kept) + kEllipsis; });
}

QString elidedInMiddle(const QFont& font, const QString& text, double width) {
    return longestThatFits(font, text, width, [&](qsizetype kept) {
        return headOf(text, (kept + 1) / 2) + kEllipsis + tailOf(text, kept / 2);
    });
}

void drawLineAt(QPainter& painter, const QPointF& left, const QString& text) {
    const ExactFont& exact = exactFont(painter.font());
    const QBrush ink(painter.pen().color());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // On a fraction of a pixel the line would be blurred and jump with its neighbours.
    painter.translate(left.x(), onPixelRow(painter, left.y()));
    painter.scale(exact.scale, exact.scale);
    double drawnAt = 0;
    layOut(*exact.face, text, [&](const QString& piece, double x) {
        painter.translate(x - drawnAt, 0);
        drawnAt = x;
        painter.fillPath(exact.face->outline(piece), ink);
    });
    painter.restore();
}

void drawLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text) {
    double left = rect.left();
    if (alignment & Qt::AlignRight) left = rect.right() - textWidth(painter.font(), text);
    if (alignment & Qt::AlignHCenter) left = rect.center().x() - textWidth(painter.font(), text) / 2;
    const double scale = painter.deviceTransform().m22();
    drawLineAt(painter, {left, rect.top() + centredBaseline(painter.font(), rect.height(), scale)}, text);
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
