#include "library/DropNotices.h"

#include "ui/dialogs/FileAcceptance.h"

namespace qm {

namespace {

const QString kSubject = QStringLiteral("adding files");

}  // namespace

// The files that could be taken come before what could be done about the one that is not.
void DropNotices::refused(const Refusal& refusal, const QString& path, const QStringList& others) {
    Notice notice{refusal.text, {}, {}, kSubject};
    if (!others.isEmpty()) {
        offer(notice, others, others.size());
    } else if (refusal.remedy == Remedy::OpenFolder) {
        notice.actText = QStringLiteral("Open…");
        notice.act = [this, path] { m_acts.openIn(path); };
    } else if (refusal.remedy == Remedy::AddFile) {
        notice.actText = QStringLiteral("Add");
        notice.act = [this, path] { m_acts.add({path}); };
    } else if (refusal.remedy == Remedy::OpenAnyway) {
        notice.actText = QStringLiteral("Open It Anyway");
        notice.act = [this, path] { m_acts.openAnyway(path); };
    }
    m_notices.tell(notice);
}

void DropNotices::onlyFirstTaken(const QStringList& dropped) {
    if (dropped.size() < 2) return;
    const QStringList others = droppable(dropped.mid(1));
    const QString text =
        onlyFirstWords(dropped.first(), static_cast<int>(dropped.size()), static_cast<int>(others.size()));
    Notice notice{text, {}, {}, kSubject};
    if (!others.isEmpty()) offer(notice, others, dropped.size() - 1);
    m_notices.tell(notice);
}

// A command of its own: a drop takes one file.
void DropNotices::offer(Notice& notice, const QStringList& others, qsizetype left) const {
    const bool areAll = others.size() == left;
    notice.actText = others.size() == 1 ? QStringLiteral("Add the other")
                     : areAll           ? QStringLiteral("Add the other %1").arg(others.size())
                                        : QStringLiteral("Add %1 others").arg(others.size());
    notice.act = [this, others] { m_acts.add(others); };
}

}  // namespace qm
