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

SpeedControl::SpeedControl(Uses<const CurrentMovie, const PlayState, SpeedState, const TitleAttributes> state,
                           Uses<const SpeedOutlets, const TransportButtons> outlets, PositionClock& clock)
    : m_movie(state),
      m_play(state),
      m_speedState(state),
      m_titles(state),
      m_outlets(outlets),
      m_buttons(outlets),
      m_clock(clock) {}

void SpeedControl::speedUpdate(double value) {
    m_speedState.rate = static_cast<float>(value);
    if (keepOutOfDeadBand()) showValue(m_outlets.speedSlider, m_speedState.rate);
    showTitle();
    applyToMovie();
}

void SpeedControl::speedX(float value) {
    m_speedState.rate = value;
    speedValidate();
    applyToMovie();
}

void SpeedControl::speedDown() {
    speedX(static_cast<float>(m_speedState.rate + (m_speedState.rate > 0 ? -kStep : kStep)));
}

void SpeedControl::speedUp() {
    speedX(static_cast<float>(m_speedState.rate + (m_speedState.rate > 0 ? kStep : -kStep)));
}

void SpeedControl::speedReset() {
    m_speedState.rate = 1.0f;
    showAttributedTitle(m_outlets.speedResetButton, QStringLiteral("1.0"), m_titles.controlColorAttributes);
    showValue(m_outlets.speedSlider, 1.0);
    showState(m_buttons.playBackwardButton, QStringLiteral("db_Play_R_off.png"), false);
    if (m_play.isPlaying) showState(m_buttons.playForwardButton, QStringLiteral("db_Play_F_on.png"), true);
    if (m_movie.qtMovie && m_play.isPlaying) m_movie.qtMovie->setRate(m_speedState.rate);
}

void SpeedControl::speedValidate() {
    keepOutOfDeadBand();
    if (m_speedState.rate > kFastest) m_speedState.rate = static_cast<float>(kFastest);
    if (m_speedState.rate < -kFastest) m_speedState.rate = static_cast<float>(-kFastest);
    showRate();
}

void SpeedControl::showRate() {
    showValue(m_outlets.speedSlider, m_speedState.rate);
    showTitle();
}

// Between -0.35 and 0.35 only standing still is a speed. True when the rate was in there and had to move.
bool SpeedControl::keepOutOfDeadBand() {
    const bool tooSlowForward = 0 < m_speedState.rate && m_speedState.rate < kSlowest;
    const bool tooSlowBackward = -kSlowest < m_speedState.rate && m_speedState.rate < 0;
    if (tooSlowForward) m_speedState.rate = static_cast<float>(kSlowest);
    if (tooSlowBackward) m_speedState.rate = static_cast<float>(-kSlowest);
    return tooSlowForward || tooSlowBackward;
}

void SpeedControl::showTitle() {
    showAttributedTitle(m_outlets.speedResetButton, rateTitle(m_speedState.rate), m_titles.controlColorAttributes);
}

void SpeedControl::applyToMovie() {
    if (!m_movie.qtMovie) return;
    if (m_play.isPlaying) {
        m_movie.qtMovie->setRate(m_speedState.rate);
        showImagesForRate(m_buttons, m_speedState.rate);
    }
    m_clock.startCueTimer();
}

}  // namespace qm
