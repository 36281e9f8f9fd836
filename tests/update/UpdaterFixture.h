// Updaters in a program of one main window, with a server that is a function, in a home folder of their own. What
// happens is in one list, whichever thread it happened on.
#pragma once

#include <QApplication>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "engine/api/Log.h"
#include "support/widgets/EventLog.h"
#include "ui/controls/FadingWindow.h"
#include "ui/windows/SoftwareUpdatePanel.h"
#include "update/SoftwareUpdater.h"

namespace qm {

inline const char* const kFinished = "log Finished software update check for Quillmere.";
inline const char* const kNewVersion = "A new version of Quillmere is available.";
inline const Error kNoAnswer{ErrorCategory::Unreadable, "no answer"};

inline QByteArray description(int major, int minor, int build) {
    return QStringLiteral(
               "<plist><dict><key>Major Version</key><string>%1</string><key>Minor Version</key>"
               "<integer>%2</integer><key>Build Version</key><real>%3</real></dict></plist>")
        .arg(major)
        .arg(minor)
        .arg(build)
        .toUtf8();
}

class UpdaterFixture {
public:
    UpdaterFixture() {
        setLogSink([this](std::string_view line) { note("log " + std::string(line)); });
        mainWindow.show();
    }
    ~UpdaterFixture() { setLogSink({}); }

    std::unique_ptr<SoftwareUpdater> updater() {
        UpdateServices services;
        services.loadNib = [this](UpdateOutlets& outlets) {
            note("load the panel");
            if (!panelCanBeMade) return false;
            outlets.mainWindow = &mainWindow;
            new SoftwareUpdatePanel(outlets, &mainWindow);
            return true;
        };
        services.storedUpdateCheck = [this] {
            note("read the preference");
            return stored;
        };
        services.openURL = [this](const QUrl& url) { note("open " + url.toString().toStdString()); };
        services.homeFolder = [this] { return home.path(); };
        services.fetch = [this](const QUrl& url, const FetchLimits&) {
            note("fetch " + url.path().toStdString());
            return answer();
        };
        services.tell = [this](const QString& text) { told << text; };
        return std::make_unique<SoftwareUpdater>(std::move(services));
    }

    // A manual check, done.
    std::unique_ptr<SoftwareUpdater> checked(const QByteArray& document) {
        answer = [document] { return document; };
        auto made = updater();
        made->initManual();
        waitForChecks(1);
        take();
        return made;
    }

    void waitForChecks(int count) {
        while (eventCount(kFinished) < count) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    void note(const std::string& event) {
        const std::scoped_lock lock(m_mutex);
        m_log.add(event);
    }
    Events take() {
        const std::scoped_lock lock(m_mutex);
        return m_log.take();
    }
    int eventCount(const std::string& event) {
        const std::scoped_lock lock(m_mutex);
        return m_log.count(event);
    }

    QTemporaryDir home;
    QStringList told;  // the user, outside the panel
    FadingWindow mainWindow;
    bool panelCanBeMade = true;
    std::optional<bool> stored;
    std::function<Result<QByteArray>()> answer = [] { return kNoAnswer; };  // called on the worker thread

private:
    std::mutex m_mutex;
    EventLog m_log;
};

}  // namespace qm
