#include "sound/SpeedControl.h"

#include "player/Numbers.h"
#include "player/OutletSetters.h"
#include "player/TransportImages.h"

namespace qm {

namespace {

// Compared as doubles and stored as floats: the float nearest to 0.35 lies below it and is set to itself again.
constexpr double kSlowest = 0.35;
constexpr double kFastest = 2.5;
constexpr double kStep = 0.05;

}  // namespace

SpeedControl::SpeedControl(PlayerState& state, const Outlets& outlets, PositionClock& clock)
    : m_state(state), m_outlets(outlets), m_clock(clock) {}

void SpeedControl::speedUpdate() {
    if (!m_outlets.speedSlider) return;
    m_state.rate = static_cast<float>(m_outlets.speedSlider->value());
    if (keepOutOfDeadBand()) m_outlets.speedSlider->setValue(m_state.rate);
    showTitle();
    applyToMovie();
}

void SpeedControl::speedX(float value) {
    m_state.rate = value;
    speedValidate();
    applyToMovie();
}

void SpeedControl::speedDown() {
    speedX(static_cast<float>(m_state.rate + (m_state.rate > 0 ? -kStep : kStep)));
}

void SpeedControl::speedUp() {
    speedX(static_cast<float>(m_state.rate + (m_state.rate > 0 ? kStep : -kStep)));
}

void SpeedControl::speedReset() {
    m_state.rate = 1.0f;
    showAttributedTitle(m_outlets.speedResetButton, QStringLiteral("1.0"), m_state.controlColorAttributes);
    showValue(m_outlets.speedSlider, 1.0);
    showImage(m_outlets.playBackwardButton, QStringLiteral("db_Play_R_off.png"));
    if (m_state.isPlaying) showImage(m_outlets.playForwardButton, QStringLiteral("db_Play_F_on.png"));
    if (m_state.qtMovie && m_state.isPlaying) m_state.qtMovie->setRate(m_state.rate);
}

void SpeedControl::speedValidate() {
    keepOutOfDeadBand();
    if (m_state.rate > kFastest) m_state.rate = static_cast<float>(kFastest);
    if (m_state.rate < -kFastest) m_state.rate = static_cast<float>(-kFastest);
    showRate();
}

void SpeedControl::showRate() {
    showValue(m_outlets.speedSlider, m_state.rate);
    showTitle();
}

// Between -0.35 and 0.35 only standing still is a speed. True when the rate was in there and had to move.
bool SpeedControl::keepOutOfDeadBand() {
    const bool tooSlowForward = 0 < m_state.rate && m_state.rate < kSlowest;
    const bool tooSlowBackward = -kSlowest < m_state.rate && m_state.rate < 0;
    if (tooSlowForward) m_state.rate = static_cast<float>(kSlowest);
    if (tooSlowBackward) m_state.rate = static_cast<float>(-kSlowest);
    return tooSlowForward || tooSlowBackward;
}

void SpeedControl::showTitle() {
    showAttributedTitle(m_outlets.speedResetButton, rateTitle(m_state.rate), m_state.controlColorAttributes);
}

void SpeedControl::applyToMovie() {
    if (!m_state.qtMovie) return;
    if (m_state.isPlaying) {
        m_state.qtMovie->setRate(m_state.rate);
        showImagesForRate(m_outlets, m_state.rate);
    }
    m_clock.startCueTimer();
}

}  // namespace qm
