#include "ui/windows/ListKeys.h"

#include <utility>

#include "ui/controls/FindBar.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/SearchField.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/PlayListCard.h"

namespace qm {

namespace {

constexpr int kTypingPauseMs = 700;

}  // namespace

ListKeys::ListKeys(MainWindow& window, const PlayerState& state, const PlayListArrays& list, const Outlets& outlets,
                   Notices& notices)
    : QObject(&window),
      m_window(window),
      m_list(list),
      m_outlets(outlets),
      m_notices(notices),
      m_loaded(state, list, outlets) {
    ActionTable& actions = window.actions();
    actions.setReceiver(ActionId::nextTrack, *this, &ListKeys::nextTrack);
    actions.setReceiver(ActionId::previousTrack, *this, &ListKeys::previousTrack);
    actions.setReceiver(ActionId::goToPlayList, *this, &ListKeys::goToPlayList);
    actions.setReceiver(ActionId::findTrack, *this, &ListKeys::findTrack);
    actions.setPreparation(ActionId::removeListEntry, [this] { return mayRemove(); });
    m_counting.setSingleShot(true);
    m_counting.setInterval(kTypingPauseMs);
    connect(&m_counting, &QTimer::timeout, this, &ListKeys::tellCount);
    PlayListView& view = *outlets.playList;
    connect(&view, &PlayListView::lettersEnded, this, [this] { tell(tr("The keys are the player's again")); });
    connect(&view, &PlayListView::noTitleBegins, this,
            [this](const QString& with) { tell(tr("No title begins with “%1”").arg(with)); });
}

void ListKeys::tell(const QString& text) {
    m_notices.tell({text, {}, {}, QStringLiteral("list")});
}

// --- from track to track ---------------------------------------------------------------------------------------------

void ListKeys::nextTrack() {
    playBeside(1);
}

void ListKeys::previousTrack() {
    playBeside(-1);
}

// The row beside the loaded track's, or beside the selected one without a track. Rows that are not shown are skipped.
void ListKeys::playBeside(int step) {
    if (m_list.count() == 0) return tell(tr("There are no tracks in the list"));
    const PlayListView& view = *m_outlets.playList;
    const int here = m_loaded.row() >= 0 ? m_loaded.row() : view.selectedRow();
    if (here < 0 && step < 0) return tell(tr("No track is selected"));
    const int row = view.shownBeside(here, step);
    if (row >= 0) return play(row);
    if (view.isNarrowed())
        tell(step > 0 ? tr("No track that is shown comes after this one")
                      : tr("No track that is shown comes before this one"));
    else
        tell(step > 0 ? tr("This is the last track") : tr("This is the first track"));
}

void ListKeys::play(int row) {
    m_notices.withdraw(QStringLiteral("list"));
    m_outlets.playList->selectRowIndex(row);
    m_window.actions().send(ActionId::rowDoubleClicked);
}

void ListKeys::goToPlayList() {
    m_outlets.playList->takeLetters();
    tell(m_list.count() == 0 ? tr("There are no tracks in the list")
                             : tr("Letters lead to tracks; Return plays, Esc gives the keys back"));
}

// --- find ------------------------------------------------------------------------------------------------------------

void ListKeys::findTrack() {
    if (m_list.count() == 0) return tell(tr("There are no tracks in the list"));
    if (!m_bar) {
        m_bar = &m_window.grid().playList->findBar();
        connectFindBar(*m_bar);
    }
    m_bar->showCount(m_outlets.playList->shownCount(), m_list.count());
    m_bar->begin();
}

void ListKeys::connectFindBar(FindBar& bar) {
    PlayListView& view = *m_outlets.playList;
    QWidget::setTabOrder(&view, bar.field());
    QWidget::setTabOrder(bar.field(), bar.findChild<QWidget*>(QStringLiteral("findDone")));
    connect(&bar, &FindBar::typed, this, &ListKeys::narrow);
    connect(&bar, &FindBar::left, this, &ListKeys::endFinding);
    connect(&bar, &FindBar::goneDown, this, [&view] {
        if (view.shownCount() > 0 && !view.isShown(view.selectedRow())) view.selectRowIndex(view.shownBeside(-1, 1));
        view.setFocus(Qt::ShortcutFocusReason);
    });
    connect(&bar, &FindBar::chosen, this, [this, &view] {
        const int first = view.shownBeside(-1, 1);
        if (first < 0) return tellCount();
        view.setFocus(Qt::ShortcutFocusReason);
        play(first);
    });
    connect(&view, &PlayListView::shownWhole, this, &ListKeys::endFinding);
    connect(&m_window.actions(), &ActionTable::sent, this, [this, &view] {
        if (!m_bar->isHidden()) m_bar->showCount(view.shownCount(), m_list.count());
    });
}

// A search that can only find less looks at the shown rows only, so that a long list keeps up with typing.
void ListKeys::narrow(const QString& typed) {
    const SearchWords before = std::exchange(m_words, SearchWords(typed));
    PlayListView& view = *m_outlets.playList;
    const auto keeps = [this](int row) {
        const auto i = static_cast<std::size_t>(row);
        return m_words.areIn({m_list.displayNamesArray[i], m_list.artistArray[i], m_list.albumArray[i]});
    };
    if (m_words.isEmpty()) {
        const QSignalBlocker keepsBar(view);  // the bar stays open with an empty field
        view.showOnly(nullptr);
    } else if (view.isNarrowed() && m_words.areWithin(before)) {
        view.showFewer(keeps);
    } else {
        view.showOnly(keeps);
    }
    m_bar->showCount(view.shownCount(), m_list.count());
    m_counting.start();
}

void ListKeys::tellCount() {
    const int found = m_outlets.playList->shownCount();
    if (m_bar->text().trimmed().isEmpty()) return;
    tell(found == 0 ? tr("No track is found") : tr("%1 of %2 tracks found").arg(found).arg(m_list.count()));
}

// All rows are shown again: by Esc, by the button, or because a track was added.
void ListKeys::endFinding() {
    if (!m_bar || m_bar->isHidden()) return;
    m_counting.stop();
    m_notices.withdraw(QStringLiteral("list"));
    const bool hasKeys = m_bar->isAncestorOf(m_window.focusWidget());
    m_bar->hide();
    const QSignalBlocker quiet(m_bar);
    m_bar->field()->clear();
    m_words = SearchWords(QString());
    m_outlets.playList->showOnly(nullptr);
    if (hasKeys) m_outlets.playList->setFocus(Qt::ShortcutFocusReason);
}

bool ListKeys::mayRemove() {
    const PlayListView& view = *m_outlets.playList;
    if (view.selectedRow() < 0 || view.isShown(view.selectedRow())) return true;
    tell(tr("The selected track is not among those shown"));
    return false;
}

}  // namespace qm
