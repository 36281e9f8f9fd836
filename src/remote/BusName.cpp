#include "remote/BusName.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr uint kDoNotQueue = 4;                       // the flag of RequestName
constexpr uint kPrimaryOwner = 1, kAlreadyOwner = 4;  // its answers

}  // namespace

void claimBusName(const QDBusConnection& bus, const QString& name, QObject* asker,
                  std::function<void(bool isOurs)> then) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    call << name << kDoNotQueue;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call), asker);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, asker, [answer, then = std::move(then)] {
        answer->deleteLater();
        const QDBusPendingReply<uint> reply = *answer;
        if (reply.isError()) return qmLog("remote: no name on the bus: " + reply.error().message().toStdString());
        then(reply.value() == kPrimaryOwner || reply.value() == kAlreadyOwner);
    });
}

}  // namespace qm
