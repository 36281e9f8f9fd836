// Looks for a newer release of the program, says so in a panel of its own, and downloads the release's disc image.
// An updater is made for each check and never deleted: its check may outlive everything that is waited for. A check
// that fails finds nothing newer; of a download that fails the panel says what it says of all, and the user is told
// beside it. Each failure leaves a log line. Main thread, but for checkForUpdate().
#pragma once

#include <QObject>
#include <QVariant>
#include <functional>
#include <optional>

#include "app/state/UpdateOutlets.h"
#include "update/Fetch.h"
#include "update/UpdateCheck.h"

namespace qm {

// What an updater needs of the program around it.
struct UpdateServices {
    std::function<bool(UpdateOutlets&)> loadNib;             // makes the panel and fills the outlets
    std::function<std::optional<bool>()> storedUpdateCheck;  // the preference "SoftwareUpdateCheck"
    std::function<void(const QUrl&)> openURL;                // in the user's web browser
    std::function<QString()> homeFolder;
    Fetch fetch;                               // called on a worker thread
    std::function<void(const QString&)> tell;  // the user, outside the panel
};

class SoftwareUpdater : public QObject, public UpdateOutlets {
    Q_OBJECT

public:
    explicit SoftwareUpdater(UpdateServices services);

    void init();        // the automatic check, unless the preference is off
    void initManual();  // the check that the user asked for
    void initVersionInfo();

    void checkForUpdate();  // on a worker thread: reads, compares, and hands the result to the main thread

    void loadPanel();
    void windowWillClose(const QWidget* window);
    void sheetDidEnd(QWidget* sheet, int returnCode, void* contextInfo);
    void downloadNewDiscImage();

    // Of the latest check of all updaters.
    inline static QVariant latestMajorVersion, latestMinorVersion, latestBuildVersion;

    UpdateDescription latestVersionInfo;
    std::int32_t currentMajorVersion = 0;
    std::int32_t currentMinorVersion = 0;
    std::int32_t currentBuildVersion = 0;
    bool downloadOnDesktop = false;
    bool runningManual = false;

public slots:
    void closePanel();
    void doDownloadUpdate();
    void doVisitHalvixSite();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void start(bool manual);
    void connectPanel();
    void report(const UpdateDescription& latest, bool newer);
    void show(const QString& message);
    void makeMainWindowKey();

    UpdateServices m_services;
};

}  // namespace qm
