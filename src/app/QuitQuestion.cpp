#include "app/QuitQuestion.h"

#include <optional>

#include "library/Alert.h"

namespace qm {

QuitQuestion::QuitQuestion(TrackExport& exporting, Notices& notices, Ask ask, std::function<void(bool)> showWaiting)
    : m_export(exporting), m_notices(notices), m_ask(std::move(ask)), m_showWaiting(std::move(showWaiting)) {}

// The export may finish while the question is shown.
bool QuitQuestion::mayQuit(const std::function<void()>& quit) {
    if (!m_export.isExporting()) return true;
    std::optional<TrackExport::End> end;
    m_export.setAtEnd([&end](TrackExport::End how) { end = how; });
    const Answer answer = m_ask();
    m_export.setAtEnd(nullptr);
    m_showWaiting(false);
    if (answer == Answer::QuitNow) return true;
    if (answer == Answer::Stay) return false;
    if (end) return isWritten(*end);
    m_showWaiting(true);
    m_export.showPanel();
    m_export.setAtEnd([this, quit](TrackExport::End how) {
        m_showWaiting(false);
        if (isWritten(how)) quit();
    });
    return false;
}

bool QuitQuestion::isWritten(TrackExport::End end) {
    if (end == TrackExport::End::Failed)
        m_notices.tell({QStringLiteral("The movie could not be written, so Quillmere has not quit"), {}, {}, {}, true});
    return end == TrackExport::End::Written;
}

QuitQuestion::Answer askWhetherToQuit(QWidget* window) {
    constexpr int kFinish = kAlertFirstButtonReturn, kQuitNow = kFinish + 1;
    const int pressed = runWarningAlert(
        window, QStringLiteral("A movie is being exported."),
        {QStringLiteral("Finish the export, then quit"), QStringLiteral("Quit now"), QStringLiteral("Cancel")},
        QStringLiteral("Quitting now leaves nothing of it."), kQuitNow);
    if (pressed == kFinish) return QuitQuestion::Answer::Finish;
    return pressed == kQuitNow ? QuitQuestion::Answer::QuitNow : QuitQuestion::Answer::Stay;
}

}  // namespace qm
