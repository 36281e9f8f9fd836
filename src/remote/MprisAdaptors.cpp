#include "remote/MprisAdaptors.h"

#include <QDBusConnection>

#include "engine/api/Log.h"
#include "remote/DesktopEntry.h"
#include "remote/RemotePlayer.h"

namespace qm {

MprisRoot::MprisRoot(RemotePlayer& player, QObject* parent) : QDBusAbstractAdaptor(parent), m_player(player) {}

QString MprisRoot::identity() const {
    return QStringLiteral("Quillmere");
}

QString MprisRoot::desktopEntry() const {
    return kDesktopId;
}

QStringList MprisRoot::schemes() const {
    return {QStringLiteral("file")};
}

QStringList MprisRoot::mimeTypes() const {
    return droppedMimeTypes();
}

void MprisRoot::Raise() {
    m_player.raise();
}

void MprisRoot::Quit() {
    m_player.quit();
}

MprisPlayer::MprisPlayer(RemotePlayer& player, QObject* parent) : QDBusAbstractAdaptor(parent), m_player(player) {
    connect(&player, &RemotePlayer::seeked, this, &MprisPlayer::Seeked);
}

QVariant MprisPlayer::read(const char* property) const {
    return m_player.properties().value(QString::fromLatin1(property));
}

void MprisPlayer::setLoopStatus(const QString& status) {
    if (status != u"Track" && status != u"None") return qmLog("remote: a loop status that is none is ignored");
    m_player.setLoops(status == u"Track");
}

void MprisPlayer::setRate(double rate) {
    m_player.setRate(rate);
}

void MprisPlayer::setVolume(double volume) {
    m_player.setVolume(volume);
}

qlonglong MprisPlayer::position() const {
    return m_player.position();
}

void MprisPlayer::Play() {
    m_player.play();
}

void MprisPlayer::Pause() {
    m_player.pause();
}

void MprisPlayer::PlayPause() {
    m_player.playPause();
}

void MprisPlayer::Stop() {
    m_player.stop();
}

void MprisPlayer::Next() {
    m_player.next();
}

void MprisPlayer::Previous() {
    m_player.previous();
}

void MprisPlayer::Seek(qlonglong offset) {
    m_player.seek(offset);
}

void MprisPlayer::SetPosition(const QDBusObjectPath& trackId, qlonglong target) {
    m_player.setPosition(trackId.path(), target);
}

void MprisPlayer::OpenUri(const QString& uri, const QDBusMessage& call) {
    if (m_player.openUri(uri)) return;
    call.setDelayedReply(true);
    QDBusConnection(kBusConnection)
        .send(call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("The play list takes no such file.")));
}

}  // namespace qm
