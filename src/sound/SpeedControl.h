// The speed: one signed rate, magnitude 0.35 to 2.5 or 0, negative for backward. The movie gets it only while the
// player is playing; otherwise it is remembered for the next start. Main thread only; nothing fails.
#pragma once

#include "app/PlayerState.h"
#include "player/PositionClock.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

class SpeedControl {
public:
    SpeedControl(Uses<const CurrentMovie, const PlayState, SpeedState, const TitleAttributes> state,
                 Uses<const SpeedOutlets, const TransportButtons> outlets, PositionClock& clock);

    // The slider's action. Values beyond 2.5 pass as they are: the slider's bounds are the limit.
    void speedUpdate(double value);

    void speedX(float value);
    void speedDown();  // a step of 0.05 toward zero
    void speedUp();    // a step of 0.05 away from zero
    void speedReset();

    // Brings the rate into its limits, then shows it.
    void speedValidate();

    // Puts the rate on the slider and the value title.
    void showRate();

private:
    bool keepOutOfDeadBand();
    void showTitle();
    void applyToMovie();

    const CurrentMovie& m_movie;
    const PlayState& m_play;
    SpeedState& m_speedState;
    const TitleAttributes& m_titles;
    const SpeedOutlets& m_outlets;
    const TransportButtons& m_buttons;
    PositionClock& m_clock;
};

}  // namespace qm
