// The loaded track as the play list knows it. Reads only; main thread only.
#pragma once

#include <QString>

#include "app/PlayerState.h"
#include "library/PlayListArrays.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

class LoadedTrack {
public:
    LoadedTrack(Uses<const CurrentMovie, const LoadedFile> state, const PlayListArrays& list,
                const PlayListOutlet& outlets);

    // The row it was loaded from. Where that is gone, the selected row if the same track stands there, else the first
    // where it does; -1 none.
    int row() const;

    // Without a row the title is what the file itself says; unknown names are empty, and so is all of it without a
    // loaded track.
    QString title() const;
    QString artist() const;
    QString album() const;

private:
    QString nameIn(const std::vector<QString>& names) const;

    const CurrentMovie& m_movie;
    const LoadedFile& m_file;
    const PlayListArrays& m_list;
    const PlayListOutlet& m_outlets;
    mutable int m_rowHint = -1;  // where it was found last
};

}  // namespace qm
