// Keeps what the main window only shows in step with the player: title, state tags, lit preset, strip, dimming, amber
// times. It reads and never acts. Refreshed ten times a second; each refresh changes only what differs. Main thread
// only.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <optional>
#include <utility>

#include "app/PlayerState.h"
#include "library/LoadedTrack.h"
#include "library/PlayListArrays.h"
#include "player/AbLoop.h"
#include "ui/controls/Outlets.h"

namespace qm {

class MainWindow;

class MainWindowState : public QObject {
    Q_OBJECT

public:
    MainWindowState(MainWindow& window, const PlayerState& state, const PlayListArrays& list, const AbLoop& loop,
                    const Outlets& outlets);

    void start();    // refreshing by timer
    void refresh();  // now

private:
    void refreshHero();
    void refreshStrip();
    void refreshWaveform();
    void refreshPositionSlider();
    void refreshLoopTimes();
    void refreshDimming();
    void refreshPlayList();
    void refreshPanelStates();
    void refreshRecording();
    QString trackByLine() const;
    QString hint() const;
    std::optional<std::pair<double, double>> changedMarks() const;
    double secondsOf(double value) const;  // of the position slider's value

    MainWindow& m_window;
    const PlayerState& m_state;
    const PlayListArrays& m_list;
    const AbLoop& m_loop;
    const Outlets& m_outlets;
    LoadedTrack m_loaded;
    QTimer m_timer;
    QString m_shownPath;
    Movie m_pictured = 0;  // the movie whose waveform is shown
    std::size_t m_partsShown = 0;
    bool m_isPictured = true;  // wholly
    bool m_hasPlayed = false;  // any track, since the program began
};

}  // namespace qm
