#include "player/Transport.h"

#include "player/OutletSetters.h"
#include "player/TransportImages.h"

namespace qm {

Transport::Transport(PlayerState& state, PlayListArrays& list, const Outlets& outlets, MovieToolbox& toolbox,
                     PositionClock& clock, SpeedControl& speed, PlayListTable& table, TrackInfo& info)
    : m_state(state),
      m_list(list),
      m_outlets(outlets),
      m_toolbox(toolbox),
      m_clock(clock),
      m_speed(speed),
      m_table(table),
      m_info(info) {}

void Transport::playForward() {
    if (m_state.isPlaying) {
        pause();
        return;
    }
    if (!startSelectedRow()) return;
    if (m_state.rate < 0.0) reverse();
    showForwardImages(m_outlets);
    m_state.qtMovie->setRate(m_state.rate);
    showSliderRange();
    m_clock.wake();
    m_info.movieMetaData();
}

void Transport::playBackward() {
    if (!startSelectedRow()) return;
    if (m_state.rate > 0.0) reverse();
    showBackwardImages(m_outlets);
    m_state.qtMovie->setRate(m_state.rate);
    showSliderRange();
    m_clock.startCueTimer();
}

// Loads the selected row unless it was the last one chosen, and starts the movie. False when there is nothing to play.
bool Transport::startSelectedRow() {
    const int row = selectedRow(m_outlets, m_list);
    if (row < 0) return false;
    if (row != m_state.mostRecentlySelected) {
        m_state.mostRecentlySelected = row;
        m_table.selectTrack();
    }
    if (!m_state.qtMovie) return false;
    m_state.isPlaying = true;
    m_state.qtMovie->play();
    return true;
}

void Transport::reverse() {
    m_state.rate = static_cast<float>(m_state.rate * -1.0);
    m_speed.showRate();
}

void Transport::showSliderRange() {
    if (!m_outlets.cueSlider) return;
    m_outlets.cueSlider->setMinimum(0.0);
    m_outlets.cueSlider->setMaximum(m_toolbox.GetMovieDuration(m_state.quickTimeMovie));
    m_outlets.cueSlider->update();
}

void Transport::toggleStartStop() {
    playForward();
}

void Transport::pause() {
    if (!m_state.qtMovie || !m_state.isPlaying) return;
    m_state.isPlaying = false;
    m_state.qtMovie->stop();
    showPauseImages(m_outlets);
    showText(m_outlets.audioLevelLeft, QStringLiteral("dB"));
    showText(m_outlets.audioLevelRight, QStringLiteral("dB"));
}

void Transport::goToStart() {
    if (!m_state.qtMovie) return;
    if (!m_state.isLooping) {
        m_toolbox.SetMovieTimeValue(m_state.quickTimeMovie, 0);
        showValue(m_outlets.cueSlider, 0.0);
        m_clock.wake();
        return;
    }
    const int row = selectedRow(m_outlets, m_list);
    if (row < 0) return;
    const auto scale = static_cast<std::int32_t>(m_state.qtMovie->timeScaleAttribute().value_or(0));
    m_state.qtMovie->setCurrentTime({m_list.markAarray[row], scale, 0});
    m_clock.wake();
}

void Transport::skip(std::int32_t seconds) {
    if (!m_state.qtMovie) return;
    const QTTime current = m_state.qtMovie->currentTime();
    const auto scale = m_state.qtMovie->timeScaleAttribute();
    if (!scale) return;
    const auto timeScale = static_cast<std::int32_t>(*scale);
    // 32-bit arithmetic that wraps.
    const auto step =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(seconds) * static_cast<std::uint32_t>(timeScale));
    m_state.qtMovie->setCurrentTime(QTTimeIncrement(current, {step, timeScale, 0}));
    m_clock.wake();
}

}  // namespace qm
