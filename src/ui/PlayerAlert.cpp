#include "ui/PlayerAlert.h"

#include "library/Alert.h"
#include "player/TransportImages.h"
#include "ui/controls/FadingWindow.h"

namespace qm {

PlayerAlert::PlayerAlert(PlayerState& state, const Outlets& outlets, SpeedControl& speed, Transport& transport)
    : m_state(state),
      m_outlets(outlets),
      m_speed(speed),
      m_transport(transport),
      m_runAlert([this](const QString& message, const QString& information, const QString& button) {
          runWarningAlert(m_outlets.mainWindow, message, {button}, information);
      }) {}

void PlayerAlert::displayAlertInfoButtonText(const QString& message, const QString& information,
                                             const QString& button) {
    if (m_state.movieTimer) m_state.movieTimer->stop();
    m_state.isPlaying = false;
    if (m_state.qtMovie) m_state.qtMovie->stop();
    showPauseImages(m_outlets);
    if (m_state.rate > 1.0f) {
        m_state.rate = 1.0f;
        m_speed.showRate();
    }
    m_runAlert(message, information, button);
    m_transport.goToStart();
}

}  // namespace qm
