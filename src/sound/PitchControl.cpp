#include "sound/PitchControl.h"

#include <algorithm>

#include "player/Numbers.h"
#include "player/OutletSetters.h"

namespace qm {

namespace {

constexpr double kSemitone = 100;  // cents
constexpr double kOctave = 1200;   // cents

}  // namespace

PitchControl::PitchControl(Uses<const CurrentMovie, const MovieHandle, PitchState, const TitleAttributes> state,
                           const PitchOutlets& outlets, MovieToolbox& toolbox)
    : m_movie(state), m_handle(state), m_pitchState(state), m_titles(state), m_outlets(outlets), m_toolbox(toolbox) {}

void PitchControl::pitchUpdate(double value) {
    m_pitchState.pitch = static_cast<float>(value);
    showTitle();
    applyToMovie();
}

void PitchControl::semiToneDown() {
    stepTo(std::max(m_pitchState.pitch - kSemitone, -kOctave));
}

void PitchControl::semiToneUp() {
    stepTo(std::min(m_pitchState.pitch + kSemitone, kOctave));
}

void PitchControl::stepTo(double cents) {
    m_pitchState.pitch = static_cast<float>(cents);
    showValue(m_outlets.pitchSlider, m_pitchState.pitch);
    showTitle();
    applyToMovie();
}

void PitchControl::pitchReset() {
    m_pitchState.pitch = 0.0f;
    showValue(m_outlets.pitchSlider, 0.0);
    showAttributedTitle(m_outlets.pitchResetButton, QStringLiteral("0"), m_titles.controlColorAttributes);
    applyToMovie();
}

void PitchControl::showTitle() {
    showAttributedTitle(m_outlets.pitchResetButton, QString::number(truncToInt32(m_pitchState.pitch)),
                        m_titles.controlColorAttributes);
}

void PitchControl::applyToMovie() {
    if (!m_movie.qtMovie) return;
    m_toolbox.QTSetMovieProperty(m_handle.quickTimeMovie, kQTPropertyClass_Audio, kQTAudioPropertyID_Pitch,
                                 sizeof m_pitchState.pitch, &m_pitchState.pitch);
}

}  // namespace qm
