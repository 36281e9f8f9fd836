#include "library/TrackExport.h"
#include "app/state/FilePath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <utility>

#include "app/state/OutletSetters.h"
#include "app/state/SupportFolder.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/ProgressBar.h"
#include "ui/dialogs/FileAcceptance.h"
#include "ui/dialogs/SavePanel.h"

namespace qm {

namespace {

constexpr int kLookMilliseconds = 100;
constexpr int kLooksBeforePanel = 5;  // most exports are done before one could read it
const QString kSubject = QStringLiteral("export");

bool hasExtension(const QString& path, QLatin1StringView extension) {
    return pathExtension(path).compare(extension, Qt::CaseInsensitive) == 0;
}

}  // namespace

QString exportName(const QString& path) {
    const QString name = path.section(u'/', -1, -1, QString::SectionSkipEmpty);
    if (hasExtension(path, QLatin1StringView("avi"))) return name;
    const qsizetype extension = pathExtension(path).size();
    return name.chopped(extension > 0 ? extension + 1 : 0) + QStringLiteral(".mov");
}

TrackExport::TrackExport(Uses<const CurrentMovie, const LoadedFile, const SpeedState> state,
                         Uses<const ExportOutlets, const MainWindowOutlet> outlets, PlayerAlert& alert,
                         Notices& notices)
    : m_movie(state),
      m_file(state),
      m_speedState(state),
      m_outlets(outlets),
      m_window(outlets),
      m_alert(alert),
      m_notices(notices),
      m_runPanel([this](const QString& folder, const QString& name) {
          return runSavePanel(m_window.mainWindow, folder, name);
      }) {
    m_timer.setInterval(kLookMilliseconds);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
}

void TrackExport::exportMovie() {
    if (hasExtension(m_file.loadedPath, QLatin1StringView("m4p"))) {
        m_alert.displayAlertInfoButtonText(
            QStringLiteral("This file contains DRM protection, added by the producer of the audio/video."),
            QStringLiteral("It cannot be edited."), QStringLiteral("Cancel"));
        return;
    }
    if (!m_movie.qtMovie) return;
    if (m_export) {
        showPanel();
        return;
    }
    const auto path = m_runPanel(homeFolder() + QStringLiteral("/Desktop"), exportName(m_file.loadedPath));
    if (path && m_movie.qtMovie) begin(resolvedPath(*path));
}

void TrackExport::begin(const QString& path) {
    m_target = path;
    m_notices.withdraw(kSubject);
    m_movie.qtMovie->setPreferredRateAttribute(m_speedState.rate);
    m_export = m_movie.qtMovie->writeToFileWithAttributes(QFile::encodeName(path).toStdString(),
                                                          WriteAttribute::QTMovieFlatten);
    showText(m_outlets.exportName, QStringLiteral("Exporting %1").arg(QFileInfo(path).fileName()));
    m_looks = 0;
    m_timer.start();
}

void TrackExport::look() {
    std::erase_if(m_cancelled, [](const auto& cancelled) { return cancelled->isFinished(); });
    if (m_export && m_export->isFinished()) {
        const std::string failure = m_export->failure();
        m_export.reset();
        finished(failure);
    }
    if (m_export) {
        if (m_outlets.exportProgress) m_outlets.exportProgress->setFraction(m_export->progress());
        if (++m_looks == kLooksBeforePanel) showPanel();
    } else if (m_cancelled.empty()) {
        m_timer.stop();
    }
}

void TrackExport::showPanel() {
    if (!m_outlets.exportPanel) return;
    m_outlets.exportPanel->show();
    m_outlets.exportPanel->raise();
}

void TrackExport::cancelExport() {
    if (!m_export) return;
    m_export->cancel();
    m_cancelled.push_back(std::move(m_export));
    ended(End::Cancelled);
}

void TrackExport::finished(const std::string& failure) {
    const QFileInfo file(m_target);
    if (failure.empty())
        tell(QStringLiteral("“%1” is in the folder “%2”").arg(file.fileName(), file.dir().dirName()), false);
    else
        tell(QStringLiteral("“%1” could not be written: %2").arg(file.fileName(), QString::fromStdString(failure)),
             true);
    ended(failure.empty() ? End::Written : End::Failed);
}

void TrackExport::ended(End end) {
    if (m_outlets.exportPanel) m_outlets.exportPanel->hide();
    if (end == End::Cancelled) tell(QStringLiteral("“%1” was not exported").arg(QFileInfo(m_target).fileName()), false);
    if (const auto atEnd = std::exchange(m_atEnd, nullptr)) atEnd(end);
}

void TrackExport::tell(const QString& text, bool lasts) {
    m_notices.tell({text, {}, {}, kSubject, lasts});
}

}  // namespace qm
