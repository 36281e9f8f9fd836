#include "sound/PitchControl.h"

#include <algorithm>

#include "player/Numbers.h"
#include "player/OutletSetters.h"

namespace qm {

namespace {

constexpr double kSemitone = 100;  // cents
constexpr double kOctave = 1200;   // cents

}  // namespace

PitchControl::PitchControl(PlayerState& state, const Outlets& outlets, MovieToolbox& toolbox)
    : m_state(state), m_outlets(outlets), m_toolbox(toolbox) {}

void PitchControl::pitchUpdate() {
    if (!m_outlets.pitchSlider) return;
    m_state.pitch = static_cast<float>(m_outlets.pitchSlider->value());
    showTitle();
    applyToMovie();
}

void PitchControl::semiToneDown() {
    stepTo(std::max(m_state.pitch - kSemitone, -kOctave));
}

void PitchControl::semiToneUp() {
    stepTo(std::min(m_state.pitch + kSemitone, kOctave));
}

void PitchControl::stepTo(double cents) {
    m_state.pitch = static_cast<float>(cents);
    showValue(m_outlets.pitchSlider, m_state.pitch);
    showTitle();
    applyToMovie();
}

void PitchControl::pitchReset() {
    m_state.pitch = 0.0f;
    showValue(m_outlets.pitchSlider, 0.0);
    showAttributedTitle(m_outlets.pitchResetButton, QStringLiteral("0"), m_state.controlColorAttributes);
    applyToMovie();
}

void PitchControl::showTitle() {
    showAttributedTitle(m_outlets.pitchResetButton, QString::number(truncToInt32(m_state.pitch)),
                        m_state.controlColorAttributes);
}

void PitchControl::applyToMovie() {
    if (!m_state.qtMovie) return;
    m_toolbox.QTSetMovieProperty(m_state.quickTimeMovie, kQTPropertyClass_Audio, kQTAudioPropertyID_Pitch,
                                 sizeof m_state.pitch, &m_state.pitch);
}

}  // namespace qm
