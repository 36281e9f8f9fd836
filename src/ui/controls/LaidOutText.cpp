#include "ui/controls/LaidOutText.h"

#include <QCache>
#include <QHash>
#include <QPainter>
#include <QRawFont>
#include <QTextOption>
#include <algorithm>
#include <utility>

namespace qm {

namespace {

constexpr int kKeptLetters = 3000;
constexpr double kEndless = 1e7;  // a width that no line has

// A font of coloured pictures instead of outlines.
bool hasPictures(const QRawFont& font) {
    static QHash<QString, bool> known;
    const QString name = font.familyName();
    const auto found = known.constFind(name);
    if (found != known.constEnd()) return *found;
    const bool has = !font.fontTable("CBDT").isEmpty() || !font.fontTable("sbix").isEmpty();
    known.insert(name, has);
    return has;
}

// Kept, because a window is written with few letters many times.
const QPainterPath& outlineOf(const QRawFont& font, quint32 glyph) {
    using Letter = std::pair<QRawFont, quint32>;
    static QCache<Letter, QPainterPath> known(kKeptLetters);
    const Letter letter(font, glyph);
    if (const QPainterPath* outline = known.object(letter)) return *outline;
    auto* outline = new QPainterPath(font.pathForGlyph(glyph));
    known.insert(letter, outline);
    return *outline;
}

}  // namespace

LaidOutText::LaidOutText(const QFont& font, const QString& text, Qt::LayoutDirection direction) : m_layout(text, font) {
    QTextOption option;
    option.setTextDirection(direction);
    option.setWrapMode(QTextOption::NoWrap);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    m_layout.setTextOption(option);
    m_layout.setCacheEnabled(true);
    m_layout.beginLayout();
    QTextLine line = m_layout.createLine();
    if (line.isValid()) line.setLineWidth(kEndless);
    m_layout.endLayout();
    if (!line.isValid()) return;
    m_left = line.naturalTextRect().left();
    m_baseline = line.y() + line.ascent();
    m_width = line.naturalTextWidth();
}

void LaidOutText::makeOutline() {
    if (std::exchange(m_hasOutline, true)) return;
    m_outline.setFillRule(Qt::WindingFill);
    for (QGlyphRun& run : m_layout.glyphRuns()) {
        const QRawFont font = run.rawFont();
        const QList<quint32> glyphs = run.glyphIndexes();
        QList<QPointF> places = run.positions();
        for (QPointF& place : places) place -= QPointF(m_left, m_baseline);
        if (hasPictures(font)) {
            run.setPositions(places);
            m_pictures << run;
            continue;
        }
        for (qsizetype i = 0; i < glyphs.size(); ++i)
            m_outline.addPath(outlineOf(font, glyphs[i]).translated(places[i]));
    }
}

// Pictures come in a few sizes, none as large as that of layout, and have to be asked for at their own.
void LaidOutText::scalePictures(double scale) {
    if (m_picturesScale == scale) return;
    m_picturesScale = scale;
    m_scaledPictures = m_pictures;
    for (QGlyphRun& run : m_scaledPictures) {
        QRawFont font = run.rawFont();
        font.setPixelSize(font.pixelSize() * scale);
        QList<QPointF> places = run.positions();
        for (QPointF& place : places) place *= scale;
        run.setRawFont(font);
        run.setPositions(places);
    }
}

void LaidOutText::draw(QPainter& painter, double scale) {
    makeOutline();
    painter.save();
    painter.scale(scale, scale);
    painter.fillPath(m_outline, painter.pen().color());
    painter.restore();
    if (m_pictures.isEmpty()) return;
    scalePictures(scale);
    painter.save();
    painter.setOpacity(painter.opacity() * painter.pen().color().alphaF());
    for (const QGlyphRun& run : std::as_const(m_scaledPictures)) painter.drawGlyphRun({}, run);
    painter.restore();
}

int LaidOutText::placeAt(double x) const {
    const QTextLine line = m_layout.lineAt(0);
    return line.isValid() ? line.xToCursor(x + m_left, QTextLine::CursorBetweenCharacters) : 0;
}

QList<std::pair<double, double>> LaidOutText::spansOf(int from, int to) const {
    QList<std::pair<double, double>> spans;
    const QTextLine line = m_layout.lineAt(0);
    if (!line.isValid()) return spans;
    for (int place = from; place < to;) {
        int next = m_layout.nextCursorPosition(place);
        if (next <= place) break;
        int leading = place, trailing = place;
        const double begin = line.cursorToX(&leading, QTextLine::Leading) - m_left;
        const double end = line.cursorToX(&trailing, QTextLine::Trailing) - m_left;
        spans << std::minmax({begin, end});
        place = next;
    }
    return spans;
}

}  // namespace qm
