#include "remote/DesktopLauncher.h"

#include <QApplication>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <utility>

#include "engine/api/Log.h"
#include "library/TrackLoader.h"
#include "remote/BusName.h"
#include "remote/DesktopEntry.h"
#include "remote/MprisAdaptors.h"
#include "remote/RemotePlayer.h"
#include "ui/actions/ActionTable.h"

namespace qm {

namespace {

constexpr std::chrono::milliseconds kPause{200};  // between two looks whether a dialog has been answered

// The path of the object follows from the name.
QString objectPath() {
    return u'/' + QString(kDesktopId).replace(u'.', u'/');
}

// Older desktops give the second only.
QByteArray tokenOf(const QVariantMap& platformData) {
    const QString token = platformData.value(QStringLiteral("activation-token")).toString();
    return (token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString() : token).toUtf8();
}

}  // namespace

DesktopLauncher::DesktopLauncher(RemotePlayer& player, TrackLoader& loader, ActionTable& actions,
                                 ComeToFront comeToFront)
    : m_player(player), m_loader(loader), m_actions(actions), m_comeToFront(std::move(comeToFront)) {
    new ApplicationAdaptor(*this);
}

// The object first: what the bus has kept for the name arrives as soon as it is there. The program of another home on
// the same bus keeps the name, and is the one that files are opened with.
void DesktopLauncher::follow(const QDBusConnection& bus) {
    QDBusConnection(bus).registerObject(objectPath(), this, QDBusConnection::ExportAdaptors);
    claimBusName(bus, kDesktopId, this, [](bool isOurs) {
        if (!isOurs) qmLog("remote: files are opened with another Quillmere on this bus");
    });
}

void DesktopLauncher::activate(const QVariantMap& platformData) {
    m_comeToFront(tokenOf(platformData));
}

void DesktopLauncher::open(const QStringList& uris, const QVariantMap& platformData) {
    activate(platformData);
    QTimer::singleShot(0, this, [this, uris] { openFirst(uris, {}); });
}

// Looks at one a turn, so that the window lives on between many. An answer that is asked for comes before any file: the
// player opens nothing meanwhile, and what the user chose must not be lost.
void DesktopLauncher::openFirst(QStringList uris, QStringList files) {
    const bool waits = QApplication::activeModalWidget() != nullptr;
    if (!waits && uris.isEmpty()) return add(files);
    if (!waits) {
        const QString uri = uris.takeFirst();
        if (const auto file = m_loader.soundFile(QUrl(uri)))
            files.append(*file);
        else
            qmLog("remote: not opened: " + uri.toStdString());
    }
    QTimer::singleShot(waits ? kPause : std::chrono::milliseconds(0), this,
                       [this, uris, files] { openFirst(uris, files); });
}

void DesktopLauncher::add(const QStringList& files) {
    if (files.isEmpty()) return;
    m_player.beginOpening();
    connect(
        &m_loader.queue(), &FileQueue::ended, this, [this] { m_player.endOpening(true); }, Qt::SingleShotConnection);
    // Of a single one it is told by its name what is wrong with it.
    m_loader.queue().add(files, files.size() > 1 ? nothingPlayedWords() : QString());
}

bool DesktopLauncher::activateAction(const QString& action, const QVariantMap& platformData) {
    const auto id = actionNamed(action);
    if (!id || !desktopActions().contains(action)) {
        qmLog("remote: no action named " + action.toStdString());
        return false;
    }
    activate(platformData);
    if (!QApplication::activeModalWidget()) QTimer::singleShot(0, this, [this, id] { m_actions.send(*id); });
    return true;
}

ApplicationAdaptor::ApplicationAdaptor(DesktopLauncher& launcher)
    : QDBusAbstractAdaptor(&launcher), m_launcher(launcher) {}

void ApplicationAdaptor::Activate(const QVariantMap& data) {
    m_launcher.activate(data);
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap& data) {
    m_launcher.open(uris, data);
}

void ApplicationAdaptor::ActivateAction(const QString& action, const QVariantList&, const QVariantMap& data,
                                        const QDBusMessage& call) {
    if (m_launcher.activateAction(action, data)) return;
    call.setDelayedReply(true);
    QDBusConnection(kBusConnection)
        .send(call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such action.")));
}

}  // namespace qm
