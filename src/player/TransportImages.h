// The three transport buttons as one picture of what the player does. Main thread only.
#pragma once

#include "ui/controls/Outlets.h"

namespace qm {

void showForwardImages(const Outlets& outlets);
void showBackwardImages(const Outlets& outlets);
void showPauseImages(const Outlets& outlets);

// Backward below 0, forward otherwise.
void showImagesForRate(const Outlets& outlets, float rate);

}  // namespace qm
