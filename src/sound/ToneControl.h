// Bass and treble, 0 to 256 with 128 neutral. They belong to the track: a change is kept in the selected row, and both
// go together to the first sound track of the current movie. Main thread only; the engine's status is ignored.
#pragma once

#include "app/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "library/PlayListArrays.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

class ToneControl {
public:
    ToneControl(Uses<const CurrentMovie, const MovieHandle, ToneState, const TitleAttributes> state,
                PlayListArrays& list, Uses<const ToneOutlets, const PlayListOutlet> outlets, MovieToolbox& toolbox);

    void bassMax();
    void bassMin();
    void bassReset();
    void bassUpdate(double value);  // the slider's action
    void trebleMax();
    void trebleMin();
    void trebleReset();
    void trebleUpdate(double value);  // the slider's action

    // Brings back what the row has kept.
    void restore(int row);

    void repaintTitles();

private:
    struct Tone;
    Tone bass();
    Tone treble();
    void preset(Tone tone, std::int16_t value);
    void update(Tone tone, double value);
    void restore(Tone tone, int row);
    void keepAndApply(Tone tone);
    void bassAndTrebleUpdate();

    const CurrentMovie& m_movie;
    const MovieHandle& m_handle;
    ToneState& m_toneState;
    const TitleAttributes& m_titles;
    PlayListArrays& m_list;
    const ToneOutlets& m_outlets;
    const PlayListOutlet& m_listOutlet;
    MovieToolbox& m_toolbox;
};

}  // namespace qm
