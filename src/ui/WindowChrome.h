// The main window's fade-in at start-up. Main thread only; without a main window nothing happens.
#pragma once

#include "app/PlayerState.h"
#include "ui/controls/Outlets.h"

namespace qm {

class WindowChrome {
public:
    WindowChrome(PlayerState& state, const Outlets& outlets);

    // Makes the window fully transparent and starts the timer of the fade.
    void startFadeIn();

    // One step. The window is given alpha values beyond 1 and becomes the key window when the next would be 1.1.
    void fadeinMainWindow();

private:
    PlayerState& m_state;
    const Outlets& m_outlets;
};

}  // namespace qm
