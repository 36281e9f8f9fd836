#include "ui/controls/Motion.h"

#include <QStyle>

namespace qm {

namespace {

bool g_wanted = true;

}  // namespace

void setMotionWanted(bool wanted) {
    g_wanted = wanted;
}

bool motionIsWanted() {
    return g_wanted;
}

bool motionIsWanted(const QWidget& widget) {
    return g_wanted && widget.style()->styleHint(QStyle::SH_Widget_Animate, nullptr, &widget) != 0;
}

}  // namespace qm
