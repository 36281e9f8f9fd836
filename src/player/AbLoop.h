// The A and B marks of the play list's rows and the loop between them. The engine repeats the range by itself: nothing
// here watches for B. Marks are units of the row's own time scale. Main thread only; nothing is reported: without a
// current movie, or without a selected row where one is needed, an action ends where it first needs it.
#pragma once

#include <optional>
#include <utility>

#include "app/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "library/PlayListArrays.h"
#include "player/PositionClock.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

// The marks whose times the loop fields show, of the row that was selected when they were shown.
struct ShownMarks {
    QTTime a;
    QTTime b;
    bool aChanged = false;  // away from the track's start
    bool bChanged = false;  // away from its end
    bool bIsShown = true;   // the field of B may have been put back to its first text
};

class AbLoop {
public:
    AbLoop(Uses<const CurrentMovie, const MovieHandle, LoopState, MarkBState, MarkTimes> state, PlayListArrays& list,
           Uses<const LoopOutlets, const PlayListOutlet> outlets, MovieToolbox& toolbox, PositionClock& clock);

    void loopSwitch();
    void markAUpdate();
    void markBUpdate();
    void resetMarks();

    // For a track that is played from the list: the switch goes off, and the movie that looped is left as it is.
    void switchOffForTrack();

    // Shows A and B of the selected row.
    void displayLoopFields();
    const std::optional<ShownMarks>& shownMarks() const { return m_shown; }

    // A and B between which the current movie repeats, as it was told last: in units of its time scale, inside it, and
    // in either order. The loop switch does not say it: another row may have given the marks, or another movie may have
    // been loaded since.
    std::optional<std::pair<double, double>> repeatedPassage() const;

private:
    // What a movie was told.
    struct Told {
        Movie movie = 0;
        QTTime a;
        QTTime b;
        bool loops = false;
        bool selectionOnly = false;
    };

    void switchOn(int row);
    void switchOff();
    void rearmAndShow();
    bool hasTold(const QTMovie& movie) const { return m_told.movie == movie.quickTimeMovie(); }

    const CurrentMovie& m_movie;
    const MovieHandle& m_handle;
    LoopState& m_loopState;
    MarkBState& m_markB;
    MarkTimes& m_markTimes;
    PlayListArrays& m_list;
    const LoopOutlets& m_outlets;
    const PlayListOutlet& m_listOutlet;
    MovieToolbox& m_toolbox;
    PositionClock& m_clock;
    Told m_told;
    std::optional<ShownMarks> m_shown;
};

}  // namespace qm
