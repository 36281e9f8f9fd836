// What of a text fits: elision, lines, places.
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>

#include "ui/controls/ExactFont.h"
#include "ui/controls/Fonts.h"

namespace qm {

namespace {

constexpr double kTolerance = 0.01;  // of a pixel
const QString kEllipsis = QStringLiteral("…");

// Two of them are a flag.
bool isLetterOfFlag(const QString& text, qsizetype at) {
    return at + 1 < text.size() && text[at].unicode() == 0xD83C && text[at + 1] >= QChar(0xDDE6) &&
           text[at + 1] <= QChar(0xDDFF);
}

// Where a character ends, as people count them, the beginning of the text included. The toolkit parts flags.
QList<qsizetype> characterEnds(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    QList<qsizetype> ends{0};
    for (qsizetype end = finder.toNextBoundary(); end > 0; end = finder.toNextBoundary()) {
        const bool isHalfFlag = end - ends.last() == 2 && isLetterOfFlag(text, ends.last());
        if (!isHalfFlag || !isLetterOfFlag(text, end)) ends << end;
    }
    return ends;
}

// The text itself where it fits, else what `cut` makes of as many of its characters as fit.
template <typename Cut>
QString longestThatFits(const QFont& font, const QString& text, double width, Cut cut) {
    if (textWidth(font, text) <= width + kTolerance) return text;
    const QList<qsizetype> ends = characterEnds(text);
    qsizetype fits = 0, tooLong = ends.size() - 1;
    while (tooLong - fits > 1) {
        const qsizetype middle = (fits + tooLong) / 2;
        (textWidth(font, cut(ends, middle)) <= width ? fits : tooLong) = middle;
    }
    return cut(ends, fits);
}

QStringList linesOf(const QFont& font, const QString& paragraph, double width) {
    const ExactFont& exact = exactFont(font);
    QTextLayout layout(paragraph, exact.face->font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(width + kTolerance, 1.0) / exact.scale);
        lines << paragraph.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return lines.isEmpty() ? QStringList(QString()) : lines;
}

}  // namespace

QString elidedText(const QFont& font, const QString& text, double width) {
    return longestThatFits(font, text, width, [&](const QList<qsizetype>& ends, qsizetype kept) {
        return text.left(ends[kept]).trimmed() + kEllipsis;
    });
}

QString elidedInMiddle(const QFont& font, const QString& text, double width) {
    return longestThatFits(font, text, width, [&](const QList<qsizetype>& ends, qsizetype kept) {
        const qsizetype tail = ends[ends.size() - 1 - kept / 2];
        return text.left(ends[(kept + 1) / 2]).trimmed() + kEllipsis + text.mid(tail).trimmed();
    });
}

QStringList wrappedText(const QFont& font, const QString& text, double width) {
    QStringList lines;
    for (const QString& paragraph : text.split(u'\n')) lines << linesOf(font, paragraph, width);
    return lines;
}

int placeInLine(const QFont& font, const QString& line, double x) {
    const ExactFont& exact = exactFont(font);
    return exact.face->line(line).placeAt(x / exact.scale);
}

QList<std::pair<double, double>> spansInLine(const QFont& font, const QString& line, int from, int to) {
    const ExactFont& exact = exactFont(font);
    auto spans = exact.face->line(line).spansOf(from, to);
    for (auto& [left, right] : spans) {
        left *= exact.scale;
        right *= exact.scale;
    }
    return spans;
}

}  // namespace qm
