#include "library/TrackExport.h"

#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <utility>

#include "library/FileAcceptance.h"
#include "library/SupportFolder.h"
#include "player/OutletSetters.h"
#include "ui/SavePanel.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/ProgressBar.h"

namespace qm {

namespace {

constexpr int kLookMilliseconds = 100;
constexpr int kLooksBeforePanel = 5;  // most exports are done before one could read it

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

TrackExport::TrackExport(PlayerState& state, const Outlets& outlets, PlayerAlert& alert, Notices& notices)
    : m_state(state),
      m_outlets(outlets),
      m_alert(alert),
      m_notices(notices),
      m_runPanel([this](const QString& folder, const QString& name) {
          return runSavePanel(m_outlets.mainWindow, folder, name);
      }) {
    m_timer.setInterval(kLookMilliseconds);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
}

void TrackExport::exportMovie() {
    if (hasExtension(m_state.loadedPath, QLatin1StringView("m4p"))) {
        m_alert.displayAlertInfoButtonText(
            QStringLiteral("This file contains DRM protection, added by the producer of the audio/video."),
            QStringLiteral("It cannot be edited."), QStringLiteral("Cancel"));
        return;
    }
    if (!m_state.qtMovie) return;
    if (m_export) {
        showPanel();
        return;
    }
    const auto path = m_runPanel(homeFolder() + QStringLiteral("/Desktop"), exportName(m_state.loadedPath));
    if (path && m_state.qtMovie) begin(resolvedPath(*path));
}

void TrackExport::begin(const QString& path) {
    m_state.qtMovie->setPreferredRateAttribute(m_state.rate);
    m_export = m_state.qtMovie->writeToFileWithAttributes(QFile::encodeName(path).toStdString(),
                                                          WriteAttribute::QTMovieFlatten);
    m_name = QFileInfo(path).fileName();
    showText(m_outlets.exportName, QStringLiteral("Exporting %1").arg(m_name));
    m_looks = 0;
    m_timer.start();
}

void TrackExport::look() {
    std::erase_if(m_cancelled, [](const auto& cancelled) { return cancelled->isFinished(); });
    if (m_export && m_export->isFinished()) {
        const End end = m_export->isWritten() ? End::Written : End::Failed;
        m_export.reset();
        ended(end);
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

void TrackExport::ended(End end) {
    if (m_outlets.exportPanel) m_outlets.exportPanel->hide();
    const auto atEnd = std::exchange(m_atEnd, nullptr);
    atEnd ? atEnd(end) : tellEnd(end);
}

void TrackExport::tellEnd(End end) {
    const QString words = end == End::Written  ? QStringLiteral("Exported %1")
                          : end == End::Failed ? QStringLiteral("%1 could not be written")
                                               : QStringLiteral("%1 was not exported");
    m_notices.tell(Notice{words.arg(m_name), {}, {}, QStringLiteral("export")});
}

}  // namespace qm
