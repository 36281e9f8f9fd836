// Whether things may move on the screen. Main thread only.
#pragma once

#include <QStyle>
#include <QWidget>

namespace qm {

// False when the system asks for reduced motion, as far as the toolkit knows.
inline bool motionIsWanted(const QWidget& widget) {
    return widget.style()->styleHint(QStyle::SH_Widget_Animate, nullptr, &widget) != 0;
}

}  // namespace qm
