// Tells the user when the sound output does not answer or has gone, for as long as that lasts, and when it is back.
// Main thread only; it asks the movie, which never waits.
#pragma once

#include <QTimer>

#include "app/PlayerState.h"
#include "player/Notices.h"

namespace qm {

class SoundWatch {
public:
    SoundWatch(const PlayerState& state, Notices& notices);

    void start();  // to look from time to time
    void look();

private:
    const PlayerState& m_state;
    Notices& m_notices;
    SoundOutput m_told = SoundOutput::Works;
    QTimer m_timer;
};

}  // namespace qm
