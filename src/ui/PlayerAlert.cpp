#include "ui/PlayerAlert.h"

#include "library/Alert.h"
#include "player/TransportImages.h"
#include "ui/controls/FadingWindow.h"

namespace qm {

PlayerAlert::PlayerAlert(Uses<const CurrentMovie, PlayState, SpeedState, const CueTimer> state,
                         Uses<const MainWindowOutlet, const TransportButtons> outlets, SpeedControl& speed,
                         Transport& transport)
    : m_movie(state),
      m_play(state),
      m_speedState(state),
      m_cueTimer(state),
      m_window(outlets),
      m_buttons(outlets),
      m_speed(speed),
      m_transport(transport),
      m_runAlert([this](const QString& message, const QString& information, const QString& button) {
          runWarningAlert(m_window.mainWindow, message, {button}, information);
      }) {}

void PlayerAlert::displayAlertInfoButtonText(const QString& message, const QString& information,
                                             const QString& button) {
    if (m_cueTimer.movieTimer) m_cueTimer.movieTimer->stop();
    m_play.isPlaying = false;
    if (m_movie.qtMovie) m_movie.qtMovie->stop();
    showPauseImages(m_buttons);
    if (m_speedState.rate > 1.0f) {
        m_speedState.rate = 1.0f;
        m_speed.showRate();
    }
    m_runAlert(message, information, button);
    m_transport.goToStart();
}

}  // namespace qm
