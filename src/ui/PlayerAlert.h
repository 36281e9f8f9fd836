// The one way in which the player reports a problem to the user: it stops, shows a warning, and stands at the start of
// the track afterwards. Main thread only; runs until the user has dismissed the warning.
#pragma once

#include <QString>
#include <functional>

#include "app/PlayerState.h"
#include "player/Transport.h"
#include "player/Uses.h"
#include "sound/SpeedControl.h"
#include "ui/controls/Outlets.h"

namespace qm {

class PlayerAlert {
public:
    using RunAlert = std::function<void(const QString& message, const QString& information, const QString& button)>;

    PlayerAlert(Uses<const CurrentMovie, PlayState, SpeedState, const CueTimer> state,
                Uses<const MainWindowOutlet, const TransportButtons> outlets, SpeedControl& speed,
                Transport& transport);

    // A speed above normal goes back to normal; one at or below it, backward ones too, stays.
    void displayAlertInfoButtonText(const QString& message, const QString& information, const QString& button);

    // How the warning is shown, until it is dismissed in whichever way.
    void setRunAlert(RunAlert run) { m_runAlert = std::move(run); }

private:
    const CurrentMovie& m_movie;
    PlayState& m_play;
    SpeedState& m_speedState;
    const CueTimer& m_cueTimer;
    const MainWindowOutlet& m_window;
    const TransportButtons& m_buttons;
    SpeedControl& m_speed;
    Transport& m_transport;
    RunAlert m_runAlert;
};

}  // namespace qm
