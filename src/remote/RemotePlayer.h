// The player as media keys, desktops and other programs see and drive it: the Media Player Remote Interfacing
// Specification's properties and methods, without a bus. It acts only through the player's own actions and controls, so
// that a remote does what a hand does, and keeps no state of the player. Times are microseconds of the track at its
// normal speed. Main thread only. What cannot be done does nothing; input that is none leaves a log line.
#pragma once

#include <QObject>
#include <QTimer>
#include <QVariantMap>
#include <functional>

#include "app/state/Outlets.h"
#include "app/state/PlayListArrays.h"
#include "app/state/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "library/LoadedTrack.h"
#include "player/AbLoop.h"

namespace qm {

class ActionTable;

class RemotePlayer : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<qint64()>;  // milliseconds that only grow

    RemotePlayer(const PlayerState& state, const PlayListArrays& list, const Outlets& outlets, MovieToolbox& toolbox,
                 const AbLoop& loop, ActionTable& actions);

    void play();  // at the end of a track: from its start
    void pause();
    void playPause();
    void stop();  // pauses and goes to the start, or to A while looping
    void next();  // loads the next row of the list, and plays it if it was playing
    void previous();
    void seek(qlonglong offset);                                   // before the start is the start, past the end next()
    void setPosition(const QString& trackId, qlonglong position);  // for that track only, within its length
    void setRate(double rate);                                     // the nearest speed there is; if that is 0, pauses
    void setVolume(double volume);                                 // the nearest from 0 to 1
    void setLoops(bool loops);                                     // between A and B, of what is loaded
    bool openUri(const QString& uri);  // as a drop on the list, and selects it; false if the list takes no such file
    void beginOpening();               // something else than this opens files: play() waits for it
    void endOpening(bool taken);       // if it took any, what is loaded now is selected
    void raise();
    void quit();

    // Every property of the player but its position, by its name on the bus.
    QVariantMap properties() const;
    qlonglong position() const;

    void watch();    // from now on tells what changes, by timer and after each action
    void refresh();  // tells what has changed since the last time
    void setClock(Clock clock) { m_clock = std::move(clock); }

signals:
    void quitRequested();
    void propertiesChanged(const QVariantMap& changed);
    void seeked(qlonglong position);

private:
    enum class Status { Playing, Paused, Stopped };
    Status status() const;
    bool isAtEnd() const;
    bool standsAtStart() const;
    bool canSeek() const;
    int neighbour(int step) const;  // the row so far from the loaded one, else from the selected; -1 none
    void goToRow(int row);
    void moveTo(qlonglong position);
    qlonglong length() const;
    qlonglong microseconds(std::int64_t units) const;
    QString trackId() const;
    QVariantMap metadata() const;
    void lookForJump();

    const PlayerState& m_state;
    const PlayListArrays& m_list;
    const Outlets& m_outlets;
    MovieToolbox& m_toolbox;
    const AbLoop& m_loop;
    ActionTable& m_actions;
    LoadedTrack m_loaded;
    Clock m_clock;
    QTimer m_timer{this};
    int m_opening = 0;           // files, which may take long
    bool m_playsOpened = false;  // was asked for meanwhile
    QVariantMap m_told;          // the properties as they were told last

    // The position as it was last seen, to tell a jump from playing on.
    struct Observation {
        Movie movie = 0;
        qlonglong position = 0;
        qint64 at = 0;
        double speed = 0;
    };
    Observation observe() const;
    Observation m_observed;
};

}  // namespace qm
