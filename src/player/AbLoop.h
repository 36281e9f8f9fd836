// The A and B marks of the play list's rows and the loop between them. The engine repeats the range by itself: nothing
// here watches for B. Marks are units of the row's own time scale. Main thread only; nothing is reported: without a
// current movie, or without a selected row where one is needed, an action ends where it first needs it.
#pragma once

#include "app/PlayerState.h"
#include "library/PlayListArrays.h"
#include "player/PositionClock.h"
#include "ui/controls/Outlets.h"

namespace qm {

class AbLoop {
public:
    AbLoop(PlayerState& state, PlayListArrays& list, const Outlets& outlets, MediaEngine& engine, PositionClock& clock);

    void loopSwitch();
    void markAUpdate();
    void markBUpdate();
    void resetMarks();

    // Shows A and B of the selected row.
    void displayLoopFields();

private:
    void switchOn(int row);
    void switchOff();
    void rearmAndShow();

    PlayerState& m_state;
    PlayListArrays& m_list;
    const Outlets& m_outlets;
    MediaEngine& m_engine;
    PositionClock& m_clock;
};

}  // namespace qm
