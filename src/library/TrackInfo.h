// What the program tells of a track: the fields of the track information panel, filled from the open movie, the panel
// itself, and the format line of the play list. Main thread only. What the movie does not tell, and fields whose panel
// is not there, are left alone.
#pragma once

#include "app/PlayerState.h"
#include "library/PlayListArrays.h"
#include "ui/controls/Outlets.h"

namespace qm {

class TrackInfo {
public:
    TrackInfo(PlayerState& state, PlayListArrays& list, const Outlets& outlets);

    void movieMetaData();       // fills the fields
    void displayInfo();         // shows or hides the panel, if a row is selected
    void displayTrackFormat();  // shows or hides the format line

private:
    void blankFields();
    void showCopyright();
    void showFormat();

    PlayerState& m_state;
    PlayListArrays& m_list;
    const Outlets& m_outlets;
};

}  // namespace qm
