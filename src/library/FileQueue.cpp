#include "library/FileQueue.h"

#include <QFileInfo>
#include <utility>

namespace qm {

namespace {

constexpr int kFew = 3;                 // added before one could read that they are
constexpr int kAgainMilliseconds = 20;  // while another file is being loaded
const QString kSubject = QStringLiteral("adding files");

}  // namespace

FileQueue::FileQueue(AddFile add, Notices& notices) : m_add(std::move(add)), m_notices(notices) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &FileQueue::step);
}

void FileQueue::add(const QStringList& paths, const QString& wordsForNone) {
    if (paths.isEmpty()) return;
    if (!wordsForNone.isEmpty()) m_wordsForNone = wordsForNone;
    m_waiting += paths;
    m_total += static_cast<int>(paths.size());
    if (m_isStepping || m_timer.isActive()) return;
    tellProgress();
    step();
}

void FileQueue::cancel() {
    if (!isBusy()) return;
    m_isCancelled = true;
    m_waiting.clear();
    if (!m_isStepping) finish();
}

// A file may take long to open, and the user may do anything meanwhile, also add more or cancel.
void FileQueue::step() {
    m_isStepping = true;
    const QString path = m_waiting.first();
    const std::optional<bool> isAdded = m_add(path);
    m_isStepping = false;
    if (!isAdded && !m_isCancelled) return m_timer.start(kAgainMilliseconds);
    if (isAdded) {
        ++m_done;
        if (!*isAdded && ++m_failed == 1) m_firstFailed = QFileInfo(path).fileName();
        if (!m_isCancelled) m_waiting.removeFirst();
    }
    if (m_waiting.isEmpty()) return finish();
    tellProgress();
    m_timer.start(0);
}

void FileQueue::finish() {
    m_timer.stop();
    const int total = std::exchange(m_total, 0);
    const QString wordsForNone = std::exchange(m_wordsForNone, {});
    emit ended();
    m_notices.withdraw(kSubject);
    if (m_failed == total && !wordsForNone.isEmpty())
        m_notices.tell(wordsForNone);
    else if (total > 1)
        tellEnd(total);
    m_done = m_failed = 0;
    m_isCancelled = false;
}

void FileQueue::tellProgress() {
    if (m_total <= kFew) return;
    const QString text = tr("Adding %1 of %2 files").arg(m_done + 1).arg(m_total);
    m_notices.tell({text, tr("Cancel"), [this] { cancel(); }, kSubject, true, m_done > 0});
}

void FileQueue::tellEnd(int total) const {
    const int added = m_done - m_failed;
    QString text = m_isCancelled || m_failed > 0 ? tr("Added %1 of %2 files").arg(added).arg(total)
                                                 : tr("Added %1 files").arg(total);
    if (m_failed == 1) text += tr("; %1 cannot be opened").arg(m_firstFailed);
    if (m_failed > 1) text += tr("; %1 cannot be opened, the first is %2").arg(m_failed).arg(m_firstFailed);
    m_notices.tell(text);
}

}  // namespace qm
