// desktop_settings on|off: a desktop's portal on the session bus, which says whether things may move on the screen.
// Prints "ready" when it can be asked. Every line that it reads, on or off, is a change, after which it prints
// "changed".
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>
#include <QSocketNotifier>
#include <QVariantMap>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

const QString kGroup = QStringLiteral("org.gnome.desktop.interface"), kKey = QStringLiteral("enable-animations");
const QString kObject = QStringLiteral("/org/freedesktop/portal/desktop");

using Settings = QMap<QString, QVariantMap>;

class Portal : public QDBusVirtualObject {
public:
    explicit Portal(bool on) : m_on(on) { qDBusRegisterMetaType<Settings>(); }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() != u"ReadAll") return false;
        bus.send(message.createReply(QVariant::fromValue(Settings{{kGroup, {{kKey, m_on}}}})));
        return true;
    }

    void change(bool on) {
        m_on = on;
        QDBusMessage signal = QDBusMessage::createSignal(kObject, QStringLiteral("org.freedesktop.portal.Settings"),
                                                         QStringLiteral("SettingChanged"));
        signal << kGroup << kKey << QVariant::fromValue(QDBusVariant(on));
        QDBusConnection::sessionBus().send(signal);
        std::puts("changed");
    }

private:
    bool m_on;
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: desktop_settings on|off\n", stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    Portal portal(argv[1] == std::string("on"));
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerVirtualObject(kObject, &portal) ||
        !bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")))
        return 1;
    QSocketNotifier changes(0, QSocketNotifier::Read);
    QObject::connect(&changes, &QSocketNotifier::activated, [&] {
        std::string word;
        if (std::getline(std::cin, word))
            portal.change(word == "on");
        else
            changes.setEnabled(false);
    });
    std::puts("ready");
    return QCoreApplication::exec();
}
