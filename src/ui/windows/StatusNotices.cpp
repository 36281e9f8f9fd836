#include "ui/windows/StatusNotices.h"

#include <algorithm>
#include <utility>

#include "ui/controls/NoticeLine.h"
#include "ui/windows/HeroView.h"
#include "ui/windows/MainWindow.h"

namespace qm {

StatusNotices::StatusNotices(MainWindow& window, Notices& notices)
    : QObject(&window), m_line(window.grid().hero->noticeLine()) {
    connect(&notices, &Notices::told, this, &StatusNotices::tell);
    connect(&notices, &Notices::withdrawn, this, &StatusNotices::withdraw);
    connect(&m_line, &NoticeLine::gone, this, [this] {
        m_passing.reset();
        showLasting();
    });
    connect(&m_line, &NoticeLine::acted, this, &StatusNotices::act);
    // Waits until the window has faded in, because the notice could not be read before.
    connect(&window, &FadingWindow::madeKey, &m_line, &NoticeLine::announce);
    for (const Notice& notice : notices.takeUntold()) tell(notice);
}

void StatusNotices::tell(const Notice& notice) {
    if (notice.isUpdate && update(notice)) return;
    forget(notice.subject);
    m_passing.reset();
    if (notice.lasts)
        m_lasting.push_back(notice);
    else
        m_passing = notice;
    m_line.tell(notice.text, notice.actText, notice.lasts);
}

// One that lasts, in its place behind or in front of the others. False when it is not there any more.
bool StatusNotices::update(const Notice& notice) {
    const auto found = std::find_if(m_lasting.begin(), m_lasting.end(),
                                    [&](const Notice& lasting) { return lasting.subject == notice.subject; });
    if (found == m_lasting.end()) return false;
    *found = notice;
    if (!m_passing && found + 1 == m_lasting.end()) showLasting();
    return true;
}

// A notice that is not the one shown is dropped without a change on the screen.
void StatusNotices::withdraw(const QString& subject) {
    if (subject.isEmpty()) return;
    const bool isShown =
        m_passing ? m_passing->subject == subject : !m_lasting.empty() && m_lasting.back().subject == subject;
    forget(subject);
    if (isShown) showLasting();
}

void StatusNotices::forget(const QString& subject) {
    if (subject.isEmpty()) return;
    if (m_passing && m_passing->subject == subject) m_passing.reset();
    std::erase_if(m_lasting, [&](const Notice& notice) { return notice.subject == subject; });
}

void StatusNotices::showLasting() {
    if (m_lasting.empty())
        m_line.clear();
    else
        m_line.bringBack(m_lasting.back().text, m_lasting.back().actText);
}

// The notice is dropped before the act, so that a notice which the act tells is not dropped with it.
void StatusNotices::act() {
    Notice acted;
    if (m_passing) {
        acted = *std::exchange(m_passing, std::nullopt);
    } else if (!m_lasting.empty()) {
        acted = m_lasting.back();
        m_lasting.pop_back();
    }
    showLasting();
    if (acted.act) acted.act();
}

}  // namespace qm
