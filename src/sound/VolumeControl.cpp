#include "sound/VolumeControl.h"

#include "player/Numbers.h"
#include "player/OutletSetters.h"

namespace qm {

namespace {

constexpr float kResetGain = 0.5f;
constexpr qsizetype kTitleLength = 4;

QString balanceTitle(float balance) {
    const QString text = balance >= 0 ? u'R' + fixedText(balance, 2) : u'L' + fixedText(-balance, 2);
    return text.left(kTitleLength);
}

}  // namespace

VolumeControl::VolumeControl(PlayerState& state, const Outlets& outlets, MovieToolbox& toolbox, SpeedControl& speed,
                             PitchControl& pitch, ToneControl& tone)
    : m_state(state), m_outlets(outlets), m_toolbox(toolbox), m_speed(speed), m_pitch(pitch), m_tone(tone) {}

void VolumeControl::gainUpdate() {
    if (!m_outlets.gainSlider) return;
    m_state.gain = static_cast<float>(m_outlets.gainSlider->value());
    showGainTitle();
    if (!m_state.qtMovie) return;
    m_state.qtMovie->setMuted(false);
    m_state.qtMovie->setVolume(m_state.gain);
}

void VolumeControl::showGainTitle() {
    showAttributedTitle(m_outlets.gainResetButton, fixedText(m_state.gain, 2).left(kTitleLength),
                        m_state.controlColorAttributes);
}

void VolumeControl::gainReset() {
    if (m_state.qtMovie) {
        m_state.qtMovie->setMuted(false);
        m_state.qtMovie->setVolume(kResetGain);
    }
    showValue(m_outlets.gainSlider, kResetGain);
    showPlainTitle(m_outlets.gainResetButton, QStringLiteral("0.5"));
}

void VolumeControl::volumeMax() {
    gainPreset(1.0f, QStringLiteral("1.0"));
}

void VolumeControl::volumeMin() {
    gainPreset(0.0f, QStringLiteral("0"));
}

void VolumeControl::gainPreset(float value, const QString& title) {
    m_state.gain = value;
    showPlainTitle(m_outlets.gainResetButton, title);
    if (m_state.qtMovie) m_state.qtMovie->setVolume(value);
    showValue(m_outlets.gainSlider, value);
}

void VolumeControl::balanceUpdate() {
    if (!m_outlets.balanceSlider) return;
    m_state.balance = static_cast<float>(m_outlets.balanceSlider->value());
    applyBalance();  // before the first load the engine gets no movie and does nothing
    showAttributedTitle(m_outlets.balanceResetButton, balanceTitle(m_state.balance), m_state.controlColorAttributes);
}

void VolumeControl::balanceReset() {
    balancePreset(0.0f, QStringLiteral("0"));
}

void VolumeControl::balanceLeftMax() {
    balancePreset(-1.0f, QStringLiteral("-1"));
}

void VolumeControl::balanceRightMax() {
    balancePreset(1.0f, QStringLiteral("1.0"));
}

void VolumeControl::balancePreset(float value, const QString& title) {
    m_state.balance = value;
    showValue(m_outlets.balanceSlider, value);
    showPlainTitle(m_outlets.balanceResetButton, title);
    if (m_state.qtMovie) applyBalance();
}

void VolumeControl::applyBalance() {
    m_toolbox.SetMovieAudioBalance(m_state.quickTimeMovie, m_state.balance, 0);
}

void VolumeControl::resetAudio() {
    gainReset();
    m_tone.bassReset();
    m_tone.trebleReset();
    balanceReset();
    m_speed.speedReset();
    m_pitch.pitchReset();
}

}  // namespace qm
