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
#include "player/Uses.h"
#include "sound/SpeedControl.h"
#include "ui/controls/Outlets.h"

namespace qm {

class Transport {
public:
    Transport(Uses<const CurrentMovie, const MovieHandle, PlayState, SpeedState, ChosenRow, const LoopState> state,
              const PlayListArrays& list,
              Uses<const TransportButtons, const PositionOutlet, const PlayListOutlet, const LevelReadOuts> outlets,
              MovieToolbox& toolbox, PositionClock& clock, SpeedControl& speed, PlayListTable& table, TrackInfo& info);

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

    const CurrentMovie& m_movie;
    const MovieHandle& m_handle;
    PlayState& m_play;
    SpeedState& m_speedState;
    ChosenRow& m_chosen;
    const LoopState& m_loopState;
    const PlayListArrays& m_list;
    const TransportButtons& m_buttons;
    const PositionOutlet& m_position;
    const PlayListOutlet& m_listOutlet;
    const LevelReadOuts& m_readOuts;
    MovieToolbox& m_toolbox;
    PositionClock& m_clock;
    SpeedControl& m_speed;
    PlayListTable& m_table;
    TrackInfo& m_info;
};

}  // namespace qm
