#include "update/SoftwareUpdater.h"

#include <QAbstractButton>
#include <QLabel>
#include <QThread>
#include <latch>
#include <set>

#include "support/widgets/TestText.h"
#include "ui/controls/ProgressIndicator.h"
#include "update/UpdateServer.h"
#include "update/UpdaterFixture.h"

using namespace qm;

namespace {

const char* const kStarting = "log Starting software update check for Quillmere.";
const char* const kLatestVersion = "You have the latest version of Quillmere.";

}  // namespace

TEST_CASE_FIXTURE(UpdaterFixture, "with the preference off the automatic check does nothing at all") {
    stored = false;
    const auto quiet = updater();
    quiet->init();
    CHECK(take() == Events{"read the preference"});
    CHECK(quiet->softwareUpdatePanel == nullptr);
    CHECK(quiet->currentMajorVersion == 0);
}

TEST_CASE_FIXTURE(UpdaterFixture, "without a preference, or with it on, the automatic check runs in order") {
    for (const std::optional<bool> preference : {std::optional<bool>(), std::optional(true)}) {
        stored = preference;
        answer = [] { return description(5, 91, 82); };
        const auto automatic = updater();
        automatic->init();
        CHECK_FALSE(automatic->runningManual);
        CHECK(automatic->currentMajorVersion == 5);
        CHECK(automatic->currentMinorVersion == 91);
        CHECK(automatic->currentBuildVersion == 82);
        waitForChecks(1);
        CHECK(take() == Events{"read the preference", kStarting, "load the panel",
                               "fetch /quillmere/QuillmereVersionLeopard.xml", kFinished});
    }
}

TEST_CASE_FIXTURE(UpdaterFixture, "a manual check runs whatever the preference says, without reading it") {
    stored = false;
    const auto manual = updater();
    manual->initManual();
    CHECK(manual->runningManual);
    waitForChecks(1);
    CHECK(take() == Events{kStarting, "load the panel", "fetch /quillmere/QuillmereVersionLeopard.xml",
                           "log checkForUpdate: cannot read " + updateUrl(kDescriptionPath).toString().toStdString() +
                               ": no answer",
                           kFinished});
}

TEST_CASE_FIXTURE(UpdaterFixture, "each check has a thread of its own, and none is the main one") {
    std::latch both(2);
    std::mutex mutex;
    std::set<QThread*> threads;
    answer = [&]() -> Result<QByteArray> {
        both.arrive_and_wait();
        const std::scoped_lock lock(mutex);
        threads.insert(QThread::currentThread());
        return kNoAnswer;
    };
    const auto one = updater(), other = updater();
    one->initManual();
    other->initManual();
    waitForChecks(2);
    CHECK(threads.size() == 2);
    CHECK_FALSE(threads.contains(QThread::currentThread()));
}

TEST_CASE_FIXTURE(UpdaterFixture, "without a panel the check goes on and says so in the log") {
    panelCanBeMade = false;
    answer = [] { return description(6, 0, 0); };
    const auto manual = updater();
    manual->initManual();
    waitForChecks(1);
    CHECK(take() == Events{kStarting, "load the panel", "log Failed to load Software_Update.nib",
                           "fetch /quillmere/QuillmereVersionLeopard.xml", kFinished});
    manual->closePanel();
    manual->windowWillClose(nullptr);
    manual->sheetDidEnd(nullptr, 0, nullptr);
    CHECK_FALSE(mainWindow.keyWindow);
}

TEST_CASE_FIXTURE(UpdaterFixture, "a newer release is announced, by an automatic check too") {
    answer = [] { return description(4, 95, 0); };
    const auto automatic = updater();
    automatic->init();
    CHECK_FALSE(automatic->softwareUpdatePanel->isVisible());
    CHECK_FALSE(automatic->softwareUpdateDownloadButton->isEnabled());
    waitForChecks(1);
    CHECK(automatic->updateMsg->text() == kNewVersion);
    CHECK(automatic->updateMsg->isVisible());
    CHECK(automatic->softwareUpdateDownloadButton->isEnabled());
    CHECK(automatic->softwareUpdateVisitHalvixButton->isEnabled());
    CHECK(automatic->softwareUpdatePanel->isVisible());
    CHECK(automatic->updateProgress->isHidden());
    CHECK(QApplication::activeWindow() == automatic->softwareUpdatePanel);
}

TEST_CASE_FIXTURE(UpdaterFixture, "a newer release is announced before the check is said to be finished") {
    answer = [] { return description(6, 0, 0); };
    const auto manual = updater();
    bool shownBefore = false;
    setLogSink([&](std::string_view line) {
        if (line.starts_with("Finished")) shownBefore = manual->softwareUpdatePanel->isVisible();
        note("log " + std::string(line));
    });
    manual->initManual();
    waitForChecks(1);
    CHECK(shownBefore);
}

TEST_CASE_FIXTURE(UpdaterFixture, "an automatic check that finds nothing newer shows nothing") {
    answer = [] { return description(5, 91, 82); };
    const auto automatic = updater();
    automatic->init();
    waitForChecks(1);
    CHECK_FALSE(automatic->softwareUpdatePanel->isVisible());
    CHECK(automatic->updateMsg->text() == " ");
}

TEST_CASE_FIXTURE(UpdaterFixture,
                  "a manual check that finds nothing newer, or nothing at all, says this is the latest") {
    const std::function<Result<QByteArray>()> answers[] = {
        [] { return description(5, 91, 82); }, [] { return kNoAnswer; },
        [] { return QByteArray("<html><body>6</body></html>"); }, [] { return QByteArray(); }};
    for (const auto& given : answers) {
        answer = given;
        const auto manual = updater();
        manual->initManual();
        waitForChecks(1);
        take();
        CHECK(manual->updateMsg->text() == kLatestVersion);
        CHECK(manual->softwareUpdatePanel->isVisible());
        CHECK_FALSE(manual->softwareUpdateDownloadButton->isEnabled());
    }
}

TEST_CASE_FIXTURE(UpdaterFixture, "the values of the latest check are those of all updaters") {
    const auto first = checked(description(6, 7, 8));
    CHECK(first->latestMajorVersion == QVariant(QStringLiteral("6")));
    CHECK(first->latestMinorVersion == QVariant(7));
    CHECK(first->latestBuildVersion == QVariant(8.0));
    CHECK(first->latestVersionInfo.size() == 3);
    const auto second = checked("garbage");
    CHECK_FALSE(first->latestMajorVersion.isValid());
    CHECK(first->latestVersionInfo.size() == 3);
    CHECK(second->latestVersionInfo.isEmpty());
    CHECK(second->currentMajorVersion == 5);
}

TEST_CASE_FIXTURE(UpdaterFixture, "Close blanks the message, closes the panel and gives the main window the keys") {
    const auto updater = checked(description(6, 0, 0));
    CHECK_FALSE(mainWindow.keyWindow);
    updater->closeButton->click();
    CHECK(updater->updateMsg->text() == " ");
    CHECK_FALSE(updater->softwareUpdatePanel->isVisible());
    CHECK(mainWindow.keyWindow);
    QApplication::processEvents();
    CHECK(QApplication::activeWindow() == &mainWindow);
}

TEST_CASE_FIXTURE(UpdaterFixture,
                  "closing the panel in any other way leaves the message and gives the main window the keys") {
    const auto updater = checked(description(6, 0, 0));
    updater->softwareUpdatePanel->close();
    CHECK(updater->updateMsg->text() == kNewVersion);
    CHECK(mainWindow.keyWindow);
}

TEST_CASE_FIXTURE(UpdaterFixture, "another window's closing concerns no updater") {
    const auto updater = checked(description(6, 0, 0));
    QWidget other;
    updater->windowWillClose(&other);
    updater->windowWillClose(&mainWindow);
    updater->sheetDidEnd(&other, 0, nullptr);
    CHECK_FALSE(mainWindow.keyWindow);
    CHECK(updater->softwareUpdatePanel->isVisible());
}

TEST_CASE_FIXTURE(UpdaterFixture, "the panel as a sheet is closed when the sheet ends") {
    const auto updater = checked(description(6, 0, 0));
    updater->sheetDidEnd(updater->softwareUpdatePanel, 1, nullptr);
    CHECK_FALSE(updater->softwareUpdatePanel->isVisible());
    CHECK(mainWindow.keyWindow);
}

TEST_CASE_FIXTURE(UpdaterFixture, "Visit Web Site opens the product page") {
    const auto updater = checked(description(6, 0, 0));
    updater->softwareUpdateVisitHalvixButton->click();
    CHECK(take() == Events{"open " + updateUrl(kProductPath).toString().toStdString()});
}
