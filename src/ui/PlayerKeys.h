// What the player's keys and controls do beside sending their actions: play selects what there is to play and opens the
// selected row when nothing is loaded, silence moves the gain slider, and what the window says of the track follows
// every load. The actions themselves stay as they are. Main thread only; the user is told of a file that gives no
// track.
#pragma once

#include <QObject>
#include <optional>

#include "app/PlayerState.h"
#include "library/LoadedTrack.h"
#include "library/PlayListArrays.h"
#include "library/TrackInfo.h"
#include "library/TrackLoader.h"
#include "player/Notices.h"
#include "player/PositionClock.h"
#include "ui/ActionTable.h"
#include "ui/controls/Outlets.h"

namespace qm {

class PlayerKeys : public QObject {
    Q_OBJECT

public:
    // Does those actions of the table that are keys only.
    PlayerKeys(PlayerState& state, const PlayListArrays& list, const Outlets& outlets, ActionTable& actions,
               PositionClock& clock, TrackLoader& loader, TrackInfo& info, Notices& notices);

    void silence();     // and, when it is silent, back to what it silenced
    void resetGain();   // the gain as it is at rest
    void resetSound();  // all of it

private:
    enum class Direction { Forward, Backward };
    bool preparePlay(Direction direction);
    void selectWhatToPlay();
    bool playSelectedRow(Direction direction);
    void follow();
    void tellFailures();

    PlayerState& m_state;
    const PlayListArrays& m_list;
    const Outlets& m_outlets;
    ActionTable& m_actions;
    PositionClock& m_clock;
    TrackLoader& m_loader;
    TrackInfo& m_info;
    Notices& m_notices;
    LoadedTrack m_loaded;
    std::optional<double> m_silenced;  // the gain that silence() took away
    Movie m_described = 0;             // the movie that the track's information is of
    int m_failuresTold = 0;
};

}  // namespace qm
