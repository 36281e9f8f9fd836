// The keys of PlayListView: to the rows, and while it takes letters to the titles.
#include <QKeyEvent>
#include <utility>

#include "ui/controls/PlayListView.h"

namespace qm {

// The window's shortcuts come before the list, unless it accepts the shortcut override.
bool PlayListView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isLetterOfTitle(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

void PlayListView::keyPressEvent(QKeyEvent* event) {
    if (isLetterOfTitle(*event)) {
        if (event->key() == Qt::Key_Home) return selectRowIndex(shownBeside(-1, 1));
        event->key() == Qt::Key_Backspace ? m_typeAhead.takeBack() : m_typeAhead.type(event->text());
        return findTitle();
    }
    if (moveByKey(*event)) return;
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (event->modifiers() & ~Qt::KeypadModifier) break;
            if (!isShown(selectedRow()) && isNarrowed()) selectRowIndex(shownBeside(-1, 1));
            endLetters();
            if (selectedRow() >= 0) emit rowActivated();
            return;
        case Qt::Key_Escape:
            if (!m_takesLetters && !isNarrowed()) break;
            m_takesLetters ? endLetters() : showOnly(nullptr);
            return;
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            QTableView::keyPressEvent(event);
            return;
        default:
            break;
    }
    event->ignore();
}

// From no row that is shown, and to the ends; Home alone is the player's. True if the key has been dealt with.
bool PlayListView::moveByKey(const QKeyEvent& event) {
    const bool ctrl = event.modifiers() & Qt::ControlModifier;
    switch (event.key()) {
        case Qt::Key_Home:
            if (ctrl) selectRowIndex(shownBeside(-1, 1));
            return ctrl;
        case Qt::Key_End:
            selectRowIndex(shownBeside(rowCount(), -1));
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown: {
            if (selectedRow() >= 0 && isShown(selectedRow())) return false;
            const int step = event.key() == Qt::Key_Down || event.key() == Qt::Key_PageDown ? 1 : -1;
            const int beside = selectedRow() < 0 ? -1 : shownBeside(selectedRow(), step);
            selectRowIndex(beside >= 0 ? beside : shownBeside(-1, 1));
            return true;
        }
        default:
            return false;
    }
}

// --- letters that lead to titles -------------------------------------------------------------------------------------

void PlayListView::takeLetters() {
    setFocus(Qt::ShortcutFocusReason);
    m_takesLetters = true;
    m_focusInRow = true;  // shows that the list has the keyboard
    m_typeAhead.forget();
    viewport()->update();
}

void PlayListView::endLetters() {
    if (std::exchange(m_takesLetters, false)) emit lettersEnded();
}

// Space plays unless it is typed inside a title. Backspace takes a letter back and never removes a track here.
bool PlayListView::isLetterOfTitle(const QKeyEvent& event) const {
    if (!m_takesLetters || event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier))
        return false;
    if (event.key() == Qt::Key_Home || event.key() == Qt::Key_Backspace) return true;
    const QString text = event.text();
    if (text.isEmpty() || !text[0].isPrint()) return false;
    return !text[0].isSpace() || m_typeAhead.isTyping();
}

void PlayListView::findTitle() {
    if (!m_typeAhead.isTyping()) return;
    const int column = columnIndex("IBtrack");
    const auto title = [this, column](int shown) { return model()->index(shown, column).data().toString(); };
    const int selected = selectedRow() >= 0 ? shownRow(selectedRow()) : -1;
    const int found = m_typeAhead.find(shownCount(), selected, title);
    found >= 0 ? selectRowIndex(listRow(found)) : emit noTitleBegins(m_typeAhead.typed());
}

}  // namespace qm
