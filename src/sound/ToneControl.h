// Bass and treble, 0 to 256 with 128 neutral. They belong to the track: a change is kept in the selected row, and both
// go together to the first sound track of the current movie. Main thread only; the engine's status is ignored.
#pragma once

#include "app/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "library/PlayListArrays.h"
#include "ui/controls/Outlets.h"

namespace qm {

class ToneControl {
public:
    ToneControl(PlayerState& state, PlayListArrays& list, const Outlets& outlets, MovieToolbox& toolbox);

    void bassMax();
    void bassMin();
    void bassReset();
    void bassUpdate();  // the slider's action
    void trebleMax();
    void trebleMin();
    void trebleReset();
    void trebleUpdate();  // the slider's action

    // Sends both settings to the movie, if it has sound.
    void bassAndTrebleUpdate();

private:
    struct Tone;
    Tone bass();
    Tone treble();
    void preset(Tone tone, std::int16_t value);
    void update(Tone tone);
    void keepAndApply(Tone tone);

    PlayerState& m_state;
    PlayListArrays& m_list;
    const Outlets& m_outlets;
    MovieToolbox& m_toolbox;
};

}  // namespace qm
