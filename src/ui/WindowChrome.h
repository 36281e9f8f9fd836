// The look of the windows around the player: the main window's fade-in at start-up, the grounds of the panels, and the
// about panel. Main thread only; without its window a function does nothing.
#pragma once

#include "app/PlayerState.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

class WindowChrome {
public:
    WindowChrome(FadeTimer& state, Uses<const MainWindowOutlet, const AboutOutlet, const InfoWindowOutlet> outlets);

    // Makes the window fully transparent and starts the timer of the fade.
    void startFadeIn();

    // One step. The window is given alpha values beyond 1 and becomes the key window when the next would be 1.1.
    void fadeinMainWindow();

    void setAboutPanelBackground();       // white
    void setTrackInfoWindowBackground();  // black
    void displayAboutPanel();

private:
    FadeTimer& m_fade;
    const MainWindowOutlet& m_window;
    const AboutOutlet& m_about;
    const InfoWindowOutlet& m_infoWindow;
};

}  // namespace qm
