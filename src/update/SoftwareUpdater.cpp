#include "update/SoftwareUpdater.h"

#include <QAbstractButton>
#include <QEvent>
#include <QLabel>
#include <QThread>
#include <utility>

#include "engine/api/Log.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/ProgressIndicator.h"
#include "ui/controls/WindowOrder.h"
#include "update/CurrentVersion.h"
#include "update/Download.h"
#include "update/UpdateServer.h"

namespace qm {

namespace {

UpdateDescription latestDescription(const Fetch& fetch) {
    const QUrl url = updateUrl(kDescriptionPath);
    const auto failed = [&](const Error& error) {
        qmLog("checkForUpdate: cannot read " + url.toString().toStdString() + ": " + error.message);
        return UpdateDescription();
    };
    const Result<QByteArray> document = fetch(url, kDescriptionLimits);
    if (!document) return failed(document.error());
    const Result<UpdateDescription> description = readUpdateDescription(document.value());
    return description ? description.value() : failed(description.error());
}

}  // namespace

SoftwareUpdater::SoftwareUpdater(UpdateServices services) : m_services(std::move(services)) {}

void SoftwareUpdater::init() {
    if (m_services.storedUpdateCheck() == false) return;
    start(false);
}

void SoftwareUpdater::initManual() {
    start(true);
}

void SoftwareUpdater::start(bool manual) {
    runningManual = manual;
    qmLog("Starting software update check for Quillmere.");
    if (m_services.loadNib(*this))
        connectPanel();
    else
        qmLog("Failed to load Software_Update.nib");
    initVersionInfo();
    QThread* worker = QThread::create([this] { checkForUpdate(); });
    connect(worker, &QThread::finished, worker, &QObject::deleteLater);
    worker->start();
}

void SoftwareUpdater::connectPanel() {
    softwareUpdatePanel->installEventFilter(this);
    connect(softwareUpdateDownloadButton, &QAbstractButton::clicked, this, &SoftwareUpdater::doDownloadUpdate);
    connect(softwareUpdateVisitHalvixButton, &QAbstractButton::clicked, this, &SoftwareUpdater::doVisitHalvixSite);
    connect(closeButton, &QAbstractButton::clicked, this, &SoftwareUpdater::closePanel);
}

void SoftwareUpdater::initVersionInfo() {
    currentMajorVersion = kCurrentMajorVersion;
    currentMinorVersion = kCurrentMinorVersion;
    currentBuildVersion = kCurrentBuildVersion;
}

void SoftwareUpdater::checkForUpdate() {
    const UpdateDescription latest = latestDescription(m_services.fetch);
    const auto number = [&](const char* key) { return versionNumber(latest.value(QLatin1StringView(key))); };
    const bool newer = isNewerRelease({number("Major Version"), number("Minor Version"), number("Build Version")},
                                      {currentMajorVersion, currentMinorVersion, currentBuildVersion});
    QMetaObject::invokeMethod(
        this, [this, latest, newer] { report(latest, newer); }, Qt::QueuedConnection);
}

void SoftwareUpdater::report(const UpdateDescription& latest, bool newer) {
    latestVersionInfo = latest;
    latestMajorVersion = latest.value(QStringLiteral("Major Version"));
    latestMinorVersion = latest.value(QStringLiteral("Minor Version"));
    latestBuildVersion = latest.value(QStringLiteral("Build Version"));
    if (newer) {
        show(tr("A new version of Quillmere is available."));
        if (softwareUpdateDownloadButton) softwareUpdateDownloadButton->setEnabled(true);
        if (softwareUpdateVisitHalvixButton) softwareUpdateVisitHalvixButton->setEnabled(true);
        loadPanel();
    } else if (runningManual) {
        show(tr("You have the latest version of Quillmere."));
        loadPanel();
    }
    qmLog("Finished software update check for Quillmere.");
}

void SoftwareUpdater::show(const QString& message) {
    if (!updateMsg) return;
    updateMsg->setText(message);
    updateMsg->show();
}

void SoftwareUpdater::loadPanel() {
    if (!softwareUpdatePanel) return;
    makeKeyAndOrderFront(*softwareUpdatePanel);
}

void SoftwareUpdater::closePanel() {
    if (updateMsg) updateMsg->setText(QStringLiteral(" "));
    if (softwareUpdatePanel) softwareUpdatePanel->close();
}

void SoftwareUpdater::doDownloadUpdate() {
    if (softwareUpdateDownloadButton) softwareUpdateDownloadButton->setEnabled(false);
    if (updateProgress) {
        updateProgress->show();
        updateProgress->repaint();
        updateProgress->startAnimation();
    }
    downloadNewDiscImage();
}

void SoftwareUpdater::downloadNewDiscImage() {
    downloadOnDesktop = false;
    const QString home = m_services.homeFolder();
    if (home.isEmpty()) qmLog("downloadNewDiscImage: no home folder");
    const QString image = home + QStringLiteral("/Desktop/Quillmere.dmg");
    if (home.isEmpty() || !download(m_services.fetch, updateUrl(kDiscImagePath), image))
        m_services.tell(tr("The update could not be downloaded"));
    if (updateProgress) {
        updateProgress->stopAnimation();
        updateProgress->hide();
    }
    downloadOnDesktop = true;
    if (updateMsg)
        updateMsg->setText(
            tr("A disc image containing the new version of Quillmere has been downloaded to your desktop."));
}

void SoftwareUpdater::doVisitHalvixSite() {
    m_services.openURL(updateUrl(kProductPath));
}

void SoftwareUpdater::windowWillClose(const QWidget* window) {
    if (window == softwareUpdatePanel) makeMainWindowKey();
}

void SoftwareUpdater::sheetDidEnd(QWidget* sheet, int /*returnCode*/, void* /*contextInfo*/) {
    if (!sheet || sheet != softwareUpdatePanel) return;
    sheet->close();
    makeMainWindowKey();
}

void SoftwareUpdater::makeMainWindowKey() {
    if (mainWindow) mainWindow->makeKeyAndOrderFront();
}

bool SoftwareUpdater::eventFilter(QObject* watched, QEvent* event) {
    if (watched == softwareUpdatePanel && event->type() == QEvent::Close) windowWillClose(softwareUpdatePanel);
    return QObject::eventFilter(watched, event);
}

}  // namespace qm
