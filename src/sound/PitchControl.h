// The pitch in cents, -1200 to 1200; it leaves the speed alone. The movie gets it at once, playing or not. Main thread
// only; the engine's status is ignored.
#pragma once

#include "app/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

class PitchControl {
public:
    PitchControl(Uses<const CurrentMovie, const MovieHandle, PitchState, const TitleAttributes> state,
                 const PitchOutlets& outlets, MovieToolbox& toolbox);

    void pitchUpdate(double value);  // the slider's action
    void semiToneDown();
    void semiToneUp();
    void pitchReset();

private:
    void stepTo(double cents);
    void showTitle();
    void applyToMovie();

    const CurrentMovie& m_movie;
    const MovieHandle& m_handle;
    PitchState& m_pitchState;
    const TitleAttributes& m_titles;
    const PitchOutlets& m_outlets;
    MovieToolbox& m_toolbox;
};

}  // namespace qm
