#include "remote/MprisService.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusMessage>
#include <QFileInfo>
#include <QThread>
#include <memory>

#include "engine/api/Log.h"
#include "remote/BusName.h"
#include "remote/MprisAdaptors.h"
#include "remote/RemotePlayer.h"

namespace qm {

namespace {

const QString kObject = QStringLiteral("/org/mpris/MediaPlayer2");
const QString kName = QStringLiteral("org.mpris.MediaPlayer2.quillmere");

// Asked before the library is: without an address it would try to start a bus.
bool busIsKnown() {
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

}  // namespace

MprisService::MprisService(RemotePlayer& player) : m_player(player) {
    new MprisRoot(player, this);
    new MprisPlayer(player, this);
    connect(&player, &RemotePlayer::propertiesChanged, this, &MprisService::announce);
}

void MprisService::start() {
    if (!busIsKnown()) return qmLog("No session bus: no media keys and no remote control.");
    const auto bus = std::make_shared<std::optional<QDBusConnection>>();
    QThread* connecting =
        QThread::create([bus] { *bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, kBusConnection); });
    connect(connecting, &QThread::finished, this, [this, bus] { connected(**bus); });
    connect(connecting, &QThread::finished, connecting, &QObject::deleteLater);
    connecting->start();
}

void MprisService::connected(const QDBusConnection& bus) {
    if (!bus.isConnected())
        return qmLog("No session bus: no media keys and no remote control. " + bus.lastError().message().toStdString());
    m_bus = bus;
    m_bus->registerObject(kObject, this, QDBusConnection::ExportAdaptors);
    m_player.watch();
    claimName();
    emit isOnTheBus(bus);
}

// A second instance of the program adds its number to the name.
void MprisService::claimName() {
    claimBusName(*m_bus, kName, this, [this](bool isOurs) {
        const QString own = kName + QStringLiteral(".instance%1").arg(QCoreApplication::applicationPid());
        if (!isOurs) claimBusName(*m_bus, own, this, [](bool) {});
    });
}

void MprisService::announce(const QVariantMap& changed) {
    QDBusMessage signal = QDBusMessage::createSignal(kObject, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << QStringLiteral("org.mpris.MediaPlayer2.Player") << changed << QStringList();
    if (m_bus) m_bus->send(signal);
}

}  // namespace qm
