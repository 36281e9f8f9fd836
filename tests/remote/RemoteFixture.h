// The window with three tracks and the remote on it. Main thread only; one at a time.
#pragma once

#include <QDBusObjectPath>

#include "remote/RemotePlayer.h"
#include "support/widgets/LivingWindow.h"

namespace qm {

inline constexpr qlonglong kSecond = 1'000'000;
inline constexpr int kScale = 600;  // of the fake movies, which last 100 seconds

// The window with three tracks a, b and c, and the remote on it, whose clock stands still unless a test moves it.
struct Remote {
    LivingWindow living;
    QMController& player = living.controller;
    RemotePlayer remote{
        player, player, living.outlets, living.fixture.engine.toolbox, player.abLoop(), living.window.actions()};
    qint64 now = 0;
    QVariantMap changed;
    QList<qlonglong> seeks;

    Remote() {
        for (const char* name : {"/music/c.mp3", "/music/b.mp3", "/music/a.mp3"})
            living.addTrack(QString::fromLatin1(name));
        remote.setClock([this] { return now; });
        QObject::connect(&remote, &RemotePlayer::propertiesChanged, &remote, [this](const QVariantMap& properties) {
            for (auto p = properties.begin(); p != properties.end(); ++p) changed.insert(p.key(), p.value());
        });
        QObject::connect(&remote, &RemotePlayer::seeked, &remote, [this](qlonglong position) { seeks << position; });
    }
    void load(int row) {
        living.outlets.playList->selectRowIndex(row);
        player.selectTrack();
    }
    FakeMovie& movie() { return *living.fixture.engine.movie(); }
    QVariant read(const char* property) { return remote.properties().value(QString::fromLatin1(property)); }
    QVariantMap metadata() { return read("Metadata").toMap(); }
    QString trackId() { return metadata().value("mpris:trackid").value<QDBusObjectPath>().path(); }
    void stand(int seconds) { movie().time = {seconds * kScale, kScale, 0}; }
};

}  // namespace qm
