#include "player/PositionClock.h"

#include <QTimer>

#include "player/Numbers.h"
#include "player/OutletSetters.h"
#include "player/TimeFormat.h"

namespace qm {

namespace {

constexpr int kTickMilliseconds = 100;

}  // namespace

PositionClock::PositionClock(PlayerState& state, const Outlets& outlets, MovieToolbox& toolbox)
    : m_state(state), m_outlets(outlets), m_toolbox(toolbox) {}

void PositionClock::startCueTimer() {
    if (m_state.movieTimer) m_state.movieTimer->stop();
    m_state.movieTimer = std::make_unique<QTimer>();
    QObject::connect(m_state.movieTimer.get(), &QTimer::timeout, m_state.movieTimer.get(), [this] { updateSlider(); });
    m_state.movieTimer->start(kTickMilliseconds);
}

void PositionClock::wake() {
    if (!m_state.movieTimer || !m_state.movieTimer->isActive()) startCueTimer();
}

void PositionClock::updateSlider() {
    if (!m_state.qtMovie) return;
    const Movie movie = m_state.quickTimeMovie;
    if (m_toolbox.IsMovieDone(movie)) {
        if (m_state.movieTimer) m_state.movieTimer->stop();
        followWithSlider(m_toolbox.GetMovieDuration(movie));
    }
    followWithSlider(m_toolbox.GetMovieTime(movie));
    movieTimeChanged();
}

// A slider that the user holds stays under the hand.
void PositionClock::followWithSlider(double time) {
    if (m_outlets.cueSlider && !m_outlets.cueSlider->isHeld()) m_outlets.cueSlider->setValue(time);
}

void PositionClock::movieTimeChanged() {
    if (!m_state.qtMovie) return;
    const QTTime current = m_state.qtMovie->currentTime();
    const QTTime remaining = QTTimeDecrement(m_state.qtMovie->duration(), current);
    const auto timeString = QTStringFromTime(current);
    if (!timeString) return;
    showText(m_outlets.timecode, elapsedText(QString::fromStdString(*timeString), m_state.slashCharacter));
    if (const auto text = stringFromQTTimeLite(remaining)) showText(m_outlets.timeRemaining, *text);
}

void PositionClock::cueUpdate() {
    if (!m_outlets.cueSlider) return;
    const double value = m_outlets.cueSlider->value();
    if (!m_state.qtMovie) {
        m_outlets.cueSlider->setValue(0.0);
        return;
    }
    if (!m_state.isLooping || !m_state.markBset) {
        m_toolbox.SetMovieTimeValue(m_state.quickTimeMovie, truncToInt32(value));
        movieTimeChanged();
    }
    wake();
}

}  // namespace qm
