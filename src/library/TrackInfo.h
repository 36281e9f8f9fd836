// What the program tells of a track: the fields of the track information panel, filled from the open movie, the panel
// itself, and the format line of the play list. Main thread only. What the movie does not tell, and fields whose panel
// is not there, are left alone.
#pragma once

#include "app/PlayerState.h"
#include "library/PlayListArrays.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

class TrackInfo {
public:
    TrackInfo(const CurrentMovie& state, const PlayListArrays& list,
              Uses<const InfoOutlets, const InfoWindowOutlet, const PlayListOutlet> outlets);

    void movieMetaData();       // fills the fields
    void displayInfo();         // shows or hides the panel, if a row is selected
    void displayTrackFormat();  // shows or hides the format line

private:
    void blankFields();
    void showCopyright();
    void showFormat();

    const CurrentMovie& m_movie;
    const PlayListArrays& m_list;
    const InfoOutlets& m_outlets;
    const InfoWindowOutlet& m_infoWindow;
    const PlayListOutlet& m_listOutlet;
};

}  // namespace qm
