// Turns a rectangle between counting y from the top, as the toolkit does, and from the bottom. Any thread.
#pragma once

#include <QRect>

namespace qm {

// `screen` is the rectangle, counted from the top, whose bottom edge is y = 0 on the other side.
inline QRect flippedRect(const QRect& rect, const QRect& screen) {
    return {rect.x(), screen.y() + screen.height() - rect.y() - rect.height(), rect.width(), rect.height()};
}

}  // namespace qm
