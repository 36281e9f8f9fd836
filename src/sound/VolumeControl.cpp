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

VolumeControl::VolumeControl(Uses<const CurrentMovie, const MovieHandle, VolumeState, const TitleAttributes> state,
                             const VolumeOutlets& outlets, MovieToolbox& toolbox, SpeedControl& speed,
                             PitchControl& pitch, ToneControl& tone)
    : m_movie(state),
      m_handle(state),
      m_volumeState(state),
      m_titles(state),
      m_outlets(outlets),
      m_toolbox(toolbox),
      m_speed(speed),
      m_pitch(pitch),
      m_tone(tone) {}

void VolumeControl::gainUpdate(double value) {
    m_volumeState.gain = static_cast<float>(value);
    showGainTitle();
    if (!m_movie.qtMovie) return;
    m_movie.qtMovie->setMuted(false);
    m_movie.qtMovie->setVolume(m_volumeState.gain);
}

void VolumeControl::startWith(float stored) {
    m_volumeState.gain = stored == 0.0f ? kResetGain : stored;
    showValue(m_outlets.gainSlider, m_volumeState.gain);
    if (stored != 0.0f) showGainTitle();
}

std::optional<float> VolumeControl::shownGain() const {
    if (!m_outlets.gainSlider) return std::nullopt;
    return static_cast<float>(m_outlets.gainSlider->value());
}

void VolumeControl::repaintTitles() {
    for (TitleButton* title : {m_outlets.balanceResetButton, m_outlets.gainResetButton})
        if (title) title->repaint();
}

void VolumeControl::showGainTitle() {
    showAttributedTitle(m_outlets.gainResetButton, fixedText(m_volumeState.gain, 2).left(kTitleLength),
                        m_titles.controlColorAttributes);
}

void VolumeControl::gainReset() {
    if (m_movie.qtMovie) {
        m_movie.qtMovie->setMuted(false);
        m_movie.qtMovie->setVolume(kResetGain);
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
    m_volumeState.gain = value;
    showPlainTitle(m_outlets.gainResetButton, title);
    if (m_movie.qtMovie) m_movie.qtMovie->setVolume(value);
    showValue(m_outlets.gainSlider, value);
}

void VolumeControl::balanceUpdate(double value) {
    m_volumeState.balance = static_cast<float>(value);
    applyBalance();  // before the first load the engine gets no movie and does nothing
    showAttributedTitle(m_outlets.balanceResetButton, balanceTitle(m_volumeState.balance),
                        m_titles.controlColorAttributes);
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
    m_volumeState.balance = value;
    showValue(m_outlets.balanceSlider, value);
    showPlainTitle(m_outlets.balanceResetButton, title);
    if (m_movie.qtMovie) applyBalance();
}

void VolumeControl::applyBalance() {
    m_toolbox.SetMovieAudioBalance(m_handle.quickTimeMovie, m_volumeState.balance, 0);
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
