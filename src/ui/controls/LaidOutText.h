// One line of text as the toolkit lays it out: shaped, in the order in which it is read, from other fonts where the
// font itself lacks a letter. Its letters are kept as outlines, so that they can be drawn at every size; coloured
// signs, which have none, are drawn as the pictures that they are. Main thread only.
#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QList>
#include <QPainterPath>
#include <QString>
#include <QTextLayout>
#include <utility>

class QPainter;

namespace qm {

class LaidOutText {
public:
    LaidOutText(const QFont& font, const QString& text, Qt::LayoutDirection direction);

    double width() const { return m_width; }  // with the spaces at its end

    // From the painter's origin on, which lies on the baseline, in the colour of its pen.
    void draw(QPainter& painter, double scale);

    // Places between characters, in logical order, and where they are seen.
    int placeAt(double x) const;
    QList<std::pair<double, double>> spansOf(int from, int to) const;  // of each character, left and right

private:
    void makeOutline();
    void scalePictures(double scale);

    QTextLayout m_layout;
    double m_left = 0, m_baseline = 0, m_width = 0;
    bool m_hasOutline = false;
    QPainterPath m_outline;
    QList<QGlyphRun> m_pictures;  // at the size of layout
    QList<QGlyphRun> m_scaledPictures;
    double m_picturesScale = 0;
};

}  // namespace qm
