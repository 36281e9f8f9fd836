#include "player/PositionClock.h"

#include <QTimer>

#include "player/Numbers.h"
#include "player/OutletSetters.h"
#include "player/TimeFormat.h"

namespace qm {

namespace {

constexpr int kTickMilliseconds = 100;

}  // namespace

PositionClock::PositionClock(
    Uses<const CurrentMovie, const MovieHandle, const LoopState, const MarkBState, CueTimer, const TimeTexts> state,
    Uses<const ClockOutlets, const PositionOutlet> outlets, MovieToolbox& toolbox)
    : m_movie(state),
      m_handle(state),
      m_loopState(state),
      m_markB(state),
      m_cueTimer(state),
      m_texts(state),
      m_outlets(outlets),
      m_position(outlets),
      m_toolbox(toolbox) {}

void PositionClock::startCueTimer() {
    if (m_cueTimer.movieTimer) m_cueTimer.movieTimer->stop();
    m_cueTimer.movieTimer = std::make_unique<QTimer>();
    QObject::connect(m_cueTimer.movieTimer.get(), &QTimer::timeout, m_cueTimer.movieTimer.get(),
                     [this] { updateSlider(); });
    m_cueTimer.movieTimer->start(kTickMilliseconds);
}

void PositionClock::wake() {
    if (!m_cueTimer.movieTimer || !m_cueTimer.movieTimer->isActive()) startCueTimer();
}

void PositionClock::updateSlider() {
    if (!m_movie.qtMovie) return;
    const Movie movie = m_handle.quickTimeMovie;
    if (m_toolbox.IsMovieDone(movie)) {
        if (m_cueTimer.movieTimer) m_cueTimer.movieTimer->stop();
        followWithSlider(m_toolbox.GetMovieDuration(movie));
    }
    followWithSlider(m_toolbox.GetMovieTime(movie));
    movieTimeChanged();
}

// A slider that the user holds stays under the hand.
void PositionClock::followWithSlider(double time) {
    if (m_position.cueSlider && !m_position.cueSlider->isHeld()) m_position.cueSlider->setValue(time);
}

void PositionClock::movieTimeChanged() {
    if (!m_movie.qtMovie) return;
    const QTTime current = m_movie.qtMovie->currentTime();
    const QTTime remaining = QTTimeDecrement(m_movie.qtMovie->duration(), current);
    const auto timeString = QTStringFromTime(current);
    if (!timeString) return;
    showText(m_outlets.timecode, elapsedText(QString::fromStdString(*timeString), m_texts.slashCharacter));
    if (const auto text = stringFromQTTimeLite(remaining)) showText(m_outlets.timeRemaining, *text);
}

void PositionClock::cueUpdate(double value) {
    if (!m_movie.qtMovie) {
        showValue(m_position.cueSlider, 0.0);
        return;
    }
    if (!m_loopState.isLooping || !m_markB.markBset) {
        m_toolbox.SetMovieTimeValue(m_handle.quickTimeMovie, truncToInt32(value));
        movieTimeChanged();
    }
    wake();
}

}  // namespace qm
