#include "player/Transport.h"

#include "player/OutletSetters.h"
#include "player/TransportImages.h"

namespace qm {

Transport::Transport(
    Uses<const CurrentMovie, const MovieHandle, PlayState, SpeedState, ChosenRow, const LoopState> state,
    const PlayListArrays& list,
    Uses<const TransportButtons, const PositionOutlet, const PlayListOutlet, const LevelReadOuts> outlets,
    MovieToolbox& toolbox, PositionClock& clock, SpeedControl& speed, PlayListTable& table, TrackInfo& info)
    : m_movie(state),
      m_handle(state),
      m_play(state),
      m_speedState(state),
      m_chosen(state),
      m_loopState(state),
      m_list(list),
      m_buttons(outlets),
      m_position(outlets),
      m_listOutlet(outlets),
      m_readOuts(outlets),
      m_toolbox(toolbox),
      m_clock(clock),
      m_speed(speed),
      m_table(table),
      m_info(info) {}

void Transport::playForward() {
    if (m_play.isPlaying) {
        pause();
        return;
    }
    if (!startSelectedRow()) return;
    if (m_speedState.rate < 0.0) reverse();
    showForwardImages(m_buttons);
    m_movie.qtMovie->setRate(m_speedState.rate);
    showSliderRange();
    m_clock.wake();
    m_info.movieMetaData();
}

void Transport::playBackward() {
    if (!startSelectedRow()) return;
    if (m_speedState.rate > 0.0) reverse();
    showBackwardImages(m_buttons);
    m_movie.qtMovie->setRate(m_speedState.rate);
    showSliderRange();
    m_clock.startCueTimer();
}

// Loads the selected row unless it was the last one chosen, and starts the movie. False when there is nothing to play.
bool Transport::startSelectedRow() {
    const int row = selectedRow(m_listOutlet, m_list);
    if (row < 0) return false;
    if (row != m_chosen.mostRecentlySelected) {
        m_chosen.mostRecentlySelected = row;
        m_table.selectTrack();
    }
    if (!m_movie.qtMovie) return false;
    m_play.isPlaying = true;
    m_movie.qtMovie->play();
    return true;
}

void Transport::reverse() {
    m_speedState.rate = static_cast<float>(m_speedState.rate * -1.0);
    m_speed.showRate();
}

void Transport::showSliderRange() {
    if (!m_position.cueSlider) return;
    m_position.cueSlider->setMinimum(0.0);
    m_position.cueSlider->setMaximum(m_toolbox.GetMovieDuration(m_handle.quickTimeMovie));
    m_position.cueSlider->update();
}

void Transport::toggleStartStop() {
    playForward();
}

void Transport::pause() {
    if (!m_movie.qtMovie || !m_play.isPlaying) return;
    m_play.isPlaying = false;
    m_movie.qtMovie->stop();
    showPauseImages(m_buttons);
    showText(m_readOuts.audioLevelLeft, QStringLiteral("dB"));
    showText(m_readOuts.audioLevelRight, QStringLiteral("dB"));
}

void Transport::goToStart() {
    if (!m_movie.qtMovie) return;
    if (!m_loopState.isLooping) {
        m_toolbox.SetMovieTimeValue(m_handle.quickTimeMovie, 0);
        showValue(m_position.cueSlider, 0.0);
        m_clock.wake();
        return;
    }
    const int row = selectedRow(m_listOutlet, m_list);
    if (row < 0) return;
    const auto scale = static_cast<std::int32_t>(m_movie.qtMovie->timeScaleAttribute().value_or(0));
    m_movie.qtMovie->setCurrentTime({m_list.markAarray[row], scale, 0});
    m_clock.wake();
}

void Transport::skip(std::int32_t seconds) {
    if (!m_movie.qtMovie) return;
    const QTTime current = m_movie.qtMovie->currentTime();
    const auto scale = m_movie.qtMovie->timeScaleAttribute();
    if (!scale) return;
    const auto timeScale = static_cast<std::int32_t>(*scale);
    // 32-bit arithmetic that wraps.
    const auto step =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(seconds) * static_cast<std::uint32_t>(timeScale));
    m_movie.qtMovie->setCurrentTime(QTTimeIncrement(current, {step, timeScale, 0}));
    m_clock.wake();
}

}  // namespace qm
