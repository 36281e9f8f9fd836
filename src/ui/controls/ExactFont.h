// A font at its exact size: text is laid out at one large size and scaled to it, so that it has the same shapes and
// weights at every size, scale and place, and there is only one font to load for each weight. What was laid out is kept
// for the next time. Main thread only.
#pragma once

#include <QCache>
#include <QFont>
#include <QString>
#include <memory>

#include "ui/controls/LaidOutText.h"

namespace qm {

// A weight and letter spacing of a family at the size of layout; all lengths are of that size.
class Face {
public:
    explicit Face(const QFont& font);

    const QFont& font() const { return m_font; }
    LaidOutText& line(const QString& text, Qt::LayoutDirection direction = Qt::LayoutDirectionAuto);
    double digitCell() const { return m_cell; }
    double ascent() const { return m_ascent; }
    double descent() const { return m_descent; }

private:
    using Key = std::pair<QString, Qt::LayoutDirection>;

    QFont m_font;
    double m_cell = 0, m_ascent = 0, m_descent = 0;
    QCache<Key, LaidOutText> m_lines;
};

struct ExactFont {
    double scale = 1;  // from the size of layout to its own
    std::shared_ptr<Face> face;
};

const ExactFont& exactFont(const QFont& font);

double screenDpi();  // by which the toolkit converts points to pixels

}  // namespace qm
