// The one way in which the player reports a problem to the user: it stops, shows a warning, and stands at the start of
// the track afterwards. Main thread only; runs until the user has dismissed the warning.
#pragma once

#include <QString>
#include <functional>

#include "app/PlayerState.h"
#include "player/Transport.h"
#include "sound/SpeedControl.h"
#include "ui/controls/Outlets.h"

namespace qm {

class PlayerAlert {
public:
    using RunAlert = std::function<void(const QString& message, const QString& information, const QString& button)>;

    PlayerAlert(PlayerState& state, const Outlets& outlets, SpeedControl& speed, Transport& transport);

    // A speed above normal goes back to normal; one at or below it, backward ones too, stays.
    void displayAlertInfoButtonText(const QString& message, const QString& information, const QString& button);

    // How the warning is shown, until it is dismissed in whichever way.
    void setRunAlert(RunAlert run) { m_runAlert = std::move(run); }

private:
    PlayerState& m_state;
    const Outlets& m_outlets;
    SpeedControl& m_speed;
    Transport& m_transport;
    RunAlert m_runAlert;
};

}  // namespace qm
