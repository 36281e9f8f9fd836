#include "remote/DesktopMotion.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include "ui/controls/Motion.h"

namespace qm {

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kObject = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");

const QString kAnyDesktop = QStringLiteral("org.freedesktop.appearance");
const QString kGnome = QStringLiteral("org.gnome.desktop.interface");
const QString kKde = QStringLiteral("org.kde.kdeglobals.KDE");

}  // namespace

bool DesktopMotion::isWantedBy(const Settings& settings) {
    const auto value = [&](const QString& group, const char* key) {
        return settings.value(group).value(QString::fromLatin1(key));
    };
    if (value(kAnyDesktop, "reduced-motion").toUInt() == 1) return false;
    if (!value(kGnome, "enable-animations").isNull() && !value(kGnome, "enable-animations").toBool()) return false;
    bool isNumber = false;
    const double slowness = value(kKde, "AnimationDurationFactor").toDouble(&isNumber);
    return !isNumber || slowness > 0;
}

void DesktopMotion::follow(const QDBusConnection& bus) {
    QDBusConnection connection = bus;
    connection.connect(kService, kObject, kInterface, QStringLiteral("SettingChanged"), this,
                       SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question = QDBusMessage::createMethodCall(kService, kObject, kInterface, QStringLiteral("ReadAll"));
    question << QStringList{kAnyDesktop, kGnome, kKde};
    question.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(connection.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusMessage reply = answer->reply();
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != u"a{sa{sv}}") return;
        m_settings = qdbus_cast<Settings>(reply.arguments().constFirst());
        setMotionWanted(isWantedBy(m_settings));
    });
}

void DesktopMotion::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    m_settings[group][key] = value.variant();
    setMotionWanted(isWantedBy(m_settings));
}

}  // namespace qm
