// The program as a desktop starts it and opens files with it: org.freedesktop.Application on the session bus, under the
// name of the desktop file. The bus starts the program when none runs and keeps the call until the name is there, so
// that a file that was chosen in a file manager is opened either way, by the one program there is. Nothing here waits
// for the bus, and the caller has its answer before a file is opened. Main thread only.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>

namespace qm {

class ActionTable;
class RemotePlayer;
class TrackLoader;

class DesktopLauncher : public QObject {
    Q_OBJECT

public:
    // With what the desktop gives for coming to the front, or nothing.
    using ComeToFront = std::function<void(const QByteArray& token)>;

    DesktopLauncher(RemotePlayer& player, TrackLoader& loader, ActionTable& actions, ComeToFront comeToFront);

    void activate(const QVariantMap& platformData);
    // Each as Open Any Sound adds it, and selects the last; while a dialog asks: after it.
    void open(const QStringList& uris, const QVariantMap& platformData);
    bool activateAction(const QString& action, const QVariantMap& platformData);  // false if the icon offers none such

public slots:
    void follow(const QDBusConnection& bus);  // once

private:
    void openFirst(QStringList uris, QStringList files);
    void add(const QStringList& files);

    RemotePlayer& m_player;
    TrackLoader& m_loader;
    ActionTable& m_actions;
    ComeToFront m_comeToFront;
};

class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(DesktopLauncher& launcher);

public slots:
    void Activate(const QVariantMap& platform_data);
    void Open(const QStringList& uris, const QVariantMap& platform_data);
    void ActivateAction(const QString& action_name, const QVariantList& parameter, const QVariantMap& platform_data,
                        const QDBusMessage& call);  // an error for what the icon does not offer

private:
    DesktopLauncher& m_launcher;
};

}  // namespace qm
