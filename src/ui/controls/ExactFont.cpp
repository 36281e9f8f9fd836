#include "ui/controls/ExactFont.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QScreen>
#include <algorithm>

namespace qm {

namespace {

constexpr int kLayoutPixels = 256;
constexpr int kKeptLines = 2000;
constexpr double kCellRoom = 1.008;  // of the widest digit, as the family's own tabular digits have

std::shared_ptr<Face> faceOf(const QFont& layoutFont) {
    static QHash<QFont, std::shared_ptr<Face>> faces;
    auto& face = faces[layoutFont];
    if (!face) face = std::make_shared<Face>(layoutFont);
    return face;
}

}  // namespace

Face::Face(const QFont& font) : m_font(font), m_lines(kKeptLines) {
    QFont plain = font;
    plain.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    const QFontMetricsF metrics(plain);
    for (char digit = '0'; digit <= '9'; ++digit) m_cell = std::max(m_cell, metrics.horizontalAdvance(QChar(digit)));
    m_cell = m_cell * kCellRoom + font.letterSpacing();
    m_ascent = metrics.ascent();
    m_descent = metrics.descent();
}

LaidOutText& Face::line(const QString& text, Qt::LayoutDirection direction) {
    const Key key(text, direction);
    if (LaidOutText* known = m_lines.object(key)) return *known;
    auto* line = new LaidOutText(m_font, text, direction);
    m_lines.insert(key, line);
    return *line;
}

double screenDpi() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchY() : 96.0;
}

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

}  // namespace qm
