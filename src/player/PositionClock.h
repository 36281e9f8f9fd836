// The position clock: a timer that ten times a second moves the position slider and rewrites the elapsed and the
// remaining time, and the slider's seek. Times of the slider are units of the movie's own scale. Main thread only.
// Without a movie every operation does nothing, except that a seek puts the slider back to 0.
#pragma once

#include "app/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

class PositionClock {
public:
    PositionClock(
        Uses<const CurrentMovie, const MovieHandle, const LoopState, const MarkBState, CueTimer, const TimeTexts> state,
        Uses<const ClockOutlets, const PositionOutlet> outlets, MovieToolbox& toolbox);

    // Replaces the running timer, if any: there is never more than one.
    void startCueTimer();

    // Starts it when it stands, so that the display follows what was moved: a movie that is done has stopped it.
    void wake();

    // One tick. The one that finds the movie done stops the timer.
    void updateSlider();

    void movieTimeChanged();

    // The position slider's action. Refused while a loop whose B the user has set is on; the next tick puts the slider
    // back.
    void cueUpdate(double value);

private:
    void followWithSlider(double time);

    const CurrentMovie& m_movie;
    const MovieHandle& m_handle;
    const LoopState& m_loopState;
    const MarkBState& m_markB;
    CueTimer& m_cueTimer;
    const TimeTexts& m_texts;
    const ClockOutlets& m_outlets;
    const PositionOutlet& m_position;
    MovieToolbox& m_toolbox;
};

}  // namespace qm
