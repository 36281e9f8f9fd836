// The player on the session bus, under the name org.mpris.MediaPlayer2.quillmere: this is how media keys and desktops
// reach it. Nothing here waits for the bus: it connects on a thread of its own, and everything else is asked and
// answered later. Without a bus there is one log line and no remote control. Main thread only.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>
#include <optional>

namespace qm {

class RemotePlayer;

class MprisService : public QObject {
    Q_OBJECT

public:
    explicit MprisService(RemotePlayer& player);

    void start();  // once

signals:
    void isOnTheBus(const QDBusConnection& bus);

private:
    void connected(const QDBusConnection& bus);
    void claimName();
    void announce(const QVariantMap& changed);

    RemotePlayer& m_player;
    std::optional<QDBusConnection> m_bus;
};

}  // namespace qm
