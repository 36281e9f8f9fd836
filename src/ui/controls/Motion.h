// Whether things may move on the screen. Main thread only.
#pragma once

#include <QWidget>

namespace qm {

// What the desktop's settings say; until they say so, things move.
void setMotionWanted(bool wanted);
bool motionIsWanted();

bool motionIsWanted(const QWidget& widget);  // by its style as well

}  // namespace qm
