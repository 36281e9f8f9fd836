// Gain (0 to 1, the movie's volume) and balance (-1 left to 1 right), and the action that puts them back together with
// speed, pitch and tone.
// The movie gets both at once, playing or not. Main thread only; the engine's status is ignored.
#pragma once

#include <optional>

#include "app/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "player/Uses.h"
#include "sound/PitchControl.h"
#include "sound/SpeedControl.h"
#include "sound/ToneControl.h"
#include "ui/controls/Outlets.h"

namespace qm {

class VolumeControl {
public:
    VolumeControl(Uses<const CurrentMovie, const MovieHandle, VolumeState, const TitleAttributes> state,
                  const VolumeOutlets& outlets, MovieToolbox& toolbox, SpeedControl& speed, PitchControl& pitch,
                  ToneControl& tone);

    void gainUpdate(double value);  // the slider's action
    void volumeMax();
    void volumeMin();

    // Movie, slider and title go to 0.5; the gain that the next track gets stays as it is.
    void gainReset();

    void balanceUpdate(double value);  // the slider's action
    void balanceReset();
    void balanceLeftMax();
    void balanceRightMax();

    void resetAudio();  // gain, tone, balance, speed and pitch

    // The gain at the start: what was stored, or, where that is 0 or nothing, the gain at rest. A movie gets it with
    // the first load.
    void startWith(float stored);

    std::optional<float> shownGain() const;  // by the slider, if it is there
    void repaintTitles();

private:
    void showGainTitle();
    void gainPreset(float value, const QString& title);
    void balancePreset(float value, const QString& title);
    void applyBalance();

    const CurrentMovie& m_movie;
    const MovieHandle& m_handle;
    VolumeState& m_volumeState;
    const TitleAttributes& m_titles;
    const VolumeOutlets& m_outlets;
    MovieToolbox& m_toolbox;
    SpeedControl& m_speed;
    PitchControl& m_pitch;
    ToneControl& m_tone;
};

}  // namespace qm
