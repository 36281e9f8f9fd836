// The three transport buttons as one picture of what the player does. Main thread only.
#pragma once

#include "ui/controls/Outlets.h"

namespace qm {

void showForwardImages(const TransportButtons& buttons);
void showBackwardImages(const TransportButtons& buttons);
void showPauseImages(const TransportButtons& buttons);

// Backward below 0, forward otherwise.
void showImagesForRate(const TransportButtons& buttons, float rate);

}  // namespace qm
