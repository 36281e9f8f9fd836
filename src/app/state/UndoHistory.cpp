#include "app/state/UndoHistory.h"

#include <utility>

namespace qm {

namespace {

constexpr std::size_t kMostActs = 100;

}  // namespace

void UndoHistory::add(Act act) {
    const int change = ++m_changes;
    // The button belongs to this act alone: the next act or undo takes its notice away.
    tell(act.done, tr("Undo"), [this, change] {
        if (change == m_changes) undo();
    });
    m_acts.push_back(std::move(act));
    if (m_acts.size() > kMostActs) m_acts.pop_front();
    emit changed();
}

void UndoHistory::undo() {
    if (m_acts.empty()) return;
    const Act act = std::move(m_acts.back());
    m_acts.pop_back();
    ++m_changes;
    act.undo();
    tell(act.undone, {}, {});
    emit changed();
}

void UndoHistory::tell(const QString& text, const QString& button, std::function<void()> act) {
    const QString subject = QStringLiteral("undo");
    if (text.isEmpty()) {
        m_notices.withdraw(subject);
    } else {
        m_notices.tell(Notice{text, button, std::move(act), subject});
    }
}

}  // namespace qm
