// Starts, reverses and pauses the current track, goes to its start and skips by seconds. Direction is the sign of the
// rate; its magnitude is never changed here. Main thread only; nothing is reported: every action does nothing without
// a current movie, the play actions also without a selected row.
#pragma once

#include <cstdint>

#include "app/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "library/PlayListArrays.h"
#include "library/PlayListTable.h"
#include "library/TrackInfo.h"
#include "player/PositionClock.h"
#include "sound/SpeedControl.h"
#include "ui/controls/Outlets.h"

namespace qm {

class Transport {
public:
    Transport(PlayerState& state, PlayListArrays& list, const Outlets& outlets, MovieToolbox& toolbox,
              PositionClock& clock, SpeedControl& speed, PlayListTable& table, TrackInfo& info);

    void playForward();  // pauses when already playing
    void playBackward();
    void toggleStartStop();
    void pause();
    void goToStart();  // to A of the selected row while the loop is on

    // Seconds may lead past the ends: the engine clamps.
    void skip(std::int32_t seconds);

private:
    bool startSelectedRow();
    void reverse();
    void showSliderRange();

    PlayerState& m_state;
    PlayListArrays& m_list;
    const Outlets& m_outlets;
    MovieToolbox& m_toolbox;
    PositionClock& m_clock;
    SpeedControl& m_speed;
    PlayListTable& m_table;
    TrackInfo& m_info;
};

}  // namespace qm
