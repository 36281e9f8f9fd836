// The track information panel's fields, filled from the open movie. Main thread only. What the movie does not tell, and
// fields whose panel is not there, are left alone.
#pragma once

#include "app/PlayerState.h"
#include "library/PlayListArrays.h"
#include "ui/controls/Outlets.h"

namespace qm {

class TrackInfo {
public:
    TrackInfo(PlayerState& state, PlayListArrays& list, const Outlets& outlets);

    void movieMetaData();

private:
    void blankFields();

    PlayerState& m_state;
    PlayListArrays& m_list;
    const Outlets& m_outlets;
};

}  // namespace qm
