// Follows what the desktop's settings say of movement on the screen, as its portal tells it on the session bus: one
// question, whose answer nobody waits for, and then every change. Without a portal things move. Main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QVariantMap>

namespace qm {

class DesktopMotion : public QObject {
    Q_OBJECT

public:
    using Settings = QMap<QString, QVariantMap>;  // the keys and values of each group

    static bool isWantedBy(const Settings& settings);

public slots:
    void follow(const QDBusConnection& bus);  // once

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    Settings m_settings;
};

}  // namespace qm
